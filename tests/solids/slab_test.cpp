// SPDX-License-Identifier: MIT
// Tests of Slab: strict containment, the unbounded box and plane-only persistence.
#include "structmath/solids/slab.hpp"

#include <gtest/gtest.h>

#include "structmath/core/archive.hpp"
#include "structmath/solids/box.hpp"

namespace structmath {
namespace {

TEST(Slab, ContainsOnlyPointsStrictlyWithinTheHalfThickness) {
  Slab const slab(Plane(Vector3D(0.0, 0.0, 1.0), 0.0), 1.0);
  EXPECT_FALSE(slab.contains(Point(0.0, 0.0, 1.0)));
  EXPECT_FALSE(slab.contains(Point(0.0, 0.0, -1.0)));
  EXPECT_TRUE(slab.contains(Point(0.0, 0.0, 0.999)));
  EXPECT_TRUE(slab.contains(Point(1e6, -1e6, -0.999)));

  // A tilted, shifted plane: x + y = 2 (unit normal, d = sqrt 2), half-thickness 0.5.
  Slab const tilted(Plane(Vector3D(1.0, 1.0, 0.0), Point(1.0, 1.0, 0.0)), 0.5);
  EXPECT_TRUE(tilted.contains(Point(1.0, 1.0, 7.0)));
  EXPECT_TRUE(tilted.contains(Point(1.3, 1.0, 0.0)));   // 0.21 from the plane
  EXPECT_FALSE(tilted.contains(Point(0.6, 0.6, 0.0)));  // 0.57 on the other side
  EXPECT_FALSE(tilted.contains(Point(0.0, 0.0, 0.0)));
  EXPECT_EQ(tilted.half_thickness(), 0.5);
}

TEST(Slab, BoundingBoxIsUnboundedWhateverThePlane) {
  Slab const slab(Plane(Vector3D(0.0, 0.0, 1.0), 5.0), 0.1);
  THandle<Box> const box = slab.bounding_box();
  EXPECT_TRUE(equals(*box, Box(-1e10, 1e10, -1e10, 1e10, -1e10, 1e10), 0.0));
}

TEST(Slab, PersistsItsPlaneButNotItsHalfThickness) {
  Plane const plane(Vector3D(0.0, 1.0, 1.0), 2.0);
  Slab const written(plane, 3.0);
  Archive archive;
  written.write(archive);
  Archive plane_only;
  plane.write(plane_only);
  EXPECT_EQ(archive.bytes(), plane_only.bytes());

  Slab reader(Plane(), 0.25);
  Solid& solid = reader;
  solid.read(archive);
  EXPECT_TRUE(archive.at_end());
  EXPECT_TRUE(reader.plane() == plane);
  EXPECT_EQ(reader.half_thickness(), 0.25);
}

}  // namespace
}  // namespace structmath
