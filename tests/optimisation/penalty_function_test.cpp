// SPDX-License-Identifier: MIT
// Tests of FunctionComponent and PenaltyFunction: gathering, sums, gradients, write-back.
#include "structmath/optimisation/penalty_function.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "structmath/optimisation/function_component.hpp"
#include "support/optimisation_support.hpp"

namespace structmath {
namespace {

using namespace testing;
using Values = std::vector<double>;
using Variables = std::vector<THandle<FunctionVariable>>;

TEST(FunctionComponent, BaseKeepsOneVariableListAndAWeight) {
  auto a = make_handle<FunctionVariable>(1.0);
  ConstantTerm term(5.0);
  EXPECT_EQ(term.weight(), 1.0);
  EXPECT_FALSE(term.derivatives_available());
  auto const list = term.variables();
  term.add_variable(a);
  term.add_variable(a);
  EXPECT_EQ(term.nvariables(), 2);
  term.set_variables({});
  EXPECT_EQ(term.nvariables(), 0);
  EXPECT_EQ(term.variables(), list);  // the same list object, new contents
  EXPECT_TRUE(list->empty());
}

TEST(PenaltyFunction, GathersDistinctVariablesInFirstSeenOrder) {
  auto x = make_handle<FunctionVariable>(Values{1.0, 2.0});
  auto y = make_handle<FunctionVariable>(Point(3.0, 4.0, 5.0));
  auto z = make_handle<FunctionVariable>(6.0);
  // The first term lists x twice; the second shares x and brings y, the third z then y.
  auto first = make_handle<ConstantTerm>(1.0, Variables{x, x});
  auto second = make_handle<ConstantTerm>(1.0, Variables{y, x});
  PenaltyFunction pf({first, second});
  EXPECT_EQ(*pf.variables(), (Variables{x, y}));
  EXPECT_EQ(pf.nvariables(), 2);
  EXPECT_EQ(pf.variable_values(STARTING), (Values{1.0, 2.0, 3.0, 4.0, 5.0}));

  pf.add_component(make_handle<ConstantTerm>(1.0, Variables{z, y}));
  EXPECT_EQ(pf.ncomponents(), 3);
  EXPECT_EQ(*pf.variables(), (Variables{x, y, z}));
  EXPECT_EQ(pf.nominal_dimension(), 6);
  y->fix_to_starting(1);
  z->fix_to_starting();
  x->set_perturbation(1, 0.25);
  EXPECT_EQ(pf.fixed_variables(), (std::vector<bool>{false, false, false, true, false, true}));
  EXPECT_EQ(pf.perturbations(), (Values{1.0, 0.25, 1.0, 1.0, 1.0, 1.0}));
  EXPECT_EQ(pf.true_dimension(), 4);

  // Gathering afresh follows the new component order.
  pf.set_components({second, first});
  EXPECT_EQ(*pf.variables(), (Variables{y, x}));
  EXPECT_EQ(pf.nvariables(), 2);
  EXPECT_EQ(pf.nominal_dimension(), 5);
}

TEST(PenaltyFunction, FunctionValueIsTheWeightedSumAtTheRequestedValues) {
  auto x = make_handle<FunctionVariable>(Values{0.0, 0.0});
  auto y = make_handle<FunctionVariable>(0.0);
  auto three = make_handle<ConstantTerm>(3.0, Variables{x});
  auto four = make_handle<ConstantTerm>(4.0, Variables{x});
  three->set_weight(2.0);
  four->set_weight(0.5);
  EXPECT_EQ(PenaltyFunction({three, four}).function_value(LATEST), 8.0);
  // A vector is written into the trial values only.
  PenaltyFunction pf({make_handle<SquaredDistanceTerm>(Variables{x, y}, Values{1.0, 2.0, 3.0})});
  EXPECT_EQ(pf.function_value(LATEST), 14.0);
  EXPECT_EQ(pf.function_value(Values{1.0, 0.0, 5.0}), 8.0);
  EXPECT_EQ(pf.variable_values(TRIAL), (Values{1.0, 0.0, 5.0}));
  EXPECT_EQ(pf.variable_values(LATEST), (Values{0.0, 0.0, 0.0}));
}

TEST(PenaltyFunction, DerivativesFlagFollowsTheComponentsExceptAfterSetComponents) {
  auto x = make_handle<FunctionVariable>(0.0);
  auto smooth = make_handle<SquaredDistanceTerm>(Variables{x}, Values{1.0});
  auto flat = make_handle<ConstantTerm>(1.0, Variables{x});
  EXPECT_TRUE(PenaltyFunction().derivatives_available());
  EXPECT_TRUE(PenaltyFunction({smooth}).derivatives_available());
  EXPECT_FALSE(PenaltyFunction({smooth, flat}).derivatives_available());
  PenaltyFunction pf;
  pf.set_components({flat});
  EXPECT_TRUE(pf.derivatives_available());
  pf.add_component(flat);
  EXPECT_FALSE(pf.derivatives_available());
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
  auto on_x = make_handle<FirstOnlyTerm>(Variables{x, unreported, x}, Values(6, 0.0));
  auto on_y = make_handle<SquaredDistanceTerm>(Variables{y}, Values{1.0});
  on_x->set_weight(3.0);
  on_y->set_weight(0.5);
  PenaltyFunction pf({on_x, on_y});
  pf.add_component(on_y);
  auto const& gradient = pf.derivatives(LATEST);
  // x: 3 * 2 * (1, 2); nothing for the unreported variable; y: twice 0.5 * 2 * (3 - 1).
  EXPECT_EQ(*gradient, (Values{6.0, 12.0, 0.0, 0.0, 4.0}));
  // At a vector: the trial values are written and the same buffer is refilled.
  auto const& at_point = pf.derivatives(Values{0.0, 1.0, 5.0, 5.0, 1.0});
  EXPECT_EQ(at_point.get(), gradient.get());
  EXPECT_EQ(*at_point, (Values{0.0, 6.0, 0.0, 0.0, 0.0}));
}

TEST(PenaltyFunction, UpdateVariablesSplitsTheFlatVectorAndFlagsOptimisedResults) {
  auto x = make_handle<FunctionVariable>(Values{1.0, 2.0});
  auto y = make_handle<FunctionVariable>(3.0);
  auto term = make_handle<ConstantTerm>(0.0, Variables{x, y});
  PenaltyFunction pf({term});
  pf.update_variables(LATEST, Values{4.0, 5.0, 6.0});
  EXPECT_EQ(x->value(LATEST), (Values{4.0, 5.0}));
  EXPECT_EQ(y->value(LATEST), Values{6.0});
  EXPECT_FALSE(pf.optimised_ok());
  pf.update_variables(OPTIMISED, Values{7.0, 8.0, 9.0});
  pf.update_variables(LATEST, Values{0.0, 0.0, 0.0});
  EXPECT_TRUE(pf.optimised_ok());
  EXPECT_EQ(pf.variable_values(OPTIMISED), (Values{7.0, 8.0, 9.0}));
  // Changing the components forgets the optimised result.
  pf.add_component(term);
  EXPECT_FALSE(pf.optimised_ok());
  pf.set_optimised_ok(true);
  pf.set_components({term});
  EXPECT_FALSE(pf.optimised_ok());
}

TEST(PenaltyFunction, FailuresCarryTheirExactTextAndChangeNothing) {
  auto x = make_handle<FunctionVariable>(Values{1.0, 2.0});
  auto w = make_handle<FunctionVariable>(0.0);
  auto flat = make_handle<ConstantTerm>(1.0, Variables{w});
  PenaltyFunction pf({make_handle<SquaredDistanceTerm>(Variables{x}, Values{0.0, 0.0})});
  PenaltyFunction mixed({make_handle<SquaredDistanceTerm>(Variables{w}, Values{0.0}), flat});
  PenaltyFunction reset;
  reset.set_components({flat});  // the raised flag lets the call through to the term
  std::string const base = "FunctionComponent::derivatives(): Derivatives unavailable.";
  std::string const empty =
      "PenaltyFunction::function_value(VariableValue vv):function contains no components "
      "and/or variables";
  std::string const no_derivatives =
      "PenaltyFunction::derivatives(VariableValue vv):derivatives unavailable for this function";
  std::string const length =
      "PenaltyFunction::update_variables(const vector_double& v):vector of wrong length.";
  expect_failures({
      {[&] { flat->derivatives(LATEST); }, kRuntime, base},
      {[&] { reset.derivatives(LATEST); }, kRuntime, base},
      {[] { PenaltyFunction().function_value(LATEST); }, kRuntime, empty},
      {[] { PenaltyFunction({make_handle<ConstantTerm>(1.0)}).function_value(LATEST); }, kRuntime,
       empty},
      {[&] { mixed.derivatives(LATEST); }, kRuntime, no_derivatives},
      {[&] { mixed.derivatives(Values{0.0}); }, kRuntime, no_derivatives},
      {[&] { pf.update_variables(LATEST, Values{1.0}); }, kInvalid, length},
      {[&] {
         pf.function_value(Values{1.0, 1.0, 1.0});
       },
       kInvalid, length},
      {[&] { pf.derivatives(Values{1.0}); }, kInvalid, length},
      // The variables' own errors pass through.
      {[&] {
         pf.update_variables(STARTING, Values{1.0, 1.0});
       },
       kInvalid,
       "FunctionVariable::update(VariableValue vv, const vector_double& v)): VariableValue "
       "value not recognised"},
  });
  EXPECT_EQ(x->value(LATEST), (Values{1.0, 2.0}));
  EXPECT_TRUE(x->value(TRIAL).empty());
}

TEST(PenaltyFunction, CopiesShareComponentsAndVariablesButNotTheirLists) {
  auto x = make_handle<FunctionVariable>(1.0);
  auto y = make_handle<FunctionVariable>(2.0);
  PenaltyFunction source({make_handle<SquaredDistanceTerm>(Variables{x}, Values{0.0})});
  source.set_optimised_ok(true);
  PenaltyFunction copy(source);
  PenaltyFunction assigned;
  assigned = source;
  for (auto* target : {&copy, &assigned}) {
    EXPECT_TRUE(target->optimised_ok());
    EXPECT_EQ(*target->components(), *source.components());
    EXPECT_NE(target->derivatives(LATEST).get(), source.derivatives(LATEST).get());
    target->add_component(make_handle<SquaredDistanceTerm>(Variables{y}, Values{0.0}));
  }
  EXPECT_EQ(source.components()->size(), 1U);
  EXPECT_EQ(*source.variables(), Variables{x});
  EXPECT_EQ(source.nominal_dimension(), 1);
  // The variables themselves are shared.
  copy.update_variables(LATEST, Values{5.0, 6.0});
  EXPECT_EQ(x->value(LATEST), Values{5.0});
}

}  // namespace
}  // namespace structmath
