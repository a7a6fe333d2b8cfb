// SPDX-License-Identifier: MIT
// The compiled part of the structmath package: one extension, one binder per area.
#include "convert.hpp"

PYBIND11_MODULE(_structmath, m) {
  namespace sp = structmath::python;
  m.doc() = "Compiled core of the structmath package; import structmath instead.";
  sp::register_exceptions(m);
  sp::bind_values(m);
  sp::bind_geometry(m);
  sp::bind_superposition(m);
  sp::bind_volumes(m);
  sp::bind_contouring(m);
  sp::bind_graphs(m);
  sp::bind_optimisation(m);
  sp::bind_io(m);
}
