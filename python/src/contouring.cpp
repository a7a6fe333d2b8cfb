// SPDX-License-Identifier: MIT
// Python bindings: iso-surfaces of 3-D arrays and grids, as vertex, face and normal arrays.
#include <cstring>
#include <string>

#include "contouring.hpp"
#include "structmath/grid/contourer.hpp"
#include "structmath/grid/normal_grid.hpp"

namespace structmath::python {

namespace {

/// A contoured surface as arrays (views of the library's surface while fresh, plain arrays
/// once unpickled), with its measures and topology.
struct ContourResult {
  py::object vertices;
  py::object faces;
  py::object normals;
  py::object edges;
  double area = 0.0;
  py::object enclosed_volume;  // None unless the surface is closed
  SurfaceTopology topology;
  double level = 0.0;
  std::string method;
};

bool tetrahedra_method(std::string const& method) {
  if (method == "cubes") return false;
  if (method == "tetrahedra") return true;
  throw py::value_error("method must be 'cubes' or 'tetrahedra', got '" + method + "'");
}

py::tuple topology_state(SurfaceTopology const& t) {
  return py::make_tuple(t.vertices, t.edges, t.faces, t.boundary_edges, t.non_manifold_edges,
                        t.components, t.degenerate_triangles, t.consistently_oriented);
}

SurfaceTopology topology_from(py::tuple const& s) {
  SurfaceTopology t;
  t.vertices = s[0].cast<int>();
  t.edges = s[1].cast<int>();
  t.faces = s[2].cast<int>();
  t.boundary_edges = s[3].cast<int>();
  t.non_manifold_edges = s[4].cast<int>();
  t.components = s[5].cast<int>();
  t.degenerate_triangles = s[6].cast<int>();
  t.consistently_oriented = s[7].cast<bool>();
  return t;
}

}  // namespace

py::object contour_grid(THandle<Grid> const& grid, double level, std::string const& method) {
  bool const tetrahedra = tetrahedra_method(method);
  ContourResult result;
  THandle<Surface> surface;
  double volume = 0.0;
  {
    py::gil_scoped_release unlocked;
    MarchingContourer const contourer(grid, tetrahedra);
    surface = contourer.surface(level);
    surface->tidy();
    result.topology = surface->topology();
    result.area = surface->area();
    if (result.topology.closed()) volume = surface->enclosed_volume();
  }
  result.level = level;
  result.method = method;
  result.enclosed_volume = result.topology.closed() ? py::object(py::float_(volume)) : py::none();
  // The arrays are views of the surface's own storage, which they keep alive.
  std::shared_ptr<Surface const> const owner = surface.shared();
  auto const& positions = surface->positions();
  auto const& normals = surface->normals();
  auto const& corners = surface->triangle_indices();
  auto const& sides = surface->edge_indices();
  result.vertices =
      view(reinterpret_cast<double const*>(positions.data()), positions.size(), 3, owner);
  result.normals = view(reinterpret_cast<double const*>(normals.data()), normals.size(), 3, owner);
  result.faces = view(reinterpret_cast<int const*>(corners.data()), corners.size(), 3, owner);
  result.edges = view(reinterpret_cast<int const*>(sides.data()), sides.size(), 2, owner);
  return py::cast(std::move(result));
}

void bind_contouring(py::module_& m) {
  py::class_<SurfaceTopology>(m, "SurfaceTopology", R"doc(
What a surface's triangles make of it: vertices, edges and faces, sides on one triangle
only (boundary_edges) or on three or more (non_manifold_edges), connected components,
degenerate triangles, and whether the winding is consistent.)doc")
      .def_readonly("vertices", &SurfaceTopology::vertices)
      .def_readonly("edges", &SurfaceTopology::edges)
      .def_readonly("faces", &SurfaceTopology::faces)
      .def_readonly("boundary_edges", &SurfaceTopology::boundary_edges)
      .def_readonly("non_manifold_edges", &SurfaceTopology::non_manifold_edges)
      .def_readonly("components", &SurfaceTopology::components)
      .def_readonly("degenerate_triangles", &SurfaceTopology::degenerate_triangles)
      .def_readonly("consistently_oriented", &SurfaceTopology::consistently_oriented)
      .def_property_readonly("euler_characteristic", &SurfaceTopology::euler_characteristic,
                             "V - E + F: 2 for a closed sphere-like piece, 1 for a disc.")
      .def_property_readonly("closed", &SurfaceTopology::closed,
                             "No boundary and no non-manifold side, and at least one face.")
      .def_property_readonly("manifold",
                             [](SurfaceTopology const& t) { return t.non_manifold_edges == 0; })
      .def("__repr__",
           [](SurfaceTopology const& t) {
             return "SurfaceTopology(vertices=" + std::to_string(t.vertices) +
                    ", edges=" + std::to_string(t.edges) + ", faces=" + std::to_string(t.faces) +
                    ", components=" + std::to_string(t.components) +
                    ", closed=" + (t.closed() ? "True" : "False") + ")";
           })
      .def(py::pickle([](SurfaceTopology const& t) { return topology_state(t); },
                      [](py::tuple const& s) { return topology_from(s); }));

  py::class_<ContourResult>(m, "ContourResult", R"doc(
An iso-surface: vertices (V, 3) float64, faces (F, 3) int32 indices into vertices,
normals (V, 3) unit vertex normals, edges (E, 2) int32, as read-only arrays; area, the
enclosed volume (None unless the surface is closed), and the topology report.
Unpacks as vertices, faces, normals = result.)doc")
      .def_readonly("vertices", &ContourResult::vertices)
      .def_readonly("faces", &ContourResult::faces)
      .def_readonly("normals", &ContourResult::normals)
      .def_readonly("edges", &ContourResult::edges)
      .def_readonly("area", &ContourResult::area)
      .def_readonly("enclosed_volume", &ContourResult::enclosed_volume)
      .def_readonly("topology", &ContourResult::topology)
      .def_readonly("level", &ContourResult::level)
      .def_readonly("method", &ContourResult::method)
      .def("__iter__",
           [](ContourResult const& r) {
             return py::iter(py::make_tuple(r.vertices, r.faces, r.normals));
           })
      .def("__repr__",
           [](ContourResult const& r) {
             return "ContourResult(vertices=" + std::to_string(py::len(r.vertices)) +
                    ", faces=" + std::to_string(py::len(r.faces)) +
                    ", area=" + py::repr(py::float_(r.area)).cast<std::string>() + ")";
           })
      .def(py::pickle(
          [](ContourResult const& r) {
            return py::make_tuple(r.vertices, r.faces, r.normals, r.edges, r.area,
                                  r.enclosed_volume, topology_state(r.topology), r.level, r.method);
          },
          [](py::tuple const& t) {
            ContourResult r;
            r.vertices = t[0];
            r.faces = t[1];
            r.normals = t[2];
            r.edges = t[3];
            r.area = t[4].cast<double>();
            r.enclosed_volume = t[5];
            r.topology = topology_from(t[6].cast<py::tuple>());
            r.level = t[7].cast<double>();
            r.method = t[8].cast<std::string>();
            return r;
          }));

  m.def(
      "marching_cubes",
      [](py::handle values, double level, py::handle spacing, py::handle origin,
         std::string const& method) {
        DoubleArray const a = double_array(values, 3, "values");
        for (py::ssize_t n : a.shape) {
          if (n < 2) throw py::value_error("values must have at least 2 points along each axis");
        }
        Vector3D const step = to_vector(spacing, "spacing");
        Vector3D const o = to_vector(origin, "origin");
        Point const corner(o.x(), o.y(), o.z());
        auto const nx = static_cast<int>(a.shape[0]);
        auto const ny = static_cast<int>(a.shape[1]);
        auto const nz = static_cast<int>(a.shape[2]);
        auto grid = make_handle<NormalGrid>(nx, ny, nz, corner, Vector3D(step.x() * (nx - 1), 0, 0),
                                            Vector3D(0, step.y() * (ny - 1), 0),
                                            Vector3D(0, 0, step.z() * (nz - 1)));
        {
          // The grid keeps its values in its own block: one copy.
          py::gil_scoped_release unlocked;
          double* block = grid->values().data();
          if (a.strides[2] == 1 && a.strides[1] == nz && a.strides[0] == ny * nz) {
            std::memcpy(block, a.data, grid->values().size() * sizeof(double));
          } else {
            for (py::ssize_t i = 0; i < nx; ++i) {
              for (py::ssize_t j = 0; j < ny; ++j) {
                double const* row = a.data + i * a.strides[0] + j * a.strides[1];
                for (py::ssize_t k = 0; k < nz; ++k) *block++ = row[k * a.strides[2]];
              }
            }
          }
        }
        return contour_grid(grid, level, method);
      },
      py::arg("values"), py::arg("level"), py::arg("spacing") = std::make_tuple(1.0, 1.0, 1.0),
      py::arg("origin") = std::make_tuple(0.0, 0.0, 0.0), py::arg("method") = "cubes",
      R"doc(The iso-surface values == level of a 3-D array, by marching cubes (method="cubes")
or marching tetrahedra (method="tetrahedra", six per cell around its main diagonal).

values[i, j, k] is the value at origin + (i, j, k) * spacing, so vertices are in the
array's axis order, scaled by spacing: the layout of skimage.measure.marching_cubes.
Values must be finite. The values are copied once into the library's grid; the GIL is released while copying
and contouring. A node within 1e-6 of the level (absolute) counts as lying on it: divide
data of very small magnitude by |level| and contour at +-1 to make that relative.

The surface is tidied: triangles with a repeated vertex or no area are removed, the
winding is made consistent (closed pieces facing outwards: positive enclosed volume),
and vertex normals are the unit sums of the area vectors of the triangles around them.
Returns a ContourResult; `vertices, faces, normals = marching_cubes(...)` unpacks it.)doc");
}

}  // namespace structmath::python
