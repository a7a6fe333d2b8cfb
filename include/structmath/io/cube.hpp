// SPDX-License-Identifier: MIT
// Gaussian cube files: a volumetric data set on a regular grid, with the atoms it belongs to.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/grid/normal_grid.hpp"
#include "structmath/io/export.hpp"
#include "structmath/numeric/point.hpp"

namespace structmath::io {

/// Bohr radius in angstrom (CODATA 2018).
inline constexpr double bohr_in_angstrom = 0.529177210903;

/// One atom line of a cube file, its position in angstrom.
struct CubeAtom {
  int atomic_number = 0;
  double charge = 0.0;
  Point position;
};

/// The content of a cube file, lengths in angstrom.
struct CubeFile {
  std::string comment1;
  std::string comment2;
  /// nx x ny x nz values; plus_x is (nx - 1) steps of the file's first axis vector.
  THandle<NormalGrid> grid;
  std::vector<CubeAtom> atoms;
};

/// Reads a cube file: two comment lines; the atom count and origin; for each axis the
/// point count and step vector (a positive count means bohr, a negative one angstrom);
/// one line per atom (atomic number, charge, x, y, z); then nx*ny*nz values with z
/// fastest. Lengths are converted to angstrom. Files with several data sets per point
/// (a negative atom count) are accepted only with a single set. All three counts must
/// share one sign. Throws ParseError naming the file and line for a truncated or
/// malformed file, or for values left over.
STRUCTMATH_IO_API CubeFile read_cube(std::string const& path);
STRUCTMATH_IO_API CubeFile read_cube(std::istream& in, std::string const& name);

/// Writes the cube in bohr (positive counts), values six to a line with z fastest; an
/// axis of a single point is written with a zero step. Throws std::invalid_argument
/// when the cube has no grid.
STRUCTMATH_IO_API void write_cube(std::ostream& out, CubeFile const& cube);
STRUCTMATH_IO_API void write_cube(std::string const& path, CubeFile const& cube);

}  // namespace structmath::io
