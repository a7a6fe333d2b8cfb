// SPDX-License-Identifier: MIT
// Tests of FunctionVariable: construction, value sets, fixing, deep copies and failures.
#include "structmath/optimisation/function_variable.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/optimisation_support.hpp"

namespace structmath {
namespace {

using namespace testing;
using Values = std::vector<double>;
using Flags = std::vector<bool>;

// Checks the starting and latest values (equal), the fixed flags and the perturbations.
void expect_state(FunctionVariable const& v, Values const& values, Flags const& flags,
                  Values const& steps) {
  ASSERT_EQ(v.ndimensions(), int(values.size()));
  EXPECT_EQ(v.value(STARTING), values);
  EXPECT_EQ(v.value(LATEST), values);
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(v.fixed(int(i)), bool(flags[i])) << "dimension " << i;
    EXPECT_EQ(v.perturbation(int(i)), steps[i]) << "dimension " << i;
  }
}

TEST(FunctionVariable, ConstructorsAndSetStartingAdoptADimensionAndKeepItsSettings) {
  expect_state(FunctionVariable(), {}, {}, {});
  expect_state(FunctionVariable(Values{1.5, -2.0}), {1.5, -2.0}, {false, false}, {1.0, 1.0});
  expect_state(FunctionVariable(4.25), {4.25}, {false}, {1.0});
  expect_state(FunctionVariable(Point(1, 2, 3)), {1, 2, 3}, Flags(3, false), Values(3, 1.0));

  FunctionVariable v;
  v.set_starting(Values{});
  EXPECT_EQ(v.ndimensions(), 0);
  v.set_starting(Values{1.0, 2.0});
  expect_state(v, {1.0, 2.0}, {false, false}, {1.0, 1.0});
  // A known dimension keeps its flags and perturbations; latest follows starting; an
  // empty vector changes nothing.
  v.fix_to_starting();
  v.unfix(0);
  v.set_perturbation(0.25);
  v.set_perturbation(1, 1.0);
  v.update(LATEST, Values{7.0, 8.0});
  v.set_starting(Values{3.0, 4.0});
  v.set_starting(Values{});
  expect_state(v, {3.0, 4.0}, {false, true}, {0.25, 1.0});

  FunctionVariable scalar;
  FunctionVariable point;
  scalar.set_starting(2.5);
  point.set_starting(Point(0.5, 0.0, -0.5));
  expect_state(scalar, {2.5}, {false}, {1.0});
  expect_state(point, {0.5, 0.0, -0.5}, Flags(3, false), Values(3, 1.0));
  scalar.fix_to_starting(0);
  scalar.set_perturbation(0, 0.1);
  point.fix_to_starting(2);
  scalar.set_starting(-1.0);
  point.set_starting(Point(-4.0, 5.0, -6.0));
  expect_state(scalar, {-1.0}, {true}, {0.1});
  expect_state(point, {-4.0, 5.0, -6.0}, {false, false, true}, Values(3, 1.0));
}

TEST(FunctionVariable, UpdateWritesLatestOptimisedAndTrialButNeverStarting) {
  FunctionVariable v(Values{1.0, 2.0});
  v.update(LATEST, Values{3.0, 4.0});
  v.update(TRIAL, Values{5.0, 6.0});
  v.update(OPTIMISED, Values{7.0, 8.0});
  EXPECT_EQ(v.value(STARTING), (Values{1.0, 2.0}));
  EXPECT_EQ(v.value(LATEST), (Values{3.0, 4.0}));
  EXPECT_EQ(v.value(TRIAL), (Values{5.0, 6.0}));
  EXPECT_EQ(v.value(OPTIMISED), (Values{7.0, 8.0}));
  v.clear_optimised();
  EXPECT_THROW(v.value(OPTIMISED), std::runtime_error);

  FunctionVariable scalar(0.0);
  FunctionVariable point(Point(0.0, 0.0, 0.0));
  scalar.update(OPTIMISED, Values{2.0});
  point.update(TRIAL, Values{1.0, 2.0, 3.0});
  EXPECT_EQ(scalar.double_value(OPTIMISED), 2.0);
  EXPECT_TRUE(equals(point.point_value(TRIAL), Point(1.0, 2.0, 3.0), 0.0));
}

TEST(FunctionVariable, FailuresCarryTheirExactTextAndChangeNothing) {
  FunctionVariable pair(Values{1.0, 2.0});
  FunctionVariable scalar(1.0);
  FunctionVariable point(Point(1.0, 2.0, 3.0));
  std::string const no_optimised =
      "FunctionVariable::optimised(): No optimised parameters available: minimisation probably "
      "did not converge";
  std::string const update_selector =
      "FunctionVariable::update(VariableValue vv, const vector_double& v)): VariableValue value "
      "not recognised";
  std::string const update_length =
      "FunctionVariable::update(VariableValue vv, const vector_double& v): Input vector has "
      "incorrect dimension.";
  // Each index and selector check is tried just below and just above its range.
  for (int const i : {-1, 2}) {
    auto const vv = VariableValue(i < 0 ? -1 : 4);
    expect_failures({
        {[&] {
           pair.set_starting(Values{1.0, 2.0, 3.0});
         },
         kInvalid,
         "FunctionVariable::set_starting(const vector_double& vstart): Input vector has "
         "incorrect dimension."},
        {[&] { point.set_starting(2.5); }, kInvalid,
         "FunctionVariable::set_starting(double start): Dimension ofFunctionVariable object not "
         "equal to 1."},
        {[&] { pair.set_starting(Point(1.0, 1.0, 1.0)); }, kInvalid,
         "FunctionVariable::set_starting(const Point& pstart): Dimension of FunctionVariable "
         "object not equal to 3."},
        {[&] { pair.fix_to_starting(i); }, kInvalid,
         "FunctionVariable::fix_to_starting(int i): Invalid input dimension."},
        {[&] { pair.unfix(i); }, kInvalid,
         "FunctionVariable::unfix(int i): Invalid input dimension."},
        {[&] { pair.set_perturbation(i, 2.0); }, kInvalid,
         "FunctionVariable::set_perturbation(int i, double devn):Invalid input dimension."},
        {[&] { pair.perturbation(i); }, kInvalid,
         "FunctionVariable::perturbation(int i): Invalid input dimension."},
        {[&] { pair.fixed(i); }, kInvalid,
         "FunctionVariable::fixed(int i): Invalid input dimension."},
        {[&] { pair.value(OPTIMISED); }, kRuntime, no_optimised},
        {[&] { scalar.double_value(OPTIMISED); }, kRuntime, no_optimised},
        {[&] { point.point_value(OPTIMISED); }, kRuntime, no_optimised},
        {[&] { pair.value(vv); }, kInvalid,
         "FunctionVariable::value(VariableValue vtype): VariableValue value not recognised"},
        {[&] { scalar.double_value(vv); }, kInvalid,
         "FunctionVariable::double_value(VariableValue vtype): VariableValue value not recognised"},
        {[&] { point.point_value(vv); }, kInvalid,
         "FunctionVariable::point_value(VariableValue ptype): VariableValue value not recognised"},
        // The dimension is checked before the selector, the length before the selector.
        {[&] { point.double_value(vv); }, kRuntime,
         "FunctionVariable::double_value(): Dimension ofFunctionVariable object not equal to 1"},
        {[&] { scalar.point_value(vv); }, kRuntime,
         "FunctionVariable::point_value(): Dimension ofFunctionVariable object not equal to 3"},
        {[&] {
           pair.update(LATEST, Values{9.0, 9.0, 9.0});
         },
         kInvalid, update_length},
        {[&] { pair.update(STARTING, Values{9.0}); }, kInvalid, update_length},
        {[&] {
           pair.update(STARTING, Values{9.0, 9.0});
         },
         kInvalid, update_selector},
        {[&] {
           pair.update(vv, Values{9.0, 9.0});
         },
         kInvalid, update_selector},
    });
  }
  expect_state(pair, {1.0, 2.0}, {false, false}, {1.0, 1.0});
  expect_state(point, {1.0, 2.0, 3.0}, Flags(3, false), Values(3, 1.0));
  EXPECT_TRUE(pair.value(TRIAL).empty());
  // A trial value that was never written cannot be read as a number.
  EXPECT_THROW(scalar.double_value(TRIAL), std::runtime_error);
  EXPECT_THROW(point.point_value(TRIAL), std::runtime_error);
}

TEST(FunctionVariable, CopiesShareNoValuesWithTheirSource) {
  FunctionVariable source(Values{1.0, 2.0});
  source.fix_to_starting(0);
  source.set_perturbation(1, 0.5);
  source.update(OPTIMISED, Values{1.5, 2.5});
  FunctionVariable copy(source);
  FunctionVariable assigned;
  assigned = source;
  for (auto* target : {&copy, &assigned}) {
    expect_state(*target, {1.0, 2.0}, {true, false}, {1.0, 0.5});
    EXPECT_EQ(target->value(OPTIMISED), (Values{1.5, 2.5}));
    target->update(OPTIMISED, Values{8.0, 8.0});
    target->update(TRIAL, Values{7.0, 7.0});
    target->unfix();
    target->set_perturbation(7.0);
    target->set_starting(Values{6.0, 6.0});
    expect_state(*target, {6.0, 6.0}, {false, false}, {7.0, 7.0});
  }
  auto& self = source;
  source = self;
  expect_state(source, {1.0, 2.0}, {true, false}, {1.0, 0.5});
  EXPECT_EQ(source.value(OPTIMISED), (Values{1.5, 2.5}));
  EXPECT_TRUE(source.value(TRIAL).empty());
}

}  // namespace
}  // namespace structmath
