// SPDX-License-Identifier: MIT
// Tests of the cube reader and writer: units, value order, round trips, malformed files.
#include "structmath/io/cube.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "structmath/io/parse_error.hpp"
#include "support/io_support.hpp"

namespace structmath::io {
namespace {

// Two atoms, a 2 x 3 x 4 grid in bohr whose values count 0, 1, 2, ... in file order.
std::string const small_cube =
    "first comment\n"
    "second comment\n"
    "    2    1.000000    0.000000   -1.000000\n"
    "    2    0.500000    0.000000    0.000000\n"
    "    3    0.000000    0.250000    0.000000\n"
    "    4    0.000000    0.000000    2.000000\n"
    "    8    8.000000    0.000000    0.000000    0.000000\n"
    "    1    0.500000    1.000000    1.000000    1.000000\n"
    "0 1 2 3\n4 5 6 7\n8 9 10 11\n12 13 14 15\n16 17 18 19\n20 21 22 23\n";

CubeFile parse(std::string const& text) {
  std::istringstream in(text);
  return read_cube(in, "test.cube");
}

void expect_parse_error(std::string const& text, std::string const& message) {
  testing::expect_parse_error(
      [](std::istream& in, std::string const& n) { return read_cube(in, n); }, "test.cube", text,
      message);
}

TEST(Cube, ReadsHeaderAtomsAndValuesWithZFastestInAngstrom) {
  CubeFile const cube = parse(small_cube);
  EXPECT_EQ(cube.comment1, "first comment");
  ASSERT_TRUE(cube.grid);
  NormalGrid const& g = *cube.grid;
  EXPECT_EQ(g.x_steps(), 2);
  EXPECT_EQ(g.y_steps(), 3);
  EXPECT_EQ(g.z_steps(), 4);
  double const b = bohr_in_angstrom;
  EXPECT_TRUE(equals(g.origin(), Point(b, 0, -b), 1e-12));
  EXPECT_TRUE(equals(g.plus_x(), Vector3D(0.5 * b, 0, 0), 1e-12));       // one step
  EXPECT_TRUE(equals(g.plus_y(), Vector3D(0, 2 * 0.25 * b, 0), 1e-12));  // two steps
  EXPECT_TRUE(equals(g.plus_z(), Vector3D(0, 0, 3 * 2.0 * b), 1e-12));
  EXPECT_EQ(g.value(0, 0, 0), 0.0);
  EXPECT_EQ(g.value(0, 0, 3), 3.0);
  EXPECT_EQ(g.value(0, 1, 0), 4.0);
  EXPECT_EQ(g.value(1, 0, 0), 12.0);
  EXPECT_EQ(g.value(1, 2, 3), 23.0);
  ASSERT_EQ(cube.atoms.size(), 2U);
  EXPECT_EQ(cube.atoms[1].atomic_number, 1);
  EXPECT_EQ(cube.atoms[1].charge, 0.5);
  EXPECT_TRUE(equals(cube.atoms[1].position, Point(b, b, b), 1e-12));
}

TEST(Cube, NegativeCountsMeanAngstrom) {
  std::string text = small_cube;
  text.replace(text.find("    2    0.5"), 5, "   -2");
  text.replace(text.find("    3    0.0"), 5, "   -3");
  text.replace(text.find("    4    0.0"), 5, "   -4");
  CubeFile const cube = parse(text);
  EXPECT_TRUE(equals(cube.grid->origin(), Point(1, 0, -1), 1e-12));
  EXPECT_TRUE(equals(cube.grid->plus_x(), Vector3D(0.5, 0, 0), 1e-12));
  EXPECT_TRUE(equals(cube.atoms[1].position, Point(1, 1, 1), 1e-12));
}

TEST(Cube, WrittenCubeReadsBackTheSame) {
  CubeFile const cube = parse(small_cube);
  std::ostringstream out;
  write_cube(out, cube);
  CubeFile const back = parse(out.str());
  EXPECT_EQ(back.comment2, "second comment");
  EXPECT_TRUE(equals(back.grid->origin(), cube.grid->origin(), 1e-6));
  EXPECT_TRUE(equals(back.grid->plus_z(), cube.grid->plus_z(), 1e-5));
  for (int i = 0; i < 2; ++i) {
    for (int j = 0; j < 3; ++j) {
      for (int k = 0; k < 4; ++k) EXPECT_EQ(back.grid->value(i, j, k), cube.grid->value(i, j, k));
    }
  }
  EXPECT_EQ(back.atoms.size(), 2U);
  EXPECT_THROW(write_cube(out, CubeFile{}), std::invalid_argument);
}

TEST(Cube, MalformedFilesNameLineAndExpectation) {
  auto with_line = [](int line, std::string const& with) {
    return testing::replace_line(small_cube, line, with);
  };
  expect_parse_error("only one line\n",
                     "test.cube:2: unexpected end of file, expected the second comment line");
  expect_parse_error(with_line(3, "2 0 0"),
                     "test.cube:3: expected the atom count and origin x y z, found 3 fields");
  expect_parse_error(with_line(4, "    0    0.5 0 0"),
                     "test.cube:4: expected a non-zero x point count");
  expect_parse_error(with_line(5, "   -3    0 0.25 0"),
                     "test.cube:5: expected every axis count to have the sign of the x count (one "
                     "length unit)");
  expect_parse_error(with_line(6, "    4    0 0 two"),
                     "test.cube:6: expected a number for the z step z, found 'two'");
  expect_parse_error(with_line(8, "    1    0.5 1 1"),
                     "test.cube:8: expected 5 fields (atomic number, charge, x, y, z), found 4");
  expect_parse_error(with_line(7, "  200    8 0 0 0"),
                     "test.cube:7: unknown element with atomic number 200");
  expect_parse_error(with_line(10, "4 5 x 7"),
                     "test.cube:10: expected a number for a grid value, found 'x'");
  expect_parse_error(small_cube.substr(0, small_cube.size() - 12),
                     "test.cube:14: unexpected end of file, expected 24 values, found 20");
  expect_parse_error(small_cube + "24\n", "test.cube:15: more values than the grid has points");
}

}  // namespace
}  // namespace structmath::io
