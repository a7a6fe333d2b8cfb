// SPDX-License-Identifier: MIT
// Fuzz target: the cube reader on arbitrary bytes.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "structmath/io/cube.hpp"
#include "structmath/io/parse_error.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<char const*>(data), size));
  try {
    structmath::io::CubeFile const cube = structmath::io::read_cube(in, "fuzz.cube");
    // Every value of a grid that was read must be one the file gave: finite.
    auto const& grid = *cube.grid;
    for (int i = 0; i < grid.x_steps(); ++i) {
      for (int j = 0; j < grid.y_steps(); ++j) {
        for (int k = 0; k < grid.z_steps(); ++k) {
          if (!std::isfinite(grid.value(i, j, k))) __builtin_trap();
        }
      }
    }
  } catch (structmath::io::ParseError const&) {
  }
  return 0;
}
