// SPDX-License-Identifier: MIT
// Sphere: containment by distance from the centre and the bounding box.
#include "structmath/solids/sphere.hpp"

#include "structmath/solids/box.hpp"

namespace structmath {

Sphere::~Sphere() = default;

THandle<Box> Sphere::bounding_box() const {
  Vector3D const r(radius_, radius_, radius_);
  return make_handle<Box>(centre_ + r, centre_ - r);
}

}  // namespace structmath
