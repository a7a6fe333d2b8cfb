// SPDX-License-Identifier: MIT
// Quaternion: rotations in three dimensions as unit quaternions, with interpolation.
#pragma once

#include <iosfwd>
#include <type_traits>

#include "structmath/export.hpp"
#include "structmath/numeric/angle.hpp"
#include "structmath/numeric/matrix.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

class Archive;

/// A quaternion w + xi + yj + zk. Unit quaternions stand for rotations.
///
/// Rotations are active and right-handed: Quaternion(axis, angle).rotate(v) turns v
/// anticlockwise by angle when viewed from the tip of axis looking back at the origin.
/// A product applies its right operand first: (q * r).rotate(v) == q.rotate(r.rotate(v)),
/// and q *= r makes q the product q * r.
class STRUCTMATH_API Quaternion {
 public:
  /// The identity rotation (1, 0, 0, 0).
  constexpr Quaternion() noexcept = default;
  /// The components as given, not normalised.
  constexpr Quaternion(double w, double x, double y, double z) noexcept
      : w_(w), x_(x), y_(y), z_(z) {}
  /// The rotation by angle about axis, which need not be of unit length. Throws
  /// std::runtime_error("Cannot normalize a zero length Vector") when |axis| <= 1e-7.
  Quaternion(Vector3D const& axis, Angle const& angle);
  /// The unit quaternion, with w >= 0, of a proper rotation matrix (orthogonal,
  /// determinant +1); extracted from the largest of the trace and the diagonal elements
  /// for accuracy. Other matrices give the nearest such quaternion only approximately.
  explicit Quaternion(Matrix3D const& rotation);

  constexpr double w() const noexcept { return w_; }
  constexpr double x() const noexcept { return x_; }
  constexpr double y() const noexcept { return y_; }
  constexpr double z() const noexcept { return z_; }
  /// The vector part (x, y, z).
  constexpr Vector3D vector() const noexcept { return Vector3D(x_, y_, z_); }

  /// The Hamilton product this * other.
  constexpr Quaternion& operator*=(Quaternion const& o) noexcept {
    double const w = w_ * o.w_ - x_ * o.x_ - y_ * o.y_ - z_ * o.z_;
    double const x = w_ * o.x_ + x_ * o.w_ + y_ * o.z_ - z_ * o.y_;
    double const y = w_ * o.y_ - x_ * o.z_ + y_ * o.w_ + z_ * o.x_;
    double const z = w_ * o.z_ + x_ * o.y_ - y_ * o.x_ + z_ * o.w_;
    w_ = w;
    x_ = x;
    y_ = y;
    z_ = z;
    return *this;
  }

  /// (w, -x, -y, -z): the inverse rotation of a unit quaternion.
  constexpr Quaternion conjugate() const noexcept { return Quaternion(w_, -x_, -y_, -z_); }
  /// w^2 + x^2 + y^2 + z^2.
  constexpr double norm_squared() const noexcept { return w_ * w_ + x_ * x_ + y_ * y_ + z_ * z_; }
  /// The Euclidean length of the four components.
  double norm() const noexcept;
  /// Scales to unit norm. Throws std::runtime_error("Quaternion::normalize(): Cannot
  /// normalize a zero length Quaternion"), leaving it unchanged, when the norm is at
  /// most the tolerance.
  void normalize(double tolerance = default_tolerance);

  /// The rotation angle in [0, 2pi] (pi is the largest turn; q and -q give 2pi - a).
  Angle angle() const noexcept;
  /// The unit rotation axis; (0, 0, 1) for a rotation by zero.
  Vector3D axis() const noexcept;

  /// v turned by this rotation. A quaternion of any non-zero norm rotates as its
  /// normalised form; the zero quaternion throws std::runtime_error
  /// ("Quaternion::rotate(): zero quaternion").
  Vector3D rotate(Vector3D const& v) const;
  /// The 3x3 matrix R with R * v == rotate(v); the same normalisation and failure
  /// ("Quaternion::rotation_matrix(): zero quaternion").
  Matrix3D rotation_matrix() const;

  /// "(w, x, y, z)" each at width 8, fixed, precision 3; no line end.
  void print(std::ostream& out) const;
  /// w, x, y, z as four doubles.
  void write(Archive& archive) const;
  void read(Archive& archive);

 private:
  double w_ = 1.0;
  double x_ = 0.0;
  double y_ = 0.0;
  double z_ = 0.0;
};

static_assert(sizeof(Quaternion) == 4 * sizeof(double), "a quaternion is four doubles");
static_assert(std::is_trivially_copyable_v<Quaternion>, "a quaternion is copied bitwise");

constexpr Quaternion operator*(Quaternion const& a, Quaternion const& b) noexcept {
  return Quaternion(a) *= b;
}
/// Exact equality of all four components.
constexpr bool operator==(Quaternion const& a, Quaternion const& b) noexcept {
  return a.w() == b.w() && a.x() == b.x() && a.y() == b.y() && a.z() == b.z();
}
constexpr bool operator!=(Quaternion const& a, Quaternion const& b) noexcept { return !(a == b); }
/// Per-component test |a - b| <= tolerance. q and -q are the same rotation but are not
/// equal here; compare rotation matrices to compare rotations.
STRUCTMATH_API bool equals(Quaternion const& a, Quaternion const& b, double tolerance) noexcept;

/// Spherical linear interpolation between the rotations a (t = 0) and b (t = 1) along the
/// shorter arc, at constant angular speed; the result has unit norm. Both are normalised
/// first (failure as for normalize()). When the two rotations are within about 1.6
/// degrees of each other the normalised linear interpolation is used instead, which is
/// indistinguishable there and avoids dividing by a vanishing sine. t outside [0, 1]
/// extrapolates.
STRUCTMATH_API Quaternion slerp(Quaternion const& a, Quaternion const& b, double t);

}  // namespace structmath
