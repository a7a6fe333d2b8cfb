// SPDX-License-Identifier: MIT
// Location valuers: eight-node interpolation and the constant valuer.
#include "structmath/grid/location_valuer.hpp"

#include <stdexcept>

#include "structmath/grid/grid.hpp"

namespace structmath {

LocationValuer::~LocationValuer() = default;

double SimpleInterpolator::value(Grid const& grid, Point const& p) const {
  return local_value(grid, grid.local_space(p));
}

double SimpleInterpolator::local_value(Grid const& grid, Point const& local) const {
  int const nx = grid.x_steps();
  int const ny = grid.y_steps();
  int const nz = grid.z_steps();
  // The grid does not check node indices, so a cell index outside 0 .. n - 1 (or a NaN
  // coordinate on a one-node axis) is refused here rather than read out of bounds.
  auto const has_cell = [](double u, int n) { return u > -1.0 && u < n; };
  if (!(has_cell(local.x(), nx) && has_cell(local.y(), ny) && has_cell(local.z(), nz))) {
    throw std::out_of_range("SimpleInterpolator::local_value(): point outside the grid's cells");
  }
  int const i = static_cast<int>(local.x());
  int const j = static_cast<int>(local.y());
  int const k = static_cast<int>(local.z());
  double const fx = local.x() - i;
  double const fy = local.y() - j;
  double const fz = local.z() - k;
  int const i1 = i == nx - 1 ? i : i + 1;
  int const j1 = j == ny - 1 ? j : j + 1;
  int const k1 = k == nz - 1 ? k : k + 1;
  // Lower node weighted by f, upper by 1 - f: see the class comment.
  double const a00 = fx * grid.value(i, j, k) + (1.0 - fx) * grid.value(i1, j, k);
  double const a10 = fx * grid.value(i, j1, k) + (1.0 - fx) * grid.value(i1, j1, k);
  double const a01 = fx * grid.value(i, j, k1) + (1.0 - fx) * grid.value(i1, j, k1);
  double const a11 = fx * grid.value(i, j1, k1) + (1.0 - fx) * grid.value(i1, j1, k1);
  double const b0 = fy * a00 + (1.0 - fy) * a10;
  double const b1 = fy * a01 + (1.0 - fy) * a11;
  return fz * b0 + (1.0 - fz) * b1;
}

double default_locationValuer::value(Grid const& /*grid*/, Point const& /*p*/) const {
  return -1.0;
}

double default_locationValuer::local_value(Grid const& /*grid*/, Point const& /*local*/) const {
  return -1.0;
}

}  // namespace structmath
