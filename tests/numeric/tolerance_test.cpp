// SPDX-License-Identifier: MIT
// Tests of the scalar tolerance helpers, ipow and the gcd.
#include "structmath/numeric/tolerance.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <stdexcept>

namespace structmath {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(Tolerance, EqualsIsInclusiveAndTrueForNaN) {
  EXPECT_TRUE(equals(1.0, 1.5, 0.5));
  EXPECT_TRUE(equals(1.5, 1.0, 0.5));
  EXPECT_FALSE(equals(1.0, std::nextafter(1.5, 2.0), 0.5));
  EXPECT_FALSE(equals(0.0, -1e-7 - 1e-15, 1e-7));
  EXPECT_TRUE(equals(nan, 1.0, 0.1));
  EXPECT_TRUE(equals(1.0, 2.0, nan));
}

TEST(Tolerance, LessThanIsStrictBeyondTheTolerance) {
  EXPECT_FALSE(less_than(1.0, 1.05, 0.1));
  EXPECT_TRUE(less_than(1.0, 1.2, 0.1));
  EXPECT_FALSE(less_than(1.0, 1.5, 0.5));  // exactly at the boundary
  EXPECT_FALSE(less_than(nan, 1.0, 0.1));
}

TEST(Tolerance, ToleranceCompatibilityAtTheResolutionOfTheValue) {
  EXPECT_FALSE(tolerance_compatible(0.0, 1e-6));  // zero value: pair 3 equal
  EXPECT_TRUE(tolerance_compatible(1.0, 1e-6));
  EXPECT_FALSE(tolerance_compatible(1.0, 1e-17));  // below ten epsilons of 1
  EXPECT_FALSE(tolerance_compatible(1e-20, 1.0));  // value negligible beside tolerance
  EXPECT_FALSE(tolerance_compatible(1.0, 0.0));
  EXPECT_TRUE(tolerance_compatible(-3.0, 0.5));
  // The resolution is ten machine epsilons: just above it is visible, just below not.
  double const r = 10.0 * 2.220446049250313e-16;
  EXPECT_TRUE(tolerance_compatible(1.0, 1.5 * r));
  EXPECT_FALSE(tolerance_compatible(1.0, 0.5 * r));
  // A tolerance equal to the value: value - tolerance is 0, far from the tolerance.
  EXPECT_TRUE(tolerance_compatible(2.0, 2.0));
}

TEST(Tolerance, IpowSpecialBasesAndSigns) {
  EXPECT_EQ(ipow(5, 0), 1);
  EXPECT_EQ(ipow(0, 0), 1);
  EXPECT_EQ(ipow(0, 3), 0);
  EXPECT_EQ(ipow(1, 1000000), 1);
  EXPECT_EQ(ipow(-1, 7), -1);
  EXPECT_EQ(ipow(-1, 8), 1);
  EXPECT_EQ(ipow(-2, 3), -8);
  EXPECT_EQ(ipow(-3, 2), 9);
  EXPECT_EQ(ipow(2, 30), 1073741824);
  EXPECT_EQ(ipow(3, 19), 1162261467);
  EXPECT_EQ(ipow(-3, 19), -1162261467);
  EXPECT_EQ(ipow(46340, 2), 2147395600);
}

TEST(Tolerance, IpowMatchesExactPowersWhereverTheyFitAndRejectsLargerOnes) {
  for (int base = -50; base <= 50; ++base) {
    if (base == 0 || base == 1 || base == -1) continue;
    long long exact = 1;
    for (unsigned e = 0; e < 40; ++e) {
      if (std::llabs(exact) < 2147483647LL / 4) {  // comfortably inside int
        EXPECT_EQ(ipow(base, e), exact) << base << "^" << e;
      } else if (std::llabs(exact) > 4LL * 2147483648LL) {  // comfortably outside
        EXPECT_THROW((void)ipow(base, e), std::invalid_argument) << base << "^" << e;
      }
      exact *= base;
      if (std::llabs(exact) > (1LL << 50)) break;
    }
  }
}

TEST(Tolerance, IpowOverflowBoundAdmitsTwoToTheThirtyFirst) {
  // The bound x <= 2147483646 / b + 1 lets the product reach 2^31 exactly.
  EXPECT_NO_THROW((void)ipow(2, 31));
  EXPECT_EQ(ipow(-2, 31), std::numeric_limits<int>::min());
  EXPECT_THROW((void)ipow(2, 32), std::invalid_argument);
  EXPECT_THROW((void)ipow(2, 33), std::invalid_argument);
  EXPECT_THROW((void)ipow(46342, 2), std::invalid_argument);
  try {
    (void)ipow(10, 10);
    FAIL() << "10^10 fitted in an int";
  } catch (std::invalid_argument const& e) {
    EXPECT_STREQ(e.what(), "ipow(): overflow.");
  }
}

TEST(Tolerance, GreatestCommonDivisorAgreesWithStd) {
  EXPECT_EQ(greatest_common_divisor(12, 18), 6U);
  EXPECT_EQ(greatest_common_divisor(18, 12), 6U);
  EXPECT_EQ(greatest_common_divisor(7, 7), 7U);
  EXPECT_EQ(greatest_common_divisor(1, 4000000000U), 1U);
  std::mt19937 engine(7);
  std::uniform_int_distribution<unsigned> draw(1, 1000000);
  for (int i = 0; i < 2000; ++i) {
    unsigned a = draw(engine) * 6;
    unsigned b = draw(engine) * 4;
    EXPECT_EQ(greatest_common_divisor(a, b), std::gcd(a, b));
  }
}

}  // namespace
}  // namespace structmath
