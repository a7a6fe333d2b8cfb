// SPDX-License-Identifier: MIT
// Tests of sum and Mean against hand-worked moments.
#include "structmath/statistics/mean.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "support/statistics_support.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

TEST(Sum, AddsInIndexOrderStartingFromZero) {
  EXPECT_EQ(sum(std::vector<double>{}), 0.0);
  EXPECT_EQ(sum(std::vector<double>{1.5, -0.25, 2.0}), 3.25);
  // 1e16 + 1 is 1e16 in doubles, so the order shows in the result.
  EXPECT_EQ(sum(std::vector<double>{1e16, 1.0, -1e16}), 0.0);
  EXPECT_EQ(sum(std::vector<double>{1.0, 1e16, -1e16}), 0.0);
  EXPECT_EQ(sum(std::vector<double>{1e16, -1e16, 1.0}), 1.0);
}

TEST(Mean, MomentsOfOneTwoThree) {
  Mean const m({1.0, 2.0, 3.0});
  EXPECT_DOUBLE_EQ(m.mean(), 2.0);
  EXPECT_DOUBLE_EQ(m.average_deviation(), 2.0 / 3.0);
  EXPECT_DOUBLE_EQ(m.variance(), 1.0);
  EXPECT_DOUBLE_EQ(m.standard_deviation(), 1.0);
  EXPECT_DOUBLE_EQ(m.skewness(), 0.0);
  EXPECT_DOUBLE_EQ(m.kurtosis(), 2.0 / 3.0 - 3.0);
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

TEST(Mean, EqualValuesGiveZeroSpreadAndNoNaN) {
  Mean const m({4.25, 4.25});
  EXPECT_EQ(m.mean(), 4.25);
  EXPECT_EQ(m.variance(), 0.0);
  EXPECT_EQ(m.standard_deviation(), 0.0);
  EXPECT_EQ(m.average_deviation(), 0.0);
  EXPECT_EQ(m.skewness(), 0.0);
  EXPECT_EQ(m.kurtosis(), 0.0);
}

TEST(Mean, FewerThanTwoValuesThrow) {
  std::string const message = "Mean::calculate: insufficient data";
  expect_throw_message<std::runtime_error>([] { Mean(std::vector<double>{}); }, message);
  expect_throw_message<std::runtime_error>([] { Mean(std::vector<double>{1.0}); }, message);
  Mean m({1.0, 2.0, 3.0});
  EXPECT_THROW(m.calculate({7.0}), std::runtime_error);
  EXPECT_DOUBLE_EQ(m.variance(), 1.0);
}

TEST(Mean, CalculatingAgainAccumulatesOntoThePreviousSums) {
  Mean m({1.0, 2.0, 3.0});
  m.calculate({1.0, 2.0, 3.0});
  // Fields held 2/3, 1, 0 and -7/3 before the second pass added 2, 2, 0 and 2.
  EXPECT_DOUBLE_EQ(m.mean(), 2.0);
  EXPECT_DOUBLE_EQ(m.average_deviation(), (2.0 / 3.0 + 2.0) / 3.0);
  EXPECT_DOUBLE_EQ(m.variance(), 1.5);
  EXPECT_DOUBLE_EQ(m.standard_deviation(), std::sqrt(1.5));
  EXPECT_DOUBLE_EQ(m.skewness(), 0.0);
  EXPECT_DOUBLE_EQ(m.kurtosis(), (2.0 / 3.0 - 3.0 + 2.0) / (3.0 * 1.5 * 1.5) - 3.0);
}

TEST(Mean, PrintsLabelledValuesWithTheStreamFormatting) {
  std::ostringstream out;
  out << Mean({1.0, 2.0, 3.0});
  EXPECT_EQ(out.str(),
            "Mean: 2, Variance: 1, Average deviation: 0.666667, Standard deviation: 1, "
            "Skewness: 0, Kurtosis: -2.33333");
  std::ostringstream precise;
  precise.precision(3);
  precise << Mean({1.0, 2.0, 3.0});
  EXPECT_EQ(precise.str(),
            "Mean: 2, Variance: 1, Average deviation: 0.667, Standard deviation: 1, "
            "Skewness: 0, Kurtosis: -2.33");
}

TEST(Mean, ArchivesTheSixFieldsInOrder) {
  Mean const m({2.0, 4.0, 4.0, 4.0, 5.0, 5.0, 7.0, 9.0});
  Archive archive;
  m.write(archive);
  double fields[6];
  for (double& f : fields) archive >> f;
  EXPECT_EQ(fields[0], m.average_deviation());
  EXPECT_EQ(fields[1], m.skewness());
  EXPECT_EQ(fields[2], m.kurtosis());
  EXPECT_EQ(fields[3], m.variance());
  EXPECT_EQ(fields[4], m.mean());
  EXPECT_EQ(fields[5], m.standard_deviation());

  archive.rewind();
  Mean copy;
  copy.read(archive);
  std::ostringstream a, b;
  a.precision(17);
  b.precision(17);
  a << m;
  b << copy;
  EXPECT_EQ(a.str(), b.str());

  Archive truncated;
  truncated << 1.0 << 2.0;
  EXPECT_THROW(copy.read(truncated), std::runtime_error);
  EXPECT_EQ(copy.mean(), 5.0);
}

}  // namespace
}  // namespace structmath
