// SPDX-License-Identifier: MIT
// Tests of MarchingContourer: keys, vertex lookup, single cells and sampled spheres.
#include "structmath/grid/contourer.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <vector>

#include "grid_fixtures.hpp"
#include "structmath/grid/calculated_grid.hpp"
#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using testing::unit_grid;
using Triangles = std::vector<std::array<int, 3>>;

constexpr double pi = 3.141592653589793;

/// One cell whose corner 0 alone lies below the level 0.
std::vector<double> const corner_zero_below = {-1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0};

Triangles triangles_of(Surface const& s) {
  Triangles out;
  for (int t = 0; t < s.triangle_count(); ++t) out.push_back(s.triangle_nodes(t));
  return out;
}

/// The distance from a centre slightly off the middle of the sphere grids.
double distance(Point const& p) { return (p - Point(0.013, -0.021, 0.007)).length(); }

/// n^3 nodes over [-1.3, 1.3]^3 holding the distance from a point near the middle.
THandle<NormalGrid> sphere_grid(int n) {
  auto const g = make_handle<NormalGrid>(n, n, n, Point(-1.3, -1.3, -1.3), Vector3D(2.6, 0.0, 0.0),
                                         Vector3D(0.0, 2.6, 0.0), Vector3D(0.0, 0.0, 2.6));
  return testing::filled(g, [&](int i, int j, int k) { return distance(g->location(i, j, k)); });
}

TEST(MarchingContourer, InterpolatesLinearlyWithoutASeparateTestAtTheFarEnd) {
  MarchingContourer const c(false);
  Point const p1(0.0, 0.0, 0.0);
  Point const p2(2.0, 4.0, -8.0);
  EXPECT_TRUE(
      equals(c.interpolate(1.0, 0.0, 4.0, p1, p2)->position(), Point(0.5, 1.0, -2.0), 1e-15));
  EXPECT_TRUE(equals(c.interpolate(1.0, 1.0 + 5e-7, 4.0, p1, p2)->position(), p1, 0.0));
  EXPECT_TRUE(equals(c.interpolate(1.0, 3.0, 3.0 + 5e-7, p1, p2)->position(), p1, 0.0));
  EXPECT_TRUE(equals(c.interpolate(1.0, 3.0, 1.0, p1, p2)->position(), p2, 1e-15));
}

TEST(MarchingContourer, KeysAreDecimalTextAndAVertexIsFoundOnItsEdgeThenAtEitherEnd) {
  MarchingContourer const c(false);
  EXPECT_EQ(c.getcutkey(1, 22, 333, 4), "1|22|333|4");
  EXPECT_EQ(c.getedgekey(7, 3), "3|7");
  EXPECT_EQ(c.getedgekey(3, 17), "3|17");
  EXPECT_NE(MarchingContourer::cut_key(0, 0, 1, 0), MarchingContourer::cut_key(0, 1, 0, 0));
  EXPECT_NE(MarchingContourer::cut_key(1, 0, 0, 0), MarchingContourer::cut_key(0, 0, 0, 1));
  IndexMap cuts;
  cuts.insert(MarchingContourer::cut_key(1, 1, 1, 0), 5);
  EXPECT_EQ(c.getnode(cuts, 1, 1, 1, 2), 5);  // the start's +x key, whatever it names
  EXPECT_EQ(c.getnode(cuts, 0, 0, 0, 6), 5);  // the far end of the main diagonal
  EXPECT_EQ(c.getnode(cuts, 1, 0, 1, 1), 5);
  cuts.insert(MarchingContourer::cut_key(1, 1, 1, 2), 9);
  EXPECT_EQ(c.getnode(cuts, 1, 1, 1, 2), 9);
  testing::expect_throw_message<std::runtime_error>([&] { c.getnode(cuts, 0, 0, 0, 0); },
                                                    "Surface Index Error");
  // Tetrahedron 2, edge 3 is cube edge 11: from (0, 0, 1) along +y.
  cuts.insert(MarchingContourer::cut_key(3, 4, 6, 1), 12);
  EXPECT_EQ(c.tetragetnode(cuts, 3, 4, 5, 2, 3), 12);
}

TEST(MarchingContourer, AddsATriangleThenItsNewSidesInOrder) {
  MarchingContourer const c(false);
  auto s = make_handle<Surface>();
  for (int n = 0; n < 4; ++n) s->add_node(make_handle<SurfaceNode>(Point(n, n * n, 0.0)));
  IndexMap edges;
  int edge_count = 0;
  c.addtriangle(s, edges, edge_count, 2, 0, 1);
  c.addtriangle(s, edges, edge_count, 1, 2, 3);
  c.addtriangle(s, edges, edge_count, 3, 3, 0);
  EXPECT_EQ(triangles_of(*s), (Triangles{{2, 0, 1}, {1, 2, 3}, {3, 3, 0}}));
  std::vector<std::array<int, 2>> sides;
  for (int e = 0; e < s->edge_count(); ++e)
    sides.push_back({s->edge(e)->first()->index(), s->edge(e)->second()->index()});
  EXPECT_EQ(sides, (std::vector<std::array<int, 2>>{
                       {2, 0}, {0, 1}, {2, 1}, {2, 3}, {1, 3}, {3, 3}, {3, 0}}));
  EXPECT_EQ(edge_count, 7);
  EXPECT_EQ(edges.find(MarchingContourer::edge_key(0, 3)), 6);
}

TEST(MarchingContourer, OneCornerBelowMakesOneCubeTriangleOrSixTetrahedronTriangles) {
  THandle<Surface> s = MarchingContourer(unit_grid(2, 2, 2, corner_zero_below), false).surface(0.0);
  // Corner 0 has a cut towards each of its seven neighbours, in direction order.
  ASSERT_EQ(s->node_count(), 7);
  Point const cut[7] = {{0.5, 0, 0},   {0, 0.5, 0},   {0, 0, 0.5},    {0.5, 0.5, 0},
                        {0.5, 0, 0.5}, {0, 0.5, 0.5}, {0.5, 0.5, 0.5}};
  for (int n = 0; n < 7; ++n) EXPECT_TRUE(equals(s->node(n)->position(), cut[n], 1e-15)) << n;
  // Cube edges 0, 8, 3 run along +x, +y, +z from corner 0.
  EXPECT_EQ(triangles_of(*s), (Triangles{{0, 1, 2}}));
  EXPECT_EQ(s->edge_count(), 3);

  s = MarchingContourer(unit_grid(2, 2, 2, corner_zero_below), true).surface(0.0);
  EXPECT_EQ(s->node_count(), 7);
  EXPECT_EQ(triangles_of(*s),
            (Triangles{{0, 4, 6}, {2, 4, 6}, {2, 5, 6}, {1, 5, 6}, {1, 3, 6}, {0, 3, 6}}));
  EXPECT_EQ(s->edge_count(), 12);
  EXPECT_EQ(s->topology().euler_characteristic(), 1);  // a fan around the diagonal's vertex
}

TEST(MarchingContourer, TetrahedraGiveTheSameTrianglesWhenAllValuesAreReflected) {
  std::mt19937 random(20240611);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  std::vector<double> values(216);
  std::vector<double> reflected;
  for (double& v : values) {
    v = uniform(random);
    reflected.push_back(0.2 - v);  // mirrored about the level 0.1
  }
  THandle<Surface> a = MarchingContourer(unit_grid(6, 6, 6, values), true).surface(0.1);
  THandle<Surface> b = MarchingContourer(unit_grid(6, 6, 6, reflected), true).surface(0.1);
  ASSERT_GT(a->triangle_count(), 50);
  EXPECT_EQ(triangles_of(*a), triangles_of(*b));
  for (int v = 0; v < a->node_count(); ++v)
    EXPECT_TRUE(equals(a->node(v)->position(), b->node(v)->position(), 1e-12));
}

TEST(MarchingContourer, GridsWithoutACrossingOrWithoutCellsMakeNoTriangles) {
  for (bool tetrahedra : {false, true}) {
    MarchingContourer c(unit_grid(3, 3, 3, std::vector<double>(27, 2.0)), tetrahedra);
    THandle<Surface> s = c.surface(1.0);
    EXPECT_EQ(s->node_count() + s->triangle_count() + s->edge_count(), 0);
    EXPECT_EQ(c.surface(3.0)->node_count(), 0);
    // One node thick: a node on the level and cuts along x and y, but no cells.
    c.set_grid(unit_grid(3, 3, 1, {0.0, 1.0, 2.0, 1.0, 0.5, 1.0, 2.0, 1.0, 0.0}));
    s = c.surface(0.5);
    EXPECT_EQ(s->triangle_count() + s->edge_count(), 0);
    EXPECT_EQ(s->node_count(), 5);  // (1, 1) itself and four cuts from the corners
  }
  EXPECT_THROW(MarchingContourer(false).surface(0.0), std::runtime_error);
}

TEST(MarchingContourer, NodesOnTheLevelAreSharedVerticesOfAnExactPlane) {
  // x + y + z - 3 on a 3^3 unit grid: the plane passes through seven nodes and cuts the
  // cube [0, 2]^3 in a regular hexagon of side sqrt(2), area 3 sqrt(3).
  auto const g = unit_grid(3, 3, 3, [](int i, int j, int k) { return i + j + k - 3.0; });
  for (bool tetrahedra : {false, true}) {
    SCOPED_TRACE(tetrahedra);
    THandle<Surface> s = MarchingContourer(g, tetrahedra).surface(0.0);
    int on_nodes = 0;
    for (auto const& n : s->nodes()) {
      Point const p = n->position();
      EXPECT_NEAR(p.x() + p.y() + p.z(), 3.0, 1e-12);
      on_nodes +=
          p.x() == std::round(p.x()) && p.y() == std::round(p.y()) && p.z() == std::round(p.z());
    }
    EXPECT_EQ(on_nodes, 7);
    EXPECT_NEAR(s->area(), 3.0 * std::sqrt(3.0), 1e-12);
    // The on-level nodes leave degenerate triangles; without them the hexagon is a disc.
    s->remove_degenerate_triangles();
    s->orient_triangles();
    EXPECT_EQ(s->topology().euler_characteristic(), 1);
    EXPECT_TRUE(s->topology().consistently_oriented);
  }
}

TEST(MarchingContourer, RefusesGridsTooLongForItsVertexKeys) {
  // Refused before any value is read, so the calculated grid costs nothing here.
  auto const g = make_handle<CalculatedGrid>(1 << 21, 2, 2);
  EXPECT_THROW(MarchingContourer(g, true).surface(0.0), std::invalid_argument);
}

/// Contours the unit sphere sampled on n^3 nodes and checks it is one closed,
/// consistently oriented piece of genus 0; returns the relative errors of its area and
/// enclosed volume.
std::array<double, 2> contour_sphere(int n, bool tetrahedra) {
  THandle<Surface> s = MarchingContourer(sphere_grid(n), tetrahedra).surface(1.0);
  EXPECT_EQ(s->remove_degenerate_triangles(0.0), 0);
  // The cube table winds every case the same way, facing the side above the level;
  // the tetrahedron cases share triangles with their complements, so cannot.
  EXPECT_EQ(s->topology().consistently_oriented, !tetrahedra);
  int const flipped = s->orient_triangles();
  EXPECT_TRUE(tetrahedra || flipped == 0) << flipped;
  SurfaceTopology const t = s->topology();
  EXPECT_TRUE(t.closed());  // every side shared by exactly two triangles
  EXPECT_EQ(t.euler_characteristic(), 2);
  EXPECT_EQ(t.components, 1);
  EXPECT_TRUE(t.consistently_oriented);
  EXPECT_EQ(s->edge_count(), t.edges);  // the stored edges are exactly the triangle sides
  return {std::fabs(s->area() / (4.0 * pi) - 1.0),
          std::fabs(s->enclosed_volume() / (4.0 * pi / 3.0) - 1.0)};
}

TEST(MarchingContourer, SampledSphereConvergesToItsAreaAndVolume) {
  for (bool tetrahedra : {false, true}) {
    SCOPED_TRACE(tetrahedra);
    auto const coarse = contour_sphere(32, tetrahedra);
    auto const fine = contour_sphere(128, tetrahedra);
    std::printf("%s: area error %.2e (32^3) %.2e (128^3), volume error %.2e %.2e\n",
                tetrahedra ? "tetrahedra" : "cubes", coarse[0], fine[0], coarse[1], fine[1]);
    // Second order in the grid step: a quarter of the step divides the error by about 16.
    // Measured: 32^3 about 2e-3 (area) and 4e-3 (volume), 128^3 about 1.3e-4 and 2.5e-4.
    EXPECT_LT(coarse[0], 3e-3);
    EXPECT_LT(coarse[1], 5e-3);
    EXPECT_LT(fine[0], 2e-4);
    EXPECT_LT(fine[1], 3e-4);
    EXPECT_GT(coarse[0] / fine[0], 10.0);
    EXPECT_GT(coarse[1] / fine[1], 10.0);
  }
}

}  // namespace
}  // namespace structmath
