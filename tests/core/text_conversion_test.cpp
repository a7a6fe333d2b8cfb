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

namespace structmath {
namespace {

TEST(TextConversion, DoubleToStringIsShortest) {
  EXPECT_EQ(double_to_string(180.0), "180");
  EXPECT_EQ(double_to_string(0.1), "0.1");
  EXPECT_EQ(double_to_string(-2.5), "-2.5");
  EXPECT_EQ(double_to_string(0.0), "0");
  EXPECT_EQ(double_to_string(1e-20), "1e-20");
  EXPECT_EQ(double_to_string(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(double_to_string(std::numeric_limits<double>::infinity()), "inf");
}

TEST(TextConversion, DoubleTextReadsBackBitForBit) {
  std::mt19937_64 engine(20261121);
  std::uniform_int_distribution<std::uint64_t> bits;
  for (int i = 0; i < 20000; ++i) {
    std::uint64_t b = bits(engine);
    double v = 0.0;
    std::memcpy(&v, &b, sizeof v);
    if (!std::isfinite(v)) continue;
    EXPECT_EQ(string_to_double(double_to_string(v)), v) << double_to_string(v);
  }
}

TEST(TextConversion, ParsesWholeNumbersWithSurroundingBlanks) {
  EXPECT_EQ(string_to_double(" 1.5e3\t"), 1500.0);
  EXPECT_EQ(string_to_double("+0.25"), 0.25);
  EXPECT_EQ(string_to_double("-.5"), -0.5);
  EXPECT_EQ(string_to_int("  -42 "), -42);
  EXPECT_EQ(string_to_int("+7"), 7);
  EXPECT_EQ(int_to_string(-2147483647 - 1), "-2147483648");
}

TEST(TextConversion, MalformedTextThrowsQuotingIt) {
  for (char const* bad : {"", "  ", "1.5x", "x1", "1 2", "--1", "+-1", "1e400"}) {
    try {
      (void)string_to_double(bad);
      FAIL() << "accepted '" << bad << "'";
    } catch (std::invalid_argument const& e) {
      EXPECT_EQ(std::string(e.what()),
                "string_to_double(): cannot convert '" + std::string(bad) + "' to a double");
    }
  }
  for (char const* bad : {"", "1.0", "12a", "2147483648", "0x10"}) {
    try {
      (void)string_to_int(bad);
      FAIL() << "accepted '" << bad << "'";
    } catch (std::invalid_argument const& e) {
      EXPECT_EQ(std::string(e.what()),
                "string_to_int(): cannot convert '" + std::string(bad) + "' to an int");
    }
  }
}

TEST(TextConversion, ToStringUsesDefaultStreamFormatting) {
  EXPECT_EQ(to_string<double>(3.14159265), "3.14159");
  EXPECT_EQ(to_string<double>(1e-7), "1e-07");
  EXPECT_EQ(to_string<int>(-3), "-3");
  EXPECT_EQ(to_string<unsigned int>(4000000000U), "4000000000");
}

}  // namespace
}  // namespace structmath
