// SPDX-License-Identifier: MIT
// Tests of Matrix<double, 3, 3> and Matrix<double, 2, 2>: indices, products, symmetry.
#include "structmath/numeric/matrix.hpp"

#include <gtest/gtest.h>

#include <random>

namespace structmath {
namespace {

Matrix3D counting() { return Matrix3D(1, 2, 3, 4, 5, 6, 7, 8, 9); }

TEST(Matrix, CallOperatorCountsFromOneAndSubscriptFromZero) {
  Matrix3D m = counting();
  for (unsigned r = 1; r <= 3; ++r) {
    for (unsigned c = 1; c <= 3; ++c) {
      EXPECT_EQ(m(r, c), m[r - 1][c - 1]);
      EXPECT_EQ(m(r, c), m.elements()[3 * (r - 1) + (c - 1)]);
    }
  }
  EXPECT_EQ(m(2, 3), 6.0);
  EXPECT_EQ(m[1][2], 6.0);
  m(3, 1) = -7.0;
  EXPECT_EQ(m[2][0], -7.0);
  Vector3D const c1 = m.col(1);
  EXPECT_EQ(c1.x(), 1.0);
  EXPECT_EQ(c1.y(), 4.0);
  EXPECT_EQ(c1.z(), -7.0);
}

TEST(Matrix, DefaultIsIdentityAndScalarConstructorFillsAllNine) {
  Matrix3D const identity;
  std::mt19937_64 engine(1);
  std::uniform_real_distribution<double> draw(-5, 5);
  for (int i = 0; i < 20; ++i) {
    Vector3D const v(draw(engine), draw(engine), draw(engine));
    Vector3D const w = identity * v;
    EXPECT_EQ(w.x(), v.x());
    EXPECT_EQ(w.y(), v.y());
    EXPECT_EQ(w.z(), v.z());
  }
  Matrix3D const twos(2.0);
  for (double e : twos.elements()) EXPECT_EQ(e, 2.0);
  Matrix<double, 2, 2> const id2;
  EXPECT_EQ(id2(1, 1), 1.0);
  EXPECT_EQ(id2(1, 2), 0.0);
  EXPECT_EQ(id2[1][1], 1.0);
  EXPECT_EQ((Matrix<double, 2, 2>(3.0)[1][0]), 3.0);
}

TEST(Matrix, TransposeAndMakeSymmetric) {
  Matrix3D const m = counting();
  Matrix3D const t = m.transpose();
  for (unsigned r = 1; r <= 3; ++r) {
    for (unsigned c = 1; c <= 3; ++c) EXPECT_EQ(t(r, c), m(c, r));
  }
  EXPECT_EQ(m(1, 2), 2.0);  // receiver unchanged
  Matrix3D s(0.0);
  s(1, 2) = 5.0;
  s(2, 1) = 7.0;
  s(1, 3) = 1.0;
  s(3, 2) = 4.0;
  s.make_symmetric();
  EXPECT_EQ(s(1, 2), 5.0);
  EXPECT_EQ(s(2, 1), 5.0);  // upper triangle wins
  EXPECT_EQ(s(3, 1), 1.0);
  EXPECT_EQ(s(3, 2), 0.0);
}

TEST(Matrix, ProductsFollowRowTimesColumn) {
  Matrix3D const a = counting();
  Matrix3D const b(0, 1, 0, -1, 0, 0, 0, 0, 2);
  Matrix3D const p = a * b;
  // Hand-worked: row r of a times column c of b.
  Matrix3D const expected(-2, 1, 6, -5, 4, 12, -8, 7, 18);
  EXPECT_TRUE(equals(p, expected, 0.0));
  Vector3D const v = a * Vector3D(1, 0, -1);
  EXPECT_EQ(v.x(), -2.0);
  EXPECT_EQ(v.y(), -2.0);
  EXPECT_EQ(v.z(), -2.0);
  Point const q = b * Point(1, 2, 3);
  EXPECT_EQ(q.x(), 2.0);
  EXPECT_EQ(q.y(), -1.0);
  EXPECT_EQ(q.z(), 6.0);
  // (a b) v == a (b v) on random values.
  std::mt19937_64 engine(2);
  std::uniform_real_distribution<double> draw(-3, 3);
  for (int i = 0; i < 50; ++i) {
    Matrix3D x(0.0), y(0.0);
    for (unsigned r = 1; r <= 3; ++r) {
      for (unsigned c = 1; c <= 3; ++c) {
        x(r, c) = draw(engine);
        y(r, c) = draw(engine);
      }
    }
    Vector3D const w(draw(engine), draw(engine), draw(engine));
    EXPECT_TRUE(equals((x * y) * w, x * (y * w), 1e-12));
  }
}

}  // namespace
}  // namespace structmath
