// SPDX-License-Identifier: MIT
// Tests of Plane: construction, distances, angles, frames, fitting, intersections.
#include "structmath/geometry/plane.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "structmath/core/archive.hpp"
#include "support/geometry_support.hpp"

namespace structmath {
namespace {

using testing::message_of;

// (v1, v2, normal) is a right-handed orthonormal frame with v1 = v2 x normal.
void expect_frame(Plane const& p) {
  EXPECT_NEAR(p.normal().length(), 1.0, 1e-14);
  EXPECT_NEAR(p.v2().length(), 1.0, 1e-14);
  EXPECT_NEAR(p.v2() * p.normal(), 0.0, 1e-14);
  EXPECT_TRUE(equals(p.v2().cross(p.normal()), p.v1(), 1e-14));
}

TEST(Plane, ConstructorsAgreeOnOnePlane) {
  Plane const p;
  EXPECT_TRUE(equals(p.normal(), Vector3D(1, 0, 0), 0.0));
  EXPECT_EQ(p.distance(), 0.0);
  EXPECT_TRUE(equals(p.v1(), Vector3D(0, -1, 0), 0.0));
  EXPECT_TRUE(equals(p.v2(), Vector3D(0, 0, -1), 0.0));

  // The plane z = 5 in every form; the distance given with a normal is not rescaled.
  Plane const by_distance(Vector3D(0, 0, 2), 5.0);
  for (Plane const& q : {by_distance, Plane(Vector3D(0, 0, 3), Point(7, -1, 5)),
                         Plane(Vector3D(2, 0, 0), Vector3D(0, 4, 0), 5.0),
                         Plane(Vector3D(1, 1, 0), Vector3D(-1, 1, 0), Point(0, 0, 5)),
                         Plane(Point(0, 0, 5), Point(1, 0, 5), Point(0, 1, 5))}) {
    EXPECT_EQ(q, by_distance);
    expect_frame(q);
  }
  // The spanning order sets the sign of the normal.
  EXPECT_TRUE(
      equals(Plane(Vector3D(0, 1, 0), Vector3D(1, 0, 0), 5.0).normal(), Vector3D(0, 0, -1), 0.0));

  auto const zero_length = [](auto make) { return message_of<std::runtime_error>(make); };
  std::string const zero = "Cannot normalize a zero length Vector";
  EXPECT_EQ(zero_length([] { Plane(Vector3D(0, 0, 1e-7), 1.0); }), zero);
  EXPECT_EQ(zero_length([] { Plane(Vector3D(1, 2, 3), Vector3D(2, 4, 6), 1.0); }), zero);
  EXPECT_EQ(zero_length([] { Plane(Point(0, 0, 0), Point(1, 1, 1), Point(3, 3, 3)); }), zero);
  EXPECT_EQ(zero_length([] { Plane().angle(Vector3D(0, 0, 0)); }), zero);
}

TEST(Plane, SignedDistancesOfPointsAndParallelPlanes) {
  Plane const z0(Vector3D(0, 0, 1), 0.0);
  EXPECT_EQ(z0.signed_distance(Point(0, 0, 3)), -3.0);  // negative where the normal points
  EXPECT_EQ(z0.signed_distance(Point(1, 1, -2)), 2.0);
  EXPECT_TRUE(equals(z0.projection(Point(4, 5, 3)), Point(4, 5, 0), 0.0));

  Plane const z1(Vector3D(0, 0, 1), 1.0);
  EXPECT_EQ(z1.signed_distance(Plane(Vector3D(0, 0, 1), 4.0)), 3.0);
  EXPECT_EQ(z1.signed_distance(Plane(Vector3D(0, 0, -1), -4.0)), 3.0);  // also z = 4
  EXPECT_EQ(z1.signed_distance(Plane(Vector3D(0, 0, -1), 2.0)), -3.0);  // z = -2
  EXPECT_EQ(z1.signed_distance(Plane(Vector3D(0, 1, 1), 4.0)), 0.0);
  EXPECT_EQ(z1.signed_distance(Plane(Vector3D(1e-4, 0, 1), 2.0)), 1.0);  // within 1e-6
}

TEST(Plane, AnglesToPlanesAreFoldedAndToVectorsKeepTheNormalQuirk) {
  Plane const z(Vector3D(0, 0, 1), 0.0);
  EXPECT_EQ(z.angle(Plane(Vector3D(0, 0, -1), 3.0)).radians(), 0.0);
  EXPECT_NEAR(z.angle(Plane(Vector3D(0, 1, 1), 0.0)).degrees(), 45.0, 1e-12);
  EXPECT_NEAR(z.angle(Plane(Vector3D(0, 1, -1), 0.0)).degrees(), 45.0, 1e-12);
  EXPECT_NEAR(z.angle(Plane(Vector3D(1, 0, 0), 0.0)).degrees(), 90.0, 1e-12);

  // Along the normal the answer is 0, not 90: the discontinuity is deliberate.
  EXPECT_EQ(z.angle(Vector3D(0, 0, 2)).radians(), 0.0);
  EXPECT_EQ(z.angle(Vector3D(0, 0, -2)).radians(), 0.0);
  EXPECT_NEAR(z.angle(Vector3D(0, 1e-3, 1)).degrees(), 90.0 - 0.0573, 1e-4);
  EXPECT_NEAR(z.angle(Vector3D(1, 1, 0)).radians(), 0.0, 1e-15);
  EXPECT_NEAR(z.angle(Vector3D(0.5, 0, std::sqrt(0.75))).degrees(), 60.0, 1e-12);
  EXPECT_NEAR(z.angle(Vector3D(0.5, 0, -std::sqrt(0.75))).degrees(), 60.0, 1e-12);
}

TEST(Plane, LocalAndGlobalCoordinatesAreInversesOverRandomPlanes) {
  testing::GeometryRandom random(21);
  for (int n = 0; n < 300; ++n) {
    Plane const plane(random.vector(), random.value());
    expect_frame(plane);
    Point const p = random.point(), q = random.point();
    Point const local = plane.global_to_local_coord(p);
    EXPECT_NEAR(local.z(), -plane.signed_distance(p), 1e-12);
    EXPECT_TRUE(equals(plane.local_to_global_coord(local), p, 1e-12));
    EXPECT_TRUE(equals(plane.global_to_local_coord(plane.local_to_global_coord(q)), q, 1e-12));
  }
  // The local origin is the foot of the perpendicular from the global origin.
  Plane const z5(Vector3D(0, 0, 1), 5.0);
  EXPECT_TRUE(equals(z5.local_to_global_coord(Point(0, 0, 0)), Point(0, 0, 5), 0.0));
}

TEST(Plane, LeastSquaresRecoversThePlaneOfCoplanarAndScatteredPoints) {
  Plane const fit({Point(0, 0, 2), Point(1, 0, 2), Point(1, 1, 2), Point(0, 1, 2)});
  EXPECT_NEAR(std::fabs(fit.normal().z()), 1.0, 1e-12);
  EXPECT_NEAR(fit.distance() * fit.normal().z(), 2.0, 1e-12);  // matching signs
  expect_frame(fit);

  testing::GeometryRandom random(23);
  for (int trial = 0; trial < 20; ++trial) {
    Plane const truth(random.vector(), random.value());
    std::vector<Point> points;
    for (int n = 0; n < 200; ++n) {
      Point const in_plane = truth.local_to_global_coord(Point(random.value(), random.value(), 0));
      points.push_back(in_plane + random.value(-0.01, 0.01) * truth.normal());
    }
    EXPECT_TRUE(equals(Plane(points), truth, 0.01)) << trial;
  }

  auto const rejected = [](std::vector<Point> const& points) {
    return message_of<std::invalid_argument>([&] { Plane{points}; });
  };
  EXPECT_EQ(rejected({Point(), Point(1, 0, 0)}),
            "Cannot construct a Plane from less than three points");
  std::string const collinear = "Cannot construct a Plane from collinear points";
  EXPECT_EQ(rejected({Point(0, 0, 0), Point(1, 1, 1), Point(2, 2, 2)}), collinear);
  EXPECT_EQ(rejected({Point(0, 0, 0), Point(0, 0, 0), Point(1, 0, 0)}), collinear);
}

TEST(Plane, EqualsAcceptsTheFlippedFormButExactEqualityDoesNot) {
  Plane const up(Vector3D(0, 0, 1), 1.0);
  EXPECT_TRUE(equals(up, Plane(Vector3D(0, 0, -1), -1.0), 0.0));
  EXPECT_FALSE(up == Plane(Vector3D(0, 0, -1), -1.0));
  EXPECT_TRUE(up == Plane(Vector3D(0, 0, 7), 1.0));
  EXPECT_FALSE(equals(up, Plane(Vector3D(0, 0, -1), 1.0), 0.5));
  EXPECT_TRUE(equals(up, Plane(Vector3D(0, 1e-3, 1), 1.0005), 1e-3));
  EXPECT_FALSE(equals(up, Plane(Vector3D(0, 1e-3, 1), 1.0005), 1e-4));
}

TEST(Plane, IntersectionsOfThreeAndOfTwoPlanes) {
  Plane const x(Vector3D(1, 0, 0), 1.0), y(Vector3D(0, 2, 0), 2.0), z(Vector3D(0, 0, -1), 3.0);
  Point point(9, 9, 9);
  ASSERT_TRUE(Plane::plane_intersection(x, y, z, point));
  EXPECT_TRUE(equals(point, Point(1, 2, -3), 1e-15));

  testing::GeometryRandom random(29);
  for (int n = 0; n < 100; ++n) {
    Plane const a(random.vector(), random.value()), b(random.vector(), random.value()),
        c(random.vector(), random.value());
    Point common;
    ASSERT_TRUE(Plane::plane_intersection(a, b, c, common));
    for (Plane const& p : {a, b, c}) EXPECT_NEAR(p.signed_distance(common), 0.0, 1e-8);
    Vector3D direction;
    Point on_line;
    ASSERT_TRUE(Plane::plane_intersection(a, b, direction, on_line));
    EXPECT_NEAR(direction.length(), 1.0, 1e-14);
    EXPECT_NEAR(on_line.vector() * direction, 0.0, 1e-9);  // nearest the origin
    for (Plane const& p : {a, b}) EXPECT_NEAR(p.distance(on_line + 3.0 * direction), 0.0, 1e-9);
  }

  // Parallel planes have no single common point and no common line: outputs untouched.
  Plane const z1(Vector3D(0, 0, 1), 1.0), z2(Vector3D(0, 0, -1), 2.0), z3(Vector3D(0, 0, 2), 0);
  Point untouched(4, 5, 6);
  Vector3D direction(7, 8, 9);
  EXPECT_FALSE(Plane::plane_intersection(z1, z2, z3, untouched));
  EXPECT_FALSE(Plane::plane_intersection(x, z1, z2, untouched));
  EXPECT_FALSE(Plane::plane_intersection(z1, z2, direction, untouched));
  EXPECT_TRUE(equals(untouched, Point(4, 5, 6), 0.0));
  EXPECT_TRUE(equals(direction, Vector3D(7, 8, 9), 0.0));
  ASSERT_TRUE(Plane::plane_intersection(x, z1, direction, untouched));
  EXPECT_TRUE(equals(untouched, Point(1, 0, 1), 1e-15));
}

TEST(Plane, PrintsThreeLinesAndRoundTripsThroughAnArchive) {
  std::ostringstream out;
  Plane(Vector3D(0, 0, 1), 2.5).print(out);
  EXPECT_EQ(out.str(),
            "normal:    0.000   0.000   1.000, distance: 2.500\n"
            "    v1:   -1.000   0.000   0.000\n"
            "    v2:    0.000  -1.000   0.000\n");
  out << 0.25;  // the stream is left fixed, precision 3
  EXPECT_EQ(out.str().substr(out.str().size() - 5), "0.250");

  Plane const p(Vector3D(1, -2, 3), 4.5);
  Archive archive;
  p.write(archive);
  EXPECT_EQ(archive.size(), 10u * 8u);
  Plane back;
  back.read(archive);
  EXPECT_EQ(back, p);
  archive.rewind();  // field order: normal, distance, v1, v2
  double value = 0.0;
  for (int i = 0; i < 4; ++i) archive >> value;
  EXPECT_EQ(value, 4.5);

  std::vector<unsigned char> bytes = archive.bytes();
  bytes.resize(bytes.size() - 8);
  Archive truncated(bytes);
  Plane kept;
  EXPECT_THROW(kept.read(truncated), std::runtime_error);
  EXPECT_EQ(kept, Plane());
}

}  // namespace
}  // namespace structmath
