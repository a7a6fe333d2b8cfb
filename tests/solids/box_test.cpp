// SPDX-License-Identifier: MIT
// Tests of Box: the empty box, merging, containment, emptiness, the two-corner
// transformation, corners, printing, archiving and tolerant comparison.
#include "structmath/solids/box.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "structmath/core/archive.hpp"

namespace structmath {
namespace {

void expect_bounds(Box const& b, double x0, double x1, double y0, double y1, double z0, double z1) {
  EXPECT_EQ(b.min_x(), x0);
  EXPECT_EQ(b.max_x(), x1);
  EXPECT_EQ(b.min_y(), y0);
  EXPECT_EQ(b.max_y(), y1);
  EXPECT_EQ(b.min_z(), z0);
  EXPECT_EQ(b.max_z(), z1);
}

TEST(Box, EmptyBoxContainsNothingAndMergesToExactExtents) {
  Box b;
  expect_bounds(b, 1e10, -1e10, 1e10, -1e10, 1e10, -1e10);
  EXPECT_TRUE(b.is_empty());
  EXPECT_FALSE(b.contains(Point(0.0, 0.0, 0.0)));

  b.merge(Point(1.0, 2.0, 3.0));
  expect_bounds(b, 1.0, 1.0, 2.0, 2.0, 3.0, 3.0);
  EXPECT_TRUE(b.is_empty());                      // flat boxes are empty ...
  EXPECT_TRUE(b.contains(Point(1.0, 2.0, 3.0)));  // ... yet hold their points

  Box c;
  c.merge(Box(-1.0, 0.5, 4.0, 5.0, -2.0, 7.0));
  expect_bounds(c, -1.0, 0.5, 4.0, 5.0, -2.0, 7.0);
  c.merge(b);
  expect_bounds(c, -1.0, 1.0, 2.0, 5.0, -2.0, 7.0);
  c.merge(Box());
  expect_bounds(c, -1.0, 1.0, 2.0, 5.0, -2.0, 7.0);
}

TEST(Box, ConstructorsFromPointsMergeInAnyOrder) {
  expect_bounds(Box(Point(1.0, 1.0, 1.0), Point(0.0, 0.0, 0.0)), 0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
  expect_bounds(Box(Point(0.0, 5.0, -1.0), Point(2.0, -5.0, 1.0)), 0.0, 2.0, -5.0, 5.0, -1.0, 1.0);
  std::vector<Point> const points = {Point(0.0, 0.0, 0.0), Point(3.0, -1.0, 2.0),
                                     Point(-2.0, 4.0, 1.0)};
  expect_bounds(Box(points), -2.0, 3.0, -1.0, 4.0, 0.0, 2.0);
  expect_bounds(Box(std::vector<Point>()), 1e10, -1e10, 1e10, -1e10, 1e10, -1e10);
  // The six-number constructor keeps reversed bounds as given.
  Box const reversed(1.0, 0.0, 0.0, 1.0, 0.0, 1.0);
  expect_bounds(reversed, 1.0, 0.0, 0.0, 1.0, 0.0, 1.0);
  EXPECT_TRUE(reversed.is_empty());
  EXPECT_DOUBLE_EQ(Box(0.0, 2.0, 0.0, 3.0, -1.0, 1.0).volume(), 12.0);
}

TEST(Box, ContainmentIsInclusiveOnEveryFaceAndRejectsNaN) {
  Box const unit(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
  EXPECT_TRUE(unit.contains(Point(1.0, 1.0, 1.0)));
  EXPECT_TRUE(unit.contains(Point(0.0, 0.5, 1.0)));
  EXPECT_TRUE(unit.contains(Point(0.0, 0.0, 0.0)));
  double const above = std::nextafter(1.0, 2.0);
  double const below = std::nextafter(0.0, -1.0);
  EXPECT_FALSE(unit.contains(Point(above, 0.5, 0.5)));
  EXPECT_FALSE(unit.contains(Point(0.5, below, 0.5)));
  EXPECT_FALSE(unit.contains(Point(0.5, 0.5, above)));
  double const nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(unit.contains(Point(nan, 0.5, 0.5)));
  EXPECT_FALSE(unit.contains(Point(0.5, 0.5, nan)));
  // Through the base class, as samplers see it.
  Solid const& solid = unit;
  EXPECT_TRUE(solid.contains(Point(0.5, 0.5, 0.5)));
  THandle<Box> const copy = solid.bounding_box();
  EXPECT_NE(copy.get(), &unit);
  EXPECT_TRUE(equals(*copy, unit, 0.0));
}

TEST(Box, IntersectsIncludesTouchingBoxes) {
  Box const unit(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
  EXPECT_TRUE(unit.intersects(Box(1.0, 2.0, 0.0, 1.0, 0.0, 1.0)));
  EXPECT_TRUE(unit.intersects(Box(0.2, 0.3, 0.2, 0.3, 0.2, 0.3)));
  EXPECT_TRUE(Box(0.2, 0.3, 0.2, 0.3, 0.2, 0.3).intersects(unit));
  EXPECT_FALSE(unit.intersects(Box(0.0, 1.0, 1.5, 2.0, 0.0, 1.0)));
  EXPECT_FALSE(unit.intersects(Box(0.0, 1.0, 0.0, 1.0, -2.0, -0.5)));
  EXPECT_FALSE(unit.intersects(Box()));
}

TEST(Box, ExpandKeepsTheCentreAndMovesBoundsOutwardPerAxis) {
  Box b(0.0, 1.0, 2.0, 4.0, -3.0, 0.0);
  EXPECT_TRUE(equals(b.centroid(), Point(0.5, 3.0, -1.5), 0.0));
  b.expand(1.0, 0.0, -0.5);
  expect_bounds(b, -1.0, 2.0, 2.0, 4.0, -2.5, -0.5);
  EXPECT_TRUE(equals(b.centroid(), Point(0.5, 3.0, -1.5), 0.0));
}

TEST(Box, TransformByMapsOnlyTheTwoExtremeCornersWithoutSorting) {
  Box const box(1.0, 2.0, -1.0, 3.0, 0.0, 4.0);
  Matrix3D const scale(2.0, 0.0, 0.0, 0.0, 0.5, 0.0, 0.0, 0.0, 3.0);
  expect_bounds(*box.transform_by(scale), 2.0, 4.0, -0.5, 1.5, 0.0, 12.0);

  Box const unit(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
  Matrix3D const flip_x(-1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0);
  THandle<Box> const flipped = unit.transform_by(flip_x);
  expect_bounds(*flipped, 0.0, -1.0, 0.0, 1.0, 0.0, 1.0);
  EXPECT_TRUE(flipped->is_empty());

  // A rotation about z by 90 degrees: corners (1,2,0) -> (-2,1,0) and (2,3,4) -> (-3,2,4).
  Matrix3D const rot_z(0.0, -1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0);
  expect_bounds(*Box(1.0, 2.0, 2.0, 3.0, 0.0, 4.0).transform_by(rot_z), -2.0, -3.0, 1.0, 2.0, 0.0,
                4.0);
}

TEST(Box, CornersRunXSlowestAndZFastest) {
  Box const box(0.0, 1.0, 2.0, 3.0, 4.0, 5.0);
  THandle<std::vector<Point>> const corners = box.corners();
  ASSERT_EQ(corners->size(), 8u);
  for (unsigned int i = 0; i < 8; ++i) {
    Point const& c = (*corners)[i];
    EXPECT_EQ(c.x(), (i & 4u) ? 1.0 : 0.0) << i;
    EXPECT_EQ(c.y(), (i & 2u) ? 3.0 : 2.0) << i;
    EXPECT_EQ(c.z(), (i & 1u) ? 5.0 : 4.0) << i;
  }
  // Each call gives a new list.
  EXPECT_NE(box.corners().get(), corners.get());
}

TEST(Box, PrintsBothCornersInFixedWidthAndRestoresTheStream) {
  std::ostringstream out;
  out << 1.23456789 << ' ';
  Box(0.0, 1.0, -2.5, 3.0, 1234.5678, -0.0004).print(out);
  out << ' ' << 1.23456789;
  // Width 8 is a minimum, so an eight-character coordinate runs into its neighbour.
  EXPECT_EQ(out.str(),
            "1.23457 min:    0.000  -2.5001234.568, max:    1.000   3.000  -0.000 1.23457");
}

TEST(Box, ArchivesTheSixBoundsInFieldOrder) {
  Box const box(-1.0, 2.0, -3.0, 4.0, -5.0, 6.0);
  Archive archive;
  box.write(archive);
  double values[6];
  for (double& v : values) archive >> v;
  EXPECT_EQ(values[0], -1.0);
  EXPECT_EQ(values[1], 2.0);
  EXPECT_EQ(values[2], -3.0);
  EXPECT_EQ(values[3], 4.0);
  EXPECT_EQ(values[4], -5.0);
  EXPECT_EQ(values[5], 6.0);

  archive.rewind();
  Box read_back;
  read_back.read(archive);
  expect_bounds(read_back, -1.0, 2.0, -3.0, 4.0, -5.0, 6.0);

  // Through the base class, and a truncated archive leaves the box as it was.
  Archive truncated;
  truncated << 1.0 << 2.0 << 3.0;
  Solid& solid = read_back;
  EXPECT_THROW(solid.read(truncated), std::runtime_error);
  expect_bounds(read_back, -1.0, 2.0, -3.0, 4.0, -5.0, 6.0);
}

TEST(Box, EqualsComparesEveryBoundWithinTheTolerance) {
  Box const a(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
  EXPECT_TRUE(equals(a, Box(Point(1.0, 1.0, 1.0), Point(0.0, 0.0, 0.0)), 0.0));
  for (int field = 0; field < 6; ++field) {
    double b[6] = {0.0, 1.0, 0.0, 1.0, 0.0, 1.0};
    b[field] += 1e-3;
    Box const other(b[0], b[1], b[2], b[3], b[4], b[5]);
    EXPECT_FALSE(equals(a, other, 5e-4)) << field;
    EXPECT_TRUE(equals(a, other, 2e-3)) << field;
  }
}

}  // namespace
}  // namespace structmath
