// SPDX-License-Identifier: MIT
// Tests of UnionSolid and IntersectionSolid: membership, containment and bounding boxes.
#include "structmath/solids/composite_solid.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "structmath/solids/box.hpp"
#include "structmath/solids/intersection_solid.hpp"
#include "structmath/solids/slab.hpp"
#include "structmath/solids/sphere.hpp"
#include "structmath/solids/union_solid.hpp"

namespace structmath {
namespace {

THandle<Solid> box(double x0, double x1, double y0, double y1, double z0, double z1) {
  return make_handle<Box>(x0, x1, y0, y1, z0, z1);
}

THandle<Solid> sphere(double x, double y, double z, double r) {
  return make_handle<Sphere>(Point(x, y, z), r);
}

TEST(CompositeSolid, MembersAreDistinctObjectsInAddressOrder) {
  THandle<Solid> const a = box(0, 1, 0, 1, 0, 1);
  THandle<Solid> const b = box(0, 1, 0, 1, 0, 1);
  UnionSolid u(a, a);
  EXPECT_EQ(u.solids().size(), 1u);
  u.add_solid(a);
  EXPECT_EQ(u.solids().size(), 1u);
  u.add_solid(b);  // an equal box, but another object
  EXPECT_EQ(u.solids().size(), 2u);
  EXPECT_EQ(u.solids().begin()->get(), std::less<Solid*>()(a.get(), b.get()) ? a.get() : b.get());

  IntersectionSolid const copied(u.solids());
  EXPECT_EQ(copied.solids(), u.solids());
  EXPECT_EQ(a.use_count(), 3);  // a, u and copied
}

TEST(CompositeSolid, FindsAndRemovesMembersByBoundingBoxNotIdentity) {
  THandle<Solid> const unit = box(0, 1, 0, 1, 0, 1);
  THandle<Solid> const ball = sphere(5, 5, 5, 1);
  IntersectionSolid solid(unit, ball);

  CompositeSolid::SolidSet::const_iterator position;
  // A different object with the same box (within 1e-7) stands for the member.
  Box const lookalike(0.0, 1.0 + 5e-8, 0.0, 1.0, 0.0, 1.0);
  ASSERT_TRUE(solid.contains_solid(lookalike, position));
  EXPECT_EQ(position->get(), unit.get());
  // The sphere's box is what identifies it; a cube with that box matches too.
  ASSERT_TRUE(solid.contains_solid(Box(4, 6, 4, 6, 4, 6), position));
  EXPECT_EQ(position->get(), ball.get());

  EXPECT_FALSE(solid.contains_solid(Box(0.0, 1.0 + 2e-7, 0.0, 1.0, 0.0, 1.0), position));
  EXPECT_TRUE(position == solid.solids().end());

  solid.remove_solid(Sphere(Point(9, 9, 9), 1.0));  // no such box: unchanged
  EXPECT_EQ(solid.solids().size(), 2u);
  solid.remove_solid(lookalike);
  ASSERT_EQ(solid.solids().size(), 1u);
  EXPECT_EQ(solid.solids().begin()->get(), ball.get());
  // Containment follows the membership changes.
  EXPECT_TRUE(solid.contains(Point(5, 5, 5.5)));
  solid.add_solid(unit);
  EXPECT_FALSE(solid.contains(Point(5, 5, 5.5)));
}

TEST(CompositeSolid, EmptyCompositesContainNothingOrEverythingAndHaveNoBox) {
  UnionSolid const none(CompositeSolid::SolidSet{});
  IntersectionSolid const all(CompositeSolid::SolidSet{});
  EXPECT_FALSE(none.contains(Point(0, 0, 0)));
  EXPECT_TRUE(all.contains(Point(1e9, -3, 0)));
  try {
    none.bounding_box();
    ADD_FAILURE() << "no exception";
  } catch (std::runtime_error const& e) {
    EXPECT_EQ(std::string(e.what()), "UnionSolid::bounding_box(): no member solids");
  }
  EXPECT_THROW(all.bounding_box(), std::runtime_error);
}

TEST(CompositeSolid, NullMemberRaisesTheNullHandleError) {
  UnionSolid const u(box(0, 1, 0, 1, 0, 1), THandle<Solid>());
  EXPECT_THROW(u.bounding_box(), std::runtime_error);
  EXPECT_THROW(u.contains(Point(5, 5, 5)), std::runtime_error);
}

TEST(UnionSolid, ContainsWhatAnyMemberContainsAndMergesTheBoxes) {
  THandle<Solid> const a = sphere(0, 0, 0, 1);
  THandle<Solid> const b = box(0.5, 3, -0.5, 0.5, -0.5, 0.5);
  UnionSolid const u(a, b);
  EXPECT_TRUE(u.contains(Point(-0.9, 0, 0)));  // sphere only
  EXPECT_TRUE(u.contains(Point(2.5, 0, 0)));   // box only
  EXPECT_TRUE(u.contains(Point(0.7, 0, 0)));   // both
  EXPECT_FALSE(u.contains(Point(2.5, 1, 0)));
  EXPECT_TRUE(equals(*u.bounding_box(), Box(-1, 3, -1, 1, -1, 1), 0.0));
  // Merging into the result never alters a member.
  EXPECT_TRUE(equals(*b->bounding_box(), Box(0.5, 3, -0.5, 0.5, -0.5, 0.5), 0.0));

  // Composites nest.
  UnionSolid const outer(make_handle<UnionSolid>(u), sphere(10, 0, 0, 1));
  EXPECT_TRUE(outer.contains(Point(2.5, 0, 0)));
  EXPECT_TRUE(outer.contains(Point(10.5, 0, 0)));
  EXPECT_TRUE(equals(*outer.bounding_box(), Box(-1, 11, -1, 1, -1, 1), 0.0));
}

TEST(IntersectionSolid, ContainsWhatEveryMemberContains) {
  IntersectionSolid lens(sphere(0, 0, 0, 1), sphere(1, 0, 0, 1));
  EXPECT_TRUE(lens.contains(Point(0.5, 0, 0)));
  EXPECT_TRUE(lens.contains(Point(0, 0, 0)));  // on the second sphere's surface
  EXPECT_FALSE(lens.contains(Point(-0.5, 0, 0)));
  EXPECT_FALSE(lens.contains(Point(0.5, 0.9, 0)));
  lens.add_solid(make_handle<Slab>(Plane(Vector3D(1, 0, 0), 0.5), 0.25));
  EXPECT_TRUE(lens.contains(Point(0.5, 0, 0)));
  EXPECT_FALSE(lens.contains(Point(0.2, 0, 0)));
}

TEST(IntersectionSolid, BoundingBoxIsTheOverlapOfTheMemberBoxes) {
  // Two unit spheres one apart along x: [-1, 1] and [0, 2] overlap in [0, 1].
  IntersectionSolid const lens(sphere(0, 0, 0, 1), sphere(1, 0, 0, 1));
  EXPECT_TRUE(equals(*lens.bounding_box(), Box(0, 1, -1, 1, -1, 1), 0.0));

  // A slab's unbounded box leaves the others' overlap as it is, in either order.
  IntersectionSolid const clipped(sphere(0, 0, 0, 1), make_handle<Slab>(Plane(), 0.5));
  EXPECT_TRUE(equals(*clipped.bounding_box(), Box(-1, 1, -1, 1, -1, 1), 0.0));

  IntersectionSolid three(box(0, 4, 0, 4, 0, 4), box(1, 5, -1, 3, 0, 4));
  three.add_solid(box(-1, 3, 2, 6, 1, 2));
  EXPECT_TRUE(equals(*three.bounding_box(), Box(1, 3, 2, 3, 1, 2), 0.0));
}

TEST(IntersectionSolid, CollapsedOrDisjointOverlapGivesTheEmptyBox) {
  Box const empty;
  IntersectionSolid const touching(box(0, 1, 0, 1, 0, 1), box(1, 2, 0, 1, 0, 1));
  EXPECT_TRUE(equals(*touching.bounding_box(), empty, 0.0));
  IntersectionSolid const nearly(box(0, 1, 0, 1, 0, 1), box(0.2, 0.3, 1.0 - 5e-8, 2, 0, 1));
  EXPECT_TRUE(equals(*nearly.bounding_box(), empty, 0.0));
  IntersectionSolid const disjoint(box(0, 1, 0, 1, 0, 1), box(0, 1, 0, 1, 2, 3));
  EXPECT_TRUE(equals(*disjoint.bounding_box(), empty, 0.0));
  // Just thicker than the tolerance is a real, thin overlap.
  IntersectionSolid const thin(box(0, 1, 0, 1, 0, 1), box(0.2, 0.3, 1.0 - 2e-7, 2, 0, 1));
  EXPECT_TRUE(equals(*thin.bounding_box(), Box(0.2, 0.3, 1.0 - 2e-7, 1, 0, 1), 0.0));
}

TEST(IntersectionSolid, BoxesWithinHalfAThousandthOfTheFirstDoNotNarrowIt) {
  // Members run in address order, so allocate first and give the boxes their roles after.
  std::vector<THandle<Box>> boxes = {make_handle<Box>(), make_handle<Box>(), make_handle<Box>()};
  std::sort(boxes.begin(), boxes.end());
  *boxes[0] = Box(0, 1, 0, 1, 0, 1);
  *boxes[1] = Box(0.5, 1, 0, 1, 0, 1);
  *boxes[2] = Box(0.0004, 0.9996, 0.0004, 0.9996, 0.0004, 0.9996);

  IntersectionSolid const pair(boxes[0], boxes[2]);
  EXPECT_TRUE(equals(*pair.bounding_box(), *boxes[0], 0.0));

  // The near copy is compared with the first box, not with the running overlap
  // [0.5, 1] x [0, 1] x [0, 1], which it would have narrowed.
  IntersectionSolid three(boxes[0], boxes[1]);
  three.add_solid(boxes[2]);
  ASSERT_EQ(three.solids().begin()->get(), boxes[0].get());
  EXPECT_TRUE(equals(*three.bounding_box(), *boxes[1], 0.0));

  // Just beyond the tolerance the box does narrow the overlap.
  *boxes[2] = Box(0.0006, 0.9996, 0.0004, 0.9996, 0.0004, 0.9996);
  EXPECT_TRUE(equals(*three.bounding_box(), Box(0.5, 0.9996, 0.0004, 0.9996, 0.0004, 0.9996), 0.0));
}

}  // namespace
}  // namespace structmath
