// SPDX-License-Identifier: MIT
// Sample data lookup, molecule reading by extension and atom selections.
#include <filesystem>
#include <sstream>

#include "structmath/io/molfile.hpp"
#include "structmath/io/xyz.hpp"
#include "tool.hpp"

#ifndef STRUCTMATH_SOURCE_DATA_DIR
#define STRUCTMATH_SOURCE_DATA_DIR ""
#endif
#ifndef STRUCTMATH_INSTALLED_DATA_DIR
#define STRUCTMATH_INSTALLED_DATA_DIR ""
#endif

namespace structmath::tool {

namespace fs = std::filesystem;

std::string bundled(std::string const& file) {
  fs::path const self = fs::read_symlink("/proc/self/exe");
  fs::path const installed =
      self.parent_path().parent_path() / STRUCTMATH_INSTALLED_DATA_DIR / file;
  std::error_code ignored;
  if (fs::exists(installed, ignored)) return installed.string();
  fs::path const source = fs::path(STRUCTMATH_SOURCE_DATA_DIR) / file;
  if (fs::exists(source, ignored)) return source.string();
  throw InputError("the bundled sample file " + file + " is not installed");
}

std::vector<io::Molecule> read_molecules(std::string const& path) {
  std::string const ext = fs::path(path).extension().string();
  if (ext == ".xyz") return io::read_xyz(path);
  if (ext == ".sdf") return io::read_sdf(path);
  if (ext == ".mol") return {io::read_molfile(path)};
  throw InputError(path + ": unknown molecule format '" + ext + "', expected .xyz, .sdf or .mol");
}

io::Molecule read_molecule(std::string const& path) { return read_molecules(path).front(); }

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
  return atoms;
}

std::string atom_label(io::Molecule const& molecule, int index) {
  return molecule.atoms[static_cast<std::size_t>(index)].element + std::to_string(index + 1);
}

}  // namespace structmath::tool
