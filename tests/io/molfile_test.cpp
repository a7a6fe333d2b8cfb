// SPDX-License-Identifier: MIT
// Tests of the molfile and SD file reader (V2000 and V3000) and writer.
#include "structmath/io/molfile.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "structmath/io/elements.hpp"
#include "structmath/io/parse_error.hpp"
#include "structmath/io/sdf_reader.hpp"
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

// The same molecule as a V3000 table, with a continued line and a superatom group.
std::string const methanal_v3000 =
    "methanal\n"
    "  hand written\n"
    "\n"
    "  0  0  0     0  0            999 V3000\n"
    "M  V30 BEGIN CTAB\n"
    "M  V30 COUNTS 4 3 0 0 0\n"
    "M  V30 BEGIN ATOM\n"
    "M  V30 1 C 0 0 0 0\n"
    "M  V30 2 O 1.205 0 -\n"
    "M  V30 0 0\n"
    "M  V30 3 H -0.59 0.94 0 0\n"
    "M  V30 4 H -0.59 -0.94 0 0\n"
    "M  V30 END ATOM\n"
    "M  V30 BEGIN BOND\n"
    "M  V30 1 2 1 2\n"
    "M  V30 2 1 1 3\n"
    "M  V30 3 1 1 4\n"
    "M  V30 END BOND\n"
    "M  V30 BEGIN SGROUP\n"
    "M  V30 1 SUP 1 ATOMS=(2 1 2) LABEL=\"CH O\"\n"
    "M  V30 END SGROUP\n"
    "M  V30 END CTAB\n"
    "M  END\n";

void expect_same_molecule(Molecule const& a, Molecule const& b) {
  EXPECT_EQ(a.title, b.title);
  ASSERT_EQ(a.atoms.size(), b.atoms.size());
  for (std::size_t i = 0; i < a.atoms.size(); ++i) {
    EXPECT_EQ(a.atoms[i].element, b.atoms[i].element) << i;
    EXPECT_EQ(a.atoms[i].charge, b.atoms[i].charge) << i;
    EXPECT_TRUE(equals(a.atoms[i].position, b.atoms[i].position, 1e-4)) << i;
  }
  ASSERT_EQ(a.bonds.size(), b.bonds.size());
  for (std::size_t i = 0; i < a.bonds.size(); ++i) {
    EXPECT_EQ(a.bonds[i].first, b.bonds[i].first) << i;
    EXPECT_EQ(a.bonds[i].second, b.bonds[i].second) << i;
    EXPECT_EQ(a.bonds[i].order, b.bonds[i].order) << i;
  }
}

TEST(Molfile, V3000TablesReadLikeTheirV2000Twins) {
  expect_same_molecule(parse(methanal_v3000).front(), parse(methanal).front());
  // Atom indices need not run 1, 2, 3...; bonds refer to them. Charges come as CHG=.
  std::string ion = testing::replace_line(methanal_v3000, 8, "M  V30 10 C 0 0 0 0 CHG=1 MASS=13");
  for (int line : {15, 16, 17}) {
    ion = testing::replace_line(
        ion, line, "M  V30 " + std::to_string(line - 14) + " 1 10 " + std::to_string(line - 13));
  }
  Molecule const m = parse(ion).front();
  EXPECT_EQ(m.atoms[0].charge, 1);
  EXPECT_EQ(m.bonds[2].first, 0);
  EXPECT_EQ(m.bonds[2].second, 3);

  expect_parse_error(testing::replace_line(methanal_v3000, 6, "M  V30 COUNTS 5 3 0 0 0"),
                     "test.sdf:13: found 4 atoms, the counts line says 5");
  expect_parse_error(testing::replace_line(methanal_v3000, 6, "M  V30 COUNTS 3 3 0 0 0"),
                     "test.sdf:12: more atoms than the 3 of the counts line");
  expect_parse_error(testing::replace_line(methanal_v3000, 16, "M  V30 2 1 1 7"),
                     "test.sdf:16: bond to atom 7, which the atom block does not hold");
  expect_parse_error(testing::replace_line(methanal_v3000, 16, "M  V30 2 8 1 3"),
                     "test.sdf:16: bond type 8, expected 1 to 4");
  expect_parse_error(testing::replace_line(methanal_v3000, 11, "M  V30 3 [C,N] -0.59 0.94 0 0"),
                     "test.sdf:11: unknown element '[C,N]'");
  expect_parse_error(
      testing::replace_line(methanal_v3000, 11, "M  V30 3 H -0.59 0.94"),
      "test.sdf:11: expected an atom (index, type, x, y, z), found '3 H -0.59 0.94'");
  expect_parse_error(testing::replace_line(methanal_v3000, 22, "M  END"),
                     "test.sdf:22: expected a \"M  V30\" line with a block or \"END CTAB\", "
                     "found 'M  END'");
}

TEST(Molfile, ChargesComeFromTheAtomBlockUnlessChargeLinesAreGiven) {
  std::string const oxonium = testing::replace_line(
      methanal, 6, "    1.2050    0.0000    0.0000 O   0  3  0  0  0  0  0  0  0  0  0  0");
  EXPECT_EQ(parse(oxonium).front().atoms[1].charge, 1);
  std::string const with_lines =
      testing::replace_line(oxonium, 12, "M  CHG  2   1  -1   4   2\nM  END");
  Molecule const m = parse(with_lines).front();
  EXPECT_EQ(m.atoms[0].charge, -1);
  EXPECT_EQ(m.atoms[1].charge, 0);  // a charge line voids the atom block's charges
  EXPECT_EQ(m.atoms[3].charge, 2);
  expect_parse_error(testing::replace_line(methanal, 12, "M  CHG  1   9   1\nM  END"),
                     "test.sdf:12: charge on atom 9, expected 1 to 4");
  expect_parse_error(testing::replace_line(methanal, 12, "M  CHG  2   1   1\nM  END"),
                     "test.sdf:12: expected \"M  CHG\", a count from 1 to 8 and that many atom "
                     "and charge pairs");
}

TEST(Molfile, SdfReaderKeepsDataItemsAndGoesOnAfterABadRecord) {
  std::string const bad = testing::replace_line(methanal, 9, "  1  7  1  0");
  std::string const cut = methanal.substr(0, methanal.find("   -0.5900"));  // ends in atom 2
  std::string const text = methanal + "> <NAME> (1)\nmethanal\n\n>  <NOTE>\ntwo\nlines\n\n$$$$\n" +
                           bad + "$$$$\n" + cut + "$$$$\n" + methanal_v3000 + "$$$$\n\n\n";
  std::istringstream in(text);
  SdfReader reader(in, "lib.sdf");
  SdfRecord record;
  ASSERT_TRUE(reader.next(record));
  EXPECT_EQ(record.number, 1);
  EXPECT_EQ(record.first_line, 1);
  EXPECT_EQ(record.data, (std::vector<std::pair<std::string, std::string>>{
                             {"NAME", "methanal"}, {"NOTE", "two\nlines"}}));
  try {
    (void)reader.next(record);
    ADD_FAILURE() << "a bond to a missing atom was accepted";
  } catch (ParseError const& e) {
    EXPECT_STREQ(e.what(), "lib.sdf:29: bond to atom 7, expected 1 to 4");
  }
  try {
    (void)reader.next(record);
    ADD_FAILURE() << "a cut record was accepted";
  } catch (ParseError const& e) {
    EXPECT_STREQ(e.what(), "lib.sdf:40: the record ends (\"$$$$\") where atom 3 of 4 was expected");
  }
  ASSERT_TRUE(reader.next(record));
  EXPECT_EQ(record.number, 4);
  EXPECT_EQ(record.first_line, 41);
  EXPECT_TRUE(record.data.empty());
  expect_same_molecule(record.molecule, parse(methanal).front());
  EXPECT_FALSE(reader.next(record));  // the blank lines at the end are no record
  EXPECT_EQ(reader.records(), 4);

  std::istringstream again(text);
  SdfReader skipper(again, "lib.sdf");
  EXPECT_TRUE(skipper.skip());
  EXPECT_TRUE(skipper.skip());
  EXPECT_TRUE(skipper.skip());
  ASSERT_TRUE(skipper.next(record));
  EXPECT_EQ(record.number, 4);
  EXPECT_FALSE(skipper.skip());
}

TEST(Molfile, WrittenRecordsReadBackTheSame) {
  Molecule ion = parse(methanal).front();
  ion.atoms[1].charge = 1;
  ion.atoms[0].charge = -4;  // only an "M  CHG" line can hold it
  ion.title = "first line\nsecond line";
  // A chain too long for V2000 goes out as V3000.
  Molecule chain;
  chain.title = "chain";
  for (int i = 0; i < 1200; ++i) {
    chain.atoms.emplace_back(i % 7 == 0 ? "N" : "C", Point(1.5 * i, 0.25 * (i % 2), 0.0),
                             i % 5 - 2);
    if (i > 0) chain.bonds.push_back({i - 1, i, 1 + i % 3});
  }
  std::ostringstream out;
  write_sdf(out, ion);
  write_sdf(out, chain);
  EXPECT_NE(out.str().find("M  CHG  2   1  -4   2   1"), std::string::npos);
  EXPECT_NE(out.str().find("V3000"), std::string::npos);
  auto const back = parse(out.str());
  ASSERT_EQ(back.size(), 2U);
  ion.title = "first line";
  expect_same_molecule(back[0], ion);
  expect_same_molecule(back[1], chain);
}

TEST(Molfile, DrugLikeRecordsHaveTheirFormulaeAndCharges) {
  // Six records as a cheminformatics toolkit writes them: V2000 and V3000, 3-D with
  // hydrogens and one 2-D record without, zwitterion and cation.
  auto const records = read_sdf(STRUCTMATH_TEST_ANSWERS_DIR "/io/drugs.sdf");
  std::vector<std::string> formulae;
  std::vector<std::vector<int>> charges;
  for (Molecule const& m : records) {
    std::map<std::string, int> count;
    std::vector<int> charged;
    for (std::size_t i = 0; i < m.atoms.size(); ++i) {
      ++count[m.atoms[i].element];
      if (m.atoms[i].charge != 0) charged.push_back(m.atoms[i].charge);
    }
    std::string formula;
    for (char const* e : {"C", "H", "N", "O"}) {
      if (count[e] > 0) formula += e + (count[e] > 1 ? std::to_string(count[e]) : "");
    }
    formulae.push_back(m.title + " " + formula);
    charges.push_back(charged);
  }
  EXPECT_EQ(formulae, (std::vector<std::string>{
                          "aspirin C9H8O4", "ibuprofen C13H18O2", "glycine zwitterion C2H5NO2",
                          "paracetamol 2-D C8NO2", "choline cation C5H14NO", "nicotine C10H14N2"}));
  EXPECT_EQ(charges, (std::vector<std::vector<int>>{{}, {}, {1, -1}, {}, {1}, {}}));
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
