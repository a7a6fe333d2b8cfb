// SPDX-License-Identifier: MIT
// Fuzz target: the SD / molfile reader (V2000 and V3000 connection tables), record
// by record, reading and skipping alternately as the first byte says.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "structmath/io/parse_error.hpp"
#include "structmath/io/sdf_reader.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  if (size == 0) return 0;
  unsigned const skip_pattern = data[0];
  std::istringstream in(std::string(reinterpret_cast<char const*>(data) + 1, size - 1));
  structmath::io::SdfReader reader(in, "fuzz.sdf");
  for (int record = 0; record < 1000; ++record) {
    try {
      structmath::io::SdfRecord r;
      bool const more = (skip_pattern >> (record % 8)) & 1u ? reader.skip() : reader.next(r);
      if (!more) break;
      // The reader promises finite coordinates and bonds between atoms it read.
      auto const natoms = static_cast<int>(r.molecule.atoms.size());
      for (auto const& bond : r.molecule.bonds) {
        if (bond.first < 0 || bond.second < 0 || bond.first >= natoms || bond.second >= natoms) {
          __builtin_trap();
        }
      }
      for (auto const& atom : r.molecule.atoms) {
        if (!std::isfinite(atom.position.x()) || !std::isfinite(atom.position.y()) ||
            !std::isfinite(atom.position.z())) {
          __builtin_trap();
        }
      }
    } catch (structmath::io::ParseError const&) {
    }
  }
  return 0;
}
