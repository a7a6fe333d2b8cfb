// SPDX-License-Identifier: MIT
// Decimal text of doubles rounded at a chosen digit (internal to the library).
#pragma once

#include <string>

namespace structmath::detail {

/// x times 10^n without overflowing the power for large |n|.
double scale_by_power_of_ten(double x, int n);
/// floor(log10(|x|)) for a finite non-zero x, corrected for rounding in log10.
int decimal_exponent(double x);
/// Whether numbers of this size are written in scientific notation: below 1e-5
/// or from 1e15 on.
bool wants_scientific(double magnitude);
/// value rounded at the digit worth 10^last_digit_exponent in fixed notation:
/// "0.0123", "-12", "12340" (digits above the decimal point shown as zeros).
std::string fixed_text(double value, int last_digit_exponent);
/// The same in scientific notation with a plain exponent: "1.234e-7", "6.0e23",
/// "0e-20" when the value rounds to zero.
std::string scientific_text(double value, int last_digit_exponent);

}  // namespace structmath::detail
