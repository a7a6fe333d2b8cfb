// SPDX-License-Identifier: MIT
// Point2d: a position or displacement in a plane, with its arithmetic and distance.
#pragma once

#include <cmath>
#include <type_traits>

namespace structmath {

/// Coordinates (x, y) in a plane. Serves both as a position and as a displacement:
/// differences of points are Point2d values too.
class Point2d {
 public:
  constexpr Point2d() noexcept = default;
  constexpr Point2d(double x, double y) noexcept : x_(x), y_(y) {}

  constexpr double& x() noexcept { return x_; }
  constexpr double& y() noexcept { return y_; }
  constexpr double x() const noexcept { return x_; }
  constexpr double y() const noexcept { return y_; }

  constexpr Point2d& operator+=(Point2d const& o) noexcept {
    x_ += o.x_;
    y_ += o.y_;
    return *this;
  }
  constexpr Point2d& operator-=(Point2d const& o) noexcept {
    x_ -= o.x_;
    y_ -= o.y_;
    return *this;
  }
  constexpr Point2d& operator*=(double f) noexcept {
    x_ *= f;
    y_ *= f;
    return *this;
  }
  /// No check for zero: IEEE arithmetic applies.
  constexpr Point2d& operator/=(double d) noexcept {
    x_ /= d;
    y_ /= d;
    return *this;
  }

  constexpr double dot(Point2d const& o) const noexcept { return x_ * o.x_ + y_ * o.y_; }
  /// The z component of the 3-D cross product: positive when o lies anticlockwise.
  constexpr double cross(Point2d const& o) const noexcept { return x_ * o.y_ - y_ * o.x_; }
  /// The distance from (0, 0).
  double length() const noexcept { return std::hypot(x_, y_); }

 private:
  double x_ = 0.0;
  double y_ = 0.0;
};

static_assert(sizeof(Point2d) == 2 * sizeof(double), "a 2-D point is two doubles");
static_assert(std::is_trivially_copyable_v<Point2d>, "a 2-D point is copied bitwise");

constexpr Point2d operator+(Point2d const& a, Point2d const& b) noexcept { return Point2d(a) += b; }
constexpr Point2d operator-(Point2d const& a, Point2d const& b) noexcept { return Point2d(a) -= b; }
constexpr Point2d operator-(Point2d const& a) noexcept { return Point2d(-a.x(), -a.y()); }
constexpr Point2d operator*(Point2d const& a, double f) noexcept { return Point2d(a) *= f; }
constexpr Point2d operator*(double f, Point2d const& a) noexcept { return Point2d(a) *= f; }
constexpr Point2d operator/(Point2d const& a, double d) noexcept { return Point2d(a) /= d; }
/// Exact equality of both coordinates.
constexpr bool operator==(Point2d const& a, Point2d const& b) noexcept {
  return a.x() == b.x() && a.y() == b.y();
}
constexpr bool operator!=(Point2d const& a, Point2d const& b) noexcept { return !(a == b); }

/// Euclidean distance.
inline double distance(Point2d const& a, Point2d const& b) noexcept { return (a - b).length(); }
/// Per-coordinate test |a - b| <= tolerance, like the 3-D points.
inline bool equals(Point2d const& a, Point2d const& b, double tolerance) noexcept {
  return std::fabs(a.x() - b.x()) <= tolerance && std::fabs(a.y() - b.y()) <= tolerance;
}

}  // namespace structmath
