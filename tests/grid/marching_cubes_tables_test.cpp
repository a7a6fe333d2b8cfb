// SPDX-License-Identifier: MIT
// Tests of the marching-cubes case tables against their defining properties.
#include "structmath/grid/marching_cubes_tables.hpp"

#include <gtest/gtest.h>

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
    ASSERT_EQ(r.size() % 3, 0u);
    ASSERT_LE(r.size(), 15u);
    for (std::size_t n = r.size(); n < 16; ++n) EXPECT_EQ(marching_cubes_triangle_table[c][n], -1);
    unsigned int named = 0;
    for (int e : r) {
      ASSERT_GE(e, 0);
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

TEST(MarchingCubesTables, MatchThePublishedTabulation) {
  std::uint16_t const first[6] = {0x0, 0x109, 0x203, 0x30a, 0x406, 0x50f};
  for (int c = 0; c < 6; ++c) EXPECT_EQ(marching_cubes_edge_table[c], first[c]);
  EXPECT_TRUE(row(0).empty());
  EXPECT_EQ(row(1), (std::vector<int>{0, 8, 3}));
  EXPECT_EQ(row(2), (std::vector<int>{0, 1, 9}));
  EXPECT_EQ(row(3), (std::vector<int>{1, 8, 3, 9, 8, 1}));
  EXPECT_EQ(row(254), (std::vector<int>{0, 3, 8}));
  EXPECT_TRUE(row(255).empty());
}

TEST(MarchingCubesTables, EdgesJoinCornersOneOffsetApart) {
  for (auto const& e : marching_cubes_edge_corners) {
    int differing = 0;
    for (int axis = 0; axis < 3; ++axis) {
      int const d =
          marching_cubes_corner_offset[e[1]][axis] - marching_cubes_corner_offset[e[0]][axis];
      EXPECT_GE(d, 0);
      differing += d;
    }
    EXPECT_EQ(differing, 1);
  }
}

}  // namespace
}  // namespace structmath
