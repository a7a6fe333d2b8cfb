// SPDX-License-Identifier: MIT
// XYZ files: an atom count, a comment line, then one "element x y z" line per atom.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "structmath/io/export.hpp"
#include "structmath/io/molecule.hpp"

namespace structmath::io {

/// Reads the frames of an XYZ file one at a time; memory does not grow with the file.
///
/// Each frame is a count line, a comment line (the molecule's title) and exactly that
/// many atom lines of four fields: an atom label and three coordinates in angstrom. The
/// label is an element symbol in any case ("C", "c", "CL"), D or T for hydrogen, or an
/// atomic number; the atom keeps it as written. Blank lines may follow the last frame
/// only.
class STRUCTMATH_IO_API XyzReader {
 public:
  /// Reads from `in`, which must outlive the reader; `name` stands for the file in messages.
  XyzReader(std::istream& in, std::string name);
  ~XyzReader();
  XyzReader(XyzReader const&) = delete;
  XyzReader& operator=(XyzReader const&) = delete;

  /// Reads the next frame; false at the end of the input. A malformed frame throws
  /// ParseError naming the file and line; when its count line could be read the reader
  /// then stands after the frame, so the next call reads the frame after it, and
  /// otherwise at the end.
  bool next(Molecule& frame);
  /// The number of frames read so far, a malformed one included.
  int frames() const noexcept;
  /// The line of the last frame's count line, counting from 1.
  int first_line() const noexcept;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

/// Reads every frame of an XYZ file, as XyzReader reads them. Throws ParseError naming
/// the file and line at the first malformed frame, and for a file without a frame.
STRUCTMATH_IO_API std::vector<Molecule> read_xyz(std::string const& path);
/// As above from a stream; `name` stands for the file in messages.
STRUCTMATH_IO_API std::vector<Molecule> read_xyz(std::istream& in, std::string const& name);

/// Writes one frame; coordinates in fixed notation with 6 decimals.
STRUCTMATH_IO_API void write_xyz(std::ostream& out, Molecule const& molecule);
/// Writes every frame to a file; throws std::runtime_error naming it on failure.
STRUCTMATH_IO_API void write_xyz(std::string const& path, std::vector<Molecule> const& frames);

}  // namespace structmath::io
