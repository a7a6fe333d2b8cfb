// SPDX-License-Identifier: MIT
// MDL molfiles and SD files: V2000 and V3000 connection tables, read whole or written.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "structmath/io/export.hpp"
#include "structmath/io/molecule.hpp"

namespace structmath::io {

/// Reads every record of an SD file, as SdfReader reads them one at a time (V2000 or
/// V3000 connection tables, charges, bond orders 1 to 4). Throws ParseError naming the
/// file and line at the first malformed record: a truncated record, counts that disagree
/// with the blocks, a non-numeric field, an unknown element, a bond to a missing atom;
/// and for a file without a record.
STRUCTMATH_IO_API std::vector<Molecule> read_sdf(std::string const& path);
STRUCTMATH_IO_API std::vector<Molecule> read_sdf(std::istream& in, std::string const& name);

/// Reads a single molfile: the first record; anything after "M  END" is an error unless
/// it is blank or an SD separator.
STRUCTMATH_IO_API Molecule read_molfile(std::string const& path);
STRUCTMATH_IO_API Molecule read_molfile(std::istream& in, std::string const& name);

/// Writes one SD record ending in "$$$$": a V2000 table (with "M  CHG" lines for charged
/// atoms) when atoms and bonds number at most 999, a V3000 table otherwise. Coordinates
/// in fixed notation with 4 decimals; a title of several lines keeps its first line.
STRUCTMATH_IO_API void write_sdf(std::ostream& out, Molecule const& molecule);
/// Writes every molecule as a record; throws std::runtime_error naming the file when it
/// cannot be written.
STRUCTMATH_IO_API void write_sdf(std::string const& path, std::vector<Molecule> const& molecules);

}  // namespace structmath::io
