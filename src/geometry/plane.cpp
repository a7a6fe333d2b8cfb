// SPDX-License-Identifier: MIT
// Plane: constructors, the least-squares fit, distances, angles, frames, intersections.
#include "structmath/geometry/plane.hpp"

#include <cmath>
#include <ostream>
#include <stdexcept>

#include "../numeric/fixed_format.hpp"
#include "structmath/core/archive.hpp"
#include "structmath/geometry/geometry_functions.hpp"
#include "structmath/numeric/linear_algebra.hpp"
#include "structmath/numeric/matrix.hpp"

namespace structmath {

namespace {

constexpr double pi = 180.0 * 0.017453292519943295;
constexpr double zero_length = 1e-7;

Vector3D unit(Vector3D v) {
  v.normalize(zero_length);
  return v;
}

}  // namespace

Plane::Plane() : normal_(1.0, 0.0, 0.0), distance_(0.0) { calculate_vectors(); }

Plane::Plane(Vector3D const& n, double d) : normal_(unit(n)), distance_(d) { calculate_vectors(); }

Plane::Plane(Vector3D const& n, Point const& p) : normal_(unit(n)) {
  distance_ = normal_ * p.vector();
  calculate_vectors();
}

Plane::Plane(Vector3D const& a, Vector3D const& b, double d)
    : normal_(unit(a.cross(b))), distance_(d) {
  calculate_vectors();
}

Plane::Plane(Vector3D const& a, Vector3D const& b, Point const& p) : normal_(unit(a.cross(b))) {
  distance_ = normal_ * p.vector();
  calculate_vectors();
}

Plane::Plane(Point const& p1, Point const& p2, Point const& p3)
    : normal_(unit((p2 - p1).cross(p3 - p1))) {
  distance_ = normal_ * p1.vector();
  calculate_vectors();
}

Plane::Plane(std::vector<Point> const& points) {
  if (points.size() < 3) {
    throw std::invalid_argument("Cannot construct a Plane from less than three points");
  }
  if (collinear(points.begin(), points.end(), Angle(0.1 * Angle::degrees_to_radians), 1e-7)) {
    throw std::invalid_argument("Cannot construct a Plane from collinear points");
  }
  Point const c = centroid(points);

  // Inertia tensor about the centroid, upper triangle only.
  Matrix3D inertia(0.0);
  for (Point const& p : points) {
    Vector3D const r = p - c;
    double const x = r.x();
    double const y = r.y();
    double const z = r.z();
    inertia(1, 1) += y * y + z * z;
    inertia(2, 2) += x * x + z * z;
    inertia(3, 3) += x * x + y * y;
    inertia(1, 2) -= x * y;
    inertia(1, 3) -= x * z;
    inertia(2, 3) -= y * z;
  }
  inertia.make_symmetric();

  Vector3D moments;
  Matrix3D axes;
  Jacobi<3>(inertia, moments, axes);
  EigenSort<3>(moments, axes);

  // The largest moment belongs to the direction of least spread.
  normal_ = unit(axes.col(1));
  distance_ = normal_ * c.vector();
  calculate_vectors();
}

double Plane::signed_distance(Point const& p) const noexcept {
  return distance_ - normal_ * p.vector();
}

double Plane::distance(Point const& p) const noexcept { return std::fabs(signed_distance(p)); }

double Plane::signed_distance(Plane const& other) const noexcept {
  double const c = normal_ * other.normal_;
  if (std::fabs(c - 1.0) <= 1e-6) return other.distance_ - distance_;
  if (std::fabs(c + 1.0) <= 1e-6) return -other.distance_ - distance_;
  return 0.0;
}

double Plane::distance(Plane const& other) const noexcept {
  return std::fabs(signed_distance(other));
}

Angle Plane::angle(Plane const& other) const {
  double const c = normal_ * other.normal_;
  if (c <= -1.0 || c >= 1.0) return Angle(0.0);
  Angle const a = Angle::acos(c);
  if (c >= 0.0) return a;
  return Angle(pi) - a;
}

Angle Plane::angle(Vector3D const& v) const {
  Vector3D const u = unit(v);
  double const c = normal_ * u;
  if (c <= -1.0 || c >= 1.0) return Angle(0.0);
  Angle a = Angle::acos(c);
  if (c < 0.0) a = Angle(pi) - a;
  return Angle(90.0 * 0.017453292519943295) - a;
}

Point Plane::projection(Point const& p) const noexcept { return p + signed_distance(p) * normal_; }

Point Plane::local_to_global_coord(Point const& q) const noexcept {
  return (distance_ * normal_ + q.x() * v1_ + q.y() * v2_ + q.z() * normal_).point();
}

Point Plane::global_to_local_coord(Point const& p) const noexcept {
  Vector3D const r = p - (distance_ * normal_).point();
  return Point(r * v1_, r * v2_, r * normal_);
}

void Plane::print(std::ostream& out) const {
  out << "normal: ";
  detail::write_fixed(out, normal_);
  out << ", distance: " << distance_ << std::endl;
  out << "    v1: ";
  detail::write_fixed(out, v1_);
  out << std::endl;
  out << "    v2: ";
  detail::write_fixed(out, v2_);
  out << std::endl;
}

void Plane::calculate_vectors() {
  Vector3D v2 = Vector3D(1.0, 0.0, 0.0).cross(normal_);
  if (!v2.normalize_valid(1e-7)) v2 = Vector3D(0.0, 1.0, 0.0).cross(normal_);
  v2 = unit(v2);
  v1_ = unit(v2.cross(normal_));
  v2_ = v2;
}

void Plane::write(Archive& archive) const {
  normal_.write(archive);
  archive << distance_;
  v1_.write(archive);
  v2_.write(archive);
}

void Plane::read(Archive& archive) {
  // Read into a copy, so a truncated archive leaves this plane unchanged.
  Plane in = *this;
  in.normal_.read(archive);
  archive >> in.distance_;
  in.v1_.read(archive);
  in.v2_.read(archive);
  *this = in;
}

bool Plane::operator==(Plane const& other) const noexcept {
  for (unsigned int i = 0; i < 3; ++i) {
    if (normal_[i] != other.normal_[i]) return false;
  }
  if (distance_ != other.distance_) return false;
  for (unsigned int i = 0; i < 3; ++i) {
    if (v1_[i] != other.v1_[i]) return false;
  }
  for (unsigned int i = 0; i < 3; ++i) {
    if (v2_[i] != other.v2_[i]) return false;
  }
  return true;
}

bool Plane::plane_intersection(Plane const& p1, Plane const& p2, Plane const& p3, Point& point) {
  Vector3D const n1 = p1.normal_;
  Vector3D const n2 = p2.normal_;
  Vector3D const n3 = p3.normal_;
  double const det = n1 * n2.cross(n3);
  if (std::fabs(det) < 1e-9) return false;
  Vector3D const sum =
      p1.distance_ * n2.cross(n3) + p2.distance_ * n3.cross(n1) + p3.distance_ * n1.cross(n2);
  point = (sum / det).point();
  return true;
}

bool Plane::plane_intersection(Plane const& p1, Plane const& p2, Vector3D& direction,
                               Point& point) {
  Vector3D const n1 = p1.normal_;
  Vector3D const n2 = p2.normal_;
  Vector3D const l = n1.cross(n2);
  if (l.length() < 1e-9) return false;
  double const c = n1 * n2;
  double const d1 = p1.distance_;
  double const d2 = p2.distance_;
  double const a = (d1 - d2 * c) / (1.0 - c * c);
  double const b = (d2 - d1 * c) / (1.0 - c * c);
  direction = l / l.length();
  point = (a * n1 + b * n2).point();
  return true;
}

bool equals(Plane const& a, Plane const& b, double tolerance) noexcept {
  if (equals(a.normal(), b.normal(), tolerance) &&
      std::fabs(a.distance() - b.distance()) <= tolerance) {
    return true;
  }
  return equals(a.normal(), -b.normal(), tolerance) &&
         std::fabs(a.distance() + b.distance()) <= tolerance;
}

}  // namespace structmath
