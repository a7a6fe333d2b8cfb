// SPDX-License-Identifier: MIT
// Rosenbrock1 and Rosenbrock2: values and analytic derivatives of the valley's terms.
#include "structmath/optimisation/rosenbrock.hpp"

#include <stdexcept>
#include <utility>

namespace structmath {

namespace {

struct XY {
  double x;
  double y;
};

XY rosenbrock_xy(std::vector<THandle<FunctionVariable>> const& variables, VariableValue vv) {
  if (variables.size() == 2) {
    return {variables[0]->double_value(vv), variables[1]->double_value(vv)};
  }
  if (!variables.empty()) {
    auto const& v = variables[0]->value(vv);
    if (v.size() >= 2) return {v[0], v[1]};
  }
  throw std::invalid_argument(
      "Rosenbrock1: needs two one-dimensional variables or one variable of at least two "
      "dimensions");
}

// The variable of a Rosenbrock2 and its t.
std::pair<THandle<FunctionVariable> const*, double> rosenbrock_t(
    std::vector<THandle<FunctionVariable>> const& variables, VariableValue vv) {
  if (!variables.empty()) {
    auto const& variable = variables[0];
    if (variable->ndimensions() == 1) return {&variable, variable->double_value(vv)};
    auto const& v = variable->value(vv);
    if (v.size() >= 2) return {&variable, v[1]};
  }
  throw std::invalid_argument("Rosenbrock2: needs a variable of one or at least two dimensions");
}

}  // namespace

Rosenbrock1::Rosenbrock1() { derivatives_available_ = true; }

Rosenbrock1::Rosenbrock1(THandle<FunctionVariable> x, THandle<FunctionVariable> y) : Rosenbrock1() {
  add_variable(x);
  add_variable(y);
}

void Rosenbrock1::set_constants(double r) { rcoeff_ = r; }

void Rosenbrock1::set_constants(std::vector<double> const& c, std::string name) {
  if (name != "Rcoeff") {
    rcoeff_ = 0.0;
    return;
  }
  if (c.empty()) {
    throw std::invalid_argument(
        "Rosenbrock1::set_constants(const vector_double& c, std::string name): no value given "
        "for Rcoeff");
  }
  rcoeff_ = c[0];
}

double Rosenbrock1::component_value(VariableValue vv) {
  auto const [x, y] = rosenbrock_xy(*variables_, vv);
  double const d = x - y * y;
  return rcoeff_ * d * d;
}

THandle<DerivativeMap> Rosenbrock1::derivatives(VariableValue vv) {
  auto const [x, y] = rosenbrock_xy(*variables_, vv);
  double const d = x - y * y;
  double const dx = 2.0 * rcoeff_ * d;
  double const dy = -4.0 * rcoeff_ * y * d;
  auto& store = *derivatives_;
  store.clear();
  auto const& variables = *variables_;
  if (variables.size() == 2) {
    store[variables[0]] = {dx};
    store[variables[1]] = {dy};
  } else {
    store[variables[0]] = {dx, dy};
  }
  return derivatives_;
}

void Rosenbrock1::print(std::ostream&) const {}
void Rosenbrock1::write(Archive&) const {}
void Rosenbrock1::read(Archive&) {}

Rosenbrock2::Rosenbrock2() { derivatives_available_ = true; }

Rosenbrock2::Rosenbrock2(THandle<FunctionVariable> v) : Rosenbrock2() { add_variable(v); }

double Rosenbrock2::component_value(VariableValue vv) {
  double const t = rosenbrock_t(*variables_, vv).second;
  return (1.0 - t) * (1.0 - t);
}

THandle<DerivativeMap> Rosenbrock2::derivatives(VariableValue vv) {
  auto const [variable, t] = rosenbrock_t(*variables_, vv);
  double const dt = -2.0 * (1.0 - t);
  auto& store = *derivatives_;
  store.clear();
  if ((*variable)->ndimensions() == 1) {
    store[*variable] = {dt};
  } else {
    store[*variable] = {0.0, dt};
  }
  return derivatives_;
}

void Rosenbrock2::print(std::ostream&) const {}
void Rosenbrock2::write(Archive&) const {}
void Rosenbrock2::read(Archive&) {}

}  // namespace structmath
