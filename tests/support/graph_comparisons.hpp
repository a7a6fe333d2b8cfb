// SPDX-License-Identifier: MIT
// GoogleTest assertion helpers for containers, point lists and test-suite error reports.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

namespace structmath::testing {

/// Success when `container` holds `value`: EXPECT_TRUE(test_contains(v, 3)).
template <class Container, class T>
::testing::AssertionResult test_contains(Container const& container, T const& value) {
  for (auto const& item : container) {
    if (item == value) return ::testing::AssertionSuccess();
  }
  return ::testing::AssertionFailure() << "value " << ::testing::PrintToString(value)
                                       << " not found in " << ::testing::PrintToString(container);
}

/// Success when the two vectors hold the same elements the same number of
/// times, in any order.
template <class T>
::testing::AssertionResult test_vectors_equivalence(std::vector<T> a, std::vector<T> b) {
  std::sort(a.begin(), a.end());
  std::sort(b.begin(), b.end());
  if (a == b) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "sorted " << ::testing::PrintToString(a)
                                       << " differs from " << ::testing::PrintToString(b);
}

/// Success when both lists have the same length and point i of one lies within
/// `tolerance` of point i of the other in each of the coordinates p[0], p[1], p[2].
template <class P>
::testing::AssertionResult test_compare_points_vector(std::vector<P> const& a,
                                                      std::vector<P> const& b, double tolerance) {
  if (a.size() != b.size()) {
    return ::testing::AssertionFailure() << "lengths differ: " << a.size() << " and " << b.size();
  }
  for (std::size_t i = 0; i < a.size(); ++i) {
    // Literal indices suit both int and size_t subscripts.
    double const ak[3] = {a[i][0], a[i][1], a[i][2]};
    double const bk[3] = {b[i][0], b[i][1], b[i][2]};
    for (int k = 0; k < 3; ++k) {
      double const difference = std::fabs(ak[k] - bk[k]);
      if (!(difference <= tolerance)) {
        return ::testing::AssertionFailure()
               << "point " << i << " coordinate " << k << ": " << ak[k] << " and " << bk[k]
               << " differ by " << difference << " > " << tolerance;
      }
    }
  }
  return ::testing::AssertionSuccess();
}

/// Error reporting for test suites.
struct TestSuiteHelpers {
  /// Fails the running test with the message; the test goes on.
  static void log_error(std::string const& message) { ADD_FAILURE() << message; }
};

}  // namespace structmath::testing
