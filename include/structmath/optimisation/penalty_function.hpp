// SPDX-License-Identifier: MIT
// PenaltyFunction: a weighted sum of components over one flat vector of their variables.
#pragma once

#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/optimisation/function_component.hpp"
#include "structmath/optimisation/function_variable.hpp"

namespace structmath {

/// The objective of a minimiser: the sum of weight x value over its components.
///
/// The distinct variables of the components (by object identity) are gathered in the
/// order first seen, component by component. They define the flat parameter vector a
/// minimiser works on: every dimension of the first variable, fixed ones included, then
/// those of the second, and so on. A variable's dimension must not change once gathered.
/// Copies share the components and variables but not the lists or the gradient buffer.
class STRUCTMATH_API PenaltyFunction {
 public:
  /// No components or variables; derivatives available; no optimised result.
  PenaltyFunction();
  /// Derivatives are available when every component offers them.
  explicit PenaltyFunction(std::vector<THandle<FunctionComponent>> const& components);
  PenaltyFunction(PenaltyFunction const& other);
  PenaltyFunction& operator=(PenaltyFunction const& other);
  ~PenaltyFunction() = default;

  /// Replaces the components and gathers their variables afresh; clears optimised_ok().
  /// Leaves derivatives_available() true whatever the components offer. Kept: a function
  /// set up this way reports a missing derivative from the component that lacks it.
  void set_components(std::vector<THandle<FunctionComponent>> const& components);
  /// Appends a component and its new variables (earlier variables keep their places);
  /// clears optimised_ok() and clears derivatives_available() when the component has none.
  void add_component(THandle<FunctionComponent> const& component);

  /// The weighted sum at the selected values. Throws std::runtime_error when there are no
  /// components or no variables.
  double function_value(VariableValue vv);
  /// Writes v into the variables' TRIAL values, then evaluates there.
  double function_value(std::vector<double> const& v);

  /// The gradient over the flat vector at the selected values: each component's weighted
  /// derivatives added at its variables' places, zero where no component has an entry.
  /// Fixed dimensions get their derivative too; a component's entry shorter than its
  /// variable counts as zero beyond its end. The buffer is reused by the next call.
  /// Throws std::runtime_error when derivatives_available() is false.
  THandle<std::vector<double>> const& derivatives(VariableValue vv);
  /// Writes v into the variables' TRIAL values, then differentiates there.
  THandle<std::vector<double>> const& derivatives(std::vector<double> const& v);

  /// Splits v over the variables in order and writes each part with the variable's
  /// update(vv, part); sets optimised_ok() after writing OPTIMISED values. Throws
  /// std::invalid_argument, changing nothing, when v's length is not nominal_dimension();
  /// a variable's own failure leaves the variables before it written.
  void update_variables(VariableValue vv, std::vector<double> const& v);

  int ncomponents() const noexcept { return ncomponents_; }
  int nvariables() const noexcept { return nvariables_; }
  /// Length of the flat vector, fixed dimensions included.
  int nominal_dimension() const noexcept { return nominal_dimension_; }
  /// Number of dimensions, over all variables, that are not fixed.
  int true_dimension() const;
  bool derivatives_available() const noexcept { return derivatives_available_; }
  bool optimised_ok() const noexcept { return optimised_ok_; }
  void set_optimised_ok(bool ok) noexcept { optimised_ok_ = ok; }

  THandle<std::vector<THandle<FunctionComponent>>> const& components() const noexcept {
    return components_;
  }
  /// The distinct variables, in flat-vector order.
  THandle<std::vector<THandle<FunctionVariable>>> const& variables() const noexcept {
    return variables_;
  }

  /// The selected values of every variable, concatenated; the variables' own errors pass
  /// through (OPTIMISED asked of a variable without a result, for one).
  std::vector<double> variable_values(VariableValue vv) const;
  /// The fixed flags of every variable, concatenated.
  std::vector<bool> fixed_variables() const;
  /// The perturbations of every variable, concatenated.
  std::vector<double> perturbations() const;

 private:
  void gather_variables(FunctionComponent const& component);
  void recompute_nominal_dimension();

  int ncomponents_ = 0;
  int nvariables_ = 0;
  THandle<std::vector<THandle<FunctionComponent>>> components_;
  THandle<std::vector<THandle<FunctionVariable>>> variables_;
  int nominal_dimension_ = 0;
  bool derivatives_available_ = true;
  bool optimised_ok_ = false;
  THandle<std::vector<double>> gradient_;
};

}  // namespace structmath
