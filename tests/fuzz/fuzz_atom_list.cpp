// SPDX-License-Identifier: MIT
// Fuzz target: the tool's atom-list parser ("1-3,7"); the first byte is the number
// of atoms in the molecule.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

#include "tool.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  if (size == 0) return 0;
  int const natoms = data[0];
  std::string const text(reinterpret_cast<char const*>(data) + 1, size - 1);
  try {
    auto const atoms = structmath::tool::parse_atom_list(text, natoms);
    // A list that is accepted names existing atoms, each once.
    std::set<int> seen;
    for (int a : atoms) {
      if (a < 0 || a >= natoms || !seen.insert(a).second) __builtin_trap();
    }
    if (atoms.empty()) __builtin_trap();
  } catch (structmath::tool::InputError const&) {
  }
  return 0;
}
