// SPDX-License-Identifier: MIT
// Slab: strict containment about the plane, the unbounded box and persistence.
#include "structmath/solids/slab.hpp"

#include "structmath/solids/box.hpp"

namespace structmath {

Slab::~Slab() = default;

THandle<Box> Slab::bounding_box() const {
  return make_handle<Box>(Point(-Box::unbounded, -Box::unbounded, -Box::unbounded),
                          Point(Box::unbounded, Box::unbounded, Box::unbounded));
}

bool Slab::contains(Point const& p) const { return plane_.distance(p) < half_thickness_; }

void Slab::write(Archive& archive) const { plane_.write(archive); }

void Slab::read(Archive& archive) { plane_.read(archive); }

}  // namespace structmath
