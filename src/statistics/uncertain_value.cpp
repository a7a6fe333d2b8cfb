// SPDX-License-Identifier: MIT
// UncertainValue: the parenthesised-uncertainty notation and first-order propagation.
#include "structmath/statistics/uncertain_value.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <ostream>
#include <stdexcept>

#include "decimal_text.hpp"
#include "structmath/core/text_conversion.hpp"

namespace structmath {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Digits with an exponent and no decimal point, so strtod does not depend on the
// locale. Unlike from_chars it rounds what underflows to the nearest subnormal
// or zero instead of failing.
bool convert(std::string const& text, double& value) {
  char* end = nullptr;
  value = std::strtod(text.c_str(), &end);
  return end == text.c_str() + text.size() && std::isfinite(value);
}

// digits - 1, for decimal digits that are not all zero.
std::string less_one(std::string digits) {
  std::size_t i = digits.size() - 1;
  while (digits[i] == '0') digits[i--] = '9';
  --digits[i];
  return digits;
}

// The double for digits x 10^scale, the digits checked against the grammar; false
// when out of range. Printing the largest double rounded to its uncertainty can
// round it up past itself (1.797...e308(2) to "1.80e308(2)"), so a rounded text
// whose last digit's interval still reaches into range stands for the largest
// double.
bool to_double(std::string const& digits, long scale, bool rounded, double& value) {
  std::size_t const first_significant = digits.find_first_not_of('0');
  if (convert(digits + "e" + std::to_string(scale), value)) {
    // Lost entirely below the smallest subnormal.
    return value != 0.0 || first_significant == std::string::npos;
  }
  if (!rounded || first_significant == std::string::npos) return false;
  // The interval's lower end, (digits - 1/2) x 10^scale, written as
  // ((digits - 1) x 10 + 5) x 10^(scale - 1).
  double lower = 0.0;
  if (!convert(less_one(digits) + "5e" + std::to_string(scale - 1), lower)) return false;
  value = std::numeric_limits<double>::max();
  return true;
}

// Exponents beyond this are out of the range of double whatever the mantissa.
constexpr long kLargestExponent = 100000;

}  // namespace

UncertainValue::UncertainValue(double value, double standard_uncertainty)
    : UncertainValue(value, Uncertainty(standard_uncertainty)) {}

UncertainValue::UncertainValue(double value, Uncertainty uncertainty)
    : value_(value), uncertainty_(uncertainty) {
  if (!std::isfinite(value)) throw std::invalid_argument("UncertainValue: value must be finite");
}

UncertainValue UncertainValue::parse(std::string const& text) {
  auto const fail = [&text]() -> UncertainValue {
    throw std::invalid_argument("UncertainValue::parse(): cannot convert '" + text +
                                "' to a value with uncertainty");
  };
  std::size_t i = 0;
  std::size_t end = text.size();
  while (i < end && is_blank(text[i])) ++i;
  while (end > i && is_blank(text[end - 1])) --end;

  bool negative = false;
  if (i < end && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  std::string mantissa;  // the digits without the decimal point
  std::size_t mantissa_digits = 0;
  std::size_t fraction_digits = 0;
  while (i < end && is_digit(text[i])) {
    mantissa += text[i++];
    ++mantissa_digits;
  }
  if (i < end && text[i] == '.') {
    ++i;
    while (i < end && is_digit(text[i])) {
      mantissa += text[i++];
      ++mantissa_digits;
      ++fraction_digits;
    }
  }
  if (mantissa_digits == 0) return fail();

  long exponent = 0;
  if (i < end && (text[i] == 'e' || text[i] == 'E')) {
    ++i;
    bool negative_exponent = false;
    if (i < end && (text[i] == '+' || text[i] == '-')) negative_exponent = text[i++] == '-';
    if (i == end || !is_digit(text[i])) return fail();
    while (i < end && is_digit(text[i])) {
      exponent = std::min(kLargestExponent, exponent * 10 + (text[i++] - '0'));
    }
    if (exponent == kLargestExponent) return fail();
    if (negative_exponent) exponent = -exponent;
  }

  std::string uncertainty_digits;
  if (i < end && text[i] == '(') {
    ++i;
    while (i < end && is_digit(text[i])) uncertainty_digits += text[i++];
    if (uncertainty_digits.empty() || i == end || text[i] != ')') return fail();
    ++i;
  }
  if (i != end) return fail();

  // Both numbers count in units of the mantissa's last digit.
  long const scale = exponent - static_cast<long>(fraction_digits);
  bool const rounded = !uncertainty_digits.empty();
  double value = 0.0;
  if (!to_double(mantissa, scale, rounded, value)) return fail();
  double uncertainty = 0.0;
  if (rounded && !to_double(uncertainty_digits, scale, rounded, uncertainty)) return fail();
  return UncertainValue(negative ? -value : value, uncertainty);
}

UncertainValue UncertainValue::result(double value, double standard_uncertainty) {
  if (!std::isfinite(value) || !std::isfinite(standard_uncertainty)) {
    throw std::overflow_error("UncertainValue: result out of range");
  }
  return UncertainValue(value, standard_uncertainty);
}

UncertainValue& UncertainValue::operator+=(UncertainValue const& other) {
  *this = result(value_ + other.value_,
                 std::hypot(standard_uncertainty(), other.standard_uncertainty()));
  return *this;
}

UncertainValue& UncertainValue::operator-=(UncertainValue const& other) {
  *this = result(value_ - other.value_,
                 std::hypot(standard_uncertainty(), other.standard_uncertainty()));
  return *this;
}

UncertainValue& UncertainValue::operator*=(UncertainValue const& other) {
  double const a = value_;
  double const b = other.value_;
  *this = result(a * b, std::hypot(b * standard_uncertainty(), a * other.standard_uncertainty()));
  return *this;
}

UncertainValue& UncertainValue::operator/=(UncertainValue const& other) {
  double const a = value_;
  double const b = other.value_;
  if (b == 0.0) throw std::invalid_argument("UncertainValue: division by zero");
  double const q = a / b;
  *this = result(q, std::hypot(standard_uncertainty() / b, q * other.standard_uncertainty() / b));
  return *this;
}

UncertainValue& UncertainValue::operator*=(double k) {
  *this = result(value_ * k, std::fabs(k) * standard_uncertainty());
  return *this;
}

UncertainValue& UncertainValue::operator/=(double k) {
  if (k == 0.0) throw std::invalid_argument("UncertainValue: division by zero");
  *this = result(value_ / k, standard_uncertainty() / std::fabs(k));
  return *this;
}

std::string UncertainValue::to_string() const {
  if (uncertainty_.is_zero()) return double_to_string(value_);
  int const exponent = uncertainty_.last_digit_exponent();
  int const digits = uncertainty_.digits();
  double const rounded = uncertainty_.rounded();
  // Choose the notation by the numbers as shown, so that reading the text back
  // and printing it again gives the same text.
  double const shown_value = detail::scale_by_power_of_ten(
      std::nearbyint(detail::scale_by_power_of_ten(value_, -exponent)), exponent);
  if (detail::wants_scientific(std::max(std::fabs(shown_value), rounded))) {
    return detail::scientific_text(value_, exponent) + "(" + std::to_string(digits) + ")";
  }
  // Above the units the value shows zeros to the units, so the uncertainty is
  // written in units too: "12340(30)".
  std::string const shown = exponent > 0 ? detail::fixed_text(rounded, 0) : std::to_string(digits);
  return detail::fixed_text(value_, exponent) + "(" + shown + ")";
}

void UncertainValue::print(std::ostream& os) const { os << to_string(); }

void UncertainValue::write(Archive& archive) const { archive << value_ << uncertainty_.value(); }

void UncertainValue::read(Archive& archive) {
  double value = 0.0;
  double uncertainty = 0.0;
  archive >> value >> uncertainty;
  if (!std::isfinite(value) || !std::isfinite(uncertainty) || uncertainty < 0.0) {
    throw std::runtime_error("UncertainValue::read: invalid value in archive");
  }
  value_ = value;
  uncertainty_ = Uncertainty(uncertainty);
}

std::ostream& operator<<(std::ostream& os, UncertainValue const& v) {
  v.print(os);
  return os;
}

}  // namespace structmath
