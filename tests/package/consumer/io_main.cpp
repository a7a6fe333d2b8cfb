// SPDX-License-Identifier: MIT
// A program built against the installed io library: read an SD record, fit, write XYZ.
#include <iostream>
#include <sstream>

#include "structmath/io/molfile.hpp"
#include "structmath/io/xyz.hpp"
#include "structmath/superposition/overlay_points.hpp"

int main() {
  std::istringstream sdf(
      "water\n  consumer\n\n"
      "  3  2  0  0  0  0  0  0  0  0999 V2000\n"
      "    0.0000    0.0000    0.1173 O   0  0  0  0  0  0  0  0  0  0  0  0\n"
      "    0.0000    0.7572   -0.4692 H   0  0  0  0  0  0  0  0  0  0  0  0\n"
      "    0.0000   -0.7572   -0.4692 H   0  0  0  0  0  0  0  0  0  0  0  0\n"
      "  1  2  1  0\n  1  3  1  0\nM  END\n$$$$\n");
  auto const molecules = structmath::io::read_sdf(sdf, "water.sdf");
  structmath::OverlayPoints overlay(molecules[0].positions(), false);
  double const rms = overlay.fit(molecules[0].positions());
  std::ostringstream xyz;
  structmath::io::write_xyz(xyz, molecules[0]);
  bool const ok =
      molecules[0].bonds.size() == 2 && rms < 1e-9 && xyz.str().rfind("3\nwater\n", 0) == 0;
  if (!ok) return 1;
  std::cout << "structmath io consumer ok\n";
  return 0;
}
