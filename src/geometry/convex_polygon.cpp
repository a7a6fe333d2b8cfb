// SPDX-License-Identifier: MIT
// ConvexPolygon: validation, area, centroid, containment and clipping by a plane.
#include "structmath/geometry/convex_polygon.hpp"

#include <cmath>
#include <stdexcept>
#include <utility>

#include "structmath/geometry/geometry_functions.hpp"
#include "structmath/geometry/point2d.hpp"

namespace structmath {

namespace {

constexpr double two_pi = 6.283185307179586;

std::vector<Point2d> local_coordinates(Plane const& plane, std::vector<Point> const& points) {
  std::vector<Point2d> local;
  local.reserve(points.size());
  for (Point const& p : points) {
    Point const q = plane.global_to_local_coord(p);
    local.emplace_back(q.x(), q.y());
  }
  return local;
}

// Twice the signed area by the shoelace formula: positive when the boundary runs
// anticlockwise about the plane normal.
double twice_signed_area(std::vector<Point2d> const& p) {
  double sum = 0.0;
  for (std::size_t i = 0; i < p.size(); ++i) sum += p[i].cross(p[(i + 1) % p.size()]);
  return sum;
}

double boundary_length(std::vector<Point> const& v) {
  double sum = 0.0;
  for (std::size_t i = 0; i < v.size(); ++i) sum += distance(v[i], v[(i + 1) % v.size()]);
  return sum;
}

bool encloses_area(std::vector<Point2d> const& local, std::vector<Point> const& v,
                   double tolerance) {
  return std::fabs(twice_signed_area(local)) > tolerance * boundary_length(v);
}

}  // namespace

ConvexPolygon::ConvexPolygon(Plane const& plane, std::vector<Point> vertices, double tolerance)
    : plane_(plane), vertices_(std::move(vertices)) {
  if (vertices_.empty()) return;
  if (vertices_.size() < 3) {
    throw std::invalid_argument("ConvexPolygon: a polygon needs at least three vertices");
  }
  for (Point const& v : vertices_) {
    if (plane_.distance(v) > tolerance) {
      throw std::invalid_argument("ConvexPolygon: a vertex does not lie in the plane");
    }
  }
  std::vector<Point2d> const all = local_coordinates(plane_, vertices_);
  double const orientation = twice_signed_area(all) >= 0.0 ? 1.0 : -1.0;
  // Repeated vertices make no edge: leave them out of the turns.
  std::vector<Point2d> local;
  for (Point2d const& p : all) {
    if (local.empty() || !equals(local.back(), p, tolerance)) local.push_back(p);
  }
  while (local.size() > 1 && equals(local.back(), local.front(), tolerance)) local.pop_back();
  // Every turn must go the same way (a turn sideways by less than the tolerance counts
  // as straight), and the turns must add up to one revolution.
  double total_turn = 0.0;
  std::size_t const n = local.size();
  bool convex = local.size() >= 3 && encloses_area(all, vertices_, tolerance);
  for (std::size_t i = 0; convex && i < n; ++i) {
    Point2d const e1 = local[(i + 1) % n] - local[i];
    Point2d const e2 = local[(i + 2) % n] - local[(i + 1) % n];
    double const c = orientation * e1.cross(e2);
    if (c < -tolerance * e1.length() * e2.length()) convex = false;
    total_turn += std::atan2(c, e1.dot(e2));
  }
  if (!convex || std::fabs(total_turn - two_pi) > 1e-6) {
    throw std::invalid_argument("ConvexPolygon: the vertices do not form a convex polygon");
  }
}

ConvexPolygon::ConvexPolygon(Trusted, Plane const& plane, std::vector<Point> vertices)
    : plane_(plane), vertices_(std::move(vertices)) {}

double ConvexPolygon::area() const {
  return 0.5 * std::fabs(twice_signed_area(local_coordinates(plane_, vertices_)));
}

Point ConvexPolygon::centroid() const {
  if (vertices_.empty()) throw std::runtime_error("ConvexPolygon::centroid(): empty polygon");
  std::vector<Point2d> const p = local_coordinates(plane_, vertices_);
  // Triangles fanned from the first vertex, weighted by their signed areas; measured
  // from that vertex to keep the sums small.
  Point2d const origin = p[0];
  Point2d weighted;
  double total = 0.0;
  for (std::size_t i = 1; i + 1 < p.size(); ++i) {
    Point2d const a = p[i] - origin;
    Point2d const b = p[i + 1] - origin;
    double const w = a.cross(b);
    weighted += w * (a + b) / 3.0;
    total += w;
  }
  Point2d const c = origin + weighted / total;
  return plane_.local_to_global_coord(Point(c.x(), c.y(), 0.0));
}

double ConvexPolygon::perimeter() const { return boundary_length(vertices_); }

bool ConvexPolygon::contains(Point const& p, double tolerance) const {
  if (vertices_.empty() || plane_.distance(p) > tolerance) return false;
  std::vector<Point2d> const local = local_coordinates(plane_, vertices_);
  double const orientation = twice_signed_area(local) >= 0.0 ? 1.0 : -1.0;
  Point const q3 = plane_.global_to_local_coord(p);
  Point2d const q(q3.x(), q3.y());
  std::size_t const n = local.size();
  for (std::size_t i = 0; i < n; ++i) {
    Point2d const edge = local[(i + 1) % n] - local[i];
    double const length = edge.length();
    if (length == 0.0) continue;
    // Signed distance of q from the edge's line, positive inside.
    if (orientation * edge.cross(q - local[i]) / length < -tolerance) return false;
  }
  return true;
}

ConvexPolygon ConvexPolygon::clip(Plane const& cutter, HalfSpace keep, double tolerance) const {
  // Height above the cutter towards the kept side.
  auto height = [&](Point const& x) {
    double const s = cutter.signed_distance(x);
    return keep == HalfSpace::along_normal ? -s : s;
  };
  std::vector<Point> out;
  out.reserve(vertices_.size() + 1);
  std::size_t const n = vertices_.size();
  for (std::size_t i = 0; i < n; ++i) {
    Point const& p = vertices_[i];
    Point const& q = vertices_[(i + 1) % n];
    double const hp = height(p);
    double const hq = height(q);
    if (hp >= -tolerance) out.push_back(p);
    if ((hp > tolerance && hq < -tolerance) || (hp < -tolerance && hq > tolerance)) {
      out.push_back(p + (hp / (hp - hq)) * (q - p));
    }
  }
  // Merge vertices that fell together, including the last with the first.
  std::vector<Point> merged;
  merged.reserve(out.size());
  for (Point const& p : out) {
    if (merged.empty() || !equals(merged.back(), p, tolerance)) merged.push_back(p);
  }
  while (merged.size() > 1 && equals(merged.back(), merged.front(), tolerance)) merged.pop_back();
  if (merged.size() < 3 || !encloses_area(local_coordinates(plane_, merged), merged, tolerance)) {
    merged.clear();
  }
  return ConvexPolygon(Trusted{}, plane_, std::move(merged));
}

}  // namespace structmath
