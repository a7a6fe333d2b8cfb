// SPDX-License-Identifier: MIT
// CompositeSolid, UnionSolid and IntersectionSolid: membership, containment and boxes.
#include "structmath/solids/composite_solid.hpp"

#include <iterator>
#include <stdexcept>
#include <string>

#include "structmath/numeric/point.hpp"
#include "structmath/numeric/tolerance.hpp"
#include "structmath/solids/box.hpp"
#include "structmath/solids/intersection_solid.hpp"
#include "structmath/solids/union_solid.hpp"

namespace structmath {

CompositeSolid::CompositeSolid(SolidSet const& solids) : solids_(solids) { rebuild_members(); }

CompositeSolid::CompositeSolid(THandle<Solid> const& a, THandle<Solid> const& b) {
  solids_.insert(a);
  solids_.insert(b);
  rebuild_members();
}

CompositeSolid::~CompositeSolid() = default;

void CompositeSolid::add_solid(THandle<Solid> const& s) {
  if (solids_.insert(s).second) rebuild_members();
}

void CompositeSolid::rebuild_members() {
  members_.clear();
  members_.reserve(solids_.size());
  for (THandle<Solid> const& s : solids_) members_.push_back(s.get());
}

bool CompositeSolid::contains_solid(Solid const& s, SolidSet::const_iterator& position) const {
  // The argument's box is asked for only once there is a member to compare it with, so
  // an empty composite answers false for any argument, an empty union included.
  THandle<Box> wanted;
  for (position = solids_.begin(); position != solids_.end(); ++position) {
    if (!wanted) wanted = s.bounding_box();
    if (equals(*(*position)->bounding_box(), *wanted, 1e-7)) return true;
  }
  return false;
}

void CompositeSolid::remove_solid(Solid const& s) {
  SolidSet::const_iterator position;
  if (contains_solid(s, position)) {
    solids_.erase(position);
    rebuild_members();
  }
}

THandle<Box> CompositeSolid::first_bounding_box(char const* operation) const {
  if (solids_.empty()) throw std::runtime_error(std::string(operation) + ": no member solids");
  return (*solids_.begin())->bounding_box();
}

UnionSolid::~UnionSolid() = default;

THandle<Box> UnionSolid::bounding_box() const {
  THandle<Box> result = first_bounding_box("UnionSolid::bounding_box()");
  for (auto it = std::next(solids().begin()); it != solids().end(); ++it) {
    result->merge(*(*it)->bounding_box());
  }
  return result;
}

bool UnionSolid::contains(Point const& p) const {
  for (Solid const* s : members()) {
    if (s == nullptr) THandleCommon::null_handle_error();
    if (s->contains(p)) return true;
  }
  return false;
}

IntersectionSolid::~IntersectionSolid() = default;

THandle<Box> IntersectionSolid::bounding_box() const {
  THandle<Box> const first = first_bounding_box("IntersectionSolid::bounding_box()");
  Box const& r = *first;
  Point lo = r.min_corner();
  Point hi = r.max_corner();
  for (auto it = std::next(solids().begin()); it != solids().end(); ++it) {
    THandle<Box> const b = (*it)->bounding_box();
    if (equals(r, *b, 0.0005)) continue;
    Point const b_lo = b->min_corner();
    Point const b_hi = b->max_corner();
    for (unsigned int axis = 0; axis < 3; ++axis) {
      if (b_lo[axis] > lo[axis]) lo[axis] = b_lo[axis];
      if (b_hi[axis] < hi[axis]) hi[axis] = b_hi[axis];
    }
  }
  for (unsigned int axis = 0; axis < 3; ++axis) {
    if (equals(lo[axis], hi[axis], 1e-7)) return make_handle<Box>();
  }
  for (unsigned int axis = 0; axis < 3; ++axis) {
    if (lo[axis] > hi[axis]) return make_handle<Box>();
  }
  return make_handle<Box>(lo, hi);
}

bool IntersectionSolid::contains(Point const& p) const {
  for (Solid const* s : members()) {
    if (s == nullptr) THandleCommon::null_handle_error();
    if (!s->contains(p)) return false;
  }
  return true;
}

}  // namespace structmath
