// SPDX-License-Identifier: MIT
// `structmath contour`: the iso-surface of a cube file.
#include <iomanip>
#include <ostream>

#include "structmath/grid/contourer.hpp"
#include "structmath/io/cube.hpp"
#include "structmath/io/surface_writers.hpp"
#include "tool.hpp"

namespace structmath::tool {

Outcome run_contour(ContourArgs const& args) {
  std::string const file = args.file.empty() ? bundled("water_density.cube") : args.file;
  io::CubeFile const cube = io::read_cube(file);
  MarchingContourer const contourer(cube.grid, args.tetrahedra);
  THandle<Surface> const surface = contourer.surface(args.level);
  int const removed = surface->remove_degenerate_triangles(0.0);
  surface->remove_unused_edges();
  surface->remove_unused_nodes();
  surface->orient_triangles();
  surface->update_node_normals();
  SurfaceTopology const topology = surface->topology();
  if (!args.output.empty()) io::write_surface(args.output, *surface);

  Json result;
  result["file"] = file;
  result["level"] = args.level;
  result["method"] = args.tetrahedra ? "tetrahedra" : "cubes";
  result["grid"] = {cube.grid->x_steps(), cube.grid->y_steps(), cube.grid->z_steps()};
  result["nodes"] = surface->node_count();
  result["triangles"] = surface->triangle_count();
  result["edges"] = surface->edge_count();
  result["degenerate_triangles_removed"] = removed;
  result["area"] = surface->area();
  result["closed"] = topology.closed();
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
                << ", pieces: " << r["components"].get<int>()
                << ", Euler characteristic: " << r["euler_characteristic"].get<int>() << '\n';
            if (r.contains("output")) {
              out << "surface written to " << r["output"].get<std::string>() << '\n';
            }
          }};
}

}  // namespace structmath::tool
