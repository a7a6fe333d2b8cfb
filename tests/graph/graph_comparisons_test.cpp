// SPDX-License-Identifier: MIT
// Tests of the shared comparison helpers: they must fail when they should.
#include "support/graph_comparisons.hpp"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace structmath {
namespace {

using Point3 = std::array<double, 3>;

TEST(ComparisonHelpers, ReportFailuresWithTheOffendingValues) {
  std::vector<int> const values{3, 1, 2, 1};
  EXPECT_TRUE(testing::test_contains(values, 2));
  EXPECT_FALSE(testing::test_contains(values, 5));
  EXPECT_TRUE(testing::test_vectors_equivalence(values, std::vector<int>{1, 1, 2, 3}));
  EXPECT_FALSE(testing::test_vectors_equivalence(values, std::vector<int>{1, 2, 3}));
  EXPECT_FALSE(testing::test_vectors_equivalence(values, std::vector<int>{1, 2, 2, 3}));

  std::vector<Point3> const a{{0.0, 1.0, 2.0}, {3.0, 4.0, 5.0}};
  std::vector<Point3> const near{{0.0, 1.0, 2.0}, {3.0, 4.0, 5.0 + 1e-8}};
  std::vector<Point3> const far{{0.0, 1.0, 2.0}, {3.0, 4.1, 5.0}};
  EXPECT_TRUE(testing::test_compare_points_vector(a, near, 1e-7));
  auto const result = testing::test_compare_points_vector(a, far, 1e-7);
  EXPECT_FALSE(result);
  EXPECT_NE(std::string(result.message()).find("point 1 coordinate 1"), std::string::npos);
  EXPECT_FALSE(testing::test_compare_points_vector(a, std::vector<Point3>{}, 1.0));
  EXPECT_NONFATAL_FAILURE(testing::TestSuiteHelpers::log_error("bad clique"), "bad clique");
}

}  // namespace
}  // namespace structmath
