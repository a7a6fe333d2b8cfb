// SPDX-License-Identifier: MIT
// Circle: construction, measures and containment.
#include "structmath/geometry/circle.hpp"

#include <stdexcept>

namespace structmath {

namespace {
constexpr double pi = 3.14159265358979323846;
}

Circle::Circle(Point2d const& centre, double radius) : centre_(centre), radius_(radius) {
  if (!(radius >= 0.0)) throw std::invalid_argument("Circle: the radius must not be negative");
}

double Circle::area() const noexcept { return pi * radius_ * radius_; }

double Circle::circumference() const noexcept { return 2.0 * pi * radius_; }

bool Circle::contains(Point2d const& p, double tolerance) const noexcept {
  return distance(p, centre_) <= radius_ + tolerance;
}

}  // namespace structmath
