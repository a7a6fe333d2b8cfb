// SPDX-License-Identifier: MIT
// ConvexPolygon: a convex polygon with 3-D vertices lying in a Plane, and its clipping.
#pragma once

#include <cstddef>
#include <vector>

#include "structmath/export.hpp"
#include "structmath/geometry/plane.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/tolerance.hpp"

namespace structmath {

/// Which side of a cutting plane to keep. The normal of a Plane points to the side where
/// its signed_distance() is negative.
enum class HalfSpace {
  along_normal,   ///< n.x >= d: the side the normal points to
  against_normal  ///< n.x <= d: the other side
};

/// A convex polygon lying in a plane, its vertices 3-D points in boundary order (either
/// sense). A polygon is either empty or has at least three vertices; clipping may yield
/// the empty polygon. Measures are computed in the plane's local frame.
class STRUCTMATH_API ConvexPolygon {
 public:
  /// The empty polygon, in the default plane.
  ConvexPolygon() = default;
  /// Checks and keeps the vertices as given. Throws std::invalid_argument with
  /// - "ConvexPolygon: a polygon needs at least three vertices" for one or two vertices
  ///   (none gives the empty polygon);
  /// - "ConvexPolygon: a vertex does not lie in the plane" for a vertex further than the
  ///   tolerance from the plane;
  /// - "ConvexPolygon: the vertices do not form a convex polygon" when the boundary turns
  ///   both ways, winds more than once, or encloses no area (twice the area at most the
  ///   tolerance times the perimeter). Collinear and repeated vertices are accepted.
  ConvexPolygon(Plane const& plane, std::vector<Point> vertices,
                double tolerance = default_tolerance);

  Plane const& plane() const noexcept { return plane_; }
  std::vector<Point> const& vertices() const noexcept { return vertices_; }
  std::size_t size() const noexcept { return vertices_.size(); }
  bool empty() const noexcept { return vertices_.empty(); }

  /// The enclosed area; 0 for the empty polygon.
  double area() const;
  /// The centre of mass of the enclosed area (not the mean of the vertices), in the
  /// plane. Throws std::runtime_error("ConvexPolygon::centroid(): empty polygon").
  Point centroid() const;
  /// The length of the boundary; 0 for the empty polygon.
  double perimeter() const;
  /// Whether p lies within the tolerance of the plane and inside the polygon or within
  /// the tolerance of its boundary. The empty polygon contains nothing.
  bool contains(Point const& p, double tolerance = default_tolerance) const;

  /// The part of this polygon on the kept side of the cutter, as a new polygon in the
  /// same plane: one stage of Sutherland-Hodgman re-entrant clipping (Sutherland and
  /// Hodgman, Commun. ACM 17(1), 1974), the crossing points found by linear
  /// interpolation of the signed distances. Vertices within the tolerance of
  /// the cutter count as on it and are kept; consecutive vertices within the tolerance of
  /// each other are merged, and a remainder of fewer than three vertices or no area is
  /// the empty polygon. A cutter missing the polygon returns it whole or empty. O(n).
  ConvexPolygon clip(Plane const& cutter, HalfSpace keep,
                     double tolerance = default_tolerance) const;

 private:
  struct Trusted {};
  ConvexPolygon(Trusted, Plane const& plane, std::vector<Point> vertices);

  Plane plane_;
  std::vector<Point> vertices_;
};

}  // namespace structmath
