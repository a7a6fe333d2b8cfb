// SPDX-License-Identifier: MIT
// V2000 connection tables: fixed-column atom and bond blocks and the property lines.
#include <vector>

#include "ctab.hpp"

namespace structmath::io::detail {

namespace {

// A fixed-column field, or a ParseError when the line is too short to hold it.
std::string_view column(LineReader const& reader, std::string const& line, std::size_t first,
                        std::size_t width, std::string const& what) {
  if (line.size() < first + width) {
    reader.fail("line too short for " + what + " (columns " + std::to_string(first + 1) + "-" +
                std::to_string(first + width) + ")");
  }
  return std::string_view(line).substr(first, width);
}

// The charge code of the atom block: 1 to 3 stand for +3 to +1, 5 to 7 for -1 to -3,
// 4 for a doublet radical (no charge).
int charge_of_code(LineReader const& reader, int code) {
  static constexpr int charges[] = {0, 3, 2, 1, 0, -1, -2, -3};
  if (code < 0 || code > 7) {
    reader.fail("charge code " + std::to_string(code) + ", expected 0 to 7");
  }
  return charges[code];
}

// "M  CHG  n aaa vvv ...": n pairs of atom number and charge. The first such line makes
// every charge of the atom block void.
void read_charges(LineReader const& reader, std::string const& line, Molecule& molecule,
                  bool& first_charge_line) {
  auto const fields = split_fields(line);
  int const n = fields.size() > 2 ? reader.to_int(fields[2], "the number of charges") : -1;
  if (n < 1 || n > 8 || fields.size() != 3 + 2 * static_cast<std::size_t>(n)) {
    reader.fail("expected \"M  CHG\", a count from 1 to 8 and that many atom and charge pairs");
  }
  if (first_charge_line) {
    for (Atom& atom : molecule.atoms) atom.charge = 0;
    first_charge_line = false;
  }
  auto const natoms = static_cast<int>(molecule.atoms.size());
  for (int k = 0; k < n; ++k) {
    int const atom = reader.to_int(fields[3 + 2 * static_cast<std::size_t>(k)], "the charged atom");
    int const charge = reader.to_int(fields[4 + 2 * static_cast<std::size_t>(k)], "the charge");
    if (atom < 1 || atom > natoms) {
      reader.fail("charge on atom " + std::to_string(atom) + ", expected 1 to " +
                  std::to_string(natoms));
    }
    if (charge < -15 || charge > 15) {
      reader.fail("charge " + std::to_string(charge) + ", expected -15 to 15");
    }
    molecule.atoms[static_cast<std::size_t>(atom - 1)].charge = charge;
  }
}

}  // namespace

bool starts_with(std::string const& line, char const* prefix) noexcept {
  return line.rfind(prefix, 0) == 0;
}

std::string RecordLines::require(std::string const& what) {
  std::string line = reader_.require(what);
  if (starts_with(line, "$$$$")) {
    separator_seen_ = true;
    reader_.fail("the record ends (\"$$$$\") where " + what + " was expected");
  }
  return line;
}

void read_v2000(RecordLines& lines, std::string const& counts, Molecule& molecule) {
  LineReader const& reader = lines.reader();
  int const natoms =
      reader.to_int(column(reader, counts, 0, 3, "the atom count"), "the atom count");
  int const nbonds =
      reader.to_int(column(reader, counts, 3, 3, "the bond count"), "the bond count");
  if (natoms < 0 || nbonds < 0) reader.fail("expected non-negative atom and bond counts");
  if (counts.size() >= 39 && counts.compare(34, 5, "V2000") != 0) {
    reader.fail("expected V2000 in columns 35-39 of the counts line");
  }

  molecule.atoms.reserve(reserve_for(natoms));
  for (int i = 0; i < natoms; ++i) {
    std::string const what = "atom " + std::to_string(i + 1) + " of " + std::to_string(natoms);
    std::string const line = lines.require(what);
    if (starts_with(line, "M  ")) reader.fail("expected " + what + ", found '" + line + "'");
    Atom atom;
    double const x = reader.to_double(column(reader, line, 0, 10, "x"), "x");
    double const y = reader.to_double(column(reader, line, 10, 10, "y"), "y");
    double const z = reader.to_double(column(reader, line, 20, 10, "z"), "z");
    atom.position = Point(x, y, z);
    // The symbol stands in columns 32-34; a short line may end inside them.
    std::size_t const width = line.size() >= 34 ? 3 : (line.size() > 31 ? line.size() - 31 : 3);
    std::string_view const symbol = column(reader, line, 31, width, "the element");
    atom.element = element_of(reader, symbol);
    atom.label = std::string(trim(symbol));
    if (line.size() >= 39) {
      atom.charge = charge_of_code(
          reader, reader.to_int(column(reader, line, 36, 3, "the charge"), "the charge code"));
    }
    molecule.atoms.push_back(std::move(atom));
  }

  molecule.bonds.reserve(reserve_for(nbonds));
  for (int i = 0; i < nbonds; ++i) {
    std::string const what = "bond " + std::to_string(i + 1) + " of " + std::to_string(nbonds);
    std::string const line = lines.require(what);
    if (starts_with(line, "M  ")) reader.fail("expected " + what + ", found '" + line + "'");
    Bond bond;
    bond.first = reader.to_int(column(reader, line, 0, 3, "the first atom"), "the first atom");
    bond.second = reader.to_int(column(reader, line, 3, 3, "the second atom"), "the second atom");
    bond.order = reader.to_int(column(reader, line, 6, 3, "the bond type"), "the bond type");
    for (int atom : {bond.first, bond.second}) {
      if (atom < 1 || atom > natoms) {
        reader.fail("bond to atom " + std::to_string(atom) + ", expected 1 to " +
                    std::to_string(natoms));
      }
    }
    if (bond.first == bond.second) reader.fail("bond from an atom to itself");
    if (bond.order < 1 || bond.order > 4) {
      reader.fail("bond type " + std::to_string(bond.order) + ", expected 1 to 4");
    }
    --bond.first;
    --bond.second;
    molecule.bonds.push_back(bond);
  }

  // Properties block up to "M  END". Atom lists and other property lines are allowed;
  // anything that looks like another atom or bond means the counts were wrong.
  bool first_charge_line = true;
  for (;;) {
    std::string const line = lines.require("\"M  END\"");
    if (starts_with(line, "M  END")) break;
    if (starts_with(line, "M  CHG")) {
      read_charges(reader, line, molecule, first_charge_line);
      continue;
    }
    if (starts_with(line, "A  ") || starts_with(line, "G  ")) {
      (void)lines.require("the text line of an atom alias or group");  // free text
      continue;
    }
    if (starts_with(line, "S  SKP")) {
      auto const fields = split_fields(line);
      int const skip = fields.size() == 3 ? reader.to_int(fields[2], "the lines to skip") : -1;
      if (skip < 0) reader.fail("expected \"S  SKP\" and a number of lines");
      for (int k = 0; k < skip; ++k) (void)lines.require("a line to skip");
      continue;
    }
    if (!starts_with(line, "M  ") && !starts_with(line, "V  ")) {
      reader.fail("expected a property line or \"M  END\", found '" + line +
                  "' (do the counts match the blocks?)");
    }
  }
}

}  // namespace structmath::io::detail
