// SPDX-License-Identifier: MIT
// CalculatedGrid: a grid that stores nothing and asks its valuer for every value.
#pragma once

#include "structmath/export.hpp"
#include "structmath/grid/regular_grid.hpp"

namespace structmath {

/// A grid whose values, at nodes and at any point, come from its location valuer. Both
/// valuers start as a default_locationValuer, so an untouched grid reports -1.0
/// everywhere.
class STRUCTMATH_API CalculatedGrid : public RegularGrid {
 public:
  /// 10 x 10 x 10 nodes over the unit cube at the origin.
  CalculatedGrid();
  /// nx x ny x nz nodes over the unit cube at the origin.
  CalculatedGrid(int nx, int ny, int nz);
  /// Throws std::invalid_argument("Grid: node counts must be at least 1").
  CalculatedGrid(int nx, int ny, int nz, Point const& origin, Vector3D const& plus_x,
                 Vector3D const& plus_y, Vector3D const& plus_z);
  /// The same from non-const references, which are left unchanged.
  CalculatedGrid(int& nx, int& ny, int& nz, Point& origin, Vector3D& plus_x, Vector3D& plus_y,
                 Vector3D& plus_z);

  /// value(location(i, j, k)).
  double value(int i, int j, int k) const override;
  /// Through the valuers and outside modes. Never throws for an outside point: with no
  /// outside mode the valuer answers there too (unlike NormalGrid, on purpose: a
  /// computed field is defined everywhere).
  double value(Point const& p) const override;
  /// Always throws std::runtime_error("Cannot set a grid value for a calculated grid").
  void set_value(int i, int j, int k, double value) override;
  int grid_type() const override { return 4; }
};

}  // namespace structmath
