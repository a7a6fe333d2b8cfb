// SPDX-License-Identifier: MIT
// OverlayPoints: centring, correlation matrix, eigenvector rotation and candidate fits.
#include "structmath/superposition/overlay_points.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string>

#include "structmath/core/text_conversion.hpp"
#include "structmath/geometry/geometry_functions.hpp"
#include "structmath/numeric/linear_algebra.hpp"

#include "lanes.hpp"

namespace structmath {

namespace {

// Tolerance of the perpendicular completions of a planar or linear set.
constexpr double perp_tolerance = 1e-07;

std::vector<Point> const& non_empty(std::vector<Point> const& target) {
  if (target.empty()) {
    throw std::invalid_argument("No points to overlay in OverlayPoints::OverlayPoints");
  }
  return target;
}

Vector3D unit_perp(Vector3D const& v) {
  Vector3D p = v.perp(perp_tolerance);
  p.normalize(perp_tolerance);
  return p;
}

// A size as the unsigned int the size checks take, saturating rather than wrapping.
unsigned int count(std::size_t n) {
  return n > std::numeric_limits<unsigned int>::max() ? std::numeric_limits<unsigned int>::max()
                                                      : static_cast<unsigned int>(n);
}

}  // namespace

OverlayPoints::OverlayPoints(std::vector<Point> const& target, bool inversion_allowed)
    : translation_(0.0, 0.0, 0.0),
      target_centroid_(centroid(non_empty(target))),
      target_(target),
      inversion_allowed_(inversion_allowed) {
  for (Point& p : target_) p -= target_centroid_.vector();
}

OverlayPoints::OverlayPoints(Point const* target, std::size_t n, bool inversion_allowed)
    : translation_(0.0, 0.0, 0.0),
      target_(target, target + n),
      inversion_allowed_(inversion_allowed) {
  target_centroid_ = centroid(non_empty(target_));
  for (Point& p : target_) p -= target_centroid_.vector();
}

OverlayPoints::~OverlayPoints() = default;

void OverlayPoints::check_input_size(unsigned int n) const {
  if (n < target_.size()) {
    throw std::invalid_argument(
        "Cannot overlay fewer(" + to_string<unsigned int>(n) + ") points than are in the target(" +
        to_string<unsigned int>(count(target_.size())) + ") OverlayPoints::check_input_size");
  }
}

void OverlayPoints::check_weights_size(unsigned int n) const {
  if (n < target_.size()) {
    throw std::invalid_argument("Cannot overlay with fewer(" + to_string<unsigned int>(n) +
                                ") weights than points in the target(" +
                                to_string<unsigned int>(count(target_.size())) +
                                ") OverlayPoints::check_weights_size");
  }
}

double OverlayPoints::fit(std::vector<Point> const& points) {
  return fit_points(points.data(), points.size(), nullptr);
}

double OverlayPoints::fit(std::vector<Point> const& points, std::vector<double> const& weights) {
  return fit_points(points.data(), points.size(), &weights);
}

double OverlayPoints::fit(Point const* points, std::size_t n) {
  return fit_points(points, n, nullptr);
}

namespace {

// x and y of a point, or two rows of a matrix, in Lanes.
using detail::Lanes;
using detail::lanes;

inline Lanes both(double a) noexcept { return lanes(a, a); }
inline Lanes xy(Point const& p) noexcept { return lanes(p[0], p[1]); }

// (dx^2 + dy^2) + dz^2, the squared distance as rms_distance and max_distance form it.
inline double squared(Lanes dxy, double dz) noexcept {
  Lanes const s = dxy * dxy;
  return s[0] + s[1] + dz * dz;
}

// One term of an RMS sum: the squared distance, times the point's weight when weighted,
// as weighted_rms_distance forms it.
template <bool Weighted>
inline double term(double const* weights, std::size_t k, double squared_distance) noexcept {
  if constexpr (Weighted) {
    return weights[k] * squared_distance;
  } else {
    return squared_distance;
  }
}

// The RMS of a sum of n terms, as rms_distance and weighted_rms_distance finish it.
inline double root_mean(double sum, std::size_t n) noexcept {
  return std::sqrt(sum / static_cast<double>(n));
}

}  // namespace

template <bool Weighted>
double OverlayPoints::fit_passes(Point const* points, double const* weights) {
  // Three passes over the points instead of one per step, nothing stored per point (the
  // centred point is formed again in the third pass, to the same bits). Every sum is
  // still formed in index order from 0.0 with the same terms as centroid, rms_distance,
  // weighted_rms_distance and the correlation matrix form them, so each candidate's RMS
  // deviation, the centroid and the rotation are the same to the last bit.
  std::size_t const n = target_.size();
  Point const* const q = target_.data();
  Point const* const p = points;

  // Pass 1: the first candidate (the points as they are) and the centroid.
  double sum = 0.0;
  Lanes c_xy = lanes(0.0, 0.0);
  double c_z = 0.0;
  for (std::size_t k = 0; k < n; ++k) {
    Lanes const p_xy = xy(p[k]);
    sum += term<Weighted>(weights, k, squared(p_xy - xy(q[k]), p[k][2] - q[k][2]));
    c_xy += p_xy;
    c_z += p[k][2];
  }
  double const first_rms = root_mean(sum, n);
  double const count = static_cast<double>(n);
  Vector3D const c(c_xy[0] / count, c_xy[1] / count, c_z / count);
  Lanes const centre_xy = xy(c.point());

  // Pass 2: the second candidate (centred points) and the correlation matrix, element
  // (i, j) the sum of target[k][i] * centred[k][j] (times the weight): rows 0, 1 and 2
  // of columns 0 and 1 in r0, r1, r2, elements (0, 2) and (1, 2) in r_02_12.
  sum = 0.0;
  Lanes r0 = lanes(0.0, 0.0), r1 = r0, r2 = r0, r_02_12 = r0;
  double r22 = 0.0;
  for (std::size_t k = 0; k < n; ++k) {
    Lanes const t_xy = xy(q[k]);
    double const t_z = q[k][2];
    Lanes const x_xy = xy(p[k]) - centre_xy;
    double const x_z = p[k][2] - c[2];
    sum += term<Weighted>(weights, k, squared(x_xy - t_xy, x_z - t_z));
    Lanes m0 = both(t_xy[0]) * x_xy, m1 = both(t_xy[1]) * x_xy, m2 = both(t_z) * x_xy;
    Lanes mz = t_xy * both(x_z);
    double m22 = t_z * x_z;
    if constexpr (Weighted) {
      Lanes const w = both(weights[k]);
      m0 = m0 * w;
      m1 = m1 * w;
      m2 = m2 * w;
      mz = mz * w;
      m22 = m22 * weights[k];
    }
    r0 += m0;
    r1 += m1;
    r2 += m2;
    r_02_12 += mz;
    r22 += m22;
  }
  double const centred_rms = root_mean(sum, n);

  // Pass 3: the third candidate (centred and rotated) and its largest deviation. Rows 0
  // and 1 of the rotation go in pairs, column by column. A rotated coordinate is summed
  // without the leading 0.0 + of the matrix product: that only turns a zero's sign,
  // which no squared distance can see.
  Matrix3D const u = rotation_from(
      Matrix3D(r0[0], r0[1], r_02_12[0], r1[0], r1[1], r_02_12[1], r2[0], r2[1], r22));
  Lanes const u0 = lanes(u[0][0], u[1][0]), u1 = lanes(u[0][1], u[1][1]),
              u2 = lanes(u[0][2], u[1][2]);
  double const v0 = u[2][0], v1 = u[2][1], v2 = u[2][2];
  sum = 0.0;
  double largest = 0.0;
  for (std::size_t k = 0; k < n; ++k) {
    Lanes const x_xy = xy(p[k]) - centre_xy;
    double const x_z = p[k][2] - c[2];
    Lanes const y_xy = u0 * both(x_xy[0]) + u1 * both(x_xy[1]) + u2 * both(x_z);
    double const y_z = v0 * x_xy[0] + v1 * x_xy[1] + v2 * x_z;
    double const d = squared(y_xy - xy(q[k]), y_z - q[k][2]);
    sum += term<Weighted>(weights, k, d);
    if (d > largest) largest = d;
  }
  double const rotated_rms = root_mean(sum, n);

  // A later candidate replaces an earlier one only when strictly better, so ties keep
  // the simpler fit. Nothing is stored before here, so an exception from the
  // eigen-decomposition leaves the previous fit in place.
  enum class Candidate { as_given, centred, rotated };
  Candidate kept = Candidate::as_given;
  double rms = first_rms;
  if (centred_rms < rms) {
    kept = Candidate::centred;
    rms = centred_rms;
  }
  if (rotated_rms < rms) {
    kept = Candidate::rotated;
    rms = rotated_rms;
  }
  if (kept != Candidate::rotated) {
    // Rare: an earlier candidate won; its largest deviation is measured on its points.
    Vector3D const shift = kept == Candidate::centred ? c : Vector3D(0.0, 0.0, 0.0);
    largest = 0.0;
    for (std::size_t k = 0; k < n; ++k) {
      Point const x = kept == Candidate::centred ? p[k] - shift : p[k];
      double const d = squared(xy(x) - xy(q[k]), x[2] - q[k][2]);
      if (d > largest) largest = d;
    }
  }
  maximum_deviation_ = std::sqrt(largest);
  rotation_ = kept == Candidate::rotated ? u : Matrix3D();
  translation_ = kept == Candidate::as_given ? Vector3D(0.0, 0.0, 0.0) : c;
  rms_ = rms;
  fitted_ = true;
  return rms_;
}

double OverlayPoints::fit_points(Point const* points, std::size_t n,
                                 std::vector<double> const* weights) {
  check_input_size(count(n));
  if (weights != nullptr) {
    check_weights_size(count(weights->size()));
    return fit_passes<true>(points, weights->data());
  }
  return fit_passes<false>(points, nullptr);
}

Matrix3D OverlayPoints::correlation(std::vector<Point> const& points,
                                    std::vector<double> const* weights) const {
  Matrix3D r(0.0);
  for (std::size_t k = 0; k < target_.size(); ++k) {
    Point const& q = target_[k];
    Point const& p = points[k];
    double const w = weights != nullptr ? (*weights)[k] : 1.0;
    for (unsigned int i = 0; i < 3; ++i) {
      for (unsigned int j = 0; j < 3; ++j) r(i + 1, j + 1) += q[i] * p[j] * w;
    }
  }
  return r;
}

THandle<Matrix3D> OverlayPoints::rmatrix(std::vector<Point> const& points) const {
  check_input_size(count(points.size()));
  return make_handle<Matrix3D>(correlation(points, nullptr));
}

THandle<Matrix3D> OverlayPoints::rmatrix(std::vector<Point> const& points,
                                         std::vector<double> const& weights) const {
  check_input_size(count(points.size()));
  check_weights_size(count(weights.size()));
  return make_handle<Matrix3D>(correlation(points, &weights));
}

Matrix3D OverlayPoints::rotation_from(Matrix3D const& r) const {
  Vector3D mu;
  Matrix3D a;
  Jacobi<3>(r.transpose() * r, mu, a);
  EigenSort<3>(mu, a);
  if (mu[0] < eigenvalue_tolerance_) return Matrix3D();

  // A linear set fixes one direction only; the second pair is any perpendicular.
  bool const linear = mu[1] < eigenvalue_tolerance_;
  Vector3D const a1 = a.col(1);
  Vector3D const a2 = linear ? unit_perp(a1) : a.col(2);
  Vector3D const a3 = a1.cross(a2);
  Vector3D const b1 = (r * a1) / std::sqrt(mu[0]);
  Vector3D const b2 = linear ? unit_perp(b1) : (r * a2) / std::sqrt(mu[1]);
  Vector3D b3 = b1.cross(b2);
  // b3 = b1 x b2 keeps the rotation proper. Reversing b3 where R turns a3 the other way
  // gives the better mirror image; for a planar set R a3 is rounding noise, and either
  // sign fits equally well.
  if (inversion_allowed_ && b3.dot(r * a3) < 0.0) b3 = b3 / -1.0;

  Matrix3D u(0.0);
  for (unsigned int i = 0; i < 3; ++i) {
    for (unsigned int j = 0; j < 3; ++j) {
      u(i + 1, j + 1) = b1[i] * a1[j] + b2[i] * a2[j] + b3[i] * a3[j];
    }
  }
  return u;
}

THandle<Matrix3D> OverlayPoints::rotmat(Matrix3D const& r) const {
  return make_handle<Matrix3D>(rotation_from(r));
}

Transformation OverlayPoints::current_transformation() const noexcept {
  // Before any fit there is nothing to carry onto the target.
  if (!fitted_) return Transformation();
  return Transformation(rotation_, target_centroid_.vector() - rotation_ * translation_);
}

THandle<Transformation> OverlayPoints::transformation() const {
  return make_handle<Transformation>(current_transformation());
}

void OverlayPoints::transform(std::vector<Point>& points) const {
  transform(points.begin(), points.end());
}

std::vector<Point> OverlayPoints::transform(std::vector<Point> const& points) const {
  std::vector<Point> moved(points);
  transform(moved.begin(), moved.end());
  return moved;
}

}  // namespace structmath
