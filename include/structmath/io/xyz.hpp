// SPDX-License-Identifier: MIT
// XYZ files: an atom count, a comment line, then one "element x y z" line per atom.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "structmath/io/export.hpp"
#include "structmath/io/molecule.hpp"

namespace structmath::io {

/// Reads every frame of an XYZ file. Each frame is a count line, a comment line (the
/// molecule's title) and exactly that many atom lines of four fields: an element symbol
/// (or atomic number) and three coordinates in angstrom. Blank lines may follow the
/// last frame only. Throws ParseError naming the file and line for anything else,
/// including an empty file.
STRUCTMATH_IO_API std::vector<Molecule> read_xyz(std::string const& path);
/// As above from a stream; `name` stands for the file in messages.
STRUCTMATH_IO_API std::vector<Molecule> read_xyz(std::istream& in, std::string const& name);

/// Writes one frame; coordinates in fixed notation with 6 decimals.
STRUCTMATH_IO_API void write_xyz(std::ostream& out, Molecule const& molecule);
/// Writes every frame to a file; throws std::runtime_error naming it on failure.
STRUCTMATH_IO_API void write_xyz(std::string const& path, std::vector<Molecule> const& frames);

}  // namespace structmath::io
