// SPDX-License-Identifier: MIT
// Tests of Sphere: inclusive containment and the bounding box.
#include "structmath/solids/sphere.hpp"

#include <gtest/gtest.h>

#include "support/solids_support.hpp"

#include <cmath>
#include <limits>

#include "structmath/solids/box.hpp"

namespace structmath {

TEST(Sphere, ContainsPointsUpToAndOnItsSurface) {
  Sphere const off(Point(1, 2, 3), 0.5);
  EXPECT_TRUE(off.contains(Point(1, 2.5, 3)));
  EXPECT_TRUE(off.contains(Point(0.5, 2, 3)));
  EXPECT_FALSE(off.contains(Point(1, 2, std::nextafter(3.5, 4.0))));
  EXPECT_FALSE(off.contains(Point(1.3, 2.3, 3.3)));  // inside the box, outside the ball
  EXPECT_FALSE(off.contains(Point(std::numeric_limits<double>::quiet_NaN(), 2, 3)));
  EXPECT_FALSE(Sphere(Point(0, 0, 0), -1.0).contains(Point(0, 0, 0)));
}

TEST(Sphere, BoundingBoxSpansTheRadiusOnEachAxisEvenWhenNegative) {
  Box const expected(0.5, 1.5, 1.5, 2.5, 2.5, 3.5);
  EXPECT_TRUE(testing::test_bounding_box(Sphere(Point(1, 2, 3), 0.5), expected, 0.0));
  EXPECT_TRUE(testing::test_bounding_box(Sphere(Point(1, 2, 3), -0.5), expected, 0.0));
}

}  // namespace structmath
