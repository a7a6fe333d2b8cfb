// SPDX-License-Identifier: MIT
// Tests of MarchingContourer: keys, vertex lookup, single cells and sampled spheres.
#include "structmath/grid/contourer.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "structmath/grid/calculated_grid.hpp"
#include "structmath/grid/normal_grid.hpp"

namespace structmath {
namespace {

constexpr double pi = 3.141592653589793;

/// A unit-step grid with the given values, k fastest.
THandle<Grid> cell_grid(int nx, int ny, int nz, std::vector<double> const& values) {
  auto g = make_handle<NormalGrid>(nx, ny, nz, Point(0.0, 0.0, 0.0), Vector3D(nx - 1.0, 0.0, 0.0),
                                   Vector3D(0.0, ny - 1.0, 0.0), Vector3D(0.0, 0.0, nz - 1.0));
  std::size_t e = 0;
  for (int i = 0; i < nx; ++i)
    for (int j = 0; j < ny; ++j)
      for (int k = 0; k < nz; ++k) g->set_value(i, j, k, values.at(e++));
  return g;
}

/// One cell whose corner 0 alone lies below the level 0.
THandle<Grid> corner_zero_below() {
  return cell_grid(2, 2, 2, {-1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0});
}

std::vector<std::array<int, 3>> triangles_of(Surface const& s) {
  std::vector<std::array<int, 3>> out;
  for (int t = 0; t < s.triangle_count(); ++t) out.push_back(s.triangle_nodes(t));
  return out;
}

/// The distance from a centre slightly off the grid's middle.
class DistanceValuer : public LocationValuer {
 public:
  double value(Grid const&, Point const& p) const override {
    return (p - Point(0.013, -0.021, 0.007)).length();
  }
  double local_value(Grid const&, Point const&) const override { return 0.0; }
};

/// n^3 nodes over [-1.3, 1.3]^3 holding the distance from a point near the middle.
THandle<NormalGrid> sphere_grid(int n) {
  auto g = make_handle<NormalGrid>(n, n, n, Point(-1.3, -1.3, -1.3), Vector3D(2.6, 0.0, 0.0),
                                   Vector3D(0.0, 2.6, 0.0), Vector3D(0.0, 0.0, 2.6));
  DistanceValuer const distance;
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j)
      for (int k = 0; k < n; ++k) g->set_value(i, j, k, distance.value(*g, g->location(i, j, k)));
  return g;
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
  EXPECT_EQ(c.interpolate(1.0, 0.0, 4.0, p1, p2)->index(), -1);
}

TEST(MarchingContourer, KeysAreDecimalTextJoinedByBars) {
  MarchingContourer const c(true);
  EXPECT_EQ(c.getcutkey(1, 22, 333, 4), "1|22|333|4");
  EXPECT_EQ(c.getedgekey(7, 3), "3|7");
  EXPECT_EQ(c.getedgekey(3, 17), "3|17");
  EXPECT_EQ(MarchingContourer::edge_key(7, 3), MarchingContourer::edge_key(3, 7));
  EXPECT_NE(MarchingContourer::cut_key(0, 0, 1, 0), MarchingContourer::cut_key(0, 1, 0, 0));
  EXPECT_NE(MarchingContourer::cut_key(1, 0, 0, 0), MarchingContourer::cut_key(0, 0, 0, 1));
}

TEST(MarchingContourer, FindsAVertexOnTheEdgeThenAtTheStartThenAtTheEnd) {
  MarchingContourer const c(false);
  IndexMap cuts;
  cuts.insert(MarchingContourer::cut_key(1, 1, 1, 0), 5);
  EXPECT_EQ(c.getnode(cuts, 1, 1, 1, 2), 5);  // the start's +x key, whatever it names
  EXPECT_EQ(c.getnode(cuts, 0, 0, 0, 6), 5);  // the far end of the main diagonal
  EXPECT_EQ(c.getnode(cuts, 1, 0, 1, 1), 5);
  cuts.insert(MarchingContourer::cut_key(1, 1, 1, 2), 9);
  EXPECT_EQ(c.getnode(cuts, 1, 1, 1, 2), 9);
  try {
    c.getnode(cuts, 0, 0, 0, 0);
    FAIL();
  } catch (std::runtime_error const& e) {
    EXPECT_EQ(std::string(e.what()), "Surface Index Error");
  }
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
  ASSERT_EQ(s->triangle_count(), 3);
  EXPECT_EQ(s->triangle_nodes(2), (std::array<int, 3>{3, 3, 0}));
  std::vector<std::array<int, 2>> expected = {{2, 0}, {0, 1}, {2, 1}, {2, 3},
                                              {1, 3}, {3, 3}, {3, 0}};
  ASSERT_EQ(edge_count, 7);
  ASSERT_EQ(s->edge_count(), 7);
  for (int e = 0; e < 7; ++e) {
    EXPECT_EQ(s->edge(e)->first()->index(), expected[static_cast<std::size_t>(e)][0]) << e;
    EXPECT_EQ(s->edge(e)->second()->index(), expected[static_cast<std::size_t>(e)][1]) << e;
  }
  EXPECT_EQ(edges.find(MarchingContourer::edge_key(0, 3)), 6);
}

TEST(MarchingContourer, OneCornerBelowMakesOneCubeTriangleOrSixTetrahedronTriangles) {
  MarchingContourer const cubes(corner_zero_below(), false);
  THandle<Surface> s = cubes.surface(0.0);
  // Corner 0 has a cut towards each of its seven neighbours, in direction order.
  ASSERT_EQ(s->node_count(), 7);
  Point const cut[7] = {{0.5, 0, 0},   {0, 0.5, 0},   {0, 0, 0.5},    {0.5, 0.5, 0},
                        {0.5, 0, 0.5}, {0, 0.5, 0.5}, {0.5, 0.5, 0.5}};
  for (int n = 0; n < 7; ++n) EXPECT_TRUE(equals(s->node(n)->position(), cut[n], 1e-15)) << n;
  // Cube edges 0, 8, 3 run along +x, +y, +z from corner 0.
  EXPECT_EQ(triangles_of(*s), (std::vector<std::array<int, 3>>{{0, 1, 2}}));
  EXPECT_EQ(s->edge_count(), 3);

  MarchingContourer const tetrahedra(corner_zero_below(), true);
  s = tetrahedra.surface(0.0);
  EXPECT_EQ(s->node_count(), 7);
  EXPECT_EQ(triangles_of(*s),
            (std::vector<std::array<int, 3>>{
                {0, 4, 6}, {2, 4, 6}, {2, 5, 6}, {1, 5, 6}, {1, 3, 6}, {0, 3, 6}}));
  EXPECT_EQ(s->edge_count(), 12);
  SurfaceTopology const t = s->topology();
  EXPECT_EQ(t.euler_characteristic(), 1);  // a fan around the main-diagonal vertex
  EXPECT_EQ(t.boundary_edges, 6);
}

TEST(MarchingContourer, TetrahedraGiveTheSameTrianglesWhenAllValuesAreReflected) {
  std::mt19937 random(20240611);
  std::uniform_real_distribution<double> uniform(-1.0, 1.0);
  int const n = 6;
  std::vector<double> values(n * n * n);
  for (double& v : values) v = uniform(random);
  double const level = 0.1;
  std::vector<double> reflected(values.size());
  for (std::size_t e = 0; e < values.size(); ++e) reflected[e] = 2.0 * level - values[e];

  THandle<Surface> a = MarchingContourer(cell_grid(n, n, n, values), true).surface(level);
  THandle<Surface> b = MarchingContourer(cell_grid(n, n, n, reflected), true).surface(level);
  ASSERT_GT(a->triangle_count(), 50);
  EXPECT_EQ(triangles_of(*a), triangles_of(*b));
  ASSERT_EQ(a->node_count(), b->node_count());
  for (int v = 0; v < a->node_count(); ++v)
    EXPECT_TRUE(equals(a->node(v)->position(), b->node(v)->position(), 1e-12));
  EXPECT_EQ(a->edge_count(), b->edge_count());
}

TEST(MarchingContourer, GridsWithoutACrossingOrWithoutCellsMakeNoTriangles) {
  for (bool tetrahedra : {false, true}) {
    MarchingContourer c(cell_grid(3, 3, 3, std::vector<double>(27, 2.0)), tetrahedra);
    THandle<Surface> s = c.surface(1.0);
    EXPECT_EQ(s->node_count(), 0);
    EXPECT_EQ(s->triangle_count(), 0);
    EXPECT_EQ(s->edge_count(), 0);
    EXPECT_EQ(c.surface(3.0)->node_count(), 0);

    // One node thick: a node on the level and cuts along x and y, but no cells.
    c.set_grid(cell_grid(3, 3, 1, {0.0, 1.0, 2.0, 1.0, 0.5, 1.0, 2.0, 1.0, 0.0}));
    s = c.surface(0.5);
    EXPECT_EQ(s->triangle_count(), 0);
    EXPECT_EQ(s->edge_count(), 0);
    EXPECT_EQ(s->node_count(), 5);  // (1, 1) itself and four cuts from the corners
  }
  MarchingContourer const unset(false);
  EXPECT_THROW(unset.surface(0.0), std::runtime_error);
}

TEST(MarchingContourer, NodesOnTheLevelAreSharedVerticesOfAnExactPlane) {
  // x + y + z - 3 on a 3^3 unit grid: the plane passes through seven nodes and cuts the
  // cube [0, 2]^3 in a regular hexagon of side sqrt(2), area 3 sqrt(3).
  std::vector<double> values;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 3; ++k) values.push_back(i + j + k - 3.0);
  for (bool tetrahedra : {false, true}) {
    SCOPED_TRACE(tetrahedra);
    THandle<Surface> s = MarchingContourer(cell_grid(3, 3, 3, values), tetrahedra).surface(0.0);
    int on_nodes = 0;
    for (auto const& n : s->nodes()) {
      Point const p = n->position();
      EXPECT_NEAR(p.x() + p.y() + p.z(), 3.0, 1e-12);
      if (p.x() == std::round(p.x()) && p.y() == std::round(p.y()) && p.z() == std::round(p.z()))
        ++on_nodes;
    }
    EXPECT_EQ(on_nodes, 7);
    EXPECT_NEAR(s->area(), 3.0 * std::sqrt(3.0), 1e-12);
    s->remove_degenerate_triangles();
    s->orient_triangles();
    SurfaceTopology const t = s->topology();
    EXPECT_EQ(t.euler_characteristic(), 1);
    EXPECT_EQ(t.components, 1);
    EXPECT_TRUE(t.consistently_oriented);
  }
}

TEST(MarchingContourer, CalculatedAndStoredGridsOfOneFieldGiveOneSurface) {
  auto calculated =
      make_handle<CalculatedGrid>(12, 12, 12, Point(-1.3, -1.3, -1.3), Vector3D(2.6, 0.0, 0.0),
                                  Vector3D(0.0, 2.6, 0.0), Vector3D(0.0, 0.0, 2.6));
  calculated->set_location_valuer(make_handle<DistanceValuer>());
  THandle<Surface> a = MarchingContourer(calculated, true).surface(1.0);
  THandle<Surface> b = MarchingContourer(sphere_grid(12), true).surface(1.0);
  EXPECT_EQ(triangles_of(*a), triangles_of(*b));
  EXPECT_GT(a->triangle_count(), 100);
}

TEST(MarchingContourer, GridErrorsPropagateAndOversizedGridsAreRefused) {
  class Failing : public LocationValuer {
   public:
    double value(Grid const&, Point const&) const override { throw std::domain_error("no value"); }
    double local_value(Grid const&, Point const&) const override { return 0.0; }
  };
  auto g = make_handle<CalculatedGrid>(3, 3, 3);
  g->set_location_valuer(make_handle<Failing>());
  EXPECT_THROW(MarchingContourer(g, false).surface(0.0), std::domain_error);
  // Too many nodes along an axis for the vertex keys: refused before any value is read.
  g = make_handle<CalculatedGrid>(1 << 21, 2, 2);
  g->set_location_valuer(make_handle<Failing>());
  EXPECT_THROW(MarchingContourer(g, true).surface(0.0), std::invalid_argument);
}

struct SphereResult {
  double area_error;
  double volume_error;
};

/// Contours the sampled sphere of radius 1 and checks it is one closed, orientable
/// piece of genus 0; returns the relative errors of its area and volume.
SphereResult contour_sphere(int n, bool tetrahedra) {
  THandle<Surface> s = MarchingContourer(sphere_grid(n), tetrahedra).surface(1.0);
  EXPECT_EQ(s->remove_degenerate_triangles(0.0), 0);
  // The cube table winds every case the same way, facing the side above the level;
  // the tetrahedron cases share triangles with their complements, so cannot.
  EXPECT_EQ(s->topology().consistently_oriented, !tetrahedra);
  int const flipped = s->orient_triangles();
  if (!tetrahedra) {
    EXPECT_EQ(flipped, 0);
  }
  SurfaceTopology const t = s->topology();
  EXPECT_TRUE(t.closed());
  EXPECT_EQ(t.boundary_edges, 0);
  EXPECT_EQ(t.euler_characteristic(), 2);
  EXPECT_EQ(t.components, 1);
  EXPECT_TRUE(t.consistently_oriented);
  // The stored edges are exactly the triangle sides.
  EXPECT_EQ(s->edge_count(), t.edges);
  EXPECT_EQ(s->remove_unused_edges(), 0);
  return {std::fabs(s->area() / (4.0 * pi) - 1.0),
          std::fabs(s->enclosed_volume() / (4.0 * pi / 3.0) - 1.0)};
}

TEST(MarchingContourer, SampledSphereConvergesToItsAreaAndVolume) {
  for (bool tetrahedra : {false, true}) {
    SCOPED_TRACE(tetrahedra);
    SphereResult const coarse = contour_sphere(32, tetrahedra);
    SphereResult const medium = contour_sphere(64, tetrahedra);
    SphereResult const fine = contour_sphere(128, tetrahedra);
    std::printf("%s: area error %.2e %.2e %.2e, volume error %.2e %.2e %.2e\n",
                tetrahedra ? "tetrahedra" : "cubes", coarse.area_error, medium.area_error,
                fine.area_error, coarse.volume_error, medium.volume_error, fine.volume_error);
    // Second order in the grid step: each halving of the step divides the error by
    // about four. Measured: 32^3 about 2e-3 (area) and 4e-3 (volume), 128^3 about 1.3e-4
    // and 2.5e-4.
    EXPECT_LT(coarse.area_error, 3e-3);
    EXPECT_LT(coarse.volume_error, 5e-3);
    EXPECT_LT(fine.area_error, 2e-4);
    EXPECT_LT(fine.volume_error, 3e-4);
    EXPECT_GT(coarse.area_error / medium.area_error, 3.0);
    EXPECT_GT(medium.area_error / fine.area_error, 3.0);
    EXPECT_GT(coarse.volume_error / medium.volume_error, 3.0);
    EXPECT_GT(medium.volume_error / fine.volume_error, 3.0);
  }
}

}  // namespace
}  // namespace structmath
