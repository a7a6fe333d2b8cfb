// SPDX-License-Identifier: MIT
// Tests of the plane figures: Point2d, Circle and Rectangle2d.
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>

#include "structmath/geometry/circle.hpp"
#include "structmath/geometry/point2d.hpp"
#include "structmath/geometry/rectangle2d.hpp"
#include "support/geometry_support.hpp"

namespace structmath {
namespace {

constexpr double kPi = 3.14159265358979323846;

TEST(Point2d, ArithmeticAndDistance) {
  Point2d const a(1, 2), b(4, 6);
  EXPECT_EQ(a + b, Point2d(5, 8));
  EXPECT_EQ(b - a, Point2d(3, 4));
  EXPECT_EQ(2.0 * a, a * 2.0);
  EXPECT_EQ(b / 2.0, Point2d(2, 3));
  EXPECT_EQ(distance(a, b), 5.0);
  EXPECT_EQ((b - a).length(), 5.0);
  EXPECT_EQ(a.dot(b), 16.0);
  EXPECT_EQ(Point2d(1, 0).cross(Point2d(0, 1)), 1.0);  // anticlockwise is positive
  EXPECT_TRUE(equals(a, Point2d(1 + 1e-8, 2 - 1e-8), 1e-7));
  EXPECT_FALSE(equals(a, Point2d(1, 2.1), 1e-2));
}

TEST(Circle, MeasuresAndClosedContainment) {
  Circle const c(Point2d(1, -1), 2.0);
  EXPECT_DOUBLE_EQ(c.area(), 4.0 * kPi);
  EXPECT_DOUBLE_EQ(c.circumference(), 4.0 * kPi);
  EXPECT_TRUE(c.contains(Point2d(3, -1)));  // on the circle
  EXPECT_TRUE(c.contains(Point2d(1 + std::sqrt(2.0), -1 + std::sqrt(2.0))));
  EXPECT_FALSE(c.contains(Point2d(3.001, -1)));
  EXPECT_TRUE(c.contains(Point2d(3.001, -1), 0.01));
  EXPECT_EQ(Circle().radius(), 1.0);
  EXPECT_TRUE(Circle(Point2d(0, 0), 0.0).contains(Point2d(0, 0), 0.0));
  for (double bad : {-1.0, std::nan("")}) {
    EXPECT_EQ(testing::message_of<std::invalid_argument>([&] { Circle(Point2d(), bad); }),
              "Circle: the radius must not be negative");
  }
}

TEST(Rectangle2d, CornersInAnyOrderAndItsMeasures) {
  Rectangle2d const r(Point2d(3, -1), Point2d(-1, 2));
  EXPECT_EQ(r.minimum(), Point2d(-1, -1));
  EXPECT_EQ(r.maximum(), Point2d(3, 2));
  EXPECT_EQ(r.area(), 12.0);
  EXPECT_EQ(r.centre(), Point2d(1, 0.5));
  auto const corners = r.corners();  // anticlockwise from the minimum
  EXPECT_EQ(corners[0], Point2d(-1, -1));
  EXPECT_EQ(corners[1], Point2d(3, -1));
  EXPECT_EQ(corners[2], Point2d(3, 2));
  EXPECT_EQ(corners[3], Point2d(-1, 2));
}

TEST(Rectangle2d, ContainmentAndIntersectionIncludeTheBoundary) {
  Rectangle2d const r(Point2d(0, 0), Point2d(2, 1));
  EXPECT_TRUE(r.contains(Point2d(2, 1)));
  EXPECT_TRUE(r.contains(Point2d(2 + 5e-8, 0)));
  EXPECT_FALSE(r.contains(Point2d(2 + 1e-6, 0)));
  EXPECT_FALSE(r.contains(Point2d(1, -0.5)));

  struct Case {
    Point2d a, b;
    bool meets;
  };
  for (Case const& c : {Case{{2, 1}, {3, 3}, true},        // a shared corner
                        Case{{-1, -1}, {3, 3}, true},      // enclosing
                        Case{{0.5, -1}, {1, 3}, true},     // crossing
                        Case{{1.5, 0.9}, {4, 4}, true},    // overlapping
                        Case{{2.1, 0}, {3, 1}, false},     // beside
                        Case{{0, 1.1}, {2, 2}, false}}) {  // above
    Rectangle2d const other(c.a, c.b);
    EXPECT_EQ(r.intersects(other), c.meets);
    EXPECT_EQ(other.intersects(r), c.meets);
  }
  EXPECT_TRUE(r.intersects(Rectangle2d(Point2d(0, 1.1), Point2d(2, 2)), 0.2));
}

}  // namespace
}  // namespace structmath
