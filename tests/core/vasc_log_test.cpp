// SPDX-License-Identifier: MIT
// Tests of VascLog: which levels are written and what a line looks like.
#include "structmath/core/vasc_log.hpp"

#include <gtest/gtest.h>

#include "support/test_support.hpp"

namespace structmath {
namespace {

TEST(VascLog, EnabledNeedsLevelReachedAndMinimumAllowing) {
  EXPECT_EQ(VascLog::level_, 0);  // silent by default
  EXPECT_EQ(VascLog::minimum_level_, 0);
  EXPECT_FALSE(VascLog::enabled(1));
  testing::LogCapture capture(3, 2);
  EXPECT_FALSE(VascLog::enabled(1));  // below the minimum
  EXPECT_TRUE(VascLog::enabled(2));
  EXPECT_TRUE(VascLog::enabled(3));
  EXPECT_FALSE(VascLog::enabled(4));  // above the level
}

TEST(VascLog, WritesOnlyEnabledLinesEachEndedByANewline) {
  testing::LogCapture capture(3, 0);
  VascLog::start_debug_line(3) << "clique size: " << 4;
  VascLog::end_debug_line();
  VascLog::start_debug_line(4) << "too detailed";
  VascLog::end_debug_line();
  VascLog::start_debug_line(2) << "returning " << 1.5;
  VascLog::end_debug_line();
  EXPECT_EQ(capture.text(), "clique size: 4\nreturning 1.5\n");
}

}  // namespace
}  // namespace structmath
