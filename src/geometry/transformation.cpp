// SPDX-License-Identifier: MIT
// Transformation: inversion, comparison, printing and archiving.
#include "structmath/geometry/transformation.hpp"

#include <ostream>

#include "../numeric/fixed_format.hpp"
#include "structmath/core/archive.hpp"
#include "structmath/numeric/linear_algebra.hpp"

namespace structmath {

Transformation Transformation::inverse() const {
  Matrix3D r = rotation_;
  Invert(r);
  return Transformation(r, -(r * translation_));
}

void Transformation::print(std::ostream& out) const {
  for (unsigned int row = 1; row <= 3; ++row) {
    out << (row == 1 ? "rotation: " : "          ");
    for (unsigned int col = 1; col <= 3; ++col) detail::write_fixed(out, rotation_(row, col));
    out << std::endl;
  }
  out << "translation: ";
  detail::write_fixed(out, translation_);
  out << std::endl;
}

void Transformation::write(Archive& archive) const {
  for (double e : rotation_.elements()) archive << e;
  translation_.write(archive);
}

void Transformation::read(Archive& archive) {
  // Read everything before assigning, so a truncated archive leaves this unchanged.
  double e[9];
  for (double& x : e) archive >> x;
  Vector3D t;
  t.read(archive);
  *this = Transformation(Matrix3D(e[0], e[1], e[2], e[3], e[4], e[5], e[6], e[7], e[8]), t);
}

bool operator==(Transformation const& a, Transformation const& b) noexcept {
  for (unsigned int i = 0; i < 9; ++i) {
    if (a.rotation().elements()[i] != b.rotation().elements()[i]) return false;
  }
  for (unsigned int i = 0; i < 3; ++i) {
    if (a.translation()[i] != b.translation()[i]) return false;
  }
  return true;
}

bool equals(Transformation const& a, Transformation const& b, double tolerance) noexcept {
  return equals(a.rotation(), b.rotation(), tolerance) &&
         equals(a.translation(), b.translation(), tolerance);
}

}  // namespace structmath
