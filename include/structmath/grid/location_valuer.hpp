// SPDX-License-Identifier: MIT
// Location valuers: the strategies that give a grid's value at any point.
#pragma once

#include "structmath/export.hpp"
#include "structmath/numeric/point.hpp"

namespace structmath {

class Grid;

/// How a grid turns a point into a value. Valuers are stateless and shared through
/// THandle, so one valuer may serve many grids.
class STRUCTMATH_API LocationValuer {
 public:
  virtual ~LocationValuer();
  /// The value at a point given in world coordinates.
  virtual double value(Grid const& grid, Point const& p) const = 0;
  /// The value at a point given in the grid's fractional coordinates (Grid::local_space).
  virtual double local_value(Grid const& grid, Point const& local) const = 0;
};

/// Eight-node interpolation within the grid cell that holds the point.
///
/// Weights run the reverse way from textbook trilinear interpolation: along each axis the
/// lower node is weighted by the fractional offset f and the upper node by 1 - f. So at a
/// node the result is the value of the node diagonally above it, and on the top face of
/// an axis (where the upper neighbour is the node itself) the node's own value. Kept:
/// existing grids and their callers are calibrated to this weighting.
class STRUCTMATH_API SimpleInterpolator : public LocationValuer {
 public:
  /// local_value at grid.local_space(p).
  double value(Grid const& grid, Point const& p) const override;
  /// The cell index along each axis is the coordinate truncated toward zero. Throws
  /// std::out_of_range("SimpleInterpolator::local_value(): point outside the grid's
  /// cells") when that index is not a node index (for instance at u = x_steps(), which
  /// Grid::inside_grid still counts as inside) or a coordinate is NaN.
  double local_value(Grid const& grid, Point const& local) const override;
};

/// The constant valuer: -1.0 everywhere. The default of a CalculatedGrid.
class STRUCTMATH_API default_locationValuer : public LocationValuer {
 public:
  double value(Grid const& grid, Point const& p) const override;
  double local_value(Grid const& grid, Point const& local) const override;
};

}  // namespace structmath
