// SPDX-License-Identifier: MIT
// Tolerant comparison of doubles and two small integer helpers.
#pragma once

#include "structmath/export.hpp"

namespace structmath {

/// The usual tolerance of geometric operations: a length at most this counts as zero.
inline constexpr double default_tolerance = 1e-7;

/// The tolerant scalar equals: |a - b| <= tolerance, inclusive at the boundary.
/// Written as two strict rejecting tests, so a NaN anywhere gives true.
constexpr bool equals(double a, double b, double tolerance) noexcept {
  return !(b - tolerance > a) && !(a - tolerance > b);
}

/// True exactly when a < b - tolerance: a value within the tolerance below b is not less.
constexpr bool less_than(double a, double b, double tolerance) noexcept {
  return a < b - tolerance;
}

/// Whether adding or subtracting the tolerance makes a visible difference at the
/// resolution of the value (ten machine epsilons relative to |value|). A zero value,
/// a zero tolerance and a value negligible beside the tolerance are not compatible.
STRUCTMATH_API bool tolerance_compatible(double value, double tolerance) noexcept;

/// base^exponent by square-and-multiply. Throws std::invalid_argument("ipow(): overflow.")
/// when a product x * b fails x <= 2147483646 / b + 1 (integer division). Kept: that bound
/// lets a product reach 2^31 (ipow(2, 31) is INT_MIN, ipow(-2, 31) is -2^31) and wraps
/// the few products just above INT_MAX that it admits, as two's complement does.
STRUCTMATH_API int ipow(int base, unsigned int exponent);

/// Euclid's algorithm. Both arguments must be non-zero.
STRUCTMATH_API unsigned int greatest_common_divisor(unsigned int a, unsigned int b) noexcept;

}  // namespace structmath
