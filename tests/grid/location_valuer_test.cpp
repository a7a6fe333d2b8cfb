// SPDX-License-Identifier: MIT
// Tests of SimpleInterpolator's weighting and of the constant valuer.
#include "structmath/grid/location_valuer.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

#include "grid_fixtures.hpp"
#include "structmath/grid/calculated_grid.hpp"

namespace structmath {
namespace {

using testing::unit_grid;

TEST(SimpleInterpolator, WeightsTheLowerNodeByTheFractionalOffset) {
  // One cell with unrelated corner values, worked by hand:
  //   along x (f = 0.25): 1.75, 4.5, 10, 16; along y (0.5): 3.125, 13; along z (0.75):
  //   0.75 * 3.125 + 0.25 * 13 = 5.59375. (Textbook weights would give 8.84375.)
  auto g = unit_grid(2, 2, 2, {1.0, 7.0, 3.0, 13.0, 2.0, 11.0, 5.0, 17.0});
  EXPECT_DOUBLE_EQ(g->value(Point(0.25, 0.5, 0.75)), 5.59375);
  EXPECT_DOUBLE_EQ(SimpleInterpolator().local_value(*g, Point(0.25, 0.5, 0.75)), 5.59375);
}

TEST(SimpleInterpolator, AtANodeGivesTheNodeDiagonallyAboveOrItselfOnTheTopFaces) {
  auto g = unit_grid(3, 3, 3, [](int i, int j, int k) { return 100.0 * i + 10.0 * j + k; });
  EXPECT_DOUBLE_EQ(g->value(Point(0.0, 0.0, 0.0)), 111.0);
  EXPECT_DOUBLE_EQ(g->value(Point(2.0, 2.0, 2.0)), 222.0);
  EXPECT_DOUBLE_EQ(g->value(Point(1.0, 2.0, 0.0)), 221.0);
  // Between the last node and one step beyond, only the last node is read.
  EXPECT_DOUBLE_EQ(g->value(Point(2.5, 2.0, 2.0)), 222.0);
  // One whole step beyond is inside the grid but has no cell to interpolate in.
  EXPECT_TRUE(g->inside_grid(Point(3.0, 0.0, 0.0)));
  EXPECT_THROW(g->value(Point(3.0, 0.0, 0.0)), std::out_of_range);
  // A one-node axis has a NaN coordinate, which no wrap repairs.
  NormalGrid flat(3, 3, 1);
  flat.set_repeating(true);
  EXPECT_THROW(flat.value(Point(0.5, 0.5, 0.0)), std::out_of_range);
}

TEST(SimpleInterpolator, RepeatingGridsDependOnlyOnFractionalParts) {
  auto g =
      unit_grid(3, 3, 3, [](int i, int j, int k) { return (i + 1.0) * (j + 2.0) * (k + 3.0); });
  g->set_repeating(true);
  double const first_cell = g->value(Point(0.25, 0.5, 0.875));
  for (Point const& p :
       {Point(1.25, 2.5, -0.125), Point(-3.75, 7.5, 4.875), Point(2.25, 1.5, 1.875)}) {
    EXPECT_DOUBLE_EQ(g->value(p), first_cell) << p.x() << " " << p.y() << " " << p.z();
  }
  // The wrap is to the first cell, not to the node range: the far cells are never read.
  EXPECT_DOUBLE_EQ(g->value(Point(1.5, 1.5, 1.5)), g->value(Point(0.5, 0.5, 0.5)));
  g->set_repeating(false);
  EXPECT_NE(g->value(Point(1.5, 1.5, 1.5)), g->value(Point(0.5, 0.5, 0.5)));
}

TEST(DefaultLocationValuer, IsMinusOneEverywhere) {
  CalculatedGrid const g;
  EXPECT_EQ(default_locationValuer().value(g, Point(3.0, -2.0, 1e9)), -1.0);
  EXPECT_EQ(default_locationValuer().local_value(g, Point(0.5, 0.5, 0.5)), -1.0);
}

}  // namespace
}  // namespace structmath
