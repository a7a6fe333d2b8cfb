// SPDX-License-Identifier: MIT
// A minimal program built against the installed library.
#include <iostream>

#include "structmath/structmath.hpp"

int main() {
  structmath::Archive archive;
  archive << 2.5;
  double value = 0.0;
  archive >> value;
  if (structmath::double_to_string(value) != "2.5") return 1;
  std::cout << "structmath consumer ok\n";
  return 0;
}
