// SPDX-License-Identifier: MIT
// Tests of OverlayPoints: candidate fits, recovery of rigid motions and mirror images,
// agreement with the quaternion method, degenerate sets and allocation-free refitting.
#include "structmath/superposition/overlay_points.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "structmath/geometry/geometry_functions.hpp"
#include "structmath/numeric/linear_algebra.hpp"
#include "support/geometry_support.hpp"

// Counts every allocation through the global operator new, to show that refitting
// allocates nothing.
namespace {
std::size_t allocation_count = 0;
}  // namespace

void* operator new(std::size_t size) {
  ++allocation_count;
  if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
  throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }

namespace structmath {
namespace {

using testing::GeometryRandom;
using testing::message_of;

std::vector<Point> random_points(GeometryRandom& random, std::size_t n) {
  std::vector<Point> points;
  for (std::size_t i = 0; i < n; ++i) points.push_back(random.point());
  return points;
}

std::vector<Point> moved(std::vector<Point> const& points, Matrix3D const& m,
                         Vector3D const& shift) {
  std::vector<Point> out;
  for (Point const& p : points) out.push_back(m * p + shift);
  return out;
}

Matrix3D const mirror_x(-1, 0, 0, 0, 1, 0, 0, 0, 1);

// A rotated, shifted copy with noise of up to 0.2 per coordinate: no candidate fits
// exactly, and the three differ.
std::vector<Point> noisy_copy(GeometryRandom& random, std::vector<Point> const& points) {
  std::vector<Point> copy = moved(points, random.rotation().rotation_matrix(), random.vector());
  for (Point& p : copy) p += random.vector() * 0.02;
  return copy;
}

bool points_near(std::vector<Point> const& a, std::vector<Point> const& b, double tolerance) {
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!equals(a[i], b[i], tolerance)) return false;
  }
  return true;
}

// The least-squares RMS over proper rotations by the quaternion method (B. K. P. Horn,
// J. Opt. Soc. Am. A 4 (1987) 629): with both sets on their plain centroids, the least
// sum w |R p - q|^2 is sum w (|p|^2 + |q|^2) - 2 lambda, lambda the largest eigenvalue
// of a symmetric 4x4 matrix N built from S = sum w p q^T. Squaring N + shift I (shifted
// to be positive) over and over, scaled to unit trace, leaves the projector P onto the
// top eigenspace, and lambda = trace(P N).
double quaternion_rms(std::vector<Point> const& moving, std::vector<Point> const& target,
                      std::vector<double> const& weights) {
  using M4 = std::array<std::array<double, 4>, 4>;
  Vector3D const cp = centroid(moving).vector(), cq = centroid(target).vector();
  double s[3][3] = {}, squares = 0.0;
  for (std::size_t k = 0; k < target.size(); ++k) {
    Vector3D const p = moving[k].vector() - cp, q = target[k].vector() - cq;
    for (unsigned i = 0; i < 3; ++i) {
      for (unsigned j = 0; j < 3; ++j) s[i][j] += weights[k] * p[i] * q[j];
    }
    squares += weights[k] * (p.dot(p) + q.dot(q));
  }
  M4 const n{
      {{s[0][0] + s[1][1] + s[2][2], s[1][2] - s[2][1], s[2][0] - s[0][2], s[0][1] - s[1][0]},
       {s[1][2] - s[2][1], s[0][0] - s[1][1] - s[2][2], s[0][1] + s[1][0], s[2][0] + s[0][2]},
       {s[2][0] - s[0][2], s[0][1] + s[1][0], -s[0][0] + s[1][1] - s[2][2], s[1][2] + s[2][1]},
       {s[0][1] - s[1][0], s[2][0] + s[0][2], s[1][2] + s[2][1], -s[0][0] - s[1][1] + s[2][2]}}};
  M4 a = n;
  for (unsigned i = 0; i < 4; ++i) a[i][i] += squares;  // every |eigenvalue| <= squares / 2
  for (int round = 0; round < 60; ++round) {
    M4 sq{};
    double trace = 0.0;
    for (unsigned i = 0; i < 4; ++i) {
      for (unsigned j = 0; j < 4; ++j) {
        for (unsigned k = 0; k < 4; ++k) sq[i][j] += a[i][k] * a[k][j];
      }
      trace += sq[i][i];
    }
    for (unsigned i = 0; i < 4; ++i) {
      for (unsigned j = 0; j < 4; ++j) a[i][j] = sq[i][j] / trace;
    }
  }
  double lambda = 0.0;
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned j = 0; j < 4; ++j) lambda += a[i][j] * n[j][i];
  }
  double const least = squares - 2.0 * lambda;
  return std::sqrt((least > 0.0 ? least : 0.0) / static_cast<double>(target.size()));
}

double quaternion_rms(std::vector<Point> const& moving, std::vector<Point> const& target) {
  return quaternion_rms(moving, target, std::vector<double>(target.size(), 1.0));
}

std::string too_few(unsigned n, unsigned m) {
  return "Cannot overlay fewer(" + std::to_string(n) + ") points than are in the target(" +
         std::to_string(m) + ") OverlayPoints::check_input_size";
}

TEST(OverlayPoints, RejectsEmptyTargetsAndShortInputsWithTheirMessages) {
  EXPECT_THROW(OverlayPoints({}, false), std::invalid_argument);
  EXPECT_EQ(message_of([] { OverlayPoints({}, false); }),
            "No points to overlay in OverlayPoints::OverlayPoints");

  GeometryRandom random(1);
  std::vector<Point> const target = random_points(random, 5);
  OverlayPoints overlay(target, false);
  std::vector<Point> const four(target.begin(), target.begin() + 4);
  EXPECT_THROW(overlay.check_input_size(4), std::invalid_argument);
  EXPECT_THROW(overlay.check_weights_size(4), std::invalid_argument);
  EXPECT_EQ(message_of([&] { overlay.check_input_size(4); }), too_few(4, 5));
  EXPECT_EQ(message_of([&] { overlay.rmatrix(four); }), too_few(4, 5));
  EXPECT_EQ(message_of([&] { overlay.rmatrix(four, {1, 1, 1, 1, 1}); }), too_few(4, 5));
  std::string const few_weights =
      "Cannot overlay with fewer(4) weights than points in the target(5) "
      "OverlayPoints::check_weights_size";
  EXPECT_EQ(message_of([&] { overlay.rmatrix(target, {1, 1, 1, 1}); }), few_weights);

  // A rejected fit leaves the previous one in place.
  std::vector<Point> const shifted = moved(target, Matrix3D(), Vector3D(1, 2, 3));
  double const rms = overlay.fit(moved(target, mirror_x, Vector3D(1, 2, 3)));
  Matrix3D const rotation = overlay.rotation();
  EXPECT_EQ(message_of([&] { overlay.fit(four); }), too_few(4, 5));
  EXPECT_EQ(message_of([&] { overlay.fit(four, {1, 1, 1, 1, 1}); }), too_few(4, 5));
  EXPECT_EQ(message_of([&] { overlay.fit(shifted, {1, 1, 1, 1}); }), few_weights);
  EXPECT_EQ(overlay.rms(), rms);
  EXPECT_TRUE(equals(overlay.rotation(), rotation, 0.0));
}

TEST(OverlayPoints, CorrelationMatrixPairsTargetRowsWithMovingColumns) {
  // Target (1, 0, 0), (-1, 0, 0) is already centred.
  OverlayPoints const overlay({Point(1, 0, 0), Point(-1, 0, 0)}, false);
  std::vector<Point> const points{Point(0, 2, 5), Point(0, -2, 1)};
  EXPECT_TRUE(equals(*overlay.rmatrix(points), Matrix3D(0, 4, 4, 0, 0, 0, 0, 0, 0), 0.0));
  EXPECT_TRUE(
      equals(*overlay.rmatrix(points, {1.0, 3.0}), Matrix3D(0, 8, 2, 0, 0, 0, 0, 0, 0), 0.0));
  // The target is centred before the products are taken.
  OverlayPoints const offset({Point(11, 0, 0), Point(9, 0, 0)}, false);
  EXPECT_TRUE(equals(*offset.rmatrix(points), *overlay.rmatrix(points), 0.0));
  EXPECT_TRUE(equals(offset.target_centroid(), Point(10, 0, 0), 0.0));
}

TEST(OverlayPoints, RotmatIsTheOrthogonalFactorOfTheCorrelationMatrix) {
  // For R = Q S with S symmetric positive definite the best rotation is Q; for an
  // improper Q it is Q only when inversion is allowed, else some proper rotation.
  GeometryRandom random(2);
  OverlayPoints const proper({Point()}, false), improper({Point()}, true);
  for (int trial = 0; trial < 100; ++trial) {
    Matrix3D s(0.0);
    for (unsigned i = 1; i <= 3; ++i) {
      for (unsigned j = 1; j <= 3; ++j) s(i, j) = random.value(-1.0, 1.0);
    }
    s = s.transpose() * s;
    for (unsigned i = 1; i <= 3; ++i) s(i, i) += 1.0;
    Matrix3D const q = random.rotation().rotation_matrix();
    EXPECT_TRUE(equals(*proper.rotmat(q * s), q, 1e-9));
    EXPECT_TRUE(equals(*improper.rotmat(q * s), q, 1e-9));
    Matrix3D const mirror = q * mirror_x;
    EXPECT_TRUE(equals(*improper.rotmat(mirror * s), mirror, 1e-9));
    Matrix3D const u = *proper.rotmat(mirror * s);
    EXPECT_NEAR(Determinant(u), 1.0, 1e-9);
    EXPECT_TRUE(equals(u.transpose() * u, Matrix3D(), 1e-9));
  }
  // Negligible eigenvalues of R^T R (absolute tolerance 1e-5) give the identity.
  EXPECT_TRUE(equals(*proper.rotmat(Matrix3D(0.0)), Matrix3D(), 0.0));
  EXPECT_TRUE(
      equals(*improper.rotmat(Matrix3D(0, -3e-3, 0, 3e-3, 0, 0, 0, 0, 1e-3)), Matrix3D(), 0.0));
  EXPECT_FALSE(
      equals(*proper.rotmat(Matrix3D(0, -4e-3, 0, 4e-3, 0, 0, 0, 0, 1e-3)), Matrix3D(), 0.1));
}

TEST(OverlayPoints, StartsAsTheIdentityAndKeepsEarlierCandidatesUnlessStrictlyBeaten) {
  // Exactly representable sets, so that every candidate's deviation is exact.
  std::vector<Point> const shape{Point(1, 2, 3),  Point(-1, -2, -3), Point(4, 0, -1),
                                 Point(-4, 0, 1), Point(2, -5, 0),   Point(-2, 5, 0)};
  std::vector<Point> const target = moved(shape, Matrix3D(), Vector3D(10, 20, 30));
  OverlayPoints overlay(target, true);
  EXPECT_TRUE(equals(*overlay.transformation(), Transformation(), 0.0));
  EXPECT_TRUE(points_near(overlay.transform(shape), shape, 0.0));

  // The shape is the target centred on the origin: the points as they are already fit.
  EXPECT_EQ(overlay.fit(shape), 0.0);
  EXPECT_EQ(overlay.maximum_deviation(), 0.0);
  EXPECT_TRUE(equals(overlay.rotation(), Matrix3D(), 0.0));
  EXPECT_TRUE(equals(overlay.translation(), Vector3D(0, 0, 0), 0.0));
  // The copying, in-place and range forms of transform all carry it onto the target.
  EXPECT_TRUE(points_near(overlay.transform(shape), target, 0.0));
  std::vector<Point> in_place = shape;
  overlay.transform(in_place);
  EXPECT_TRUE(points_near(in_place, target, 0.0));
  std::array<Point, 6> range{};
  std::copy(shape.begin(), shape.end(), range.begin());
  overlay.transform(range.begin() + 1, range.end());
  EXPECT_TRUE(equals(range[0], shape[0], 0.0));
  EXPECT_TRUE(equals(range[5], target[5], 0.0));

  // A translated copy is fitted by centring; the rotation cannot do strictly better.
  std::vector<Point> const shifted = moved(shape, Matrix3D(), Vector3D(-3, 7, 1));
  std::vector<Point> const turned =
      moved(shape, Matrix3D(0, -1, 0, 1, 0, 0, 0, 0, 1), Vector3D(-3, 7, 1));
  overlay.fit(turned);
  EXPECT_FALSE(equals(overlay.rotation(), Matrix3D(), 0.1));
  EXPECT_EQ(overlay.fit(shifted), 0.0);
  EXPECT_TRUE(equals(overlay.rotation(), Matrix3D(), 0.0));
  EXPECT_TRUE(equals(overlay.translation(), Vector3D(-3, 7, 1), 0.0));
  EXPECT_TRUE(points_near(overlay.transform(shifted), target, 1e-14));
}

TEST(OverlayPoints, RecoversRandomRigidMotionsAndMirrorImagesOnlyWhenAllowed) {
  GeometryRandom random(3);
  double closest_mirror = 1e300;
  for (int trial = 0; trial < 300; ++trial) {
    std::size_t const n = 4 + static_cast<std::size_t>(random.value(0.0, 40.0));
    std::vector<Point> const target = random_points(random, n);
    Matrix3D const q = random.rotation().rotation_matrix();
    Vector3D const shift = random.vector() * 10.0;
    OverlayPoints proper(target, false), improper(target, true);
    for (bool mirror : {false, true}) {
      std::vector<Point> const points = moved(target, mirror ? q * mirror_x : q, shift);
      // rotation() undoes the motion, and translation() is the moving centroid.
      Matrix3D const undo = (mirror ? q * mirror_x : q).transpose();
      EXPECT_LT(improper.fit(points), 1e-9);
      EXPECT_TRUE(equals(improper.rotation(), undo, 1e-9));
      EXPECT_TRUE(equals(improper.translation(), centroid(points).vector(), 1e-9));
      EXPECT_TRUE(points_near(improper.transform(points), target, 1e-9));

      double const rms = proper.fit(points);
      EXPECT_NEAR(Determinant(proper.rotation()), 1.0, 1e-9);
      if (mirror) {
        // The best proper rotation of a mirror image, and never an exact fit.
        closest_mirror = std::min(closest_mirror, rms);
        EXPECT_NEAR(rms, quaternion_rms(points, target), 1e-9 * (1.0 + rms));
      } else {
        EXPECT_LT(rms, 1e-9);
        EXPECT_TRUE(equals(proper.rotation(), undo, 1e-9));
        EXPECT_TRUE(points_near(proper.transform(points), target, 1e-9));
      }
    }
  }
  // Only a planar set fits its mirror image; random sets in a cube of side 20 are not.
  EXPECT_GT(closest_mirror, 1e-3);
}

TEST(OverlayPoints, PlainAndWeightedRmsAgreeWithTheQuaternionMethod) {
  GeometryRandom random(5);
  for (int trial = 0; trial < 200; ++trial) {
    std::vector<Point> const target =
        random_points(random, 3 + static_cast<std::size_t>(random.value(0.0, 30.0)));
    std::vector<Point> const points = noisy_copy(random, target);
    std::vector<double> weights;
    for (std::size_t i = 0; i < target.size(); ++i) weights.push_back(random.value(0.0, 3.0));
    bool const inversion = trial % 2 == 1;
    OverlayPoints overlay(target, inversion);

    double expected = quaternion_rms(points, target);
    if (inversion) {
      expected = std::min(expected, quaternion_rms(moved(points, mirror_x, {}), target));
    }
    double const plain = overlay.fit(points);
    EXPECT_NEAR(plain, expected, 1e-9 * (1.0 + expected));
    // Applied to the points, the transformation reproduces the kept deviations.
    std::vector<Point> fitted = overlay.transform(points);
    EXPECT_NEAR(rms_distance(fitted, target), plain, 1e-9);
    EXPECT_NEAR(max_distance(fitted, target), overlay.maximum_deviation(), 1e-9);
    // Unit weights reproduce the plain fit exactly; weights of 4 double the RMS.
    Matrix3D const rotation = overlay.rotation();
    EXPECT_EQ(overlay.fit(points, std::vector<double>(target.size(), 1.0)), plain);
    EXPECT_TRUE(equals(overlay.rotation(), rotation, 0.0));
    EXPECT_NEAR(overlay.fit(points, std::vector<double>(target.size(), 4.0)), 2.0 * plain, 1e-12);
    if (inversion) continue;

    // Weighted: the rotation follows the weights, the centroid and the maximum deviation
    // do not.
    expected = quaternion_rms(points, target, weights);
    EXPECT_NEAR(overlay.fit(points, weights), expected, 1e-9 * (1.0 + expected));
    EXPECT_TRUE(equals(overlay.translation(), centroid(points).vector(), 0.0));
    fitted = overlay.transform(points);
    EXPECT_NEAR(weighted_rms_distance(fitted, target, weights), overlay.rms(), 1e-9);
    EXPECT_NEAR(max_distance(fitted, target), overlay.maximum_deviation(), 1e-9);
  }
}

TEST(OverlayPoints, IgnoresPointsBeyondTheTargetSize) {
  GeometryRandom random(7);
  std::vector<Point> const target = random_points(random, 12);
  std::vector<Point> const points = noisy_copy(random, target);
  std::vector<double> weights(12, 0.5);
  weights[3] = 2.0;
  std::vector<Point> longer = points;
  std::vector<double> more_weights = weights;
  for (int i = 0; i < 5; ++i) {
    longer.push_back(random.point());
    more_weights.push_back(100.0);
  }
  for (bool weighted : {false, true}) {
    OverlayPoints a(target, true), b(target, true);
    double const ra = weighted ? a.fit(points, weights) : a.fit(points);
    double const rb = weighted ? b.fit(longer, more_weights) : b.fit(longer);
    EXPECT_EQ(ra, rb);
    EXPECT_EQ(a.maximum_deviation(), b.maximum_deviation());
    EXPECT_TRUE(equals(a.rotation(), b.rotation(), 0.0));
    EXPECT_TRUE(equals(a.translation(), b.translation(), 0.0));
  }
}

TEST(OverlayPoints, FitsPlanarLinearAndTinySetsWithoutThrowing) {
  GeometryRandom random(8);
  for (int trial = 0; trial < 50; ++trial) {
    Matrix3D const q = random.rotation().rotation_matrix();
    Vector3D const shift = random.vector();
    std::vector<Point> planar, linear;
    Vector3D const u = random.vector(), v = random.vector(), w = random.vector();
    for (int i = 0; i < 8; ++i) {
      double const s = random.value(-1.0, 1.0), t = random.value(-1.0, 1.0);
      planar.push_back(Point(s * u + t * v));
      linear.push_back(Point(s * w));
    }
    for (bool inversion : {false, true}) {
      // A mirror image of a planar set is a rotation of it, so it fits either way.
      for (Matrix3D const& m : {q, Matrix3D(q * mirror_x)}) {
        OverlayPoints flat(planar, inversion), line(linear, inversion);
        EXPECT_LT(flat.fit(moved(planar, m, shift)), 1e-9);
        EXPECT_TRUE(points_near(flat.transform(moved(planar, m, shift)), planar, 1e-9));
        EXPECT_LT(line.fit(moved(linear, m, shift)), 1e-9);
        EXPECT_TRUE(points_near(line.transform(moved(linear, m, shift)), linear, 1e-9));
      }
    }
  }
  // One point, two points and coincident points.
  OverlayPoints one({Point(1, 2, 3)}, false);
  EXPECT_EQ(one.fit({Point(4, 5, 6)}), 0.0);
  EXPECT_TRUE(equals(*one.transformation() * Point(4, 5, 6), Point(1, 2, 3), 0.0));
  OverlayPoints two({Point(0, 0, 0), Point(2, 0, 0)}, false);
  EXPECT_NEAR(two.fit({Point(5, 5, 5), Point(5, 7, 5)}), 0.0, 1e-12);
  OverlayPoints same({Point(1, 1, 1), Point(1, 1, 1), Point(1, 1, 1)}, true);
  EXPECT_EQ(same.fit({Point(3, 0, 0), Point(3, 0, 0), Point(3, 0, 0)}), 0.0);

  // A set too small for the absolute eigenvalue tolerance stays unrotated.
  std::vector<Point> const small{Point(0.01, 0, 0), Point(-0.01, 0, 0), Point(0, 0.02, 0),
                                 Point(0, -0.02, 0)};
  std::vector<Point> const turned = moved(small, Matrix3D(0, -1, 0, 1, 0, 0, 0, 0, 1), {});
  OverlayPoints tiny(small, false);
  EXPECT_EQ(tiny.fit(turned), rms_distance(turned, small));
  EXPECT_TRUE(equals(tiny.rotation(), Matrix3D(), 0.0));
}

TEST(OverlayPoints, RefittingAllocatesNothing) {
  GeometryRandom random(9);
  std::vector<Point> const target = random_points(random, 200);
  std::vector<Point> const points = moved(target, random.rotation().rotation_matrix(), {});
  std::vector<double> const weights(200, 1.5);
  OverlayPoints overlay(target, true);
  overlay.fit(points);
  std::size_t const before = allocation_count;
  for (int i = 0; i < 10; ++i) {
    overlay.fit(points);
    overlay.fit(points, weights);
  }
  EXPECT_EQ(allocation_count, before);
}

}  // namespace
}  // namespace structmath
