// SPDX-License-Identifier: MIT
// Tests of Ellipsoid: the validity checks and their order, printing and comparison.
#include "structmath/solids/ellipsoid.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

Vector3D const x_axis(1, 0, 0), y_axis(0, 1, 0), z_axis(0, 0, 1), zero(0, 0, 0);

TEST(Ellipsoid, ChecksEveryLengthThenEveryPairInOrder) {
  struct Row {
    Vector3D a1, a2, a3;
    std::string message;  // empty when valid
  };
  std::string const length = "Ellipsoid semi_axis", skew = " are not perpendicular";
  std::vector<Row> const rows = {
      {zero, y_axis, z_axis, length + "1 length is suspicious: 0"},
      {x_axis, y_axis, Vector3D(0, 0, 5e-8), length + "3 length is suspicious: 5e-08"},
      {x_axis, y_axis, Vector3D(0, 0, 3e-7), ""},
      {x_axis, x_axis, zero, length + "3 length is suspicious: 0"},  // lengths before pairs
      {x_axis, Vector3D(1e-7, 1, 0), z_axis, ""},
      {x_axis, Vector3D(1e-5, 1, 0), z_axis, "Ellipsoid semi_axis1 and semi_axis2" + skew},
      {x_axis, y_axis, Vector3D(1e-5, 0, 1), "Ellipsoid semi_axis1 and semi_axis3" + skew},
      {x_axis, y_axis, Vector3D(0, 1e-5, 1), "Ellipsoid semi_axis2 and semi_axis3" + skew},
      {x_axis, x_axis, x_axis, "Ellipsoid semi_axis1 and semi_axis2" + skew},
      // The bound is on the raw dot product: long axes must be more nearly perpendicular.
      {1000.0 * x_axis, Vector3D(1e-8, 1000, 0), z_axis,
       "Ellipsoid semi_axis1 and semi_axis2" + skew},
      {Vector3D(2, 2, 0), Vector3D(-0.5, 0.5, 0), Vector3D(0, 0, 0.1), ""},
  };
  for (Row const& r : rows) {
    auto const build = [&] { Ellipsoid const e(Point(1, 2, 3), r.a1, r.a2, r.a3); };
    if (r.message.empty()) {
      EXPECT_NO_THROW(build());
    } else {
      testing::expect_throw_message<std::runtime_error>(build, r.message);
    }
  }
}

TEST(Ellipsoid, PrintsAndComparesFieldByFieldWithoutFlippingOrSwappingAxes) {
  std::ostringstream out;
  Ellipsoid(Point(1, -2, 0.5), Vector3D(2, 0, 0), Vector3D(0, 0.25, 0), Vector3D(0, 0, -3))
      .print(out);
  out << ' ' << 0.5;
  EXPECT_EQ(out.str(),
            "centre:    1.000  -2.000   0.500, semi-axis 1:    2.000   0.000   0.000, "
            "semi-axis 2:    0.000   0.250   0.000, semi-axis 3:    0.000   0.000  -3.000 0.5");

  Ellipsoid const e(Point(0, 0, 0), x_axis, y_axis, z_axis);
  EXPECT_TRUE(e == Ellipsoid());  // the default is the unit sphere
  EXPECT_FALSE(equals(e, Ellipsoid(Point(0, 0, 0), -1.0 * x_axis, y_axis, z_axis), 1e-3));
  EXPECT_FALSE(equals(e, Ellipsoid(Point(0, 0, 0), y_axis, x_axis, z_axis), 1e-3));
  Ellipsoid const nudged(Point(0, 0, 1e-6), x_axis, y_axis, Vector3D(0, 1e-6, 1));
  EXPECT_TRUE(equals(e, nudged, 1e-5) && !equals(e, nudged, 1e-7));
  EXPECT_TRUE(e != nudged && !(e != Ellipsoid(e)));
}

}  // namespace
}  // namespace structmath
