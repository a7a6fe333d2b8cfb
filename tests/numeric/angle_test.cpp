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

namespace structmath {
namespace {

constexpr double pi = 3.141592653589793;
constexpr double two_pi = 6.283185307179586;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

double normalised(double radians) {
  Angle a(radians);
  a.modulo();
  return a.radians();
}

TEST(Angle, ConstructionAndUnits) {
  EXPECT_EQ(Angle().radians(), 0.0);
  EXPECT_EQ(Angle::from_degrees(90.0).radians(), 90.0 * 0.017453292519943295);
  EXPECT_EQ(Angle::from_degrees(180.0).radians(), 180.0 * 0.017453292519943295);
  EXPECT_EQ(Angle(pi).degrees(), pi * 57.29577951308232);
  EXPECT_DOUBLE_EQ(Angle::from_degrees(30.0).degrees(), 30.0);
}

TEST(Angle, ModuloFoldsIntoHalfOpenFullTurn) {
  EXPECT_DOUBLE_EQ(normalised(-0.1), two_pi - 0.1);
  EXPECT_EQ(normalised(two_pi), 0.0);
  EXPECT_EQ(normalised(-two_pi), 0.0);
  EXPECT_DOUBLE_EQ(normalised(2 * two_pi + 0.5), 0.5);
  EXPECT_EQ(normalised(0.0), 0.0);
  EXPECT_TRUE(std::isnan(normalised(nan)));
  EXPECT_TRUE(std::isnan(normalised(std::numeric_limits<double>::infinity())));
  // Repeated subtraction, not a remainder: the result is exactly x - 3 * 2pi done stepwise.
  double const x = 3 * two_pi + 1.0;
  EXPECT_EQ(normalised(x), ((x - two_pi) - two_pi) - two_pi);
  // Huge values end (quickly) inside the range.
  double const huge = normalised(1e18);
  EXPECT_GE(huge, 0.0);
  EXPECT_LT(huge, two_pi);
}

TEST(Angle, ModuloAgreesWithSineAndCosineOnRandomAngles) {
  std::mt19937_64 engine(11);
  std::uniform_real_distribution<double> draw(-100.0, 100.0);
  for (int i = 0; i < 1000; ++i) {
    double const x = draw(engine);
    double const y = normalised(x);
    ASSERT_GE(y, 0.0);
    ASSERT_LT(y, two_pi);
    EXPECT_NEAR(std::sin(y), std::sin(x), 1e-12);
    EXPECT_NEAR(std::cos(y), std::cos(x), 1e-12);
  }
}

TEST(Angle, ComparisonsUseRawRadiansAndNaNMakesNonStrictOnesTrue) {
  Angle const a(1.0), b(2.0), n(nan);
  EXPECT_TRUE(b > a);
  EXPECT_TRUE(a < b);
  EXPECT_TRUE(a <= b);
  EXPECT_FALSE(a >= b);
  EXPECT_TRUE(a <= a);
  EXPECT_TRUE(a >= a);
  EXPECT_TRUE(a == Angle(1.0));
  EXPECT_TRUE(a != b);
  EXPECT_FALSE(Angle(two_pi) == Angle(0.0));  // no wrap-around
  EXPECT_FALSE(n > a);
  EXPECT_TRUE(n <= a);
  EXPECT_TRUE(n >= a);
  EXPECT_FALSE(n == n);
}

TEST(Angle, ArithmeticOnRadians) {
  Angle a(1.0);
  a += Angle(0.5);
  a -= Angle(0.25);
  a *= 4.0;
  a /= 2.0;
  EXPECT_EQ(a.radians(), 2.5);
  EXPECT_EQ((Angle(1.0) + Angle(2.0)).radians(), 3.0);
  EXPECT_EQ((Angle(1.0) - Angle(2.0)).radians(), -1.0);
  EXPECT_EQ((-Angle(1.0)).radians(), -1.0);
  EXPECT_EQ((+Angle(1.0)).radians(), 1.0);
  EXPECT_EQ((Angle(1.5) * 2.0).radians(), 3.0);
  EXPECT_EQ((2.0 * Angle(1.5)).radians(), 3.0);
  EXPECT_EQ((Angle(3.0) / 2.0).radians(), 1.5);
  EXPECT_EQ(Angle(3.0) / Angle(1.5), 2.0);
  EXPECT_TRUE(std::isinf((Angle(1.0) / 0.0).radians()));
  EXPECT_DOUBLE_EQ(sin(Angle(pi / 6)), 0.5);
  EXPECT_DOUBLE_EQ(cos(Angle(pi / 3)), 0.5);
  EXPECT_DOUBLE_EQ(tan(Angle(pi / 4)), 1.0);
}

TEST(Angle, InverseTrigonometricFactoriesCheckTheirBounds) {
  EXPECT_EQ(Angle::acos(1.0).radians(), 0.0);
  EXPECT_EQ(Angle::acos(-1.0).radians(), std::acos(-1.0));
  EXPECT_EQ(Angle::asin(-1.0).radians(), -pi / 2);
  EXPECT_EQ(Angle::atan2(1.0, 0.0).radians(), pi / 2);  // first argument is y
  EXPECT_EQ(Angle::atan2(0.0, -1.0).radians(), pi);
  EXPECT_EQ(Angle::atan(1.0).radians(), pi / 4);
  EXPECT_TRUE(std::isnan(Angle::acos(nan).radians()));
  EXPECT_TRUE(std::isnan(Angle::asin(nan).radians()));
  try {
    (void)Angle::acos(1.0000001);
    FAIL();
  } catch (std::invalid_argument const& e) {
    EXPECT_STREQ(e.what(), "Angle::acos() : argument must be between -1.0 and +1.0.");
  }
  try {
    (void)Angle::asin(-1.0000001);
    FAIL();
  } catch (std::invalid_argument const& e) {
    EXPECT_STREQ(e.what(), "Angle::asin() : argument must be between -1.0 and +1.0.");
  }
}

TEST(Angle, EqualsIsInclusiveOnRawRadiansWithoutWrap) {
  EXPECT_TRUE(equals(Angle(0.1), Angle(0.2), Angle(0.1)));
  EXPECT_TRUE(equals(Angle(0.25), Angle(0.5), Angle(0.25)));  // exact boundary
  EXPECT_FALSE(equals(Angle(6.2), Angle(0.05), Angle(0.2)));
  EXPECT_FALSE(
      equals(Angle::from_degrees(359.0), Angle::from_degrees(1.0), Angle::from_degrees(5.0)));
  EXPECT_TRUE(equals(Angle(nan), Angle(1.0), Angle(0.0)));
}

TEST(Angle, DirectionDifferences) {
  Angle const a = Angle::from_degrees(350.0), b = Angle::from_degrees(10.0);
  EXPECT_NEAR(minimum_difference(a, b).degrees(), 20.0, 1e-9);
  EXPECT_NEAR(minimum_difference(b, a).degrees(), 20.0, 1e-9);
  EXPECT_NEAR(maximum_difference(a, b).degrees(), 340.0, 1e-9);
  EXPECT_NEAR(minimum_difference(Angle(0.3), Angle(0.3 + 5 * two_pi)).radians(), 0.0, 1e-6);
  EXPECT_NEAR(minimum_difference(Angle(0.0), Angle(pi)).radians(), pi, 1e-12);
  EXPECT_NEAR(minimum_difference(Angle(-1.0), Angle(1.0)).radians(), 2.0, 1e-12);
}

TEST(Angle, PrintsDegreesAsShortestTextAndArchivesRadians) {
  std::ostringstream out;
  Angle(pi).print(out);
  EXPECT_EQ(out.str(), double_to_string(180.0));
  EXPECT_EQ(out.str(), "180");
  std::ostringstream streamed;
  streamed << Angle::from_degrees(90.0);
  EXPECT_EQ(streamed.str(), double_to_string(90.0 * 0.017453292519943295 * 57.29577951308232));

  Archive archive;
  Angle(1.25).write(archive);
  EXPECT_EQ(archive.size(), 8U);
  Angle back;
  back.read(archive);
  EXPECT_EQ(back.radians(), 1.25);
}

}  // namespace
}  // namespace structmath
