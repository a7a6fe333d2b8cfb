// SPDX-License-Identifier: MIT
// Rectangle2d: construction from corners, containment and overlap.
#include "structmath/geometry/rectangle2d.hpp"

#include <algorithm>

namespace structmath {

Rectangle2d::Rectangle2d(Point2d const& a, Point2d const& b) noexcept
    : minimum_(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
      maximum_(std::max(a.x(), b.x()), std::max(a.y(), b.y())) {}

std::array<Point2d, 4> Rectangle2d::corners() const noexcept {
  return {minimum_, Point2d(maximum_.x(), minimum_.y()), maximum_,
          Point2d(minimum_.x(), maximum_.y())};
}

bool Rectangle2d::contains(Point2d const& p, double tolerance) const noexcept {
  return p.x() >= minimum_.x() - tolerance && p.x() <= maximum_.x() + tolerance &&
         p.y() >= minimum_.y() - tolerance && p.y() <= maximum_.y() + tolerance;
}

bool Rectangle2d::intersects(Rectangle2d const& other, double tolerance) const noexcept {
  return other.minimum_.x() <= maximum_.x() + tolerance &&
         minimum_.x() <= other.maximum_.x() + tolerance &&
         other.minimum_.y() <= maximum_.y() + tolerance &&
         minimum_.y() <= other.maximum_.y() + tolerance;
}

}  // namespace structmath
