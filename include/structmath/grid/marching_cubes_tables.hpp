// SPDX-License-Identifier: MIT
// The marching-cubes case tables and the cell numbering they are written for.
#pragma once

#include <cstdint>

#include "structmath/export.hpp"

namespace structmath {

/// Corners of a grid cell as (di, dj, dk) offsets from its lowest node. Corners 0 to 3
/// form the face dj = 0 and corner n + 4 lies above corner n.
inline constexpr int marching_cubes_corner_offset[8][3] = {
    {0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}, {0, 1, 0}, {1, 1, 0}, {1, 1, 1}, {0, 1, 1}};

/// The twelve cube edges as the pair of corners each joins.
inline constexpr int marching_cubes_edge_corners[12][2] = {
    {0, 1}, {1, 2}, {3, 2}, {0, 3}, {4, 5}, {5, 6}, {7, 6}, {4, 7}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};

/// For each case (bit n set when corner n lies below the level): a 12-bit mask with bit e
/// set when cube edge e carries a surface vertex.
STRUCTMATH_API extern std::uint16_t const marching_cubes_edge_table[256];

/// For each case: up to five triangles as triples of cube-edge numbers, ended by -1.
STRUCTMATH_API extern std::int8_t const marching_cubes_triangle_table[256][16];

}  // namespace structmath
