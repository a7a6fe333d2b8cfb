// SPDX-License-Identifier: MIT
// Point: a position in three dimensions, distinct from the displacement Vector<double, 3>.
#pragma once

#include <type_traits>

#include "structmath/export.hpp"
#include "structmath/numeric/array.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

/// A position (x, y, z). Differences of points are vectors; a point moves by a vector.
class STRUCTMATH_API Point {
 public:
  constexpr Point() noexcept = default;
  constexpr Point(double x, double y, double z) noexcept {
    p_[0] = x;
    p_[1] = y;
    p_[2] = z;
  }
  /// The point at the tip of the vector from the origin.
  constexpr explicit Point(Vector3D const& v) noexcept : Point(v[0], v[1], v[2]) {}

  constexpr double& x() noexcept { return p_[0]; }
  constexpr double& y() noexcept { return p_[1]; }
  constexpr double& z() noexcept { return p_[2]; }
  constexpr double x() const noexcept { return p_[0]; }
  constexpr double y() const noexcept { return p_[1]; }
  constexpr double z() const noexcept { return p_[2]; }
  /// Coordinate counted from 0, unchecked.
  constexpr double& operator[](unsigned int i) noexcept { return p_[i]; }
  constexpr double operator[](unsigned int i) const noexcept { return p_[i]; }

  /// The vector from the origin to this point.
  constexpr Vector3D vector() const noexcept { return Vector3D(p_[0], p_[1], p_[2]); }

  constexpr Point& operator+=(Vector3D const& v) noexcept {
    p_[0] += v[0];
    p_[1] += v[1];
    p_[2] += v[2];
    return *this;
  }
  constexpr Point& operator-=(Vector3D const& v) noexcept {
    p_[0] -= v[0];
    p_[1] -= v[1];
    p_[2] -= v[2];
    return *this;
  }

  /// x, y, z as three doubles, like a vector.
  void write(Archive& archive) const;
  void read(Archive& archive);

 private:
  Array<double, 3> p_;
};

static_assert(sizeof(Point) == 3 * sizeof(double), "a point is three doubles");
static_assert(std::is_trivially_copyable_v<Point>, "a point is copied bitwise");
static_assert(!std::is_polymorphic_v<Point>, "a point has no virtual table");

constexpr Point Vector<double, 3>::point() const noexcept { return Point(v_[0], v_[1], v_[2]); }

constexpr Point operator+(Point const& p, Vector3D const& v) noexcept { return Point(p) += v; }
constexpr Point operator-(Point const& p, Vector3D const& v) noexcept { return Point(p) -= v; }
/// The displacement from b to a.
constexpr Vector3D operator-(Point const& a, Point const& b) noexcept {
  return Vector3D(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}
/// Per-coordinate test, as for vectors.
inline bool equals(Point const& a, Point const& b, double tolerance) noexcept {
  return equals(a.vector(), b.vector(), tolerance);
}

}  // namespace structmath
