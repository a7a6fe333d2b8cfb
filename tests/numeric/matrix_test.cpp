// SPDX-License-Identifier: MIT
// Tests of Matrix<double, 3, 3> and Matrix<double, 2, 2>: indices, products, symmetry.
#include "structmath/numeric/matrix.hpp"

#include <gtest/gtest.h>

#include <random>

namespace structmath {
namespace {

TEST(Matrix, IndexConventionsIdentityAndScalarFill) {
  Matrix3D m(1, 2, 3, 4, 5, 6, 7, 8, 9);
  for (unsigned i = 0; i < 9; ++i) {  // call operator from 1, subscript from 0, row-major
    EXPECT_EQ(m(i / 3 + 1, i % 3 + 1), m[i / 3][i % 3]);
    EXPECT_EQ(m.elements()[i], i + 1.0);
    EXPECT_EQ(Matrix3D().elements()[i], i % 4 == 0 ? 1.0 : 0.0);
    EXPECT_EQ(Matrix3D(2.0).elements()[i], 2.0);
  }
  m(3, 1) = -7.0;
  EXPECT_EQ(m[2][0], -7.0);
  Vector3D const c1 = m.col(1);
  EXPECT_TRUE(c1.x() == 1.0 && c1.y() == 4.0 && c1.z() == -7.0);
  Matrix<double, 2, 2> const id2, threes(3.0);
  EXPECT_TRUE(id2(1, 1) == 1.0 && id2(1, 2) == 0.0 && id2[1][0] == 0.0 && id2[1][1] == 1.0);
  EXPECT_EQ(threes[1][0], 3.0);
}

TEST(Matrix, TransposeAndMakeSymmetric) {
  Matrix3D const m(1, 2, 3, 4, 5, 6, 7, 8, 9);
  EXPECT_TRUE(equals(m.transpose(), Matrix3D(1, 4, 7, 2, 5, 8, 3, 6, 9), 0.0));
  EXPECT_FALSE(equals(m.transpose(), m, 3.9));  // (1, 3) and (3, 1) differ by 4
  Matrix3D s(0, 5, 1, 7, 0, 0, 0, 4, 0);
  s.make_symmetric();  // the upper triangle wins
  EXPECT_TRUE(equals(s, Matrix3D(0, 5, 1, 5, 0, 0, 1, 0, 0), 0.0));
}

TEST(Matrix, ProductsFollowRowTimesColumn) {
  Matrix3D const a(1, 2, 3, 4, 5, 6, 7, 8, 9), b(0, 1, 0, -1, 0, 0, 0, 0, 2);
  EXPECT_TRUE(equals(a * b, Matrix3D(-2, 1, 6, -5, 4, 12, -8, 7, 18), 0.0));  // by hand
  EXPECT_TRUE(equals(a * Vector3D(1, 0, -1), Vector3D(-2, -2, -2), 0.0));
  EXPECT_TRUE(equals(b * Point(1, 2, 3), Point(2, -1, 6), 0.0));
  // (x y) w == x (y w) on random values.
  std::mt19937_64 engine(2);
  std::uniform_real_distribution<double> draw(-3, 3);
  for (int i = 0; i < 50; ++i) {
    Matrix3D x(0.0), y(0.0);
    for (unsigned k = 0; k < 9; ++k) {
      x(k / 3 + 1, k % 3 + 1) = draw(engine);
      y(k / 3 + 1, k % 3 + 1) = draw(engine);
    }
    Vector3D const w(draw(engine), draw(engine), draw(engine));
    EXPECT_TRUE(equals((x * y) * w, x * (y * w), 1e-12));
  }
}

}  // namespace
}  // namespace structmath
