// SPDX-License-Identifier: MIT
// Rectangle2d: an axis-aligned rectangle in a plane.
#pragma once

#include <array>

#include "structmath/export.hpp"
#include "structmath/geometry/point2d.hpp"
#include "structmath/numeric/tolerance.hpp"

namespace structmath {

/// A closed axis-aligned rectangle, held as its lower-left and upper-right corners.
class STRUCTMATH_API Rectangle2d {
 public:
  /// The unit square from (0, 0) to (1, 1).
  constexpr Rectangle2d() noexcept = default;
  /// The rectangle with a and b as opposite corners, in either order; a rectangle of
  /// zero width or height is allowed.
  Rectangle2d(Point2d const& a, Point2d const& b) noexcept;

  /// The corner with the smallest coordinates.
  constexpr Point2d const& minimum() const noexcept { return minimum_; }
  /// The corner with the largest coordinates.
  constexpr Point2d const& maximum() const noexcept { return maximum_; }
  double width() const noexcept { return maximum_.x() - minimum_.x(); }
  double height() const noexcept { return maximum_.y() - minimum_.y(); }
  double area() const noexcept { return width() * height(); }
  Point2d centre() const noexcept { return 0.5 * (minimum_ + maximum_); }
  /// The four corners anticlockwise from minimum().
  std::array<Point2d, 4> corners() const noexcept;

  /// Whether p lies in the rectangle widened by the tolerance on every side (the
  /// boundary belongs to the rectangle).
  bool contains(Point2d const& p, double tolerance = default_tolerance) const noexcept;
  /// Whether the two closed rectangles share a point, with the same widening: touching
  /// rectangles intersect.
  bool intersects(Rectangle2d const& other, double tolerance = default_tolerance) const noexcept;

 private:
  Point2d minimum_{0.0, 0.0};
  Point2d maximum_{1.0, 1.0};
};

}  // namespace structmath
