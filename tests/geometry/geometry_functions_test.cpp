// SPDX-License-Identifier: MIT
// Tests of the point and point-set functions.
#include "structmath/geometry/geometry_functions.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "structmath/numeric/linear_algebra.hpp"
#include "support/geometry_random.hpp"

namespace structmath {
namespace {

constexpr double kPi = 3.14159265358979323846;

template <typename F>
std::string message_of(F f) {
  try {
    f();
  } catch (std::exception const& e) {
    return e.what();
  }
  return "no exception";
}

TEST(GeometryFunctions, DistancesOfAHandWorkedPair) {
  Point const a(1, 2, 3), b(4, 6, 3);
  EXPECT_EQ(distance(a, b), 5.0);
  EXPECT_EQ(sqrdistance(a, b), 25.0);
}

TEST(GeometryFunctions, AngleBetweenDirectionsIsClampedAndChecked) {
  EXPECT_EQ(angle<Vector3D>(Vector3D(1, 0, 0), Vector3D(-1, 0, 0), 1e-7).radians(),
            180.0 * 0.017453292519943295);
  EXPECT_EQ(angle(Vector3D(2, 0, 0), Vector3D(3, 0, 0)).radians(), 0.0);
  EXPECT_NEAR(angle(Vector3D(1, 0, 0), Vector3D(1, 1e-9, 0)).radians(), 0.0, 1e-8);
  EXPECT_NEAR(angle(Vector3D(1, 0, 0), Vector3D(1, 1, 0)).degrees(), 45.0, 1e-12);
  EXPECT_NEAR(angle(Point(1, 0, 0), Point(0, 0, 0), Point(0, 0, 7)).degrees(), 90.0, 1e-12);
  // Clamping near +-1: nearly parallel vectors of awkward lengths never throw.
  testing::GeometryRandom random(1);
  for (int n = 0; n < 1000; ++n) {
    Vector3D const v = random.vector();
    EXPECT_NO_THROW(angle(v, v * 3.7));
    EXPECT_NO_THROW(angle(v, -v * 0.3));
  }
  // The first vector is checked first; lengths at the tolerance count as zero.
  EXPECT_EQ(message_of([] { angle(Vector3D(0, 0, 1e-7), Vector3D(1, 0, 0), 1e-7); }),
            "Cannot normalize a zero length Vector");
  EXPECT_EQ(message_of([] { angle(Point(1, 1, 1), Point(1, 1, 1), Point(0, 0, 0)); }),
            "Cannot normalize a zero length Vector");
}

TEST(GeometryFunctions, TorsionSignFollowsTheRightHandRule) {
  Point const a(1, 0, 0), b(0, 0, 0), c(0, 1, 0);
  Angle const up = torsion_angle(a, b, c, Point(0, 1, 1));
  Angle const down = torsion_angle(a, b, c, Point(0, 1, -1));
  EXPECT_NEAR(std::fabs(up.degrees()), 90.0, 1e-12);
  EXPECT_EQ(down.radians(), -up.radians());
  // Looking down b->c (the +y axis), a at +x and d at -z: a right-handed quarter turn
  // about +y carries +x to -z.
  EXPECT_NEAR(down.degrees(), 90.0, 1e-12);
  EXPECT_NEAR(torsion_angle(a, b, c, Point(1, 1, 0)).degrees(), 0.0, 1e-12);
  EXPECT_NEAR(std::fabs(torsion_angle(a, b, c, Point(-1, 1, 0)).degrees()), 180.0, 1e-12);
  EXPECT_EQ(message_of([] {
              torsion_angle(Point(0, 0, 0), Point(1, 0, 0), Point(2, 0, 0), Point(3, 0, 0));
            }),
            "Cannot normalize a zero length Vector");
}

TEST(GeometryFunctions, ValidTorsionRejectsNearLinearBondPairs) {
  Angle const max_angle = Angle::from_degrees(170);
  auto bond_at = [](double degrees) {
    double const r = degrees * kPi / 180.0;
    return Vector3D(std::cos(r), std::sin(r), 0.3);
  };
  Vector3D const bond2(1, 0, 0);
  Vector3D const bond3(0, 0.5, 1);
  // Bond pairs at 175 and at 5 degrees are near-linear; 90 is fine.
  EXPECT_FALSE(valid_torsion(Vector3D(std::cos(175 * kPi / 180), std::sin(175 * kPi / 180), 0),
                             bond2, bond3, max_angle));
  EXPECT_FALSE(valid_torsion(Vector3D(std::cos(5 * kPi / 180), std::sin(5 * kPi / 180), 0), bond2,
                             bond3, max_angle));
  EXPECT_TRUE(valid_torsion(Vector3D(0, 1, 0), bond2, bond3, max_angle));
  EXPECT_TRUE(valid_torsion(bond_at(60), bond2, bond3, max_angle));
  // Degenerate bonds give false, never an exception.
  EXPECT_FALSE(valid_torsion(Vector3D(2, 0, 0), bond2, bond3, max_angle));
  EXPECT_FALSE(valid_torsion(Vector3D(0, 1, 0), bond2, Vector3D(-3, 0, 0), max_angle));
  EXPECT_FALSE(valid_torsion(Vector3D(0, 0, 0), bond2, bond3, max_angle));
  EXPECT_TRUE(
      valid_torsion(Point(1, 0, 0), Point(0, 0, 0), Point(0, 1, 0), Point(0, 1, 1), max_angle));
}

TEST(GeometryFunctions, CentroidsOfListsRangesAndSmallSets) {
  std::vector<Point> const points{Point(0, 0, 0), Point(2, 0, 0), Point(2, 4, 0), Point(0, 4, 6)};
  EXPECT_TRUE(equals(centroid(points), Point(1, 2, 1.5), 0.0));
  EXPECT_TRUE(equals(centroid(points.begin() + 1, points.begin() + 3), Point(2, 2, 0), 0.0));
  EXPECT_TRUE(equals(centroid(std::vector<Point>()), Point(0, 0, 0), 0.0));
  EXPECT_TRUE(equals(centroid(points[0], points[2]), Point(1, 2, 0), 0.0));
  EXPECT_TRUE(equals(centroid(points[0], points[1], points[3]), Point(2.0 / 3, 4.0 / 3, 2), 1e-15));
}

TEST(GeometryFunctions, ClosestPointPrefersTheFirstOfEqualDistances) {
  std::vector<Point> const points{Point(5, 0, 0), Point(1, 0, 0), Point(-1, 0, 0), Point(0, 1, 0)};
  EXPECT_EQ(closest_point(points, Point(0, 0, 0)), 1u);
  EXPECT_EQ(closest_distance(points, Point(0, 0, 0)), 1.0);
  EXPECT_EQ(closest_point(points, Point(4, 0, 0)), 0u);
  EXPECT_EQ(message_of([] { closest_point({}, Point()); }), "closest_point(): empty point list");
  EXPECT_EQ(message_of([] { closest_distance({}, Point()); }),
            "closest_distance(): empty point list");
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
  // Early exit: the bound 4 * 1.1^2 = 4.84 is crossed after the second point, while the
  // full RMS (1.87) is above 1.1 as well.
  EXPECT_EQ(rms_distance(a, b, 1.1), -1.0);
  // The exit is on the running sum, so it fires even when the late terms are zero.
  std::vector<Point> const c{Point(0, 0, 3), Point(1, 0, 0), Point(0, 1, 0), Point(0, 0, 1)};
  EXPECT_EQ(rms_distance(a, c, 1.4), -1.0);  // 9 > 4 * 1.96, though the RMS is 1.5

  std::vector<double> const twos(4, 2.0);
  EXPECT_DOUBLE_EQ(weighted_rms_distance(a, b, twos), std::sqrt(2.0) * rms);
  EXPECT_DOUBLE_EQ(weighted_rms_distance(a, b, twos, 3.0), std::sqrt(2.0) * rms);
  EXPECT_EQ(weighted_rms_distance(a, b, twos, 2.0), -1.0);
  std::vector<double> const w{1.0, 0.0, 5.0, 0.5};
  EXPECT_DOUBLE_EQ(weighted_rms_distance(a, b, w), std::sqrt((1.0 + 4.5) / 4.0));

  EXPECT_TRUE(std::isnan(rms_distance({}, {})));
  EXPECT_EQ(message_of([&] { rms_distance(a, {Point()}); }),
            "rms_distance(): fewer points in the second list than points");
  EXPECT_EQ(message_of([&] { weighted_rms_distance(a, b, {1.0}); }),
            "weighted_rms_distance(): fewer weights than points");
}

TEST(GeometryFunctions, WeightedInertiaTensorIsTheRawSecondMoment) {
  std::vector<Point> const points{Point(1, 2, 3), Point(-1, 0, 2)};
  THandle<Matrix3D> const t = weighted_inertia_tensor(points, {2.0, 3.0});
  // 2 * p p^T + 3 * q q^T.
  EXPECT_TRUE(equals(*t, Matrix3D(2 + 3, 4 + 0, 6 - 6, 4, 8, 12, 6 - 6, 12, 18 + 12), 0.0));
  THandle<Matrix3D> const other = weighted_inertia_tensor(points, {2.0, 3.0});
  EXPECT_NE(t.get(), other.get());  // a new matrix each time
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
}

TEST(GeometryFunctions, InternalCoordinatesFromCollinearReferencesStayFinite) {
  Point const a(2, 0, 0), b(1, 0, 0), c(0, 0, 0);
  Point const x = internal_to_orthogonal(a, 1.5, b, Angle::from_degrees(109.5), c, Angle(0.3));
  EXPECT_NEAR(distance(x, a), 1.5, 1e-12);
  EXPECT_NEAR(angle(x, a, b).degrees(), 109.5, 1e-10);
  EXPECT_EQ(message_of([] {
              internal_to_orthogonal(Point(), 1.0, Point(), Angle(1.0), Point(1, 0, 0), Angle(0.0));
            }),
            "Cannot normalize a zero length Vector");
}

TEST(GeometryFunctions, CollinearityOfTriplesAndRanges) {
  Angle const small = Angle::from_degrees(0.1);
  EXPECT_TRUE(collinear(Point(0, 0, 0), Point(1, 0, 0), Point(2, 0, 0), small, 1e-7));
  EXPECT_TRUE(collinear(Point(0, 0, 0), Point(2, 0, 0), Point(1, 0, 0), small, 1e-7));
  EXPECT_FALSE(collinear(Point(0, 0, 0), Point(1, 0, 0), Point(1, 1, 0), small, 1e-7));
  EXPECT_TRUE(collinear(Point(3, 3, 3), Point(3, 3, 3), Point(1, 8, 0), small, 1e-7));
  EXPECT_TRUE(collinear(Point(0, 0, 0), Point(1, 8, 0), Point(0, 0, 1e-8), small, 1e-7));
  // An offset of 0.01 over a length of 1 is 0.57 degrees.
  Point const bent(1, 0.01, 0);
  EXPECT_FALSE(collinear(Point(0, 0, 0), bent, Point(2, 0, 0), small, 1e-7));
  EXPECT_TRUE(collinear(Point(0, 0, 0), bent, Point(2, 0, 0), Angle::from_degrees(1.2), 1e-7));

  std::vector<Point> line{Point(1, 1, 1), Point(1, 1, 1), Point(2, 2, 2), Point(-4, -4, -4),
                          Point(7, 7, 7)};
  EXPECT_TRUE(collinear(line.begin(), line.end(), small, 1e-7));
  line.push_back(Point(7, 7, 7.5));
  EXPECT_FALSE(collinear(line.begin(), line.end(), small, 1e-7));
  // All points equal: no reference line, and every triple counts as collinear.
  std::vector<Point> const same(4, Point(1, 2, 3));
  EXPECT_TRUE(collinear(same.begin(), same.end(), small, 1e-7));
  EXPECT_EQ(message_of([&] { collinear(line.begin(), line.begin() + 2, small, 1e-7); }),
            "Cannot test less than three points for collinearity");
}

TEST(GeometryFunctions, AlignWithZxPutsTheFirstOnZAndTheSecondInZx) {
  Vector3D const u(1, 2, 2), v(0, 1, 0);
  Transformation const t = align_with_zx(u, v);
  Vector3D const tu = t * u;
  Vector3D const tv = t * v;
  EXPECT_TRUE(equals(tu, Vector3D(0, 0, 3), 1e-12));
  EXPECT_NEAR(tv.y(), 0.0, 1e-12);
  EXPECT_GT(tv.x(), 0.0);
  EXPECT_TRUE(equals(t.translation(), Vector3D(0, 0, 0), 0.0));
  EXPECT_NEAR(Determinant(t.rotation()), 1.0, 1e-12);
  EXPECT_EQ(message_of([] { align_with_zx(Vector3D(1, 1, 0), Vector3D(2, 2, 0)); }),
            "Cannot normalize a zero length Vector");
}

TEST(GeometryFunctions, AlignThreePointsOverRandomTriples) {
  testing::GeometryRandom random(13);
  for (int n = 0; n < 500; ++n) {
    Point const p1 = random.point(), p2 = random.point(), p3 = random.point();
    Point const q1 = random.point(), q2 = random.point(), q3 = random.point();
    Transformation const t = align_three_points(p1, p2, p3, q1, q2, q3);
    EXPECT_TRUE(equals(t * p1, q1, 1e-10));
    // p2 on the ray q1 -> q2, at its own distance from p1.
    Vector3D const along = t * p2 - q1;
    EXPECT_NEAR(along.cross(q2 - q1).length() / (q2 - q1).length(), 0.0, 1e-9);
    EXPECT_GT(along * (q2 - q1), 0.0);
    EXPECT_NEAR(along.length(), distance(p1, p2), 1e-10);
    // p3 in the plane of q1, q2, q3, on the side of q3.
    Vector3D const normal = (q2 - q1).cross(q3 - q1);
    Vector3D const to3 = t * p3 - q1;
    EXPECT_NEAR(to3 * normal / normal.length(), 0.0, 1e-9);
    EXPECT_GT(normal.cross(q2 - q1) * to3 * (normal.cross(q2 - q1) * (q3 - q1)), 0.0);
    // Rigid: lengths and handedness are kept.
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
    EXPECT_TRUE(equals(r * r.transpose(), Matrix3D(), 1e-12));
    EXPECT_NEAR(Determinant(r), 1.0, 1e-12);
    Vector3D const ru1 = r * u1;
    EXPECT_NEAR(ru1.cross(t1).length() / (u1.length() * t1.length()), 0.0, 1e-9);
    EXPECT_GT(ru1 * t1, 0.0);
    // r u2 in the half plane of t1 and t2.
    Vector3D const normal = t1.cross(t2);
    Vector3D const ru2 = r * u2;
    EXPECT_NEAR(ru2 * normal / (normal.length() * u2.length()), 0.0, 1e-9);
    EXPECT_GT((normal.cross(t1) * ru2) * (normal.cross(t1) * t2), 0.0);
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
  EXPECT_EQ(message_of([] {
              align_two_vectors(Vector3D(), Vector3D(0, 1, 0), Vector3D(1, 0, 0),
                                Vector3D(0, 1, 0));
            }),
            "Cannot normalize a zero length Vector");
}

}  // namespace
}  // namespace structmath
