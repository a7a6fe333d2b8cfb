// SPDX-License-Identifier: MIT
// Free functions on points and point sets.
#include "structmath/geometry/geometry_functions.hpp"

#include <cmath>
#include <stdexcept>
#include <string>

#include "structmath/geometry/quaternion.hpp"

namespace structmath {

namespace {

constexpr double pi = 180.0 * 0.017453292519943295;

// The squared distance, written out so the hot loops below inline it.
inline double squared(Point const& a, Point const& b) noexcept {
  double const dx = a[0] - b[0];
  double const dy = a[1] - b[1];
  double const dz = a[2] - b[2];
  return dx * dx + dy * dy + dz * dz;
}

// Unit vector along v, or the zero-length failure.
inline Vector3D unit(Vector3D const& v, double tolerance) {
  double const len = std::sqrt(v * v);
  if (equals(len, 0.0, tolerance)) {
    throw std::runtime_error("Cannot normalize a zero length Vector");
  }
  return Vector3D(v[0] / len, v[1] / len, v[2] / len);
}

void check_lengths(char const* function, std::size_t first, std::size_t second, char const* what) {
  if (second < first) {
    throw std::invalid_argument(std::string(function) + ": fewer " + what + " than points");
  }
}

// Within the angular tolerance of 0 or of pi.
bool linear(Angle const& theta, Angle const& angle_tolerance) {
  double const d = std::fabs(minimum_difference(Angle(0.0), theta).radians());
  if (d < 90.0 * 0.017453292519943295) return Angle(d) <= angle_tolerance;
  return Angle(pi - d) <= angle_tolerance;
}

}  // namespace

double distance(Point const& a, Point const& b) noexcept {
  Vector3D const d = a - b;
  return std::sqrt(d * d);
}

double sqrdistance(Point const& a, Point const& b) noexcept {
  Vector3D const d = a - b;
  return d * d;
}

template <>
Angle const angle<Vector3D>(Vector3D const& u, Vector3D const& v, double tolerance) {
  Vector3D const a = unit(u, tolerance);
  Vector3D const b = unit(v, tolerance);
  double const c = a * b;
  // Rounding can carry the dot product of unit vectors just past +-1.
  if (c > 1.0) return Angle(0.0 * 0.017453292519943295);
  if (c < -1.0) return Angle(pi);
  return Angle::acos(c);
}

Angle angle(Point const& a, Point const& b, Point const& c, double tolerance) {
  return angle<Vector3D>(a - b, c - b, tolerance);
}

Angle torsion_angle(Vector3D const& bond1, Vector3D const& bond2, Vector3D const& bond3,
                    double tolerance) {
  Vector3D const normal1 = unit(bond1.cross(bond2), tolerance);
  Vector3D const normal2 = unit(bond2.cross(bond3), tolerance);
  Vector3D const m = normal1.cross(normal2);
  double c = normal1 * normal2;
  if (c > 1.0) c = 1.0;
  if (c < -1.0) c = -1.0;
  // c is clamped, so acos needs no range check.
  double const result = std::acos(c);
  return Angle((bond2 * m < 0.0) ? -result : result);
}

Angle torsion_angle(Point const& a, Point const& b, Point const& c, Point const& d,
                    double tolerance) {
  return torsion_angle(b - a, c - b, d - c, tolerance);
}

bool valid_torsion(Vector3D const& bond1, Vector3D const& bond2, Vector3D const& bond3,
                   Angle const& max_angle, double tolerance) {
  if (equals(bond1.cross(bond2).length(), 0.0, tolerance)) return false;
  if (equals(bond2.cross(bond3).length(), 0.0, tolerance)) return false;
  // A bond shorter than the tolerance beside a long one can pass the tests above but has
  // no direction to measure an angle from.
  if (equals(bond1.length(), 0.0, tolerance) || equals(bond2.length(), 0.0, tolerance) ||
      equals(bond3.length(), 0.0, tolerance)) {
    return false;
  }
  if (!(angle<Vector3D>(bond1, bond2, tolerance) <= max_angle)) return false;
  if (!(angle<Vector3D>(bond2, bond3, tolerance) <= max_angle)) return false;
  if (!(angle<Vector3D>(bond1, -bond2, tolerance) <= max_angle)) return false;
  if (!(angle<Vector3D>(-bond2, bond3, tolerance) <= max_angle)) return false;
  return true;
}

bool valid_torsion(Point const& a, Point const& b, Point const& c, Point const& d,
                   Angle const& max_angle, double tolerance) {
  return valid_torsion(b - a, c - b, d - c, max_angle, tolerance);
}

Point centroid(std::vector<Point> const& points) { return centroid(points.begin(), points.end()); }

Point centroid(Point const& a, Point const& b) noexcept {
  Vector3D const s = a.vector() + b.vector();
  return Point(s.x() / 2.0, s.y() / 2.0, s.z() / 2.0);
}

Point centroid(Point const& a, Point const& b, Point const& c) noexcept {
  Vector3D const s = a.vector() + b.vector() + c.vector();
  return Point(s.x() / 3.0, s.y() / 3.0, s.z() / 3.0);
}

unsigned int closest_point(std::vector<Point> const& points, Point const& p) {
  if (points.empty()) throw std::invalid_argument("closest_point(): empty point list");
  unsigned int best = 0;
  double best_distance = distance(points[0], p);
  for (std::size_t i = 1; i < points.size(); ++i) {
    double const d = distance(points[i], p);
    if (d < best_distance) {
      best_distance = d;
      best = static_cast<unsigned int>(i);
    }
  }
  return best;
}

double closest_distance(std::vector<Point> const& points, Point const& p) {
  if (points.empty()) throw std::invalid_argument("closest_distance(): empty point list");
  return distance(points[closest_point(points, p)], p);
}

double max_distance(std::vector<Point> const& a, std::vector<Point> const& b) {
  check_lengths("max_distance()", a.size(), b.size(), "points in the second list");
  double largest = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    double const d = squared(a[i], b[i]);
    if (d > largest) largest = d;
  }
  return std::sqrt(largest);
}

double rms_distance(std::vector<Point> const& a, std::vector<Point> const& b) {
  check_lengths("rms_distance()", a.size(), b.size(), "points in the second list");
  double sum = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += squared(a[i], b[i]);
  return std::sqrt(sum / static_cast<double>(a.size()));
}

double rms_distance(std::vector<Point> const& a, std::vector<Point> const& b, double limit) {
  check_lengths("rms_distance()", a.size(), b.size(), "points in the second list");
  double const n = static_cast<double>(a.size());
  double const bound = n * (limit * limit);  // the square of the limit first
  double sum = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    sum += squared(a[i], b[i]);
    if (bound < sum) return -1.0;
  }
  return std::sqrt(sum / n);
}

double weighted_rms_distance(std::vector<Point> const& a, std::vector<Point> const& b,
                             std::vector<double> const& weights) {
  check_lengths("weighted_rms_distance()", a.size(), b.size(), "points in the second list");
  check_lengths("weighted_rms_distance()", a.size(), weights.size(), "weights");
  double sum = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += weights[i] * squared(a[i], b[i]);
  return std::sqrt(sum / static_cast<double>(a.size()));
}

double weighted_rms_distance(std::vector<Point> const& a, std::vector<Point> const& b,
                             std::vector<double> const& weights, double limit) {
  check_lengths("weighted_rms_distance()", a.size(), b.size(), "points in the second list");
  check_lengths("weighted_rms_distance()", a.size(), weights.size(), "weights");
  double const n = static_cast<double>(a.size());
  double const bound = n * (limit * limit);  // the square of the limit first
  double sum = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    sum += weights[i] * squared(a[i], b[i]);
    if (bound < sum) return -1.0;
  }
  return std::sqrt(sum / n);
}

THandle<Matrix3D> weighted_inertia_tensor(std::vector<Point> const& points,
                                          std::vector<double> const& weights) {
  check_lengths("weighted_inertia_tensor()", points.size(), weights.size(), "weights");
  THandle<Matrix3D> tensor = make_handle<Matrix3D>(0.0);
  Matrix3D& m = *tensor;
  for (std::size_t i = 0; i < points.size(); ++i) {
    Point const& p = points[i];
    for (unsigned int r = 0; r < 3; ++r) {
      for (unsigned int c = 0; c < 3; ++c) m(r + 1, c + 1) += p[r] * p[c] * weights[i];
    }
  }
  return tensor;
}

Point internal_to_orthogonal(Point const& a, double dist, Point const& b, Angle const& theta,
                             Point const& c, Angle const& tau) {
  double const sin_theta = sin(theta);
  double const cos_theta = cos(theta);
  double const sin_tau = sin(tau);
  double const cos_tau = cos(tau);

  Vector3D const bc = unit(b - c, 1e-07);
  Vector3D const ab = unit(a - b, 1e-07);

  // The normal of the plane a, b, c, oriented so that the torsion X-a-b-c comes out as
  // tau; the in-plane axis points from the line a-b towards c.
  double const d = bc * ab;
  Vector3D normal;
  if (std::fabs(d) < 1.0) {
    normal = bc.cross(ab) / std::sqrt(1.0 - d * d);
  } else {
    // Collinear reference points: no plane to measure the torsion from; use a fixed
    // perpendicular of a - b so the result stays finite.
    normal = unit(ab.perp(), 1e-07);
  }
  Vector3D const in_plane = normal.cross(ab);

  Vector3D const offset =
      -cos_theta * ab + sin_theta * cos_tau * in_plane + sin_theta * sin_tau * normal;
  return a + dist * offset;
}

bool collinear(Point const& a, Point const& b, Point const& c, Angle const& angle_tolerance,
               double tolerance) {
  if (equals(a, b, tolerance) || equals(a, c, tolerance) || equals(b, c, tolerance)) return true;
  Angle const theta1 = angle(a, b, c, tolerance);
  if (!linear(theta1, angle_tolerance)) return false;
  Angle const theta2 = angle(b, c, a, tolerance);
  if (!linear(theta2, angle_tolerance)) return false;
  Angle const theta3 = Angle(pi) - theta1 - theta2;
  return linear(theta3, angle_tolerance);
}

Transformation align_with_zx(Vector3D const& u, Vector3D const& v) {
  // Columns of the frame: x from the part of v perpendicular to u, z along u, y = z x x.
  Vector3D const ez = unit(u, 1e-07);
  Vector3D const ey = unit(ez.cross(v), 1e-07);
  Vector3D const ex = ey.cross(ez);
  Transformation const frame(ex.x(), ey.x(), ez.x(), ex.y(), ey.y(), ez.y(), ex.z(), ey.z(), ez.z(),
                             0.0, 0.0, 0.0);
  return frame.inverse();
}

Transformation align_three_points(Point const& p1, Point const& p2, Point const& p3,
                                  Point const& q1, Point const& q2, Point const& q3) {
  Transformation const from = align_with_zx(p2 - p1, p3 - p1);
  Transformation const to = align_with_zx(q2 - q1, q3 - q1);
  Transformation const turn = to.inverse() * from;
  Point const moved = turn * p1;
  return Transformation(turn.rotation(), turn.translation() + (q1 - moved));
}

Matrix3D align_two_vectors(Vector3D const& u1, Vector3D const& u2, Vector3D const& t1,
                           Vector3D const& t2) {
  double const tolerance = 1e-07;
  Vector3D const a = unit(u1, tolerance);
  Vector3D const b = unit(t1, tolerance);

  // First turn: a onto b about their common normal; half a turn about any
  // perpendicular when they are opposite.
  Quaternion q;
  Vector3D axis = a.cross(b);
  double const c1 = a * b;
  if (axis.normalize_valid(tolerance)) {
    q = Quaternion(axis, Angle::acos(c1 > 1.0 ? 1.0 : (c1 < -1.0 ? -1.0 : c1)));
  } else if (c1 < 0.0) {
    q = Quaternion(a.perp(tolerance), Angle(pi));
  }

  // Second turn about b: the rotated u2 towards t2, both seen perpendicular to b.
  Vector3D s = q.rotate(unit(u2, tolerance));
  Vector3D t = unit(t2, tolerance);
  s.orthogonalize(b, tolerance);
  t.orthogonalize(b, tolerance);
  if (s.normalize_valid(tolerance) && t.normalize_valid(tolerance)) {
    s.normalize(tolerance);
    t.normalize(tolerance);
    double const c2 = s * t;
    Angle const turn = Angle::acos(c2 > 1.0 ? 1.0 : (c2 < -1.0 ? -1.0 : c2));
    Quaternion second(b, (s.cross(t) * b < 0.0) ? -turn : turn);
    second *= q;
    q = second;
  }
  return q.rotation_matrix();
}

}  // namespace structmath
