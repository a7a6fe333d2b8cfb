// SPDX-License-Identifier: MIT
// Python bindings: the simplex minimiser driving a Python callable.
#include <limits>
#include <ostream>
#include <string>

#include "convert.hpp"
#include "structmath/optimisation/function_component.hpp"
#include "structmath/optimisation/function_variable.hpp"
#include "structmath/optimisation/penalty_function.hpp"
#include "structmath/optimisation/simplex.hpp"

namespace structmath::python {

namespace {

/// A penalty term whose value is a Python callable of one float64 array. The minimiser runs
/// without the GIL; each evaluation takes it back for the call (the component itself is
/// made and destroyed with the GIL held). A Python exception from
/// the callable leaves the minimiser as error_already_set and reaches the caller as raised.
class CallableComponent : public FunctionComponent {
 public:
  CallableComponent(py::function f, THandle<FunctionVariable> const& x) : f_(std::move(f)) {
    add_variable(x);
  }

  double component_value(VariableValue vv) override {
    std::vector<double> const& x = (*variables_)[0]->value(vv);
    py::gil_scoped_acquire locked;
    py::array_t<double> point(static_cast<py::ssize_t>(x.size()));
    std::copy(x.begin(), x.end(), point.mutable_data());
    py::object const returned = f_(point);
    double const value = PyFloat_AsDouble(returned.ptr());
    if (value == -1.0 && PyErr_Occurred() != nullptr) throw py::error_already_set();
    ++evaluations_;
    if (value < best_value_) {
      best_value_ = value;
      best_x_ = x;
    }
    return value;
  }
  void print(std::ostream& out) const override { out << "Python callable"; }
  void write(Archive&) const override {
    throw std::runtime_error("a Python callable cannot be written to an archive");
  }
  void read(Archive&) override {
    throw std::runtime_error("a Python callable cannot be read from an archive");
  }

  long long evaluations() const noexcept { return evaluations_; }
  /// The lowest value met and where, as evaluated (so without a further call).
  double best_value() const noexcept { return best_value_; }
  std::vector<double> const& best_x() const noexcept { return best_x_; }

 private:
  py::function f_;
  long long evaluations_ = 0;
  double best_value_ = std::numeric_limits<double>::infinity();
  std::vector<double> best_x_;
};

struct MinimiseResult {
  std::vector<double> x;
  double value = 0.0;
  int iterations = 0;
  long long evaluations = 0;
  bool converged = false;
};

MinimiseResult minimise(py::function f, py::handle start, py::handle perturbations,
                        py::handle fixed, int max_iterations, double tolerance, int restarts) {
  std::vector<double> const x0 = to_doubles(start, "start");
  if (x0.empty()) throw py::value_error("start must have at least one dimension");
  auto const n = static_cast<py::ssize_t>(x0.size());
  auto x = make_handle<FunctionVariable>(x0);
  if (!perturbations.is_none()) {
    if (py::isinstance<py::float_>(perturbations) || py::isinstance<py::int_>(perturbations)) {
      x->set_perturbation(perturbations.cast<double>());
    } else {
      std::vector<double> const p = to_doubles(perturbations, "perturbations", n);
      for (int i = 0; i < static_cast<int>(n); ++i)
        x->set_perturbation(i, p[static_cast<std::size_t>(i)]);
    }
  }
  if (!fixed.is_none()) {
    for (py::handle d : fixed) {
      int const i = d.cast<int>();
      if (i < 0 || i >= n) {
        throw py::index_error("fixed: dimension " + std::to_string(i) + " out of range for " +
                              std::to_string(n) + " dimensions");
      }
      x->fix_to_starting(i);
    }
  }
  auto component = make_handle<CallableComponent>(std::move(f), x);
  PenaltyFunction pf({component});
  Simplex simplex(restarts, max_iterations, tolerance);
  MinimiseResult result;
  {
    py::gil_scoped_release unlocked;
    result.converged = simplex.minimise(pf, VariableValue::STARTING);
    result.iterations = simplex.niterations();
    result.x = x->value(result.converged ? VariableValue::OPTIMISED : VariableValue::LATEST);
  }
  result.evaluations = component->evaluations();
  if (result.x == component->best_x()) {
    result.value = component->best_value();
  } else {
    result.value =
        pf.function_value(result.converged ? VariableValue::OPTIMISED : VariableValue::LATEST);
  }
  return result;
}

}  // namespace

void bind_optimisation(py::module_& m) {
  py::class_<MinimiseResult>(m, "MinimiseResult", R"doc(
A minimisation's outcome: x, the best point found (float64 array); value, f(x);
iterations of the last run; evaluations of f over all runs; converged, whether the last
run met the tolerance.)doc")
      .def_property_readonly("x", [](MinimiseResult const& r) { return to_array(r.x); })
      .def_readonly("value", &MinimiseResult::value)
      .def_readonly("iterations", &MinimiseResult::iterations)
      .def_readonly("evaluations", &MinimiseResult::evaluations)
      .def_readonly("converged", &MinimiseResult::converged)
      .def("__repr__",
           [](MinimiseResult const& r) {
             return "MinimiseResult(value=" + py::repr(py::float_(r.value)).cast<std::string>() +
                    ", converged=" + (r.converged ? "True" : "False") +
                    ", evaluations=" + std::to_string(r.evaluations) + ")";
           })
      .def(py::pickle(
          [](MinimiseResult const& r) {
            return py::make_tuple(to_array(r.x), r.value, r.iterations, r.evaluations, r.converged);
          },
          [](py::tuple const& t) {
            MinimiseResult r;
            r.x = to_doubles(t[0], "x");
            r.value = t[1].cast<double>();
            r.iterations = t[2].cast<int>();
            r.evaluations = t[3].cast<long long>();
            r.converged = t[4].cast<bool>();
            return r;
          }));

  m.def("minimise", &minimise, py::arg("f"), py::arg("start"),
        py::arg("perturbations") = py::none(), py::arg("fixed") = py::none(),
        py::arg("max_iterations") = 1000, py::arg("tolerance") = 1e-9, py::arg("restarts") = 2,
        R"doc(Minimises f, a callable of one float64 array returning a float, by the
downhill-simplex method of Nelder and Mead, with restarts.

start: the starting point (n,). perturbations: the step along each dimension of the
starting simplex (one number or (n,); default 1.0). fixed: indices of dimensions held at
their starting values. A run stops when 2 |f_hi - f_lo| / (|f_hi| + |f_lo|) falls below
tolerance, or after max_iterations; each of the `restarts` further runs starts from the
best point of the one before. Returns a MinimiseResult: x is the converged optimum, or
the best point of the last run when it did not converge. An exception raised by f stops
the minimisation and propagates. The GIL is released between calls of f.)doc");
}

}  // namespace structmath::python
