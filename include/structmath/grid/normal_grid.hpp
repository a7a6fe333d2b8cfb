// SPDX-License-Identifier: MIT
// NormalGrid: a grid that stores one double per node.
#pragma once

#include "structmath/export.hpp"
#include "structmath/grid/regular_grid.hpp"
#include "structmath/grid/surface_array3d.hpp"

namespace structmath {

/// A grid whose node values are stored, all 0.0 at construction. Points are valued by a
/// SimpleInterpolator unless another valuer is set; no outside mode is selected.
class STRUCTMATH_API NormalGrid : public RegularGrid {
 public:
  /// 10 x 10 x 10 nodes over the unit cube at the origin.
  NormalGrid();
  /// nx x ny x nz nodes over the unit cube at the origin.
  NormalGrid(int nx, int ny, int nz);
  /// Throws std::invalid_argument("Grid: node counts must be at least 1").
  NormalGrid(int nx, int ny, int nz, Point const& origin, Vector3D const& plus_x,
             Vector3D const& plus_y, Vector3D const& plus_z);
  /// The same from non-const references, which are left unchanged.
  NormalGrid(int& nx, int& ny, int& nz, Point& origin, Vector3D& plus_x, Vector3D& plus_y,
             Vector3D& plus_z);

  /// The stored value; indices unchecked.
  double value(int i, int j, int k) const override { return values_(i, j, k); }
  /// Through the valuers and outside modes; with no outside mode, a point outside the
  /// grid throws std::runtime_error("Cannot obtain value for outside of grid").
  double value(Point const& p) const override;
  /// Stores a node value; indices unchecked.
  void set_value(int i, int j, int k, double value) override { values_(i, j, k) = value; }
  int grid_type() const override { return 1; }

  /// The node values, k fastest.
  SurfaceArray3D<double> const& values() const noexcept { return values_; }

 private:
  SurfaceArray3D<double> values_;
};

}  // namespace structmath
