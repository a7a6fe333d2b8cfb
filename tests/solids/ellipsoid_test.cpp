// SPDX-License-Identifier: MIT
// Tests of Ellipsoid: the validity checks and their order, printing and comparison.
#include "structmath/solids/ellipsoid.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>

namespace structmath {
namespace {

std::string check_message(Vector3D const& a1, Vector3D const& a2, Vector3D const& a3) {
  try {
    Ellipsoid const e(Point(1.0, 2.0, 3.0), a1, a2, a3);
    return "";
  } catch (std::runtime_error const& e) {
    return e.what();
  }
}

Vector3D const x_axis(1.0, 0.0, 0.0), y_axis(0.0, 1.0, 0.0), z_axis(0.0, 0.0, 1.0);

TEST(Ellipsoid, DefaultIsTheUnitSphereAtTheOrigin) {
  Ellipsoid const e;
  EXPECT_TRUE(equals(e.centre(), Point(0.0, 0.0, 0.0), 0.0));
  EXPECT_TRUE(equals(e.semi_axis1(), x_axis, 0.0));
  EXPECT_TRUE(equals(e.semi_axis2(), y_axis, 0.0));
  EXPECT_TRUE(equals(e.semi_axis3(), z_axis, 0.0));
  EXPECT_NO_THROW(e.sanity_check());
  EXPECT_TRUE(e == Ellipsoid(Point(0.0, 0.0, 0.0), x_axis, y_axis, z_axis));
}

TEST(Ellipsoid, RejectsShortAxesFirstWithTheirLength) {
  Vector3D const zero;
  EXPECT_EQ(check_message(zero, y_axis, z_axis), "Ellipsoid semi_axis1 length is suspicious: 0");
  EXPECT_EQ(check_message(x_axis, zero, z_axis), "Ellipsoid semi_axis2 length is suspicious: 0");
  EXPECT_EQ(check_message(x_axis, y_axis, Vector3D(0.0, 0.0, 5e-8)),
            "Ellipsoid semi_axis3 length is suspicious: 5e-08");
  // Length 3e-7 is long enough; its direction is then checked as usual.
  EXPECT_EQ(check_message(x_axis, y_axis, Vector3D(0.0, 0.0, 3e-7)), "");
  // Every length is checked before any pair: parallel axes 1 and 2 with a zero axis 3.
  EXPECT_EQ(check_message(x_axis, x_axis, zero), "Ellipsoid semi_axis3 length is suspicious: 0");
}

TEST(Ellipsoid, RejectsAxesWhoseDotProductExceedsOneMillionth) {
  EXPECT_EQ(check_message(x_axis, Vector3D(1e-7, 1.0, 0.0), z_axis), "");
  EXPECT_EQ(check_message(x_axis, Vector3D(1e-5, 1.0, 0.0), z_axis),
            "Ellipsoid semi_axis1 and semi_axis2 are not perpendicular");
  EXPECT_EQ(check_message(x_axis, y_axis, Vector3D(1e-5, 0.0, 1.0)),
            "Ellipsoid semi_axis1 and semi_axis3 are not perpendicular");
  EXPECT_EQ(check_message(x_axis, y_axis, Vector3D(0.0, 1e-5, 1.0)),
            "Ellipsoid semi_axis2 and semi_axis3 are not perpendicular");
  // All three pairs skewed: the first pair is reported.
  EXPECT_EQ(check_message(x_axis, x_axis, x_axis),
            "Ellipsoid semi_axis1 and semi_axis2 are not perpendicular");
  // The bound is on the raw dot product: long axes must be more nearly perpendicular.
  EXPECT_EQ(check_message(1000.0 * x_axis, Vector3D(1e-8, 1000.0, 0.0), z_axis),
            "Ellipsoid semi_axis1 and semi_axis2 are not perpendicular");
  // A rotated, stretched frame passes.
  EXPECT_EQ(
      check_message(Vector3D(2.0, 2.0, 0.0), Vector3D(-0.5, 0.5, 0.0), Vector3D(0.0, 0.0, 0.1)),
      "");
}

TEST(Ellipsoid, PrintsCentreAndAxesInFixedWidth) {
  Ellipsoid const e(Point(1.0, -2.0, 0.5), Vector3D(2.0, 0.0, 0.0), Vector3D(0.0, 0.25, 0.0),
                    Vector3D(0.0, 0.0, -3.0));
  std::ostringstream out;
  e.print(out);
  out << ' ' << 0.5;
  EXPECT_EQ(out.str(),
            "centre:    1.000  -2.000   0.500, semi-axis 1:    2.000   0.000   0.000, "
            "semi-axis 2:    0.000   0.250   0.000, semi-axis 3:    0.000   0.000  -3.000 0.5");
}

TEST(Ellipsoid, EqualityIsFieldByFieldWithoutFlippingAxes) {
  Point const c(1.0, 2.0, 3.0);
  Ellipsoid const e(c, x_axis, y_axis, z_axis);
  Ellipsoid const flipped(c, -1.0 * x_axis, y_axis, z_axis);
  EXPECT_FALSE(equals(e, flipped, 1e-3));
  EXPECT_FALSE(e == flipped);
  Ellipsoid const swapped(c, y_axis, x_axis, z_axis);
  EXPECT_FALSE(equals(e, swapped, 1e-3));

  Ellipsoid const nudged(Point(1.0, 2.0, 3.0 + 1e-6), x_axis, y_axis, Vector3D(0, 1e-6, 1));
  EXPECT_TRUE(equals(e, nudged, 1e-5));
  EXPECT_FALSE(equals(e, nudged, 1e-7));
  EXPECT_FALSE(e == nudged);
  EXPECT_TRUE(e == Ellipsoid(e));
  EXPECT_TRUE(e != nudged);
}

}  // namespace
}  // namespace structmath
