// SPDX-License-Identifier: MIT
// Grid: the abstract regular three-dimensional lattice of values.
#pragma once

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/grid/location_valuer.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

/// A lattice of nodes laid along three edge vectors from an origin, with a value at
/// every node and a location valuer for the value at any point.
///
/// x_steps(), y_steps() and z_steps() are node counts (nx, ny, nz), not interval counts.
/// Node indices are not bounds-checked. A point outside the grid is valued by one of
/// three mutually exclusive modes: repeating, an outside value, or an outside valuer.
class STRUCTMATH_API Grid {
 public:
  virtual ~Grid();

  /// Node (0, 0, 0).
  virtual Point origin() const = 0;
  /// The whole x edge of the grid: the last node along x lies at origin() + plus_x().
  virtual Vector3D plus_x() const = 0;
  virtual Vector3D plus_y() const = 0;
  virtual Vector3D plus_z() const = 0;
  /// origin() + plus_x() + plus_y() + plus_z().
  virtual Point far_corner() const = 0;
  /// Number of nodes along x.
  virtual int x_steps() const = 0;
  virtual int y_steps() const = 0;
  virtual int z_steps() const = 0;
  virtual Point location(int i, int j, int k) const = 0;
  virtual double value(int i, int j, int k) const = 0;
  virtual double value(Point const& p) const = 0;
  /// Fractional grid coordinates (u, v, w) of a point, wrapped into [0, 1) when repeating.
  virtual Point local_space(Point const& p) const = 0;
  virtual void set_location_valuer(THandle<LocationValuer> valuer) = 0;
  /// Selects the outside-valuer mode (clears repeating and the outside value).
  virtual void set_outside_location_valuer(THandle<LocationValuer> valuer) = 0;
  virtual THandle<LocationValuer> location_valuer() const = 0;
  virtual THandle<LocationValuer> outside_location_valuer() const = 0;
  /// 0 <= u <= nx, 0 <= v <= ny and 0 <= w <= nz, both bounds inclusive.
  virtual bool inside_grid(Point const& p) const = 0;
  /// Selects (true) or leaves (false) the repeating mode; true clears the other modes.
  virtual void set_repeating(bool repeating) = 0;
  virtual bool repeating() const = 0;
  virtual void set_value(int i, int j, int k, double value) = 0;
  /// Selects the outside-value mode (clears repeating and the outside valuer).
  virtual void set_outside_value(double value) = 0;
  /// The stored outside value, whichever mode is selected.
  virtual double outside_value() const = 0;
  /// 1 for NormalGrid, 4 for CalculatedGrid; other codes are not assigned here.
  virtual int grid_type() const = 0;
};

}  // namespace structmath
