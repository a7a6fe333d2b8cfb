// SPDX-License-Identifier: MIT
// Python bindings: Monte Carlo volume of a union of spheres, with its standard error.
#include <algorithm>
#include <cmath>
#include <string>

#include "convert.hpp"
#include "structmath/solids/box.hpp"
#include "structmath/solids/random_number_generator.hpp"
#include "structmath/solids/sphere.hpp"
#include "structmath/solids/stochastic_volume_calculator.hpp"
#include "structmath/solids/union_solid.hpp"

namespace structmath::python {

namespace {

struct VolumeResult {
  double volume = 0.0;
  double standard_error = 0.0;
  unsigned long long samples = 0;
  unsigned long long hits = 0;
  double box_volume = 0.0;
};

// Samples are drawn in parts, with a look at Python's signals (Ctrl-C) between them.
constexpr unsigned long long part_size = 1ULL << 22;

VolumeResult union_volume(py::handle centres, py::handle radii, unsigned int density,
                          std::pair<int, int> seeds) {
  std::vector<Point> const points = to_points(centres, "centres");
  if (points.empty()) throw py::value_error("centres: no spheres");
  std::vector<double> r;
  if (py::isinstance<py::float_>(radii) || py::isinstance<py::int_>(radii)) {
    r.assign(points.size(), radii.cast<double>());
  } else {
    r = to_doubles(radii, "radii", static_cast<py::ssize_t>(points.size()));
  }
  for (double const radius : r) {
    if (!(radius > 0.0) || !std::isfinite(radius)) {
      throw py::value_error("radii must be positive and finite, got " + std::to_string(radius));
    }
  }
  RandomNumberGenerator const generator(seeds.first, seeds.second);
  CompositeSolid::SolidSet members;
  for (std::size_t a = 0; a < points.size(); ++a) {
    members.insert(make_handle<Sphere>(points[a], r[a]));
  }
  UnionSolid const spheres(members);
  if (density == 0) {
    // Raises the calculator's own error for a zero density.
    StochasticVolumeCalculator::get_solid_volume(spheres, density, nullptr);
  }
  THandle<Box> const box = spheres.bounding_box();
  VolumeResult result;
  result.box_volume = box->volume();
  result.samples = StochasticVolumeCalculator::sample_count(density, result.box_volume);
  for (unsigned long long done = 0; done < result.samples;) {
    unsigned long long const part = std::min(part_size, result.samples - done);
    {
      py::gil_scoped_release unlocked;
      result.hits += StochasticVolumeCalculator::count_hits(spheres, *box, part, generator);
    }
    done += part;
    if (PyErr_CheckSignals() != 0) throw py::error_already_set();
  }
  double const n = static_cast<double>(result.samples);
  double const fraction = static_cast<double>(result.hits) / n;
  result.volume = static_cast<double>(result.hits) * result.box_volume / n;
  result.standard_error = result.box_volume * std::sqrt(fraction * (1.0 - fraction) / n);
  return result;
}

}  // namespace

void bind_volumes(py::module_& m) {
  py::class_<VolumeResult>(m, "VolumeResult",
                           "A Monte Carlo volume: the estimate, its binomial standard error, "
                           "and the samples, hits and bounding-box volume it came from.")
      .def_readonly("volume", &VolumeResult::volume)
      .def_readonly("standard_error", &VolumeResult::standard_error)
      .def_readonly("samples", &VolumeResult::samples)
      .def_readonly("hits", &VolumeResult::hits)
      .def_readonly("box_volume", &VolumeResult::box_volume)
      .def("__repr__",
           [](VolumeResult const& v) {
             return "VolumeResult(volume=" + py::repr(py::float_(v.volume)).cast<std::string>() +
                    ", standard_error=" +
                    py::repr(py::float_(v.standard_error)).cast<std::string>() +
                    ", samples=" + std::to_string(v.samples) + ")";
           })
      .def(py::pickle(
          [](VolumeResult const& v) {
            return py::make_tuple(v.volume, v.standard_error, v.samples, v.hits, v.box_volume);
          },
          [](py::tuple const& t) {
            VolumeResult v;
            v.volume = t[0].cast<double>();
            v.standard_error = t[1].cast<double>();
            v.samples = t[2].cast<unsigned long long>();
            v.hits = t[3].cast<unsigned long long>();
            v.box_volume = t[4].cast<double>();
            return v;
          }));

  m.def("sphere_union_volume", &union_volume, py::arg("centres"), py::arg("radii"),
        py::arg("density") = 1000u, py::arg("seeds") = std::pair<int, int>(1802, 9373),
        R"doc(The volume of a union of spheres by hit-or-miss Monte Carlo sampling.

centres: (N, 3) array; radii: one radius or an (N,) array. density: samples per unit
volume of the spheres' bounding box (at least `density` samples in all). seeds: the two
seeds of the library's reproducible generator, 0-31328 and 0-30081; the same seeds give
the same result on every platform. Returns a VolumeResult with the estimate and its
binomial standard error, box_volume * sqrt(p (1 - p) / samples), p the fraction of hits.
The GIL is released while sampling; Ctrl-C stops a long run.)doc");
}

}  // namespace structmath::python
