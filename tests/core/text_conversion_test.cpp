// SPDX-License-Identifier: MIT
// Tests of number/text conversion: shortest round trips and strict parsing.
#include "structmath/core/text_conversion.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <stdexcept>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

TEST(TextConversion, DoubleToStringIsShortestAndReadsBackBitForBit) {
  EXPECT_EQ(double_to_string(180.0), "180");
  EXPECT_EQ(double_to_string(0.1), "0.1");
  EXPECT_EQ(double_to_string(1e-20), "1e-20");
  EXPECT_EQ(double_to_string(std::numeric_limits<double>::infinity()), "inf");

  std::mt19937_64 engine(20261121);
  for (int i = 0; i < 20000; ++i) {
    std::uint64_t const bits = engine();
    double v = 0.0;
    std::memcpy(&v, &bits, sizeof v);
    if (!std::isfinite(v)) continue;
    EXPECT_EQ(string_to_double(double_to_string(v)), v) << v;
  }
}

TEST(TextConversion, ParsesWholeNumbersWithSurroundingBlanksAndRejectsTheRest) {
  EXPECT_EQ(string_to_double(" 1.5e3\t"), 1500.0);
  EXPECT_EQ(string_to_double("+0.25"), 0.25);
  EXPECT_EQ(string_to_double("-.5"), -0.5);
  EXPECT_EQ(string_to_int("  -42 "), -42);
  EXPECT_EQ(string_to_int("+7"), 7);

  for (std::string const bad : {"", "  ", "1.5x", "x1", "1 2", "--1", "+-1", "1e400"}) {
    expect_throw_message<std::invalid_argument>(
        [&] { (void)string_to_double(bad); },
        "string_to_double(): cannot convert '" + bad + "' to a double");
  }
  for (std::string const bad : {"", "1.0", "12a", "2147483648", "0x10"}) {
    expect_throw_message<std::invalid_argument>(
        [&] { (void)string_to_int(bad); },
        "string_to_int(): cannot convert '" + bad + "' to an int");
  }
}

TEST(TextConversion, ToStringUsesDefaultStreamFormatting) {
  EXPECT_EQ(to_string<double>(3.14159265), "3.14159");
  EXPECT_EQ(to_string<double>(1e-7), "1e-07");
  EXPECT_EQ(to_string<unsigned int>(4000000000U), "4000000000");
}

}  // namespace
}  // namespace structmath
