// SPDX-License-Identifier: MIT
// Ellipsoid: a centre and three perpendicular semi-axis vectors, with a validity check.
#pragma once

#include <iosfwd>

#include "structmath/export.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

/// An ellipsoid given by its centre and three mutually perpendicular semi-axis vectors,
/// each vector's direction an axis and its length the semi-axis length (a thermal-
/// displacement ellipsoid, for instance). A value holder: it is not a Solid.
class STRUCTMATH_API Ellipsoid {
 public:
  /// The unit sphere at the origin, axes along x, y and z.
  Ellipsoid() noexcept = default;
  /// Stores the four values, then runs sanity_check(), so an invalid ellipsoid is never
  /// constructed.
  Ellipsoid(Point const& centre, Vector3D const& a1, Vector3D const& a2, Vector3D const& a3);
  virtual ~Ellipsoid();
  Ellipsoid(Ellipsoid const&) = default;
  Ellipsoid& operator=(Ellipsoid const&) = default;

  /// Throws std::runtime_error at the first failure of, in this order:
  /// each semi-axis length not within 1e-7 of zero ("Ellipsoid semi_axisN length is
  /// suspicious: " followed by the length as to_string<double> writes it), then the dot
  /// products of axes 1-2, 1-3 and 2-3 within 1e-6 of zero ("Ellipsoid semi_axisM and
  /// semi_axisN are not perpendicular"). The perpendicularity bound is absolute on the
  /// raw dot product, so long axes must be perpendicular more precisely than short ones.
  void sanity_check() const;

  Point const& centre() const noexcept { return centre_; }
  Vector3D const& semi_axis1() const noexcept { return semi_axis1_; }
  Vector3D const& semi_axis2() const noexcept { return semi_axis2_; }
  Vector3D const& semi_axis3() const noexcept { return semi_axis3_; }

  /// "centre: " c ", semi-axis 1: " a1 ", semi-axis 2: " a2 ", semi-axis 3: " a3, each
  /// coordinate fixed, width 8, precision 3, without a line end. The stream's format is
  /// restored afterwards.
  void print(std::ostream& os) const;

  /// Exact equality of centre and semi-axes.
  bool operator==(Ellipsoid const& other) const noexcept;
  bool operator!=(Ellipsoid const& other) const noexcept { return !(*this == other); }

 private:
  Point centre_{0.0, 0.0, 0.0};
  Vector3D semi_axis1_{1.0, 0.0, 0.0};
  Vector3D semi_axis2_{0.0, 1.0, 0.0};
  Vector3D semi_axis3_{0.0, 0.0, 1.0};
};

/// Centre, then semi-axes 1, 2 and 3 by the vector equals at the tolerance; axes are
/// compared as stored, with no sign flips or reordering tried.
STRUCTMATH_API bool equals(Ellipsoid const& a, Ellipsoid const& b, double tolerance) noexcept;

}  // namespace structmath
