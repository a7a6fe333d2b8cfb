// SPDX-License-Identifier: MIT
// Tests of the V2000 molfile and SD file reader.
#include "structmath/io/molfile.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "structmath/io/elements.hpp"
#include "structmath/io/parse_error.hpp"
#include "support/io_support.hpp"
#include "support/test_support.hpp"

namespace structmath::io {
namespace {

// Methanal (formaldehyde) as a V2000 record with explicit columns.
std::string const methanal =
    "methanal\n"
    "  hand written\n"
    "\n"
    "  4  3  0  0  0  0  0  0  0  0999 V2000\n"
    "    0.0000    0.0000    0.0000 C   0  0  0  0  0  0  0  0  0  0  0  0\n"
    "    1.2050    0.0000    0.0000 O   0  0  0  0  0  0  0  0  0  0  0  0\n"
    "   -0.5900    0.9400    0.0000 H   0  0  0  0  0  0  0  0  0  0  0  0\n"
    "   -0.5900   -0.9400    0.0000 H   0  0  0  0  0  0  0  0  0  0  0  0\n"
    "  1  2  2  0\n"
    "  1  3  1  0\n"
    "  1  4  1  0\n"
    "M  END\n";

std::vector<Molecule> parse(std::string const& text) {
  std::istringstream in(text);
  return read_sdf(in, "test.sdf");
}

void expect_parse_error(std::string const& text, std::string const& message) {
  testing::expect_parse_error(
      [](std::istream& in, std::string const& n) { return read_sdf(in, n); }, "test.sdf", text,
      message);
}

TEST(Molfile, ReadsAtomsAndBondsOfSeveralRecords) {
  auto const records = parse(methanal + "> <NAME>\nmethanal\n\n$$$$\n" + methanal + "$$$$\n");
  ASSERT_EQ(records.size(), 2U);
  Molecule const& m = records[1];
  EXPECT_EQ(m.title, "methanal");
  ASSERT_EQ(m.atoms.size(), 4U);
  EXPECT_EQ(m.atoms[1].element, "O");
  EXPECT_EQ(m.atoms[1].position.x(), 1.205);
  EXPECT_EQ(m.atoms[2].position.y(), 0.94);
  ASSERT_EQ(m.bonds.size(), 3U);
  EXPECT_EQ(m.bonds[0].first, 0);  // counted from 0
  EXPECT_EQ(m.bonds[0].second, 1);
  EXPECT_EQ(m.bonds[0].order, 2);
  EXPECT_EQ(m.bonds[2].second, 3);
  EXPECT_EQ(parse(methanal).size(), 1U);  // the last separator may be missing
}

TEST(Molfile, MalformedRecordsNameLineAndExpectation) {
  expect_parse_error("", "test.sdf:0: no record in the file");
  expect_parse_error("title\n",
                     "test.sdf:2: unexpected end of file, expected the program line of the header");
  expect_parse_error(testing::replace_line(methanal, 4, "  0  0  0  0  0  0  0  0  0  0999 V3000"),
                     "test.sdf:4: V3000 connection tables are not supported, expected V2000");
  expect_parse_error(testing::replace_line(methanal, 4, "  x  3  0  0  0  0  0  0  0  0999 V2000"),
                     "test.sdf:4: expected a whole number for the atom count, found '  x'");
  expect_parse_error(testing::replace_line(methanal, 4, "  5  3  0  0  0  0  0  0  0  0999 V2000"),
                     "test.sdf:9: expected a number for x, found '  1  2  2 '");
  expect_parse_error(testing::replace_line(methanal, 4, "  4  4  0  0  0  0  0  0  0  0999 V2000"),
                     "test.sdf:12: expected bond 4 of 4, found 'M  END'");
  expect_parse_error(testing::replace_line(methanal, 4, "  4  2  0  0  0  0  0  0  0  0999 V2000"),
                     "test.sdf:11: expected a property line or \"M  END\", found '  1  4  1  0' "
                     "(do the counts match the blocks?)");
  expect_parse_error(testing::replace_line(
                         methanal, 6, "    1.2050    0.0000    0.0000 Q   0  0  0  0  0  0  0  0"),
                     "test.sdf:6: unknown element 'Q'");
  expect_parse_error(testing::replace_line(methanal, 6, "    1.2050    0.0000"),
                     "test.sdf:6: line too short for z (columns 21-30)");
  expect_parse_error(testing::replace_line(methanal, 9, "  1  7  1  0"),
                     "test.sdf:9: bond to atom 7, expected 1 to 4");
  expect_parse_error(testing::replace_line(methanal, 9, "  1  1  1  0"),
                     "test.sdf:9: bond from an atom to itself");
  expect_parse_error(testing::replace_line(methanal, 9, "  1  2  9  0"),
                     "test.sdf:9: bond type 9, expected 1 to 4");
  expect_parse_error(methanal.substr(0, methanal.size() - 7),
                     "test.sdf:12: unexpected end of file, expected \"M  END\"");
}

TEST(Molfile, SingleMolfileRejectsTrailingContent) {
  testing::ScratchFile file(".mol");
  { std::ofstream(file.path()) << methanal << "\n"; }
  EXPECT_EQ(read_molfile(file.path()).atoms.size(), 4U);
  { std::ofstream(file.path()) << methanal << "stray text\n"; }
  EXPECT_THROW((void)read_molfile(file.path()), ParseError);
}

TEST(Molfile, BundledSamplesHaveTheirFormulae) {
  auto const caffeine = read_sdf(STRUCTMATH_TEST_DATA_DIR "/caffeine.sdf").front();
  std::map<std::string, int> formula;
  for (Atom const& a : caffeine.atoms) ++formula[a.element];
  EXPECT_EQ(formula, (std::map<std::string, int>{{"C", 8}, {"H", 10}, {"N", 4}, {"O", 2}}));
  EXPECT_EQ(caffeine.bonds.size(), 25U);  // 24 atoms, two rings
  auto const theobromine = read_sdf(STRUCTMATH_TEST_DATA_DIR "/theobromine.sdf").front();
  EXPECT_EQ(theobromine.atoms.size(), 21U);
}

TEST(Elements, SymbolsNumbersAndRadii) {
  EXPECT_EQ(atomic_number("C"), 6);
  EXPECT_EQ(atomic_number("Og"), 118);
  EXPECT_EQ(atomic_number("c"), 0);
  EXPECT_EQ(atomic_number(""), 0);
  for (int z = 1; z <= 118; ++z) EXPECT_EQ(atomic_number(element_symbol(z)), z);
  EXPECT_THROW((void)element_symbol(0), std::out_of_range);
  EXPECT_EQ(van_der_waals_radius(1), 1.20);  // Bondi
  EXPECT_EQ(van_der_waals_radius(6), 1.70);
  EXPECT_EQ(van_der_waals_radius(8), 1.52);
  EXPECT_EQ(van_der_waals_radius(5), 1.92);  // Mantina
  EXPECT_FALSE(van_der_waals_radius(26).has_value());
}

}  // namespace
}  // namespace structmath::io
