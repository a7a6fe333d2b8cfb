// SPDX-License-Identifier: MIT
// FunctionComponent: the abstract weighted term of a penalty function.
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/optimisation/function_variable.hpp"

namespace structmath {

class Archive;

/// Partial derivatives of a term, per variable: one entry per dimension of the variable.
using DerivativeMap = std::map<THandle<FunctionVariable>, std::vector<double>>;

/// One term of a penalty function: a value computed from some FunctionVariable objects,
/// multiplied by the term's weight in the sum.
///
/// Derived terms implement component_value and, when they can, derivatives (setting
/// derivatives_available_ in their constructors). Constants reach a term through the
/// set_constants family: a term overrides the overloads it understands (the name says
/// which constant is meant); the others do nothing. A term may list one variable more
/// than once; the penalty function counts it once.
class STRUCTMATH_API FunctionComponent {
 public:
  FunctionComponent();
  virtual ~FunctionComponent();
  /// Terms are shared through handles, never copied: a copy would share the variable
  /// list and the derivative store with its source.
  FunctionComponent(FunctionComponent const&) = delete;
  FunctionComponent& operator=(FunctionComponent const&) = delete;

  virtual void set_constants(int c);
  virtual void set_constants(int c, std::string name);
  virtual void set_constants(std::vector<int> const& c);
  virtual void set_constants(std::vector<int> const& c, std::string name);
  virtual void set_constants(double c);
  virtual void set_constants(double c, std::string name);
  virtual void set_constants(std::vector<double> const& c);
  virtual void set_constants(std::vector<double> const& c, std::string name);

  /// The term's unweighted value at the selected values of its variables.
  virtual double component_value(VariableValue vv) = 0;
  /// The unweighted partial derivatives at the selected values, keyed by variable; the
  /// returned store is the term's own and is refilled by the next call. The base throws
  /// std::runtime_error("FunctionComponent::derivatives(): Derivatives unavailable.").
  virtual THandle<DerivativeMap> derivatives(VariableValue vv);
  virtual bool derivatives_available() const;

  virtual void print(std::ostream& out) const = 0;
  virtual void write(Archive& archive) const = 0;
  virtual void read(Archive& archive) = 0;

  void set_weight(double weight) noexcept { weight_ = weight; }
  double weight() const noexcept { return weight_; }
  /// Replaces the contents of the variable list (the list object stays the same).
  void set_variables(std::vector<THandle<FunctionVariable>> const& variables);
  void add_variable(THandle<FunctionVariable> const& variable);
  int nvariables() const noexcept { return nvariables_; }
  THandle<std::vector<THandle<FunctionVariable>>> const& variables() const noexcept {
    return variables_;
  }

 protected:
  double weight_ = 1.0;
  bool derivatives_available_ = false;
  int nvariables_ = 0;
  THandle<std::vector<THandle<FunctionVariable>>> variables_;
  THandle<DerivativeMap> derivatives_;
};

}  // namespace structmath
