// SPDX-License-Identifier: MIT
// Vector<double, 3>: a displacement in three dimensions, and its orderings.
#pragma once

#include <cmath>
#include <type_traits>

#include "structmath/export.hpp"
#include "structmath/numeric/array.hpp"
#include "structmath/numeric/tolerance.hpp"

namespace structmath {

class Archive;
class Point;

template <typename T, unsigned int N>
class Vector;

/// A displacement (x, y, z). Subscripts [i] count from 0, the call operator (i) from 1.
template <>
class STRUCTMATH_API Vector<double, 3> {
 public:
  constexpr Vector() noexcept = default;
  constexpr Vector(double x, double y, double z) noexcept {
    v_[0] = x;
    v_[1] = y;
    v_[2] = z;
  }

  constexpr double& x() noexcept { return v_[0]; }
  constexpr double& y() noexcept { return v_[1]; }
  constexpr double& z() noexcept { return v_[2]; }
  constexpr double x() const noexcept { return v_[0]; }
  constexpr double y() const noexcept { return v_[1]; }
  constexpr double z() const noexcept { return v_[2]; }
  /// Component counted from 0, unchecked.
  constexpr double& operator[](unsigned int i) noexcept { return v_[i]; }
  constexpr double operator[](unsigned int i) const noexcept { return v_[i]; }
  /// Component counted from 1: (1) is x, (3) is z; unchecked.
  constexpr double operator()(unsigned int i) const noexcept { return v_[i - 1]; }

  template <typename U = double>
  constexpr double dot(Vector<U, 3> const& o) const noexcept {
    return v_[0] * o[0] + v_[1] * o[1] + v_[2] * o[2];
  }
  double length() const noexcept { return std::sqrt(dot(*this)); }
  /// x + y + z, accumulated from 0.0 in index order.
  constexpr double sum() const noexcept {
    double s = 0.0;
    s += v_[0];
    s += v_[1];
    s += v_[2];
    return s;
  }
  /// Right-handed cross product this x other.
  constexpr Vector cross(Vector const& o) const noexcept {
    return Vector(v_[1] * o.v_[2] - v_[2] * o.v_[1], v_[2] * o.v_[0] - v_[0] * o.v_[2],
                  v_[0] * o.v_[1] - v_[1] * o.v_[0]);
  }

  constexpr Vector& operator+=(Vector const& o) noexcept {
    v_[0] += o.v_[0];
    v_[1] += o.v_[1];
    v_[2] += o.v_[2];
    return *this;
  }
  constexpr Vector& operator-=(Vector const& o) noexcept {
    v_[0] -= o.v_[0];
    v_[1] -= o.v_[1];
    v_[2] -= o.v_[2];
    return *this;
  }
  constexpr Vector& operator*=(double f) noexcept {
    v_[0] *= f;
    v_[1] *= f;
    v_[2] *= f;
    return *this;
  }
  /// Divides each component; no zero check.
  constexpr Vector& operator/=(double const& d) noexcept {
    v_[0] /= d;
    v_[1] /= d;
    v_[2] /= d;
    return *this;
  }

  /// Scales to unit length. Throws std::runtime_error("Cannot normalize a zero length
  /// Vector"), leaving the vector unchanged, when the length is at most the tolerance.
  void normalize(double tolerance = default_tolerance);
  /// Whether normalize(tolerance) would succeed; never throws.
  bool normalize_valid(double tolerance = default_tolerance) const noexcept {
    return !equals(length(), 0.0, tolerance);
  }
  /// Some vector perpendicular to this one, not normalised: (1, 1, 1) with the component
  /// of largest magnitude (lowest index on ties) solved for. Throws std::runtime_error
  /// ("Vector3D::orthogonalize(): Cannot calculate perp for the zero vector.") for a
  /// zero vector; the message names orthogonalize, kept as callers match it.
  Vector perp(double tolerance = default_tolerance) const;
  /// One Gram-Schmidt step in place: removes the component along other. Throws
  /// std::runtime_error for a zero other ("...Cannot orthogonalize to the zero vector.")
  /// before checking this vector ("...Cannot orthogonalize the zero vector.").
  void orthogonalize(Vector const& other, double tolerance = default_tolerance);

  /// The point with the same coordinates (defined in point.hpp).
  constexpr Point point() const noexcept;
  Array<double, 3> const& array() const noexcept { return v_; }

  /// x, y, z as three doubles.
  void write(Archive& archive) const;
  void read(Archive& archive);

 private:
  Array<double, 3> v_;
};

using Vector3D = Vector<double, 3>;

static_assert(sizeof(Vector3D) == 3 * sizeof(double), "a vector is three doubles");
static_assert(std::is_trivially_copyable_v<Vector3D>, "a vector is copied bitwise");
static_assert(!std::is_polymorphic_v<Vector3D>, "a vector has no virtual table");

template <typename T, typename U, unsigned int N>
constexpr double dot(Vector<T, N> const& a, Vector<U, N> const& b) noexcept {
  return a.dot(b);
}
template <typename T, unsigned int N>
constexpr Vector<T, N> cross(Vector<T, N> const& a, Vector<T, N> const& b) noexcept {
  return a.cross(b);
}
/// Per-component test |a[i] - b[i]| <= tolerance (a cube around a, not a sphere).
template <typename T, unsigned int N>
inline bool equals(Vector<T, N> const& a, Vector<T, N> const& b, double tolerance) noexcept {
  for (unsigned int i = 0; i < N; ++i) {
    if (std::fabs(a[i] - b[i]) > tolerance) return false;
  }
  return true;
}

/// The product of two vectors is their scalar product.
constexpr double operator*(Vector3D const& a, Vector3D const& b) noexcept { return a.dot(b); }
constexpr Vector3D operator*(double const& f, Vector3D const& v) noexcept {
  return Vector3D(v) *= f;
}
constexpr Vector3D operator*(Vector3D const& v, double const& f) noexcept {
  return Vector3D(v) *= f;
}
constexpr Vector3D operator/(Vector3D const& v, double const& d) noexcept {
  return Vector3D(v) /= d;
}
constexpr Vector3D operator+(Vector3D const& a, Vector3D const& b) noexcept {
  return Vector3D(a) += b;
}
constexpr Vector3D operator-(Vector3D const& a, Vector3D const& b) noexcept {
  return Vector3D(a) -= b;
}
constexpr Vector3D operator-(Vector3D const& v) noexcept { return Vector3D(-v[0], -v[1], -v[2]); }

/// Orders vectors by length, lengths within 1e-7 of each other counting as equal.
STRUCTMATH_API bool compare_vector3D(Vector3D const& a, Vector3D const& b) noexcept;

/// Lexicographic strict weak ordering by x, then y, then z, components within the
/// tolerance counting as equal.
class STRUCTMATH_API Vector3DCompareXYZ {
 public:
  /// The default tolerance is the library's usual 1e-7.
  constexpr explicit Vector3DCompareXYZ(double tolerance = default_tolerance) noexcept
      : tolerance_(tolerance) {}
  constexpr bool operator()(Vector3D const& a, Vector3D const& b) const noexcept {
    double const t = tolerance_;
    if (a[0] < b[0] - t) return true;
    if (a[0] - t > b[0]) return false;
    if (a[1] < b[1] - t) return true;
    if (a[1] - t > b[1]) return false;
    return a[2] < b[2] - t;
  }
  constexpr double tolerance() const noexcept { return tolerance_; }

 private:
  double tolerance_;
};

}  // namespace structmath

#include "structmath/numeric/point.hpp"
