// SPDX-License-Identifier: MIT
// qcp_rmsd and qcp_fit: the least RMS deviation of two point sets over rigid motions,
// by the quaternion characteristic polynomial.
#pragma once

#include <vector>

#include "structmath/export.hpp"
#include "structmath/numeric/matrix.hpp"
#include "structmath/numeric/point.hpp"

namespace structmath {

/// A least-squares superposition of a moving set onto a target set.
struct QcpFit {
  /// The least RMS deviation over proper rotations and translations.
  double rmsd = 0.0;
  /// The proper rotation that carries moving - moving_centroid onto target -
  /// target_centroid; qcp_fit only (qcp_rmsd does not form it).
  Matrix3D rotation;
  /// The (weighted) centroids of the two sets.
  Point moving_centroid;
  Point target_centroid;
};

/// The least RMS deviation between corresponding points of `moving` and `target` over
/// all proper rotations and translations of `moving`.
///
/// Method: the quaternion characteristic polynomial (D. L. Theobald, Acta Cryst. A61
/// (2005) 478-480; P. Liu, D. K. Agrafiotis and D. L. Theobald, J. Comput. Chem. 31
/// (2010) 1561-1563). One pass over the points gathers the centred inner-product matrix
/// M = sum (x - x_c)(y - y_c)^T and the sum G of both sets' centred squared norms (taken
/// about the first point of each set, then moved to the centroids, which keeps the
/// rounding of far-off sets small). The largest eigenvalue L of Horn's symmetric 4x4
/// matrix K of M is the largest root of x^4 - 2|M|^2 x^2 - 8 det(M) x + det(K); Newton's
/// method from G / 2, an upper bound, converges to it from above and stops when a step
/// changes it by at most 1e-14 of its value (at most 100 steps; sets without any spread
/// give L = 0 at once). Near a multiple root (linear sets) that root is known to about
/// the square root of the rounding only, so L is then refined as the Rayleigh quotient
/// q^T K q of the quaternion q: the null vector of K - L I, by Gaussian elimination with
/// full pivoting (pivots below 1e-12 of the largest element of K count as zero). Then
/// rmsd = sqrt(2 (G / 2 - L) / n). Cost: O(n), one pass, no allocation.
///
/// Accuracy: the rmsd is exact up to the rounding of G / 2 - L, so near a perfect fit
/// its absolute error is about sqrt(1e-15 G / n), a few 1e-7 for sets ten units across;
/// a mirror image gets the RMS deviation of the best proper rotation, never 0.
///
/// Throws std::invalid_argument("qcp_rmsd(): the point sets differ in size") or
/// ("qcp_rmsd(): no points") for sets of different or zero size.
STRUCTMATH_API double qcp_rmsd(std::vector<Point> const& moving, std::vector<Point> const& target);
/// As qcp_rmsd(moving, target) with a weight per point: the weighted centroids, and the
/// weighted sum of squared deviations divided by the sum of the weights. Weights must not
/// be negative. Also throws std::invalid_argument("qcp_rmsd(): one weight per point is
/// needed") and ("qcp_rmsd(): the weights must have a positive sum").
STRUCTMATH_API double qcp_rmsd(std::vector<Point> const& moving, std::vector<Point> const& target,
                               std::vector<double> const& weights);

/// As qcp_rmsd, with the rotation of the quaternion q and the centroids. Where the best
/// rotation is not unique (a linear set turns freely about its line, a set without
/// spread any way at all) one of the best is returned, the identity for a set without
/// spread. Messages as qcp_rmsd, naming qcp_fit().
STRUCTMATH_API QcpFit qcp_fit(std::vector<Point> const& moving, std::vector<Point> const& target);
STRUCTMATH_API QcpFit qcp_fit(std::vector<Point> const& moving, std::vector<Point> const& target,
                              std::vector<double> const& weights);

}  // namespace structmath
