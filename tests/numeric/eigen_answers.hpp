// SPDX-License-Identifier: MIT
// Eigen-decompositions as known-answer cases describe them.
#pragma once

#include <vector>

#include "structmath/numeric/linear_algebra.hpp"
#include "support/known_answers.hpp"

namespace structmath::testing {

/// The nine elements, row-major.
inline std::vector<double> elements(Matrix3D const& m) {
  return {m.elements().begin(), m.elements().end()};
}

/// Jacobi<3> of the case's "matrix" (nine elements, row-major), then EigenSort<3>:
/// jacobi_d and jacobi_v (row-major) as Jacobi leaves them, sorted_d and sorted_v after.
inline AnswerFields library_eigen_outcome(AnswerCase const& c) {
  std::vector<double> const a = c.doubles("matrix");
  Matrix3D const m(a.at(0), a.at(1), a.at(2), a.at(3), a.at(4), a.at(5), a.at(6), a.at(7), a.at(8));
  Vector3D d;
  Matrix3D v;
  Jacobi<3>(m, d, v);
  AnswerFields out;
  out.add("jacobi_d", std::vector<double>{d[0], d[1], d[2]}).add("jacobi_v", elements(v));
  EigenSort<3>(d, v);
  out.add("sorted_d", std::vector<double>{d[0], d[1], d[2]}).add("sorted_v", elements(v));
  return out;
}

}  // namespace structmath::testing
