// SPDX-License-Identifier: MIT
// XYZ reading (strict, frame by frame) and writing.
#include "structmath/io/xyz.hpp"

#include <fstream>
#include <iomanip>
#include <ostream>
#include <stdexcept>

#include "ctab.hpp"
#include "line_reader.hpp"

namespace structmath::io {

namespace {

bool is_blank(std::string const& line) { return detail::trim(line).empty(); }

}  // namespace

struct XyzReader::Impl {
  Impl(std::istream& in, std::string name) : reader(in, std::move(name)) {}

  // Reads the atom lines of a frame whose count and title are read.
  void read_atoms(int count, Molecule& frame) {
    frame.atoms.reserve(detail::reserve_for(count));
    for (int i = 0; i < count; ++i) {
      std::string const line =
          reader.require("atom " + std::to_string(i + 1) + " of " + std::to_string(count));
      try {
        auto const fields = detail::split_fields(line);
        if (fields.size() != 4) {
          reader.fail("expected 4 fields (element x y z), found " + std::to_string(fields.size()));
        }
        Atom atom;
        atom.element = detail::element_of(reader, fields[0]);
        atom.label = std::string(fields[0]);
        atom.position = Point(reader.to_double(fields[1], "x"), reader.to_double(fields[2], "y"),
                              reader.to_double(fields[3], "z"));
        frame.atoms.push_back(std::move(atom));
      } catch (ParseError const&) {
        // The count says where the frame ends: stand after it.
        std::string rest;
        for (int k = i + 1; k < count && reader.next(rest); ++k) {
        }
        throw;
      }
    }
  }

  detail::LineReader reader;
  int frames = 0;
  int first_line = 0;
  bool done = false;
};

XyzReader::XyzReader(std::istream& in, std::string name)
    : impl_(std::make_unique<Impl>(in, std::move(name))) {}

XyzReader::~XyzReader() = default;

int XyzReader::frames() const noexcept { return impl_->frames; }

int XyzReader::first_line() const noexcept { return impl_->first_line; }

bool XyzReader::next(Molecule& frame) {
  Impl& d = *impl_;
  detail::LineReader& reader = d.reader;
  std::string line;
  if (d.done || !reader.next(line)) {
    d.done = true;
    return false;
  }
  if (is_blank(line)) {
    // Only trailing blank lines may follow the last frame.
    d.done = true;
    std::string rest;
    while (reader.next(rest)) {
      if (!is_blank(rest)) reader.fail("expected an atom count, found a blank line before it");
    }
    return false;
  }
  ++d.frames;
  d.first_line = reader.line_number();
  int count = 0;
  try {
    auto const count_fields = detail::split_fields(line);
    if (count_fields.size() != 1) {
      reader.fail("expected an atom count alone on the line, found '" + line + "'");
    }
    count = reader.to_int(count_fields[0], "the atom count");
    if (count < 0) reader.fail("expected a non-negative atom count, found " + line);
    frame = Molecule();
    frame.title = reader.require("the comment line");
  } catch (ParseError const&) {
    d.done = true;  // without a count the frame's end is unknown
    throw;
  }
  d.read_atoms(count, frame);
  return true;
}

std::vector<Molecule> read_xyz(std::istream& in, std::string const& name) {
  XyzReader reader(in, name);
  std::vector<Molecule> frames;
  Molecule frame;
  while (reader.next(frame)) frames.push_back(std::move(frame));
  if (frames.empty()) throw ParseError(name, 0, "no frame in the file");
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
  if (!out) throw std::runtime_error("cannot open '" + path + "' for writing");
  for (Molecule const& frame : frames) write_xyz(out, frame);
  if (!out) throw std::runtime_error("cannot write '" + path + "'");
}

}  // namespace structmath::io
