// SPDX-License-Identifier: MIT
// Circle: a disc in a plane, with area, circumference and containment.
#pragma once

#include "structmath/export.hpp"
#include "structmath/geometry/point2d.hpp"
#include "structmath/numeric/tolerance.hpp"

namespace structmath {

/// A circle (and the disc it bounds) given by centre and radius.
class STRUCTMATH_API Circle {
 public:
  /// The unit circle about (0, 0).
  constexpr Circle() noexcept = default;
  /// Throws std::invalid_argument("Circle: the radius must not be negative") for a
  /// negative or NaN radius. A zero radius is a point.
  Circle(Point2d const& centre, double radius);

  constexpr Point2d const& centre() const noexcept { return centre_; }
  constexpr double radius() const noexcept { return radius_; }
  /// pi r^2.
  double area() const noexcept;
  /// 2 pi r.
  double circumference() const noexcept;
  /// Whether p lies in the closed disc, widened by the tolerance: |p - centre| <= r + tol.
  bool contains(Point2d const& p, double tolerance = default_tolerance) const noexcept;

 private:
  Point2d centre_;
  double radius_ = 1.0;
};

}  // namespace structmath
