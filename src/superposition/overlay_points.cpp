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
      work_(target.size()),
      inversion_allowed_(inversion_allowed) {
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

double OverlayPoints::fit(std::vector<Point> const& points) { return fit_points(points, nullptr); }

double OverlayPoints::fit(std::vector<Point> const& points, std::vector<double> const& weights) {
  return fit_points(points, &weights);
}

double OverlayPoints::deviation(std::vector<double> const* weights) const {
  return weights != nullptr ? weighted_rms_distance(work_, target_, *weights)
                            : rms_distance(work_, target_);
}

double OverlayPoints::fit_points(std::vector<Point> const& points,
                                 std::vector<double> const* weights) {
  check_input_size(count(points.size()));
  if (weights != nullptr) check_weights_size(count(weights->size()));
  auto const first = points.begin();
  auto const last = first + static_cast<std::ptrdiff_t>(target_.size());
  std::copy(first, last, work_.begin());

  // The candidates are compared in locals and kept at the end, so that an exception
  // from the eigen-decomposition leaves the previous fit in place. A later candidate
  // replaces an earlier one only when strictly better, so ties keep the simpler fit.
  enum class Candidate { as_given, centred, rotated };

  // First candidate: the points as they are, against the centred target. Kept as the
  // baseline; it can only win for a set already centred on the origin.
  Candidate kept = Candidate::as_given;
  double rms = deviation(weights);

  // Second candidate: centred on their own centroid, unweighted even in a weighted fit.
  Vector3D const c = centroid(work_).vector();
  for (Point& p : work_) p -= c;
  double r = deviation(weights);
  if (r < rms) {
    kept = Candidate::centred;
    rms = r;
  }

  // Third candidate: centred and rotated.
  Matrix3D const u = rotation_from(correlation(work_, weights));
  for (Point& p : work_) p = u * p;
  r = deviation(weights);
  if (r < rms) {
    kept = Candidate::rotated;
    rms = r;
  }

  // The maximum deviation is measured once, on the kept candidate's points, rebuilt in
  // work when an earlier candidate won.
  if (kept != Candidate::rotated) {
    std::copy(first, last, work_.begin());
    if (kept == Candidate::centred) {
      for (Point& p : work_) p -= c;
    }
  }
  maximum_deviation_ = max_distance(work_, target_);
  rotation_ = kept == Candidate::rotated ? u : Matrix3D();
  translation_ = kept == Candidate::as_given ? Vector3D(0.0, 0.0, 0.0) : c;
  rms_ = rms;
  fitted_ = true;
  return rms_;
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
