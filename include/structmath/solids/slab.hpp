// SPDX-License-Identifier: MIT
// Slab: the open layer of space within a given distance of a plane.
#pragma once

#include "structmath/export.hpp"
#include "structmath/geometry/plane.hpp"
#include "structmath/solids/solid.hpp"

namespace structmath {

/// The points whose distance from the plane is strictly less than the half-thickness,
/// on either side. Unlike boxes and spheres a slab excludes its surface.
class STRUCTMATH_API Slab : public Solid {
 public:
  /// Stores a copy of the plane and the half-thickness as given.
  Slab(Plane const& plane, double half_thickness) noexcept
      : plane_(plane), half_thickness_(half_thickness) {}
  ~Slab() override;

  Plane const& plane() const noexcept { return plane_; }
  double half_thickness() const noexcept { return half_thickness_; }

  /// Always the box from (-1e10, -1e10, -1e10) to (1e10, 1e10, 1e10): a slab is
  /// unbounded, whatever its plane.
  THandle<Box> bounding_box() const override;
  /// plane().distance(p) < half_thickness(), strictly.
  bool contains(Point const& p) const override;
  /// Writes the plane only: the half-thickness is not persisted (kept: stored slabs
  /// carry only their plane, and readers supply their own thickness).
  void write(Archive& archive) const override;
  /// Reads the plane only; the half-thickness stays what it was.
  void read(Archive& archive) override;

 private:
  Plane plane_;
  double half_thickness_;
};

}  // namespace structmath
