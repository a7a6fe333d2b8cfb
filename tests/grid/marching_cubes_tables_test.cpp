// SPDX-License-Identifier: MIT
// Tests of the marching-cubes case tables against their defining properties.
#include "structmath/grid/marching_cubes_tables.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace structmath {
namespace {

std::vector<int> row(int c) {
  std::vector<int> r;
  for (int n = 0; n < 16 && marching_cubes_triangle_table[c][n] >= 0; ++n)
    r.push_back(marching_cubes_triangle_table[c][n]);
  return r;
}

TEST(MarchingCubesTables, EdgeMaskIsTheUnionOfTheTriangleEdgesAndTheSignChangingEdges) {
  for (int c = 0; c < 256; ++c) {
    SCOPED_TRACE(c);
    std::vector<int> const r = row(c);
    ASSERT_TRUE(r.size() % 3 == 0 && r.size() < 16);
    EXPECT_EQ(marching_cubes_triangle_table[c][r.size()], -1);
    unsigned int named = 0;
    for (int e : r) {
      ASSERT_LT(e, 12);
      named |= 1u << e;
    }
    unsigned int sign_changes = 0;
    for (unsigned int e = 0; e < 12; ++e) {
      int const a = marching_cubes_edge_corners[e][0];
      int const b = marching_cubes_edge_corners[e][1];
      if (((c >> a) & 1) != ((c >> b) & 1)) sign_changes |= 1u << e;
    }
    EXPECT_EQ(marching_cubes_edge_table[c], named);
    EXPECT_EQ(marching_cubes_edge_table[c], sign_changes);
  }
}

TEST(MarchingCubesTables, MatchThePublishedRowsAndJoinNeighbouringCorners) {
  EXPECT_EQ(row(3), (std::vector<int>{1, 8, 3, 9, 8, 1}));
  EXPECT_EQ(row(254), (std::vector<int>{0, 3, 8}));
  // Every edge runs from a corner to the next one along a single axis.
  for (auto const& e : marching_cubes_edge_corners) {
    std::vector<int> step;
    for (int axis = 0; axis < 3; ++axis)
      step.push_back(marching_cubes_corner_offset[e[1]][axis] -
                     marching_cubes_corner_offset[e[0]][axis]);
    std::sort(step.begin(), step.end());
    EXPECT_EQ(step, (std::vector<int>{0, 0, 1}));
  }
}

}  // namespace
}  // namespace structmath
