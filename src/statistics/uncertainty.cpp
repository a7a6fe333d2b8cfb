// SPDX-License-Identifier: MIT
// Uncertainty: validation, the 2-to-19 rounding rule, printing and archiving.
#include "structmath/statistics/uncertainty.hpp"

#include <cmath>
#include <ostream>
#include <stdexcept>

#include "decimal_text.hpp"

namespace structmath {

namespace {

bool valid(double value) { return std::isfinite(value) && value >= 0.0; }

// Units of 10^exponent in value, halves up. The nudge of a few ulps makes a
// decimal half such as 0.0195 (stored just below it) round up as written.
double units(double value, int exponent) {
  double const scaled = detail::scale_by_power_of_ten(value, -exponent);
  return std::floor(scaled * (1.0 + 8.0 * 2.220446049250313e-16) + 0.5);
}

}  // namespace

Uncertainty::Uncertainty(double value) : value_(value) {
  if (!valid(value)) {
    throw std::invalid_argument(
        "Uncertainty: standard uncertainty must be finite and not negative");
  }
}

Uncertainty::Shown Uncertainty::shown() const {
  if (value_ == 0.0) return {0, 0};
  // Start with two significant digits, 10 to 99 units.
  int exponent = detail::decimal_exponent(value_) - 1;
  double count = units(value_, exponent);
  if (count >= 100.0) count = units(value_, ++exponent);  // 99.5 and up
  if (count < 10.0) count = units(value_, --exponent);    // guard against log10 rounding
  // 20 units and more are shown one digit earlier, as 2 to 10 units.
  if (count > 19.0) count = units(value_, ++exponent);
  return {exponent, static_cast<int>(count)};
}

int Uncertainty::last_digit_exponent() const { return shown().exponent; }

int Uncertainty::digits() const { return shown().digits; }

double Uncertainty::rounded() const {
  Shown const s = shown();
  return detail::scale_by_power_of_ten(s.digits, s.exponent);
}

void Uncertainty::print(std::ostream& os) const { os << to_string(); }

std::string Uncertainty::to_string() const {
  if (value_ == 0.0) return "0";
  Shown const s = shown();
  double const r = detail::scale_by_power_of_ten(s.digits, s.exponent);
  if (!detail::wants_scientific(r)) return detail::fixed_text(r, s.exponent);
  // Written from the digits themselves: near the largest double the rounded
  // value (1.8e308 for 1.797e308) is not representable.
  std::string const d = std::to_string(s.digits);
  return d.size() == 1 ? d + "e" + std::to_string(s.exponent)
                       : d.substr(0, 1) + "." + d.substr(1) + "e" + std::to_string(s.exponent + 1);
}

void Uncertainty::write(Archive& archive) const { archive << value_; }

void Uncertainty::read(Archive& archive) {
  double value = 0.0;
  archive >> value;
  if (!valid(value)) {
    throw std::runtime_error("Uncertainty::read: invalid standard uncertainty in archive");
  }
  value_ = value;
}

std::ostream& operator<<(std::ostream& os, Uncertainty const& u) {
  u.print(os);
  return os;
}

}  // namespace structmath
