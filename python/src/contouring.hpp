// SPDX-License-Identifier: MIT
// The contouring entry point shared by marching_cubes and the cube files of the io bindings.
#pragma once

#include <string>

#include "convert.hpp"
#include "structmath/core/handle.hpp"
#include "structmath/grid/grid.hpp"

namespace structmath::python {

/// Contours the grid at the level with method "cubes" or "tetrahedra" (ValueError for
/// another), tidies the surface and returns it as a ContourResult. Releases the GIL while
/// contouring.
py::object contour_grid(THandle<Grid> const& grid, double level, std::string const& method);

}  // namespace structmath::python
