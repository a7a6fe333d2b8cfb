// SPDX-License-Identifier: MIT
// Strict reading of V2000 molfiles and SD files.
#include "structmath/io/molfile.hpp"

#include <fstream>

#include "line_reader.hpp"

namespace structmath::io {

namespace {

using detail::LineReader;

// A fixed-column field, or a ParseError when the line is too short to hold it.
std::string_view column(LineReader const& reader, std::string const& line, std::size_t first,
                        std::size_t width, std::string const& what) {
  if (line.size() < first + width) {
    reader.fail("line too short for " + what + " (columns " + std::to_string(first + 1) + "-" +
                std::to_string(first + width) + ")");
  }
  return std::string_view(line).substr(first, width);
}

bool starts_with(std::string const& line, char const* prefix) { return line.rfind(prefix, 0) == 0; }

// Reads one record after its first (title) line; stops after "M  END".
Molecule read_record(LineReader& reader, std::string title) {
  Molecule molecule;
  molecule.title = std::move(title);
  reader.require("the program line of the header");
  reader.require("the comment line of the header");
  std::string const counts = reader.require("the counts line");
  if (counts.find("V3000") != std::string::npos) {
    reader.fail("V3000 connection tables are not supported, expected V2000");
  }
  int const natoms =
      reader.to_int(column(reader, counts, 0, 3, "the atom count"), "the atom count");
  int const nbonds =
      reader.to_int(column(reader, counts, 3, 3, "the bond count"), "the bond count");
  if (natoms < 0 || nbonds < 0) reader.fail("expected non-negative atom and bond counts");
  if (counts.size() >= 39 && counts.compare(34, 5, "V2000") != 0) {
    reader.fail("expected V2000 in columns 35-39 of the counts line");
  }

  molecule.atoms.reserve(static_cast<std::size_t>(natoms));
  for (int i = 0; i < natoms; ++i) {
    std::string const line =
        reader.require("atom " + std::to_string(i + 1) + " of " + std::to_string(natoms));
    if (starts_with(line, "M  "))
      reader.fail("expected atom " + std::to_string(i + 1) + " of " + std::to_string(natoms) +
                  ", found '" + line + "'");
    Atom atom;
    double const x = reader.to_double(column(reader, line, 0, 10, "x"), "x");
    double const y = reader.to_double(column(reader, line, 10, 10, "y"), "y");
    double const z = reader.to_double(column(reader, line, 20, 10, "z"), "z");
    atom.position = Point(x, y, z);
    // The symbol stands in columns 32-34; a short line may end inside them.
    std::size_t const width = line.size() >= 34 ? 3 : (line.size() > 31 ? line.size() - 31 : 3);
    atom.element = detail::element_of(reader, column(reader, line, 31, width, "the element"));
    molecule.atoms.push_back(std::move(atom));
  }

  molecule.bonds.reserve(static_cast<std::size_t>(nbonds));
  for (int i = 0; i < nbonds; ++i) {
    std::string const line =
        reader.require("bond " + std::to_string(i + 1) + " of " + std::to_string(nbonds));
    if (starts_with(line, "M  "))
      reader.fail("expected bond " + std::to_string(i + 1) + " of " + std::to_string(nbonds) +
                  ", found '" + line + "'");
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
  for (;;) {
    std::string const line = reader.require("\"M  END\"");
    if (starts_with(line, "M  END")) break;
    if (!starts_with(line, "M  ") && !starts_with(line, "A  ") && !starts_with(line, "V  ") &&
        !starts_with(line, "G  ") && !starts_with(line, "S  ")) {
      reader.fail("expected a property line or \"M  END\", found '" + line +
                  "' (do the counts match the blocks?)");
    }
  }
  return molecule;
}

std::vector<Molecule> read_records(std::istream& in, std::string const& name, bool single) {
  LineReader reader(in, name);
  std::vector<Molecule> records;
  std::string line;
  while (reader.next(line)) {
    records.push_back(read_record(reader, line));
    // Data items up to the separator, which may be missing after the last record.
    bool separated = false;
    while (reader.next(line)) {
      if (starts_with(line, "$$$$")) {
        separated = true;
        break;
      }
      if (single && !detail::trim(line).empty()) {
        reader.fail("expected the end of the molfile after \"M  END\", found '" + line + "'");
      }
    }
    if (single || !separated) break;
  }
  if (records.empty()) throw ParseError(name, reader.line_number(), "no record in the file");
  return records;
}

}  // namespace

std::vector<Molecule> read_sdf(std::istream& in, std::string const& name) {
  return read_records(in, name, false);
}

std::vector<Molecule> read_sdf(std::string const& path) {
  std::ifstream in(path);
  if (!in) throw ParseError(path, 0, "cannot open the file");
  return read_sdf(in, path);
}

Molecule read_molfile(std::string const& path) {
  std::ifstream in(path);
  if (!in) throw ParseError(path, 0, "cannot open the file");
  return read_records(in, path, true).front();
}

}  // namespace structmath::io
