// SPDX-License-Identifier: MIT
// RegularGrid: the geometry, valuers and outside modes shared by the concrete grids.
#pragma once

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/grid/grid.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

/// The part of a grid that does not depend on where node values come from: origin,
/// edge vectors, node counts, the derived steps and lengths, the valuers and the
/// outside mode. NormalGrid stores values, CalculatedGrid computes them.
class STRUCTMATH_API RegularGrid : public Grid {
 public:
  Point origin() const override { return origin_; }
  Vector3D plus_x() const override { return plus_x_; }
  Vector3D plus_y() const override { return plus_y_; }
  Vector3D plus_z() const override { return plus_z_; }
  Point far_corner() const override;
  int x_steps() const override { return nx_; }
  int y_steps() const override { return ny_; }
  int z_steps() const override { return nz_; }
  /// origin + ((i * step_x + j * step_y) + k * step_z).
  Point location(int i, int j, int k) const override {
    return origin_ + ((static_cast<double>(i) * step_x_ + static_cast<double>(j) * step_y_) +
                      static_cast<double>(k) * step_z_);
  }
  /// u = (d . plus_x) / (|plus_x| |step_x|), v = (d . plus_y) / (|plus_x| |step_y|),
  /// w = (d . plus_z) / (|plus_x| |step_z|) with d = p - origin. Every divisor uses
  /// |plus_x|, so u, v, w are node indices only when the edges have equal lengths (kept:
  /// stored fractional coordinates depend on it). Repeating grids wrap each coordinate
  /// to x - floor(x), into the first cell rather than the node range. An axis with one
  /// node has a zero step, and its coordinate is infinite or NaN.
  Point local_space(Point const& p) const override;
  bool inside_grid(Point const& p) const override;

  void set_location_valuer(THandle<LocationValuer> valuer) override;
  void set_outside_location_valuer(THandle<LocationValuer> valuer) override;
  THandle<LocationValuer> location_valuer() const override { return valuer_; }
  THandle<LocationValuer> outside_location_valuer() const override { return outside_valuer_; }
  void set_repeating(bool repeating) override;
  bool repeating() const override { return is_repeating_; }
  void set_outside_value(double value) override;
  double outside_value() const override { return outside_; }

  /// Recomputes the derived fields from the edges and node counts: the edge lengths,
  /// the steps (plus_x / (nx - 1), zero with one node) and their lengths. The
  /// constructors call it; it changes nothing observable on a grid built since.
  void update_extra_attributes();

  /// The node spacing along each edge: plus_x / (nx - 1), or zero with one node.
  Vector3D step_x() const noexcept { return step_x_; }
  Vector3D step_y() const noexcept { return step_y_; }
  Vector3D step_z() const noexcept { return step_z_; }

 protected:
  /// Throws std::invalid_argument("Grid: node counts must be at least 1").
  RegularGrid(int nx, int ny, int nz, Point const& origin, Vector3D const& plus_x,
              Vector3D const& plus_y, Vector3D const& plus_z);

  /// The value at a point through the outside modes: the valuer inside the grid or when
  /// repeating, else the outside valuer, else the outside value; with no mode selected
  /// the valuer again, or (when outside_throws) std::runtime_error("Cannot obtain value
  /// for outside of grid").
  double value_at(Point const& p, bool outside_throws) const;

  Point origin_;
  Vector3D plus_x_;
  Vector3D plus_y_;
  Vector3D plus_z_;
  Vector3D step_x_;
  Vector3D step_y_;
  Vector3D step_z_;
  double plus_x_length_ = 0.0;
  double plus_y_length_ = 0.0;
  double plus_z_length_ = 0.0;
  double step_x_length_ = 0.0;
  double step_y_length_ = 0.0;
  double step_z_length_ = 0.0;
  int nx_;
  int ny_;
  int nz_;
  bool is_repeating_ = false;
  THandle<LocationValuer> valuer_;
  THandle<LocationValuer> outside_valuer_;
  double outside_ = 0.0;
  bool has_outside_value_ = false;
  bool has_outside_valuer_ = false;
};

}  // namespace structmath
