// SPDX-License-Identifier: MIT
// Tests of NormalDistribution against the complementary error function.
#include "structmath/statistics/normal_distribution.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

double reference_cdf(double z) { return 0.5 * std::erfc(-z / std::sqrt(2.0)); }

TEST(NormalDistribution, TailAreaIsWithinThePublishedErrorBoundOfTheExactCurve) {
  // The formula's bound is 7.5e-8 with the exact 1/sqrt(2 pi); the seven-place
  // constant scales the tail area q by 1 + delta, about 4.9e-8 more of q.
  double const delta = 0.3989423 * std::sqrt(2.0 * std::acos(-1.0)) - 1.0;
  NormalDistribution const standard;
  NormalDistribution const shifted(-3.5, 0.25);
  for (int i = -60000; i <= 60000; ++i) {
    double const z = i * 1e-4;
    double const bound = 7.5e-8 + delta * reference_cdf(-std::fabs(z)) + 1e-15;
    EXPECT_NEAR(standard.area_to_left(z), reference_cdf(z), bound) << "z = " << z;
    EXPECT_NEAR(shifted.area_to_left(-3.5 + 0.25 * z), reference_cdf(z), bound) << "z = " << z;
  }
}

TEST(NormalDistribution, BeyondSixDeviationsTheAreasAreExactlyZeroAndOne) {
  NormalDistribution const d(10.0, 2.0);
  EXPECT_EQ(d.area_to_left(10.0 + 7 * 2.0), 1.0);
  EXPECT_EQ(d.area_to_left(10.0 - 7 * 2.0), 0.0);
  NormalDistribution const standard;
  EXPECT_EQ(standard.area_to_left(std::nextafter(6.0, 7.0)), 1.0);
  EXPECT_EQ(standard.area_to_left(std::nextafter(-6.0, -7.0)), 0.0);
  // The cut-offs themselves are computed.
  EXPECT_LT(standard.area_to_left(6.0), 1.0);
  EXPECT_GT(standard.area_to_left(-6.0), 0.0);
}

TEST(NormalDistribution, AreaBetweenIgnoresTheOrderOfItsBounds) {
  NormalDistribution const d(1.0, 3.0);
  EXPECT_EQ(d.area_between(-2.0, 4.0), d.area_between(4.0, -2.0));
  EXPECT_NEAR(d.area_between(-2.0, 4.0), reference_cdf(1.0) - reference_cdf(-1.0), 2e-7);
}

TEST(NormalDistribution, StandardDeviationMustBePositiveInConstructorAndSetter) {
  std::string const message =
      "NormalDistribution::NormalDistribution(double mean, double sd): specified standard "
      "deviation zero or negative";
  expect_throw_message<std::invalid_argument>([] { NormalDistribution(0.0, 0.0); }, message);
  NormalDistribution d;
  expect_throw_message<std::invalid_argument>([&] { d.set_sd(-0.5); }, message);
  EXPECT_EQ(d.sd(), 1.0);
  // Only sd <= 0 is rejected: NaN passes.
  EXPECT_NO_THROW(d.set_sd(std::numeric_limits<double>::quiet_NaN()));
  EXPECT_TRUE(std::isnan(d.sd()));
}

}  // namespace
}  // namespace structmath
