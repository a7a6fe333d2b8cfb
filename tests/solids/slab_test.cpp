// SPDX-License-Identifier: MIT
// Tests of Slab: strict containment, the unbounded box and plane-only persistence.
#include "structmath/solids/slab.hpp"

#include <gtest/gtest.h>

#include "support/solids_support.hpp"

#include "structmath/core/archive.hpp"
#include "structmath/solids/box.hpp"

namespace structmath {

TEST(Slab, ContainsOnlyPointsStrictlyWithinTheHalfThicknessAndIsUnbounded) {
  Slab const slab(Plane(Vector3D(0, 0, 1), 0.0), 1.0);
  EXPECT_FALSE(slab.contains(Point(0, 0, 1)));
  EXPECT_FALSE(slab.contains(Point(0, 0, -1)));
  EXPECT_TRUE(slab.contains(Point(1e6, -1e6, -0.999)));
  // The plane x + y = 2, half-thickness 0.5.
  Slab const tilted(Plane(Vector3D(1, 1, 0), Point(1, 1, 0)), 0.5);
  EXPECT_TRUE(tilted.contains(Point(1.3, 1.0, 7.0)));   // 0.21 from the plane
  EXPECT_FALSE(tilted.contains(Point(0.6, 0.6, 0.0)));  // 0.57 on the other side
  EXPECT_TRUE(testing::test_bounding_box(tilted, Box(-1e10, 1e10, -1e10, 1e10, -1e10, 1e10), 0.0));
}

TEST(Slab, PersistsItsPlaneButNotItsHalfThickness) {
  Plane const plane(Vector3D(0, 1, 1), 2.0);
  Archive archive, plane_only;
  Slab(plane, 3.0).write(archive);
  plane.write(plane_only);
  EXPECT_EQ(archive.bytes(), plane_only.bytes());

  Slab reader(Plane(), 0.25);
  static_cast<Solid&>(reader).read(archive);
  EXPECT_TRUE(archive.at_end());
  EXPECT_TRUE(reader.plane() == plane);
  EXPECT_EQ(reader.half_thickness(), 0.25);
}

}  // namespace structmath
