// SPDX-License-Identifier: MIT
// Test helpers of the grid suites: sampled unit-step grids and valuers made of functions.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "structmath/grid/normal_grid.hpp"

namespace structmath::testing {

/// A valuer answering f(P) for both world and local points.
class FunctionValuer : public LocationValuer {
 public:
  explicit FunctionValuer(std::function<double(Point const&)> f) : f_(std::move(f)) {}
  double value(Grid const&, Point const& p) const override { return f_(p); }
  double local_value(Grid const&, Point const& p) const override { return f_(p); }

 private:
  std::function<double(Point const&)> f_;
};

/// Sets node (i, j, k) of g to f(i, j, k) and returns g.
template <class F>
THandle<NormalGrid> filled(THandle<NormalGrid> g, F f) {
  for (int i = 0; i < g->x_steps(); ++i)
    for (int j = 0; j < g->y_steps(); ++j)
      for (int k = 0; k < g->z_steps(); ++k) g->set_value(i, j, k, f(i, j, k));
  return g;
}

/// nx * ny * nz nodes one unit apart from the origin, node (i, j, k) holding f(i, j, k).
template <class F>
THandle<NormalGrid> unit_grid(int nx, int ny, int nz, F f) {
  return filled(
      make_handle<NormalGrid>(nx, ny, nz, Point(0.0, 0.0, 0.0), Vector3D(nx - 1.0, 0.0, 0.0),
                              Vector3D(0.0, ny - 1.0, 0.0), Vector3D(0.0, 0.0, nz - 1.0)),
      f);
}

/// The same with the values listed k fastest.
inline THandle<NormalGrid> unit_grid(int nx, int ny, int nz, std::vector<double> const& values) {
  std::size_t e = 0;
  return unit_grid(nx, ny, nz, [&](int, int, int) { return values.at(e++); });
}

}  // namespace structmath::testing
