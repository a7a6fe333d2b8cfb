// SPDX-License-Identifier: MIT
// Tests of the XYZ reader and writer: frames, round trips and strict error reports.
#include "structmath/io/xyz.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "structmath/io/parse_error.hpp"
#include "support/io_support.hpp"
#include "support/test_support.hpp"

namespace structmath::io {
namespace {

std::vector<Molecule> parse(std::string const& text) {
  std::istringstream in(text);
  return read_xyz(in, "test.xyz");
}

void expect_parse_error(std::string const& text, std::string const& message) {
  testing::expect_parse_error(
      [](std::istream& in, std::string const& n) { return read_xyz(in, n); }, "test.xyz", text,
      message);
}

TEST(Xyz, ReadsFramesWithTitlesElementsAndCoordinates) {
  auto const frames = parse(
      "3\nwater\nO 0 0 0.1173\nH 0.0 0.7572 -0.4692\r\n1 0 -0.7572 -0.4692\n"
      "1\nsecond frame\nCl 1e-3 -2 3.5\n\n\n");
  ASSERT_EQ(frames.size(), 2U);
  EXPECT_EQ(frames[0].title, "water");
  ASSERT_EQ(frames[0].atoms.size(), 3U);
  EXPECT_EQ(frames[0].atoms[0].element, "O");
  EXPECT_EQ(frames[0].atoms[1].position.y(), 0.7572);
  EXPECT_EQ(frames[0].atoms[2].element, "H");  // given as atomic number 1
  EXPECT_EQ(frames[1].atoms[0].element, "Cl");
  EXPECT_EQ(frames[1].atoms[0].position.x(), 1e-3);
  EXPECT_EQ(frames[1].positions()[0].z(), 3.5);
  EXPECT_TRUE(frames[0].bonds.empty());
}

TEST(Xyz, WrittenFramesReadBackTheSame) {
  Molecule m;
  m.title = "a title with spaces";
  m.atoms = {{"C", Point(1.25, -2.5, 3.0)}, {"Br", Point(-0.000001, 1e3, 7.123456)}};
  std::ostringstream out;
  write_xyz(out, m);
  write_xyz(out, m);
  auto const back = parse(out.str());
  ASSERT_EQ(back.size(), 2U);
  EXPECT_EQ(back[1].title, m.title);
  ASSERT_EQ(back[1].atoms.size(), 2U);
  EXPECT_EQ(back[1].atoms[1].element, "Br");
  EXPECT_TRUE(equals(back[1].atoms[1].position, m.atoms[1].position, 1e-6));

  testing::ScratchFile file(".xyz");
  write_xyz(file.path(), {m});
  EXPECT_EQ(read_xyz(file.path()).front().atoms.size(), 2U);
}

TEST(Xyz, MalformedInputNamesFileLineAndExpectation) {
  expect_parse_error("", "test.xyz:0: no frame in the file");
  expect_parse_error("two\nt\n",
                     "test.xyz:1: expected a whole number for the atom count, found 'two'");
  expect_parse_error("-1\nt\n", "test.xyz:1: expected a non-negative atom count, found -1");
  expect_parse_error("2 atoms\nt\n",
                     "test.xyz:1: expected an atom count alone on the line, found '2 atoms'");
  expect_parse_error("2\n", "test.xyz:2: unexpected end of file, expected the comment line");
  expect_parse_error("2\nt\nC 0 0 0\n", "test.xyz:4: unexpected end of file, expected atom 2 of 2");
  expect_parse_error("1\nt\nC 0 0\n", "test.xyz:3: expected 4 fields (element x y z), found 3");
  expect_parse_error("1\nt\nC 0 0 0 0.5\n",
                     "test.xyz:3: expected 4 fields (element x y z), found 5");
  expect_parse_error("1\nt\nC 0 l.5 0\n", "test.xyz:3: expected a number for y, found 'l.5'");
  expect_parse_error("1\nt\nXx 0 0 0\n", "test.xyz:3: unknown element 'Xx'");
  expect_parse_error("1\nt\nQ 0 0 0\n", "test.xyz:3: unknown element 'Q'");
  expect_parse_error("1\nt\n119 0 0 0\n", "test.xyz:3: unknown element '119'");
  expect_parse_error("1\nt\nC 0 0 0\n\n1\nt\nC 0 0 0\n",
                     "test.xyz:5: expected an atom count, found a blank line before it");
  try {
    (void)read_xyz("/nonexistent/file.xyz");
    FAIL();
  } catch (ParseError const& e) {
    EXPECT_STREQ(e.what(), "/nonexistent/file.xyz:0: cannot open the file");
  }
}

TEST(Xyz, LabelsInAnyCaseAndHydrogenIsotopesNameTheirElements) {
  auto const frame = parse("5\nlabels\nc 0 0 0\nCL 1 0 0\ncl 2 0 0\nD 0 1 0\nt 0 2 0\n").front();
  std::vector<std::pair<std::string, std::string>> seen;
  for (Atom const& a : frame.atoms) seen.emplace_back(a.element, a.label);
  EXPECT_EQ(seen, (std::vector<std::pair<std::string, std::string>>{
                      {"C", "c"}, {"Cl", "CL"}, {"Cl", "cl"}, {"H", "D"}, {"H", "t"}}));
}

TEST(Xyz, ReaderGoesOnAfterAFrameWithABadAtomLine) {
  std::istringstream in(
      "1\nfirst\nC 0 0 0\n3\nbad\nC 0 0 0\nC x 0 0\nC 0 0 0\n1\nthird\nN 0 0 1\n");
  XyzReader reader(in, "t.xyz");
  Molecule frame;
  ASSERT_TRUE(reader.next(frame));
  EXPECT_EQ(frame.title, "first");
  EXPECT_THROW((void)reader.next(frame), ParseError);
  EXPECT_EQ(reader.first_line(), 4);
  ASSERT_TRUE(reader.next(frame));
  EXPECT_EQ(frame.title, "third");
  EXPECT_EQ(frame.atoms[0].element, "N");
  EXPECT_FALSE(reader.next(frame));
  EXPECT_EQ(reader.frames(), 3);

  // Without a readable count the frame's end is unknown: the reader stops there.
  std::istringstream lost("1\nfirst\nC 0 0 0\nthree\nbad\n1\nthird\nN 0 0 1\n");
  XyzReader stops(lost, "t.xyz");
  ASSERT_TRUE(stops.next(frame));
  EXPECT_THROW((void)stops.next(frame), ParseError);
  EXPECT_FALSE(stops.next(frame));
}

TEST(Xyz, BundledSamplesRead) {
  auto const caffeine = read_xyz(STRUCTMATH_TEST_DATA_DIR "/caffeine.xyz");
  ASSERT_EQ(caffeine.size(), 1U);
  EXPECT_EQ(caffeine[0].atoms.size(), 24U);
  auto const butane = read_xyz(STRUCTMATH_TEST_DATA_DIR "/butane_conformers.xyz");
  ASSERT_EQ(butane.size(), 2U);
  EXPECT_EQ(butane[1].title, "n-butane gauche");
}

}  // namespace
}  // namespace structmath::io
