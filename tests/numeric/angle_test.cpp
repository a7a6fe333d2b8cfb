// SPDX-License-Identifier: MIT
// Tests of Angle: normalisation, comparison, factories, differences, text and archive.
#include "structmath/numeric/angle.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <stdexcept>

#include "structmath/core/archive.hpp"
#include "structmath/core/text_conversion.hpp"
#include "support/expect_throw.hpp"

namespace structmath {
namespace {

constexpr double two_pi = Angle::two_pi, pi = two_pi / 2;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

double normalised(double radians) {
  Angle a(radians);
  a.modulo();
  return a.radians();
}

TEST(Angle, UnitsAndArithmeticOnRadians) {
  EXPECT_EQ(Angle::from_degrees(90.0).radians(), 90.0 * 0.017453292519943295);
  EXPECT_EQ(Angle(pi).degrees(), pi * 57.29577951308232);
  EXPECT_EQ(((((Angle() += Angle(1.5)) -= Angle(0.25)) *= 4.0) /= 2.0).radians(), 2.5);
  EXPECT_EQ((2.0 * -(Angle(1.0) - Angle(2.5)) / 3.0).radians(), 1.0);
  EXPECT_EQ(Angle(3.0) / Angle(1.5), 2.0);
  EXPECT_DOUBLE_EQ(sin(Angle(pi / 6)), 0.5);
}

TEST(Angle, ModuloFoldsIntoHalfOpenFullTurn) {
  EXPECT_DOUBLE_EQ(normalised(-0.1), two_pi - 0.1);
  EXPECT_EQ(normalised(two_pi), 0.0);
  EXPECT_EQ(normalised(-two_pi), 0.0);
  EXPECT_TRUE(std::isnan(normalised(nan)));
  EXPECT_TRUE(std::isnan(normalised(std::numeric_limits<double>::infinity())));
  // Repeated subtraction, not a remainder: the result is exactly x - 3 * 2pi done stepwise.
  double const x = 3 * two_pi + 1.0;
  EXPECT_EQ(normalised(x), ((x - two_pi) - two_pi) - two_pi);
  std::mt19937_64 engine(11);
  std::uniform_real_distribution<double> draw(-100.0, 100.0);
  for (int i = 0; i < 1000; ++i) {
    double const v = draw(engine), y = normalised(v);
    ASSERT_TRUE(y >= 0.0 && y < two_pi) << v;
    EXPECT_NEAR(std::sin(y), std::sin(v), 1e-12);
    EXPECT_NEAR(std::cos(y), std::cos(v), 1e-12);
  }
  double const huge = normalised(1e18);
  EXPECT_TRUE(huge >= 0.0 && huge < two_pi);
}

TEST(Angle, ModuloStepsThroughLargeValuesUpToSixteenMillionTurns) {
  // The rounding of every step stays in the result, far from what a remainder gives.
  EXPECT_EQ(normalised(1e6 + 0.3), 6.2256225263314064);
  double const beyond = 65536.0 * two_pi + 0.5;
  EXPECT_NEAR(normalised(beyond), 0.500000426, 5e-10);
  EXPECT_NE(normalised(beyond), std::fmod(beyond, two_pi));
  double stepped = -(1 << 20) * two_pi - 1.25;
  double const start = stepped;
  while (stepped < 0.0) stepped += two_pi;
  EXPECT_EQ(normalised(start), stepped);
  // Beyond 2^24 turns a remainder brings the value near the range first.
  double const far = 4e8 + 0.1;
  EXPECT_EQ(normalised(far), normalised(std::fmod(far, two_pi)));
}

TEST(Angle, ComparisonsAndEqualsUseRawRadiansWithoutWrap) {
  Angle const a(1.0), b(2.0), n(nan);
  EXPECT_TRUE(a < b && a <= b && a <= a && a >= a && a != b && !(a >= b) && !(a > b));
  EXPECT_FALSE(Angle(two_pi) == Angle(0.0));
  // NaN: the strict comparisons are false, the non-strict ones true.
  EXPECT_FALSE(n > a || n < a || n == n);
  EXPECT_TRUE(n <= a && n >= a);
  EXPECT_TRUE(equals(Angle(0.25), Angle(0.5), Angle(0.25)));  // inclusive boundary
  EXPECT_FALSE(equals(Angle(6.2), Angle(0.05), Angle(0.2)));
  EXPECT_TRUE(equals(Angle(nan), Angle(1.0), Angle(0.0)));
}

TEST(Angle, InverseTrigonometricFactoriesCheckTheirBounds) {
  EXPECT_EQ(Angle::acos(-1.0).radians(), pi);
  EXPECT_EQ(Angle::atan2(1.0, 0.0).radians(), pi / 2);  // first argument is y
  EXPECT_TRUE(std::isnan(Angle::acos(nan).radians()));
  EXPECT_TRUE(std::isnan(Angle::asin(nan).radians()));
  testing::expect_throw_message<std::invalid_argument>(
      [] { (void)Angle::acos(1.0000001); },
      "Angle::acos() : argument must be between -1.0 and +1.0.");
  testing::expect_throw_message<std::invalid_argument>(
      [] { (void)Angle::asin(-1.0000001); },
      "Angle::asin() : argument must be between -1.0 and +1.0.");
}

TEST(Angle, DirectionDifferencesGoRoundTheShorterAndLongerWay) {
  Angle const a = Angle::from_degrees(350.0), b = Angle::from_degrees(10.0);
  EXPECT_NEAR(minimum_difference(a, b).degrees(), 20.0, 1e-9);
  EXPECT_NEAR(maximum_difference(a, b).degrees(), 340.0, 1e-9);
  EXPECT_NEAR(minimum_difference(Angle(0.3), Angle(0.3 + 5 * two_pi)).radians(), 0.0, 1e-6);
  EXPECT_NEAR(minimum_difference(Angle(0.0), Angle(pi)).radians(), pi, 1e-12);
}

TEST(Angle, PrintsDegreesAsShortestTextAndArchivesRadians) {
  std::ostringstream out;
  out << Angle(pi) << ' ' << Angle(0.1);
  EXPECT_EQ(out.str(), "180 " + double_to_string(0.1 * 57.29577951308232));
  Archive archive;
  Angle(1.25).write(archive);
  Angle back;
  back.read(archive);
  EXPECT_EQ(back.radians(), 1.25);
}

}  // namespace
}  // namespace structmath
