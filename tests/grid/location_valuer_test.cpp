// SPDX-License-Identifier: MIT
// Tests of SimpleInterpolator's weighting and of the constant valuer.
#include "structmath/grid/location_valuer.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

#include "structmath/grid/calculated_grid.hpp"
#include "structmath/grid/normal_grid.hpp"

namespace structmath {
namespace {

TEST(SimpleInterpolator, WeightsTheLowerNodeByTheFractionalOffset) {
  // One cell with unrelated corner values, worked by hand:
  //   along x (f = 0.25): 1.75, 4.5, 10, 16; along y (0.5): 3.125, 13; along z (0.75):
  //   0.75 * 3.125 + 0.25 * 13 = 5.59375. (Textbook weights would give 8.84375.)
  NormalGrid g(2, 2, 2);
  double const v[2][2][2] = {{{1.0, 7.0}, {3.0, 13.0}}, {{2.0, 11.0}, {5.0, 17.0}}};
  for (int i = 0; i < 2; ++i)
    for (int j = 0; j < 2; ++j)
      for (int k = 0; k < 2; ++k) g.set_value(i, j, k, v[i][j][k]);
  EXPECT_DOUBLE_EQ(g.value(Point(0.25, 0.5, 0.75)), 5.59375);
  SimpleInterpolator const interpolator;
  EXPECT_DOUBLE_EQ(interpolator.local_value(g, Point(0.25, 0.5, 0.75)), 5.59375);
}

TEST(SimpleInterpolator, AtANodeGivesTheNodeDiagonallyAboveOrItselfOnTheTopFaces) {
  NormalGrid g(3, 3, 3, Point(0.0, 0.0, 0.0), Vector3D(2.0, 0.0, 0.0), Vector3D(0.0, 2.0, 0.0),
               Vector3D(0.0, 0.0, 2.0));
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 3; ++k) g.set_value(i, j, k, 100.0 * i + 10.0 * j + k);
  EXPECT_DOUBLE_EQ(g.value(Point(0.0, 0.0, 0.0)), 111.0);
  EXPECT_DOUBLE_EQ(g.value(Point(2.0, 2.0, 2.0)), 222.0);
  EXPECT_DOUBLE_EQ(g.value(Point(1.0, 2.0, 0.0)), 221.0);
  // Between the last node and one step beyond, only the last node is read.
  EXPECT_DOUBLE_EQ(g.value(Point(2.5, 2.0, 2.0)), 222.0);
  // One whole step beyond is inside the grid but has no cell to interpolate in.
  EXPECT_TRUE(g.inside_grid(Point(3.0, 0.0, 0.0)));
  EXPECT_THROW(g.value(Point(3.0, 0.0, 0.0)), std::out_of_range);
  // A one-node axis has a NaN coordinate, which no wrap repairs.
  NormalGrid flat(3, 3, 1);
  flat.set_repeating(true);
  EXPECT_THROW(flat.value(Point(0.5, 0.5, 0.0)), std::out_of_range);
}

TEST(SimpleInterpolator, RepeatingGridsDependOnlyOnFractionalParts) {
  NormalGrid g(3, 3, 3, Point(0.0, 0.0, 0.0), Vector3D(2.0, 0.0, 0.0), Vector3D(0.0, 2.0, 0.0),
               Vector3D(0.0, 0.0, 2.0));
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 3; ++k) g.set_value(i, j, k, (i + 1.0) * (j + 2.0) * (k + 3.0));
  g.set_repeating(true);
  double const first_cell = g.value(Point(0.25, 0.5, 0.875));
  for (Point const& p :
       {Point(1.25, 2.5, -0.125), Point(-3.75, 7.5, 4.875), Point(2.25, 1.5, 1.875)}) {
    EXPECT_DOUBLE_EQ(g.value(p), first_cell) << p.x() << " " << p.y() << " " << p.z();
  }
  // The wrap is to the first cell, not to the node range: the far cells are never read.
  EXPECT_DOUBLE_EQ(g.value(Point(1.5, 1.5, 1.5)), g.value(Point(0.5, 0.5, 0.5)));
  g.set_repeating(false);
  EXPECT_NE(g.value(Point(1.5, 1.5, 1.5)), g.value(Point(0.5, 0.5, 0.5)));
}

TEST(DefaultLocationValuer, IsMinusOneEverywhere) {
  CalculatedGrid const g;
  default_locationValuer const valuer;
  EXPECT_EQ(valuer.value(g, Point(3.0, -2.0, 1e9)), -1.0);
  EXPECT_EQ(valuer.local_value(g, Point(0.5, 0.5, 0.5)), -1.0);
  EXPECT_EQ(g.value(9, 9, 9), -1.0);
}

}  // namespace
}  // namespace structmath
