// SPDX-License-Identifier: MIT
// The atom lists of the command line, "1-3,7": kept apart from the file handling so
// that the fuzzer can build it alone.
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tool.hpp"

namespace structmath::tool {

std::vector<int> parse_atom_list(std::string const& text, int natoms) {
  std::vector<int> atoms;
  std::stringstream items(text);
  std::string item;
  auto number = [&](std::string const& s) {
    std::size_t used = 0;
    int value = 0;
    try {
      value = std::stoi(s, &used);
    } catch (std::exception const&) {
      used = 0;
    }
    if (used == 0 || used != s.size()) {
      throw InputError("atom list '" + text + "': expected numbers from 1, found '" + s + "'");
    }
    if (value < 1 || value > natoms) {
      throw InputError("atom list '" + text + "': atom " + s +
                       " does not exist (the molecule has " + std::to_string(natoms) + " atoms)");
    }
    return value - 1;
  };
  while (std::getline(items, item, ',')) {
    std::size_t const dash = item.find('-', 1);
    if (dash == std::string::npos) {
      atoms.push_back(number(item));
    } else {
      int const first = number(item.substr(0, dash));
      int const last = number(item.substr(dash + 1));
      if (last < first) throw InputError("atom list '" + text + "': empty range '" + item + "'");
      for (int a = first; a <= last; ++a) atoms.push_back(a);
    }
  }
  if (atoms.empty()) throw InputError("atom list '" + text + "' names no atom");
  std::set<int> seen;
  for (int a : atoms) {
    if (!seen.insert(a).second) {
      throw InputError("atom list '" + text + "' names atom " + std::to_string(a + 1) + " twice");
    }
  }
  return atoms;
}

}  // namespace structmath::tool
