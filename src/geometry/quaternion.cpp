// SPDX-License-Identifier: MIT
// Quaternion: construction from axis and angle or matrix, rotation, interpolation.
#include "structmath/geometry/quaternion.hpp"

#include <cmath>
#include <ostream>
#include <stdexcept>

#include "../numeric/fixed_format.hpp"
#include "structmath/core/archive.hpp"

namespace structmath {

Quaternion::Quaternion(Vector3D const& axis, Angle const& angle) {
  Vector3D u = axis;
  u.normalize(default_tolerance);
  double const half = 0.5 * angle.radians();
  double const s = std::sin(half);
  w_ = std::cos(half);
  x_ = s * u.x();
  y_ = s * u.y();
  z_ = s * u.z();
}

Quaternion::Quaternion(Matrix3D const& r) {
  // Shepperd's choice: take the square root of the largest of 4w^2, 4x^2, 4y^2, 4z^2,
  // then the other components from off-diagonal sums and differences.
  double const trace = r(1, 1) + r(2, 2) + r(3, 3);
  if (trace >= r(1, 1) && trace >= r(2, 2) && trace >= r(3, 3)) {
    double const s = 2.0 * std::sqrt(1.0 + trace);
    w_ = 0.25 * s;
    x_ = (r(3, 2) - r(2, 3)) / s;
    y_ = (r(1, 3) - r(3, 1)) / s;
    z_ = (r(2, 1) - r(1, 2)) / s;
  } else if (r(1, 1) >= r(2, 2) && r(1, 1) >= r(3, 3)) {
    double const s = 2.0 * std::sqrt(1.0 + r(1, 1) - r(2, 2) - r(3, 3));
    w_ = (r(3, 2) - r(2, 3)) / s;
    x_ = 0.25 * s;
    y_ = (r(1, 2) + r(2, 1)) / s;
    z_ = (r(1, 3) + r(3, 1)) / s;
  } else if (r(2, 2) >= r(3, 3)) {
    double const s = 2.0 * std::sqrt(1.0 + r(2, 2) - r(1, 1) - r(3, 3));
    w_ = (r(1, 3) - r(3, 1)) / s;
    x_ = (r(1, 2) + r(2, 1)) / s;
    y_ = 0.25 * s;
    z_ = (r(2, 3) + r(3, 2)) / s;
  } else {
    double const s = 2.0 * std::sqrt(1.0 + r(3, 3) - r(1, 1) - r(2, 2));
    w_ = (r(2, 1) - r(1, 2)) / s;
    x_ = (r(1, 3) + r(3, 1)) / s;
    y_ = (r(2, 3) + r(3, 2)) / s;
    z_ = 0.25 * s;
  }
  if (w_ < 0.0) *this = Quaternion(-w_, -x_, -y_, -z_);
  double const n = norm();
  if (n > 0.0) *this = Quaternion(w_ / n, x_ / n, y_ / n, z_ / n);
}

double Quaternion::norm() const noexcept { return std::sqrt(norm_squared()); }

void Quaternion::normalize(double tolerance) {
  double const n = norm();
  if (equals(n, 0.0, tolerance)) {
    throw std::runtime_error("Quaternion::normalize(): Cannot normalize a zero length Quaternion");
  }
  w_ /= n;
  x_ /= n;
  y_ /= n;
  z_ /= n;
}

Angle Quaternion::angle() const noexcept {
  // atan2 of the vector length and w is accurate near 0 and pi alike.
  return Angle(2.0 * std::atan2(vector().length(), w_));
}

Vector3D Quaternion::axis() const noexcept {
  Vector3D const v = vector();
  double const len = v.length();
  if (len == 0.0) return Vector3D(0.0, 0.0, 1.0);
  return v / len;
}

Matrix3D Quaternion::rotation_matrix() const {
  double const n2 = norm_squared();
  if (n2 == 0.0) throw std::runtime_error("Quaternion::rotation_matrix(): zero quaternion");
  double const s = 2.0 / n2;
  double const xx = s * x_ * x_;
  double const yy = s * y_ * y_;
  double const zz = s * z_ * z_;
  double const xy = s * x_ * y_;
  double const xz = s * x_ * z_;
  double const yz = s * y_ * z_;
  double const wx = s * w_ * x_;
  double const wy = s * w_ * y_;
  double const wz = s * w_ * z_;
  return Matrix3D(1.0 - yy - zz, xy - wz, xz + wy, xy + wz, 1.0 - xx - zz, yz - wx, xz - wy,
                  yz + wx, 1.0 - xx - yy);
}

Vector3D Quaternion::rotate(Vector3D const& v) const {
  double const n2 = norm_squared();
  if (n2 == 0.0) throw std::runtime_error("Quaternion::rotate(): zero quaternion");
  // v' = v + 2w (u x v) + 2 u x (u x v) for a unit quaternion (w, u), scaled by 1 / |q|^2.
  Vector3D const u = vector();
  Vector3D const t = u.cross(v) * (2.0 / n2);
  return v + w_ * t + u.cross(t);
}

void Quaternion::print(std::ostream& out) const {
  out << "(";
  detail::write_fixed(out, w_);
  out << ",";
  detail::write_fixed(out, x_);
  out << ",";
  detail::write_fixed(out, y_);
  out << ",";
  detail::write_fixed(out, z_);
  out << ")";
}

void Quaternion::write(Archive& archive) const { archive << w_ << x_ << y_ << z_; }

void Quaternion::read(Archive& archive) {
  double w = 0.0;
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  archive >> w >> x >> y >> z;
  *this = Quaternion(w, x, y, z);
}

bool equals(Quaternion const& a, Quaternion const& b, double tolerance) noexcept {
  return equals(a.w(), b.w(), tolerance) && equals(a.x(), b.x(), tolerance) &&
         equals(a.y(), b.y(), tolerance) && equals(a.z(), b.z(), tolerance);
}

Quaternion slerp(Quaternion const& a, Quaternion const& b, double t) {
  Quaternion qa = a;
  Quaternion qb = b;
  qa.normalize();
  qb.normalize();
  double c = qa.w() * qb.w() + qa.x() * qb.x() + qa.y() * qb.y() + qa.z() * qb.z();
  if (c < 0.0) {
    // q and -q are the same rotation: go the short way round.
    qb = Quaternion(-qb.w(), -qb.x(), -qb.y(), -qb.z());
    c = -c;
  }
  double wa = 1.0 - t;
  double wb = t;
  if (c < 0.9999) {
    double const omega = std::acos(c);
    double const s = std::sin(omega);
    wa = std::sin((1.0 - t) * omega) / s;
    wb = std::sin(t * omega) / s;
  }
  Quaternion r(wa * qa.w() + wb * qb.w(), wa * qa.x() + wb * qb.x(), wa * qa.y() + wb * qb.y(),
               wa * qa.z() + wb * qb.z());
  r.normalize(0.0);
  return r;
}

}  // namespace structmath
