// SPDX-License-Identifier: MIT
// Transformation: an affine map of space, a 3x3 matrix followed by a translation.
#pragma once

#include <iosfwd>
#include <type_traits>

#include "structmath/export.hpp"
#include "structmath/numeric/matrix.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

class Archive;

/// The map p -> R p + t. R is usually a rotation, but nothing requires it: scaled,
/// sheared and improper matrices work as well, and inverse() inverts them in general.
///
/// Composition reads right to left: (a * b) * p == a * (b * p), so b acts first.
/// Applied to a Vector3D only R acts, since displacements do not translate.
class STRUCTMATH_API Transformation {
 public:
  /// The identity.
  constexpr Transformation() noexcept = default;
  /// Nine matrix elements in row-major order, then the translation x, y, z.
  constexpr Transformation(double r11, double r12, double r13, double r21, double r22, double r23,
                           double r31, double r32, double r33, double tx, double ty,
                           double tz) noexcept
      : rotation_(r11, r12, r13, r21, r22, r23, r31, r32, r33), translation_(tx, ty, tz) {}
  constexpr Transformation(Matrix3D const& rotation, Vector3D const& translation) noexcept
      : rotation_(rotation), translation_(translation) {}

  static constexpr Transformation identity() noexcept { return Transformation(); }

  /// The matrix R (named for the usual case; it need not be orthogonal).
  constexpr Matrix3D const& rotation() const noexcept { return rotation_; }
  constexpr Vector3D const& translation() const noexcept { return translation_; }

  /// The map undoing this one: (R^-1, -R^-1 t), R inverted by Invert. Throws
  /// std::runtime_error("Singular Matrix3D in Matrix3D::inverse()") when det R is 0.0.
  Transformation inverse() const;

  /// "rotation: " and the first row, two further rows aligned under it, then
  /// "translation: " and t; every number at width 8, fixed, precision 3, each line ended
  /// with std::endl. The stream keeps the fixed and precision settings.
  void print(std::ostream& out) const;
  /// The nine matrix elements row-major, then t as x, y, z.
  void write(Archive& archive) const;
  void read(Archive& archive);

 private:
  Matrix3D rotation_;
  Vector3D translation_;
};

static_assert(sizeof(Transformation) == 12 * sizeof(double), "twelve doubles");
static_assert(std::is_trivially_copyable_v<Transformation>, "copied bitwise");

/// b first, then a: (a * b) * p == a * (b * p).
constexpr Transformation operator*(Transformation const& a, Transformation const& b) noexcept {
  return Transformation(a.rotation() * b.rotation(),
                        a.rotation() * b.translation() + a.translation());
}
/// R p + t.
constexpr Point operator*(Transformation const& t, Point const& p) noexcept {
  return t.rotation() * p + t.translation();
}
/// R v: a displacement is not translated.
constexpr Vector3D operator*(Transformation const& t, Vector3D const& v) noexcept {
  return t.rotation() * v;
}

/// Exact equality of the twelve numbers.
STRUCTMATH_API bool operator==(Transformation const& a, Transformation const& b) noexcept;
inline bool operator!=(Transformation const& a, Transformation const& b) noexcept {
  return !(a == b);
}
/// Every matrix element and translation component within the tolerance.
STRUCTMATH_API bool equals(Transformation const& a, Transformation const& b,
                           double tolerance) noexcept;

}  // namespace structmath
