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
  // Exported code (Jacobi) and inline code (matrix products) both reach the consumer.
  structmath::Matrix3D a(2, 1, 0, 1, 2, 0, 0, 0, 3);
  structmath::Vector3D d;
  structmath::Matrix3D v;
  structmath::Jacobi<3>(a, d, v);
  structmath::EigenSort<3>(d, v);
  if (d[0] < 2.999 || d[2] > 1.001) return 2;
  std::cout << structmath::Angle::from_degrees(90.0) << '\n';
  std::cout << "structmath consumer ok\n";
  return 0;
}
