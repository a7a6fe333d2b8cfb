// SPDX-License-Identifier: MIT
// Angle: an angle held in radians, with tolerant comparison and direction differences.
#pragma once

#include <cmath>
#include <iosfwd>
#include <type_traits>

#include "structmath/export.hpp"
#include "structmath/numeric/tolerance.hpp"

namespace structmath {

class Archive;

/// An angle stored as one double in radians. Nothing normalises it implicitly: it may
/// hold any real number until modulo() is called. Comparisons use the raw radians.
class STRUCTMATH_API Angle {
 public:
  static constexpr double degrees_to_radians = 0.017453292519943295;  ///< pi / 180
  static constexpr double radians_to_degrees = 57.29577951308232;     ///< 180 / pi
  static constexpr double two_pi = 6.283185307179586;

  /// Explicit, so that a double never turns into an Angle by accident (sin(double)
  /// inside this namespace must not pick sin(Angle)).
  constexpr explicit Angle(double radians = 0.0) noexcept : value_(radians) {}
  static constexpr Angle from_degrees(double degrees) noexcept {
    return Angle(degrees * degrees_to_radians);
  }

  constexpr double radians() const noexcept { return value_; }
  constexpr double degrees() const noexcept { return value_ * radians_to_degrees; }

  /// Normalises into [0, 2pi) by repeated addition or subtraction of 2pi, so 2pi and
  /// -2pi become 0 (kept instead of a floating remainder: the rounding of each step is
  /// part of the result). NaN stays NaN; an infinity becomes NaN, and a value beyond
  /// 2^24 turns is first reduced by a floating remainder, where the loop would not end
  /// or would take too long.
  void modulo() noexcept;

  constexpr bool operator==(Angle const& other) const noexcept { return value_ == other.value_; }
  constexpr bool operator!=(Angle const& other) const noexcept { return !(*this == other); }
  constexpr bool operator>(Angle const& other) const noexcept { return value_ > other.value_; }
  constexpr bool operator<(Angle const& other) const noexcept { return other.value_ > value_; }
  /// Written as negations of '>': with a NaN operand '<=' and '>=' are true.
  constexpr bool operator<=(Angle const& other) const noexcept { return !(*this > other); }
  constexpr bool operator>=(Angle const& other) const noexcept { return !(other > *this); }

  constexpr Angle& operator+=(Angle const& other) noexcept {
    value_ += other.value_;
    return *this;
  }
  constexpr Angle& operator-=(Angle const& other) noexcept {
    value_ -= other.value_;
    return *this;
  }
  constexpr Angle& operator*=(double factor) noexcept {
    value_ *= factor;
    return *this;
  }
  /// No check for zero: IEEE arithmetic applies.
  constexpr Angle& operator/=(double divisor) noexcept {
    value_ /= divisor;
    return *this;
  }

  /// Writes the value in degrees as double_to_string gives it: no unit, no newline.
  void print(std::ostream& out) const;
  /// One double, the radians.
  void write(Archive& archive) const;
  void read(Archive& archive);

  /// Throws std::invalid_argument("Angle::asin() : argument must be between -1.0 and
  /// +1.0.") when x < -1 or x > 1; exactly +-1 are accepted, NaN gives NaN.
  static Angle asin(double x);
  /// As asin, with "Angle::acos() : argument must be between -1.0 and +1.0.".
  static Angle acos(double x);
  static Angle atan(double x) noexcept { return Angle(std::atan(x)); }
  /// The first argument is the ordinate: atan2(1, 0) is pi/2.
  static Angle atan2(double y, double x) noexcept { return Angle(std::atan2(y, x)); }

 private:
  double value_;
};

static_assert(sizeof(Angle) == sizeof(double), "an Angle is one double");
static_assert(std::is_trivially_copyable_v<Angle>, "Angle is copied bitwise");

STRUCTMATH_API std::ostream& operator<<(std::ostream& out, Angle const& angle);

constexpr Angle operator+(Angle const& a) noexcept { return a; }
constexpr Angle operator-(Angle const& a) noexcept { return Angle(-a.radians()); }
constexpr Angle operator+(Angle const& a, Angle const& b) noexcept { return Angle(a) += b; }
constexpr Angle operator-(Angle const& a, Angle const& b) noexcept { return Angle(a) -= b; }
constexpr Angle operator*(Angle const& a, double f) noexcept { return Angle(a) *= f; }
constexpr Angle operator*(double f, Angle const& a) noexcept { return Angle(a) *= f; }
constexpr Angle operator/(Angle const& a, double d) noexcept { return Angle(a) /= d; }
/// The ratio of the two radian values.
constexpr double operator/(Angle const& a, Angle const& b) noexcept {
  return a.radians() / b.radians();
}

inline double sin(Angle const& a) noexcept { return std::sin(a.radians()); }
inline double cos(Angle const& a) noexcept { return std::cos(a.radians()); }
inline double tan(Angle const& a) noexcept { return std::tan(a.radians()); }

/// |a - b| <= tolerance on the raw radians, inclusive; no wrap-around (359 and 1 degrees
/// differ by 358); a NaN anywhere gives true.
constexpr bool equals(Angle const& a, Angle const& b, Angle const& tolerance) noexcept {
  return equals(a.radians(), b.radians(), tolerance.radians());
}

/// The unsigned smaller angle between two directions, in [0, pi]; symmetric.
STRUCTMATH_API Angle minimum_difference(Angle const& a, Angle const& b);
/// 2pi minus minimum_difference, in [pi, 2pi].
STRUCTMATH_API Angle maximum_difference(Angle const& a, Angle const& b);

}  // namespace structmath
