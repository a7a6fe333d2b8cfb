// SPDX-License-Identifier: MIT
// Tests of FunctionComponent and PenaltyFunction: gathering, sums, gradients, write-back.
#include "structmath/optimisation/penalty_function.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "structmath/optimisation/function_component.hpp"
#include "support/optimisation_support.hpp"

namespace structmath {
namespace {

using testing::ConstantTerm;
using testing::expect_throw_text;
using testing::SquaredDistanceTerm;
using Values = std::vector<double>;
using VariableHandle = THandle<FunctionVariable>;
using ComponentList = std::vector<THandle<FunctionComponent>>;

constexpr char const* kNoComponents =
    "PenaltyFunction::function_value(VariableValue vv):function contains no components and/or "
    "variables";
constexpr char const* kNoDerivatives =
    "PenaltyFunction::derivatives(VariableValue vv):derivatives unavailable for this function";
constexpr char const* kWrongLength =
    "PenaltyFunction::update_variables(const vector_double& v):vector of wrong length.";

TEST(FunctionComponent, BaseKeepsItsVariableListAndHasNoDerivatives) {
  auto a = make_handle<FunctionVariable>(1.0);
  auto b = make_handle<FunctionVariable>(2.0);
  ConstantTerm term(5.0);
  EXPECT_EQ(term.weight(), 1.0);
  EXPECT_EQ(term.nvariables(), 0);
  EXPECT_FALSE(term.derivatives_available());

  auto const list = term.variables();
  term.add_variable(a);
  term.add_variable(a);
  EXPECT_EQ(term.nvariables(), 2);
  term.set_variables({b});
  EXPECT_EQ(term.nvariables(), 1);
  EXPECT_EQ(term.variables(), list);  // the same list object, new contents
  EXPECT_EQ(*list, (std::vector<VariableHandle>{b}));

  // The base ignores every constant.
  term.set_constants(3);
  term.set_constants(3, "n");
  term.set_constants(std::vector<int>{1, 2});
  term.set_constants(std::vector<int>{1, 2}, "n");
  term.set_constants(3.5);
  term.set_constants(3.5, "x");
  term.set_constants(Values{1.0});
  term.set_constants(Values{1.0}, "x");
  EXPECT_EQ(term.component_value(LATEST), 5.0);

  expect_throw_text<std::runtime_error>(
      [&] { term.derivatives(LATEST); },
      "FunctionComponent::derivatives(): Derivatives unavailable.");
}

TEST(PenaltyFunction, GathersDistinctVariablesInFirstSeenOrder) {
  auto x = make_handle<FunctionVariable>(Values{1.0, 2.0});
  auto y = make_handle<FunctionVariable>(Point(3.0, 4.0, 5.0));
  auto z = make_handle<FunctionVariable>(6.0);
  // The first term lists x twice; the second shares x and brings y, the third z then y.
  auto first = make_handle<ConstantTerm>(1.0, std::vector<VariableHandle>{x, x});
  auto second = make_handle<ConstantTerm>(1.0, std::vector<VariableHandle>{y, x});
  PenaltyFunction pf({first, second});
  EXPECT_EQ(pf.ncomponents(), 2);
  EXPECT_EQ(pf.nvariables(), 2);
  EXPECT_EQ(*pf.variables(), (std::vector<VariableHandle>{x, y}));
  EXPECT_EQ(pf.nominal_dimension(), 5);
  EXPECT_EQ(pf.variable_values(STARTING), (Values{1.0, 2.0, 3.0, 4.0, 5.0}));

  pf.add_component(make_handle<ConstantTerm>(1.0, std::vector<VariableHandle>{z, y}));
  EXPECT_EQ(pf.ncomponents(), 3);
  EXPECT_EQ(*pf.variables(), (std::vector<VariableHandle>{x, y, z}));
  EXPECT_EQ(pf.nominal_dimension(), 6);

  y->fix_to_starting(1);
  z->fix_to_starting();
  x->set_perturbation(1, 0.25);
  EXPECT_EQ(pf.fixed_variables(), (std::vector<bool>{false, false, false, true, false, true}));
  EXPECT_EQ(pf.perturbations(), (Values{1.0, 0.25, 1.0, 1.0, 1.0, 1.0}));
  EXPECT_EQ(pf.true_dimension(), 4);

  // Gathering afresh follows the new component order.
  pf.set_components({second, first});
  EXPECT_EQ(*pf.variables(), (std::vector<VariableHandle>{y, x}));
  EXPECT_EQ(pf.nvariables(), 2);
  EXPECT_EQ(pf.nominal_dimension(), 5);
}

TEST(PenaltyFunction, FunctionValueIsTheWeightedSumOfItsComponents) {
  auto x = make_handle<FunctionVariable>(0.0);
  auto three = make_handle<ConstantTerm>(3.0, std::vector<VariableHandle>{x});
  auto four = make_handle<ConstantTerm>(4.0, std::vector<VariableHandle>{x});
  three->set_weight(2.0);
  four->set_weight(0.5);
  PenaltyFunction pf({three, four});
  EXPECT_EQ(pf.function_value(LATEST), 8.0);

  expect_throw_text<std::runtime_error>([] { PenaltyFunction().function_value(LATEST); },
                                        kNoComponents);
  PenaltyFunction without_variables({make_handle<ConstantTerm>(1.0)});
  expect_throw_text<std::runtime_error>([&] { without_variables.function_value(LATEST); },
                                        kNoComponents);
}

TEST(PenaltyFunction, FunctionValueOfAVectorEvaluatesAtTheTrialValues) {
  auto x = make_handle<FunctionVariable>(Values{0.0, 0.0});
  auto y = make_handle<FunctionVariable>(0.0);
  auto term =
      make_handle<SquaredDistanceTerm>(std::vector<VariableHandle>{x, y}, Values{1.0, 2.0, 3.0});
  PenaltyFunction pf({term});
  EXPECT_EQ(pf.function_value(LATEST), 14.0);
  EXPECT_EQ(pf.function_value(Values{1.0, 0.0, 5.0}), 8.0);
  EXPECT_EQ(x->value(TRIAL), (Values{1.0, 0.0}));
  EXPECT_EQ(y->value(TRIAL), Values{5.0});
  EXPECT_EQ(x->value(LATEST), (Values{0.0, 0.0}));
  expect_throw_text<std::invalid_argument>(
      [&] {
        pf.function_value(Values{1.0, 2.0});
      },
      kWrongLength);
}

TEST(PenaltyFunction, DerivativesFlagFollowsTheComponentsExceptAfterSetComponents) {
  auto x = make_handle<FunctionVariable>(0.0);
  auto smooth = make_handle<SquaredDistanceTerm>(std::vector<VariableHandle>{x}, Values{1.0});
  auto flat = make_handle<ConstantTerm>(1.0, std::vector<VariableHandle>{x});

  EXPECT_TRUE(PenaltyFunction().derivatives_available());
  EXPECT_TRUE(PenaltyFunction({smooth}).derivatives_available());
  PenaltyFunction constructed({smooth, flat});
  EXPECT_FALSE(constructed.derivatives_available());
  expect_throw_text<std::runtime_error>([&] { constructed.derivatives(LATEST); }, kNoDerivatives);

  PenaltyFunction pf;
  pf.set_components({flat});
  EXPECT_TRUE(pf.derivatives_available());
  // The flag lets the call through to the component, which reports the missing derivative.
  expect_throw_text<std::runtime_error>(
      [&] { pf.derivatives(LATEST); },
      "FunctionComponent::derivatives(): Derivatives unavailable.");
  pf.add_component(flat);
  EXPECT_FALSE(pf.derivatives_available());
  expect_throw_text<std::runtime_error>([&] { pf.derivatives(Values{0.0}); }, kNoDerivatives);
}

// Lists a second variable but reports derivatives for the first only.
class FirstOnlyTerm : public SquaredDistanceTerm {
 public:
  using SquaredDistanceTerm::SquaredDistanceTerm;
  THandle<DerivativeMap> derivatives(VariableValue vv) override {
    auto store = SquaredDistanceTerm::derivatives(vv);
    store->erase((*variables())[1]);
    return store;
  }
};

TEST(PenaltyFunction, DerivativesAddWeightedPartialsAtEachVariablesPlace) {
  auto x = make_handle<FunctionVariable>(Values{1.0, 2.0});
  auto unreported = make_handle<FunctionVariable>(Values{9.0, 9.0});
  auto y = make_handle<FunctionVariable>(3.0);
  // A term that lists x twice reports one entry for it, added once.
  auto on_x = make_handle<FirstOnlyTerm>(std::vector<VariableHandle>{x, unreported, x},
                                         Values{0.0, 0.0, 0.0, 0.0, 0.0, 0.0});
  auto on_y = make_handle<SquaredDistanceTerm>(std::vector<VariableHandle>{y}, Values{1.0});
  on_x->set_weight(3.0);
  on_y->set_weight(0.5);
  PenaltyFunction pf({on_x, on_y});
  pf.add_component(on_y);
  EXPECT_EQ(pf.nominal_dimension(), 5);

  auto const& gradient = pf.derivatives(LATEST);
  // x: 3 * 2 * (1, 2); nothing for the unreported variable; y: twice 0.5 * 2 * (3 - 1).
  EXPECT_EQ(*gradient, (Values{6.0, 12.0, 0.0, 0.0, 4.0}));

  // At a vector: the trial values are written and the same buffer is refilled.
  auto const& at_point = pf.derivatives(Values{0.0, 1.0, 5.0, 5.0, 1.0});
  EXPECT_EQ(at_point.get(), gradient.get());
  EXPECT_EQ(*at_point, (Values{0.0, 6.0, 0.0, 0.0, 0.0}));
  EXPECT_EQ(y->value(TRIAL), Values{1.0});
  expect_throw_text<std::invalid_argument>([&] { pf.derivatives(Values{0.0}); }, kWrongLength);
}

TEST(PenaltyFunction, UpdateVariablesSplitsTheFlatVectorAndFlagsOptimisedResults) {
  auto x = make_handle<FunctionVariable>(Values{1.0, 2.0});
  auto y = make_handle<FunctionVariable>(3.0);
  auto term = make_handle<ConstantTerm>(0.0, std::vector<VariableHandle>{x, y});
  PenaltyFunction pf({term});
  EXPECT_FALSE(pf.optimised_ok());

  pf.update_variables(LATEST, Values{4.0, 5.0, 6.0});
  EXPECT_EQ(x->value(LATEST), (Values{4.0, 5.0}));
  EXPECT_EQ(y->value(LATEST), Values{6.0});
  EXPECT_FALSE(pf.optimised_ok());
  EXPECT_THROW(pf.variable_values(OPTIMISED), std::runtime_error);

  pf.update_variables(OPTIMISED, Values{7.0, 8.0, 9.0});
  EXPECT_TRUE(pf.optimised_ok());
  EXPECT_EQ(pf.variable_values(OPTIMISED), (Values{7.0, 8.0, 9.0}));
  pf.update_variables(LATEST, Values{0.0, 0.0, 0.0});
  EXPECT_TRUE(pf.optimised_ok());

  // A wrong length changes nothing; the variables' own errors pass through.
  expect_throw_text<std::invalid_argument>(
      [&] {
        pf.update_variables(LATEST, Values{1.0, 1.0});
      },
      kWrongLength);
  expect_throw_text<std::invalid_argument>(
      [&] {
        pf.update_variables(STARTING, Values{1.0, 1.0, 1.0});
      },
      "FunctionVariable::update(VariableValue vv, const vector_double& v)): VariableValue value "
      "not recognised");
  EXPECT_EQ(pf.variable_values(LATEST), (Values{0.0, 0.0, 0.0}));
  EXPECT_EQ(pf.variable_values(STARTING), (Values{1.0, 2.0, 3.0}));

  // Changing the components forgets the optimised result.
  pf.add_component(term);
  EXPECT_FALSE(pf.optimised_ok());
  pf.set_optimised_ok(true);
  pf.set_components({term});
  EXPECT_FALSE(pf.optimised_ok());
}

TEST(PenaltyFunction, CopiesShareComponentsAndVariablesButNotTheirLists) {
  auto x = make_handle<FunctionVariable>(1.0);
  auto y = make_handle<FunctionVariable>(2.0);
  auto term = make_handle<SquaredDistanceTerm>(std::vector<VariableHandle>{x}, Values{0.0});
  PenaltyFunction source({term});
  source.set_optimised_ok(true);
  source.derivatives(LATEST);

  PenaltyFunction copy(source);
  PenaltyFunction assigned;
  assigned = source;
  for (auto* target : {&copy, &assigned}) {
    EXPECT_EQ(target->ncomponents(), 1);
    EXPECT_EQ(target->nominal_dimension(), 1);
    EXPECT_TRUE(target->optimised_ok());
    EXPECT_EQ((*target->components())[0], source.components()->front());
    EXPECT_NE(target->components().get(), source.components().get());
    EXPECT_NE(target->variables().get(), source.variables().get());
    EXPECT_NE(target->derivatives(LATEST).get(), source.derivatives(LATEST).get());
    target->add_component(
        make_handle<SquaredDistanceTerm>(std::vector<VariableHandle>{y}, Values{0.0}));
  }
  EXPECT_EQ(source.ncomponents(), 1);
  EXPECT_EQ(source.components()->size(), 1U);
  EXPECT_EQ(*source.variables(), std::vector<VariableHandle>{x});
  // The variables themselves are shared.
  copy.update_variables(LATEST, Values{5.0, 6.0});
  EXPECT_EQ(source.variable_values(LATEST), Values{5.0});
}

}  // namespace
}  // namespace structmath
