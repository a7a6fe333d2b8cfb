// SPDX-License-Identifier: MIT
// Tests of UnionSolid and IntersectionSolid: membership, containment and bounding boxes.
#include "structmath/solids/composite_solid.hpp"

#include <gtest/gtest.h>

#include "support/solids_support.hpp"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <vector>

#include "structmath/solids/box.hpp"
#include "structmath/solids/intersection_solid.hpp"
#include "structmath/solids/sphere.hpp"
#include "structmath/solids/union_solid.hpp"
#include "support/expect_throw.hpp"

namespace structmath {
namespace {

THandle<Solid> box(double x0, double x1, double y0, double y1, double z0, double z1) {
  return make_handle<Box>(x0, x1, y0, y1, z0, z1);
}

THandle<Solid> sphere(double x, double y, double z, double r) {
  return make_handle<Sphere>(Point(x, y, z), r);
}

TEST(CompositeSolid, MembersAreDistinctObjectsFoundAndRemovedByBoundingBox) {
  THandle<Solid> const unit = box(0, 1, 0, 1, 0, 1), twin = box(0, 1, 0, 1, 0, 1);
  UnionSolid u(unit, unit);
  EXPECT_EQ(u.solids().size(), 1u);
  u.add_solid(twin);  // an equal box, but another object
  ASSERT_EQ(u.solids().size(), 2u);
  EXPECT_EQ(u.solids().begin()->get(), std::min(unit.get(), twin.get(), std::less<Solid*>()));

  IntersectionSolid solid(unit, sphere(5, 5, 5, 1));
  CompositeSolid::SolidSet::const_iterator position;
  Box const lookalike(0.0, 1.0 + 5e-8, 0.0, 1.0, 0.0, 1.0);  // within 1e-7 of the member
  ASSERT_TRUE(solid.contains_solid(lookalike, position));
  EXPECT_EQ(position->get(), unit.get());
  EXPECT_FALSE(solid.contains_solid(Box(0.0, 1.0 + 2e-7, 0.0, 1.0, 0.0, 1.0), position));
  EXPECT_TRUE(position == solid.solids().end());
  solid.remove_solid(Sphere(Point(9, 9, 9), 1.0));  // no such box: unchanged
  EXPECT_EQ(solid.solids().size(), 2u);
  solid.remove_solid(lookalike);
  ASSERT_EQ(solid.solids().size(), 1u);
  EXPECT_TRUE(solid.contains(Point(5, 5, 5.5)));  // containment follows the members
  solid.add_solid(unit);
  EXPECT_FALSE(solid.contains(Point(5, 5, 5.5)));
}

TEST(CompositeSolid, EmptyAndNullMembers) {
  UnionSolid const none(CompositeSolid::SolidSet{});
  IntersectionSolid const all(CompositeSolid::SolidSet{});
  EXPECT_FALSE(none.contains(Point(0, 0, 0)));
  EXPECT_TRUE(all.contains(Point(1e9, -3, 0)));
  testing::expect_throw_message<std::runtime_error>([&] { none.bounding_box(); },
                                                    "UnionSolid::bounding_box(): no member solids");
  testing::expect_throw_message<std::runtime_error>(
      [&] { all.bounding_box(); }, "IntersectionSolid::bounding_box(): no member solids");
  // An empty composite finds no member for any argument, an empty union included, and
  // removing it is no error.
  UnionSolid empty_union(CompositeSolid::SolidSet{});
  IntersectionSolid empty_intersection(CompositeSolid::SolidSet{});
  CompositeSolid::SolidSet::const_iterator position;
  EXPECT_FALSE(empty_union.contains_solid(none, position));
  EXPECT_TRUE(position == empty_union.solids().end());
  EXPECT_NO_THROW(empty_union.remove_solid(none));
  EXPECT_NO_THROW(empty_intersection.remove_solid(none));
  EXPECT_FALSE(empty_intersection.contains_solid(*box(0, 1, 0, 1, 0, 1), position));
  UnionSolid const with_null(box(0, 1, 0, 1, 0, 1), THandle<Solid>());
  EXPECT_THROW(with_null.contains(Point(5, 5, 5)), std::runtime_error);
}

TEST(CompositeSolid, UnionAndIntersectionContainmentAndBoxes) {
  UnionSolid const u(sphere(0, 0, 0, 1), box(0.5, 3, -0.5, 0.5, -0.5, 0.5));
  EXPECT_TRUE(u.contains(Point(-0.9, 0, 0)) && u.contains(Point(2.5, 0, 0)));
  EXPECT_FALSE(u.contains(Point(2.5, 1, 0)));
  EXPECT_TRUE(testing::test_bounding_box(u, Box(-1, 3, -1, 1, -1, 1), 0.0));
  EXPECT_TRUE(
      testing::test_bounding_box(UnionSolid(make_handle<UnionSolid>(u), sphere(10, 0, 0, 1)),
                                 Box(-1, 11, -1, 1, -1, 1), 0.0));  // composites nest

  IntersectionSolid const lens(sphere(0, 0, 0, 1), sphere(1, 0, 0, 1));
  EXPECT_TRUE(lens.contains(Point(0, 0, 0)));  // on the second sphere's surface
  EXPECT_FALSE(lens.contains(Point(-0.5, 0, 0)) || lens.contains(Point(0.5, 0.9, 0)));
  EXPECT_TRUE(testing::test_bounding_box(lens, Box(0, 1, -1, 1, -1, 1), 0.0));
  // Touching, collapsed within 1e-7 or disjoint: the empty box.
  THandle<Solid> const unit = box(0, 1, 0, 1, 0, 1);
  for (THandle<Solid> const& other :
       {box(1, 2, 0, 1, 0, 1), box(0.2, 0.3, 1 - 5e-8, 2, 0, 1), box(0, 1, 0, 1, 2, 3)}) {
    EXPECT_TRUE(testing::test_bounding_box(IntersectionSolid(unit, other), Box(), 0.0));
  }
  EXPECT_TRUE(testing::test_bounding_box(IntersectionSolid(unit, box(0.2, 0.3, 1 - 2e-7, 2, 0, 1)),
                                         Box(0.2, 0.3, 1 - 2e-7, 1, 0, 1), 0.0));
}

TEST(IntersectionSolid, BoxesWithinHalfAThousandthOfTheFirstDoNotNarrowIt) {
  // Members run in address order, so allocate first and give the boxes their roles after.
  std::vector<THandle<Box>> boxes = {make_handle<Box>(), make_handle<Box>(), make_handle<Box>()};
  std::sort(boxes.begin(), boxes.end());
  *boxes[0] = Box(0, 1, 0, 1, 0, 1);
  *boxes[1] = Box(0.5, 1, 0, 1, 0, 1);
  *boxes[2] = Box(0.0004, 0.9996, 0.0004, 0.9996, 0.0004, 0.9996);
  // The near copy is compared with the first box, not with the running overlap.
  IntersectionSolid three(boxes[0], boxes[1]);
  three.add_solid(boxes[2]);
  EXPECT_TRUE(testing::test_bounding_box(three, *boxes[1], 0.0));
  *boxes[2] = Box(0.0006, 0.9996, 0.0004, 0.9996, 0.0004, 0.9996);  // just beyond: narrows
  EXPECT_TRUE(
      testing::test_bounding_box(three, Box(0.5, 0.9996, 0.0004, 0.9996, 0.0004, 0.9996), 0.0));
}

}  // namespace
}  // namespace structmath
