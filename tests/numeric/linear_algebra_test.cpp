// SPDX-License-Identifier: MIT
// Tests of determinants, inversion, the Jacobi eigen-decomposition and the eigen sort.
#include "structmath/numeric/linear_algebra.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <stdexcept>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

Matrix3D random_matrix(std::mt19937_64& engine, double spread) {
  std::uniform_real_distribution<double> draw(-spread, spread);
  Matrix3D m(0.0);
  for (unsigned k = 0; k < 9; ++k) m(k / 3 + 1, k % 3 + 1) = draw(engine);
  return m;
}

Matrix3D diagonal(Vector3D const& d) { return Matrix3D(d[0], 0, 0, 0, d[1], 0, 0, 0, d[2]); }

// Checks that V is orthonormal and A = V diag(d) V^T.
void expect_eigen_decomposition(Matrix3D const& a, Vector3D const& d, Matrix3D const& v,
                                double tolerance) {
  EXPECT_TRUE(equals(v.transpose() * v, Matrix3D(), 1e-12));
  EXPECT_TRUE(equals(v * diagonal(d) * v.transpose(), a, tolerance));
}

TEST(LinearAlgebra, DeterminantsAgreeWithTheRuleOfSarrus) {
  EXPECT_EQ(Determinant(Matrix<double, 2, 2>(1, 2, 3, 4)), -2.0);
  EXPECT_EQ(Determinant(Matrix3D(2, 0, 1, 1, 3, 2, 1, 1, 2)), 6.0);  // by hand
  std::mt19937_64 engine(17);
  for (int i = 0; i < 100; ++i) {
    Matrix3D const a = random_matrix(engine, 1.0);
    double const sarrus = a(1, 1) * a(2, 2) * a(3, 3) + a(1, 2) * a(2, 3) * a(3, 1) +
                          a(1, 3) * a(2, 1) * a(3, 2) - a(1, 3) * a(2, 2) * a(3, 1) -
                          a(1, 1) * a(2, 3) * a(3, 2) - a(1, 2) * a(2, 1) * a(3, 3);
    EXPECT_NEAR(Determinant(a), sarrus, 1e-13);
  }
}

TEST(LinearAlgebra, InverseTimesMatrixIsIdentityAndOnlyExactlySingularThrows) {
  Matrix3D tiny = diagonal(Vector3D(1e-300, 1, 1));
  Invert(tiny);  // no tolerance: nearly singular is inverted
  EXPECT_DOUBLE_EQ(tiny(1, 1), 1e300);
  std::mt19937_64 engine(19);
  for (int checked = 0; checked < 500;) {
    Matrix3D const m = random_matrix(engine, 1.0);
    if (std::fabs(Determinant(m)) < 0.1) continue;  // well conditioned only
    Matrix3D inverse = m;
    Invert(inverse);
    EXPECT_TRUE(equals(inverse * m, Matrix3D(), 1e-11) && equals(m * inverse, Matrix3D(), 1e-11));
    ++checked;
  }
  for (Matrix3D m : {Matrix3D(1, 2, 3, 1, 2, 3, 0, 1, 5), Matrix3D(1.0), Matrix3D(0.0)}) {
    Matrix3D const before = m;
    testing::expect_throw_message<std::runtime_error>([&] { Invert(m); },
                                                      "Singular Matrix3D in Matrix3D::inverse()");
    EXPECT_TRUE(equals(m, before, 0.0));
  }
}

TEST(LinearAlgebra, JacobiReturnsAtOnceOnDiagonalsAndReadsOnlyTheUpperTriangle) {
  Vector3D d(9, 9, 9), d2;
  Matrix3D v(5.0), v2;
  Jacobi<3>(diagonal(Vector3D(3, -1, 2)), d, v);
  EXPECT_TRUE(equals(d, Vector3D(3, -1, 2), 0.0) && equals(v, Matrix3D(), 0.0));
  Matrix3D lower_garbage(2, 1, 0.5, 99, 2, 0.25, -99, 42, 3), symmetric = lower_garbage;
  symmetric.make_symmetric();
  Jacobi<3>(lower_garbage, d, v);
  Jacobi<3>(symmetric, d2, v2);
  EXPECT_TRUE(equals(d, d2, 0.0) && equals(v, v2, 0.0));
}

TEST(LinearAlgebra, EigenSortIsDescendingWithTheLaterEqualIndexWinning) {
  Vector3D d(1, 3, 3);
  Matrix3D v(1, 2, 3, 4, 5, 6, 7, 8, 9);  // column i labelled by its first element i
  EigenSort<3>(d, v);
  EXPECT_TRUE(equals(d, Vector3D(3, 3, 1), 0.0));
  // i = 1: the later 3 (column 3) swaps with column 1. i = 2: nothing moves.
  EXPECT_TRUE(equals(v, Matrix3D(3, 2, 1, 6, 5, 4, 9, 8, 7), 0.0));

  Matrix3D const a(2, 1, 0, 1, 2, 0, 0, 0, 3);  // eigenvalues 1, 3, 3 by hand
  Jacobi<3>(a, d, v);
  EigenSort<3>(d, v);
  EXPECT_TRUE(equals(d, Vector3D(3, 3, 1), 1e-14));
  expect_eigen_decomposition(a, d, v, 1e-13);
}

TEST(LinearAlgebra, JacobiAndEigenSortDecomposeRandomSymmetricMatrices) {
  std::mt19937_64 engine(23);
  Vector3D d;
  Matrix3D v;
  for (int i = 0; i < 2000; ++i) {
    Matrix3D a = random_matrix(engine, 10.0);
    a.make_symmetric();
    if (i % 10 == 0) {  // rank one: a double eigenvalue zero
      Vector3D const u = 0.1 * a.col(1);
      for (unsigned k = 0; k < 9; ++k) a(k / 3 + 1, k % 3 + 1) = u[k / 3] * u[k % 3];
    }
    Jacobi<3>(a, d, v);
    expect_eigen_decomposition(a, d, v, 1e-11);
    EigenSort<3>(d, v);
    EXPECT_TRUE(d[0] >= d[1] && d[1] >= d[2]);
    expect_eigen_decomposition(a, d, v, 1e-11);  // columns moved with their values
  }
}

}  // namespace
}  // namespace structmath
