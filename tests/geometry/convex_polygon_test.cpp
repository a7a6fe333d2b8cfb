// SPDX-License-Identifier: MIT
// Tests of ConvexPolygon: validation, measures, containment and clipping by a plane.
#include "structmath/geometry/convex_polygon.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "structmath/geometry/geometry_functions.hpp"
#include "support/geometry_support.hpp"

namespace structmath {
namespace {

constexpr double kPi = 3.14159265358979323846;

std::string construction_message(Plane const& plane, std::vector<Point> const& vertices) {
  return testing::message_of([&] { ConvexPolygon(plane, vertices); });
}

Plane const z0(Vector3D(0, 0, 1), 0.0);

ConvexPolygon square() {
  return ConvexPolygon(z0, {Point(0, 0, 0), Point(2, 0, 0), Point(2, 2, 0), Point(0, 2, 0)});
}

// A regular n-gon of circumradius r about the local origin offset (cx, cy) of the plane.
std::vector<Point> regular(Plane const& plane, int n, double r, double cx, double cy,
                           double phase) {
  std::vector<Point> v;
  for (int i = 0; i < n; ++i) {
    double const a = phase + 2.0 * kPi * i / n;
    v.push_back(plane.local_to_global_coord(Point(cx + r * std::cos(a), cy + r * std::sin(a), 0)));
  }
  return v;
}

TEST(ConvexPolygon, MeasuresOfHandWorkedFigures) {
  // A trapezoid with parallel sides 4 and 2, height 2: area 6, centroid height
  // h (b + 2a) / (3 (a + b)) = 2 * (4 + 4) / 18 = 8/9 above the long side, which is not
  // the mean of the vertices.
  ConvexPolygon const trapezoid(z0,
                                {Point(0, 0, 0), Point(4, 0, 0), Point(3, 2, 0), Point(1, 2, 0)});
  EXPECT_DOUBLE_EQ(trapezoid.area(), 6.0);
  EXPECT_TRUE(equals(trapezoid.centroid(), Point(2, 8.0 / 9.0, 0), 1e-14));
  ConvexPolygon const empty;
  EXPECT_TRUE(empty.empty());
  EXPECT_EQ(empty.area(), 0.0);
  EXPECT_EQ(empty.perimeter(), 0.0);
  EXPECT_THROW(empty.centroid(), std::runtime_error);
  EXPECT_FALSE(empty.contains(Point(0, 0, 0)));
}

TEST(ConvexPolygon, RegularPolygonsInRandomPlanesMatchTheClosedForms) {
  testing::GeometryRandom random(41);
  for (int trial = 0; trial < 100; ++trial) {
    Plane const plane(random.vector(), random.value());
    int const n = 3 + trial % 8;
    double const r = random.value(0.5, 4.0);
    double const cx = random.value(), cy = random.value();
    std::vector<Point> v = regular(plane, n, r, cx, cy, random.value());
    if (trial % 2 == 1) v = std::vector<Point>(v.rbegin(), v.rend());  // either sense
    ConvexPolygon const polygon(plane, v);
    EXPECT_NEAR(polygon.area(), 0.5 * n * r * r * std::sin(2 * kPi / n), 1e-11);
    EXPECT_NEAR(polygon.perimeter(), 2.0 * n * r * std::sin(kPi / n), 1e-11);
    EXPECT_TRUE(equals(polygon.centroid(), plane.local_to_global_coord(Point(cx, cy, 0)), 1e-11));
    EXPECT_TRUE(polygon.contains(v[0]));
    // Just outside an edge midpoint, and just off the plane, are outside.
    Point const mid = centroid(v[0], v[1]);
    EXPECT_FALSE(polygon.contains(mid + 0.01 * (mid - polygon.centroid())));
    EXPECT_FALSE(polygon.contains(polygon.centroid() + 0.01 * plane.normal()));
    EXPECT_TRUE(polygon.contains(polygon.centroid() + 0.01 * plane.normal(), 0.02));
  }
}

TEST(ConvexPolygon, RejectsBadVertexLists) {
  EXPECT_EQ(construction_message(z0, {Point(0, 0, 0), Point(1, 0, 0)}),
            "ConvexPolygon: a polygon needs at least three vertices");
  EXPECT_EQ(construction_message(z0, {Point(0, 0, 0), Point(1, 0, 0), Point(0, 1, 0.01)}),
            "ConvexPolygon: a vertex does not lie in the plane");
  // A dart (one reflex corner), a self-crossing bow tie, a pentagram winding twice, and
  // points on one line.
  std::vector<Point> const p = regular(z0, 5, 1.0, 0, 0, 0);
  for (std::vector<Point> const& bad :
       {std::vector<Point>{Point(0, 0, 0), Point(2, 1, 0), Point(4, 0, 0), Point(2, 3, 0)},
        std::vector<Point>{Point(0, 0, 0), Point(2, 2, 0), Point(2, 0, 0), Point(0, 2, 0)},
        std::vector<Point>{p[0], p[2], p[4], p[1], p[3]},
        std::vector<Point>{Point(0, 0, 0), Point(1, 0, 0), Point(3, 0, 0)}}) {
    EXPECT_EQ(construction_message(z0, bad),
              "ConvexPolygon: the vertices do not form a convex polygon");
  }
  // Repeated and collinear vertices are harmless.
  EXPECT_EQ(
      construction_message(z0, {Point(0, 0, 0), Point(1, 0, 0), Point(2, 0, 0), Point(2, 0, 0),
                                Point(2, 2, 0), Point(0, 2, 0), Point(0, 0, 0)}),
      "no exception");
  EXPECT_EQ(construction_message(z0, {}), "no exception");
}

TEST(ConvexPolygon, ClippingKeepsTheChosenSide) {
  ConvexPolygon const s = square();
  Plane const x1(Vector3D(1, 0, 0), 1.0);  // normal towards +x
  ConvexPolygon const right = s.clip(x1, HalfSpace::along_normal);
  EXPECT_DOUBLE_EQ(right.area(), 2.0);
  EXPECT_TRUE(equals(right.centroid(), Point(1.5, 1, 0), 1e-14));
  EXPECT_TRUE(equals(s.clip(x1, HalfSpace::against_normal).centroid(), Point(0.5, 1, 0), 1e-14));
  EXPECT_EQ(right.plane(), s.plane());
  // A diagonal cut through two corners leaves a triangle; the corners are not doubled.
  ConvexPolygon const half =
      s.clip(Plane(Point(0, 0, 0), Point(2, 2, 0), Point(0, 0, 1)), HalfSpace::along_normal);
  EXPECT_EQ(half.size(), 3u);
  EXPECT_DOUBLE_EQ(half.area(), 2.0);
  // Cutting off one corner makes a pentagon.
  ConvexPolygon const cut =
      s.clip(Plane(Vector3D(1, 1, 0), Point(1.5, 1.5, 0)), HalfSpace::against_normal);
  EXPECT_EQ(cut.size(), 5u);
  EXPECT_NEAR(cut.area(), 4.0 - 0.5, 1e-14);
  // Touching the polygon along an edge or at a corner keeps nothing of area.
  EXPECT_TRUE(s.clip(Plane(Vector3D(1, 0, 0), 2.0), HalfSpace::along_normal).empty());
  EXPECT_TRUE(s.clip(Plane(Vector3D(1, 1, 0), Point(2, 2, 0)), HalfSpace::along_normal).empty());
  EXPECT_TRUE(ConvexPolygon().clip(x1, HalfSpace::along_normal).empty());
}

TEST(ConvexPolygon, ClippingOverRandomPolygonsAndCutters) {
  testing::GeometryRandom random(43);
  for (int trial = 0; trial < 300; ++trial) {
    Plane const plane(random.vector(), random.value(-2.0, 2.0));
    int const n = 3 + trial % 7;
    ConvexPolygon const polygon(plane,
                                regular(plane, n, random.value(0.5, 3.0), random.value(-1.0, 1.0),
                                        random.value(-1.0, 1.0), random.value()));
    Plane const cutter(random.vector(), random.value(-4.0, 4.0));
    ConvexPolygon const a = polygon.clip(cutter, HalfSpace::along_normal);
    ConvexPolygon const b = polygon.clip(cutter, HalfSpace::against_normal);
    // The two sides add up to the whole.
    EXPECT_NEAR(a.area() + b.area(), polygon.area(), 1e-9);
    for (Point const& v : a.vertices()) {
      EXPECT_LE(cutter.signed_distance(v), 1e-7);
      EXPECT_TRUE(polygon.contains(v, 1e-9));
    }
    for (Point const& v : b.vertices()) EXPECT_GE(cutter.signed_distance(v), -1e-7);
    // A clipped polygon is a valid convex polygon in the same plane.
    if (!a.empty()) {
      EXPECT_NO_THROW(ConvexPolygon(plane, a.vertices(), 1e-9));
    }

    // A cutter that misses the polygon returns it whole or empty.
    Plane const beyond(cutter.normal(), cutter.distance() + 100.0);  // all on the far side
    ConvexPolygon const whole = polygon.clip(beyond, HalfSpace::against_normal);
    ASSERT_EQ(whole.size(), polygon.size());
    for (std::size_t i = 0; i < whole.size(); ++i) {
      EXPECT_TRUE(equals(whole.vertices()[i], polygon.vertices()[i], 0.0));
    }
    EXPECT_TRUE(polygon.clip(beyond, HalfSpace::along_normal).empty());
    // So does a cutter parallel to the polygon's own plane.
    Plane const above(plane.normal(), plane.distance() + 0.5);
    EXPECT_EQ(polygon.clip(above, HalfSpace::against_normal).size(), polygon.size());
    EXPECT_TRUE(polygon.clip(above, HalfSpace::along_normal).empty());
  }
}

}  // namespace
}  // namespace structmath
