// SPDX-License-Identifier: MIT
// Tests of Surface: building, measures, tidying, orientation and topology.
#include "structmath/grid/surface.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

namespace structmath {
namespace {

int add(Surface& s, Point const& p) { return s.add_node(make_handle<SurfaceNode>(p)); }

int add_triangle(Surface& s, int a, int b, int c) {
  return s.add_triangle(make_handle<SurfaceTriangle>(s.node(a), s.node(b), s.node(c)));
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
    for (auto const& tri :
         {std::vector<int>{f[0], f[1], f[2]}, std::vector<int>{f[0], f[2], f[3]}}) {
      int const t = add_triangle(s, first + tri[0], first + tri[1], first + tri[2]);
      SurfaceTriangle& triangle = *s.triangle(t);
      if (triangle.area_vector().dot(triangle.node(0)->position() - centre) < 0.0) triangle.flip();
    }
  }
}

/// A regular tetrahedron around the origin, wound inconsistently on purpose.
void add_tetrahedron(Surface& s, Vector3D const& shift) {
  int const a = add(s, Point(1.0, 1.0, 1.0) + shift);
  int const b = add(s, Point(1.0, -1.0, -1.0) + shift);
  int const c = add(s, Point(-1.0, 1.0, -1.0) + shift);
  int const d = add(s, Point(-1.0, -1.0, 1.0) + shift);
  add_triangle(s, a, b, c);
  add_triangle(s, a, b, d);
  add_triangle(s, a, c, d);
  add_triangle(s, b, c, d);
}

TEST(Surface, NumbersNodesFromZeroAndChecksIndices) {
  Surface s;
  auto node = make_handle<SurfaceNode>(Point(1.0, 2.0, 3.0));
  EXPECT_EQ(node->index(), -1);
  EXPECT_EQ(s.add_node(node), 0);
  EXPECT_EQ(add(s, Point()), 1);
  EXPECT_EQ(node->index(), 0);
  EXPECT_EQ(s.node(0), node);
  EXPECT_THROW(s.add_node(node), std::invalid_argument);
  EXPECT_THROW(s.add_node(THandle<SurfaceNode>()), std::invalid_argument);
  try {
    s.node(2);
    FAIL();
  } catch (std::out_of_range const& e) {
    EXPECT_EQ(std::string(e.what()), "Surface::node(int): index out of range");
  }
  EXPECT_THROW(s.triangle(0), std::out_of_range);
  EXPECT_THROW(s.edge(-1), std::out_of_range);
  EXPECT_EQ(add_triangle(s, 0, 1, 0), 0);
  EXPECT_EQ(s.add_edge(make_handle<SurfaceEdge>(s.node(1), s.node(0))), 0);
  EXPECT_EQ(s.triangle_nodes(0), (std::array<int, 3>{0, 1, 0}));
  EXPECT_DOUBLE_EQ(s.edge(0)->length(), std::sqrt(14.0));
}

TEST(Surface, CubeHasItsAreaVolumeAndSphereTopologyWhereverItIs) {
  for (Point const& corner : {Point(0.0, 0.0, 0.0), Point(1000.0, -500.0, 250.0)}) {
    Surface s;
    add_cube(s, corner);
    EXPECT_NEAR(s.area(), 6.0, 1e-12);
    EXPECT_NEAR(s.enclosed_volume(), 1.0, 1e-9);
    SurfaceTopology const t = s.topology();
    EXPECT_EQ(t.vertices, 8);
    EXPECT_EQ(t.edges, 18);
    EXPECT_EQ(t.faces, 12);
    EXPECT_EQ(t.euler_characteristic(), 2);
    EXPECT_EQ(t.components, 1);
    EXPECT_TRUE(t.closed());
    EXPECT_TRUE(t.consistently_oriented);
  }
}

TEST(Surface, OrientingMakesNeighboursAgreeAndClosedPiecesFaceOutwards) {
  Surface s;
  add_cube(s, Point(0.0, 0.0, 0.0));
  for (int t : {1, 4, 7}) s.triangle(t)->flip();
  EXPECT_FALSE(s.topology().consistently_oriented);
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
  for (Point const& p : {Point(0, 0, 0), Point(1, 0, 0), Point(1, 1, 0), Point(0, 1, 0)})
    add(square, p);
  add_triangle(square, 0, 1, 2);
  add_triangle(square, 0, 3, 2);
  EXPECT_EQ(square.orient_triangles(), 1);
  EXPECT_EQ(square.triangle_nodes(0), (std::array<int, 3>{0, 1, 2}));
  EXPECT_EQ(square.triangle_nodes(1), (std::array<int, 3>{0, 2, 3}));
}

TEST(Surface, NodeNormalsOfARegularTetrahedronPointAwayFromItsCentre) {
  Surface s;
  add_tetrahedron(s, Vector3D(0.0, 0.0, 0.0));
  s.orient_triangles();
  EXPECT_NEAR(s.enclosed_volume(), 8.0 / 3.0, 1e-12);
  s.update_node_normals();
  for (auto const& n : s.nodes()) {
    Vector3D const expected = n->position().vector() / std::sqrt(3.0);
    EXPECT_TRUE(equals(n->normal(), expected, 1e-12));
  }
  add(s, Point(5.0, 5.0, 5.0));
  s.update_node_normals();
  EXPECT_TRUE(equals(s.node(4)->normal(), Vector3D(0.0, 0.0, 0.0), 0.0));
}

TEST(Surface, TidyingRemovesDegenerateTrianglesThenUnusedEdgesAndNodes) {
  Surface s;
  for (Point const& p : {Point(0, 0, 0), Point(1, 0, 0), Point(1, 1, 0), Point(0, 1, 0),
                         Point(2, 0, 0), Point(9, 9, 9)}) {
    add(s, p);
  }
  add_triangle(s, 0, 1, 2);
  add_triangle(s, 1, 1, 2);  // repeated node
  add_triangle(s, 0, 1, 4);  // collinear: zero area
  add_triangle(s, 0, 2, 3);
  auto edge = [&](int a, int b) { s.add_edge(make_handle<SurfaceEdge>(s.node(a), s.node(b))); };
  edge(0, 1);
  edge(1, 1);
  edge(4, 1);
  edge(2, 0);
  edge(3, 2);
  EXPECT_EQ(s.topology().degenerate_triangles, 1);
  EXPECT_EQ(s.remove_degenerate_triangles(), 2);
  EXPECT_EQ(s.triangle_nodes(1), (std::array<int, 3>{0, 2, 3}));
  EXPECT_EQ(s.remove_unused_edges(), 2);
  ASSERT_EQ(s.edge_count(), 3);
  EXPECT_EQ(s.edge(2)->first()->index(), 3);
  auto const dropped = s.node(5);
  EXPECT_EQ(s.remove_unused_nodes(), 2);
  EXPECT_EQ(dropped->index(), -1);
  EXPECT_EQ(s.node_count(), 4);
  for (int n = 0; n < 4; ++n) EXPECT_EQ(s.node(n)->index(), n);
  SurfaceTopology const t = s.topology();
  EXPECT_EQ(t.euler_characteristic(), 1);
  EXPECT_EQ(t.boundary_edges, 4);
  EXPECT_FALSE(t.closed());
  EXPECT_NEAR(s.area(), 1.0, 1e-15);
}

TEST(Surface, TopologyCountsPiecesAndNonManifoldSides) {
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

  // A fin on a side of the first tetrahedron: that side now has three triangles.
  int const fin = add(s, Point(3.0, 3.0, 3.0));
  add_triangle(s, 0, 1, fin);
  t = s.topology();
  EXPECT_EQ(t.non_manifold_edges, 1);
  EXPECT_EQ(t.boundary_edges, 2);
  EXPECT_FALSE(t.closed());
  EXPECT_EQ(t.components, 2);
}

}  // namespace
}  // namespace structmath
