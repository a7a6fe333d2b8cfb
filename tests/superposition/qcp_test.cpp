// SPDX-License-Identifier: MIT
// Tests of qcp_rmsd and qcp_fit: agreement with OverlayPoints on random, planar, linear
// and mirrored sets, closed forms for degenerate sets, weights, far-off sets, messages.
#include "structmath/superposition/qcp.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <stdexcept>
#include <vector>

#include "structmath/geometry/geometry_functions.hpp"
#include "structmath/geometry/quaternion.hpp"
#include "structmath/numeric/linear_algebra.hpp"
#include "structmath/superposition/overlay_points.hpp"
#include "support/geometry_support.hpp"

namespace structmath {
namespace {

using testing::message_of;

class Sets {
 public:
  explicit Sets(unsigned seed) : engine_(seed) {}
  double uniform(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(engine_);
  }
  Matrix3D rotation() {
    Quaternion q(uniform(-1, 1), uniform(-1, 1), uniform(-1, 1), uniform(-1, 1));
    q.normalize();
    return q.rotation_matrix();
  }
  /// m p + shift + noise for every p.
  std::vector<Point> moved(std::vector<Point> const& points, Matrix3D const& m,
                           Vector3D const& shift, double noise) {
    std::vector<Point> out;
    for (Point const& p : points) {
      Vector3D const e(uniform(-noise, noise), uniform(-noise, noise), uniform(-noise, noise));
      out.push_back(m * p + shift + e);
    }
    return out;
  }
  std::vector<Point> cloud(int n, double range, double flat = 1.0, double thin = 1.0) {
    std::vector<Point> out;
    for (int i = 0; i < n; ++i) {
      out.emplace_back(uniform(-range, range), thin * uniform(-range, range),
                       flat * thin * uniform(-range, range));
    }
    return out;
  }

 private:
  std::mt19937_64 engine_;
};

/// The RMS deviation of the moving set carried onto the target by a fit.
double rms_of(QcpFit const& f, std::vector<Point> const& moving, std::vector<Point> const& target) {
  std::vector<Point> carried;
  for (Point const& p : moving) {
    carried.push_back(f.rotation * (p - f.moving_centroid.vector()) + f.target_centroid.vector());
  }
  return rms_distance(carried, target);
}

double overlay_rms(std::vector<Point> const& moving, std::vector<Point> const& target) {
  OverlayPoints overlay(target, false);
  return overlay.fit(moving);
}

TEST(Qcp, AgreesWithOverlayPointsOnRandomPlanarAndLinearSets) {
  Sets sets(2005);
  struct Shape {
    double flat, thin;
  };
  for (Shape const shape : {Shape{1.0, 1.0}, Shape{0.0, 1.0}, Shape{1e-9, 1.0}, Shape{0.0, 0.0}}) {
    for (int n : {3, 4, 7, 20, 101, 1000}) {
      for (double noise : {0.0, 0.01, 0.5, 3.0}) {
        std::vector<Point> const target = sets.cloud(n, 10.0, shape.flat, shape.thin);
        std::vector<Point> const moving =
            sets.moved(target, sets.rotation(), Vector3D(3, -4, 5), noise);
        double const expected = overlay_rms(moving, target);
        double const rmsd = qcp_rmsd(moving, target);
        // Near a perfect fit the rmsd carries the rounding of G / 2 - L.
        EXPECT_NEAR(rmsd, expected, 1e-10 * expected + 1e-6)
            << n << " points, noise " << noise << ", flat " << shape.flat << ", thin "
            << shape.thin;
        QcpFit const f = qcp_fit(moving, target);
        EXPECT_EQ(f.rmsd, rmsd);
        EXPECT_NEAR(rms_of(f, moving, target), rmsd, 1e-9 * rmsd + 1e-6);
        EXPECT_TRUE(equals(f.rotation.transpose() * f.rotation, Matrix3D(), 1e-12));
        EXPECT_NEAR(Determinant(f.rotation), 1.0, 1e-12);
      }
    }
  }
}

TEST(Qcp, MirrorImagesGetTheBestProperRotation) {
  Sets sets(1561);
  Matrix3D const mirror(-1, 0, 0, 0, 1, 0, 0, 0, 1);
  std::vector<Point> const target = sets.cloud(30, 5.0);
  std::vector<Point> const image =
      sets.moved(target, mirror * sets.rotation(), Vector3D(1, 1, 1), 0);
  OverlayPoints with_inversion(target, true);
  EXPECT_LT(with_inversion.fit(image), 1e-12);
  double const rmsd = qcp_rmsd(image, target);
  EXPECT_GT(rmsd, 1.0);
  EXPECT_NEAR(rmsd, overlay_rms(image, target), 1e-10 * rmsd);
  QcpFit const f = qcp_fit(image, target);
  EXPECT_NEAR(Determinant(f.rotation), 1.0, 1e-12);
  EXPECT_NEAR(rms_of(f, image, target), rmsd, 1e-10 * rmsd);
}

TEST(Qcp, DegenerateSetsHaveTheirClosedForms) {
  // One point: always fitted exactly.
  EXPECT_EQ(qcp_rmsd({Point(1, 2, 3)}, {Point(-7, 0.5, 9)}), 0.0);
  QcpFit const one = qcp_fit({Point(1, 2, 3)}, {Point(-7, 0.5, 9)});
  EXPECT_TRUE(equals(one.rotation, Matrix3D(), 0.0));
  EXPECT_TRUE(equals(one.target_centroid, Point(-7, 0.5, 9), 0.0));
  // Two points: the segments are aligned, each end missing by half the length difference.
  std::vector<Point> const a{Point(0, 0, 0), Point(3, 0, 4)};    // length 5
  std::vector<Point> const b{Point(1, 1, 1), Point(1, 1, 3.5)};  // length 2.5
  EXPECT_NEAR(qcp_rmsd(a, b), 1.25, 1e-7);
  QcpFit const two = qcp_fit(a, b);
  EXPECT_NEAR(rms_of(two, a, b), 1.25, 1e-12);
  // No spread in either set, in one of them, or in both.
  std::vector<Point> const same(5, Point(2, -1, 4));
  std::vector<Point> const spread{Point(1, 0, 0), Point(-1, 0, 0), Point(0, 2, 0), Point(0, -2, 0),
                                  Point(0, 0, 0)};
  EXPECT_EQ(qcp_rmsd(same, same), 0.0);
  EXPECT_NEAR(qcp_rmsd(same, spread), std::sqrt(10.0 / 5.0), 1e-12);
  EXPECT_NEAR(qcp_rmsd(spread, same), std::sqrt(10.0 / 5.0), 1e-12);
  EXPECT_TRUE(equals(qcp_fit(same, same).rotation, Matrix3D(), 0.0));
  // A linear set fitted onto a turned copy of itself: exact whatever the turn about the line.
  std::vector<Point> line, turned;
  for (int i = 0; i < 6; ++i) {
    line.emplace_back(0.5 * i, 1.0 * i, -0.25 * i);
    turned.emplace_back(-1.0 * i + 3, 0.5 * i, 0.25 * i);
  }
  EXPECT_NEAR(qcp_rmsd(line, turned), 0.0, 1e-6);
  EXPECT_NEAR(rms_of(qcp_fit(line, turned), line, turned), 0.0, 1e-12);
}

TEST(Qcp, IntegerWeightsCountLikeRepeatedPointsAndCentroidsAreWeighted) {
  Sets sets(478);
  std::vector<Point> const target = sets.cloud(12, 4.0);
  std::vector<Point> const moving = sets.moved(target, sets.rotation(), Vector3D(0, 2, 0), 0.4);
  std::vector<double> weights;
  std::vector<Point> repeated_moving, repeated_target;
  for (std::size_t k = 0; k < target.size(); ++k) {
    int const w = 1 + static_cast<int>(k % 4);
    weights.push_back(w);
    for (int i = 0; i < w; ++i) {
      repeated_moving.push_back(moving[k]);
      repeated_target.push_back(target[k]);
    }
  }
  double const rmsd = qcp_rmsd(repeated_moving, repeated_target);
  EXPECT_NEAR(qcp_rmsd(moving, target, weights), rmsd, 1e-12 * rmsd);
  QcpFit const weighted = qcp_fit(moving, target, weights);
  QcpFit const plain = qcp_fit(repeated_moving, repeated_target);
  EXPECT_TRUE(equals(weighted.rotation, plain.rotation, 1e-10));
  EXPECT_TRUE(equals(weighted.moving_centroid, centroid(repeated_moving), 1e-12));
  // Unit weights are no weights; zero weights drop points.
  EXPECT_NEAR(qcp_rmsd(moving, target, std::vector<double>(12, 1.0)), qcp_rmsd(moving, target),
              1e-13);
  std::vector<double> first_six(12, 0.0);
  for (int k = 0; k < 6; ++k) first_six[static_cast<std::size_t>(k)] = 1.0;
  EXPECT_NEAR(qcp_rmsd(moving, target, first_six),
              qcp_rmsd(std::vector<Point>(moving.begin(), moving.begin() + 6),
                       std::vector<Point>(target.begin(), target.begin() + 6)),
              1e-12);
}

TEST(Qcp, SetsFarFromTheOriginKeepTheirDeviation) {
  Sets sets(31);
  std::vector<Point> const target = sets.cloud(200, 3.0);
  std::vector<Point> const moving = sets.moved(target, sets.rotation(), Vector3D(0, 0, 0), 0.05);
  double const near = qcp_rmsd(moving, target);
  Vector3D const far(1e6, -2e6, 3e6);
  std::vector<Point> far_moving, far_target;
  for (std::size_t k = 0; k < target.size(); ++k) {
    far_moving.push_back(moving[k] + far);
    far_target.push_back(target[k] - far);
  }
  EXPECT_NEAR(qcp_rmsd(far_moving, far_target), near, 1e-8);
}

TEST(Qcp, RejectsSetsOfDifferentOrZeroSizeAndBadWeights) {
  std::vector<Point> const two{Point(0, 0, 0), Point(1, 0, 0)};
  std::vector<Point> const three{Point(0, 0, 0), Point(1, 0, 0), Point(0, 1, 0)};
  EXPECT_THROW(qcp_rmsd(two, three), std::invalid_argument);
  EXPECT_EQ(message_of([&] { qcp_rmsd(two, three); }), "qcp_rmsd(): the point sets differ in size");
  EXPECT_EQ(message_of([&] { qcp_fit({}, {}); }), "qcp_fit(): no points");
  EXPECT_EQ(message_of([&] { qcp_rmsd(two, two, {1.0}); }),
            "qcp_rmsd(): one weight per point is needed");
  EXPECT_EQ(message_of([&] {
              qcp_fit(two, two, {0.0, 0.0});
            }),
            "qcp_fit(): the weights must have a positive sum");
}

}  // namespace
}  // namespace structmath
