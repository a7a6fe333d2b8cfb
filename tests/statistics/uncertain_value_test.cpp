// SPDX-License-Identifier: MIT
// Tests of UncertainValue: parsing and printing the notation, and propagation.
#include "structmath/statistics/uncertain_value.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

TEST(UncertainValue, ParsesAndPrintsRealWorldNotations) {
  // Text, value, uncertainty, and how it prints back.
  std::tuple<char const*, double, double, char const*> const cases[] = {
      {"1.234(5)", 1.234, 0.005, "1.234(5)"},
      {"-0.5(12)", -0.5, 1.2, "-0.5(12)"},
      {"12(3)", 12.0, 3.0, "12(3)"},
      {"1.5e-3(2)", 1.5e-3, 2e-4, "0.0015(2)"},
      {".5(1)", 0.5, 0.1, "0.50(10)"},
      {"0.123", 0.123, 0.0, "0.123"},
      {"1234(56)", 1234.0, 56.0, "1230(60)"},
      {"+1.0(5)", 1.0, 0.5, "1.0(5)"},
      {"12.(3)", 12.0, 3.0, "12(3)"},
      {"  7.25(4)\t", 7.25, 0.04, "7.25(4)"},
      {"2.5E+2(1)", 250.0, 10.0, "250(10)"},
      {"-2.5e-7(3)", -2.5e-7, 3e-8, "-2.5e-7(3)"},
      {"1.000(0)", 1.0, 0.0, "1"},
      {"1.602176634e-19", 1.602176634e-19, 0.0, "1.602176634e-19"},
      {"6.02214076e23(12)", 6.02214076e23, 1.2e16, "6.02214076e23(12)"}};
  for (auto const& [text, value, uncertainty, printed] : cases) {
    UncertainValue const v = UncertainValue::parse(text);
    EXPECT_DOUBLE_EQ(v.value(), value) << text;
    EXPECT_DOUBLE_EQ(v.standard_uncertainty(), uncertainty) << text;
    EXPECT_EQ(v.to_string(), printed) << text;
    EXPECT_EQ(UncertainValue::parse(printed).to_string(), printed) << text;
  }
}

TEST(UncertainValue, PrintsTheValueRoundedAtTheUncertaintysLastDigit) {
  std::tuple<double, double, char const*> const cases[] = {
      {1.23456, 0.0123, "1.235(12)"}, {1.23456, 0.0234, "1.23(2)"},
      {0.5, 0.01949, "0.500(19)"},    {0.5, 0.0195, "0.50(2)"},
      {12345.0, 30.0, "12340(30)"},   {-0.0001234, 5.6e-6, "-0.000123(6)"},
      {-0.001, 0.02, "0.00(2)"},      {9.9996e20, 2e17, "1.0000e21(2)"},
      {1e-20, 3e-20, "1e-20(3)"},     {4e-21, 3e-20, "0e-20(3)"},
      {3.0, 1e-3, "3.0000(10)"},      {99.97, 0.05, "99.97(5)"},
  };
  for (auto const& [value, uncertainty, printed] : cases) {
    EXPECT_EQ(UncertainValue(value, uncertainty).to_string(), printed) << value;
    EXPECT_EQ(UncertainValue::parse(printed).to_string(), printed) << value;
  }
}

TEST(UncertainValue, PrintedTextReadsBackToTheRoundedNumbers) {
  std::mt19937 engine(4711);
  std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
  std::uniform_int_distribution<int> decade(-9, 17);
  std::uniform_real_distribution<double> relative(1e-6, 3.0);
  for (int i = 0; i < 2000; ++i) {
    double const value = mantissa(engine) * std::pow(10.0, decade(engine));
    UncertainValue const v(value, std::fabs(value) * relative(engine));
    std::string const text = v.to_string();
    UncertainValue const back = UncertainValue::parse(text);
    double const step = std::pow(10.0, v.uncertainty().last_digit_exponent());
    EXPECT_NEAR(back.value(), value, 0.5 * step * (1 + 1e-9)) << text;
    EXPECT_NEAR(back.standard_uncertainty(), v.uncertainty().rounded(), 1e-12 * step) << text;
    EXPECT_EQ(back.to_string(), text);
  }
}

// Printing, reading and printing again must give the same text at the edges of
// the decimal and binary ranges: doubles next to every power of ten (1e72 is
// stored below it, and its decimal exponent is 71), subnormals, and the largest
// double, which rounded to a few digits prints above itself.
TEST(UncertainValue, TextIsStableAtTheEdgesOfTheRange) {
  auto stable = [](double value, double uncertainty) {
    std::string const text = UncertainValue(value, uncertainty).to_string();
    return ::testing::AssertionResult(UncertainValue::parse(text).to_string() == text)
           << text << " reads back as " << UncertainValue::parse(text).to_string();
  };
  double const inf = std::numeric_limits<double>::infinity();
  for (int k = -323; k <= 308; ++k) {
    double const power = std::strtod(("1e" + std::to_string(k)).c_str(), nullptr);
    for (double const x : {power, std::nextafter(power, 0.0), std::nextafter(power, inf)}) {
      for (int s = -60; s <= 4; s += 2) {
        double const u = std::ldexp(x, s);
        if (std::isinf(u)) continue;
        EXPECT_TRUE(stable(x, u));
        EXPECT_TRUE(stable(-x, u));
      }
    }
  }
  double const largest = std::numeric_limits<double>::max();
  for (int s = -55; s <= 0; ++s) {
    EXPECT_TRUE(stable(largest, std::ldexp(largest, s)));
    EXPECT_TRUE(stable(-largest, std::ldexp(largest, s)));
    EXPECT_TRUE(stable(std::ldexp(1.0, s), std::nextafter(largest, 0.0)));
  }
  double const tiny = std::numeric_limits<double>::denorm_min();
  EXPECT_TRUE(stable(tiny, tiny));
  EXPECT_TRUE(stable(-3 * tiny, 7 * tiny));
  EXPECT_TRUE(stable(0.0, tiny));
  for (int m = 1; m < 200; m += 3) EXPECT_TRUE(stable(m * tiny, m * tiny));

  // From the fuzzer: 1e72 with an uncertainty in its 27th digit.
  EXPECT_EQ(UncertainValue(1e72, 3e45).to_string(), "9.99999999999999943801810949e71(3)");
  // A rounded text above the largest double stands for it; a bare number does not.
  EXPECT_EQ(UncertainValue::parse("1.80e308(2)").value(), largest);
  EXPECT_EQ(UncertainValue::parse("0e307(18)").standard_uncertainty(), largest);
  EXPECT_THROW(UncertainValue::parse("1.80e308"), std::invalid_argument);
  EXPECT_THROW(UncertainValue::parse("1.9e308(2)"), std::invalid_argument);
}

TEST(UncertainValue, MalformedTextIsRejectedQuotingIt) {
  std::vector<std::string> bad = {
      "   ",      "1.2(3",  "(3)",      "1.2(-3)", "1.2(3)x",   "1..2",  "abc", "1.2e(3)",
      "1.2 (3)",  "--1",    "1.2()",    "e5",      ".",         "-.(1)", "nan", "inf",
      "1e999(1)", "1e-400", "1.2(3.4)", "1,2(3)",  "1.2(3)(4)", ""};
  bad.push_back("1e" + std::string(20, '9'));  // an exponent no integer type holds
  for (std::string const& text : bad) {
    expect_throw_message<std::invalid_argument>(
        [&text] { UncertainValue::parse(text); },
        "UncertainValue::parse(): cannot convert '" + text + "' to a value with uncertainty");
  }
}

TEST(UncertainValue, PropagatesIndependentUncertaintiesToFirstOrder) {
  UncertainValue const a(10.0, 0.3);
  UncertainValue const b(5.0, 0.4);
  // Product: sqrt((5 x 0.3)^2 + (10 x 0.4)^2); quotient: relative uncertainties
  // add in quadrature, 2 sqrt(0.03^2 + 0.08^2). An exact operand contributes
  // nothing; a zero value still carries its uncertainty.
  UncertainValue const exact(2.0), zero(0.0, 0.1);
  std::tuple<UncertainValue, double, double> const cases[] = {
      {a + b, 15.0, 0.5},
      {a - b, 5.0, 0.5},
      {a * b, 50.0, std::sqrt(18.25)},
      {a / b, 2.0, 2.0 * std::sqrt(0.0073)},
      {-3.0 * a, -30.0, 0.9},
      {a / -4.0, -2.5, 0.075},
      {-a, -10.0, 0.3},
      {a * exact, 20.0, 0.6},
      {zero * b, 0.0, 0.5},
  };
  for (auto const& [result, value, uncertainty] : cases) {
    EXPECT_DOUBLE_EQ(result.value(), value) << value;
    EXPECT_DOUBLE_EQ(result.standard_uncertainty(), uncertainty) << value;
  }
}

TEST(UncertainValue, ImpossibleArithmeticAndBadValuesThrowAndChangeNothing) {
  UncertainValue a(1.0, 0.1);
  std::string const by_zero = "UncertainValue: division by zero";
  expect_throw_message<std::invalid_argument>([&] { a /= UncertainValue(0.0, 0.1); }, by_zero);
  expect_throw_message<std::invalid_argument>([&] { a /= 0.0; }, by_zero);
  EXPECT_EQ(a.value(), 1.0);
  UncertainValue big(1e300, 1e299);
  expect_throw_message<std::overflow_error>([&] { big *= big; },
                                            "UncertainValue: result out of range");
  EXPECT_EQ(big.value(), 1e300);
  expect_throw_message<std::invalid_argument>(
      [] { UncertainValue(std::numeric_limits<double>::infinity()); },
      "UncertainValue: value must be finite");

  Archive archive;
  UncertainValue(-2.5e-7, 3e-8).write(archive);
  archive << 1.0 << -1.0 << std::numeric_limits<double>::quiet_NaN() << 0.0;
  a.read(archive);
  EXPECT_EQ(a.value(), -2.5e-7);
  EXPECT_EQ(a.standard_uncertainty(), 3e-8);
  std::string const message = "UncertainValue::read: invalid value in archive";
  expect_throw_message<std::runtime_error>([&] { a.read(archive); }, message);
  expect_throw_message<std::runtime_error>([&] { a.read(archive); }, message);
  EXPECT_EQ(a.value(), -2.5e-7);
}

}  // namespace
}  // namespace structmath
