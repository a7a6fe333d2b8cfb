// SPDX-License-Identifier: MIT
// Small penalty-function terms, the Rosenbrock valley in both layouts and a table check
// of exception types and texts for the optimisation tests.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <exception>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <typeindex>
#include <typeinfo>
#include <utility>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/optimisation/function_component.hpp"
#include "structmath/optimisation/function_variable.hpp"
#include "structmath/optimisation/penalty_function.hpp"
#include "structmath/optimisation/rosenbrock.hpp"

namespace structmath::testing {

inline std::type_index const kInvalid{typeid(std::invalid_argument)};
inline std::type_index const kRuntime{typeid(std::runtime_error)};

/// One call that must throw an exception of exactly the given type and text.
struct Failure {
  std::function<void()> call;
  std::type_index type;
  std::string message;
};

/// Runs every row's call and checks the exception it throws.
inline void expect_failures(std::vector<Failure> const& rows) {
  for (std::size_t k = 0; k < rows.size(); ++k) {
    SCOPED_TRACE("row " + std::to_string(k) + ", expected: " + rows[k].message);
    try {
      rows[k].call();
      ADD_FAILURE() << "no exception";
    } catch (std::exception const& e) {
      EXPECT_TRUE(std::type_index(typeid(e)) == rows[k].type) << "thrown: " << typeid(e).name();
      EXPECT_EQ(std::string(e.what()), rows[k].message);
    }
  }
}

/// A term with a fixed value and no derivatives; counts its evaluations, so a
/// ConstantTerm(0.0) added to a function counts the function's evaluations.
class ConstantTerm : public FunctionComponent {
 public:
  explicit ConstantTerm(double value, std::vector<THandle<FunctionVariable>> const& variables = {})
      : value_(value) {
    set_variables(variables);
  }
  double component_value(VariableValue) override {
    ++evaluations;
    return value_;
  }
  void print(std::ostream&) const override {}
  void write(Archive&) const override {}
  void read(Archive&) override {}

  long evaluations = 0;

 private:
  double value_;
};

/// Sum over every dimension of every listed variable of (value - target)^2, targets
/// taken in flat order; derivatives 2 (value - target).
class SquaredDistanceTerm : public FunctionComponent {
 public:
  SquaredDistanceTerm(std::vector<THandle<FunctionVariable>> const& variables,
                      std::vector<double> targets)
      : targets_(std::move(targets)) {
    set_variables(variables);
    derivatives_available_ = true;
  }
  double component_value(VariableValue vv) override {
    double sum = 0.0;
    std::size_t k = 0;
    for (auto const& variable : *variables_) {
      for (double x : variable->value(vv)) {
        sum += (x - targets_[k]) * (x - targets_[k]);
        ++k;
      }
    }
    return sum;
  }
  THandle<DerivativeMap> derivatives(VariableValue vv) override {
    derivatives_->clear();
    std::size_t k = 0;
    for (auto const& variable : *variables_) {
      std::vector<double> d;
      for (double x : variable->value(vv)) d.push_back(2.0 * (x - targets_[k++]));
      (*derivatives_)[variable] = d;
    }
    return derivatives_;
  }
  void print(std::ostream&) const override {}
  void write(Archive&) const override {}
  void read(Archive&) override {}

 private:
  std::vector<double> targets_;
};

/// R (x - y^2)^2 + (1 - y)^2 as a penalty function of a Rosenbrock1 and a Rosenbrock2 term.
struct Valley {
  PenaltyFunction pf;
  THandle<Rosenbrock1> steep;
  THandle<Rosenbrock2> shallow;
};

/// The valley on one two-dimensional variable (x, y), R set through set_constants(double).
inline Valley shared_valley(double x, double y, double r = 100.0) {
  auto xy = make_handle<FunctionVariable>(std::vector<double>{x, y});
  Valley valley{PenaltyFunction(), make_handle<Rosenbrock1>(), make_handle<Rosenbrock2>(xy)};
  valley.steep->add_variable(xy);
  valley.steep->set_constants(r);
  valley.pf.set_components({valley.steep, valley.shallow});
  return valley;
}

/// The valley on two one-dimensional variables x and y, R set by its name.
inline Valley split_valley(double x, double y, double r = 100.0) {
  auto vx = make_handle<FunctionVariable>(x);
  auto vy = make_handle<FunctionVariable>(y);
  Valley valley{PenaltyFunction(), make_handle<Rosenbrock1>(vx, vy), make_handle<Rosenbrock2>(vy)};
  valley.steep->set_constants(std::vector<double>{r}, "Rcoeff");
  valley.pf.set_components({valley.steep, valley.shallow});
  return valley;
}

}  // namespace structmath::testing
