// SPDX-License-Identifier: MIT
// Tests of Sphere: inclusive containment and the bounding box.
#include "structmath/solids/sphere.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "structmath/solids/box.hpp"

namespace structmath {
namespace {

TEST(Sphere, ContainsPointsUpToAndOnItsSurface) {
  Sphere const unit(Point(0.0, 0.0, 0.0), 1.0);
  EXPECT_TRUE(unit.contains(Point(1.0, 0.0, 0.0)));
  EXPECT_TRUE(unit.contains(Point(0.0, -1.0, 0.0)));
  EXPECT_TRUE(unit.contains(Point(0.6, 0.0, 0.8)));
  EXPECT_FALSE(unit.contains(Point(std::nextafter(1.0, 2.0), 0.0, 0.0)));
  EXPECT_FALSE(unit.contains(Point(0.6, 0.6, 0.6)));  // inside the box, outside the ball
  EXPECT_FALSE(unit.contains(Point(std::numeric_limits<double>::quiet_NaN(), 0.0, 0.0)));

  Sphere const off(Point(1.0, 2.0, 3.0), 0.5);
  EXPECT_TRUE(off.contains(Point(1.0, 2.5, 3.0)));
  EXPECT_FALSE(off.contains(Point(0.0, 0.0, 0.0)));
  EXPECT_EQ(off.centre().y(), 2.0);
  EXPECT_EQ(off.radius(), 0.5);

  Sphere const negative(Point(0.0, 0.0, 0.0), -1.0);
  EXPECT_FALSE(negative.contains(Point(0.0, 0.0, 0.0)));
}

TEST(Sphere, BoundingBoxSpansTheRadiusOnEachAxisEvenWhenNegative) {
  THandle<Box> const box = Sphere(Point(1.0, 2.0, 3.0), 0.5).bounding_box();
  EXPECT_TRUE(equals(*box, Box(0.5, 1.5, 1.5, 2.5, 2.5, 3.5), 0.0));
  THandle<Box> const negative = Sphere(Point(1.0, 2.0, 3.0), -0.5).bounding_box();
  EXPECT_TRUE(equals(*negative, *box, 0.0));
  EXPECT_FALSE(negative->is_empty());
  EXPECT_NE(negative.get(), box.get());
}

}  // namespace
}  // namespace structmath
