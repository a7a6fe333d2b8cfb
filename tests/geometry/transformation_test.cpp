// SPDX-License-Identifier: MIT
// Tests of Transformation: application, composition order, inversion, printing, archiving.
#include "structmath/geometry/transformation.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <vector>

#include "structmath/core/archive.hpp"
#include "structmath/geometry/quaternion.hpp"
#include "support/geometry_support.hpp"

namespace structmath {
namespace {

TEST(Transformation, TwelveNumbersAreMatrixRowsThenTranslation) {
  Transformation const t(0, -1, 0, 1, 0, 0, 0, 0, 1, 10, 20, 30);
  EXPECT_TRUE(equals(t * Point(1, 2, 3), Point(8, 21, 33), 0.0));
  // A displacement turns but does not move.
  EXPECT_TRUE(equals(t * Vector3D(1, 2, 3), Vector3D(-2, 1, 3), 0.0));
  EXPECT_EQ(t, Transformation(Matrix3D(0, -1, 0, 1, 0, 0, 0, 0, 1), Vector3D(10, 20, 30)));
  EXPECT_TRUE(equals(Transformation::identity() * Point(4, 5, 6), Point(4, 5, 6), 0.0));
}

TEST(Transformation, CompositionAppliesTheRightOperandFirst) {
  Transformation const turn(0, -1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0);
  Transformation const shift(1, 0, 0, 0, 1, 0, 0, 0, 1, 5, 0, 0);
  Point const p(1, 0, 0);
  EXPECT_TRUE(equals((turn * shift) * p, Point(0, 6, 0), 1e-15));  // shift, then turn
  EXPECT_TRUE(equals((shift * turn) * p, Point(5, 1, 0), 1e-15));  // turn, then shift
  testing::GeometryRandom random(3);
  for (int n = 0; n < 100; ++n) {
    Transformation const a(random.rotation().rotation_matrix(), random.vector());
    Transformation const b(random.rotation().rotation_matrix(), random.vector());
    Point const q = random.point();
    EXPECT_TRUE(equals((a * b) * q, a * (b * q), 1e-12));
  }
}

TEST(Transformation, InverseUndoesRigidScaledAndImproperMaps) {
  testing::GeometryRandom random(5);
  for (int n = 0; n < 200; ++n) {
    Matrix3D m = random.rotation().rotation_matrix();
    if (n % 3 == 1) m = m * Matrix3D(2.5, 0, 0, 0, 0.5, 0, 0, 0, 1);  // scaled
    if (n % 3 == 2) m = m * Matrix3D(1, 0, 0, 0, 1, 0, 0, 0, -1);     // a reflection
    Transformation const t(m, random.vector());
    EXPECT_TRUE(equals(t.inverse() * t, Transformation(), 1e-12));
    EXPECT_TRUE(equals(t * t.inverse(), Transformation(), 1e-12));
  }
  EXPECT_EQ(testing::message_of<std::runtime_error>(
                [] { Transformation(1, 0, 0, 0, 1, 0, 0, 0, 0, 1, 2, 3).inverse(); }),
            "Singular Matrix3D in Matrix3D::inverse()");
}

TEST(Transformation, PrintsRowsAndRoundTripsThroughAnArchive) {
  std::ostringstream out;
  Transformation(1, 0, 0, 0, -1, 0, 0, 0, 0.5, 1.25, -2, 3).print(out);
  EXPECT_EQ(out.str(),
            "rotation:    1.000   0.000   0.000\n"
            "             0.000  -1.000   0.000\n"
            "             0.000   0.000   0.500\n"
            "translation:    1.250  -2.000   3.000\n");

  Transformation const t(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12);
  Archive archive;
  t.write(archive);
  EXPECT_EQ(archive.size(), 12u * 8u);
  Transformation back;
  back.read(archive);
  EXPECT_EQ(back, t);

  std::vector<unsigned char> bytes = archive.bytes();
  bytes.resize(bytes.size() - 1);
  Archive truncated(bytes);
  Transformation kept;
  EXPECT_THROW(kept.read(truncated), std::runtime_error);
  EXPECT_EQ(kept, Transformation());
}

}  // namespace
}  // namespace structmath
