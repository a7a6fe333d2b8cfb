// SPDX-License-Identifier: MIT
// GoogleTest assertion helper for the bounding boxes of solids.
#pragma once

#include <gtest/gtest.h>

#include <sstream>

#include "structmath/solids/box.hpp"
#include "structmath/solids/solid.hpp"

namespace structmath::testing {

/// Success when the solid's bounding box equals `expected` field by field within
/// `tolerance`: EXPECT_TRUE(test_bounding_box(sphere, Box(...), 0.0)).
inline ::testing::AssertionResult test_bounding_box(Solid const& solid, Box const& expected,
                                                    double tolerance) {
  THandle<Box> const box = solid.bounding_box();  // held: the box lives as long as this handle
  if (equals(*box, expected, tolerance)) return ::testing::AssertionSuccess();
  std::ostringstream text;
  text << "bounding box ";
  box->print(text);
  text << " differs from ";
  expected.print(text);
  return ::testing::AssertionFailure() << text.str();
}

}  // namespace structmath::testing
