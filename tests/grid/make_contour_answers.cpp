// SPDX-License-Identifier: MIT
// Writes the contouring known answers (tests/data/grid/contours.txt) to stdout: seeded
// random grids, some skewed, with values in steps of 1/64 so that many lie exactly on or
// within 1e-6 of the level, contoured by cubes and by tetrahedra.
#include <cstdint>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "grid/contour_answers.hpp"

namespace structmath::testing {
namespace {

using Values = std::vector<double>;

int run() {
  std::mt19937 engine(17017);
  auto pick = [&engine](int low, int high) {
    return low + static_cast<int>(engine() % static_cast<std::uint32_t>(high - low + 1));
  };
  std::cout << "# Written by tests/grid/make_contour_answers.cpp from the contourer and surface\n"
               "# as they were before their storage was pooled; do not edit.\n\n";
  for (int grid = 0; grid < 120; ++grid) {
    std::vector<int> const counts = {pick(1, 4), pick(2, 4), pick(2, 4)};
    bool const skewed = grid % 5 == 4;
    Values const origin = {pick(-8, 8) / 8.0, pick(-8, 8) / 8.0, pick(-8, 8) / 8.0};
    Values const plus_x = {pick(4, 16) / 4.0, skewed ? pick(0, 4) / 8.0 : 0.0, 0.0};
    Values const plus_y = {skewed ? pick(-4, 4) / 8.0 : 0.0, pick(4, 16) / 4.0, 0.0};
    Values const plus_z = {0.0, skewed ? pick(0, 4) / 8.0 : 0.0, pick(4, 16) / 4.0};
    Values values;
    int const n = counts[0] * counts[1] * counts[2];
    for (int v = 0; v < n; ++v) {
      // Steps of 1/64 around the level 0, a few a hair off it.
      double value = pick(-64, 64) / 64.0;
      if (pick(0, 20) == 0) value = 0.0;
      if (pick(0, 40) == 0) value = pick(-9, 9) * 1e-7;
      values.push_back(value);
    }
    for (int tetrahedra : {0, 1}) {
      AnswerFields in;
      in.add("counts", counts)
          .add("origin", origin)
          .add("plus_x", plus_x)
          .add("plus_y", plus_y)
          .add("plus_z", plus_z)
          .add("values", values)
          .add("level", 0.0)
          .add("tetrahedra", tetrahedra);
      std::string const name =
          std::string(tetrahedra ? "tetrahedra_" : "cubes_") + std::to_string(grid);
      AnswerFields const out = library_contour_outcome(in.as_case(name));
      std::cout << "case " << name << '\n';
      in.write(std::cout);
      out.write(std::cout);
      std::cout << '\n';
    }
  }
  return 0;
}

}  // namespace
}  // namespace structmath::testing

int main() { return structmath::testing::run(); }
