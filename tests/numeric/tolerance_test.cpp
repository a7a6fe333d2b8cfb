// SPDX-License-Identifier: MIT
// Tests of the scalar tolerance helpers, ipow and the gcd.
#include "structmath/numeric/tolerance.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <stdexcept>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(Tolerance, EqualsIsInclusiveLessThanStrictAndNaNMakesEqual) {
  EXPECT_TRUE(equals(1.0, 1.5, 0.5) && equals(1.5, 1.0, 0.5));
  EXPECT_FALSE(equals(1.0, std::nextafter(1.5, 2.0), 0.5));
  EXPECT_FALSE(equals(0.0, -1e-7 - 1e-15, 1e-7));
  EXPECT_TRUE(equals(nan, 1.0, 0.1) && equals(1.0, 2.0, nan));
  EXPECT_TRUE(less_than(1.0, 1.2, 0.1));
  EXPECT_FALSE(less_than(1.0, 1.05, 0.1));
  EXPECT_FALSE(less_than(1.0, 1.5, 0.5) || less_than(nan, 1.0, 0.1));  // boundary; NaN
}

TEST(Tolerance, ToleranceCompatibilityAtTheResolutionOfTheValue) {
  EXPECT_FALSE(tolerance_compatible(0.0, 1e-6));
  EXPECT_TRUE(tolerance_compatible(-3.0, 0.5));
  EXPECT_FALSE(tolerance_compatible(1e-20, 1.0));  // value negligible beside tolerance
  EXPECT_FALSE(tolerance_compatible(1.0, 0.0));
  // The resolution is ten machine epsilons: just above it is visible, just below not.
  double const r = 10.0 * 2.220446049250313e-16;
  EXPECT_TRUE(tolerance_compatible(1.0, 1.5 * r));
  EXPECT_FALSE(tolerance_compatible(1.0, 0.5 * r));
  // A tolerance equal to the value: value - tolerance is 0, far from the tolerance.
  EXPECT_TRUE(tolerance_compatible(2.0, 2.0));
}

TEST(Tolerance, IpowMatchesExactPowersWhereverTheyFitAndRejectsLargerOnes) {
  EXPECT_TRUE(ipow(0, 0) == 1 && ipow(0, 3) == 0 && ipow(1, 1000000) == 1);  // bases 0 and 1
  EXPECT_TRUE(ipow(-1, 1000001) == -1 && ipow(-1, 1000000) == 1);
  EXPECT_EQ(ipow(-3, 19), -1162261467);
  EXPECT_EQ(ipow(46340, 2), 2147395600);
  for (int base = -50; base <= 50; ++base) {
    if (std::abs(base) <= 1) continue;
    long long exact = 1;
    for (unsigned e = 0; std::llabs(exact) <= (1LL << 50); ++e, exact *= base) {
      if (std::llabs(exact) < 2147483647LL / 4) {  // comfortably inside int
        EXPECT_EQ(ipow(base, e), exact) << base << "^" << e;
      } else if (std::llabs(exact) > 4LL * 2147483648LL) {  // comfortably outside
        EXPECT_THROW((void)ipow(base, e), std::invalid_argument) << base << "^" << e;
      }
    }
  }
}

TEST(Tolerance, IpowOverflowBoundAdmitsTwoToTheThirtyFirst) {
  // The bound x <= 2147483646 / b + 1 lets the product reach 2^31 exactly.
  EXPECT_NO_THROW((void)ipow(2, 31));
  EXPECT_EQ(ipow(-2, 31), std::numeric_limits<int>::min());
  EXPECT_THROW((void)ipow(2, 32), std::invalid_argument);
  EXPECT_THROW((void)ipow(46342, 2), std::invalid_argument);
  testing::expect_throw_message<std::invalid_argument>([] { (void)ipow(10, 10); },
                                                       "ipow(): overflow.");
}

TEST(Tolerance, GreatestCommonDivisorAgreesWithStd) {
  EXPECT_EQ(greatest_common_divisor(7, 7), 7U);
  std::mt19937 engine(7);
  std::uniform_int_distribution<unsigned> draw(1, 1000000);
  for (int i = 0; i < 2000; ++i) {
    unsigned const a = draw(engine) * 6, b = draw(engine) * 4;
    EXPECT_EQ(greatest_common_divisor(a, b), std::gcd(a, b));
  }
}

}  // namespace
}  // namespace structmath
