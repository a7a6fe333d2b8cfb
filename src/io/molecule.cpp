// SPDX-License-Identifier: MIT
// Molecule helpers.
#include "structmath/io/molecule.hpp"

namespace structmath::io {

std::vector<Point> Molecule::positions() const {
  std::vector<Point> out;
  out.reserve(atoms.size());
  for (Atom const& atom : atoms) out.push_back(atom.position);
  return out;
}

}  // namespace structmath::io
