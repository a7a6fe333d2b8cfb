// SPDX-License-Identifier: MIT
// Tests of determinants, inversion, the Jacobi eigen-decomposition and the eigen sort.
#include "structmath/numeric/linear_algebra.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <stdexcept>

namespace structmath {
namespace {

Matrix3D random_matrix(std::mt19937_64& engine, double spread = 1.0) {
  std::uniform_real_distribution<double> draw(-spread, spread);
  Matrix3D m(0.0);
  for (unsigned r = 1; r <= 3; ++r) {
    for (unsigned c = 1; c <= 3; ++c) m(r, c) = draw(engine);
  }
  return m;
}

Matrix3D random_symmetric(std::mt19937_64& engine) {
  Matrix3D m = random_matrix(engine, 10.0);
  m.make_symmetric();
  return m;
}

Matrix3D diagonal(double a, double b, double c) { return Matrix3D(a, 0, 0, 0, b, 0, 0, 0, c); }

TEST(LinearAlgebra, Determinants) {
  EXPECT_EQ(Determinant(Matrix3D()), 1.0);
  EXPECT_EQ(Determinant(Matrix3D(1.0)), 0.0);
  EXPECT_EQ(Determinant(Matrix<double, 2, 2>(1, 2, 3, 4)), -2.0);
  EXPECT_EQ(LinearAlgebraHelpers::determinant2D<double>(Matrix<double, 2, 2>()), 1.0);
  EXPECT_EQ(Determinant(Matrix3D(2, 0, 1, 1, 3, 2, 1, 1, 2)), 6.0);  // hand-worked
  // det(a b) = det(a) det(b), and the rule of Sarrus agrees.
  std::mt19937_64 engine(17);
  for (int i = 0; i < 100; ++i) {
    Matrix3D const a = random_matrix(engine), b = random_matrix(engine);
    EXPECT_NEAR(Determinant(a * b), Determinant(a) * Determinant(b), 1e-12);
    double const sarrus = a(1, 1) * a(2, 2) * a(3, 3) + a(1, 2) * a(2, 3) * a(3, 1) +
                          a(1, 3) * a(2, 1) * a(3, 2) - a(1, 3) * a(2, 2) * a(3, 1) -
                          a(1, 1) * a(2, 3) * a(3, 2) - a(1, 2) * a(2, 1) * a(3, 3);
    EXPECT_NEAR(LinearAlgebraHelpers::determinant3D<double>(a), sarrus, 1e-13);
  }
}

TEST(LinearAlgebra, InvertKnownMatrices) {
  Matrix3D id;
  Invert(id);
  EXPECT_TRUE(equals(id, Matrix3D(), 0.0));
  Matrix3D d = diagonal(2, 4, 8);
  Invert(d);
  EXPECT_TRUE(equals(d, diagonal(0.5, 0.25, 0.125), 0.0));
  Matrix3D tiny = diagonal(1e-300, 1, 1);
  EXPECT_NO_THROW(Invert(tiny));  // no tolerance: nearly singular is inverted
  EXPECT_DOUBLE_EQ(tiny(1, 1), 1e300);
}

TEST(LinearAlgebra, InvertThrowsOnExactlySingularAndLeavesTheMatrix) {
  Matrix3D const twin_rows(1, 2, 3, 1, 2, 3, 0, 1, 5);
  for (Matrix3D m : {twin_rows, Matrix3D(1.0), Matrix3D(0.0)}) {
    Matrix3D const before = m;
    try {
      Invert(m);
      FAIL() << "inverted a singular matrix";
    } catch (std::runtime_error const& e) {
      EXPECT_STREQ(e.what(), "Singular Matrix3D in Matrix3D::inverse()");
    }
    EXPECT_TRUE(equals(m, before, 0.0));
  }
}

TEST(LinearAlgebra, InverseTimesMatrixIsIdentityOnRandomWellConditionedMatrices) {
  std::mt19937_64 engine(19);
  int checked = 0;
  while (checked < 500) {
    Matrix3D const m = random_matrix(engine);
    if (std::fabs(Determinant(m)) < 0.1) continue;
    Matrix3D inv = m;
    Invert(inv);
    EXPECT_TRUE(equals(inv * m, Matrix3D(), 1e-11));
    EXPECT_TRUE(equals(m * inv, Matrix3D(), 1e-11));
    ++checked;
  }
}

void expect_eigen_decomposition(Matrix3D const& a, Vector3D const& d, Matrix3D const& v,
                                double tolerance) {
  // V is orthonormal and A = V diag(d) V^T.
  EXPECT_TRUE(equals(v.transpose() * v, Matrix3D(), 1e-12));
  Matrix3D const rebuilt = v * diagonal(d[0], d[1], d[2]) * v.transpose();
  EXPECT_TRUE(equals(rebuilt, a, tolerance));
  for (unsigned i = 1; i <= 3; ++i) {
    Vector3D const residual = a * v.col(i) - d(i) * v.col(i);
    EXPECT_LT(residual.length(), tolerance);
  }
}

TEST(LinearAlgebra, JacobiOfADiagonalMatrixReturnsAtOnce) {
  Matrix3D const a = diagonal(3, -1, 2);
  Vector3D d(9, 9, 9);
  Matrix3D v(5.0);
  Jacobi<3>(a, d, v);
  EXPECT_EQ(d.x(), 3.0);
  EXPECT_EQ(d.y(), -1.0);
  EXPECT_EQ(d.z(), 2.0);
  EXPECT_TRUE(equals(v, Matrix3D(), 0.0));
}

TEST(LinearAlgebra, JacobiOfAHandWorkedMatrix) {
  Matrix3D const a(2, 1, 0, 1, 2, 0, 0, 0, 3);
  Matrix3D const copy = a;
  Vector3D d;
  Matrix3D v;
  Jacobi<3>(a, d, v);
  EXPECT_TRUE(equals(a, copy, 0.0));  // taken by value
  std::array<double, 3> values{d[0], d[1], d[2]};
  std::sort(values.begin(), values.end());
  EXPECT_NEAR(values[0], 1.0, 1e-14);
  EXPECT_NEAR(values[1], 3.0, 1e-14);
  EXPECT_NEAR(values[2], 3.0, 1e-14);
  expect_eigen_decomposition(a, d, v, 1e-13);
}

TEST(LinearAlgebra, JacobiReadsOnlyTheUpperTriangle) {
  Matrix3D lower_garbage(2, 1, 0.5, 99, 2, 0.25, -99, 42, 3);
  Vector3D d1, d2;
  Matrix3D v1, v2;
  Jacobi<3>(lower_garbage, d1, v1);
  lower_garbage.make_symmetric();
  Jacobi<3>(lower_garbage, d2, v2);
  EXPECT_TRUE(equals(d1, d2, 0.0));
  EXPECT_TRUE(equals(v1, v2, 0.0));
}

TEST(LinearAlgebra, JacobiReconstructsRandomSymmetricMatrices) {
  std::mt19937_64 engine(23);
  for (int i = 0; i < 2000; ++i) {
    Matrix3D const a = random_symmetric(engine);
    Vector3D d;
    Matrix3D v;
    Jacobi<3>(a, d, v);
    expect_eigen_decomposition(a, d, v, 1e-11);
    // The trace and determinant are the sum and product of the eigenvalues.
    EXPECT_NEAR(d.sum(), a(1, 1) + a(2, 2) + a(3, 3), 1e-11);
    EXPECT_NEAR(d[0] * d[1] * d[2], Determinant(a), 1e-9);
  }
  // Degenerate spectra: rank one and multiples of the identity rotated.
  for (int i = 0; i < 200; ++i) {
    Vector3D u(std::cos(i * 0.1), std::sin(i * 0.1), 0.5);
    Matrix3D a(0.0);
    for (unsigned r = 1; r <= 3; ++r) {
      for (unsigned c = 1; c <= 3; ++c) a(r, c) = u(r) * u(c);
    }
    Vector3D d;
    Matrix3D v;
    Jacobi<3>(a, d, v);
    expect_eigen_decomposition(a, d, v, 1e-12);
  }
}

TEST(LinearAlgebra, EigenSortDescendingWithTheLaterEqualIndexWinning) {
  Vector3D d(1, 3, 3);
  Matrix3D v(1, 2, 3, 4, 5, 6, 7, 8, 9);  // column i labelled by its first element i
  EigenSort<3>(d, v);
  EXPECT_EQ(d.x(), 3.0);
  EXPECT_EQ(d.y(), 3.0);
  EXPECT_EQ(d.z(), 1.0);
  // i = 1: the last 3 (column 3) moves first; column 1 goes to 3. i = 2: d(2) = 3 and
  // d(3) = 1, nothing moves.
  EXPECT_EQ(v(1, 1), 3.0);
  EXPECT_EQ(v(1, 2), 2.0);
  EXPECT_EQ(v(1, 3), 1.0);
  EXPECT_EQ(v(3, 1), 9.0);

  std::mt19937_64 engine(29);
  for (int i = 0; i < 300; ++i) {
    Matrix3D const a = random_symmetric(engine);
    Vector3D d2;
    Matrix3D v2;
    Jacobi<3>(a, d2, v2);
    EigenSort<3>(d2, v2);
    EXPECT_GE(d2[0], d2[1]);
    EXPECT_GE(d2[1], d2[2]);
    expect_eigen_decomposition(a, d2, v2, 1e-11);  // columns moved with their values
  }
}

}  // namespace
}  // namespace structmath
