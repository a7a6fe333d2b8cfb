// SPDX-License-Identifier: MIT
// FlatUnion: the members of a union of spheres and boxes copied into one flat array, for
// the sampling loop.
#pragma once

#include <vector>

#include "structmath/numeric/point.hpp"
#include "structmath/solids/solid.hpp"

namespace structmath::detail {

/// The largest double t with sqrt(t) <= r. Because a correctly rounded square root is
/// monotonic, for every s >= 0, and for NaN, s <= t holds exactly when sqrt(s) <= r: a
/// squared distance compared with t gives the same answer as the distance compared with
/// r, without the root. -infinity for a negative r (no distance qualifies), NaN for NaN.
double sqrt_threshold(double r) noexcept;

/// A snapshot of a Sphere, a Box, or a union whose members, nested unions included, are
/// all exactly Sphere or Box: their tests in set order (depth first through nested unions)
/// in one array, the spheres' radii replaced by sqrt_threshold. contains() answers what
/// the solid's contains() answers, to the point, for the members as they were at assign():
/// take the snapshot where no member can change, as at the start of a sampling run.
class FlatUnion {
 public:
  /// Takes the snapshot; false (and an unusable object) when the solid or a member is of
  /// another type, or a member is null (the caller then asks the solid itself).
  bool assign(Solid const& solid);

  bool contains(Point const& p) const noexcept {
    double const x = p.x(), y = p.y(), z = p.z();
    for (Member const& m : members_) {
      if (m.sphere) {
        double const dx = m.a - x, dy = m.b - y, dz = m.c - z;
        if (dx * dx + dy * dy + dz * dz <= m.d) return true;
      } else if (m.a <= x && x <= m.b && m.c <= y && y <= m.d && m.e <= z && z <= m.f) {
        return true;
      }
    }
    return false;
  }

 private:
  /// A sphere (a, b, c the centre, d the threshold of its radius) or a box (a, b the x
  /// bounds, c, d the y bounds, e, f the z bounds).
  struct Member {
    bool sphere;
    double a, b, c, d, e, f;
  };

  bool add(Solid const& solid);

  std::vector<Member> members_;
};

}  // namespace structmath::detail
