// SPDX-License-Identifier: MIT
// Tests of the point and point-set functions.
#include "structmath/geometry/geometry_functions.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "structmath/numeric/linear_algebra.hpp"
#include "support/geometry_support.hpp"

namespace structmath {
namespace {

constexpr double kPi = 3.14159265358979323846;

using testing::message_of;

TEST(GeometryFunctions, DistancesAndAnglesAreExactAndClamped) {
  EXPECT_EQ(distance(Point(1, 2, 3), Point(4, 6, 3)), 5.0);
  EXPECT_EQ(sqrdistance(Point(1, 2, 3), Point(4, 6, 3)), 25.0);
  EXPECT_EQ(angle<Vector3D>(Vector3D(1, 0, 0), Vector3D(-1, 0, 0), 1e-7).radians(),
            180.0 * 0.017453292519943295);
  EXPECT_EQ(angle(Vector3D(2, 0, 0), Vector3D(3, 0, 0)).radians(), 0.0);
  EXPECT_NEAR(angle(Point(1, 0, 0), Point(0, 0, 0), Point(1, 1, 0)).degrees(), 45.0, 1e-12);
  // Rounding near +-1 is clamped: nearly parallel vectors of awkward lengths never throw.
  testing::GeometryRandom random(1);
  for (int n = 0; n < 1000; ++n) {
    Vector3D const v = random.vector();
    EXPECT_NO_THROW(angle(v, v * 3.7));
    EXPECT_NO_THROW(angle(v, -v * 0.3));
  }
}

TEST(GeometryFunctions, ZeroAndParallelDirectionsThrowTheZeroLengthMessage) {
  using Call = std::function<void()>;
  for (Call const& call : std::vector<Call>{
           // A length equal to the tolerance counts as zero.
           [] { angle(Vector3D(0, 0, 1e-7), Vector3D(1, 0, 0), 1e-7); },
           [] { angle(Point(1, 1, 1), Point(1, 1, 1), Point(0, 0, 0)); },
           [] { torsion_angle(Point(0, 0, 0), Point(1, 0, 0), Point(2, 0, 0), Point(3, 0, 0)); },
           [] { internal_to_orthogonal(Point(), 1, Point(), Angle(1), Point(1, 0, 0), Angle(0)); },
           [] { align_with_zx(Vector3D(1, 1, 0), Vector3D(2, 2, 0)); },
           [] {
             align_two_vectors(Vector3D(), Vector3D(0, 1, 0), Vector3D(1, 0, 0), Vector3D(0, 1, 0));
           }}) {
    EXPECT_EQ(message_of<std::runtime_error>(call), "Cannot normalize a zero length Vector");
  }
}

TEST(GeometryFunctions, TorsionSignFollowsTheRightHandRule) {
  Point const a(1, 0, 0), b(0, 0, 0), c(0, 1, 0);
  // Looking down b->c (the +y axis), a at +x and d at -z: a right-handed quarter turn
  // about +y carries +x to -z.
  EXPECT_NEAR(torsion_angle(a, b, c, Point(0, 1, -1)).degrees(), 90.0, 1e-12);
  EXPECT_NEAR(torsion_angle(a, b, c, Point(0, 1, 1)).degrees(), -90.0, 1e-12);
  EXPECT_NEAR(torsion_angle(a, b, c, Point(1, 1, 0)).degrees(), 0.0, 1e-12);
  EXPECT_NEAR(std::fabs(torsion_angle(a, b, c, Point(-1, 1, 0)).degrees()), 180.0, 1e-12);
}

TEST(GeometryFunctions, ValidTorsionRejectsNearLinearAndDegenerateBondPairs) {
  Angle const max_angle = Angle::from_degrees(170);
  auto valid = [&](Vector3D const& b1, Vector3D const& b2, Vector3D const& b3) {
    return valid_torsion(b1, b2, b3, max_angle);
  };
  auto at = [](double degrees) {
    return Vector3D(std::cos(degrees * kPi / 180), std::sin(degrees * kPi / 180), 0);
  };
  Vector3D const bond2(1, 0, 0), bond3(0, 0.5, 1);
  EXPECT_FALSE(valid(at(175), bond2, bond3));
  EXPECT_FALSE(valid(at(5), bond2, bond3));
  EXPECT_TRUE(valid(at(90), bond2, bond3));
  // Degenerate bonds give false, never an exception.
  EXPECT_FALSE(valid(Vector3D(2, 0, 0), bond2, bond3));
  EXPECT_FALSE(valid(at(90), bond2, Vector3D(-3, 0, 0)));
  EXPECT_FALSE(valid(Vector3D(0, 5e-8, 0), Vector3D(100, 0, 0), bond3));
  EXPECT_TRUE(
      valid_torsion(Point(1, 0, 0), Point(0, 0, 0), Point(0, 1, 0), Point(0, 1, 1), max_angle));
}

TEST(GeometryFunctions, CentroidsAndClosestPoints) {
  std::vector<Point> const points{Point(0, 0, 0), Point(2, 0, 0), Point(2, 4, 0), Point(0, 4, 6)};
  EXPECT_TRUE(equals(centroid(points), Point(1, 2, 1.5), 0.0));
  EXPECT_TRUE(equals(centroid(points.begin() + 1, points.begin() + 3), Point(2, 2, 0), 0.0));
  EXPECT_TRUE(equals(centroid(std::vector<Point>()), Point(0, 0, 0), 0.0));
  EXPECT_TRUE(equals(centroid(points[0], points[2]), Point(1, 2, 0), 0.0));
  EXPECT_TRUE(equals(centroid(points[0], points[1], points[3]), Point(2.0 / 3, 4.0 / 3, 2), 1e-15));

  // The first of equally near points wins.
  std::vector<Point> const row{Point(5, 0, 0), Point(1, 0, 0), Point(-1, 0, 0), Point(0, 1, 0)};
  EXPECT_EQ(closest_point(row, Point(0, 0, 0)), 1u);
  EXPECT_EQ(closest_distance(row, Point(0, 0, 0)), 1.0);
  EXPECT_EQ(closest_point(row, Point(4, 0, 0)), 0u);
  EXPECT_EQ(message_of([] { closest_point({}, Point()); }), "closest_point(): empty point list");
  EXPECT_EQ(message_of([] { closest_distance({}, Point()); }),
            "closest_distance(): empty point list");
}

TEST(GeometryFunctions, LimitFormsKeepListsExactlyAtTheirLimit) {
  // The early exit needs the running sum to exceed the bound, so identical lists are
  // within a limit of zero.
  std::vector<Point> const a{Point(1, 2, 3), Point(-4, 0.5, 2), Point(0, 0, 0)};
  EXPECT_EQ(rms_distance(a, a, 0.0), 0.0);
  EXPECT_EQ(weighted_rms_distance(a, a, {1.0, 2.0, 0.5}, 0.0), 0.0);
}

TEST(GeometryFunctions, RmsFormsAgreeAndTheLimitFormsStopEarly) {
  std::vector<Point> const a{Point(0, 0, 0), Point(1, 0, 0), Point(0, 1, 0), Point(0, 0, 1)};
  std::vector<Point> const b{Point(0, 0, 1), Point(1, 0, 2), Point(0, 1, 0), Point(0, 3, 1)};
  // Squared deviations 1, 4, 0, 9: RMS sqrt(14/4), largest 3.
  double const rms = std::sqrt(14.0 / 4.0);
  EXPECT_DOUBLE_EQ(rms_distance(a, b), rms);
  EXPECT_DOUBLE_EQ(max_distance(a, b), 3.0);
  EXPECT_DOUBLE_EQ(rms_distance(a, b, 2.0), rms);
  EXPECT_EQ(rms_distance(a, b, 1.8), -1.0);
  // The exit is on the running sum, so it fires even when the late terms are zero.
  std::vector<Point> const c{Point(0, 0, 3), Point(1, 0, 0), Point(0, 1, 0), Point(0, 0, 1)};
  EXPECT_EQ(rms_distance(a, c, 1.4), -1.0);  // 9 > 4 * 1.96, though the RMS is 1.5

  // Weighted sums are divided by the number of points, not by the weights.
  std::vector<double> const twos(4, 2.0);
  EXPECT_DOUBLE_EQ(weighted_rms_distance(a, b, twos), std::sqrt(2.0) * rms);
  EXPECT_DOUBLE_EQ(weighted_rms_distance(a, b, twos, 3.0), std::sqrt(2.0) * rms);
  EXPECT_EQ(weighted_rms_distance(a, b, twos, 2.0), -1.0);
  EXPECT_DOUBLE_EQ(weighted_rms_distance(a, b, {1.0, 0.0, 5.0, 0.5}), std::sqrt(5.5 / 4.0));

  // The bound is n times the squared limit; a sum equal to it is within the limit. With
  // three points exactly `limit` away the sum is exactly 3 * (limit * limit), which
  // (3 * limit) * limit falls short of for these limits.
  for (double const limit : {1.011, 1.013, 1.014}) {
    ASSERT_LT((3.0 * limit) * limit, 3.0 * (limit * limit)) << limit;
    std::vector<Point> const off{Point(limit, 0, 0), Point(0, limit, 0), Point(0, 0, limit)};
    std::vector<Point> const origin(3, Point(0, 0, 0));
    EXPECT_EQ(rms_distance(origin, off, limit), rms_distance(origin, off)) << limit;
    EXPECT_EQ(weighted_rms_distance(origin, off, {1, 1, 1}, limit), rms_distance(origin, off));
  }
  EXPECT_EQ(rms_distance(a, a, 0.0), 0.0);  // a zero sum does not exceed a zero bound

  EXPECT_TRUE(std::isnan(rms_distance({}, {})));
  EXPECT_EQ(message_of([&] { rms_distance(a, {Point()}); }),
            "rms_distance(): fewer points in the second list than points");
  EXPECT_EQ(message_of([&] { weighted_rms_distance(a, b, {1.0}); }),
            "weighted_rms_distance(): fewer weights than points");

  // The weighted second moment of the raw coordinates, 2 p p^T + 3 q q^T, in a new matrix.
  THandle<Matrix3D> const t = weighted_inertia_tensor({Point(1, 2, 3), Point(-1, 0, 2)}, {2, 3});
  EXPECT_TRUE(equals(*t, Matrix3D(5, 4, 0, 4, 8, 12, 0, 12, 30), 0.0));
  EXPECT_NE(t.get(), weighted_inertia_tensor({Point()}, {1.0}).get());
}

TEST(GeometryFunctions, InternalCoordinatesRoundTripOverRandomInput) {
  testing::GeometryRandom random(7);
  for (int n = 0; n < 1000; ++n) {
    Point const a = random.point(), b = random.point(), c = random.point();
    double const dist = random.value(0.5, 5.0);
    Angle const theta(random.value(0.05, kPi - 0.05));
    Angle const tau(random.value(-kPi, kPi));
    Point const x = internal_to_orthogonal(a, dist, b, theta, c, tau);
    EXPECT_NEAR(distance(x, a), dist, 1e-10);
    EXPECT_NEAR(angle(x, a, b).radians(), theta.radians(), 1e-8);
    EXPECT_NEAR(torsion_angle(x, a, b, c).radians(), tau.radians(), 1e-8);
  }
  // References a hair off a line still define a plane, and the torsion is kept (the
  // sine of a tiny angle loses digits, so distance and angle are only near).
  for (double const off : {5e-8, 7e-8, 1e-7}) {
    Point const a(2, 0, 0), b(1, 0, 0), c(0, off, 0);
    Point const x =
        internal_to_orthogonal(a, 1.5, b, Angle::from_degrees(109.5), c, Angle::from_degrees(60.0));
    EXPECT_NEAR(torsion_angle(x, a, b, c, 1e-15).degrees(), 60.0, 1e-6) << off;
  }
  // Collinear references leave the torsion undefined but the point finite and placed.
  Point const x = internal_to_orthogonal(Point(2, 0, 0), 1.5, Point(1, 0, 0),
                                         Angle::from_degrees(109.5), Point(), Angle(0.3));
  EXPECT_NEAR(distance(x, Point(2, 0, 0)), 1.5, 1e-12);
  EXPECT_NEAR(angle(x, Point(2, 0, 0), Point(1, 0, 0)).degrees(), 109.5, 1e-10);
}

TEST(GeometryFunctions, CollinearityOfTriplesAndRanges) {
  Angle const small = Angle::from_degrees(0.1);
  auto triple = [&](Point const& b, Point const& c) {
    return collinear(Point(0, 0, 0), b, c, small, 1e-7);
  };
  EXPECT_TRUE(triple(Point(1, 0, 0), Point(2, 0, 0)));
  EXPECT_TRUE(triple(Point(2, 0, 0), Point(1, 0, 0)));
  EXPECT_FALSE(triple(Point(1, 0, 0), Point(1, 1, 0)));
  EXPECT_TRUE(triple(Point(1, 8, 0), Point(0, 0, 1e-8)));  // two equal points
  // An offset of 0.01 over a length of 1 is 0.57 degrees.
  EXPECT_FALSE(triple(Point(1, 0.01, 0), Point(2, 0, 0)));
  EXPECT_TRUE(
      collinear(Point(0, 0, 0), Point(1, 0.01, 0), Point(2, 0, 0), Angle::from_degrees(1.2), 1e-7));

  // A repeated first point is skipped when choosing the reference line.
  std::vector<Point> line{Point(1, 1, 1), Point(1, 1, 1), Point(2, 2, 2), Point(-4, -4, -4)};
  EXPECT_TRUE(collinear(line.begin(), line.end(), small, 1e-7));
  line.push_back(Point(7, 7, 7.5));
  EXPECT_FALSE(collinear(line.begin(), line.end(), small, 1e-7));
  std::vector<Point> const same(4, Point(1, 2, 3));
  EXPECT_TRUE(collinear(same.begin(), same.end(), small, 1e-7));
  EXPECT_EQ(message_of([&] { collinear(line.begin(), line.begin() + 2, small, 1e-7); }),
            "Cannot test less than three points for collinearity");
}

TEST(GeometryFunctions, AlignWithZxAndAlignThreePointsOverRandomTriples) {
  Transformation const zx = align_with_zx(Vector3D(1, 2, 2), Vector3D(0, 1, 0));
  EXPECT_TRUE(equals(zx * Vector3D(1, 2, 2), Vector3D(0, 0, 3), 1e-12));
  EXPECT_NEAR((zx * Vector3D(0, 1, 0)).y(), 0.0, 1e-12);
  EXPECT_GT((zx * Vector3D(0, 1, 0)).x(), 0.0);
  EXPECT_TRUE(equals(zx.translation(), Vector3D(0, 0, 0), 0.0));

  testing::GeometryRandom random(13);
  for (int n = 0; n < 500; ++n) {
    Point const p1 = random.point(), p2 = random.point(), p3 = random.point();
    Point const q1 = random.point(), q2 = random.point(), q3 = random.point();
    Transformation const t = align_three_points(p1, p2, p3, q1, q2, q3);
    EXPECT_TRUE(equals(t * p1, q1, 1e-10));
    // p2 on the ray q1 -> q2, at its own distance from p1.
    Vector3D const along = t * p2 - q1;
    EXPECT_TRUE(equals(along, distance(p1, p2) / distance(q1, q2) * (q2 - q1), 1e-9));
    // p3 in the plane of q1, q2, q3, on the side of q3.
    Vector3D const normal = (q2 - q1).cross(q3 - q1);
    Vector3D const to3 = t * p3 - q1;
    EXPECT_NEAR(to3 * normal / normal.length(), 0.0, 1e-9);
    EXPECT_GT(normal.cross(q2 - q1) * to3 * (normal.cross(q2 - q1) * (q3 - q1)), 0.0);
    // Rigid and proper.
    EXPECT_NEAR(distance(t * p2, t * p3), distance(p2, p3), 1e-10);
    EXPECT_NEAR(Determinant(t.rotation()), 1.0, 1e-12);
  }
}

TEST(GeometryFunctions, AlignTwoVectorsTurnsBothOntoTheirTargets) {
  testing::GeometryRandom random(17);
  for (int n = 0; n < 500; ++n) {
    Vector3D const u1 = random.vector(), u2 = random.vector();
    Vector3D const t1 = random.vector(), t2 = random.vector();
    Matrix3D const r = align_two_vectors(u1, u2, t1, t2);
    EXPECT_NEAR(Determinant(r), 1.0, 1e-12);
    EXPECT_TRUE(equals(r * u1, u1.length() / t1.length() * t1, 1e-9));
    // r u2 in the half plane of t1 and t2.
    Vector3D const normal = t1.cross(t2);
    EXPECT_NEAR(r * u2 * normal / (normal.length() * u2.length()), 0.0, 1e-9);
    EXPECT_GT((normal.cross(t1) * (r * u2)) * (normal.cross(t1) * t2), 0.0);
  }
  // Opposite first vectors need the perpendicular axis.
  Matrix3D const r = align_two_vectors(Vector3D(1, 0, 0), Vector3D(0, 1, 0), Vector3D(-2, 0, 0),
                                       Vector3D(0, 0, 1));
  EXPECT_TRUE(equals(r * Vector3D(1, 0, 0), Vector3D(-1, 0, 0), 1e-12));
  EXPECT_TRUE(equals(r * Vector3D(0, 1, 0), Vector3D(0, 0, 1), 1e-12));
  // A second vector parallel to the first leaves only the first turn.
  Matrix3D const first_only =
      align_two_vectors(Vector3D(1, 0, 0), Vector3D(3, 0, 0), Vector3D(0, 1, 0), Vector3D(1, 1, 0));
  EXPECT_TRUE(equals(first_only * Vector3D(1, 0, 0), Vector3D(0, 1, 0), 1e-12));
}

}  // namespace
}  // namespace structmath
