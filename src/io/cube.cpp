// SPDX-License-Identifier: MIT
// Strict reading and writing of Gaussian cube files.
#include "structmath/io/cube.hpp"

#include <cmath>
#include <fstream>
#include <iomanip>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "line_reader.hpp"

namespace structmath::io {

namespace {

using detail::LineReader;

// Counts are read wide and bounded, so that negating one (the sign carries the
// unit) is always defined.
constexpr long long kLargestCount = 1'000'000'000;

struct AxisLine {
  int count = 0;  // signed, as in the file
  Vector3D step;  // as in the file, not yet scaled
};

AxisLine read_axis(LineReader& reader, std::string const& axis) {
  std::string const line = reader.require("the " + axis + " axis line");
  auto const fields = detail::split_fields(line);
  if (fields.size() != 4) {
    reader.fail("expected 4 fields (point count and step vector) on the " + axis +
                " axis line, found " + std::to_string(fields.size()));
  }
  AxisLine result;
  result.count =
      static_cast<int>(reader.to_count(fields[0], "the " + axis + " point count", kLargestCount));
  if (result.count == 0) reader.fail("expected a non-zero " + axis + " point count");
  result.step = Vector3D(reader.to_double(fields[1], "the " + axis + " step x"),
                         reader.to_double(fields[2], "the " + axis + " step y"),
                         reader.to_double(fields[3], "the " + axis + " step z"));
  return result;
}

}  // namespace

CubeFile read_cube(std::istream& in, std::string const& name) {
  LineReader reader(in, name);
  CubeFile cube;
  cube.comment1 = reader.require("the first comment line");
  cube.comment2 = reader.require("the second comment line");

  std::string const header = reader.require("the atom count and origin");
  auto const fields = detail::split_fields(header);
  if (fields.size() != 4 && fields.size() != 5) {
    reader.fail("expected the atom count and origin x y z, found " + std::to_string(fields.size()) +
                " fields");
  }
  auto natoms = static_cast<int>(reader.to_count(fields[0], "the atom count", kLargestCount));
  bool const has_set_line = natoms < 0;
  if (has_set_line) natoms = -natoms;
  if (fields.size() == 5 && reader.to_int(fields[4], "the values per point") != 1) {
    reader.fail("expected 1 value per point");
  }
  Vector3D const origin_raw(reader.to_double(fields[1], "the origin x"),
                            reader.to_double(fields[2], "the origin y"),
                            reader.to_double(fields[3], "the origin z"));

  // A positive x count means bohr for every length in the file, a negative one angstrom.
  AxisLine axes[3];
  char const* const names[3] = {"x", "y", "z"};
  for (int a = 0; a < 3; ++a) {
    axes[a] = read_axis(reader, names[a]);
    if ((axes[a].count > 0) != (axes[0].count > 0)) {
      reader.fail("expected every axis count to have the sign of the x count (one length unit)");
    }
  }
  bool const in_bohr = axes[0].count > 0;
  double const unit = in_bohr ? bohr_in_angstrom : 1.0;

  for (int a = 0; a < natoms; ++a) {
    std::string const line =
        reader.require("atom " + std::to_string(a + 1) + " of " + std::to_string(natoms));
    auto const f = detail::split_fields(line);
    if (f.size() != 5) {
      reader.fail("expected 5 fields (atomic number, charge, x, y, z), found " +
                  std::to_string(f.size()));
    }
    CubeAtom atom;
    atom.atomic_number = reader.to_int(f[0], "the atomic number");
    if (atom.atomic_number < 0 || atom.atomic_number > 118) {
      reader.fail("unknown element with atomic number " + std::to_string(atom.atomic_number));
    }
    atom.charge = reader.to_double(f[1], "the charge");
    atom.position = (Vector3D(reader.to_double(f[2], "x"), reader.to_double(f[3], "y"),
                              reader.to_double(f[4], "z")) *
                     unit)
                        .point();
    cube.atoms.push_back(atom);
  }
  if (has_set_line) {
    std::string const line = reader.require("the data set line");
    auto const f = detail::split_fields(line);
    if (f.empty() || reader.to_int(f[0], "the number of data sets") != 1) {
      reader.fail("expected a single data set, found '" + line + "'");
    }
  }

  int const n[3] = {std::abs(axes[0].count), std::abs(axes[1].count), std::abs(axes[2].count)};
  double const total = static_cast<double>(n[0]) * n[1] * n[2];
  if (total > 512.0 * 1024 * 1024) reader.fail("grid of more than 2^29 points");
  // The values are collected as they arrive and the grid is made after the last
  // one, so a header that claims more points than the file holds costs no more
  // memory than the file's own text.
  auto const expected = static_cast<std::size_t>(total);
  std::vector<double> values;
  std::string line;
  while (values.size() < expected) {
    if (!reader.next(line)) {
      throw ParseError(name, reader.line_number() + 1,
                       "unexpected end of file, expected " + std::to_string(expected) +
                           " values, found " + std::to_string(values.size()));
    }
    for (auto const field : detail::split_fields(line)) {
      if (values.size() == expected) reader.fail("more values than the grid has points");
      values.push_back(reader.to_double(field, "a grid value"));
    }
  }
  while (reader.next(line)) {
    if (!detail::trim(line).empty()) reader.fail("more values than the grid has points");
  }

  Vector3D edge[3];
  for (int a = 0; a < 3; ++a) edge[a] = axes[a].step * (unit * (n[a] - 1));
  cube.grid = make_handle<NormalGrid>(n[0], n[1], n[2], (origin_raw * unit).point(), edge[0],
                                      edge[1], edge[2]);
  std::size_t next = 0;  // the file runs z fastest, then y, then x
  for (int i = 0; i < n[0]; ++i) {
    for (int j = 0; j < n[1]; ++j) {
      for (int k = 0; k < n[2]; ++k) cube.grid->set_value(i, j, k, values[next++]);
    }
  }
  return cube;
}

CubeFile read_cube(std::string const& path) {
  std::ifstream in(path);
  if (!in) throw ParseError(path, 0, "cannot open the file");
  return read_cube(in, path);
}

void write_cube(std::ostream& out, CubeFile const& cube) {
  if (!cube.grid) throw std::invalid_argument("the cube has no grid to write");
  NormalGrid const& grid = *cube.grid;
  int const n[3] = {grid.x_steps(), grid.y_steps(), grid.z_steps()};
  Vector3D const edge[3] = {grid.plus_x(), grid.plus_y(), grid.plus_z()};
  double const to_bohr = 1.0 / bohr_in_angstrom;
  auto const flags = out.flags();
  auto const precision = out.precision();
  out << cube.comment1 << '\n' << cube.comment2 << '\n' << std::fixed << std::setprecision(6);
  Vector3D const origin = grid.origin().vector() * to_bohr;
  out << std::setw(5) << cube.atoms.size() << std::setw(12) << origin.x() << std::setw(12)
      << origin.y() << std::setw(12) << origin.z() << '\n';
  for (int a = 0; a < 3; ++a) {
    Vector3D const step = n[a] > 1 ? edge[a] * (to_bohr / (n[a] - 1)) : Vector3D();
    out << std::setw(5) << n[a] << std::setw(12) << step.x() << std::setw(12) << step.y()
        << std::setw(12) << step.z() << '\n';
  }
  for (CubeAtom const& atom : cube.atoms) {
    Vector3D const p = atom.position.vector() * to_bohr;
    out << std::setw(5) << atom.atomic_number << std::setw(12) << atom.charge << std::setw(12)
        << p.x() << std::setw(12) << p.y() << std::setw(12) << p.z() << '\n';
  }
  out << std::scientific << std::setprecision(5) << std::uppercase;
  for (int i = 0; i < n[0]; ++i) {
    for (int j = 0; j < n[1]; ++j) {
      for (int k = 0; k < n[2]; ++k) {
        out << std::setw(13) << grid.value(i, j, k);
        if (k % 6 == 5 || k == n[2] - 1) out << '\n';
      }
    }
  }
  out.flags(flags);
  out.precision(precision);
}

void write_cube(std::string const& path, CubeFile const& cube) {
  std::ofstream out(path);
  if (!out) throw std::runtime_error("cannot open '" + path + "' for writing");
  write_cube(out, cube);
  if (!out) throw std::runtime_error("cannot write '" + path + "'");
}

}  // namespace structmath::io
