// SPDX-License-Identifier: MIT
// UncertainValue: a measured value with its standard uncertainty, as in 1.234(5).
#pragma once

#include <iosfwd>
#include <string>

#include "structmath/core/archive.hpp"
#include "structmath/export.hpp"
#include "structmath/statistics/uncertainty.hpp"

namespace structmath {

/// A finite value with a standard uncertainty (zero for an exact value).
///
/// Text form. The digits in parentheses are the uncertainty in units of the last
/// digit of the mantissa: "1.234(5)" is 1.234 with uncertainty 0.005, "-0.5(12)"
/// is -0.5 with 1.2, "12(3)" is 12 with 3, "1.5e-3(2)" is 0.0015 with 0.0002,
/// ".5(1)" is 0.5 with 0.1. Without parentheses ("0.123") the uncertainty is zero.
/// Parsing accepts an optional sign, digits with an optional decimal point (at
/// least one digit in all), an optional exponent (e or E, optional sign, digits),
/// then optionally one or more digits in parentheses; blanks are allowed around
/// the whole text but not inside it.
///
/// Printing rounds the uncertainty by the rule of `Uncertainty` (2 to 19 units of
/// the last digit shown) and the value at the same digit: 1.23456 with 0.0123
/// prints "1.235(12)", with 0.0234 "1.23(2)". When the last digit shown is above
/// the units, the value is written with zeros to the units and the uncertainty in
/// full: 12345 with 30 prints "12340(30)". Values (or uncertainties) below 1e-5
/// or from 1e15 on are printed in scientific notation with the uncertainty after
/// the exponent, "-2.5e-7(3)", "6.02214076e23(12)". An exact value prints as the
/// shortest text that reads back as the same double, "0.123". Parsing what is
/// printed gives back the printed value and uncertainty.
///
/// Arithmetic treats the operands as independent and propagates uncertainties
/// to first order: for a sum or difference u = sqrt(ua^2 + ub^2); for a product
/// u = sqrt((b ua)^2 + (a ub)^2); for a quotient u = sqrt((ua / b)^2 +
/// (a ub / b^2)^2); scaling by a number k gives |k| u. So a - a has uncertainty
/// ua sqrt(2): correlated quantities need the caller's own treatment.
class STRUCTMATH_API UncertainValue {
 public:
  /// Zero, exact.
  constexpr UncertainValue() noexcept = default;
  /// Throws std::invalid_argument "UncertainValue: value must be finite" for an
  /// infinite or NaN value, and as `Uncertainty` for a bad uncertainty.
  UncertainValue(double value, double standard_uncertainty = 0.0);
  UncertainValue(double value, Uncertainty uncertainty);

  /// Reads the text form above. Throws std::invalid_argument
  /// "UncertainValue::parse(): cannot convert 'text' to a value with uncertainty"
  /// for malformed text or numbers out of the range of double. What print() writes
  /// reads back to a value and uncertainty that print the same text, for every
  /// finite double; a rounded text just above the largest double (the largest
  /// double printed to a few digits, "1.80e308(2)") stands for the largest double.
  static UncertainValue parse(std::string const& text);

  double value() const noexcept { return value_; }
  double standard_uncertainty() const noexcept { return uncertainty_.value(); }
  Uncertainty uncertainty() const noexcept { return uncertainty_; }
  bool has_uncertainty() const noexcept { return !uncertainty_.is_zero(); }

  /// Throw std::overflow_error "UncertainValue: result out of range" when a result
  /// is not finite, and std::invalid_argument "UncertainValue: division by zero"
  /// for a zero divisor; the object is then unchanged.
  UncertainValue& operator+=(UncertainValue const& other);
  UncertainValue& operator-=(UncertainValue const& other);
  UncertainValue& operator*=(UncertainValue const& other);
  UncertainValue& operator/=(UncertainValue const& other);
  UncertainValue& operator*=(double k);
  UncertainValue& operator/=(double k);

  void print(std::ostream& os) const;
  std::string to_string() const;
  /// Streams value and standard uncertainty as two doubles.
  void write(Archive& archive) const;
  /// Throws std::runtime_error "UncertainValue::read: invalid value in archive"
  /// for what the constructor rejects; the object is then unchanged.
  void read(Archive& archive);

 private:
  static UncertainValue result(double value, double standard_uncertainty);

  double value_ = 0.0;
  Uncertainty uncertainty_;
};

inline UncertainValue operator+(UncertainValue const& v) { return v; }
/// The negated value with the same uncertainty.
inline UncertainValue operator-(UncertainValue const& v) {
  return UncertainValue(-v.value(), v.uncertainty());
}
inline UncertainValue operator+(UncertainValue a, UncertainValue const& b) { return a += b; }
inline UncertainValue operator-(UncertainValue a, UncertainValue const& b) { return a -= b; }
inline UncertainValue operator*(UncertainValue a, UncertainValue const& b) { return a *= b; }
inline UncertainValue operator/(UncertainValue a, UncertainValue const& b) { return a /= b; }
inline UncertainValue operator*(UncertainValue a, double k) { return a *= k; }
inline UncertainValue operator*(double k, UncertainValue a) { return a *= k; }
inline UncertainValue operator/(UncertainValue a, double k) { return a /= k; }

STRUCTMATH_API std::ostream& operator<<(std::ostream& os, UncertainValue const& v);

}  // namespace structmath
