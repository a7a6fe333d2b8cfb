// SPDX-License-Identifier: MIT
// Tests of FunctionVariable: construction, value sets, fixing, deep copies and failures.
#include "structmath/optimisation/function_variable.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "support/optimisation_support.hpp"

namespace structmath {
namespace {

using testing::expect_throw_text;
using Values = std::vector<double>;

constexpr char const* kNoOptimised =
    "FunctionVariable::optimised(): No optimised parameters available: minimisation probably "
    "did not converge";

std::vector<bool> flags_of(FunctionVariable const& v) {
  std::vector<bool> flags;
  for (int i = 0; i < v.ndimensions(); ++i) flags.push_back(v.fixed(i));
  return flags;
}

Values perturbations_of(FunctionVariable const& v) {
  Values steps;
  for (int i = 0; i < v.ndimensions(); ++i) steps.push_back(v.perturbation(i));
  return steps;
}

TEST(FunctionVariable, ConstructorsSetDimensionValuesFlagsAndPerturbations) {
  FunctionVariable empty;
  EXPECT_EQ(empty.ndimensions(), 0);
  EXPECT_TRUE(empty.value(STARTING).empty());
  EXPECT_TRUE(empty.value(LATEST).empty());
  EXPECT_TRUE(empty.value(TRIAL).empty());

  FunctionVariable from_vector(Values{1.5, -2.0});
  EXPECT_EQ(from_vector.ndimensions(), 2);
  EXPECT_EQ(from_vector.value(STARTING), (Values{1.5, -2.0}));
  EXPECT_EQ(from_vector.value(LATEST), (Values{1.5, -2.0}));
  EXPECT_EQ(flags_of(from_vector), (std::vector<bool>{false, false}));
  EXPECT_EQ(perturbations_of(from_vector), (Values{1.0, 1.0}));
  EXPECT_TRUE(from_vector.value(TRIAL).empty());

  FunctionVariable scalar(4.25);
  EXPECT_EQ(scalar.ndimensions(), 1);
  EXPECT_EQ(scalar.double_value(STARTING), 4.25);
  EXPECT_EQ(scalar.double_value(LATEST), 4.25);
  EXPECT_FALSE(scalar.fixed(0));
  EXPECT_EQ(scalar.perturbation(0), 1.0);

  FunctionVariable point(Point(1.0, 2.0, 3.0));
  EXPECT_EQ(point.ndimensions(), 3);
  EXPECT_EQ(point.value(STARTING), (Values{1.0, 2.0, 3.0}));
  EXPECT_TRUE(equals(point.point_value(LATEST), Point(1.0, 2.0, 3.0), 0.0));
  EXPECT_EQ(flags_of(point), (std::vector<bool>(3, false)));
  EXPECT_EQ(perturbations_of(point), (Values(3, 1.0)));

  for (auto const* v : {&empty, &from_vector, &scalar, &point}) {
    expect_throw_text<std::runtime_error>([&] { v->value(OPTIMISED); }, kNoOptimised);
  }
}

TEST(FunctionVariable, SetStartingFromVectorAdoptsOrKeepsTheDimension) {
  FunctionVariable v;
  v.set_starting(Values{});
  EXPECT_EQ(v.ndimensions(), 0);
  EXPECT_TRUE(v.value(STARTING).empty());

  v.set_starting(Values{1.0, 2.0});
  EXPECT_EQ(v.ndimensions(), 2);
  EXPECT_EQ(v.value(LATEST), (Values{1.0, 2.0}));
  EXPECT_EQ(flags_of(v), (std::vector<bool>{false, false}));
  EXPECT_EQ(perturbations_of(v), (Values{1.0, 1.0}));

  // A known dimension keeps its flags and perturbations; latest follows starting.
  v.fix_to_starting(1);
  v.set_perturbation(0, 0.25);
  v.update(LATEST, Values{7.0, 8.0});
  v.set_starting(Values{3.0, 4.0});
  EXPECT_EQ(v.value(STARTING), (Values{3.0, 4.0}));
  EXPECT_EQ(v.value(LATEST), (Values{3.0, 4.0}));
  EXPECT_EQ(flags_of(v), (std::vector<bool>{false, true}));
  EXPECT_EQ(perturbations_of(v), (Values{0.25, 1.0}));

  // An empty vector changes nothing, a wrong length throws and changes nothing.
  v.set_starting(Values{});
  EXPECT_EQ(v.value(STARTING), (Values{3.0, 4.0}));
  expect_throw_text<std::invalid_argument>(
      [&] {
        v.set_starting(Values{1.0, 2.0, 3.0});
      },
      "FunctionVariable::set_starting(const vector_double& vstart): Input vector has incorrect "
      "dimension.");
  EXPECT_EQ(v.ndimensions(), 2);
  EXPECT_EQ(v.value(STARTING), (Values{3.0, 4.0}));
  EXPECT_EQ(v.value(LATEST), (Values{3.0, 4.0}));
}

TEST(FunctionVariable, SetStartingFromDoubleAndPointCheckTheDimension) {
  FunctionVariable v;
  v.set_starting(2.5);
  EXPECT_EQ(v.ndimensions(), 1);
  EXPECT_EQ(v.value(STARTING), Values{2.5});
  EXPECT_EQ(v.value(LATEST), Values{2.5});
  EXPECT_FALSE(v.fixed(0));
  EXPECT_EQ(v.perturbation(0), 1.0);

  v.fix_to_starting(0);
  v.set_perturbation(0, 0.1);
  v.set_starting(-1.0);
  EXPECT_EQ(v.value(STARTING), Values{-1.0});
  EXPECT_EQ(v.value(LATEST), Values{-1.0});
  EXPECT_TRUE(v.fixed(0));
  EXPECT_EQ(v.perturbation(0), 0.1);

  FunctionVariable three(Point(1.0, 2.0, 3.0));
  expect_throw_text<std::invalid_argument>(
      [&] { three.set_starting(2.5); },
      "FunctionVariable::set_starting(double start): Dimension ofFunctionVariable object not "
      "equal to 1.");
  EXPECT_EQ(three.value(STARTING), (Values{1.0, 2.0, 3.0}));

  three.set_starting(Point(-4.0, 5.0, -6.0));
  EXPECT_EQ(three.value(STARTING), (Values{-4.0, 5.0, -6.0}));
  EXPECT_EQ(three.value(LATEST), (Values{-4.0, 5.0, -6.0}));

  FunctionVariable fresh;
  fresh.set_starting(Point(0.5, 0.0, -0.5));
  EXPECT_EQ(fresh.ndimensions(), 3);
  EXPECT_EQ(perturbations_of(fresh), (Values(3, 1.0)));

  FunctionVariable two(Values{1.0, 2.0});
  expect_throw_text<std::invalid_argument>(
      [&] { two.set_starting(Point(1.0, 1.0, 1.0)); },
      "FunctionVariable::set_starting(const Point& pstart): Dimension of FunctionVariable "
      "object not equal to 3.");
  EXPECT_EQ(two.value(STARTING), (Values{1.0, 2.0}));
}

TEST(FunctionVariable, PerDimensionOperationsRejectIndicesOutsideTheDimension) {
  FunctionVariable v(Values{1.0, 2.0});
  for (int bad : {-1, 2}) {
    SCOPED_TRACE(bad);
    expect_throw_text<std::invalid_argument>(
        [&] { v.fix_to_starting(bad); },
        "FunctionVariable::fix_to_starting(int i): Invalid input dimension.");
    expect_throw_text<std::invalid_argument>(
        [&] { v.unfix(bad); }, "FunctionVariable::unfix(int i): Invalid input dimension.");
    expect_throw_text<std::invalid_argument>(
        [&] { v.set_perturbation(bad, 2.0); },
        "FunctionVariable::set_perturbation(int i, double devn):Invalid input dimension.");
    expect_throw_text<std::invalid_argument>(
        [&] { v.perturbation(bad); },
        "FunctionVariable::perturbation(int i): Invalid input dimension.");
    expect_throw_text<std::invalid_argument>(
        [&] { v.fixed(bad); }, "FunctionVariable::fixed(int i): Invalid input dimension.");
  }
  EXPECT_EQ(flags_of(v), (std::vector<bool>{false, false}));
  EXPECT_EQ(perturbations_of(v), (Values{1.0, 1.0}));
  // The whole-variable forms touch every dimension and no value.
  v.fix_to_starting();
  v.set_perturbation(0.5);
  EXPECT_EQ(flags_of(v), (std::vector<bool>{true, true}));
  EXPECT_EQ(perturbations_of(v), (Values{0.5, 0.5}));
  EXPECT_EQ(v.value(LATEST), (Values{1.0, 2.0}));
  // A variable without a dimension has no valid index.
  expect_throw_text<std::invalid_argument>(
      [] { FunctionVariable().fixed(0); },
      "FunctionVariable::fixed(int i): Invalid input dimension.");
}

TEST(FunctionVariable, ReadersRejectUnknownSelectorsAndMissingOptimisedValues) {
  auto const bad_selectors = {static_cast<VariableValue>(4), static_cast<VariableValue>(-1)};
  FunctionVariable vector_variable(Values{1.0, 2.0});
  FunctionVariable scalar(1.0);
  FunctionVariable point(Point(1.0, 2.0, 3.0));
  for (auto bad : bad_selectors) {
    expect_throw_text<std::invalid_argument>(
        [&] { vector_variable.value(bad); },
        "FunctionVariable::value(VariableValue vtype): VariableValue value not recognised");
    expect_throw_text<std::invalid_argument>(
        [&] { scalar.double_value(bad); },
        "FunctionVariable::double_value(VariableValue vtype): VariableValue value not "
        "recognised");
    expect_throw_text<std::invalid_argument>(
        [&] { point.point_value(bad); },
        "FunctionVariable::point_value(VariableValue ptype): VariableValue value not "
        "recognised");
    // The dimension is checked before the selector.
    expect_throw_text<std::runtime_error>(
        [&] { point.double_value(bad); },
        "FunctionVariable::double_value(): Dimension ofFunctionVariable object not equal to 1");
    expect_throw_text<std::runtime_error>(
        [&] { scalar.point_value(bad); },
        "FunctionVariable::point_value(): Dimension ofFunctionVariable object not equal to 3");
  }
  expect_throw_text<std::runtime_error>([&] { scalar.double_value(OPTIMISED); }, kNoOptimised);
  expect_throw_text<std::runtime_error>([&] { point.point_value(OPTIMISED); }, kNoOptimised);
  // A trial value that was never written cannot be read as a number.
  EXPECT_THROW(scalar.double_value(TRIAL), std::runtime_error);
  EXPECT_THROW(point.point_value(TRIAL), std::runtime_error);
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
  expect_throw_text<std::runtime_error>([&] { v.value(OPTIMISED); }, kNoOptimised);

  constexpr char const* length_message =
      "FunctionVariable::update(VariableValue vv, const vector_double& v): Input vector has "
      "incorrect dimension.";
  constexpr char const* selector_message =
      "FunctionVariable::update(VariableValue vv, const vector_double& v)): VariableValue "
      "value not recognised";
  // The length is checked before the selector.
  expect_throw_text<std::invalid_argument>([&] { v.update(STARTING, Values{9.0}); },
                                           length_message);
  expect_throw_text<std::invalid_argument>(
      [&] {
        v.update(LATEST, Values{9.0, 9.0, 9.0});
      },
      length_message);
  for (auto bad : {STARTING, static_cast<VariableValue>(4), static_cast<VariableValue>(-1)}) {
    expect_throw_text<std::invalid_argument>(
        [&] {
          v.update(bad, Values{9.0, 9.0});
        },
        selector_message);
  }
  EXPECT_EQ(v.value(STARTING), (Values{1.0, 2.0}));
  EXPECT_EQ(v.value(LATEST), (Values{3.0, 4.0}));

  FunctionVariable scalar(0.0);
  scalar.update(OPTIMISED, Values{2.0});
  EXPECT_EQ(scalar.double_value(OPTIMISED), 2.0);
  FunctionVariable point(Point(0.0, 0.0, 0.0));
  point.update(TRIAL, Values{1.0, 2.0, 3.0});
  EXPECT_TRUE(equals(point.point_value(TRIAL), Point(1.0, 2.0, 3.0), 0.0));
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
    EXPECT_EQ(target->ndimensions(), 2);
    EXPECT_EQ(target->value(OPTIMISED), (Values{1.5, 2.5}));
    EXPECT_TRUE(target->fixed(0));
    EXPECT_EQ(target->perturbation(1), 0.5);
    target->update(LATEST, Values{9.0, 9.0});
    target->update(OPTIMISED, Values{8.0, 8.0});
    target->unfix();
    target->set_perturbation(7.0);
    target->set_starting(Values{6.0, 6.0});
  }
  EXPECT_EQ(source.value(STARTING), (Values{1.0, 2.0}));
  EXPECT_EQ(source.value(LATEST), (Values{1.0, 2.0}));
  EXPECT_EQ(source.value(OPTIMISED), (Values{1.5, 2.5}));
  EXPECT_TRUE(source.fixed(0));
  EXPECT_EQ(source.perturbation(1), 0.5);

  auto& self = source;
  source = self;
  EXPECT_EQ(source.value(OPTIMISED), (Values{1.5, 2.5}));
}

}  // namespace
}  // namespace structmath
