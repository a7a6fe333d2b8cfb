// SPDX-License-Identifier: MIT
// Tests of Quaternion: axis-angle rotations, products, matrices and interpolation.
#include "structmath/geometry/quaternion.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <stdexcept>

#include "structmath/core/archive.hpp"
#include "support/geometry_support.hpp"

namespace structmath {
namespace {

constexpr double kPi = 3.14159265358979323846;

using testing::message_of;

TEST(Quaternion, QuarterTurnAboutZIsAnticlockwise) {
  Quaternion const q(Vector3D(0, 0, 5), Angle::from_degrees(90));
  EXPECT_TRUE(equals(q.rotate(Vector3D(1, 0, 0)), Vector3D(0, 1, 0), 1e-12));
  EXPECT_TRUE(equals(q, Quaternion(std::sqrt(0.5), 0, 0, std::sqrt(0.5)), 1e-15));
  EXPECT_NEAR(q.angle().degrees(), 90.0, 1e-12);
  EXPECT_TRUE(equals(q.axis(), Vector3D(0, 0, 1), 1e-12));
  EXPECT_EQ(Quaternion().axis()[2], 1.0);

  EXPECT_EQ(message_of<std::runtime_error>([] { Quaternion(Vector3D(0, 0, 1e-8), Angle(1.0)); }),
            "Cannot normalize a zero length Vector");
  Quaternion zero(0, 0, 0, 0);
  EXPECT_THROW(zero.rotate(Vector3D(1, 0, 0)), std::runtime_error);
  EXPECT_THROW(zero.rotation_matrix(), std::runtime_error);
  EXPECT_EQ(message_of<std::runtime_error>([&] { zero.normalize(); }),
            "Quaternion::normalize(): Cannot normalize a zero length Quaternion");
  EXPECT_EQ(zero, Quaternion(0, 0, 0, 0));  // unchanged by the failed normalisation
}

TEST(Quaternion, ProductAppliesRightOperandFirst) {
  Quaternion const about_z(Vector3D(0, 0, 1), Angle::from_degrees(90));
  Quaternion const about_x(Vector3D(1, 0, 0), Angle::from_degrees(90));
  // x first: (0, 1, 0) -> (0, 0, 1), which z leaves.  z first: -> (-1, 0, 0), which x
  // leaves.
  EXPECT_TRUE(equals((about_z * about_x).rotate(Vector3D(0, 1, 0)), Vector3D(0, 0, 1), 1e-12));
  EXPECT_TRUE(equals((about_x * about_z).rotate(Vector3D(0, 1, 0)), Vector3D(-1, 0, 0), 1e-12));
  Quaternion q = about_z;
  q *= about_x;
  EXPECT_EQ(q, about_z * about_x);
  // Hamilton's rules.
  Quaternion const i(0, 1, 0, 0), j(0, 0, 1, 0), k(0, 0, 0, 1);
  EXPECT_EQ(i * j, k);
  EXPECT_EQ(j * i, Quaternion(0, 0, 0, -1));
  EXPECT_EQ(i * i, Quaternion(-1, 0, 0, 0));
}

TEST(Quaternion, RandomRotationsAgreeWithTheirMatricesAndKeepLengths) {
  testing::GeometryRandom random(11);
  for (int n = 0; n < 500; ++n) {
    Quaternion const q = random.rotation();
    Vector3D const v = random.vector();
    Matrix3D const m = q.rotation_matrix();
    Vector3D const by_q = q.rotate(v);
    EXPECT_TRUE(equals(by_q, m * v, 1e-12));
    EXPECT_NEAR(by_q.length(), v.length(), 1e-12);
    EXPECT_TRUE(equals(m * m.transpose(), Matrix3D(), 1e-14));
    EXPECT_TRUE(equals(q.conjugate().rotate(by_q), v, 1e-12));
    // Back from the matrix to the same rotation, with w >= 0.
    Quaternion const back(m);
    double const sign = (q.w() < 0.0) ? -1.0 : 1.0;
    EXPECT_TRUE(
        equals(back, Quaternion(sign * q.w(), sign * q.x(), sign * q.y(), sign * q.z()), 1e-12));
  }
  // Half turns have a zero w and go through the diagonal branches.
  for (Vector3D const axis : {Vector3D(1, 0, 0), Vector3D(0, 1, 0), Vector3D(0, 0, 1),
                              Vector3D(1, 1, 0), Vector3D(0, 1, 1)}) {
    Quaternion const q(axis, Angle(kPi));
    EXPECT_TRUE(
        equals(Quaternion(q.rotation_matrix()).rotation_matrix(), q.rotation_matrix(), 1e-14));
  }
  EXPECT_EQ(Quaternion(Matrix3D()), Quaternion());
}

TEST(Quaternion, NonUnitQuaternionRotatesAsItsNormalisedForm) {
  Quaternion const q(Vector3D(1, 2, 3), Angle(0.7));
  Quaternion n(3 * q.w(), 3 * q.x(), 3 * q.y(), 3 * q.z());
  EXPECT_TRUE(equals(n.rotate(Vector3D(1, -1, 2)), q.rotate(Vector3D(1, -1, 2)), 1e-12));
  EXPECT_TRUE(equals(n.rotation_matrix(), q.rotation_matrix(), 1e-14));
  EXPECT_NEAR(n.norm(), 3.0, 1e-14);
  n.normalize();
  EXPECT_TRUE(equals(n, q, 1e-15));
}

TEST(Quaternion, SlerpMovesAtConstantSpeedAlongTheShortArc) {
  Vector3D const axis(1, -2, 0.5);
  Quaternion const a(axis, Angle(0.2));
  Quaternion const b(axis, Angle(1.4));
  for (double t : {0.0, 0.25, 0.5, 0.9, 1.0}) {
    EXPECT_TRUE(equals(slerp(a, b, t), Quaternion(axis, Angle(0.2 + 1.2 * t)), 1e-12)) << t;
  }
  // -b is the same rotation as b: the path must not take the long way round.
  Quaternion const minus_b(-b.w(), -b.x(), -b.y(), -b.z());
  EXPECT_TRUE(equals(slerp(a, minus_b, 0.5).rotation_matrix(),
                     Quaternion(axis, Angle(0.8)).rotation_matrix(), 1e-12));
  // Nearly equal rotations take the linear branch and still interpolate.
  Quaternion const c(axis, Angle(0.2 + 1e-4));
  EXPECT_NEAR(slerp(a, c, 0.5).angle().radians(), 0.2 + 0.5e-4, 1e-12);
}

TEST(Quaternion, PrintsAndRoundTripsThroughAnArchive) {
  std::ostringstream out;
  Quaternion(0.5, -0.5, 0.25, 1).print(out);
  EXPECT_EQ(out.str(), "(   0.500,  -0.500,   0.250,   1.000)");
  Quaternion const q(Vector3D(3, 1, 2), Angle(2.1));
  Archive archive;
  q.write(archive);
  Quaternion back;
  back.read(archive);
  EXPECT_EQ(back, q);
  EXPECT_TRUE(archive.at_end());
}

}  // namespace
}  // namespace structmath
