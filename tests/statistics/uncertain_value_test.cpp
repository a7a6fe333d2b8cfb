// SPDX-License-Identifier: MIT
// Tests of UncertainValue: parsing and printing the notation, and propagation.
#include "structmath/statistics/uncertain_value.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>

#include "support/statistics_support.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

TEST(UncertainValue, ParsesAndPrintsRealWorldNotations) {
  struct Case {
    char const* text;
    double value;
    double uncertainty;
    char const* printed;
  };
  Case const cases[] = {
      {"1.234(5)", 1.234, 0.005, "1.234(5)"},
      {"-0.5(12)", -0.5, 1.2, "-0.5(12)"},
      {"12(3)", 12.0, 3.0, "12(3)"},
      {"1.5e-3(2)", 1.5e-3, 2e-4, "0.0015(2)"},
      {".5(1)", 0.5, 0.1, "0.50(10)"},
      {"0.123", 0.123, 0.0, "0.123"},
      {"5.4309(20)", 5.4309, 0.002, "5.431(2)"},
      {"3.8970(15)", 3.897, 0.0015, "3.8970(15)"},
      {"10.234(19)", 10.234, 0.019, "10.234(19)"},
      {"1234(56)", 1234.0, 56.0, "1230(60)"},
      {"1530(40)", 1530.0, 40.0, "1530(40)"},
      {"298.15(2)", 298.15, 0.02, "298.15(2)"},
      {"0.0(2)", 0.0, 0.2, "0.0(2)"},
      {"+1.0(5)", 1.0, 0.5, "1.0(5)"},
      {"12.(3)", 12.0, 3.0, "12(3)"},
      {"  7.25(4)\t", 7.25, 0.04, "7.25(4)"},
      {"2.5E+2(1)", 250.0, 10.0, "250(10)"},
      {"-2.5e-7(3)", -2.5e-7, 3e-8, "-2.5e-7(3)"},
      {"6.02214076e23(12)", 6.02214076e23, 1.2e16, "6.02214076e23(12)"},
      {"1.602176634e-19", 1.602176634e-19, 0.0, "1.602176634e-19"},
      {"1.000(0)", 1.0, 0.0, "1"},
  };
  for (Case const& c : cases) {
    UncertainValue const v = UncertainValue::parse(c.text);
    EXPECT_DOUBLE_EQ(v.value(), c.value) << c.text;
    EXPECT_DOUBLE_EQ(v.standard_uncertainty(), c.uncertainty) << c.text;
    EXPECT_EQ(v.to_string(), c.printed) << c.text;
    EXPECT_EQ(UncertainValue::parse(v.to_string()).to_string(), c.printed) << c.text;
  }
}

TEST(UncertainValue, PrintsTheValueRoundedAtTheUncertaintysLastDigit) {
  struct Case {
    double value;
    double uncertainty;
    char const* printed;
  };
  Case const cases[] = {
      {1.23456, 0.0123, "1.235(12)"}, {1.23456, 0.0234, "1.23(2)"},
      {0.5, 0.01949, "0.500(19)"},    {0.5, 0.0195, "0.50(2)"},
      {12345.0, 30.0, "12340(30)"},   {-0.0001234, 5.6e-6, "-0.000123(6)"},
      {-0.001, 0.02, "0.00(2)"},      {9.9996e20, 2e17, "1.0000e21(2)"},
      {1e-20, 3e-20, "1e-20(3)"},     {4e-21, 3e-20, "0e-20(3)"},
      {3.0, 1e-3, "3.0000(10)"},      {99.97, 0.05, "99.97(5)"},
  };
  for (Case const& c : cases) {
    UncertainValue const v(c.value, c.uncertainty);
    EXPECT_EQ(v.to_string(), c.printed) << c.value << " " << c.uncertainty;
  }
}

TEST(UncertainValue, PrintedTextReadsBackToTheRoundedNumbers) {
  std::mt19937 engine(4711);
  std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
  std::uniform_int_distribution<int> decade(-9, 17);
  std::uniform_real_distribution<double> relative(1e-6, 3.0);
  for (int i = 0; i < 2000; ++i) {
    double const value = mantissa(engine) * std::pow(10.0, decade(engine));
    double const uncertainty = std::fabs(value) * relative(engine);
    UncertainValue const v(value, uncertainty);
    std::string const text = v.to_string();
    UncertainValue const back = UncertainValue::parse(text);
    double const step = std::pow(10.0, v.uncertainty().last_digit_exponent());
    EXPECT_NEAR(back.value(), value, 0.5 * step * (1 + 1e-9)) << text;
    EXPECT_NEAR(back.standard_uncertainty(), v.uncertainty().rounded(), 1e-12 * step) << text;
    EXPECT_EQ(back.to_string(), text);
  }
}

TEST(UncertainValue, MalformedTextIsRejectedQuotingIt) {
  char const* const bad[] = {"",
                             "   ",
                             "1.2(3",
                             "(3)",
                             "1.2(-3)",
                             "1.2(3)x",
                             "1..2",
                             "abc",
                             "1.2e(3)",
                             "1.2 (3)",
                             "--1",
                             "1.2()",
                             "e5",
                             ".",
                             "-.(1)",
                             "nan",
                             "inf",
                             "1e999(1)",
                             "1.2(3.4)",
                             "1,2(3)",
                             "1.2(3)(4)",
                             "1e-400",
                             "1e99999999999999999999"};
  for (char const* text : bad) {
    expect_throw_message<std::invalid_argument>(
        [text] { UncertainValue::parse(text); },
        std::string("UncertainValue::parse(): cannot convert '") + text +
            "' to a value with uncertainty");
  }
}

TEST(UncertainValue, PropagatesIndependentUncertaintiesToFirstOrder) {
  UncertainValue const a(10.0, 0.3);
  UncertainValue const b(5.0, 0.4);
  EXPECT_DOUBLE_EQ((a + b).value(), 15.0);
  EXPECT_DOUBLE_EQ((a + b).standard_uncertainty(), 0.5);
  EXPECT_DOUBLE_EQ((a - b).value(), 5.0);
  EXPECT_DOUBLE_EQ((a - b).standard_uncertainty(), 0.5);
  // Product: sqrt((5 x 0.3)^2 + (10 x 0.4)^2) = sqrt(18.25).
  EXPECT_DOUBLE_EQ((a * b).value(), 50.0);
  EXPECT_DOUBLE_EQ((a * b).standard_uncertainty(), std::sqrt(18.25));
  // Quotient: relative uncertainties add in quadrature, 2 sqrt(0.03^2 + 0.08^2).
  EXPECT_DOUBLE_EQ((a / b).value(), 2.0);
  EXPECT_DOUBLE_EQ((a / b).standard_uncertainty(), 2.0 * std::sqrt(0.0073));
  EXPECT_DOUBLE_EQ((-3.0 * a).value(), -30.0);
  EXPECT_DOUBLE_EQ((-3.0 * a).standard_uncertainty(), 0.9);
  EXPECT_DOUBLE_EQ((a / -4.0).standard_uncertainty(), 0.075);
  EXPECT_DOUBLE_EQ((-a).value(), -10.0);
  EXPECT_DOUBLE_EQ((-a).standard_uncertainty(), 0.3);
  // An exact operand contributes nothing; a zero value still carries its uncertainty.
  EXPECT_DOUBLE_EQ((a * UncertainValue(2.0)).standard_uncertainty(), 0.6);
  EXPECT_DOUBLE_EQ((UncertainValue(0.0, 0.1) * b).standard_uncertainty(), 0.5);
  EXPECT_EQ((a * b).to_string(), "50(4)");
}

TEST(UncertainValue, ImpossibleArithmeticAndBadValuesThrow) {
  UncertainValue a(1.0, 0.1);
  expect_throw_message<std::invalid_argument>([&] { a /= UncertainValue(0.0, 0.1); },
                                              "UncertainValue: division by zero");
  expect_throw_message<std::invalid_argument>([&] { a /= 0.0; },
                                              "UncertainValue: division by zero");
  UncertainValue big(1e300, 1e299);
  expect_throw_message<std::overflow_error>([&] { big *= big; },
                                            "UncertainValue: result out of range");
  EXPECT_EQ(big.value(), 1e300);
  EXPECT_EQ(a.value(), 1.0);
  expect_throw_message<std::invalid_argument>(
      [] { UncertainValue(std::numeric_limits<double>::infinity()); },
      "UncertainValue: value must be finite");
  EXPECT_THROW(UncertainValue(1.0, -0.1), std::invalid_argument);
}

TEST(UncertainValue, ArchiveRoundTripAndRejectedInput) {
  Archive archive;
  UncertainValue(-2.5e-7, 3e-8).write(archive);
  archive << 1.0 << -1.0;
  archive << std::numeric_limits<double>::quiet_NaN() << 0.0;
  UncertainValue v;
  v.read(archive);
  EXPECT_EQ(v.value(), -2.5e-7);
  EXPECT_EQ(v.standard_uncertainty(), 3e-8);
  std::string const message = "UncertainValue::read: invalid value in archive";
  expect_throw_message<std::runtime_error>([&] { v.read(archive); }, message);
  expect_throw_message<std::runtime_error>([&] { v.read(archive); }, message);
  EXPECT_THROW(v.read(archive), std::runtime_error);
  EXPECT_EQ(v.value(), -2.5e-7);
}

}  // namespace
}  // namespace structmath
