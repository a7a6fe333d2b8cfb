// SPDX-License-Identifier: MIT
// OverlayPoints: least-squares superposition of a moving point set onto a fixed target.
#pragma once

#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/geometry/transformation.hpp"
#include "structmath/numeric/matrix.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

/// Fits moving point sets onto one fixed target by least squares; point i of a moving
/// set corresponds to point i of the target.
///
/// Method: the eigenvector solution for the best rotation between two centred sets
/// (W. Kabsch, Acta Cryst. A32 (1976) 922-923, and A34 (1978) 827-828). With R the
/// correlation matrix of the centred target and moving points, the unit eigenvectors a_k
/// of R^T R (eigenvalues mu_1 >= mu_2 >= mu_3) and b_k = R a_k / sqrt(mu_k), the rotation
/// sum_k b_k a_k^T carries a centred moving point onto the centred target. b_3 is
/// b_1 x b_2, so the rotation is proper; with inversion allowed b_3 is reversed when
/// R a_3 points against it, which gives the better-fitting mirror image. For a linear set
/// (mu_2 negligible) a_2 and b_2 are unit perpendiculars of a_1 and b_1.
///
/// Each fit tries three candidates in this order and keeps a later one only when its
/// RMS deviation is strictly lower: the points as they are, the points centred on their
/// centroid, the centred points rotated. RMS and maximum deviations are measured against
/// the centred target, also for the first candidate (kept: that candidate only wins for
/// a set already centred on the origin, which transformation() then moves onto the
/// target). Degenerate sets never throw: a planar or linear set is completed
/// with perpendicular directions, and a correlation matrix with negligible eigenvalues
/// gives the identity rotation. Cost: O(n) per fit (three passes over the points and one
/// 3x3 Jacobi decomposition); after construction a fit allocates nothing.
class STRUCTMATH_API OverlayPoints {
 public:
  /// Centres a copy of the target on its centroid. Throws std::invalid_argument("No
  /// points to overlay in OverlayPoints::OverlayPoints") when the target is empty.
  /// With inversion_allowed a fit may be a mirror image (an improper rotation).
  OverlayPoints(std::vector<Point> const& target, bool inversion_allowed);
  /// As above for the n points at `target` (coordinates held in an array of the
  /// caller's, three doubles per point), copied once.
  OverlayPoints(Point const* target, std::size_t n, bool inversion_allowed);
  OverlayPoints(OverlayPoints const&) = default;
  OverlayPoints& operator=(OverlayPoints const&) = default;
  virtual ~OverlayPoints();

  /// Fits the first n points (n = target size) onto the target, ignoring any further
  /// points, and returns the RMS deviation of the kept candidate. Throws as
  /// check_input_size when fewer points are given; the object then keeps its previous
  /// fit (kept: no field is written before the fit is complete).
  double fit(std::vector<Point> const& points);
  /// As fit(points), with every RMS deviation and the correlation matrix weighted per
  /// point. The centroid and the maximum deviation stay unweighted (kept: callers weight
  /// the rotation only, not where the set sits). The weighted RMS is divided by the
  /// number of points, not by the sum of the weights. Also throws as check_weights_size.
  double fit(std::vector<Point> const& points, std::vector<double> const& weights);
  /// As fit(points) for the n points at `points`, read in place: a caller holding
  /// coordinates in an array of its own need not copy them into a vector first.
  double fit(Point const* points, std::size_t n);

  /// The correlation matrix, element (i, j) = sum_k target[k][i] * points[k][j], of the
  /// centred target and the given points (centre them first). Throws as check_input_size.
  THandle<Matrix3D> rmatrix(std::vector<Point> const& points) const;
  /// As rmatrix(points) with each term multiplied by weights[k]. Also throws as
  /// check_weights_size.
  THandle<Matrix3D> rmatrix(std::vector<Point> const& points,
                            std::vector<double> const& weights) const;
  /// The rotation taking centred moving points onto the centred target, from their
  /// correlation matrix r: proper unless inversion is allowed and the best fit is a
  /// mirror image. Eigenvalues of r^T r below eigenvalue_tolerance() count as zero; the
  /// identity is returned when the largest does. Propagates std::overflow_error from
  /// Jacobi<3>.
  THandle<Matrix3D> rotmat(Matrix3D const& r) const;

  /// Throws std::invalid_argument("Cannot overlay fewer(n) points than are in the
  /// target(m) OverlayPoints::check_input_size") when n < m, the target size.
  void check_input_size(unsigned int n) const;
  /// Throws std::invalid_argument("Cannot overlay with fewer(n) weights than points in
  /// the target(m) OverlayPoints::check_weights_size") when n < m.
  void check_weights_size(unsigned int n) const;

  /// The kept fit as one map of space, p -> rotation() (p - translation()) + the target
  /// centroid: it carries the fitted points onto the target with exactly the kept
  /// deviations. The identity before any fit.
  THandle<Transformation> transformation() const;
  /// Applies transformation() to every point of the range, in place.
  template <typename Iterator>
  void transform(Iterator first, Iterator last) const {
    Transformation const t = current_transformation();
    for (; first != last; ++first) *first = t * *first;
  }
  /// Applies transformation() to every point, in place (the overload a non-const
  /// vector picks; pass std::as_const(points) for a copy).
  void transform(std::vector<Point>& points) const;
  /// A copy of the points with transformation() applied.
  std::vector<Point> transform(std::vector<Point> const& points) const;

  /// RMS deviation of the kept fit (0 before any fit).
  double rms() const noexcept { return rms_; }
  /// Largest deviation of a point of the kept fit (0 before any fit).
  double maximum_deviation() const noexcept { return maximum_deviation_; }
  /// Rotation of the kept fit; the identity for the first two candidates.
  Matrix3D const& rotation() const noexcept { return rotation_; }
  /// Centroid of the moving set when the kept fit is centred, else (0, 0, 0).
  Vector3D const& translation() const noexcept { return translation_; }
  /// Centroid of the target as given to the constructor.
  Point const& target_centroid() const noexcept { return target_centroid_; }
  /// Eigenvalues of r^T r below this (1e-05) count as zero in rotmat. It is absolute
  /// (length^4), not relative to the size of the sets: kept, as fits of very small sets
  /// then stay unrotated rather than follow rounding noise. A set fitted onto itself
  /// stays unrotated when its largest principal second moment, summed over its points,
  /// is below about 3e-3.
  double eigenvalue_tolerance() const noexcept { return eigenvalue_tolerance_; }
  bool inversion_allowed() const noexcept { return inversion_allowed_; }

 private:
  double fit_points(Point const* points, std::size_t n, std::vector<double> const* weights);
  template <bool Weighted>
  double fit_passes(Point const* points, double const* weights);
  Matrix3D correlation(std::vector<Point> const& points, std::vector<double> const* weights) const;
  Matrix3D rotation_from(Matrix3D const& r) const;
  Transformation current_transformation() const noexcept;

  Matrix3D rotation_;
  Vector3D translation_;
  Point target_centroid_;
  double rms_ = 0.0;
  double maximum_deviation_ = 0.0;
  std::vector<Point> target_;
  double eigenvalue_tolerance_ = 1e-05;
  bool inversion_allowed_;
  bool fitted_ = false;
};

}  // namespace structmath
