// SPDX-License-Identifier: MIT
// Minimise: the abstract minimiser with its iteration limit and convergence thresholds.
#pragma once

#include "structmath/export.hpp"
#include "structmath/optimisation/function_variable.hpp"

namespace structmath {

class PenaltyFunction;

/// A method that drives a PenaltyFunction to a minimum over the free dimensions of its
/// variables and writes the result back into them.
class STRUCTMATH_API Minimise {
 public:
  /// 1000 iterations, relative function tolerance 1e-9, gradient tolerance 1e-6.
  Minimise() = default;
  Minimise(int max_iterations, double fn_val_converge, double grad_converge);
  virtual ~Minimise();

  /// Minimises from the selected values; true when the minimiser converged.
  virtual bool minimise(PenaltyFunction& pf, VariableValue vv) = 0;

  void set_max_iterations(int n) noexcept { max_iterations_ = n; }
  void set_fn_val_converge(double tolerance) noexcept { fn_val_converge_ = tolerance; }
  void set_grad_converge(double tolerance) noexcept { grad_converge_ = tolerance; }
  /// Iterations made by the last run (0 before any).
  int niterations() const noexcept { return niterations_; }
  int max_iterations() const noexcept { return max_iterations_; }
  double fn_val_converge() const noexcept { return fn_val_converge_; }
  /// For minimisers that use derivatives.
  double grad_converge() const noexcept { return grad_converge_; }

 protected:
  Minimise(Minimise const&) = default;
  Minimise& operator=(Minimise const&) = default;

  int max_iterations_ = 1000;
  double fn_val_converge_ = 1e-9;
  double grad_converge_ = 1e-6;
  int niterations_ = 0;
};

}  // namespace structmath
