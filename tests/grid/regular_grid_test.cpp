// SPDX-License-Identifier: MIT
// Tests of NormalGrid and CalculatedGrid: geometry, fractional coordinates, outside modes.
#include "structmath/grid/regular_grid.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <vector>

#include "grid_fixtures.hpp"
#include "structmath/grid/calculated_grid.hpp"
#include "structmath/grid/normal_grid.hpp"
#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;
using Valuer = testing::FunctionValuer;

TEST(RegularGrid, DefaultGeometryIsTenNodesOverTheUnitCube) {
  NormalGrid g;
  CalculatedGrid c;
  for (Grid const* grid : {static_cast<Grid const*>(&g), static_cast<Grid const*>(&c)}) {
    EXPECT_EQ(std::vector<int>({grid->x_steps(), grid->y_steps(), grid->z_steps()}),
              std::vector<int>({10, 10, 10}));
    EXPECT_TRUE(equals(grid->far_corner(), Point(1.0, 1.0, 1.0), 0.0));
    EXPECT_TRUE(equals(grid->location(3, 0, 6), Point(1.0 / 3.0, 0.0, 2.0 / 3.0), 1e-15));
  }
  EXPECT_EQ(g.grid_type(), 1);
  EXPECT_EQ(c.grid_type(), 4);
  EXPECT_EQ(g.value(4, 5, 6), 0.0);
  EXPECT_THROW(NormalGrid(0, 2, 2), std::invalid_argument);
  EXPECT_THROW(CalculatedGrid(2, 2, -3), std::invalid_argument);
}

TEST(RegularGrid, NonConstArgumentsBuildTheSameGridAndRecomputingChangesNothing) {
  int nx = 3, ny = 4, nz = 5;
  Point origin(1, 2, 3);
  Vector3D px(2, 0, 0), py(0, 3, 0), pz(0, 0, 4);
  NormalGrid const by_reference(nx, ny, nz, origin, px, py, pz);
  CalculatedGrid calculated(nx, ny, nz, origin, px, py, pz);
  NormalGrid by_value(3, 4, 5, Point(1, 2, 3), Vector3D(2, 0, 0), Vector3D(0, 3, 0),
                      Vector3D(0, 0, 4));
  by_value.update_extra_attributes();
  calculated.update_extra_attributes();
  for (Point const p : {Point(1.5, 2.5, 3.5), Point(2.9, 4.1, 6.0)}) {
    EXPECT_TRUE(equals(by_reference.local_space(p), by_value.local_space(p), 0.0));
    EXPECT_TRUE(equals(calculated.local_space(p), by_value.local_space(p), 0.0));
  }
  EXPECT_TRUE(equals(by_value.step_y(), Vector3D(0, 1, 0), 0.0));
  EXPECT_TRUE(equals(by_reference.location(2, 3, 4), Point(3, 5, 7), 0.0));
  EXPECT_EQ(nx, 3);  // the references are left as they were
  EXPECT_TRUE(equals(origin, Point(1, 2, 3), 0.0));
}

TEST(RegularGrid, LocalSpaceDividesByTheXEdgeLengthAndInsideReachesTheNodeCounts) {
  NormalGrid g(3, 4, 5, Point(1.0, 1.0, 1.0), Vector3D(2.0, 0.0, 0.0), Vector3D(0.0, 4.0, 0.0),
               Vector3D(0.0, 0.0, 1.0));
  // Steps 1, 4/3 and 1/4: at node (1, 1, 1) v comes out scaled by 4/2 and w by 1/2.
  Point const p = g.location(1, 1, 1);
  EXPECT_TRUE(equals(p, Point(2.0, 1.0 + 4.0 / 3.0, 1.25), 1e-15));
  EXPECT_TRUE(equals(g.local_space(p), Point(1.0, 2.0, 0.5), 1e-15));
  // Inside runs, both ends included, to u = 3, v = 4 and w = 5: up to 3, 8/3 and 2.5
  // beyond the origin along x, y and z, though the y edge itself is 4 long.
  EXPECT_TRUE(g.inside_grid(Point(1.0, 1.0, 1.0)) && g.inside_grid(Point(4.0, 1.0, 3.5)));
  EXPECT_TRUE(g.inside_grid(Point(1.0, 1.0 + 8.0 / 3.0 - 1e-9, 1.0)));
  for (Point const& q : {Point(4.0 + 1e-9, 1.0, 1.0), Point(1.0 - 1e-9, 1.0, 1.0),
                         Point(1.0, 1.0, 3.5 + 1e-9), Point(1.0, 1.0 + 8.0 / 3.0 + 1e-9, 1.0)})
    EXPECT_FALSE(g.inside_grid(q)) << q.x() << " " << q.y() << " " << q.z();
  // A one-node axis has no step, so its coordinate is not finite.
  EXPECT_FALSE(std::isfinite(NormalGrid(3, 3, 1).local_space(Point(0.5, 0.5, 0.0)).z()));
}

TEST(RegularGrid, OutsideModesExcludeEachOther) {
  NormalGrid g(2, 2, 2);
  g.set_value(1, 1, 1, 8.0);
  Point const far(5.25, 0.5, 0.5);
  expect_throw_message<std::runtime_error>([&] { g.value(far); },
                                           "Cannot obtain value for outside of grid");

  g.set_outside_value(3.5);
  EXPECT_EQ(g.value(far), 3.5);
  g.set_repeating(false);  // leaves the outside value selected
  EXPECT_EQ(g.value(far), 3.5);

  g.set_outside_location_valuer(make_handle<Valuer>([](Point const&) { return 42.0; }));
  EXPECT_EQ(g.value(far), 42.0);
  EXPECT_EQ(g.outside_value(), 3.5);  // kept, though no longer used

  g.set_repeating(true);
  EXPECT_EQ(g.value(far), g.value(Point(0.25, 0.5, 0.5)));

  g.set_outside_value(-1.0);
  EXPECT_FALSE(g.repeating());
  EXPECT_EQ(g.value(far), -1.0);

  // Inside the grid the outside modes play no part.
  EXPECT_EQ(g.value(Point(0.0, 0.0, 0.0)), 8.0);

  g.set_outside_location_valuer(THandle<LocationValuer>());
  EXPECT_THROW(g.value(far), std::runtime_error);
}

TEST(CalculatedGrid, AsksItsValuerEverywhereAndNeverThrowsForOutsidePoints) {
  CalculatedGrid g(3, 3, 3, Point(1.0, 2.0, 3.0), Vector3D(2.0, 0.0, 0.0), Vector3D(0.0, 2.0, 0.0),
                   Vector3D(0.0, 0.0, 2.0));
  EXPECT_EQ(g.value(1, 2, 0), -1.0);
  EXPECT_EQ(g.value(Point(1e6, -1e6, 0.0)), -1.0);
  expect_throw_message<std::runtime_error>([&] { g.set_value(0, 0, 0, 1.0); },
                                           "Cannot set a grid value for a calculated grid");

  g.set_location_valuer(
      make_handle<Valuer>([](Point const& p) { return p.x() + 10.0 * p.y() + 100.0 * p.z(); }));
  EXPECT_DOUBLE_EQ(g.value(1, 2, 0), 2.0 + 10.0 * 4.0 + 100.0 * 3.0);
  // Outside with both outside flags clear: the in-grid valuer answers.
  EXPECT_DOUBLE_EQ(g.value(Point(10.0, 0.0, 0.0)), 10.0);
  g.set_outside_value(7.0);
  EXPECT_EQ(g.value(Point(10.0, 0.0, 0.0)), 7.0);
  g.set_outside_location_valuer(make_handle<Valuer>([](Point const&) { return 9.0; }));
  EXPECT_EQ(g.value(Point(10.0, 0.0, 0.0)), 9.0);
  EXPECT_DOUBLE_EQ(g.value(Point(2.0, 2.0, 3.0)), 2.0 + 20.0 + 300.0);
}

}  // namespace
}  // namespace structmath
