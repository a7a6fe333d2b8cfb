// SPDX-License-Identifier: MIT
// Tests of sum and Mean against hand-worked moments.
#include "structmath/statistics/mean.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

std::string text_of(Mean const& m, int precision = 6) {
  std::ostringstream out;
  out << std::setprecision(precision) << m;
  return out.str();
}

TEST(Sum, AddsInIndexOrderStartingFromZero) {
  EXPECT_EQ(sum(std::vector<double>{}), 0.0);
  // 1e16 + 1 is 1e16 in doubles, so the order shows in the result.
  EXPECT_EQ(sum(std::vector<double>{1e16, 1.0, -1e16}), 0.0);
  EXPECT_EQ(sum(std::vector<double>{1e16, -1e16, 1.0}), 1.0);
}

TEST(Mean, MomentsOfASkewedSampleMixDivisorsNAndNMinusOne) {
  // Deviations from the mean 5: -3 -1 -1 -1 0 0 2 4; sums of |d|, d^2, d^3, d^4
  // are 12, 32, 42 and 356.
  Mean const m({2.0, 4.0, 4.0, 4.0, 5.0, 5.0, 7.0, 9.0});
  double const variance = 32.0 / 7.0;
  double const sd = std::sqrt(variance);
  EXPECT_DOUBLE_EQ(m.mean(), 5.0);
  EXPECT_DOUBLE_EQ(m.average_deviation(), 1.5);
  EXPECT_DOUBLE_EQ(m.variance(), variance);
  EXPECT_DOUBLE_EQ(m.standard_deviation(), sd);
  EXPECT_DOUBLE_EQ(m.skewness(), 42.0 / (8.0 * sd * sd * sd));
  EXPECT_DOUBLE_EQ(m.kurtosis(), 356.0 / (8.0 * variance * variance) - 3.0);
}

TEST(Mean, PrintsHandWorkedMomentsWithTheStreamFormatting) {
  // {1, 2, 3}: average deviation 2/3, kurtosis 2/3 - 3.
  EXPECT_EQ(text_of(Mean({1.0, 2.0, 3.0})),
            "Mean: 2, Variance: 1, Average deviation: 0.666667, Standard deviation: 1, "
            "Skewness: 0, Kurtosis: -2.33333");
  EXPECT_EQ(text_of(Mean({1.0, 2.0, 3.0}), 3),
            "Mean: 2, Variance: 1, Average deviation: 0.667, Standard deviation: 1, "
            "Skewness: 0, Kurtosis: -2.33");
  // Equal values: no spread, and skewness and kurtosis stay 0 rather than NaN.
  EXPECT_EQ(text_of(Mean({4.25, 4.25})),
            "Mean: 4.25, Variance: 0, Average deviation: 0, Standard deviation: 0, "
            "Skewness: 0, Kurtosis: 0");
}

TEST(Mean, FewerThanTwoValuesThrowAndLeaveTheFields) {
  std::string const message = "Mean::calculate: insufficient data";
  testing::expect_throw_message<std::runtime_error>([] { Mean(std::vector<double>{}); }, message);
  Mean m({1.0, 2.0, 3.0});
  testing::expect_throw_message<std::runtime_error>([&] { m.calculate({7.0}); }, message);
  EXPECT_DOUBLE_EQ(m.variance(), 1.0);
}

TEST(Mean, CalculatingAgainAccumulatesOntoThePreviousSums) {
  Mean m({1.0, 2.0, 3.0});
  m.calculate({1.0, 2.0, 3.0});
  // Fields held 2/3, 1, 0 and -7/3 before the second pass added 2, 2, 0 and 2:
  // average deviation 8/9, variance 3/2, kurtosis (-1/3) / (3 x 9/4) - 3.
  EXPECT_EQ(text_of(m),
            "Mean: 2, Variance: 1.5, Average deviation: 0.888889, Standard deviation: 1.22474, "
            "Skewness: 0, Kurtosis: -3.04938");
}

TEST(Mean, ArchivesTheSixFieldsInOrder) {
  Archive archive;
  archive << 1.0 << 2.0 << 3.0 << 4.0 << 5.0 << 6.0;
  Mean m;
  m.read(archive);
  EXPECT_EQ(text_of(m),
            "Mean: 5, Variance: 4, Average deviation: 1, Standard deviation: 6, "
            "Skewness: 2, Kurtosis: 3");
  // Reading pins the order, so a faithful copy shows that writing keeps it too.
  Archive written;
  m.write(written);
  Mean copy;
  copy.read(written);
  EXPECT_EQ(text_of(copy), text_of(m));
  Archive truncated;
  truncated << 1.0 << 2.0;
  EXPECT_THROW(m.read(truncated), std::runtime_error);
  EXPECT_EQ(m.mean(), 5.0);
}

}  // namespace
}  // namespace structmath
