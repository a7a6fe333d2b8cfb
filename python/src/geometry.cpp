// SPDX-License-Identifier: MIT
// Python bindings: distances, angles and torsions over index tuples, point-set measures, planes.
#include <string>

#include "convert.hpp"
#include "structmath/geometry/geometry_functions.hpp"
#include "structmath/geometry/plane.hpp"

namespace structmath::python {

namespace {

Point row(DoubleArray const& a, int i) { return Point(a.at(i, 0), a.at(i, 1), a.at(i, 2)); }

// Applies f to the points named by each k-tuple of indices; one double per tuple.
template <std::size_t K, typename F>
py::array_t<double> over_tuples(py::handle coordinates, py::handle tuples, char const* what, F f) {
  DoubleArray const a = coordinate_array(coordinates, "coordinates");
  std::vector<int> const index = index_rows(tuples, static_cast<py::ssize_t>(K), a.shape[0], what);
  std::size_t const n = index.size() / K;
  py::array_t<double> out(static_cast<py::ssize_t>(n));
  double* result = out.mutable_data();
  for (std::size_t t = 0; t < n; ++t) {
    std::array<Point, K> p;
    for (std::size_t c = 0; c < K; ++c) p[c] = row(a, index[t * K + c]);
    result[t] = f(p);
  }
  return out;
}

void check_same_length(std::vector<Point> const& a, std::vector<Point> const& b) {
  if (a.size() != b.size()) {
    throw py::value_error("the two coordinate arrays must have the same number of points, got " +
                          std::to_string(a.size()) + " and " + std::to_string(b.size()));
  }
}

std::vector<double> weights_for(py::handle weights, std::size_t n) {
  if (weights.is_none()) return std::vector<double>(n, 1.0);
  return to_doubles(weights, "weights", static_cast<py::ssize_t>(n));
}

}  // namespace

void bind_geometry(py::module_& m) {
  m.def(
      "distances",
      [](py::handle coordinates, py::handle pairs) {
        return over_tuples<2>(coordinates, pairs, "pairs",
                              [](std::array<Point, 2> const& p) { return distance(p[0], p[1]); });
      },
      py::arg("coordinates"), py::arg("pairs"),
      R"doc(Distances between the points of each pair of row indices.

coordinates: (N, 3) array; pairs: (M, 2) integer array of indices counted from 0.
Returns an (M,) array. IndexError for an index outside 0 to N - 1.)doc");
  m.def(
      "angles",
      [](py::handle coordinates, py::handle triples) {
        return over_tuples<3>(coordinates, triples, "triples", [](std::array<Point, 3> const& p) {
          return angle(p[0], p[1], p[2]).radians();
        });
      },
      py::arg("coordinates"), py::arg("triples"),
      R"doc(Angles a-b-c at the middle point b of each (M, 3) index triple, in radians in
[0, pi]. RuntimeError("Cannot normalize a zero length Vector") when a or c coincides
with b (within 1e-7).)doc");
  m.def(
      "torsions",
      [](py::handle coordinates, py::handle quadruples) {
        return over_tuples<4>(coordinates, quadruples, "quadruples",
                              [](std::array<Point, 4> const& p) {
                                return torsion_angle(p[0], p[1], p[2], p[3]).radians();
                              });
      },
      py::arg("coordinates"), py::arg("quadruples"),
      R"doc(Torsion angles a-b-c-d of each (M, 4) index quadruple, in radians in [-pi, pi],
positive when, looking along b -> c, the far bond c-d is turned clockwise from a-b.
RuntimeError("Cannot normalize a zero length Vector") when three consecutive points are
collinear.)doc");
  m.def(
      "centroid",
      [](py::handle coordinates) {
        return to_array(centroid(to_points(coordinates, "coordinates")));
      },
      py::arg("coordinates"), "The mean of the points, (0, 0, 0) for none; a (3,) array.");
  m.def(
      "rms_deviation",
      [](py::handle a, py::handle b, py::handle weights) {
        std::vector<Point> const p = to_points(a, "a");
        std::vector<Point> const q = to_points(b, "b");
        check_same_length(p, q);
        if (weights.is_none()) return rms_distance(p, q);
        return weighted_rms_distance(p, q, weights_for(weights, p.size()));
      },
      py::arg("a"), py::arg("b"), py::arg("weights") = py::none(),
      R"doc(sqrt(sum w_i |a_i - b_i|^2 / N) over corresponding points (w_i = 1 unweighted):
divided by the number of points, not by the sum of the weights. NaN for no points.)doc");
  m.def(
      "max_deviation",
      [](py::handle a, py::handle b) {
        std::vector<Point> const p = to_points(a, "a");
        std::vector<Point> const q = to_points(b, "b");
        check_same_length(p, q);
        return max_distance(p, q);
      },
      py::arg("a"), py::arg("b"),
      "The largest distance between corresponding points (0 for none).");
  m.def(
      "inertia_tensor",
      [](py::handle coordinates, py::handle weights) {
        std::vector<Point> const p = to_points(coordinates, "coordinates");
        return to_array(*weighted_inertia_tensor(p, weights_for(weights, p.size())));
      },
      py::arg("coordinates"), py::arg("weights") = py::none(),
      R"doc(The weighted second-moment matrix sum w_i p_i p_i^T of the coordinates as given,
a (3, 3) array (w_i = 1 without weights). Centre the points first for the tensor about
their centroid; the principal axes are its eigenvectors.)doc");

  py::class_<Plane>(m, "Plane", R"doc(
The plane n.x = d with unit normal n, and in-plane unit axes v1, v2 making (v1, v2, n) a
right-handed frame. fit_plane() makes the least-squares plane of a point set.)doc")
      .def(py::init([](py::handle normal, double distance) {
             return Plane(to_vector(normal, "normal"), distance);
           }),
           py::arg("normal"), py::arg("distance"),
           "The plane n.x = distance with n = normal / |normal|.")
      .def_property_readonly("normal", [](Plane const& p) { return to_array(p.normal()); })
      .def_property_readonly(
          "distance", [](Plane const& p) { return p.distance(); },
          "d, the signed distance of the plane from the origin along n.")
      .def_property_readonly("v1", [](Plane const& p) { return to_array(p.v1()); })
      .def_property_readonly("v2", [](Plane const& p) { return to_array(p.v2()); })
      .def(
          "signed_distances",
          [](Plane const& plane, py::handle points) {
            DoubleArray const a = coordinate_array(points, "points");
            py::array_t<double> out(a.shape[0]);
            double* d = out.mutable_data();
            for (py::ssize_t i = 0; i < a.shape[0]; ++i) {
              d[i] = plane.signed_distance(row(a, static_cast<int>(i)));
            }
            return out;
          },
          py::arg("points"),
          "d - n.p for each point: positive on the side the normal points away from.")
      .def(
          "project",
          [](Plane const& plane, py::handle points) {
            std::vector<Point> p = to_points(points, "points");
            for (Point& q : p) q = plane.projection(q);
            return to_array(p);
          },
          py::arg("points"), "The feet of the perpendiculars from the points.")
      .def("__repr__",
           [](Plane const& p) {
             Vector3D const& n = p.normal();
             return "Plane(normal=(" + py::repr(py::float_(n.x())).cast<std::string>() + ", " +
                    py::repr(py::float_(n.y())).cast<std::string>() + ", " +
                    py::repr(py::float_(n.z())).cast<std::string>() +
                    "), distance=" + py::repr(py::float_(p.distance())).cast<std::string>() + ")";
           })
      .def(py::pickle(
          [](Plane const& p) { return py::make_tuple(to_array(p.normal()), p.distance()); },
          [](py::tuple const& t) {
            return Plane(to_vector(t[0], "normal"), t[1].cast<double>());
          }));
  m.def(
      "fit_plane",
      [](py::handle coordinates) { return Plane(to_points(coordinates, "coordinates")); },
      py::arg("coordinates"),
      R"doc(The least-squares plane through the points (total least squares: through the
centroid, normal along the direction of least spread). ValueError("Cannot construct a
Plane from less than three points") and ("Cannot construct a Plane from collinear
points").)doc");
}

}  // namespace structmath::python
