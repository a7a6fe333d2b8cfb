// SPDX-License-Identifier: MIT
// The connection-table readers behind SdfReader: V2000 blocks and the V3000 CTAB.
#pragma once

#include <string>

#include "line_reader.hpp"
#include "structmath/io/molecule.hpp"

namespace structmath::io::detail {

/// The lines of one SD record. A "$$$$" line can never belong to a connection table: it
/// ends the record early, which is reported as such and remembered, so that a reader
/// recovering from the error knows it already stands after the separator.
class RecordLines {
 public:
  explicit RecordLines(LineReader& reader) : reader_(reader) {}

  /// The next line of the record, or a ParseError naming what was expected.
  std::string require(std::string const& what);

  LineReader& reader() noexcept { return reader_; }
  bool separator_seen() const noexcept { return separator_seen_; }

 private:
  LineReader& reader_;
  bool separator_seen_ = false;
};

bool starts_with(std::string const& line, char const* prefix) noexcept;

/// Reads a molfile up to and including "M  END": the title, program and comment lines,
/// the counts line and the V2000 or V3000 table. Returns false, having read nothing but
/// blank lines, when the input ends before a counts line and every line was blank.
bool read_molfile_record(RecordLines& lines, Molecule& molecule);

/// Reads a V2000 table after its counts line, up to and including "M  END".
void read_v2000(RecordLines& lines, std::string const& counts, Molecule& molecule);
/// Reads a V3000 table after its counts line, up to and including "M  END".
void read_v3000(RecordLines& lines, Molecule& molecule);

/// Capacity to reserve for a count read from a file: the count, but no more than a
/// small block, so that a false count cannot make a reader allocate beyond its input.
inline std::size_t reserve_for(long long count) noexcept {
  constexpr long long block = 4096;
  return static_cast<std::size_t>(count < 0 ? 0 : (count < block ? count : block));
}

}  // namespace structmath::io::detail
