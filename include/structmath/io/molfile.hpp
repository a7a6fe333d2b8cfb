// SPDX-License-Identifier: MIT
// MDL molfiles and SD files with V2000 connection tables.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "structmath/io/export.hpp"
#include "structmath/io/molecule.hpp"

namespace structmath::io {

/// Reads every record of an SD file: each a V2000 molfile (three header lines, the
/// counts line, the atom and bond blocks, properties up to "M  END") followed by
/// optional data items and the "$$$$" separator (optional after the last record).
/// Atoms keep their element and coordinates, bonds their order (1 to 4). Throws
/// ParseError naming the file and line for a truncated record, counts that disagree
/// with the blocks, a non-numeric field, an unknown element, a bond to a missing atom,
/// or a V3000 table.
STRUCTMATH_IO_API std::vector<Molecule> read_sdf(std::string const& path);
STRUCTMATH_IO_API std::vector<Molecule> read_sdf(std::istream& in, std::string const& name);

/// Reads a single molfile (the first record; anything after "M  END" is an error
/// unless it is blank or an SD separator).
STRUCTMATH_IO_API Molecule read_molfile(std::string const& path);

}  // namespace structmath::io
