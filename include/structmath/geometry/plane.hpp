// SPDX-License-Identifier: MIT
// Plane: an infinite plane in Hessian normal form with a local in-plane frame.
#pragma once

#include <iosfwd>
#include <vector>

#include "structmath/export.hpp"
#include "structmath/numeric/angle.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

class Archive;

/// The plane n.x = d with unit normal n, and in-plane unit axes v1, v2 such that
/// (v1, v2, n) is a right-handed orthonormal frame with v1 = v2 x n.
///
/// The sign of n is whatever the constructor produced; nothing makes it canonical, so
/// (n, d) and (-n, -d) describe the same points (equals() treats them as equal,
/// operator== does not). The axes are always derived from n by calculate_vectors().
/// Every normalisation throws std::runtime_error("Cannot normalize a zero length
/// Vector") for a vector of length within 1e-7 of zero.
class STRUCTMATH_API Plane {
 public:
  /// Normal (1, 0, 0), distance 0.
  Plane();
  /// Normal n / |n|; d is kept as given, not divided by |n|, so Plane((0, 0, 2), 5) is
  /// the plane z = 5 (kept: callers pass the distance along the unit normal).
  Plane(Vector3D const& n, double d);
  /// The plane through p with normal n / |n|.
  Plane(Vector3D const& n, Point const& p);
  /// Normal (a x b) normalised, distance d as given.
  Plane(Vector3D const& a, Vector3D const& b, double d);
  /// The plane through p spanned by a and b: normal (a x b) normalised.
  Plane(Vector3D const& a, Vector3D const& b, Point const& p);
  /// The plane through three points, normal ((p2 - p1) x (p3 - p1)) normalised.
  /// Collinear points fail only through the zero normal.
  Plane(Point const& p1, Point const& p2, Point const& p3);
  /// The least-squares plane through the points: through their centroid, with the
  /// principal axis of largest moment of inertia (least spread) as normal. Throws
  /// std::invalid_argument("Cannot construct a Plane from less than three points") and
  /// ("Cannot construct a Plane from collinear points"), collinearity being tested with
  /// 0.1 degree and 1e-7. Costs one pass over the points and a 3x3 Jacobi diagonalisation.
  explicit Plane(std::vector<Point> const& points);

  Vector3D const& normal() const noexcept { return normal_; }
  /// d, the signed distance of the plane from the origin along the normal.
  double distance() const noexcept { return distance_; }
  Vector3D const& v1() const noexcept { return v1_; }
  Vector3D const& v2() const noexcept { return v2_; }

  /// d - n.p: positive on the side the normal points away from, negative on the side
  /// it points to (kept: the sign convention of every caller).
  double signed_distance(Point const& p) const noexcept;
  double distance(Point const& p) const noexcept;
  /// For parallel planes (normals' dot product within 1e-6 of 1) d_other - d; for
  /// antiparallel ones (within 1e-6 of -1) -d_other - d; for intersecting planes 0.
  double signed_distance(Plane const& other) const noexcept;
  double distance(Plane const& other) const noexcept;
  /// The angle between the planes, folded into [0, pi/2].
  Angle angle(Plane const& other) const;
  /// The angle between v and the plane, in [0, pi/2]. A vector exactly along the normal
  /// (dot product reaching +-1) gives 0, not pi/2 (kept: callers test for it). A zero v
  /// throws.
  Angle angle(Vector3D const& v) const;
  /// The foot of the perpendicular from p.
  Point projection(Point const& p) const noexcept;
  /// Local (x, y, z) in the frame with origin d n and axes v1, v2, n, to global.
  Point local_to_global_coord(Point const& q) const noexcept;
  /// Global to local; the inverse of local_to_global_coord. The local z is
  /// -signed_distance(p).
  Point global_to_local_coord(Point const& p) const noexcept;

  /// Three lines: "normal: " with n and ", distance: " d, then "    v1: " and
  /// "    v2: " with the axes; components at width 8, fixed, precision 3, d without a
  /// width; each line ended by std::endl. The stream keeps the fixed and precision state.
  void print(std::ostream& out) const;

  /// Recomputes v1 and v2 from the normal: v2 = (1, 0, 0) x n, or (0, 1, 0) x n when n
  /// is along x, normalised; v1 = v2 x n, normalised.
  void calculate_vectors();

  /// Normal, distance, v1, v2.
  void write(Archive& archive) const;
  void read(Archive& archive);

  /// Exact equality of normal, distance, v1 and v2, in that order.
  bool operator==(Plane const& other) const noexcept;
  bool operator!=(Plane const& other) const noexcept { return !(*this == other); }

  /// The common point of three planes, from Cramer's rule. Returns false, leaving point
  /// untouched, when |n1 . (n2 x n3)| < 1e-9.
  static bool plane_intersection(Plane const& p1, Plane const& p2, Plane const& p3, Point& point);
  /// The line common to two planes: a unit direction n1 x n2 and its point nearest the
  /// origin. Returns false, leaving both untouched, when |n1 x n2| < 1e-9.
  static bool plane_intersection(Plane const& p1, Plane const& p2, Vector3D& direction,
                                 Point& point);

 private:
  Vector3D normal_;
  double distance_ = 0.0;
  Vector3D v1_;
  Vector3D v2_;
};

/// True when the normals agree within the tolerance (per component) and the distances
/// within it, or when a equals the flipped form (-n, -d) of b likewise. The in-plane
/// axes are not compared.
STRUCTMATH_API bool equals(Plane const& a, Plane const& b, double tolerance) noexcept;

}  // namespace structmath
