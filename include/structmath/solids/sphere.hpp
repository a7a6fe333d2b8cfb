// SPDX-License-Identifier: MIT
// Sphere: the solid ball of a given radius about a centre.
#pragma once

#include <cmath>

#include "structmath/export.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"
#include "structmath/solids/solid.hpp"

namespace structmath {

/// The points within radius of the centre, surface included. Not printed or persisted.
class STRUCTMATH_API Sphere : public Solid {
 public:
  /// Stores both values as given; a negative radius contains no point.
  Sphere(Point const& centre, double radius) noexcept : centre_(centre), radius_(radius) {}
  ~Sphere() override;

  Point const& centre() const noexcept { return centre_; }
  double radius() const noexcept { return radius_; }

  /// The box centre +- (r, r, r), well formed (side 2|r|) even for a negative radius.
  THandle<Box> bounding_box() const override;
  /// distance(centre, p) <= radius; a NaN coordinate is outside. Written out here, as
  /// distance() forms it, so that callers that know the type test without a call.
  bool contains(Point const& p) const override {
    Vector3D const d = centre_ - p;
    return std::sqrt(d * d) <= radius_;
  }

 private:
  Point centre_;
  double radius_;
};

}  // namespace structmath
