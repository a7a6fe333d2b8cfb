// SPDX-License-Identifier: MIT
// Every reader on damaged copies of the bundled files: a ParseError or a result, never a crash.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <random>
#include <sstream>

#include "structmath/io/cube.hpp"
#include "structmath/io/molfile.hpp"
#include "structmath/io/parse_error.hpp"
#include "structmath/io/xyz.hpp"

namespace structmath::io {
namespace {

std::string slurp(std::string const& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

// Truncations, deleted lines and overwritten characters, from a fixed seed.
void expect_only_parse_errors(char const* file,
                              std::function<void(std::istream&, std::string const&)> const& read) {
  std::string const original = slurp(std::string(STRUCTMATH_TEST_DATA_DIR "/") + file);
  ASSERT_FALSE(original.empty());
  std::mt19937 engine(2026);
  std::string const junk = "0123456789 .-+eEx\n\t";
  int rejected = 0;
  for (int trial = 0; trial < 300; ++trial) {
    std::string damaged = original;
    std::uniform_int_distribution<std::size_t> at(0, damaged.size() - 1);
    switch (trial % 3) {
      case 0:
        damaged.resize(at(engine));
        break;
      case 1: {
        std::size_t const start = damaged.rfind('\n', at(engine));
        std::size_t const from = start == std::string::npos ? 0 : start;
        damaged.erase(from, damaged.find('\n', from + 1) - from);
        break;
      }
      default:
        for (int k = 0; k < 3; ++k) damaged[at(engine)] = junk[at(engine) % junk.size()];
    }
    std::istringstream in(damaged);
    try {
      read(in, file);
    } catch (ParseError const& e) {
      ++rejected;
      EXPECT_EQ(std::string(e.what()).rfind(std::string(file) + ":", 0), 0U) << e.what();
    }
  }
  EXPECT_GT(rejected, 50) << file;  // most damage is noticed
}

TEST(ReaderRobustness, DamagedFilesGiveParseErrorsOrResults) {
  expect_only_parse_errors(
      "caffeine.xyz", [](std::istream& in, std::string const& name) { (void)read_xyz(in, name); });
  expect_only_parse_errors(
      "caffeine.sdf", [](std::istream& in, std::string const& name) { (void)read_sdf(in, name); });
  expect_only_parse_errors("water_density.cube", [](std::istream& in, std::string const& name) {
    (void)read_cube(in, name);
  });
}

}  // namespace
}  // namespace structmath::io
