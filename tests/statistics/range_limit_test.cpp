// SPDX-License-Identifier: MIT
// Tests of RangeLimit: containment at open and closed bounds, text and archives.
#include "structmath/statistics/range_limit.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

#include "support/statistics_support.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

double const inf = std::numeric_limits<double>::infinity();
double const nan = std::numeric_limits<double>::quiet_NaN();

TEST(RangeLimit, ContainsRespectsOpenAndClosedBounds) {
  RangeLimit const closed(1.0, 2.0);
  RangeLimit const open(1.0, 2.0, false, false);
  RangeLimit const half(1.0, 2.0, true, false);
  for (double x : {1.0, 1.5, 2.0}) EXPECT_TRUE(closed.contains(x)) << x;
  EXPECT_FALSE(closed.contains(std::nextafter(1.0, 0.0)));
  EXPECT_FALSE(closed.contains(std::nextafter(2.0, 3.0)));
  EXPECT_FALSE(open.contains(1.0));
  EXPECT_FALSE(open.contains(2.0));
  EXPECT_TRUE(open.contains(std::nextafter(1.0, 2.0)));
  EXPECT_TRUE(half.contains(1.0));
  EXPECT_FALSE(half.contains(2.0));
  EXPECT_FALSE(closed.contains(nan));

  RangeLimit const everything;
  EXPECT_FALSE(everything.has_lower());
  EXPECT_FALSE(everything.has_upper());
  EXPECT_TRUE(everything.contains(-1e308));
  EXPECT_TRUE(everything.contains(1e308));
  EXPECT_FALSE(everything.contains(nan));

  RangeLimit const point(3.0, 3.0);
  EXPECT_TRUE(point.contains(3.0));
  EXPECT_FALSE(RangeLimit(3.0, 3.0, false, true).contains(3.0));
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
  EXPECT_TRUE(closed.contains(UncertainValue(4.0), 3.0));
  EXPECT_FALSE(closed.contains(UncertainValue(6.0), 3.0));  // exact values do not move
  std::string const message = "RangeLimit::contains: k must not be negative";
  expect_throw_message<std::invalid_argument>([&] { closed.contains(low, -1.0); }, message);
  expect_throw_message<std::invalid_argument>([&] { closed.contains(low, nan); }, message);
}

TEST(RangeLimit, BoundsAreCheckedAndAFailedChangeKeepsTheRange) {
  std::string const message = "RangeLimit: invalid bounds";
  expect_throw_message<std::invalid_argument>([] { RangeLimit(2.0, 1.0); }, message);
  expect_throw_message<std::invalid_argument>([] { RangeLimit(nan, 1.0); }, message);
  expect_throw_message<std::invalid_argument>([] { RangeLimit(inf, inf); }, message);
  expect_throw_message<std::invalid_argument>([] { RangeLimit(-inf, -inf); }, message);

  RangeLimit r(-inf, inf, true, true);  // infinite bounds are absent bounds, never closed
  EXPECT_FALSE(r.lower_closed());
  EXPECT_FALSE(r.upper_closed());
  r.set_lower(0.0);
  r.set_upper(10.0, false);
  EXPECT_TRUE(r.has_lower());
  EXPECT_EQ(r.to_string(), "[0, 10)");
  EXPECT_THROW(r.set_lower(11.0), std::invalid_argument);
  EXPECT_THROW(r.set_upper(-1.0), std::invalid_argument);
  EXPECT_EQ(r.to_string(), "[0, 10)");
  r.clear_lower();
  EXPECT_EQ(r.to_string(), "(-inf, 10)");
  r.clear_upper();
  EXPECT_EQ(r.to_string(), "(-inf, inf)");
}

TEST(RangeLimit, ParsesAndPrintsIntervalNotation) {
  struct Case {
    char const* text;
    char const* printed;
  };
  Case const cases[] = {
      {"[1.5, 3)", "[1.5, 3)"},
      {"(0, 2.5]", "(0, 2.5]"},
      {"[0, inf)", "[0, inf)"},
      {"(-inf, inf)", "(-inf, inf)"},
      {"(-inf,-1e-20]", "(-inf, -1e-20]"},
      {"  [ 1.5 ,3 ) ", "[1.5, 3)"},
      {"(2, +inf)", "(2, inf)"},
      {"[0.1, 0.1]", "[0.1, 0.1]"},
  };
  for (Case const& c : cases) {
    RangeLimit const r = RangeLimit::parse(c.text);
    EXPECT_EQ(r.to_string(), c.printed) << c.text;
    RangeLimit const back = RangeLimit::parse(r.to_string());
    EXPECT_EQ(back.lower(), r.lower()) << c.text;
    EXPECT_EQ(back.upper(), r.upper()) << c.text;
    EXPECT_EQ(back.lower_closed(), r.lower_closed()) << c.text;
    EXPECT_EQ(back.upper_closed(), r.upper_closed()) << c.text;
  }
  RangeLimit const r = RangeLimit::parse("(0, 2.5]");
  EXPECT_FALSE(r.contains(0.0));
  EXPECT_TRUE(r.contains(2.5));

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
