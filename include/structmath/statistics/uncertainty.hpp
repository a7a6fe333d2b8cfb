// SPDX-License-Identifier: MIT
// Uncertainty: a standard uncertainty and the rule for how many digits it shows.
#pragma once

#include <iosfwd>
#include <string>

#include "structmath/core/archive.hpp"
#include "structmath/export.hpp"

namespace structmath {

/// A standard uncertainty: a finite, non-negative double.
///
/// Rounding rule: an uncertainty is shown as a whole number of units of its last
/// digit, between 2 and 19 units. 0.0123 is 12 units of 0.001; 0.0234 would be
/// 23, so it is shown one digit earlier as 2 units of 0.01; 0.0195 rounds to 20
/// units of 0.001 and so becomes 2 units of 0.01. Halves round up, judged on the
/// decimal value the double stands for (0.0195 counts as a half).
///
/// Text form (`print`): the rounded uncertainty as a decimal number, "0.012",
/// "0.02", "30", "0" for zero; below 1e-5 and from 1e15 on in scientific
/// notation with a plain exponent, "1.2e-7".
class STRUCTMATH_API Uncertainty {
 public:
  /// Zero: an exact value.
  constexpr Uncertainty() noexcept = default;
  /// Throws std::invalid_argument "Uncertainty: standard uncertainty must be finite
  /// and not negative" for a negative, infinite or NaN value.
  explicit Uncertainty(double value);

  double value() const noexcept { return value_; }
  bool is_zero() const noexcept { return value_ == 0.0; }

  /// The power of ten of the last digit shown: -3 for 0.0123, -2 for 0.0234.
  /// 0 for a zero uncertainty.
  int last_digit_exponent() const;
  /// The units of the last digit shown, 2 to 19: 12 for 0.0123, 2 for 0.0234.
  /// 0 for a zero uncertainty.
  int digits() const;
  /// digits() x 10^last_digit_exponent(): 0.012 for 0.0123, 0.02 for 0.0234.
  double rounded() const;

  void print(std::ostream& os) const;
  std::string to_string() const;
  /// Streams the value as one double.
  void write(Archive& archive) const;
  /// Throws std::runtime_error "Uncertainty::read: invalid standard uncertainty in
  /// archive" for a value the constructor rejects; the object is then unchanged.
  void read(Archive& archive);

 private:
  struct Shown {
    int exponent;
    int digits;
  };
  Shown shown() const;

  double value_ = 0.0;
};

STRUCTMATH_API std::ostream& operator<<(std::ostream& os, Uncertainty const& u);

}  // namespace structmath
