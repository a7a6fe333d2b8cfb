// SPDX-License-Identifier: MIT
// Rosenbrock1 and Rosenbrock2: the two terms of Rosenbrock's valley, for testing minimisers.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/optimisation/function_component.hpp"
#include "structmath/optimisation/function_variable.hpp"

namespace structmath {

/// R (x - y^2)^2, the steep term of Rosenbrock's valley (Computer Journal 3, 175-184,
/// 1960). With Rosenbrock2 at weight 1 and R = 100 the sum R (x - y^2)^2 + (1 - y)^2 has
/// its minimum 0 at x = y = 1.
///
/// x and y are either two one-dimensional variables, or elements 0 and 1 of the first
/// variable when the term has any other number of them. R is 0.0 until set_constants gives it a
/// value. Derivatives are available. Throws std::invalid_argument from component_value and
/// derivatives when the variables fit neither layout. print, write and read do nothing.
class STRUCTMATH_API Rosenbrock1 : public FunctionComponent {
 public:
  Rosenbrock1();
  /// Two variables, x then y.
  Rosenbrock1(THandle<FunctionVariable> x, THandle<FunctionVariable> y);

  using FunctionComponent::set_constants;
  /// R = r.
  void set_constants(double r) override;
  /// R = c[0] when name is "Rcoeff"; any other name sets R to 0.0, so that a misnamed
  /// constant shows as a vanishing term rather than a stale one. Throws
  /// std::invalid_argument when name is "Rcoeff" and c is empty.
  void set_constants(std::vector<double> const& c, std::string name) override;
  double rcoeff() const noexcept { return rcoeff_; }

  double component_value(VariableValue vv) override;
  /// Two variables: x -> {2R(x - y^2)}, y -> {-4Ry(x - y^2)}; one variable: both in it.
  THandle<DerivativeMap> derivatives(VariableValue vv) override;

  void print(std::ostream& out) const override;
  void write(Archive& archive) const override;
  void read(Archive& archive) override;

 private:
  double rcoeff_ = 0.0;
};

/// (1 - t)^2, the shallow term of Rosenbrock's valley. t is the value of a one-dimensional
/// variable, or element 1 of a longer one (the y of Rosenbrock1's single-variable layout).
/// Derivatives are available. Throws std::invalid_argument from component_value and
/// derivatives unless it has a variable. print, write and read do nothing.
class STRUCTMATH_API Rosenbrock2 : public FunctionComponent {
 public:
  Rosenbrock2();
  explicit Rosenbrock2(THandle<FunctionVariable> v);

  double component_value(VariableValue vv) override;
  /// {-2(1 - t)} for a one-dimensional variable, {0.0, -2(1 - t)} for a longer one.
  THandle<DerivativeMap> derivatives(VariableValue vv) override;

  void print(std::ostream& out) const override;
  void write(Archive& archive) const override;
  void read(Archive& archive) override;
};

}  // namespace structmath
