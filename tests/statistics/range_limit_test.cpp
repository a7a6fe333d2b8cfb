// SPDX-License-Identifier: MIT
// Tests of RangeLimit: containment at open and closed bounds, text and archives.
#include "structmath/statistics/range_limit.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

double const inf = std::numeric_limits<double>::infinity();
double const nan = std::numeric_limits<double>::quiet_NaN();

TEST(RangeLimit, ContainsRespectsOpenAndClosedBounds) {
  RangeLimit const closed(1, 2), open(1, 2, false, false), half(1, 2, true, false);
  RangeLimit const all, point(3, 3), not_point(3, 3, false, true);
  double const below_1 = std::nextafter(1.0, 0.0), above_1 = std::nextafter(1.0, 2.0);
  double const above_2 = std::nextafter(2.0, 3.0);
  std::tuple<RangeLimit, double, bool> const cases[] = {
      {closed, 1.0, true},  {closed, 2.0, true}, {closed, below_1, false}, {closed, above_2, false},
      {closed, nan, false}, {open, 1.0, false},  {open, 2.0, false},       {open, above_1, true},
      {half, 1.0, true},    {half, 2.0, false},  {all, -1e308, true},      {all, 1e308, true},
      {all, nan, false},    {point, 3.0, true},  {not_point, 3.0, false}};
  for (auto const& [range, x, inside] : cases) {
    EXPECT_EQ(range.contains(x), inside) << range << " " << x;
  }
}

TEST(RangeLimit, ContainsWithinKStandardUncertainties) {
  RangeLimit const closed(3.0, 5.0);
  RangeLimit const open(3.0, 5.0, false, false);
  UncertainValue const low(2.75, 0.25);
  UncertainValue const high(5.5, 0.25);
  EXPECT_FALSE(closed.contains(low));
  EXPECT_TRUE(closed.contains(low, 1.0));  // reaches 3.0 exactly
  EXPECT_FALSE(open.contains(low, 1.0));
  EXPECT_TRUE(open.contains(low, 1.5));
  EXPECT_FALSE(closed.contains(high, 1.0));
  EXPECT_TRUE(closed.contains(high, 2.0));
  EXPECT_FALSE(closed.contains(UncertainValue(6.0), 3.0));  // exact values do not move
  for (double k : {-1.0, nan}) {
    expect_throw_message<std::invalid_argument>([&] { closed.contains(low, k); },
                                                "RangeLimit::contains: k must not be negative");
  }
}

TEST(RangeLimit, BoundsAreCheckedAndAFailedChangeKeepsTheRange) {
  std::pair<double, double> const bad[] = {{2.0, 1.0}, {nan, 1.0}, {inf, inf}, {-inf, -inf}};
  for (auto const& [lower, upper] : bad) {
    expect_throw_message<std::invalid_argument>([&] { RangeLimit(lower, upper); },
                                                "RangeLimit: invalid bounds");
  }
  RangeLimit r(-inf, inf, true, true);  // infinite bounds are absent bounds, never closed
  EXPECT_EQ(r.to_string(), "(-inf, inf)");
  r.set_lower(0.0);
  r.set_upper(10.0, false);
  EXPECT_THROW(r.set_lower(11.0), std::invalid_argument);
  EXPECT_THROW(r.set_upper(-1.0), std::invalid_argument);
  EXPECT_EQ(r.to_string(), "[0, 10)");
  r.clear_lower();
  EXPECT_EQ(r.to_string(), "(-inf, 10)");
  r.clear_upper();
  EXPECT_EQ(r.to_string(), "(-inf, inf)");
}

TEST(RangeLimit, ParsesAndPrintsIntervalNotation) {
  for (char const* text : {"[1.5, 3)", "(0, 2.5]", "[0, inf)", "(-inf, inf)", "[0.1, 0.1]"}) {
    EXPECT_EQ(RangeLimit::parse(text).to_string(), text);
  }
  std::pair<char const*, char const*> const relaxed[] = {{"  [ 1.5 ,3 ) ", "[1.5, 3)"},
                                                         {"(-inf,-1e-20]", "(-inf, -1e-20]"},
                                                         {"(2, +inf)", "(2, inf)"}};
  for (auto const& [text, printed] : relaxed) {
    EXPECT_EQ(RangeLimit::parse(text).to_string(), printed) << text;
  }
  // Bounds print as the shortest text that reads back as the same double.
  EXPECT_EQ(RangeLimit::parse(RangeLimit(1.0 / 3.0, 1.0).to_string()).lower(), 1.0 / 3.0);

  char const* const bad[] = {"",           "[1,2",      "1,2]",     "[1;2]",    "[1,2,3]",
                             "[2,1]",      "[-inf,2]",  "(1, inf]", "[nan, 2]", "[a, 2]",
                             "(inf, inf)", "(1, -inf)", "[,]",      "[1 2]",    "{1, 2}"};
  for (char const* text : bad) {
    expect_throw_message<std::invalid_argument>(
        [text] { RangeLimit::parse(text); },
        std::string("RangeLimit::parse(): cannot convert '") + text + "' to a range");
  }
}

TEST(RangeLimit, ArchiveRoundTripRejectsInvalidFlagsAndBounds) {
  Archive archive;
  RangeLimit(-1.5, 2.0, false, true).write(archive);
  RangeLimit().write(archive);
  archive << 0.0 << 2 << 1.0 << 0;  // bad flag
  archive << 3.0 << 1 << 1.0 << 1;  // lower above upper
  RangeLimit r;
  r.read(archive);
  EXPECT_EQ(r.to_string(), "(-1.5, 2]");
  r.read(archive);
  EXPECT_EQ(r.to_string(), "(-inf, inf)");
  r = RangeLimit(0.0, 1.0);
  std::string const message = "RangeLimit::read: invalid range in archive";
  expect_throw_message<std::runtime_error>([&] { r.read(archive); }, message);
  expect_throw_message<std::runtime_error>([&] { r.read(archive); }, message);
  EXPECT_EQ(r.to_string(), "[0, 1]");
}

}  // namespace
}  // namespace structmath
