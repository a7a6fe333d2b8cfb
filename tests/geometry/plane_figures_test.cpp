// SPDX-License-Identifier: MIT
// Tests of the plane figures: Point2d, Circle and Rectangle2d.
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

#include "structmath/geometry/circle.hpp"
#include "structmath/geometry/point2d.hpp"
#include "structmath/geometry/rectangle2d.hpp"

namespace structmath {
namespace {

constexpr double kPi = 3.14159265358979323846;

TEST(Point2d, ArithmeticAndDistance) {
  Point2d const a(1, 2), b(4, 6);
  EXPECT_EQ(a + b, Point2d(5, 8));
  EXPECT_EQ(b - a, Point2d(3, 4));
  EXPECT_EQ(-a, Point2d(-1, -2));
  EXPECT_EQ(2.0 * a, a * 2.0);
  EXPECT_EQ(b / 2.0, Point2d(2, 3));
  EXPECT_EQ(distance(a, b), 5.0);
  EXPECT_EQ((b - a).length(), 5.0);
  EXPECT_EQ(a.dot(b), 16.0);
  EXPECT_EQ(Point2d(1, 0).cross(Point2d(0, 1)), 1.0);  // anticlockwise is positive
  EXPECT_TRUE(equals(a, Point2d(1 + 1e-8, 2 - 1e-8), 1e-7));
  EXPECT_FALSE(equals(a, Point2d(1, 2.1), 1e-2));
  EXPECT_NE(a, b);
}

TEST(Circle, MeasuresAndClosedContainment) {
  Circle const c(Point2d(1, -1), 2.0);
  EXPECT_DOUBLE_EQ(c.area(), 4.0 * kPi);
  EXPECT_DOUBLE_EQ(c.circumference(), 4.0 * kPi);
  EXPECT_TRUE(c.contains(Point2d(1, -1)));
  EXPECT_TRUE(c.contains(Point2d(3, -1)));  // on the circle
  EXPECT_TRUE(c.contains(Point2d(1 + std::sqrt(2.0), -1 + std::sqrt(2.0))));
  EXPECT_FALSE(c.contains(Point2d(3.001, -1)));
  EXPECT_TRUE(c.contains(Point2d(3.001, -1), 0.01));
  EXPECT_EQ(Circle().radius(), 1.0);

  Circle const dot(Point2d(0, 0), 0.0);
  EXPECT_EQ(dot.area(), 0.0);
  EXPECT_TRUE(dot.contains(Point2d(0, 0), 0.0));
  for (double bad : {-1.0, std::nan("")}) {
    try {
      Circle(Point2d(), bad);
      FAIL();
    } catch (std::invalid_argument const& e) {
      EXPECT_STREQ(e.what(), "Circle: the radius must not be negative");
    }
  }
}

TEST(Rectangle2d, CornersInAnyOrderAndItsMeasures) {
  Rectangle2d const r(Point2d(3, -1), Point2d(-1, 2));
  EXPECT_EQ(r.minimum(), Point2d(-1, -1));
  EXPECT_EQ(r.maximum(), Point2d(3, 2));
  EXPECT_EQ(r.width(), 4.0);
  EXPECT_EQ(r.height(), 3.0);
  EXPECT_EQ(r.area(), 12.0);
  EXPECT_EQ(r.centre(), Point2d(1, 0.5));
  auto const corners = r.corners();
  EXPECT_EQ(corners[0], Point2d(-1, -1));
  EXPECT_EQ(corners[1], Point2d(3, -1));
  EXPECT_EQ(corners[2], Point2d(3, 2));
  EXPECT_EQ(corners[3], Point2d(-1, 2));
  // Anticlockwise: every turn is to the left.
  for (std::size_t i = 0; i < 4; ++i) {
    Point2d const e1 = corners[(i + 1) % 4] - corners[i];
    Point2d const e2 = corners[(i + 2) % 4] - corners[(i + 1) % 4];
    EXPECT_GT(e1.cross(e2), 0.0);
  }
}

TEST(Rectangle2d, ContainmentAndIntersectionIncludeTheBoundary) {
  Rectangle2d const r(Point2d(0, 0), Point2d(2, 1));
  EXPECT_TRUE(r.contains(Point2d(1, 0.5)));
  EXPECT_TRUE(r.contains(Point2d(2, 1)));
  EXPECT_TRUE(r.contains(Point2d(2 + 5e-8, 0)));
  EXPECT_FALSE(r.contains(Point2d(2 + 1e-6, 0)));
  EXPECT_FALSE(r.contains(Point2d(1, -0.5)));

  EXPECT_TRUE(r.intersects(Rectangle2d(Point2d(1, 0.5), Point2d(5, 5))));
  EXPECT_TRUE(r.intersects(Rectangle2d(Point2d(2, 1), Point2d(3, 3))));     // a shared corner
  EXPECT_TRUE(r.intersects(Rectangle2d(Point2d(-1, -1), Point2d(3, 3))));   // enclosing
  EXPECT_TRUE(r.intersects(Rectangle2d(Point2d(0.5, -1), Point2d(1, 3))));  // crossing
  EXPECT_FALSE(r.intersects(Rectangle2d(Point2d(2.1, 0), Point2d(3, 1))));  // beside
  EXPECT_FALSE(r.intersects(Rectangle2d(Point2d(0, 1.1), Point2d(2, 2))));  // above
  EXPECT_TRUE(r.intersects(Rectangle2d(Point2d(0, 1.1), Point2d(2, 2)), 0.2));
  Rectangle2d const other(Point2d(1.5, 0.9), Point2d(4, 4));
  EXPECT_EQ(r.intersects(other), other.intersects(r));
}

}  // namespace
}  // namespace structmath
