// SPDX-License-Identifier: MIT
// FlatUnion: the snapshot of a union of spheres and boxes, and the square-root thresholds.
#include "flat_union.hpp"

#include <cmath>
#include <limits>
#include <typeinfo>

#include "structmath/solids/box.hpp"
#include "structmath/solids/sphere.hpp"
#include "structmath/solids/union_solid.hpp"

namespace structmath::detail {

double sqrt_threshold(double r) noexcept {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  if (std::isnan(r)) return r;
  if (r < 0.0) return -infinity;  // -0.0 is not below 0: sqrt(0) <= -0.0 holds
  if (r == infinity) return infinity;
  // r * r lies within an ulp or two of the threshold (or overflows to infinity); step to
  // the largest t whose root is still within r.
  double t = r * r;
  while (t > 0.0 && !(std::sqrt(t) <= r)) t = std::nextafter(t, 0.0);
  for (;;) {
    double const up = std::nextafter(t, infinity);
    if (!(std::sqrt(up) <= r)) return t;
    t = up;
  }
}

bool FlatUnion::assign(Solid const& solid) {
  members_.clear();
  return add(solid);
}

bool FlatUnion::add(Solid const& s) {
  if (typeid(s) == typeid(Sphere)) {
    auto const& sphere = static_cast<Sphere const&>(s);
    Point const& c = sphere.centre();
    members_.push_back({true, c.x(), c.y(), c.z(), sqrt_threshold(sphere.radius()), 0.0, 0.0});
    return true;
  }
  if (typeid(s) == typeid(Box)) {
    auto const& box = static_cast<Box const&>(s);
    members_.push_back(
        {false, box.min_x(), box.max_x(), box.min_y(), box.max_y(), box.min_z(), box.max_z()});
    return true;
  }
  if (typeid(s) == typeid(UnionSolid)) {
    for (THandle<Solid> const& member : static_cast<UnionSolid const&>(s).solids()) {
      // A null member is left to the union itself, which reports it when a test reaches it.
      if (!member || !add(*member)) return false;
    }
    return true;
  }
  return false;
}

}  // namespace structmath::detail
