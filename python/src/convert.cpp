// SPDX-License-Identifier: MIT
// Array conversion and the mapping of library exceptions to Python exceptions.
#include "convert.hpp"

#include <cstring>
#include <stdexcept>
#include <string>

#include "structmath/io/parse_error.hpp"

namespace structmath::python {

namespace {

std::string shape_text(py::array const& a) {
  std::string text = "(";
  for (py::ssize_t d = 0; d < a.ndim(); ++d) {
    if (d > 0) text += ", ";
    text += std::to_string(a.shape(d));
  }
  return text + (a.ndim() == 1 ? ",)" : ")");
}

// The NumPy kind letter of an array's dtype: b, i, u, f, c, U, S, O, ...
char kind_of(py::array const& a) { return a.dtype().kind(); }

py::array as_numpy(py::handle value) {
  if (py::isinstance<py::array>(value)) return py::reinterpret_borrow<py::array>(value);
  return py::module_::import("numpy").attr("asarray")(value);
}

}  // namespace

DoubleArray double_array(py::handle value, int ndim, char const* what) {
  py::array_t<double> doubles;
  if (py::isinstance<py::array_t<double>>(value)) {
    doubles = py::reinterpret_borrow<py::array_t<double>>(value);
  } else {
    py::array any = as_numpy(value);
    char const kind = kind_of(any);
    if (kind != 'f' && kind != 'i' && kind != 'u' && kind != 'b' &&
        !(any.size() == 0 && any.ndim() == ndim)) {
      throw py::type_error(std::string(what) + " must be an array of real numbers, got dtype " +
                           py::str(any.dtype()).cast<std::string>());
    }
    doubles = py::array_t<double>::ensure(any);
    if (!doubles) throw py::error_already_set();
  }
  if (doubles.ndim() != ndim) {
    throw py::value_error(std::string(what) + " must be a " + std::to_string(ndim) +
                          "-dimensional array, got shape " + shape_text(doubles));
  }
  // Misaligned or oddly strided float64 data (a field of a structured array, for one) is
  // copied once; everything else is read where it lies.
  bool in_place = (doubles.flags() & py::detail::npy_api::NPY_ARRAY_ALIGNED_) != 0;
  for (py::ssize_t d = 0; d < ndim; ++d) {
    in_place = in_place && doubles.strides(d) % static_cast<py::ssize_t>(sizeof(double)) == 0;
  }
  if (!in_place) {
    doubles = py::array_t<double, py::array::c_style | py::array::forcecast>::ensure(doubles);
  }
  DoubleArray out;
  out.data = doubles.data();
  for (py::ssize_t d = 0; d < ndim; ++d) {
    out.shape.push_back(doubles.shape(d));
    out.strides.push_back(doubles.strides(d) / static_cast<py::ssize_t>(sizeof(double)));
  }
  out.array = std::move(doubles);
  return out;
}

DoubleArray coordinate_array(py::handle value, char const* what) {
  DoubleArray a = double_array(value, 2, what);
  if (a.shape[1] != 3) {
    throw py::value_error(std::string(what) + " must be an (N, 3) array, got shape " +
                          shape_text(a.array));
  }
  return a;
}

std::vector<Point> to_points(py::handle value, char const* what) {
  std::vector<Point> points;
  to_points(value, what, points);
  return points;
}

Point const* points_in_place(py::handle value, std::size_t& n) {
  // A C-contiguous, aligned, native float64 (N, 3) array is N Points as they lie in
  // memory (a Point is three doubles with nothing else).
  if (!py::detail::npy_api::get().PyArray_Check_(value.ptr())) return nullptr;
  auto const* a = py::detail::array_proxy(value.ptr());
  auto const* d = py::detail::array_descriptor_proxy(a->descr);
  int const wanted =
      py::detail::npy_api::NPY_ARRAY_C_CONTIGUOUS_ | py::detail::npy_api::NPY_ARRAY_ALIGNED_;
  if (a->nd != 2 || a->dimensions[1] != 3 || d->type_num != py::detail::npy_api::NPY_DOUBLE_ ||
      d->byteorder == '>' || (a->flags & wanted) != wanted) {
    return nullptr;
  }
  n = static_cast<std::size_t>(a->dimensions[0]);
  return reinterpret_cast<Point const*>(a->data);
}

void to_points(py::handle value, char const* what, std::vector<Point>& points) {
  // The common case is one memcpy with no further checks: small fits are measured in
  // microseconds.
  std::size_t count = 0;
  if (Point const* in_place = points_in_place(value, count)) {
    points.assign(in_place, in_place + count);
    return;
  }
  DoubleArray const a = coordinate_array(value, what);
  auto const n = static_cast<std::size_t>(a.shape[0]);
  points.resize(n);
  if (n == 0) return;
  if (a.strides[0] == 3 && a.strides[1] == 1) {
    std::memcpy(static_cast<void*>(points.data()), a.data, n * sizeof(Point));
  } else {
    for (std::size_t i = 0; i < n; ++i) {
      auto const r = static_cast<py::ssize_t>(i);
      points[i] = Point(a.at(r, 0), a.at(r, 1), a.at(r, 2));
    }
  }
}

std::vector<double> to_doubles(py::handle value, char const* what, py::ssize_t expected) {
  DoubleArray const a = double_array(value, 1, what);
  if (expected >= 0 && a.shape[0] != expected) {
    throw py::value_error(std::string(what) + " must have " + std::to_string(expected) +
                          " entries, got " + std::to_string(a.shape[0]));
  }
  std::vector<double> out(static_cast<std::size_t>(a.shape[0]));
  for (py::ssize_t i = 0; i < a.shape[0]; ++i) {
    out[static_cast<std::size_t>(i)] = a.data[i * a.strides[0]];
  }
  return out;
}

Vector3D to_vector(py::handle value, char const* what) {
  std::vector<double> const v = to_doubles(value, what, 3);
  return Vector3D(v[0], v[1], v[2]);
}

std::vector<int> index_rows(py::handle value, py::ssize_t k, py::ssize_t limit, char const* what) {
  py::array any = as_numpy(value);
  if (any.size() == 0) return {};
  char const kind = kind_of(any);
  if (kind != 'i' && kind != 'u') {
    throw py::type_error(std::string(what) + " must be integer indices, got dtype " +
                         py::str(any.dtype()).cast<std::string>());
  }
  auto const rows = py::array_t<long long, py::array::c_style | py::array::forcecast>::ensure(any);
  if (!rows) throw py::error_already_set();
  if (rows.ndim() != 2 || rows.shape(1) != k) {
    throw py::value_error(std::string(what) + " must be an (N, " + std::to_string(k) +
                          ") array of indices, got shape " + shape_text(rows));
  }
  std::vector<int> out(static_cast<std::size_t>(rows.size()));
  long long const* data = rows.data();
  for (std::size_t e = 0; e < out.size(); ++e) {
    if (data[e] < 0 || data[e] >= limit) {
      throw py::index_error(std::string(what) + ": index " + std::to_string(data[e]) +
                            " out of range for " + std::to_string(limit) + " points");
    }
    out[e] = static_cast<int>(data[e]);
  }
  return out;
}

py::array_t<double> to_array(std::vector<Point> const& points) {
  py::array_t<double> out({static_cast<py::ssize_t>(points.size()), py::ssize_t{3}});
  if (!points.empty()) {
    std::memcpy(out.mutable_data(), static_cast<void const*>(points.data()),
                points.size() * sizeof(Point));
  }
  return out;
}

py::array_t<double> to_array(std::vector<Vector3D> const& vectors) {
  py::array_t<double> out({static_cast<py::ssize_t>(vectors.size()), py::ssize_t{3}});
  if (!vectors.empty()) {
    std::memcpy(out.mutable_data(), static_cast<void const*>(vectors.data()),
                vectors.size() * sizeof(Vector3D));
  }
  return out;
}

py::array_t<double> to_array(Point const& p) {
  py::array_t<double> out(3);
  double* d = out.mutable_data();
  d[0] = p.x();
  d[1] = p.y();
  d[2] = p.z();
  return out;
}

py::array_t<double> to_array(Vector3D const& v) {
  py::array_t<double> out(3);
  double* d = out.mutable_data();
  d[0] = v.x();
  d[1] = v.y();
  d[2] = v.z();
  return out;
}

py::array_t<double> to_array(Matrix3D const& m) {
  py::array_t<double> out({py::ssize_t{3}, py::ssize_t{3}});
  double* d = out.mutable_data();
  for (unsigned int r = 0; r < 3; ++r) {
    for (unsigned int c = 0; c < 3; ++c) d[3 * r + c] = m[r][c];
  }
  return out;
}

void register_exceptions(py::module_& m) {
  // structmath.ParseError(RuntimeError): what() as its message, with file, line and problem.
  static py::handle parse_error(
      PyErr_NewExceptionWithDoc("structmath.ParseError",
                                "A malformed or truncated file: the message is "
                                "'<file>:<line>: <problem>'; also as the attributes file, "
                                "line (0 for the file as a whole) and problem.",
                                PyExc_RuntimeError, nullptr));
  m.add_object("ParseError", parse_error);
  // pybind11 already maps std::invalid_argument to ValueError, std::overflow_error to
  // OverflowError, std::out_of_range to IndexError and any other std::exception (so
  // std::runtime_error) to RuntimeError, each with what() as the message; only the
  // readers' ParseError needs its own class.
  py::register_exception_translator([](std::exception_ptr p) {
    try {
      if (p) std::rethrow_exception(p);
    } catch (io::ParseError const& e) {
      py::object error = py::reinterpret_borrow<py::object>(parse_error)(e.what());
      error.attr("file") = e.file();
      error.attr("line") = e.line();
      error.attr("problem") = e.problem();
      PyErr_SetObject(parse_error.ptr(), error.ptr());
    }
  });
}

}  // namespace structmath::python
