// SPDX-License-Identifier: MIT
// Tolerance compatibility, integer powers with an overflow check, and Euclid's gcd.
#include "structmath/numeric/tolerance.hpp"

#include <cmath>
#include <stdexcept>

namespace structmath {

namespace {

// Two numbers are indistinguishable at resolution r when neither exceeds the other by r.
bool indistinguishable(double x, double y, double r) { return !(x - r > y) && !(y - r > x); }

}  // namespace

bool tolerance_compatible(double value, double tolerance) noexcept {
  double const r = std::fabs(value) * 2.220446049250313e-16 * 10.0;
  if (indistinguishable(value, value + tolerance, r)) return false;
  if (indistinguishable(value, value - tolerance, r)) return false;
  if (indistinguishable(tolerance, value + tolerance, r)) return false;
  if (indistinguishable(tolerance, value - tolerance, r)) return false;
  return true;
}

int ipow(int base, unsigned int exponent) {
  if (exponent == 0) return 1;
  if (base == 0) return 0;
  if (base == 1) return 1;
  if (base == -1) return (exponent % 2 == 1) ? -1 : 1;

  // Kept: the ceiling-style bound x <= 2147483646 / b + 1 callers know admits products a
  // little above INT_MAX (2^31 itself among them). Unsigned arithmetic makes those wrap
  // like two's complement instead of being undefined.
  unsigned int b = static_cast<unsigned int>(base < 0 ? -base : base);
  bool negate = false;
  unsigned int accumulator = 1;
  if (base < 0 && exponent % 2 == 1) {
    negate = true;
    accumulator = b;
    --exponent;
  }
  auto check = [](unsigned int x, unsigned int by) {
    if (x > 2147483646U / by + 1U) throw std::invalid_argument("ipow(): overflow.");
  };
  while (exponent != 0) {
    if (exponent % 2 == 0) {
      exponent /= 2;
      check(b, b);
      b *= b;
    } else {
      check(accumulator, b);
      accumulator *= b;
      --exponent;
    }
  }
  return static_cast<int>(negate ? 0U - accumulator : accumulator);
}

unsigned int greatest_common_divisor(unsigned int a, unsigned int b) noexcept {
  unsigned int dividend = a > b ? a : b;
  unsigned int divisor = a > b ? b : a;
  unsigned int remainder = dividend % divisor;
  while (remainder != 0) {
    dividend = divisor;
    divisor = remainder;
    remainder = dividend % divisor;
  }
  return divisor;
}

}  // namespace structmath
