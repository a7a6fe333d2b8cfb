// SPDX-License-Identifier: MIT
// `structmath contour`: the iso-surface of a cube file, whatever the units of its values.
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <ostream>

#include "structmath/grid/contourer.hpp"
#include "structmath/io/cube.hpp"
#include "structmath/io/surface_writers.hpp"
#include "tool.hpp"

namespace structmath::tool {

namespace {

io::CubeFile read_cube_input(std::string const& path) {
  if (path == "-") return io::read_cube(std::cin, "<stdin>");
  std::ifstream in(path);
  if (!in) throw InputError("cannot open " + path + ": " + std::strerror(errno));
  return io::read_cube(in, path);
}

}  // namespace

Outcome contour(ContourArgs const& args) {
  std::string const file = args.file.empty() ? bundled("water_density.cube") : args.file;
  io::CubeFile const cube = read_cube_input(file);
  NormalGrid& grid = *cube.grid;
  // The contourer takes a value within an absolute 1e-6 of the level as lying on it.
  // Dividing the values by |level| makes that tolerance relative to the level, so the
  // surface does not depend on the units of the data.
  double level = args.level;
  if (level != 0.0) {
    double const scale = std::fabs(level);
    for (int i = 0; i < grid.x_steps(); ++i) {
      for (int j = 0; j < grid.y_steps(); ++j) {
        for (int k = 0; k < grid.z_steps(); ++k) {
          grid.set_value(i, j, k, grid.value(i, j, k) / scale);
        }
      }
    }
    level = level > 0.0 ? 1.0 : -1.0;
  }
  MarchingContourer const contourer(cube.grid, args.tetrahedra);
  THandle<Surface> const surface = contourer.surface(level);
  int const removed = surface->tidy();
  SurfaceTopology const topology = surface->topology();
  if (!args.output.empty()) io::write_surface(args.output, *surface);

  Json result;
  result["file"] = file;
  result["level"] = args.level;
  result["method"] = args.tetrahedra ? "tetrahedra" : "cubes";
  result["grid"] = {grid.x_steps(), grid.y_steps(), grid.z_steps()};
  result["nodes"] = surface->node_count();
  result["triangles"] = surface->triangle_count();
  result["edges"] = surface->edge_count();
  result["degenerate_triangles_removed"] = removed;
  result["area"] = surface->area();
  result["closed"] = topology.closed();
  result["manifold"] = topology.non_manifold_edges == 0;
  result["boundary_edges"] = topology.boundary_edges;
  result["non_manifold_edges"] = topology.non_manifold_edges;
  result["components"] = topology.components;
  result["euler_characteristic"] = topology.euler_characteristic();
  if (topology.closed()) result["enclosed_volume"] = surface->enclosed_volume();
  if (!args.output.empty()) result["output"] = args.output;
  return {result, [](Json const& r, std::ostream& out) {
            out << r["file"].get<std::string>() << ": iso-surface at " << r["level"].get<double>()
                << " by marching " << r["method"].get<std::string>() << " on a "
                << r["grid"][0].get<int>() << "x" << r["grid"][1].get<int>() << "x"
                << r["grid"][2].get<int>() << " grid\n"
                << "nodes: " << r["nodes"].get<int>()
                << ", triangles: " << r["triangles"].get<int>()
                << ", edges: " << r["edges"].get<int>() << '\n'
                << std::fixed << std::setprecision(3) << "area: " << r["area"].get<double>()
                << " A^2\n";
            if (r.contains("enclosed_volume")) {
              out << "enclosed volume: " << r["enclosed_volume"].get<double>() << " A^3\n";
            }
            out << "closed: " << (r["closed"].get<bool>() ? "yes" : "no")
                << ", manifold: " << (r["manifold"].get<bool>() ? "yes" : "no")
                << ", pieces: " << r["components"].get<int>()
                << ", Euler characteristic: " << r["euler_characteristic"].get<int>() << '\n';
            if (!r["closed"].get<bool>()) {
              out << "open or non-manifold sides: " << r["boundary_edges"].get<int>()
                  << " boundary, " << r["non_manifold_edges"].get<int>()
                  << " shared by three or more triangles\n";
            }
            if (r.contains("output")) {
              out << "surface written to " << r["output"].get<std::string>() << '\n';
            }
          }};
}

}  // namespace structmath::tool
