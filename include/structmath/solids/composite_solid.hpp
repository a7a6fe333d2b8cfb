// SPDX-License-Identifier: MIT
// CompositeSolid: the shared member set of UnionSolid and IntersectionSolid.
#pragma once

#include <set>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/solids/solid.hpp"

namespace structmath {

/// A solid made of shared member solids, each object at most once.
///
/// Members are ordered by the address of the held object (the handle ordering), and
/// every walk over them runs in that order. Composites nest, and one solid may belong
/// to several of them. They are neither printed nor persisted.
class STRUCTMATH_API CompositeSolid : public Solid {
 public:
  using SolidSet = std::set<THandle<Solid>>;

  ~CompositeSolid() override;

  /// Adds a member; a handle to an object already present changes nothing.
  void add_solid(THandle<Solid> const& s);
  /// Finds the first member, in set order, whose bounding box equals that of s within
  /// 1e-7 on all six bounds; position is left there, or at the end when none matches.
  /// Sameness is by bounding box, not identity: any solid with a matching box stands
  /// for the member, which lets callers remove a member through a copy. An empty
  /// composite answers false without asking s for its box (an empty union has none).
  bool contains_solid(Solid const& s, SolidSet::const_iterator& position) const;
  /// Removes the member that contains_solid finds for s; does nothing when none.
  void remove_solid(Solid const& s);

  /// The members, in set order.
  SolidSet const& solids() const noexcept { return solids_; }

 protected:
  CompositeSolid() = default;
  explicit CompositeSolid(SolidSet const& solids);
  CompositeSolid(THandle<Solid> const& a, THandle<Solid> const& b);
  CompositeSolid(CompositeSolid const&) = default;
  CompositeSolid& operator=(CompositeSolid const&) = default;

  /// The first member's bounding box; throws std::runtime_error naming the operation
  /// when there is no member.
  THandle<Box> first_bounding_box(char const* operation) const;

  /// The members' objects in set order, contiguous for the containment tests that run
  /// once per Monte Carlo sample; a null member is a null pointer.
  std::vector<Solid const*> const& members() const noexcept { return members_; }

 private:
  void rebuild_members();

  SolidSet solids_;
  std::vector<Solid const*> members_;
};

}  // namespace structmath
