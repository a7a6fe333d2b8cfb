// SPDX-License-Identifier: MIT
// FunctionComponent: the variable list and the base's do-nothing constant setters.
#include "structmath/optimisation/function_component.hpp"

#include <stdexcept>

namespace structmath {

FunctionComponent::FunctionComponent()
    : variables_(make_handle<std::vector<THandle<FunctionVariable>>>()),
      derivatives_(make_handle<DerivativeMap>()) {}

FunctionComponent::~FunctionComponent() = default;

void FunctionComponent::set_constants(int) {}
void FunctionComponent::set_constants(int, std::string) {}
void FunctionComponent::set_constants(std::vector<int> const&) {}
void FunctionComponent::set_constants(std::vector<int> const&, std::string) {}
void FunctionComponent::set_constants(double) {}
void FunctionComponent::set_constants(double, std::string) {}
void FunctionComponent::set_constants(std::vector<double> const&) {}
void FunctionComponent::set_constants(std::vector<double> const&, std::string) {}

THandle<DerivativeMap> FunctionComponent::derivatives(VariableValue) {
  throw std::runtime_error("FunctionComponent::derivatives(): Derivatives unavailable.");
}

bool FunctionComponent::derivatives_available() const { return derivatives_available_; }

void FunctionComponent::set_variables(std::vector<THandle<FunctionVariable>> const& variables) {
  *variables_ = variables;
  nvariables_ = static_cast<int>(variables.size());
}

void FunctionComponent::add_variable(THandle<FunctionVariable> const& variable) {
  variables_->push_back(variable);
  ++nvariables_;
}

}  // namespace structmath
