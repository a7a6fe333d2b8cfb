// SPDX-License-Identifier: MIT
// UnionSolid: the points contained in any of its member solids.
#pragma once

#include "structmath/export.hpp"
#include "structmath/solids/composite_solid.hpp"

namespace structmath {

/// The union of its members; the empty union contains nothing.
class STRUCTMATH_API UnionSolid : public CompositeSolid {
 public:
  /// Copies the set of members.
  explicit UnionSolid(SolidSet const& solids) : CompositeSolid(solids) {}
  /// The union of a and b; one member when both hold the same object.
  UnionSolid(THandle<Solid> const& a, THandle<Solid> const& b) : CompositeSolid(a, b) {}
  ~UnionSolid() override;

  /// The first member's box with every further member's box merged in, in set order.
  /// Throws std::runtime_error("UnionSolid::bounding_box(): no member solids") when empty.
  THandle<Box> bounding_box() const override;
  /// True as soon as a member contains p, in set order.
  bool contains(Point const& p) const override;
};

}  // namespace structmath
