// SPDX-License-Identifier: MIT
// Line and LineSegment: canonical construction, queries, printing and archiving.
#include "structmath/geometry/line.hpp"

#include <cmath>
#include <ostream>

#include "../numeric/fixed_format.hpp"
#include "structmath/core/archive.hpp"

namespace structmath {

namespace {

Vector3D unit(Vector3D v) {
  v.normalize(1e-7);
  return v;
}

// The foot of the perpendicular from the coordinate origin onto the line through p
// along the unit direction d.
Point nearest_origin(Point const& p, Vector3D const& d) noexcept {
  return p - (p.vector() * d) * d;
}

}  // namespace

Line::Line() noexcept : origin_(0.0, 0.0, 0.0), direction_(0.0, 0.0, 1.0) {}

Line::Line(Point const& p, Vector3D const& v) : direction_(unit(v)) {
  origin_ = nearest_origin(p, direction_);
}

Line::Line(Point const& a, Point const& b) : direction_(unit(b - a)) {
  origin_ = nearest_origin(a, direction_);
}

Line::Line(LineSegment const& segment) : Line(segment.point1(), segment.point2()) {}

Point Line::projection(Point const& p) const noexcept {
  return origin_ + ((p - origin_) * direction_) * direction_;
}

double Line::distance(Point const& p) const noexcept {
  return (p - origin_).cross(direction_).length();
}

void Line::print(std::ostream& out) const {
  out << "origin: ";
  detail::write_fixed(out, origin_);
  out << ", direction: ";
  detail::write_fixed(out, direction_);
}

void Line::write(Archive& archive) const {
  origin_.vector().write(archive);
  direction_.write(archive);
}

void Line::read(Archive& archive) {
  Vector3D origin;
  Vector3D direction;
  origin.read(archive);
  direction.read(archive);
  origin_ = origin.point();
  direction_ = direction;
}

bool equals(Line const& a, Line const& b, double tolerance) noexcept {
  if (!equals(a.origin(), b.origin(), tolerance)) return false;
  if (equals(a.direction(), b.direction(), tolerance)) return true;
  return equals(a.direction(), -b.direction(), tolerance);
}

LineSegment::LineSegment() noexcept : point1_(0.0, 0.0, 0.0), point2_(0.0, 0.0, 1.0) {}

LineSegment::LineSegment(Point const& a, Point const& b) noexcept : point1_(a), point2_(b) {
  if (Vector3DCompareXYZ(1e-7)(point2_.vector(), point1_.vector())) {
    point1_ = b;
    point2_ = a;
  }
}

double LineSegment::length() const noexcept {
  Vector3D const d = point2_ - point1_;
  return std::sqrt(d * d);
}

Point LineSegment::midpoint() const noexcept { return point1_ + 0.5 * (point2_ - point1_); }

void LineSegment::print(std::ostream& out) const {
  out << "point 1: ";
  detail::write_fixed(out, point1_);
  out << ", point 2: ";
  detail::write_fixed(out, point2_);
}

void LineSegment::write(Archive& archive) const {
  point1_.vector().write(archive);
  point2_.vector().write(archive);
}

void LineSegment::read(Archive& archive) {
  Vector3D p1;
  Vector3D p2;
  p1.read(archive);
  p2.read(archive);
  point1_ = p1.point();
  point2_ = p2.point();
}

bool equals(LineSegment const& a, LineSegment const& b, double tolerance) noexcept {
  return equals(a.point1(), b.point1(), tolerance) && equals(a.point2(), b.point2(), tolerance);
}

}  // namespace structmath
