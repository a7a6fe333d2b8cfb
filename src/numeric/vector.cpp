// SPDX-License-Identifier: MIT
// Vector<double, 3>: normalisation, perpendiculars, Gram-Schmidt, orderings, archiving.
#include "structmath/numeric/vector.hpp"

#include <cmath>
#include <stdexcept>

#include "structmath/core/archive.hpp"

namespace structmath {

void Vector<double, 3>::normalize(double tolerance) {
  double const len = length();
  if (equals(len, 0.0, tolerance))
    throw std::runtime_error("Cannot normalize a zero length Vector");
  v_[0] /= len;
  v_[1] /= len;
  v_[2] /= len;
}

Vector<double, 3> Vector<double, 3>::perp(double tolerance) const {
  if (equals(length(), 0.0, tolerance)) {
    throw std::runtime_error(
        "Vector3D::orthogonalize(): Cannot calculate perp for the zero vector.");
  }
  unsigned int k = 0;
  for (unsigned int i = 1; i < 3; ++i) {
    if (std::fabs(v_[i]) > std::fabs(v_[k])) k = i;
  }
  Vector result(1.0, 1.0, 1.0);
  result[k] = -(sum() - v_[k]) / v_[k];
  return result;
}

void Vector<double, 3>::orthogonalize(Vector const& other, double tolerance) {
  if (equals(other.length(), 0.0, tolerance)) {
    throw std::runtime_error("Vector3D::orthogonalize(): Cannot orthogonalize to the zero vector.");
  }
  if (equals(length(), 0.0, tolerance)) {
    throw std::runtime_error("Vector3D::orthogonalize(): Cannot orthogonalize the zero vector.");
  }
  double const f = -dot(other) / other.dot(other);
  v_[0] += f * other.v_[0];
  v_[1] += f * other.v_[1];
  v_[2] += f * other.v_[2];
}

void Vector<double, 3>::write(Archive& archive) const { archive << v_[0] << v_[1] << v_[2]; }

void Vector<double, 3>::read(Archive& archive) {
  // Read into a copy first, so a truncated archive leaves the vector as it was.
  Array<double, 3> in;
  archive >> in[0] >> in[1] >> in[2];
  v_ = in;
}

bool compare_vector3D(Vector3D const& a, Vector3D const& b) noexcept {
  double const la = a.length();
  double const lb = b.length();
  if (equals(la, lb, 1e-07)) return false;
  return la < lb;
}

void Point::write(Archive& archive) const { vector().write(archive); }

void Point::read(Archive& archive) {
  Vector3D v;
  v.read(archive);
  *this = v.point();
}

}  // namespace structmath
