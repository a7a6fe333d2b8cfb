// SPDX-License-Identifier: MIT
// Determinants, inversion and symmetric eigen-decomposition of small matrices.
#pragma once

#include "structmath/export.hpp"
#include "structmath/numeric/matrix.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

namespace LinearAlgebraHelpers {

/// (0,0)(1,1) - (0,1)(1,0).
template <typename T>
constexpr T determinant2D(Matrix<T, 2, 2> const& m) noexcept {
  return m[0][0] * m[1][1] - m[0][1] * m[1][0];
}

/// Cofactor expansion along the first row.
template <typename T>
constexpr T determinant3D(Matrix<T, 3, 3> const& m) noexcept {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) +
         m[0][1] * (m[1][2] * m[2][0] - m[1][0] * m[2][2]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

}  // namespace LinearAlgebraHelpers

constexpr double Determinant(Matrix<double, 2, 2> const& m) noexcept {
  return LinearAlgebraHelpers::determinant2D(m);
}
constexpr double Determinant(Matrix<double, 3, 3> const& m) noexcept {
  return LinearAlgebraHelpers::determinant3D(m);
}

/// Replaces m by its inverse (adjugate over the determinant). Throws
/// std::runtime_error("Singular Matrix3D in Matrix3D::inverse()") and leaves m
/// unchanged only when the determinant is exactly 0.0: there is deliberately no
/// tolerance, so a nearly singular matrix is inverted.
STRUCTMATH_API void Invert(Matrix<double, 3, 3>& m);

/// Eigenvalues and eigenvectors of a symmetric matrix by cyclic Jacobi rotations.
///
/// Method: the cyclic Jacobi method with threshold sweeps (Jacobi 1846; in the form of
/// Press, Teukolsky, Vetterling and Flannery, Numerical Recipes, section 11.1). Each
/// sweep visits the pairs (1,2), (1,3), (2,3) in that order; during the first three
/// sweeps only elements above 0.2 * (sum of |upper off-diagonal|) / 9 are rotated,
/// after the fourth sweep elements negligible beside both diagonal entries are zeroed.
/// Stops when the upper off-diagonal sum is exactly 0.0; each sweep costs O(n^3).
///
/// Only the upper triangle of `a` is read (pass a symmetric matrix; `a` is a copy).
/// On return d[i] is eigenvalue i and column i+1 of v its unit eigenvector; the values
/// are unsorted (see EigenSort). Throws std::overflow_error("Jacobi: 50 iterations
/// should never happen.") after 50 sweeps, with d and v holding the partial state.
template <unsigned int N>
void Jacobi(Matrix<double, N, N> a, Vector<double, N>& d, Matrix<double, N, N>& v);
template <>
STRUCTMATH_API void Jacobi<3>(Matrix<double, 3, 3> a, Vector<double, 3>& d,
                              Matrix<double, 3, 3>& v);

/// Sorts eigenvalues into descending order by selection, moving the columns of v with
/// them. On equal values the later index is chosen, so ties are reordered.
template <unsigned int N>
void EigenSort(Vector<double, N>& d, Matrix<double, N, N>& v);
template <>
STRUCTMATH_API void EigenSort<3>(Vector<double, 3>& d, Matrix<double, 3, 3>& v);

}  // namespace structmath
