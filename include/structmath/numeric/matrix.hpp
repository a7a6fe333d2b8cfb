// SPDX-License-Identifier: MIT
// Matrix<double, 3, 3> and Matrix<double, 2, 2>: small row-major matrices.
#pragma once

#include <type_traits>

#include "structmath/export.hpp"
#include "structmath/numeric/array.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

template <typename T, unsigned int R, unsigned int C>
class Matrix;

/// A read-only view of one row of a matrix; [c] counts from 0. Valid while the
/// matrix it came from lives.
class ConstRow {
 public:
  constexpr explicit ConstRow(double const* row) noexcept : row_(row) {}
  constexpr double operator[](unsigned int c) const noexcept { return row_[c]; }

 private:
  double const* row_;
};

/// A 3x3 matrix stored row-major: element (r, c), counted from 0, at index 3r + c.
///
/// Index conventions are mixed on purpose: m(r, c) and col(c) count from 1 as in
/// mathematical notation, m[r][c] counts from 0. The default matrix is the identity.
template <>
class Matrix<double, 3, 3> {
 public:
  using ConstRow = structmath::ConstRow;

  /// The identity.
  constexpr Matrix() noexcept {
    m_[0] = 1.0;
    m_[4] = 1.0;
    m_[8] = 1.0;
  }
  /// All nine elements equal to v (not a diagonal matrix).
  constexpr explicit Matrix(double v) noexcept {
    for (unsigned int i = 0; i < 9; ++i) m_[i] = v;
  }
  /// The nine elements in row-major order.
  constexpr Matrix(double m11, double m12, double m13, double m21, double m22, double m23,
                   double m31, double m32, double m33) noexcept {
    m_[0] = m11;
    m_[1] = m12;
    m_[2] = m13;
    m_[3] = m21;
    m_[4] = m22;
    m_[5] = m23;
    m_[6] = m31;
    m_[7] = m32;
    m_[8] = m33;
  }

  /// Element at row r, column c, both counted from 1; unchecked.
  constexpr double& operator()(unsigned int r, unsigned int c) noexcept {
    return m_[3 * (r - 1) + (c - 1)];
  }
  constexpr double operator()(unsigned int r, unsigned int c) const noexcept {
    return m_[3 * (r - 1) + (c - 1)];
  }
  /// Row r counted from 0.
  constexpr ConstRow operator[](unsigned int r) const noexcept {
    return ConstRow(m_.data() + 3 * r);
  }
  /// Column c counted from 1.
  constexpr Vector3D col(unsigned int c) const noexcept {
    return Vector3D(m_[c - 1], m_[3 + c - 1], m_[6 + c - 1]);
  }
  constexpr Matrix transpose() const noexcept {
    return Matrix(m_[0], m_[3], m_[6], m_[1], m_[4], m_[7], m_[2], m_[5], m_[8]);
  }
  /// Copies every element above the diagonal over its mirror: the upper triangle wins.
  constexpr void make_symmetric() noexcept {
    m_[3] = m_[1];
    m_[6] = m_[2];
    m_[7] = m_[5];
  }
  /// The nine elements, row-major.
  constexpr Array<double, 9> const& elements() const noexcept { return m_; }

 private:
  Array<double, 9> m_;
};

using Matrix3D = Matrix<double, 3, 3>;

static_assert(sizeof(Matrix3D) == 9 * sizeof(double), "a 3x3 matrix is nine doubles");
static_assert(std::is_trivially_copyable_v<Matrix3D>, "a matrix is copied bitwise");
static_assert(!std::is_polymorphic_v<Matrix3D>, "a matrix has no virtual table");

/// Left times right, each element accumulated from 0.0 in index order.
constexpr Matrix3D operator*(Matrix3D const& a, Matrix3D const& b) noexcept {
  Matrix3D result(0.0);
  for (unsigned int r = 1; r <= 3; ++r) {
    for (unsigned int c = 1; c <= 3; ++c) {
      double s = 0.0;
      for (unsigned int k = 1; k <= 3; ++k) s += a(r, k) * b(k, c);
      result(r, c) = s;
    }
  }
  return result;
}
/// Component r is the sum over c of element (r, c) times v[c].
constexpr Vector3D operator*(Matrix3D const& m, Vector3D const& v) noexcept {
  Vector3D result;
  for (unsigned int r = 0; r < 3; ++r) {
    double s = 0.0;
    for (unsigned int c = 0; c < 3; ++c) s += m[r][c] * v[c];
    result[r] = s;
  }
  return result;
}
constexpr Point operator*(Matrix3D const& m, Point const& p) noexcept {
  return (m * p.vector()).point();
}
/// Per-element test |a - b| <= tolerance.
inline bool equals(Matrix3D const& a, Matrix3D const& b, double tolerance) noexcept {
  for (unsigned int r = 1; r <= 3; ++r) {
    if (!equals(a.col(r), b.col(r), tolerance)) return false;
  }
  return true;
}

/// A 2x2 matrix stored row-major in four doubles; the same index conventions and the
/// identity default as the 3x3 matrix.
template <>
class Matrix<double, 2, 2> {
 public:
  using ConstRow = structmath::ConstRow;

  constexpr Matrix() noexcept {
    m_[0] = 1.0;
    m_[3] = 1.0;
  }
  constexpr explicit Matrix(double v) noexcept {
    for (unsigned int i = 0; i < 4; ++i) m_[i] = v;
  }
  constexpr Matrix(double m11, double m12, double m21, double m22) noexcept {
    m_[0] = m11;
    m_[1] = m12;
    m_[2] = m21;
    m_[3] = m22;
  }
  constexpr double& operator()(unsigned int r, unsigned int c) noexcept {
    return m_[2 * (r - 1) + (c - 1)];
  }
  constexpr double operator()(unsigned int r, unsigned int c) const noexcept {
    return m_[2 * (r - 1) + (c - 1)];
  }
  constexpr ConstRow operator[](unsigned int r) const noexcept {
    return ConstRow(m_.data() + 2 * r);
  }
  constexpr Array<double, 4> const& elements() const noexcept { return m_; }

 private:
  Array<double, 4> m_;
};

static_assert(sizeof(Matrix<double, 2, 2>) == 4 * sizeof(double), "a 2x2 matrix is four doubles");
static_assert(std::is_trivially_copyable_v<Matrix<double, 2, 2>>, "a matrix is copied bitwise");

}  // namespace structmath
