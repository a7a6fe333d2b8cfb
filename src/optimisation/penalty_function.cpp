// SPDX-License-Identifier: MIT
// PenaltyFunction: gathering variables, weighted sums, gradient assembly, write-back.
#include "structmath/optimisation/penalty_function.hpp"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace structmath {

namespace {

using ComponentList = std::vector<THandle<FunctionComponent>>;
using VariableList = std::vector<THandle<FunctionVariable>>;

}  // namespace

PenaltyFunction::PenaltyFunction()
    : components_(make_handle<ComponentList>()),
      variables_(make_handle<VariableList>()),
      gradient_(make_handle<std::vector<double>>()) {}

PenaltyFunction::PenaltyFunction(ComponentList const& components) : PenaltyFunction() {
  *components_ = components;
  ncomponents_ = static_cast<int>(components.size());
  for (auto const& component : components) {
    if (!component->derivatives_available()) derivatives_available_ = false;
    gather_variables(*component);
  }
  recompute_nominal_dimension();
}

PenaltyFunction::PenaltyFunction(PenaltyFunction const& other)
    : ncomponents_(other.ncomponents_),
      nvariables_(other.nvariables_),
      components_(make_handle<ComponentList>(*other.components_)),
      variables_(make_handle<VariableList>(*other.variables_)),
      nominal_dimension_(other.nominal_dimension_),
      derivatives_available_(other.derivatives_available_),
      optimised_ok_(other.optimised_ok_),
      gradient_(make_handle<std::vector<double>>(*other.gradient_)) {}

PenaltyFunction& PenaltyFunction::operator=(PenaltyFunction const& other) {
  if (this == &other) return *this;
  PenaltyFunction copy(other);
  ncomponents_ = copy.ncomponents_;
  nvariables_ = copy.nvariables_;
  components_ = copy.components_;
  variables_ = copy.variables_;
  nominal_dimension_ = copy.nominal_dimension_;
  derivatives_available_ = copy.derivatives_available_;
  optimised_ok_ = copy.optimised_ok_;
  gradient_ = copy.gradient_;
  return *this;
}

void PenaltyFunction::gather_variables(FunctionComponent const& component) {
  for (auto const& variable : *component.variables()) {
    if (std::find(variables_->begin(), variables_->end(), variable) == variables_->end()) {
      variables_->push_back(variable);
      ++nvariables_;
    }
  }
}

void PenaltyFunction::recompute_nominal_dimension() {
  nominal_dimension_ = 0;
  for (auto const& variable : *variables_) nominal_dimension_ += variable->ndimensions();
}

void PenaltyFunction::set_components(ComponentList const& components) {
  *components_ = components;
  ncomponents_ = static_cast<int>(components.size());
  optimised_ok_ = false;
  variables_->clear();
  nvariables_ = 0;
  for (auto const& component : components) gather_variables(*component);
  recompute_nominal_dimension();
  derivatives_available_ = true;  // kept: see the header
}

void PenaltyFunction::add_component(THandle<FunctionComponent> const& component) {
  components_->push_back(component);
  ++ncomponents_;
  optimised_ok_ = false;
  if (!component->derivatives_available()) derivatives_available_ = false;
  gather_variables(*component);
  recompute_nominal_dimension();
}

double PenaltyFunction::function_value(VariableValue vv) {
  if (ncomponents_ == 0 || nvariables_ == 0) {
    throw std::runtime_error(
        "PenaltyFunction::function_value(VariableValue vv):function contains no components "
        "and/or variables");
  }
  double sum = 0.0;
  for (auto const& component : *components_)
    sum += component->component_value(vv) * component->weight();
  return sum;
}

double PenaltyFunction::function_value(std::vector<double> const& v) {
  update_variables(TRIAL, v);
  return function_value(TRIAL);
}

THandle<std::vector<double>> const& PenaltyFunction::derivatives(VariableValue vv) {
  if (!derivatives_available_) {
    throw std::runtime_error(
        "PenaltyFunction::derivatives(VariableValue vv):derivatives unavailable for this "
        "function");
  }
  auto& gradient = *gradient_;
  gradient.assign(static_cast<std::size_t>(nominal_dimension_), 0.0);
  for (auto const& component : *components_) {
    auto const partials = component->derivatives(vv);
    double const w = component->weight();
    // Offsets are the running sums of the dimensions in variable order.
    std::size_t offset = 0;
    for (auto const& variable : *variables_) {
      auto const n = static_cast<std::size_t>(variable->ndimensions());
      auto const entry = partials->find(variable);
      if (entry != partials->end()) {
        // An entry shorter than its variable counts as zero beyond its end.
        auto const& d = entry->second;
        std::size_t const m = std::min(n, d.size());
        for (std::size_t i = 0; i < m; ++i) gradient[offset + i] += w * d[i];
      }
      offset += n;
    }
  }
  return gradient_;
}

THandle<std::vector<double>> const& PenaltyFunction::derivatives(std::vector<double> const& v) {
  update_variables(TRIAL, v);
  return derivatives(TRIAL);
}

void PenaltyFunction::update_variables(VariableValue vv, std::vector<double> const& v) {
  if (v.size() != static_cast<std::size_t>(nominal_dimension_)) {
    throw std::invalid_argument(
        "PenaltyFunction::update_variables(const vector_double& v):vector of wrong length.");
  }
  double const* next = v.data();
  for (auto const& variable : *variables_) {
    auto const n = static_cast<std::size_t>(variable->ndimensions());
    variable->update(vv, next, n);
    next += n;
  }
  if (vv == OPTIMISED) optimised_ok_ = true;
}

int PenaltyFunction::true_dimension() const {
  int free = 0;
  for (auto const& variable : *variables_) {
    for (int i = 0; i < variable->ndimensions(); ++i) {
      if (!variable->fixed(i)) ++free;
    }
  }
  return free;
}

std::vector<double> PenaltyFunction::variable_values(VariableValue vv) const {
  std::vector<double> values;
  values.reserve(static_cast<std::size_t>(nominal_dimension_));
  for (auto const& variable : *variables_) {
    auto const& part = variable->value(vv);
    values.insert(values.end(), part.begin(), part.end());
  }
  return values;
}

std::vector<bool> PenaltyFunction::fixed_variables() const {
  std::vector<bool> flags;
  flags.reserve(static_cast<std::size_t>(nominal_dimension_));
  for (auto const& variable : *variables_) {
    for (int i = 0; i < variable->ndimensions(); ++i) flags.push_back(variable->fixed(i));
  }
  return flags;
}

std::vector<double> PenaltyFunction::perturbations() const {
  std::vector<double> steps;
  steps.reserve(static_cast<std::size_t>(nominal_dimension_));
  for (auto const& variable : *variables_) {
    for (int i = 0; i < variable->ndimensions(); ++i) steps.push_back(variable->perturbation(i));
  }
  return steps;
}

}  // namespace structmath
