// SPDX-License-Identifier: MIT
// Tests of OverlayPoints: messages, correlation matrix, candidate choice, recovery of rigid
// motions and mirror images, agreement with the quaternion method, degenerate sets.
#include "structmath/superposition/overlay_points.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "structmath/geometry/geometry_functions.hpp"
#include "support/geometry_support.hpp"

namespace structmath {
namespace {

using testing::message_of;

Matrix3D const mirror_x(-1, 0, 0, 0, 1, 0, 0, 0, 1);

std::vector<Point> moved(std::vector<Point> const& points, Matrix3D const& m,
                         Vector3D const& shift) {
  std::vector<Point> out;
  for (Point const& p : points) out.push_back(m * p + shift);
  return out;
}

// The least-squares RMS over proper rotations by the quaternion method (B. K. P. Horn,
// J. Opt. Soc. Am. A 4 (1987) 629): with both sets on their plain centroids, the least
// sum w |R p - q|^2 is sum w (|p|^2 + |q|^2) - 2 lambda, lambda the largest eigenvalue
// of a symmetric 4x4 matrix N built from S = sum w p q^T. Squaring N + shift I (shifted
// to be positive) over and over, scaled to unit trace, leaves the projector P onto the
// top eigenspace, and lambda = trace(P N). No weights means unit weights.
double quaternion_rms(std::vector<Point> const& moving, std::vector<Point> const& target,
                      std::vector<double> const& weights) {
  using M4 = std::array<std::array<double, 4>, 4>;
  Vector3D const cp = centroid(moving).vector(), cq = centroid(target).vector();
  double s[3][3] = {}, squares = 0.0;
  for (std::size_t k = 0; k < target.size(); ++k) {
    double const w = weights.empty() ? 1.0 : weights[k];
    Vector3D const p = moving[k].vector() - cp, q = target[k].vector() - cq;
    for (unsigned i = 0; i < 9; ++i) s[i / 3][i % 3] += w * p[i / 3] * q[i % 3];
    squares += w * (p.dot(p) + q.dot(q));
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
    for (unsigned i = 0; i < 16; ++i) {
      for (unsigned k = 0; k < 4; ++k) sq[i / 4][i % 4] += a[i / 4][k] * a[k][i % 4];
    }
    for (unsigned i = 0; i < 4; ++i) trace += sq[i][i];
    for (unsigned i = 0; i < 16; ++i) a[i / 4][i % 4] = sq[i / 4][i % 4] / trace;
  }
  double lambda = 0.0;
  for (unsigned i = 0; i < 16; ++i) lambda += a[i / 4][i % 4] * n[i % 4][i / 4];
  return std::sqrt(std::max(squares - 2.0 * lambda, 0.0) / static_cast<double>(target.size()));
}

TEST(OverlayPoints, RejectsEmptyTargetsAndShortInputsKeepingThePreviousFit) {
  EXPECT_THROW(OverlayPoints({}, false), std::invalid_argument);
  EXPECT_EQ(message_of([] { OverlayPoints({}, false); }),
            "No points to overlay in OverlayPoints::OverlayPoints");

  std::vector<Point> const target{Point(0, 0, 0), Point(1, 0, 0), Point(0, 2, 0), Point(0, 0, 3),
                                  Point(1, 1, 1)};
  std::vector<Point> const four(target.begin(), target.begin() + 4);
  OverlayPoints overlay(target, false);
  double const rms = overlay.fit(moved(target, mirror_x, Vector3D(1, 2, 3)));
  std::string const few_points =
      "Cannot overlay fewer(4) points than are in the target(5) OverlayPoints::check_input_size";
  std::string const few_weights =
      "Cannot overlay with fewer(4) weights than points in the target(5) "
      "OverlayPoints::check_weights_size";
  EXPECT_THROW(overlay.fit(four), std::invalid_argument);
  EXPECT_EQ(message_of([&] { overlay.fit(four, {1, 1, 1, 1, 1}); }), few_points);
  EXPECT_EQ(message_of([&] { overlay.fit(target, {1, 1, 1, 1}); }), few_weights);
  EXPECT_EQ(message_of([&] { overlay.rmatrix(four); }), few_points);
  EXPECT_EQ(message_of([&] { overlay.rmatrix(target, {1, 1, 1, 1}); }), few_weights);
  EXPECT_EQ(overlay.rms(), rms);  // a rejected fit leaves the previous one in place
}

// Callers holding coordinates in arrays of their own (the Python module's NumPy
// arrays) construct and fit from a pointer and a count: the same fit to the bit.
template <typename T>
bool same_bits(T const& a, T const& b) {
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

TEST(OverlayPoints, PointerFormsGiveTheVectorFormsFitsExactly) {
  std::vector<Point> const target{Point(0.3, 0, 0), Point(1, 0.2, 0), Point(0, 2, 0.1),
                                  Point(0, 0.4, 3), Point(1, 1, 1),   Point(-2, 0.5, 1)};
  std::vector<Point> const moving = moved(target, mirror_x, Vector3D(1, 2, 3));
  for (bool const mirror : {false, true}) {
    OverlayPoints by_vector(target, mirror);
    OverlayPoints by_pointer(target.data(), target.size(), mirror);
    EXPECT_TRUE(same_bits(by_pointer.target_centroid(), by_vector.target_centroid()));
    EXPECT_EQ(by_pointer.fit(moving.data(), moving.size()), by_vector.fit(moving));
    EXPECT_EQ(by_pointer.maximum_deviation(), by_vector.maximum_deviation());
    EXPECT_TRUE(same_bits(by_pointer.rotation(), by_vector.rotation()));
    EXPECT_TRUE(same_bits(by_pointer.translation(), by_vector.translation()));
    double const rms = by_pointer.rms();
    EXPECT_EQ(message_of([&] { by_pointer.fit(moving.data(), 5); }),
              "Cannot overlay fewer(5) points than are in the target(6) "
              "OverlayPoints::check_input_size");
    EXPECT_EQ(by_pointer.rms(), rms);
  }
  EXPECT_EQ(message_of([&] { OverlayPoints(target.data(), 0, false); }),
            "No points to overlay in OverlayPoints::OverlayPoints");
}

TEST(OverlayPoints, CorrelationPairsTargetRowsWithMovingColumnsAndSmallOnesGiveNoRotation) {
  // The target is centred on (10, 0, 0) before the products are taken.
  OverlayPoints const overlay({Point(11, 0, 0), Point(9, 0, 0)}, false);
  std::vector<Point> const points{Point(0, 2, 5), Point(0, -2, 1)};
  EXPECT_TRUE(equals(*overlay.rmatrix(points), Matrix3D(0, 4, 4, 0, 0, 0, 0, 0, 0), 0.0));
  EXPECT_TRUE(equals(*overlay.rmatrix(points, {1, 3}), Matrix3D(0, 8, 2, 0, 0, 0, 0, 0, 0), 0.0));
  // Eigenvalues of R^T R below 1e-5 (absolute) count as zero: 9e-6 does, 1.6e-5 does not.
  EXPECT_TRUE(
      equals(*overlay.rotmat(Matrix3D(0, -3e-3, 0, 3e-3, 0, 0, 0, 0, 1e-3)), Matrix3D(), 0.0));
  EXPECT_FALSE(
      equals(*overlay.rotmat(Matrix3D(0, -4e-3, 0, 4e-3, 0, 0, 0, 0, 1e-3)), Matrix3D(), 0.1));
}

TEST(OverlayPoints, StartsAsTheIdentityAndKeepsEarlierCandidatesUnlessStrictlyBeaten) {
  // Exactly representable sets centred on the origin, so that every deviation is exact.
  std::vector<Point> const shape{Point(1, 2, 3),  Point(-1, -2, -3), Point(4, 0, -1),
                                 Point(-4, 0, 1), Point(2, -5, 0),   Point(-2, 5, 0)};
  std::vector<Point> const target = moved(shape, Matrix3D(), Vector3D(10, 20, 30));
  OverlayPoints overlay(target, true);
  EXPECT_EQ(max_distance(overlay.transform(shape), shape), 0.0);

  // The centred target is fitted as it is; the copying, in-place and range forms of
  // transform all carry it onto the target.
  EXPECT_EQ(overlay.fit(shape), 0.0);
  EXPECT_EQ(overlay.maximum_deviation(), 0.0);
  EXPECT_TRUE(equals(overlay.rotation(), Matrix3D(), 0.0));
  EXPECT_EQ(max_distance(overlay.transform(shape), target), 0.0);
  std::vector<Point> in_place = shape, range = shape;
  overlay.transform(in_place);
  EXPECT_EQ(max_distance(in_place, target), 0.0);
  overlay.transform(range.begin() + 1, range.end());
  EXPECT_TRUE(equals(range[0], shape[0], 0.0) && equals(range[5], target[5], 0.0));

  // A tie keeps the earlier candidate: this set's centroid rounds to about 2e-17, too
  // little to move any of its centred points, so they are kept as they are.
  std::vector<Point> const tied{Point(0.1, 0.7, 0.3), Point(0.2, -0.3, -0.1),
                                Point(-0.3, -0.4, -0.2)};
  OverlayPoints tie(tied, false);
  EXPECT_EQ(tie.fit(moved(tied, Matrix3D(), -centroid(tied).vector())), 0.0);
  EXPECT_TRUE(equals(tie.translation(), Vector3D(0, 0, 0), 0.0));

  // After a rotated fit, a translated copy is fitted by centring; rotating cannot beat it.
  overlay.fit(moved(shape, Matrix3D(0, -1, 0, 1, 0, 0, 0, 0, 1), Vector3D(-3, 7, 1)));
  EXPECT_EQ(overlay.fit(moved(shape, Matrix3D(), Vector3D(-3, 7, 1))), 0.0);
  EXPECT_TRUE(equals(overlay.rotation(), Matrix3D(), 0.0));
  EXPECT_TRUE(equals(overlay.translation(), Vector3D(-3, 7, 1), 0.0));
}

TEST(OverlayPoints, RecoversRigidMotionsAndMatchesTheQuaternionMethodOnRandomSets) {
  testing::GeometryRandom random(3);
  for (int trial = 0; trial < 400; ++trial) {
    // Noise of up to 0.2 per coordinate keeps any candidate from fitting exactly.
    bool const mirror = trial % 2 == 1, inversion = trial % 4 >= 2, noisy = trial % 8 >= 4;
    bool const exact = !noisy && (inversion || !mirror);
    std::size_t const n = 4 + static_cast<std::size_t>(random.value(0.0, 30.0));
    Matrix3D const m = random.rotation().rotation_matrix() * (mirror ? mirror_x : Matrix3D());
    std::vector<Point> target, points;
    std::vector<double> weights;
    for (std::size_t i = 0; i < n; ++i) {
      target.push_back(random.point());
      points.push_back(m * target[i] + Vector3D(5, -3, 7) + random.vector() * (noisy ? 0.02 : 0.0));
      weights.push_back(random.value(0.0, 3.0));
    }
    auto const reference = [&](std::vector<double> const& w) {
      double const r = quaternion_rms(points, target, w);
      return inversion ? std::min(r, quaternion_rms(moved(points, mirror_x, {}), target, w)) : r;
    };

    OverlayPoints overlay(target, inversion);
    double const rms = overlay.fit(points);
    EXPECT_NEAR(rms, exact ? 0.0 : reference({}), 1e-9 * (1.0 + rms));
    EXPECT_TRUE(!exact || equals(overlay.rotation(), m.transpose(), 1e-9));  // undoes the motion
    // Only a planar set fits its mirror image; random sets in a cube of side 20 do not.
    EXPECT_TRUE(exact || noisy || rms > 1e-3);
    // Applied to the points, the transformation reproduces the kept deviations.
    std::vector<Point> const fitted = overlay.transform(std::as_const(points));
    EXPECT_NEAR(rms_distance(fitted, target), rms, 1e-9);
    EXPECT_NEAR(max_distance(fitted, target), overlay.maximum_deviation(), 1e-9);
    // Points beyond the target's size, with or without unit weights, change nothing.
    points.push_back(random.point());
    EXPECT_EQ(overlay.fit(points), rms);
    EXPECT_EQ(overlay.fit(points, std::vector<double>(n + 1, 1.0)), rms);
    points.pop_back();

    // Weighted: the rotation follows the weights, the centroid and maximum deviation do not.
    double const weighted = overlay.fit(points, weights);
    EXPECT_NEAR(weighted, exact ? 0.0 : reference(weights), 1e-9 * (1.0 + weighted));
    EXPECT_TRUE(equals(overlay.translation(), centroid(points).vector(), 0.0));
    EXPECT_NEAR(max_distance(overlay.transform(std::as_const(points)), target),
                overlay.maximum_deviation(), 1e-9);
  }
}

TEST(OverlayPoints, FitsPlanarLinearAndOnePointSetsWithoutThrowing) {
  testing::GeometryRandom random(8);
  for (int trial = 0; trial < 80; ++trial) {
    // Planar sets, and linear ones (v = 0): their mirror images are rotations of them.
    Vector3D const u = random.vector(), v = trial % 2 ? random.vector() : Vector3D(0, 0, 0);
    std::vector<Point> set;
    for (int i = 0; i < 8; ++i) {
      double const s = random.value(-1.0, 1.0), t = random.value(-1.0, 1.0);
      set.push_back(Point(s * u + t * v));
    }
    Matrix3D const m =
        random.rotation().rotation_matrix() * (trial % 4 >= 2 ? mirror_x : Matrix3D());
    OverlayPoints overlay(set, trial % 8 >= 4);
    std::vector<Point> const points = moved(set, m, random.vector());
    EXPECT_LT(overlay.fit(points), 1e-9);
    EXPECT_LT(max_distance(overlay.transform(points), set), 1e-9);
  }
  OverlayPoints one({Point(1, 2, 3)}, false);
  EXPECT_EQ(one.fit({Point(4, 5, 6)}), 0.0);
  EXPECT_TRUE(equals(*one.transformation() * Point(4, 5, 6), Point(1, 2, 3), 0.0));
}

}  // namespace
}  // namespace structmath
