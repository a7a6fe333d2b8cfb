// SPDX-License-Identifier: MIT
// Tests of the simplex minimiser: settings, starting simplex, convergence, fixed dimensions.
#include "structmath/optimisation/simplex.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <iostream>
#include <stdexcept>
#include <vector>

#include "structmath/optimisation/penalty_function.hpp"
#include "support/optimisation_support.hpp"

namespace structmath {
namespace {

using namespace testing;
using Values = std::vector<double>;
using Variables = std::vector<THandle<FunctionVariable>>;

// nrestart, max_iterations, fn_val_converge, grad_converge, alpha, beta, gamma, delta.
Values settings(Simplex const& s) {
  Values v = {s.fn_val_converge(), s.grad_converge(), s.alpha(), s.beta(), s.gamma(), s.delta()};
  v.insert(v.begin(), {double(s.nrestart()), double(s.max_iterations())});
  return v;
}

Values const& best(Simplex const& s) {
  return s.vertices()[static_cast<std::size_t>(s.best_vertex())];
}

TEST(Simplex, DefaultsSettersAndCopies) {
  EXPECT_EQ(settings(Simplex()), (Values{2, 1000, 1e-9, 1e-6, 1.0, 0.5, 2.0, 0.5}));
  Simplex configured(5, 40, 1e-4);
  EXPECT_EQ(settings(configured), (Values{5, 40, 1e-4, 1e-6, 1.0, 0.5, 2.0, 0.5}));
  configured.set_simplex_parameters(1.5, 0.25, 3.0, 0.75);
  configured.set_grad_converge(1e-3);
  EXPECT_EQ(settings(Simplex(configured)), (Values{5, 40, 1e-4, 1e-3, 1.5, 0.25, 3.0, 0.75}));
  // Assignment takes the simplex settings but leaves the limits and tolerances.
  Simplex assigned;
  assigned = configured;
  EXPECT_EQ(settings(assigned), (Values{5, 1000, 1e-9, 1e-6, 1.5, 0.25, 3.0, 0.75}));
}

TEST(Simplex, StartingSimplexStepsAlongFreeDimensionsWithAlternatingSigns) {
  auto v = make_handle<FunctionVariable>(Values{1.0, 2.0, 3.0});
  PenaltyFunction pf({make_handle<ConstantTerm>(0.0, Variables{v})});
  Simplex simplex;
  simplex.setup_simplex(pf, STARTING);
  EXPECT_EQ(
      simplex.vertices(),
      (std::vector<Values>{{1.0, 2.0, 3.0}, {2.0, 2.0, 3.0}, {1.0, 1.0, 3.0}, {1.0, 2.0, 4.0}}));

  // Fixed dimensions are skipped; each free one steps by its own perturbation.
  auto w = make_handle<FunctionVariable>(Values{0.0, 0.0});
  v->fix_to_starting(0);
  v->set_perturbation(0.5);
  w->set_perturbation(1, 0.25);
  w->fix_to_starting(0);
  v->update(LATEST, Values{7.0, 8.0, 9.0});
  pf.add_component(make_handle<ConstantTerm>(0.0, Variables{w}));
  simplex.setup_simplex(pf, LATEST);
  EXPECT_EQ(simplex.vertices(), (std::vector<Values>{{7.0, 8.0, 9.0, 0.0, 0.0},
                                                     {7.0, 8.5, 9.0, 0.0, 0.0},
                                                     {7.0, 8.0, 8.5, 0.0, 0.0},
                                                     {7.0, 8.0, 9.0, 0.0, 0.25}}));
}

TEST(Simplex, FindsTheRosenbrockMinimumInBothLayouts) {
  for (auto* make : {&shared_valley, &split_valley}) {
    auto valley = make(-1.2, 1.0, 100.0);
    auto counter = make_handle<ConstantTerm>(0.0);
    valley.pf.add_component(counter);
    Simplex single(0, 1000, 1e-9);
    single.minimise(valley.pf, STARTING);
    EXPECT_EQ(counter->evaluations, single.nevaluations());

    Simplex simplex;
    ASSERT_TRUE(simplex.minimise(valley.pf, STARTING));
    auto const optimum = valley.pf.variable_values(OPTIMISED);
    std::cout << "[ valley   ] " << valley.pf.nvariables() << " variable(s): one run "
              << single.niterations() << " iterations, " << single.nevaluations()
              << " evaluations; three runs " << counter->evaluations - single.nevaluations()
              << " evaluations, at (" << optimum[0] << ", " << optimum[1] << ")\n";
    EXPECT_TRUE(valley.pf.optimised_ok());
    EXPECT_NEAR(optimum[0], 1.0, 1e-4);
    EXPECT_NEAR(optimum[1], 1.0, 1e-4);
    EXPECT_EQ(optimum, valley.pf.variable_values(LATEST));
    EXPECT_EQ(optimum, best(simplex));
    EXPECT_EQ(valley.pf.variable_values(STARTING), (Values{-1.2, 1.0}));
  }
}

TEST(Simplex, FixedDimensionsStayFixedWhereverTheyLie) {
  // Fixed dimensions before, between and after free ones, across two variables.
  auto a = make_handle<FunctionVariable>(Values{5.0, 0.0, 0.0});
  auto b = make_handle<FunctionVariable>(Values{0.0, -3.0, 0.0});
  a->fix_to_starting(0);
  b->fix_to_starting(1);
  b->set_perturbation(0.5);
  PenaltyFunction pf(
      {make_handle<SquaredDistanceTerm>(Variables{a, b}, Values{1.0, 2.0, -1.0, 0.5, 4.0, 3.0})});
  // The fixed dimensions keep the minimum at 65, so the relative stopping rule needs a
  // tighter tolerance to place the free ones within 1e-4.
  Simplex simplex(2, 5000, 1e-12);
  ASSERT_TRUE(simplex.minimise(pf, STARTING));
  auto const optimum = pf.variable_values(OPTIMISED);
  Values const expected = {5.0, 2.0, -1.0, 0.5, -3.0, 3.0};
  for (std::size_t j = 0; j < expected.size(); ++j) {
    EXPECT_NEAR(optimum[j], expected[j], 1e-4) << "dimension " << j;
  }
  for (auto const& vertex : simplex.vertices()) EXPECT_TRUE(vertex[0] == 5.0 && vertex[4] == -3.0);
}

TEST(Simplex, TinyIterationLimitMovesLatestButNotOptimised) {
  auto valley = split_valley(-1.2, 1.0);
  Simplex simplex(2, 3, 1e-9);
  EXPECT_FALSE(simplex.minimise(valley.pf, STARTING));
  EXPECT_EQ(simplex.niterations(), 3);
  EXPECT_FALSE(valley.pf.optimised_ok());
  EXPECT_THROW(valley.pf.variable_values(OPTIMISED), std::runtime_error);
  EXPECT_LT(valley.pf.function_value(LATEST), 484.0);
  EXPECT_EQ(valley.pf.variable_values(LATEST), best(simplex));
}

TEST(Simplex, IterationLimitsOfZeroAndBelowTakeNoStep) {
  auto v = make_handle<FunctionVariable>(Values{0.0, 0.0});
  PenaltyFunction pf({make_handle<SquaredDistanceTerm>(Variables{v}, Values{2.0, -3.0})});
  Simplex simplex(0, 0, 1e-9);
  EXPECT_FALSE(simplex.minimise(pf, STARTING));
  EXPECT_EQ(simplex.niterations(), 0);
  EXPECT_EQ(simplex.nevaluations(), 3);
  // The best vertex of (0, 0), (1, 0), (0, -1) is written back.
  EXPECT_EQ(pf.variable_values(LATEST), (Values{0.0, -1.0}));
  EXPECT_FALSE(pf.optimised_ok());
  // A negative limit takes no ordering step either: the start is written back.
  Simplex no_steps(0, -1, 1e-9);
  EXPECT_FALSE(no_steps.minimise(pf, STARTING));
  EXPECT_EQ(no_steps.nevaluations(), 3);
  EXPECT_EQ(pf.variable_values(LATEST), (Values{0.0, 0.0}));

  // A function that is zero everywhere converges before any step.
  pf.update_variables(LATEST, Values{0.0, -1.0});
  PenaltyFunction zero({make_handle<ConstantTerm>(0.0, Variables{v})});
  EXPECT_TRUE(simplex.minimise(zero, LATEST));
  EXPECT_EQ(v->value(OPTIMISED), (Values{0.0, -1.0}));
  // A flat non-zero function converges too; on the tie the first vertex is best.
  PenaltyFunction flat({make_handle<ConstantTerm>(5.0, Variables{v})});
  Simplex fresh;
  EXPECT_TRUE(fresh.minimise(flat, STARTING));
  EXPECT_EQ(fresh.best_vertex(), 0);
  EXPECT_EQ(v->value(OPTIMISED), (Values{0.0, 0.0}));
}

TEST(Simplex, RestartsContinueFromTheLatestValues) {
  auto restarted = shared_valley(-1.2, 1.0);
  auto stepwise = shared_valley(-1.2, 1.0);
  Simplex(2, 20, 1e-9).minimise(restarted.pf, STARTING);
  Simplex one_run(0, 20, 1e-9);
  one_run.minimise(stepwise.pf, STARTING);
  auto const after_one = stepwise.pf.variable_values(LATEST);
  one_run.minimise(stepwise.pf, LATEST);
  one_run.minimise(stepwise.pf, LATEST);
  EXPECT_NE(stepwise.pf.variable_values(LATEST), after_one);
  EXPECT_EQ(restarted.pf.variable_values(LATEST), stepwise.pf.variable_values(LATEST));
}

TEST(Simplex, FailuresCarryTheirExactTextAndEvaluateNothing) {
  auto v = make_handle<FunctionVariable>(Values{1.0, 2.0});
  auto counter = make_handle<ConstantTerm>(0.0, Variables{v});
  PenaltyFunction pf({counter});
  auto held = make_handle<FunctionVariable>(Values{1.0, 2.0});
  held->fix_to_starting();
  PenaltyFunction fixed({make_handle<ConstantTerm>(1.0, Variables{held})});
  Simplex simplex;
  std::string const bad_start =
      "Simplex::minimise(PenaltyFunction& pf, VariableValue vv): Can only minimise from "
      "starting or latest variable values";
  expect_failures({
      {[&] { simplex.minimise(pf, OPTIMISED); }, kInvalid, bad_start},
      {[&] { simplex.minimise(pf, TRIAL); }, kInvalid, bad_start},
      {[&] { simplex.minimise(pf, static_cast<VariableValue>(-1)); }, kInvalid, bad_start},
      {[&] { simplex.minimise(fixed, STARTING); }, kRuntime,
       "Simplex::minimise_simplex(PenaltyFunction& pf, VariableValue vv): no free dimension to "
       "vary"},
      // The penalty function's own errors pass through.
      {[&] {
         PenaltyFunction empty;
         simplex.minimise(empty, STARTING);
       },
       kRuntime,
       "PenaltyFunction::function_value(VariableValue vv):function contains no components "
       "and/or variables"},
  });
  // A negative restart count makes no run at all.
  EXPECT_FALSE(Simplex(-1, 20, 1e-9).minimise(pf, STARTING));
  EXPECT_EQ(counter->evaluations, 0);
}

TEST(Simplex, ANegativeIterationLimitRunsNoIterationEvenWithNothingFree) {
  // Every dimension fixed: nothing to vary, but no iteration is asked for either, so
  // the run evaluates its single vertex, returns false and writes the start to LATEST.
  auto held = make_handle<FunctionVariable>(Values{1.0, 2.0});
  held->fix_to_starting();
  auto counter = make_handle<ConstantTerm>(3.0, Variables{held});
  PenaltyFunction fixed({counter});
  fixed.update_variables(LATEST, {5.0, 6.0});
  Simplex simplex(1, -1, 1e-9);
  EXPECT_FALSE(simplex.minimise(fixed, STARTING));
  EXPECT_EQ(fixed.variable_values(LATEST), (Values{1.0, 2.0}));
  EXPECT_EQ(simplex.niterations(), 0);
  EXPECT_EQ(counter->evaluations, 2);  // one vertex per run, two runs
  EXPECT_FALSE(fixed.optimised_ok());
}

}  // namespace
}  // namespace structmath
