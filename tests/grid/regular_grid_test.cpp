// SPDX-License-Identifier: MIT
// Tests of NormalGrid and CalculatedGrid: geometry, fractional coordinates, outside modes.
#include "structmath/grid/regular_grid.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>

#include "structmath/grid/calculated_grid.hpp"
#include "structmath/grid/normal_grid.hpp"

namespace structmath {
namespace {

/// A valuer returning a fixed number.
class ConstantValuer : public LocationValuer {
 public:
  explicit ConstantValuer(double v) : v_(v) {}
  double value(Grid const&, Point const&) const override { return v_; }
  double local_value(Grid const&, Point const&) const override { return v_; }

 private:
  double v_;
};

/// A valuer returning x + 10 y + 100 z of the world point.
class CoordinateValuer : public LocationValuer {
 public:
  double value(Grid const&, Point const& p) const override {
    return p.x() + 10.0 * p.y() + 100.0 * p.z();
  }
  double local_value(Grid const&, Point const&) const override { return 0.0; }
};

template <class E>
std::string message_of(E const& call) {
  try {
    call();
  } catch (std::exception const& e) {
    return e.what();
  }
  return "no exception";
}

TEST(RegularGrid, DefaultGeometryIsTenNodesOverTheUnitCube) {
  NormalGrid g;
  CalculatedGrid c;
  for (Grid const* grid : {static_cast<Grid const*>(&g), static_cast<Grid const*>(&c)}) {
    EXPECT_EQ(grid->x_steps(), 10);
    EXPECT_EQ(grid->y_steps(), 10);
    EXPECT_EQ(grid->z_steps(), 10);
    EXPECT_TRUE(equals(grid->far_corner(), Point(1.0, 1.0, 1.0), 0.0));
    EXPECT_TRUE(equals(grid->location(9, 9, 9), Point(1.0, 1.0, 1.0), 1e-15));
    EXPECT_TRUE(equals(grid->location(3, 0, 6), Point(1.0 / 3.0, 0.0, 2.0 / 3.0), 1e-15));
    EXPECT_FALSE(grid->repeating());
  }
  EXPECT_EQ(g.grid_type(), 1);
  EXPECT_EQ(c.grid_type(), 4);
  EXPECT_EQ(g.value(4, 5, 6), 0.0);
  EXPECT_THROW(NormalGrid(0, 2, 2), std::invalid_argument);
  EXPECT_THROW(CalculatedGrid(2, 2, -3), std::invalid_argument);
}

TEST(RegularGrid, LocalSpaceDividesEveryAxisByTheXEdgeLength) {
  NormalGrid g(3, 3, 3, Point(1.0, 1.0, 1.0), Vector3D(2.0, 0.0, 0.0), Vector3D(0.0, 4.0, 0.0),
               Vector3D(0.0, 0.0, 1.0));
  // The point is node (1, 1, 1); v comes out scaled by 4/2 and w by 1/2.
  Point const p = g.location(1, 1, 1);
  EXPECT_TRUE(equals(p, Point(2.0, 3.0, 1.5), 1e-15));
  EXPECT_TRUE(equals(g.local_space(p), Point(1.0, 2.0, 0.5), 1e-15));

  // A one-node axis has no step, so its coordinate is not finite.
  NormalGrid flat(3, 3, 1);
  EXPECT_TRUE(equals(flat.step_z(), Vector3D(0.0, 0.0, 0.0), 0.0));
  EXPECT_FALSE(std::isfinite(flat.local_space(Point(0.5, 0.5, 0.0)).z()));
}

TEST(RegularGrid, InsideReachesOneStepBeyondTheLastNodeInclusively) {
  NormalGrid g(3, 4, 5, Point(0.0, 0.0, 0.0), Vector3D(2.0, 0.0, 0.0), Vector3D(0.0, 2.0, 0.0),
               Vector3D(0.0, 0.0, 2.0));
  // Steps 1, 2/3 and 1/2; u runs to 3, v to 4, w to 5 measured against |plus_x| = 2.
  EXPECT_TRUE(g.inside_grid(Point(0.0, 0.0, 0.0)));
  EXPECT_TRUE(g.inside_grid(Point(3.0, 0.0, 0.0)));
  EXPECT_FALSE(g.inside_grid(Point(3.0 + 1e-9, 0.0, 0.0)));
  EXPECT_FALSE(g.inside_grid(Point(-1e-9, 0.0, 0.0)));
  EXPECT_TRUE(g.inside_grid(Point(0.0, 4.0 * 2.0 / 3.0, 2.5)));
  EXPECT_FALSE(g.inside_grid(Point(0.0, 0.0, 2.5 + 1e-9)));
}

TEST(RegularGrid, OutsideModesExcludeEachOther) {
  NormalGrid g(2, 2, 2);
  g.set_value(1, 1, 1, 8.0);
  Point const far(5.25, 0.5, 0.5);
  EXPECT_EQ(message_of([&] { g.value(far); }), "Cannot obtain value for outside of grid");

  g.set_outside_value(3.5);
  EXPECT_EQ(g.value(far), 3.5);
  g.set_repeating(false);  // leaves the outside value selected
  EXPECT_EQ(g.value(far), 3.5);

  g.set_outside_location_valuer(make_handle<ConstantValuer>(42.0));
  EXPECT_EQ(g.value(far), 42.0);
  EXPECT_EQ(g.outside_value(), 3.5);  // kept, though no longer used

  g.set_repeating(true);
  EXPECT_TRUE(g.repeating());
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
  EXPECT_EQ(message_of([&] { g.set_value(0, 0, 0, 1.0); }),
            "Cannot set a grid value for a calculated grid");

  g.set_location_valuer(make_handle<CoordinateValuer>());
  EXPECT_DOUBLE_EQ(g.value(1, 2, 0), 2.0 + 10.0 * 4.0 + 100.0 * 3.0);
  // Outside with both outside flags clear: the in-grid valuer answers.
  EXPECT_DOUBLE_EQ(g.value(Point(10.0, 0.0, 0.0)), 10.0);
  g.set_outside_value(7.0);
  EXPECT_EQ(g.value(Point(10.0, 0.0, 0.0)), 7.0);
  g.set_outside_location_valuer(make_handle<ConstantValuer>(9.0));
  EXPECT_EQ(g.value(Point(10.0, 0.0, 0.0)), 9.0);
  EXPECT_DOUBLE_EQ(g.value(Point(2.0, 2.0, 3.0)), 2.0 + 20.0 + 300.0);
}

}  // namespace
}  // namespace structmath
