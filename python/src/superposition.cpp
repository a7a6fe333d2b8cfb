// SPDX-License-Identifier: MIT
// Python bindings: least-squares superposition of point sets.
#include <string>

#include "convert.hpp"
#include "structmath/superposition/overlay_points.hpp"
#include "structmath/superposition/qcp.hpp"

namespace structmath::python {

namespace {

/// What a fit found: its deviations and the map p -> rotation p + translation that carries
/// the moving points onto the target.
struct OverlayResult {
  double rms = 0.0;
  double max_deviation = 0.0;
  Transformation transformation;
};

// Below this many points a fit takes microseconds: the GIL is kept, as giving it up and
// taking it back would cost a noticeable part of the call.
constexpr std::size_t release_from = 20000;

// Point lists of up to this many points are converted into per-thread buffers that are
// kept between calls, so that repeated fits allocate nothing.
constexpr std::size_t kept_buffer = 1 << 16;

// The points of `value` in the thread's buffer `slot` (0 or 1), or in `spare` when large.
std::vector<Point> const& points_of(py::handle value, char const* what, int slot,
                                    std::vector<Point>& spare) {
  thread_local std::vector<Point> buffers[2];
  std::vector<Point>& buffer = buffers[slot];
  to_points(value, what, buffer);
  if (buffer.size() <= kept_buffer) return buffer;
  spare.swap(buffer);
  buffer = std::vector<Point>();
  return spare;
}

OverlayResult fit(OverlayPoints& overlay, Point const* points, std::size_t n, py::handle weights) {
  std::vector<double> w;
  std::vector<Point> weighted_points;
  if (!weights.is_none()) {
    w = to_doubles(weights, "weights", static_cast<py::ssize_t>(n));
    weighted_points.assign(points, points + n);
  }
  auto const run = [&] {
    if (weights.is_none()) {
      overlay.fit(points, n);
    } else {
      overlay.fit(weighted_points, w);
    }
    OverlayResult result;
    result.rms = overlay.rms();
    result.max_deviation = overlay.maximum_deviation();
    result.transformation = *overlay.transformation();
    return result;
  };
  if (n < release_from) return run();
  py::gil_scoped_release unlocked;
  return run();
}

}  // namespace

void bind_superposition(py::module_& m) {
  py::class_<OverlayResult>(m, "OverlayResult", R"doc(
A least-squares fit of a moving point set onto a target: rms and max_deviation of the
fitted points from the target, and the rigid map that carries moving points onto the
target, target ~ moving @ rotation.T + translation (rotation a proper rotation unless the
fit was allowed to mirror).)doc")
      .def_readonly("rms", &OverlayResult::rms)
      .def_readonly("max_deviation", &OverlayResult::max_deviation)
      .def_property_readonly(
          "rotation", [](OverlayResult const& r) { return to_array(r.transformation.rotation()); },
          "(3, 3) array.")
      .def_property_readonly(
          "translation",
          [](OverlayResult const& r) { return to_array(r.transformation.translation()); },
          "(3,) array.")
      .def(
          "transform",
          [](OverlayResult const& r, py::handle points) {
            std::vector<Point> p = to_points(points, "points");
            for (Point& q : p) q = r.transformation * q;
            return to_array(p);
          },
          py::arg("points"), "points @ rotation.T + translation, as a new (N, 3) array.")
      .def("__repr__",
           [](OverlayResult const& r) {
             return "OverlayResult(rms=" + py::repr(py::float_(r.rms)).cast<std::string>() +
                    ", max_deviation=" + py::repr(py::float_(r.max_deviation)).cast<std::string>() +
                    ")";
           })
      .def(py::pickle(
          [](OverlayResult const& r) {
            return py::make_tuple(r.rms, r.max_deviation, to_array(r.transformation.rotation()),
                                  to_array(r.transformation.translation()));
          },
          [](py::tuple const& t) {
            OverlayResult r;
            r.rms = t[0].cast<double>();
            r.max_deviation = t[1].cast<double>();
            DoubleArray const a = double_array(t[2], 2, "rotation");
            Matrix3D rotation;
            for (unsigned int i = 0; i < 3; ++i) {
              for (unsigned int j = 0; j < 3; ++j) rotation(i + 1, j + 1) = a.at(i, j);
            }
            r.transformation = Transformation(rotation, to_vector(t[3], "translation"));
            return r;
          }));

  py::class_<OverlayPoints>(m, "Overlay", R"doc(
Least-squares fits of moving point sets onto one fixed target (the eigenvector method
of Kabsch), point i onto target point i. Keep one for many fits onto the same target.
A fit changes the object (without the GIL): give each thread its own.)doc")
      .def(py::init([](py::handle target, bool allow_mirror) {
             return OverlayPoints(to_points(target, "target"), allow_mirror);
           }),
           py::arg("target"), py::arg("allow_mirror") = false,
           "ValueError(\"No points to overlay in OverlayPoints::OverlayPoints\") for an empty "
           "target; with allow_mirror a fit may be a mirror image.")
      .def(
          "fit",
          [](OverlayPoints& overlay, py::handle moving, py::handle weights) {
            std::size_t n = 0;
            if (Point const* in_place = points_in_place(moving, n)) {
              return fit(overlay, in_place, n, weights);
            }
            std::vector<Point> spare;
            std::vector<Point> const& points = points_of(moving, "moving", 0, spare);
            return fit(overlay, points.data(), points.size(), weights);
          },
          py::arg("moving"), py::arg("weights") = py::none(),
          R"doc(Fits moving, an (N, 3) array with at least as many points as the target
(further points are ignored), onto the target. With weights (one per point) the rotation
and the rms are weighted, rms divided by the number of points; the centroids and
max_deviation are not weighted.)doc")
      .def_property_readonly("target_centroid",
                             [](OverlayPoints const& o) { return to_array(o.target_centroid()); })
      .def_property_readonly("allow_mirror", &OverlayPoints::inversion_allowed);

  m.def(
      "overlay",
      [](py::handle target, py::handle moving, py::handle weights, bool allow_mirror) {
        // Arrays laid out as points are read where they lie; others are converted.
        std::vector<Point> spare_target, spare_moving;
        std::size_t nt = 0, nm = 0;
        Point const* target_points = points_in_place(target, nt);
        if (target_points == nullptr) {
          std::vector<Point> const& points = points_of(target, "target", 0, spare_target);
          target_points = points.data();
          nt = points.size();
        }
        Point const* moving_points = points_in_place(moving, nm);
        if (moving_points == nullptr) {
          std::vector<Point> const& moved = points_of(moving, "moving", 1, spare_moving);
          moving_points = moved.data();
          nm = moved.size();
        }
        if (nm != nt) {
          throw py::value_error("moving must have as many points as target (" + std::to_string(nt) +
                                "), got " + std::to_string(nm));
        }
        OverlayPoints overlay(target_points, nt, allow_mirror);
        return fit(overlay, moving_points, nm, weights);
      },
      py::arg("target"), py::arg("moving"), py::arg("weights") = py::none(),
      py::arg("allow_mirror") = false,
      R"doc(The least-squares fit of moving onto target, point i onto point i: an
OverlayResult with rms, max_deviation, rotation and translation such that
target ~ moving @ rotation.T + translation. Both are (N, 3) arrays; see Overlay.fit for
the weights. With allow_mirror the fit may be a mirror image (det rotation = -1).)doc");

  m.def(
      "rmsd",
      [](py::handle target, py::handle moving, py::handle weights) {
        std::vector<Point> spare_target, spare_moving;
        std::vector<Point> const& points = points_of(target, "target", 0, spare_target);
        std::vector<Point> const& moved = points_of(moving, "moving", 1, spare_moving);
        if (weights.is_none()) return qcp_rmsd(moved, points);
        std::vector<double> const w =
            to_doubles(weights, "weights", static_cast<py::ssize_t>(moved.size()));
        return qcp_rmsd(moved, points, w);
      },
      py::arg("target"), py::arg("moving"), py::arg("weights") = py::none(),
      R"doc(The least RMS deviation of moving from target, point i from point i, over all
proper rotations and translations, without forming the rotation: the fast route when only
the deviation is wanted (about twice as fast as overlay). By the quaternion characteristic
polynomial; near a perfect fit the absolute error is about sqrt(1e-15 G / N), where G is
the sum of both sets' squared distances from their centroids (a few 1e-7 for sets ten
units across). A mirror image gets the deviation of the best proper rotation. With
weights (N,), the weighted centroids and the weighted mean of squared deviations.)doc");
}

}  // namespace structmath::python
