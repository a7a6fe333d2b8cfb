// SPDX-License-Identifier: MIT
// Tests of Surface: building, measures, tidying, orientation and topology.
#include "structmath/grid/surface.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <vector>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using Triangle = std::array<int, 3>;

int add(Surface& s, Point const& p) { return s.add_node(make_handle<SurfaceNode>(p)); }

int add_triangle(Surface& s, int a, int b, int c) {
  return s.add_triangle(make_handle<SurfaceTriangle>(s.node(a), s.node(b), s.node(c)));
}

/// Appends nodes at points, shifted, and triangles over them numbered from the first new node.
void add_mesh(Surface& s, std::vector<Point> const& points, std::vector<Triangle> const& triangles,
              Vector3D const& shift = Vector3D(0.0, 0.0, 0.0)) {
  int const first = s.node_count();
  for (Point const& p : points) add(s, p + shift);
  for (Triangle const& t : triangles) add_triangle(s, first + t[0], first + t[1], first + t[2]);
}

/// The closed surface of an axis-aligned unit cube at corner, two triangles per face,
/// every triangle facing outwards (checked against the face direction when built).
void add_cube(Surface& s, Point const& corner) {
  int const first = s.node_count();
  for (int n = 0; n < 8; ++n) add(s, corner + Vector3D(n & 1, (n >> 1) & 1, (n >> 2) & 1));
  // Each face as a cycle of corner numbers (bit 0 = x, bit 1 = y, bit 2 = z).
  int const faces[6][4] = {{0, 1, 3, 2}, {4, 5, 7, 6}, {0, 1, 5, 4},
                           {2, 3, 7, 6}, {0, 2, 6, 4}, {1, 3, 7, 5}};
  Point const centre = corner + Vector3D(0.5, 0.5, 0.5);
  for (auto const& f : faces) {
    for (int h : {1, 2}) {
      auto const t = s.triangle(add_triangle(s, first + f[0], first + f[h], first + f[h + 1]));
      if (t->area_vector().dot(t->node(0)->position() - centre) < 0.0) t->flip();
    }
  }
}

/// A regular tetrahedron around the origin, shifted, wound inconsistently on purpose.
void add_tetrahedron(Surface& s, Vector3D const& shift) {
  add_mesh(s, {Point(1, 1, 1), Point(1, -1, -1), Point(-1, 1, -1), Point(-1, -1, 1)},
           {{0, 1, 2}, {0, 1, 3}, {0, 2, 3}, {1, 2, 3}}, shift);
}

TEST(Surface, NumbersNodesFromZeroAndChecksIndices) {
  Surface s;
  auto node = make_handle<SurfaceNode>(Point(1.0, 2.0, 3.0));
  EXPECT_EQ(s.add_node(node), 0);
  EXPECT_EQ(add(s, Point()), 1);
  EXPECT_EQ(node->index(), 0);
  EXPECT_THROW(s.add_node(node), std::invalid_argument);
  EXPECT_THROW(s.add_node(THandle<SurfaceNode>()), std::invalid_argument);
  testing::expect_throw_message<std::out_of_range>([&] { s.node(2); },
                                                   "Surface::node(int): index out of range");
  EXPECT_THROW(s.triangle(0), std::out_of_range);
  EXPECT_THROW(s.edge(-1), std::out_of_range);
  EXPECT_EQ(add_triangle(s, 0, 1, 0), 0);
  EXPECT_EQ(s.add_edge(make_handle<SurfaceEdge>(s.node(1), s.node(0))), 0);
}

TEST(Surface, CubeHasItsAreaVolumeAndSphereTopologyWhereverItIs) {
  for (Point const& corner : {Point(0.0, 0.0, 0.0), Point(1000.0, -500.0, 250.0)}) {
    Surface s;
    add_cube(s, corner);
    EXPECT_NEAR(s.area(), 6.0, 1e-12);
    EXPECT_NEAR(s.enclosed_volume(), 1.0, 1e-9);
    SurfaceTopology const t = s.topology();
    EXPECT_EQ(std::vector<int>({t.vertices, t.edges, t.faces, t.components}),
              std::vector<int>({8, 18, 12, 1}));
    EXPECT_TRUE(t.closed());
    EXPECT_TRUE(t.consistently_oriented);
  }
}

TEST(Surface, OrientingMakesNeighboursAgreeAndClosedPiecesFaceOutwards) {
  Surface s;
  add_cube(s, Point(0.0, 0.0, 0.0));
  for (int t : {1, 4, 7}) s.triangle(t)->flip();
  EXPECT_EQ(s.orient_triangles(), 3);
  EXPECT_TRUE(s.topology().consistently_oriented);
  EXPECT_NEAR(s.enclosed_volume(), 1.0, 1e-12);

  for (auto const& t : s.triangles()) t->flip();
  EXPECT_NEAR(s.enclosed_volume(), -1.0, 1e-12);
  EXPECT_EQ(s.orient_triangles(), 12);
  EXPECT_NEAR(s.enclosed_volume(), 1.0, 1e-12);
  EXPECT_EQ(s.orient_triangles(), 0);

  // An open piece keeps the winding of its lowest-numbered triangle.
  Surface square;
  add_mesh(square, {Point(0, 0, 0), Point(1, 0, 0), Point(1, 1, 0), Point(0, 1, 0)},
           {{0, 1, 2}, {0, 3, 2}});
  EXPECT_EQ(square.orient_triangles(), 1);
  EXPECT_EQ(square.triangle_nodes(0), (Triangle{0, 1, 2}));
  EXPECT_EQ(square.triangle_nodes(1), (Triangle{0, 2, 3}));
}

TEST(Surface, TidyingRemovesDegenerateTrianglesThenUnusedEdgesAndNodes) {
  Surface s;
  // A unit square, a triangle with a repeated node and a zero-area (collinear) one.
  add_mesh(s,
           {Point(0, 0, 0), Point(1, 0, 0), Point(1, 1, 0), Point(0, 1, 0), Point(2, 0, 0),
            Point(9, 9, 9)},
           {{0, 1, 2}, {1, 1, 2}, {0, 1, 4}, {0, 2, 3}});
  for (auto const& e : {std::array<int, 2>{0, 1}, {1, 1}, {4, 1}, {2, 0}, {3, 2}})
    s.add_edge(make_handle<SurfaceEdge>(s.node(e[0]), s.node(e[1])));
  EXPECT_EQ(s.topology().degenerate_triangles, 1);
  EXPECT_EQ(s.remove_degenerate_triangles(), 2);
  EXPECT_EQ(s.triangle_nodes(1), (Triangle{0, 2, 3}));
  EXPECT_EQ(s.remove_unused_edges(), 2);
  ASSERT_EQ(s.edge_count(), 3);
  EXPECT_EQ(s.edge(2)->first()->index(), 3);
  auto const dropped = s.node(5);
  EXPECT_EQ(s.remove_unused_nodes(), 2);
  EXPECT_EQ(dropped->index(), -1);
  ASSERT_EQ(s.node_count(), 4);
  EXPECT_EQ(s.node(3)->index(), 3);
  SurfaceTopology const t = s.topology();
  EXPECT_EQ(t.euler_characteristic(), 1);
  EXPECT_EQ(t.boundary_edges, 4);
  EXPECT_NEAR(s.area(), 1.0, 1e-15);
}

TEST(Surface, TwoTetrahedraAreTwoClosedPiecesWithOutwardNormalsOnceOriented) {
  Surface s;
  add_tetrahedron(s, Vector3D(0.0, 0.0, 0.0));
  add_tetrahedron(s, Vector3D(10.0, 0.0, 0.0));
  SurfaceTopology t = s.topology();
  EXPECT_EQ(t.components, 2);
  EXPECT_EQ(t.euler_characteristic(), 4);
  EXPECT_TRUE(t.closed());
  EXPECT_FALSE(t.consistently_oriented);
  s.orient_triangles();
  EXPECT_TRUE(s.topology().consistently_oriented);
  EXPECT_NEAR(s.enclosed_volume(), 16.0 / 3.0, 1e-9);

  int const apex = add(s, Point(5.0, 5.0, 5.0));  // on no triangle yet
  s.update_node_normals();
  for (int n = 0; n < 4; ++n) {
    Vector3D const outwards = s.node(n)->position().vector() / std::sqrt(3.0);
    EXPECT_TRUE(equals(s.node(n)->normal(), outwards, 1e-12)) << n;
  }
  EXPECT_TRUE(equals(s.node(apex)->normal(), Vector3D(0.0, 0.0, 0.0), 0.0));

  // A fin on a side of the first tetrahedron: that side now has three triangles.
  add_triangle(s, 0, 1, apex);
  t = s.topology();
  EXPECT_EQ(std::vector<int>({t.non_manifold_edges, t.boundary_edges, t.components}),
            std::vector<int>({1, 2, 2}));
  EXPECT_FALSE(t.closed());
}

}  // namespace
}  // namespace structmath
