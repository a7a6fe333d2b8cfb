// SPDX-License-Identifier: MIT
// Decimal text of doubles rounded at a chosen digit.
#include "decimal_text.hpp"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace structmath::detail {

namespace {

std::string fixed_printf(double value, int decimals) {
  int const length = std::snprintf(nullptr, 0, "%.*f", decimals, value);
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
  text.pop_back();
  return text;
}

std::string exponent_printf(double value, int decimals) {
  int const length = std::snprintf(nullptr, 0, "%.*e", decimals, value);
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(text.data(), text.size(), "%.*e", decimals, value);
  text.pop_back();
  return text;
}

// "-0.00" and "-0" carry no information: drop the sign.
std::string without_negative_zero(std::string text) {
  if (!text.empty() && text[0] == '-' && text.find_first_of("123456789") == std::string::npos) {
    text.erase(0, 1);
  }
  return text;
}

}  // namespace

double scale_by_power_of_ten(double x, int n) {
  while (n > 300) {
    x *= 1e300;
    n -= 300;
  }
  while (n < -300) {
    x /= 1e300;
    n += 300;
  }
  // Positive powers of ten up to 1e22 are exact, so dividing keeps small
  // negative powers exact too.
  return n >= 0 ? x * std::pow(10.0, n) : x / std::pow(10.0, -n);
}

int decimal_exponent(double x) {
  x = std::fabs(x);
  if (x == 0.0 || !std::isfinite(x)) return 0;  // no decimal exponent; callers avoid these
  auto exponent = static_cast<int>(std::floor(std::log10(x)));
  double const scaled = scale_by_power_of_ten(x, -exponent);
  // Near a power of ten the binary scaling cannot tell the sides apart (1e72 is
  // stored as 9.99...e71 and scales to exactly 1): take the exponent printf gives
  // to 41 significant digits instead, which is exact for every double that lies
  // next to a power of ten (checked over all of them in the tests).
  if (std::fabs(scaled - 1.0) < 1e-9 || std::fabs(scaled - 10.0) < 1e-8 ||
      std::fabs(scaled - 0.1) < 1e-10) {
    std::string const text = exponent_printf(x, 40);
    return std::atoi(text.c_str() + text.find('e') + 1);
  }
  if (scaled >= 10.0) ++exponent;
  if (scaled < 1.0) --exponent;
  return exponent;
}

bool wants_scientific(double magnitude) { return magnitude < 1e-5 || magnitude >= 1e15; }

std::string fixed_text(double value, int last_digit_exponent) {
  if (last_digit_exponent <= 0)
    return without_negative_zero(fixed_printf(value, -last_digit_exponent));
  double const units = std::nearbyint(scale_by_power_of_ten(value, -last_digit_exponent));
  if (units == 0.0) return "0";
  return fixed_printf(units, 0) + std::string(static_cast<std::size_t>(last_digit_exponent), '0');
}

std::string scientific_text(double value, int last_digit_exponent) {
  std::string const zero = "0e" + std::to_string(last_digit_exponent);
  if (value == 0.0) return zero;
  int exponent = decimal_exponent(value);
  if (exponent < last_digit_exponent) {
    // Below the last digit shown: the value rounds to 0 or to one unit of it.
    double const units = std::nearbyint(scale_by_power_of_ten(value, -last_digit_exponent));
    if (units == 0.0) return zero;
    value = scale_by_power_of_ten(units, last_digit_exponent);
    exponent = last_digit_exponent;
  }
  std::string const text = exponent_printf(value, exponent - last_digit_exponent);
  std::size_t const e_position = text.find('e');
  std::string mantissa = text.substr(0, e_position);
  int const printed_exponent = std::atoi(text.c_str() + e_position + 1);
  if (printed_exponent != exponent) {
    // Rounding carried into a new leading digit (9.99e20 to 1.00e21): one more
    // zero keeps the last digit at the same place.
    mantissa += mantissa.find('.') == std::string::npos ? ".0" : "0";
  }
  return mantissa + "e" + std::to_string(printed_exponent);
}

}  // namespace structmath::detail
