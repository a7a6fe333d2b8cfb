// SPDX-License-Identifier: MIT
// XYZ reading (strict, multi-frame) and writing.
#include "structmath/io/xyz.hpp"

#include <fstream>
#include <iomanip>
#include <ostream>
#include <stdexcept>

#include "line_reader.hpp"

namespace structmath::io {

namespace {

bool is_blank(std::string const& line) { return detail::trim(line).empty(); }

}  // namespace

std::vector<Molecule> read_xyz(std::istream& in, std::string const& name) {
  detail::LineReader reader(in, name);
  std::vector<Molecule> frames;
  std::string line;
  while (reader.next(line)) {
    if (is_blank(line)) {
      // Only trailing blank lines may follow the last frame.
      std::string rest;
      while (reader.next(rest)) {
        if (!is_blank(rest)) reader.fail("expected an atom count, found a blank line before it");
      }
      break;
    }
    auto const count_fields = detail::split_fields(line);
    if (count_fields.size() != 1) {
      reader.fail("expected an atom count alone on the line, found '" + line + "'");
    }
    int const count = reader.to_int(count_fields[0], "the atom count");
    if (count < 0) reader.fail("expected a non-negative atom count, found " + line);

    Molecule molecule;
    molecule.title = reader.require("the comment line");
    molecule.atoms.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
      std::string const atom_line =
          reader.require("atom " + std::to_string(i + 1) + " of " + std::to_string(count));
      auto const fields = detail::split_fields(atom_line);
      if (fields.size() != 4) {
        reader.fail("expected 4 fields (element x y z), found " + std::to_string(fields.size()));
      }
      Atom atom;
      atom.element = detail::element_of(reader, fields[0]);
      atom.position = Point(reader.to_double(fields[1], "x"), reader.to_double(fields[2], "y"),
                            reader.to_double(fields[3], "z"));
      molecule.atoms.push_back(std::move(atom));
    }
    frames.push_back(std::move(molecule));
  }
  if (frames.empty()) throw ParseError(name, reader.line_number(), "no frame in the file");
  return frames;
}

std::vector<Molecule> read_xyz(std::string const& path) {
  std::ifstream in(path);
  if (!in) throw ParseError(path, 0, "cannot open the file");
  return read_xyz(in, path);
}

void write_xyz(std::ostream& out, Molecule const& molecule) {
  out << molecule.atoms.size() << '\n' << molecule.title << '\n';
  auto const flags = out.flags();
  auto const precision = out.precision();
  out << std::fixed << std::setprecision(6);
  for (Atom const& atom : molecule.atoms) {
    out << std::left << std::setw(3) << atom.element << std::right << ' ' << std::setw(12)
        << atom.position.x() << ' ' << std::setw(12) << atom.position.y() << ' ' << std::setw(12)
        << atom.position.z() << '\n';
  }
  out.flags(flags);
  out.precision(precision);
}

void write_xyz(std::string const& path, std::vector<Molecule> const& frames) {
  std::ofstream out(path);
  if (!out) throw std::runtime_error("write_xyz(): cannot open '" + path + "' for writing");
  for (Molecule const& frame : frames) write_xyz(out, frame);
  if (!out) throw std::runtime_error("write_xyz(): cannot write '" + path + "'");
}

}  // namespace structmath::io
