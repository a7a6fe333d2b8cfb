// SPDX-License-Identifier: MIT
// NumPy <-> structmath values at the boundary of the Python module, and the binders.
#pragma once

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <array>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "structmath/numeric/matrix.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath::python {

namespace py = pybind11;

/// A float64 array as received: the array itself (kept alive) and its element strides, so
/// that a strided view is read in place.
struct DoubleArray {
  py::array_t<double> array;
  double const* data = nullptr;
  std::vector<py::ssize_t> shape;
  std::vector<py::ssize_t> strides;  ///< in elements, not bytes

  double at(py::ssize_t i, py::ssize_t j) const noexcept {
    return data[i * strides[0] + j * strides[1]];
  }
};

/// `value` as a float64 array of `ndim` dimensions: a float64 array as it is (any strides,
/// no copy), any other real or integer array or a nested sequence converted. Throws
/// TypeError naming `what` for complex, text or object data, ValueError for another number
/// of dimensions.
DoubleArray double_array(py::handle value, int ndim, char const* what);

/// An (N, 3) array of coordinates; ValueError naming `what` for any other shape.
DoubleArray coordinate_array(py::handle value, char const* what);
/// The rows of an (N, 3) array as points (one copy; a single memcpy when C-contiguous).
std::vector<Point> to_points(py::handle value, char const* what);
/// As to_points, into `out` (its capacity reused: no allocation when it is large enough).
void to_points(py::handle value, char const* what, std::vector<Point>& out);
/// The points of a C-contiguous, aligned, native float64 (N, 3) array where they lie,
/// with N in n; nullptr for anything else (convert it with to_points). Valid while the
/// array lives and is not resized.
Point const* points_in_place(py::handle value, std::size_t& n);
/// A one-dimensional float64 array as doubles; ValueError unless it has `expected` entries
/// (any length when negative).
std::vector<double> to_doubles(py::handle value, char const* what, py::ssize_t expected = -1);
/// A three-vector.
Vector3D to_vector(py::handle value, char const* what);

/// An (N, k) array of non-negative indices below `limit`, as ints in row order. Throws
/// TypeError for non-integer data, ValueError for another shape, IndexError for an index
/// out of range.
std::vector<int> index_rows(py::handle value, py::ssize_t k, py::ssize_t limit, char const* what);

/// A new (N, 3) float64 array holding the points.
py::array_t<double> to_array(std::vector<Point> const& points);
py::array_t<double> to_array(std::vector<Vector3D> const& vectors);
py::array_t<double> to_array(Point const& p);
py::array_t<double> to_array(Vector3D const& v);
/// A new 3 x 3 float64 array, row-major.
py::array_t<double> to_array(Matrix3D const& m);

/// A read-only NumPy view of `count` rows of `columns` elements at `data`, kept valid by
/// holding `owner` (a shared pointer, or a handle) until the array is gone.
template <typename T, typename Owner>
py::array_t<T> view(T const* data, std::size_t count, std::size_t columns, Owner owner) {
  auto* held = new Owner(std::move(owner));
  py::capsule base(held, [](void* p) { delete static_cast<Owner*>(p); });
  py::array_t<T> out(
      {static_cast<py::ssize_t>(count), static_cast<py::ssize_t>(columns)},
      {static_cast<py::ssize_t>(columns * sizeof(T)), static_cast<py::ssize_t>(sizeof(T))}, data,
      base);
  py::detail::array_proxy(out.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
  return out;
}

/// A new one-dimensional array holding the values.
template <typename T>
py::array_t<T> to_array(std::vector<T> const& values) {
  py::array_t<T> out(static_cast<py::ssize_t>(values.size()));
  std::copy(values.begin(), values.end(), out.mutable_data());
  return out;
}

// The parts of the module, one per area of the library.
void register_exceptions(py::module_& m);
void bind_values(py::module_& m);
void bind_geometry(py::module_& m);
void bind_superposition(py::module_& m);
void bind_volumes(py::module_& m);
void bind_contouring(py::module_& m);
void bind_graphs(py::module_& m);
void bind_optimisation(py::module_& m);
void bind_io(py::module_& m);

}  // namespace structmath::python
