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

using Bounds = std::vector<double>;

Bounds bounds(Box const& b) {
  return {b.min_x(), b.max_x(), b.min_y(), b.max_y(), b.min_z(), b.max_z()};
}

TEST(Box, EmptyBoxAndMergingGiveExactExtents) {
  Box b;
  EXPECT_EQ(bounds(b), (Bounds{1e10, -1e10, 1e10, -1e10, 1e10, -1e10}));
  b.merge(Point(1, 2, 3));  // flat, so empty, yet holding its point
  EXPECT_TRUE(b.is_empty() && b.contains(Point(1, 2, 3)));
  EXPECT_TRUE(Box(0, 1, 0, 1, 1, 0).is_empty() && !Box(0, 1, 0, 1, 0, 1).is_empty());
  Box c;
  c.merge(Box(-1, 0.5, 4, 5, -2, 7));
  c.merge(b);
  c.merge(Box());
  EXPECT_EQ(bounds(c), (Bounds{-1, 1, 2, 5, -2, 7}));
  EXPECT_EQ(bounds(Box(Point(0, 5, -1), Point(2, -5, 1))), (Bounds{0, 2, -5, 5, -1, 1}));
  EXPECT_EQ(bounds(Box({Point(0, 0, 0), Point(3, -1, 2), Point(-2, 4, 1)})),
            (Bounds{-2, 3, -1, 4, 0, 2}));
}

TEST(Box, ContainmentAndIntersectionIncludeTheFaces) {
  Box const unit(0, 1, 0, 1, 0, 1);
  double const above = std::nextafter(1.0, 2.0), nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(unit.contains(Point(0, 0, 0)) && unit.contains(Point(1, 1, 1)));
  for (Point const& p : {Point(above, 0.5, 0.5), Point(0.5, -1e-300, 0.5), Point(0.5, 0.5, above),
                         Point(0.5, nan, 0.5)}) {
    EXPECT_FALSE(unit.contains(p)) << p.x() << ' ' << p.y() << ' ' << p.z();
  }
  EXPECT_TRUE(unit.intersects(Box(1, 2, 0, 1, 0, 1)));
  EXPECT_TRUE(Box(0.2, 0.3, 0.2, 0.3, 0.2, 0.3).intersects(unit));
  EXPECT_FALSE(unit.intersects(Box(0, 1, 0, 1, -2, -0.5)));
  THandle<Box> const copy = unit.bounding_box();  // fresh: composites merge into it
  EXPECT_TRUE(copy.get() != &unit && bounds(*copy) == bounds(unit));
}

TEST(Box, ExpandTransformAndCorners) {
  Box b(0, 1, 2, 4, -3, 0);
  b.expand(1, 0, -0.5);
  EXPECT_EQ(bounds(b), (Bounds{-1, 2, 2, 4, -2.5, -0.5}));
  EXPECT_TRUE(equals(b.centroid(), Point(0.5, 3, -1.5), 0.0));
  // Only the two extreme corners are mapped, and the bounds are not sorted afterwards.
  Matrix3D const scale(2, 0, 0, 0, 0.5, 0, 0, 0, 3), flip_x(-1, 0, 0, 0, 1, 0, 0, 0, 1);
  EXPECT_EQ(bounds(*Box(1, 2, -1, 3, 0, 4).transform_by(scale)), (Bounds{2, 4, -0.5, 1.5, 0, 12}));
  EXPECT_EQ(bounds(*Box(0, 1, 0, 1, 0, 1).transform_by(flip_x)), (Bounds{0, -1, 0, 1, 0, 1}));
  THandle<std::vector<Point>> const corners = Box(0, 1, 2, 3, 4, 5).corners();
  ASSERT_EQ(corners->size(), 8u);
  for (unsigned int i = 0; i < 8; ++i) {  // x slowest, z fastest
    Point const expected((i & 4u) ? 1 : 0, (i & 2u) ? 3 : 2, (i & 1u) ? 5 : 4);
    EXPECT_TRUE(equals((*corners)[i], expected, 0.0)) << i;
  }
}

TEST(Box, PrintsArchivesAndComparesInFieldOrder) {
  std::ostringstream out;
  out << 1.23456789 << ' ';
  Box(0.0, 1.0, -2.5, 3.0, 1234.5678, -0.0004).print(out);
  out << ' ' << 1.23456789;
  // Width 8 is a minimum, so an eight-character coordinate runs into its neighbour.
  EXPECT_EQ(out.str(),
            "1.23457 min:    0.000  -2.5001234.568, max:    1.000   3.000  -0.000 1.23457");

  Bounds const six = {-1, 2, -3, 4, -5, 6};
  Archive archive, truncated;
  Box(-1, 2, -3, 4, -5, 6).write(archive);
  Bounds values(6);
  for (double& v : values) archive >> v;
  EXPECT_EQ(values, six);
  archive.rewind();
  Box read_back;
  static_cast<Solid&>(read_back).read(archive);
  truncated << 1.0 << 2.0 << 3.0;
  EXPECT_THROW(read_back.read(truncated), std::runtime_error);  // and leaves the box as it was
  EXPECT_EQ(bounds(read_back), six);

  for (std::size_t field = 0; field < 6; ++field) {
    Bounds near = {0, 1, 0, 1, 0, 1};
    near[field] += 1e-3;
    Box const a(0, 1, 0, 1, 0, 1), b(near[0], near[1], near[2], near[3], near[4], near[5]);
    EXPECT_TRUE(!equals(a, b, 5e-4) && equals(a, b, 2e-3)) << field;
  }
}

}  // namespace
}  // namespace structmath
