// SPDX-License-Identifier: MIT
// IntersectionSolid: the points contained in every one of its member solids.
#pragma once

#include "structmath/export.hpp"
#include "structmath/solids/composite_solid.hpp"

namespace structmath {

/// The intersection of its members; the empty intersection is all of space.
class STRUCTMATH_API IntersectionSolid : public CompositeSolid {
 public:
  /// Copies the set of members.
  explicit IntersectionSolid(SolidSet const& solids) : CompositeSolid(solids) {}
  /// The intersection of a and b; one member when both hold the same object.
  IntersectionSolid(THandle<Solid> const& a, THandle<Solid> const& b) : CompositeSolid(a, b) {}
  ~IntersectionSolid() override;

  /// The overlap of the members' boxes, built as follows. R is the first member's box.
  /// Each further member's box B, in set order, is skipped when equals(R, B, 0.0005)
  /// (always against R, not against the running overlap: near-copies of the first
  /// member's box cannot nibble it away), and otherwise narrows the overlap per axis.
  /// When on some axis the overlap's bounds are within 1e-7 of each other, or reversed,
  /// the result is the empty Box(), in line with Box::is_empty().
  /// Throws std::runtime_error("IntersectionSolid::bounding_box(): no member solids")
  /// when empty.
  THandle<Box> bounding_box() const override;
  /// False as soon as a member does not contain p, in set order.
  bool contains(Point const& p) const override;
};

}  // namespace structmath
