// SPDX-License-Identifier: MIT
// Tests of Uncertainty: the 2-to-19 rounding rule, its text and archiving.
#include "structmath/statistics/uncertainty.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <utility>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

TEST(Uncertainty, PrintsTwoToNineteenUnitsOfTheLastDigitShown) {
  // 0.0234 would be 23 units, so it is shown one digit earlier; 0.0195 counts as
  // the decimal half it is written as; 0.0999 rounds to 100 units, shown as 10.
  double const tiny = std::numeric_limits<double>::denorm_min();
  std::pair<double, char const*> const cases[] = {
      {0.0123, "0.012"},     {0.0234, "0.02"},   {0.0195, "0.02"}, {0.0999, "0.10"},
      {0.00995, "0.010"},    {1.0, "1.0"},       {30.0, "30"},     {56.0, "60"},
      {1250.0, "1300"},      {1.2e-7, "1.2e-7"}, {3e20, "3e20"},   {1.5e16, "1.5e16"},
      {9.96e-6, "0.000010"}, {9.6e-7, "1.0e-6"}, {0.0, "0"},       {tiny, "5e-324"}};
  for (auto const& [value, text] : cases) {
    Uncertainty const u(value);
    EXPECT_EQ(u.to_string(), text) << value;
    EXPECT_DOUBLE_EQ(u.rounded(), std::strtod(text, nullptr)) << value;
  }
}

TEST(Uncertainty, PrintsTheLargestDoubleInScientificNotation) {
  Uncertainty const u(std::numeric_limits<double>::max());  // 1.797e308
  EXPECT_EQ(u.digits(), 18);
  EXPECT_EQ(u.to_string(), "1.8e308");
}

TEST(Uncertainty, RoundsAtTheNineteenTwentyBoundaryOverManyDecades) {
  for (int exponent = -12; exponent <= 12; ++exponent) {
    // Exactly `units` of 10^exponent: up to 19 they stay, from 20 on they
    // become (units + 5) / 10 of the next digit.
    for (int units = 10; units <= 99; ++units) {
      Uncertainty const u(units * std::pow(10.0, exponent));
      EXPECT_EQ(u.digits(), units <= 19 ? units : (units + 5) / 10) << units << "e" << exponent;
      EXPECT_EQ(u.last_digit_exponent(), units <= 19 ? exponent : exponent + 1) << units;
    }
    // Half a unit above 19 rounds to 20 and moves up; just below it does not.
    EXPECT_EQ(Uncertainty(19.5 * std::pow(10.0, exponent)).digits(), 2) << exponent;
    EXPECT_EQ(Uncertainty(19.49 * std::pow(10.0, exponent)).digits(), 19) << exponent;
  }
}

TEST(Uncertainty, NegativeAndNonFiniteValuesAreRejectedAlsoFromArchives) {
  for (double bad :
       {-1e-9, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    expect_throw_message<std::invalid_argument>(
        [bad] { Uncertainty{bad}; },
        "Uncertainty: standard uncertainty must be finite and not negative");
  }
  Archive archive;
  Uncertainty(0.0123).write(archive);
  archive << -0.5;
  Uncertainty u;
  u.read(archive);
  EXPECT_EQ(u.value(), 0.0123);
  expect_throw_message<std::runtime_error>(
      [&] { u.read(archive); }, "Uncertainty::read: invalid standard uncertainty in archive");
  EXPECT_EQ(u.value(), 0.0123);
}

}  // namespace
}  // namespace structmath
