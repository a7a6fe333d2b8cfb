// SPDX-License-Identifier: MIT
// Small penalty-function terms and an exception-text check for the optimisation tests.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/optimisation/function_component.hpp"
#include "structmath/optimisation/function_variable.hpp"

namespace structmath::testing {

/// Runs f and expects it to throw exactly an E whose text is message.
template <class E, class F>
void expect_throw_text(F&& f, std::string const& message) {
  try {
    std::forward<F>(f)();
    ADD_FAILURE() << "no exception; expected: " << message;
  } catch (E const& e) {
    EXPECT_EQ(std::string(e.what()), message);
  } catch (std::exception const& e) {
    ADD_FAILURE() << "wrong exception type, text: " << e.what();
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

}  // namespace structmath::testing
