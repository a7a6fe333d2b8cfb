// SPDX-License-Identifier: MIT
// Molecule: atoms with elements and positions, and bonds with orders, as files hold them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "structmath/io/export.hpp"
#include "structmath/numeric/point.hpp"

namespace structmath::io {

/// One atom: its element symbol in canonical case ("C", "Cl"), position in angstrom,
/// formal charge, and its label as the file wrote it ("c", "D"; empty when built in code).
struct Atom {
  Atom() = default;
  Atom(std::string element_symbol, Point const& at, int formal_charge = 0,
       std::string as_written = {})
      : element(std::move(element_symbol)),
        position(at),
        charge(formal_charge),
        label(std::move(as_written)) {}

  std::string element;
  Point position;
  int charge = 0;
  std::string label;
};

/// A bond between two atoms, counted from 0, with its order as a molfile states it
/// (1 single, 2 double, 3 triple, 4 aromatic).
struct Bond {
  int first = 0;
  int second = 0;
  int order = 1;
};

/// A molecule as read from a file: title, atoms and (where the format has them) bonds.
struct Molecule {
  std::string title;
  std::vector<Atom> atoms;
  std::vector<Bond> bonds;

  /// The atoms' positions in file order.
  STRUCTMATH_IO_API std::vector<Point> positions() const;
};

}  // namespace structmath::io
