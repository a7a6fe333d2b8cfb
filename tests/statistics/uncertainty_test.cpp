// SPDX-License-Identifier: MIT
// Tests of Uncertainty: the 2-to-19 rounding rule, its text and archiving.
#include "structmath/statistics/uncertainty.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

#include "support/statistics_support.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

TEST(Uncertainty, KeepsTwoToNineteenUnitsOfTheLastDigitShown) {
  struct Case {
    double value;
    int exponent;
    int digits;
    char const* text;
  };
  Case const cases[] = {
      {0.0123, -3, 12, "0.012"},
      {0.0234, -2, 2, "0.02"},
      {0.0195, -2, 2, "0.02"},
      {0.01949, -3, 19, "0.019"},
      {0.019, -3, 19, "0.019"},
      {0.02, -2, 2, "0.02"},
      {0.1, -2, 10, "0.10"},
      {0.0999, -2, 10, "0.10"},
      {0.00995, -3, 10, "0.010"},
      {0.0015, -4, 15, "0.0015"},
      {1.0, -1, 10, "1.0"},
      {2.0, 0, 2, "2"},
      {30.0, 1, 3, "30"},
      {56.0, 1, 6, "60"},
      {1250.0, 2, 13, "1300"},
      {1.2e-7, -8, 12, "1.2e-7"},
      {3e20, 20, 3, "3e20"},
      {1.5e16, 15, 15, "1.5e16"},
      {9.96e-6, -6, 10, "0.000010"},
      {9.6e-7, -7, 10, "1.0e-6"},
  };
  for (Case const& c : cases) {
    Uncertainty const u(c.value);
    EXPECT_EQ(u.last_digit_exponent(), c.exponent) << c.value;
    EXPECT_EQ(u.digits(), c.digits) << c.value;
    EXPECT_EQ(u.to_string(), c.text) << c.value;
    EXPECT_DOUBLE_EQ(u.rounded(), c.digits * std::pow(10.0, c.exponent)) << c.value;
  }
}

TEST(Uncertainty, RoundsAtTheNineteenTwentyBoundaryOverManyDecades) {
  for (int exponent = -12; exponent <= 12; ++exponent) {
    for (int units = 10; units <= 99; ++units) {
      // Exactly `units` of 10^exponent: up to 19 they stay, from 20 on they
      // become (units + 5) / 10 of the next digit.
      double const value = units * std::pow(10.0, exponent);
      Uncertainty const u(value);
      int const expected = units <= 19 ? units : (units + 5) / 10;
      EXPECT_EQ(u.digits(), expected) << value;
      EXPECT_EQ(u.last_digit_exponent(), units <= 19 ? exponent : exponent + 1) << value;
    }
    // Half a unit above 19 rounds to 20 and moves up; just below it does not.
    EXPECT_EQ(Uncertainty(19.5 * std::pow(10.0, exponent)).digits(), 2) << exponent;
    EXPECT_EQ(Uncertainty(19.49 * std::pow(10.0, exponent)).digits(), 19) << exponent;
  }
}

TEST(Uncertainty, ZeroIsExactAndInvalidValuesAreRejected) {
  Uncertainty const zero;
  EXPECT_TRUE(zero.is_zero());
  EXPECT_EQ(zero.digits(), 0);
  EXPECT_EQ(zero.rounded(), 0.0);
  EXPECT_EQ(zero.to_string(), "0");
  std::string const message = "Uncertainty: standard uncertainty must be finite and not negative";
  for (double bad :
       {-1e-9, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    expect_throw_message<std::invalid_argument>([bad] { Uncertainty{bad}; }, message);
  }
  EXPECT_EQ(Uncertainty(std::numeric_limits<double>::denorm_min()).digits(), 5);
  EXPECT_EQ(Uncertainty(std::numeric_limits<double>::max()).digits(), 18);  // 1.797e308
}

TEST(Uncertainty, ArchiveRoundTripRejectsNegativeValues) {
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
