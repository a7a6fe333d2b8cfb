// SPDX-License-Identifier: MIT
// Free functions on points and point sets: distances, angles, torsions, centroids, RMS
// deviations, internal coordinates, collinearity and alignment frames.
#pragma once

#include <iterator>
#include <stdexcept>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/geometry/transformation.hpp"
#include "structmath/numeric/angle.hpp"
#include "structmath/numeric/matrix.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/tolerance.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

// Throughout, a vector counts as zero when its length is at most the tolerance, and
// normalising one throws std::runtime_error("Cannot normalize a zero length Vector").
//
// The functions over two point lists walk the first list and read the second (and the
// weights) at the same index. They throw std::invalid_argument when the second list or
// the weights are shorter than the first, rather than read past the end.

/// Euclidean distance.
STRUCTMATH_API double distance(Point const& a, Point const& b) noexcept;
/// Squared Euclidean distance.
STRUCTMATH_API double sqrdistance(Point const& a, Point const& b) noexcept;

/// The angle between two directions, in [0, pi]. Defined for Vector<double, 3> only.
/// A dot product of the unit vectors rounded beyond +-1 is clamped to 0 or pi.
template <typename T>
Angle const angle(T const&, T const&, double = default_tolerance) {
  static_assert(sizeof(T) == 0, "angle(u, v, tolerance) is defined for Vector<double, 3>");
  return Angle();
}
template <>
STRUCTMATH_API Angle const angle<Vector3D>(Vector3D const& u, Vector3D const& v, double tolerance);

/// The angle a-b-c at the vertex b, in [0, pi].
STRUCTMATH_API Angle angle(Point const& a, Point const& b, Point const& c,
                           double tolerance = default_tolerance);

/// The signed torsion, in [-pi, pi], about bond2 of the consecutive bonds bond1, bond2,
/// bond3: positive when the normals (bond1 x bond2) and (bond2 x bond3) turn
/// right-handedly about bond2. Collinear consecutive bonds throw (zero normal).
STRUCTMATH_API Angle torsion_angle(Vector3D const& bond1, Vector3D const& bond2,
                                   Vector3D const& bond3, double tolerance = default_tolerance);
/// The torsion a-b-c-d, from the bonds b - a, c - b, d - c.
STRUCTMATH_API Angle torsion_angle(Point const& a, Point const& b, Point const& c, Point const& d,
                                   double tolerance = default_tolerance);

/// Whether a torsion over these bonds is well defined: false when either consecutive
/// pair has a cross product of length at most the tolerance, or either pair's angle lies
/// outside [pi - max_angle, max_angle]; also false when a bond is itself no longer than
/// the tolerance (kept: such a bond has no direction to measure an angle from, and
/// would throw). Never throws for degenerate bonds.
STRUCTMATH_API bool valid_torsion(Vector3D const& bond1, Vector3D const& bond2,
                                  Vector3D const& bond3, Angle const& max_angle,
                                  double tolerance = default_tolerance);
/// As above for the bonds b - a, c - b, d - c.
STRUCTMATH_API bool valid_torsion(Point const& a, Point const& b, Point const& c, Point const& d,
                                  Angle const& max_angle, double tolerance = default_tolerance);

/// The mean of a range of points, summed in order from the origin; (0, 0, 0) for an
/// empty range.
template <typename Iterator>
Point centroid(Iterator first, Iterator last) {
  Point sum(0.0, 0.0, 0.0);
  unsigned int count = 0;
  for (; first != last; ++first) {
    Point const& p = *first;
    sum += p.vector();
    ++count;
  }
  if (count != 0) {
    double const n = static_cast<double>(count);
    sum = Point(sum.x() / n, sum.y() / n, sum.z() / n);
  }
  return sum;
}
/// The mean of the points; (0, 0, 0) for an empty list.
STRUCTMATH_API Point centroid(std::vector<Point> const& points);
STRUCTMATH_API Point centroid(Point const& a, Point const& b) noexcept;
STRUCTMATH_API Point centroid(Point const& a, Point const& b, Point const& c) noexcept;

/// Index of the point nearest p; the first of equally near points wins. Throws
/// std::invalid_argument("closest_point(): empty point list") for an empty list.
STRUCTMATH_API unsigned int closest_point(std::vector<Point> const& points, Point const& p);
/// Distance from p to the nearest point; throws std::invalid_argument
/// ("closest_distance(): empty point list") for an empty list.
STRUCTMATH_API double closest_distance(std::vector<Point> const& points, Point const& p);

/// The largest distance between corresponding points (0 for empty lists).
STRUCTMATH_API double max_distance(std::vector<Point> const& a, std::vector<Point> const& b);
/// sqrt(sum |a[i] - b[i]|^2 / n), n = a.size(); NaN for empty lists.
STRUCTMATH_API double rms_distance(std::vector<Point> const& a, std::vector<Point> const& b);
/// As rms_distance, but returns -1.0 as soon as the running sum of squares exceeds
/// n * limit^2 (the limit squared first), so a comparison that cannot be within the
/// limit stops early; a sum equal to the bound is within it.
STRUCTMATH_API double rms_distance(std::vector<Point> const& a, std::vector<Point> const& b,
                                   double limit);
/// sqrt(sum w[i] |a[i] - b[i]|^2 / n): divided by the number of points n, not by the sum
/// of the weights (kept: existing weighting schemes are scaled for it).
STRUCTMATH_API double weighted_rms_distance(std::vector<Point> const& a,
                                            std::vector<Point> const& b,
                                            std::vector<double> const& weights);
/// As weighted_rms_distance with the early exit of rms_distance(a, b, limit): -1.0 as
/// soon as the weighted running sum exceeds n * limit^2.
STRUCTMATH_API double weighted_rms_distance(std::vector<Point> const& a,
                                            std::vector<Point> const& b,
                                            std::vector<double> const& weights, double limit);

/// The weighted second-moment matrix sum w[i] p[i] p[i]^T of the raw coordinates (no
/// centring and no |p|^2 term: centre the points first for an inertia tensor about the
/// centroid), in a newly allocated matrix. Throws std::invalid_argument when there are
/// fewer weights than points.
STRUCTMATH_API THandle<Matrix3D> weighted_inertia_tensor(std::vector<Point> const& points,
                                                         std::vector<double> const& weights);

/// The point X with |X - a| = dist, angle X-a-b = theta and torsion X-a-b-c = tau (the
/// Z-matrix construction). Coincident a, b or b, c throw "Cannot normalize a zero length
/// Vector". The reference plane's normal is (b - c) x (a - b) over the sine of their
/// angle, sqrt(1 - d^2) with d the dot product of their unit vectors, however small the
/// sine. Only when a, b and c are exactly collinear (|d| >= 1) has the torsion no
/// reference plane; X is then placed at the right distance and angle with the torsion
/// measured from the plane spanned by a - b and (a - b).perp(), so the result is finite
/// and reproducible.
STRUCTMATH_API Point internal_to_orthogonal(Point const& a, double dist, Point const& b,
                                            Angle const& theta, Point const& c, Angle const& tau);

/// Whether three points lie on one line: true when any two are equal within the
/// tolerance (per coordinate), else when the angles at b, at c and the remaining one are
/// each within angle_tolerance of 0 or pi. Never throws.
STRUCTMATH_API bool collinear(Point const& a, Point const& b, Point const& c,
                              Angle const& angle_tolerance, double tolerance);

/// Whether a range of points lies on one line: the line through the first point and the
/// first later point distinct from it (within the tolerance), every remaining point
/// tested with the three-point form. Throws std::runtime_error("Cannot test less than
/// three points for collinearity") when the range holds fewer than three points.
template <typename Iterator>
bool collinear(Iterator first, Iterator last, Angle const& angle_tolerance, double tolerance) {
  if (std::distance(first, last) < 3) {
    throw std::runtime_error("Cannot test less than three points for collinearity");
  }
  Point const p1 = *first;
  Iterator it = std::next(first);
  Point p2 = *it;
  ++it;
  while (equals(p1, p2, tolerance) && it != last) {
    p2 = *it;
    ++it;
  }
  for (; it != last; ++it) {
    if (!collinear(p1, p2, *it, angle_tolerance, tolerance)) return false;
  }
  return true;
}

/// The rotation (zero translation) taking u onto the positive z axis and v into the zx
/// plane with a positive x component. Throws "Cannot normalize a zero length Vector"
/// when u is zero or v is parallel to u (within 1e-7).
STRUCTMATH_API Transformation align_with_zx(Vector3D const& u, Vector3D const& v);

/// The rigid transformation T with T * p1 == q1, T * p2 on the ray from q1 through q2,
/// and T * p3 in the plane q1 q2 q3 on the side of q3. Each triple must be
/// non-collinear (else "Cannot normalize a zero length Vector").
STRUCTMATH_API Transformation align_three_points(Point const& p1, Point const& p2, Point const& p3,
                                                 Point const& q1, Point const& q2, Point const& q3);

/// The rotation matrix R that turns u1 onto the direction of t1 and then turns about t1
/// so that R u2 lies in the half plane of t1 and t2. A zero vector throws "Cannot
/// normalize a zero length Vector" (tolerance 1e-7); when u2 is parallel to u1 or t2 to t1 the
/// second turn is undefined and R is the first turn alone.
STRUCTMATH_API Matrix3D align_two_vectors(Vector3D const& u1, Vector3D const& u2,
                                          Vector3D const& t1, Vector3D const& t2);

}  // namespace structmath
