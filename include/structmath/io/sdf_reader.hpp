// SPDX-License-Identifier: MIT
// SdfReader: the records of an SD file one at a time, V2000 and V3000 connection tables.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "structmath/io/export.hpp"
#include "structmath/io/molecule.hpp"

namespace structmath::io {

/// One record of an SD file: the molecule, its data items in file order, and where it
/// stands in the file.
struct SdfRecord {
  Molecule molecule;
  /// The "> <NAME>" data items after "M  END": name and value (lines joined by '\n').
  std::vector<std::pair<std::string, std::string>> data;
  int number = 0;      ///< the record's place in the file, counting from 1
  int first_line = 0;  ///< the line of its title, counting from 1
};

/// Reads the records of an SD file (or a molfile) one at a time; memory does not grow
/// with the file.
///
/// A record is a molfile: the title, program and comment lines, the counts line, then
/// either V2000 atom and bond blocks with property lines ("M  CHG" charges are read) or a
/// V3000 "M  V30 BEGIN CTAB" ... "M  V30 END CTAB" block (atoms with their CHG= charges
/// and bonds), up to "M  END"; then optional data items and the "$$$$" separator, which
/// may be missing after the last record. Atom labels are element symbols in any case, D
/// and T standing for hydrogen; bond types 1 to 4 (single, double, triple, aromatic).
/// Query atoms, query bonds and V2000 counts above 999 are rejected.
class STRUCTMATH_IO_API SdfReader {
 public:
  /// Reads from `in`, which must outlive the reader; `name` stands for the file in messages.
  SdfReader(std::istream& in, std::string name);
  ~SdfReader();
  SdfReader(SdfReader const&) = delete;
  SdfReader& operator=(SdfReader const&) = delete;

  /// Reads the next record into `record`; false at the end of the input (blank lines
  /// after the last record are ignored). A malformed record throws ParseError naming the
  /// file and line, and leaves the reader after that record's "$$$$", so that the next
  /// call reads the record after it.
  bool next(SdfRecord& record);
  /// Passes over the next record without reading its connection table; false at the end.
  bool skip();
  /// The number of records read or skipped so far, a malformed one included.
  int records() const noexcept;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace structmath::io
