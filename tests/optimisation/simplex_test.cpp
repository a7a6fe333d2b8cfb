// SPDX-License-Identifier: MIT
// Tests of the simplex minimiser: settings, starting simplex, convergence, fixed dimensions.
#include "structmath/optimisation/simplex.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <stdexcept>
#include <vector>

#include "structmath/optimisation/penalty_function.hpp"
#include "structmath/optimisation/rosenbrock.hpp"
#include "support/optimisation_support.hpp"

namespace structmath {
namespace {

using testing::ConstantTerm;
using testing::expect_throw_text;
using testing::SquaredDistanceTerm;
using Values = std::vector<double>;
using VariableHandle = THandle<FunctionVariable>;

TEST(Simplex, DefaultsSettersAndCopies) {
  Simplex simplex;
  EXPECT_EQ(simplex.max_iterations(), 1000);
  EXPECT_EQ(simplex.fn_val_converge(), 1e-9);
  EXPECT_EQ(simplex.grad_converge(), 1e-6);
  EXPECT_EQ(simplex.nrestart(), 2);
  EXPECT_EQ(simplex.alpha(), 1.0);
  EXPECT_EQ(simplex.beta(), 0.5);
  EXPECT_EQ(simplex.gamma(), 2.0);
  EXPECT_EQ(simplex.delta(), 0.5);

  Simplex configured(5, 40, 1e-4);
  EXPECT_EQ(configured.nrestart(), 5);
  EXPECT_EQ(configured.max_iterations(), 40);
  EXPECT_EQ(configured.fn_val_converge(), 1e-4);
  EXPECT_EQ(configured.grad_converge(), 1e-6);
  configured.set_simplex_parameters(1.5, 0.25, 3.0, 0.75);
  configured.set_grad_converge(1e-3);
  EXPECT_EQ(configured.alpha(), 1.5);
  EXPECT_EQ(configured.beta(), 0.25);
  EXPECT_EQ(configured.gamma(), 3.0);
  EXPECT_EQ(configured.delta(), 0.75);

  Simplex copy(configured);
  EXPECT_EQ(copy.max_iterations(), 40);
  EXPECT_EQ(copy.grad_converge(), 1e-3);
  EXPECT_EQ(copy.gamma(), 3.0);

  // Assignment takes the simplex settings but leaves the limits and tolerances.
  Simplex assigned;
  assigned = configured;
  EXPECT_EQ(assigned.nrestart(), 5);
  EXPECT_EQ(assigned.beta(), 0.25);
  EXPECT_EQ(assigned.max_iterations(), 1000);
  EXPECT_EQ(assigned.fn_val_converge(), 1e-9);
  EXPECT_EQ(assigned.grad_converge(), 1e-6);
}

TEST(Simplex, MinimisesOnlyFromStartingOrLatestValues) {
  auto x = make_handle<FunctionVariable>(0.0);
  auto counter = make_handle<ConstantTerm>(0.0, std::vector<VariableHandle>{x});
  PenaltyFunction pf({counter});
  Simplex simplex;
  for (auto bad : {OPTIMISED, TRIAL, static_cast<VariableValue>(-1)}) {
    expect_throw_text<std::invalid_argument>(
        [&] { simplex.minimise(pf, bad); },
        "Simplex::minimise(PenaltyFunction& pf, VariableValue vv): Can only minimise from "
        "starting or latest variable values");
  }
  EXPECT_EQ(counter->evaluations, 0);
}

TEST(Simplex, StartingSimplexStepsAlongFreeDimensionsWithAlternatingSigns) {
  auto v = make_handle<FunctionVariable>(Values{1.0, 2.0, 3.0});
  PenaltyFunction pf({make_handle<ConstantTerm>(0.0, std::vector<VariableHandle>{v})});
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
  pf.add_component(make_handle<ConstantTerm>(0.0, std::vector<VariableHandle>{w}));
  simplex.setup_simplex(pf, LATEST);
  EXPECT_EQ(simplex.vertices(), (std::vector<Values>{{7.0, 8.0, 9.0, 0.0, 0.0},
                                                     {7.0, 8.5, 9.0, 0.0, 0.0},
                                                     {7.0, 8.0, 8.5, 0.0, 0.0},
                                                     {7.0, 8.0, 9.0, 0.0, 0.25}}));
}

// Minimises the valley from (-1.2, 1) and checks the optimum is written back.
void expect_valley_minimised(PenaltyFunction& pf, ConstantTerm const& counter, char const* layout) {
  Simplex single(0, 1000, 1e-9);
  bool const single_converged = single.minimise(pf, STARTING);
  std::cout << "[ valley   ] " << layout << ", one run: converged " << single_converged << " in "
            << single.niterations() << " iterations, " << single.nevaluations()
            << " evaluations, at (" << pf.variable_values(LATEST)[0] << ", "
            << pf.variable_values(LATEST)[1] << ")\n";
  EXPECT_EQ(counter.evaluations, single.nevaluations());

  Simplex simplex;
  long const before = counter.evaluations;
  ASSERT_TRUE(simplex.minimise(pf, STARTING));
  auto const optimum = pf.variable_values(OPTIMISED);
  std::cout << "[ valley   ] " << layout << ", three runs: " << counter.evaluations - before
            << " evaluations, last run " << simplex.niterations() << " iterations, at ("
            << optimum[0] << ", " << optimum[1] << ")\n";
  EXPECT_TRUE(pf.optimised_ok());
  EXPECT_NEAR(optimum[0], 1.0, 1e-4);
  EXPECT_NEAR(optimum[1], 1.0, 1e-4);
  EXPECT_EQ(optimum, pf.variable_values(LATEST));
  EXPECT_EQ(optimum, simplex.vertices()[static_cast<std::size_t>(simplex.best_vertex())]);
  EXPECT_EQ(pf.variable_values(STARTING), (Values{-1.2, 1.0}));
}

TEST(Simplex, FindsTheRosenbrockMinimumWithOneSharedVariable) {
  auto xy = make_handle<FunctionVariable>(Values{-1.2, 1.0});
  auto steep = make_handle<Rosenbrock1>();
  steep->add_variable(xy);
  steep->set_constants(100.0);
  auto counter = make_handle<ConstantTerm>(0.0);
  PenaltyFunction pf({steep, make_handle<Rosenbrock2>(xy), counter});
  expect_valley_minimised(pf, *counter, "one 2-d variable");
}

TEST(Simplex, FindsTheRosenbrockMinimumWithTwoScalarVariables) {
  auto x = make_handle<FunctionVariable>(-1.2);
  auto y = make_handle<FunctionVariable>(1.0);
  auto steep = make_handle<Rosenbrock1>(x, y);
  steep->set_constants(Values{100.0}, "Rcoeff");
  auto counter = make_handle<ConstantTerm>(0.0);
  PenaltyFunction pf({steep, make_handle<Rosenbrock2>(y), counter});
  expect_valley_minimised(pf, *counter, "two scalar variables");
  EXPECT_NEAR(x->double_value(OPTIMISED), 1.0, 1e-4);
  EXPECT_NEAR(y->double_value(OPTIMISED), 1.0, 1e-4);
}

TEST(Simplex, FixedDimensionsStayFixedWhereverTheyLie) {
  // Fixed dimensions before, between and after free ones, across two variables.
  auto a = make_handle<FunctionVariable>(Values{5.0, 0.0, 0.0});
  auto b = make_handle<FunctionVariable>(Values{0.0, -3.0, 0.0});
  a->fix_to_starting(0);
  b->fix_to_starting(1);
  b->set_perturbation(0.5);
  auto term = make_handle<SquaredDistanceTerm>(std::vector<VariableHandle>{a, b},
                                               Values{1.0, 2.0, -1.0, 0.5, 4.0, 3.0});
  PenaltyFunction pf({term});
  ASSERT_EQ(pf.true_dimension(), 4);
  // The fixed dimensions keep the minimum at 65, so the relative stopping rule needs a
  // tighter tolerance to place the free ones within 1e-4.
  Simplex simplex(2, 5000, 1e-12);
  ASSERT_TRUE(simplex.minimise(pf, STARTING));
  auto const optimum = pf.variable_values(OPTIMISED);
  EXPECT_EQ(optimum[0], 5.0);
  EXPECT_EQ(optimum[4], -3.0);
  Values const free_targets = {2.0, -1.0, 0.5, 3.0};
  std::size_t const free_places[] = {1, 2, 3, 5};
  for (std::size_t k = 0; k < 4; ++k) {
    EXPECT_NEAR(optimum[free_places[k]], free_targets[k], 1e-4) << "dimension " << free_places[k];
  }
  for (auto const& vertex : simplex.vertices()) {
    EXPECT_EQ(vertex[0], 5.0);
    EXPECT_EQ(vertex[4], -3.0);
  }
}

TEST(Simplex, TinyIterationLimitMovesLatestButNotOptimised) {
  auto x = make_handle<FunctionVariable>(-1.2);
  auto y = make_handle<FunctionVariable>(1.0);
  auto steep = make_handle<Rosenbrock1>(x, y);
  steep->set_constants(100.0);
  PenaltyFunction pf({steep, make_handle<Rosenbrock2>(y)});
  Simplex simplex(2, 3, 1e-9);
  EXPECT_FALSE(simplex.minimise(pf, STARTING));
  EXPECT_EQ(simplex.niterations(), 3);
  EXPECT_FALSE(pf.optimised_ok());
  EXPECT_THROW(x->value(OPTIMISED), std::runtime_error);
  EXPECT_NE(pf.variable_values(LATEST), pf.variable_values(STARTING));
  EXPECT_LT(pf.function_value(LATEST), 484.0);
  EXPECT_EQ(pf.variable_values(LATEST),
            simplex.vertices()[static_cast<std::size_t>(simplex.best_vertex())]);
}

TEST(Simplex, ZeroIterationsOnlyEvaluateTheStartingSimplex) {
  auto v = make_handle<FunctionVariable>(Values{0.0, 0.0});
  auto term = make_handle<SquaredDistanceTerm>(std::vector<VariableHandle>{v}, Values{2.0, -3.0});
  PenaltyFunction pf({term});
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
  pf.update_variables(LATEST, Values{0.0, -1.0});

  // A function that is zero everywhere converges before any step.
  PenaltyFunction zero({make_handle<ConstantTerm>(0.0, std::vector<VariableHandle>{v})});
  EXPECT_TRUE(simplex.minimise(zero, LATEST));
  EXPECT_EQ(v->value(OPTIMISED), (Values{0.0, -1.0}));

  // A flat non-zero function converges too; on the tie the first vertex is best.
  PenaltyFunction flat({make_handle<ConstantTerm>(5.0, std::vector<VariableHandle>{v})});
  Simplex fresh;
  EXPECT_TRUE(fresh.minimise(flat, STARTING));
  EXPECT_EQ(fresh.best_vertex(), 0);
  EXPECT_EQ(v->value(OPTIMISED), (Values{0.0, 0.0}));
}

TEST(Simplex, RestartsContinueFromTheLatestValues) {
  auto make = [](VariableHandle const& v) {
    auto steep = make_handle<Rosenbrock1>();
    steep->add_variable(v);
    steep->set_constants(100.0);
    return PenaltyFunction({steep, make_handle<Rosenbrock2>(v)});
  };
  auto restarted = make_handle<FunctionVariable>(Values{-1.2, 1.0});
  auto stepwise = make_handle<FunctionVariable>(Values{-1.2, 1.0});
  auto pf_restarted = make(restarted);
  auto pf_stepwise = make(stepwise);

  Simplex(2, 20, 1e-9).minimise(pf_restarted, STARTING);
  Simplex one_run(0, 20, 1e-9);
  one_run.minimise(pf_stepwise, STARTING);
  auto const after_one = stepwise->value(LATEST);
  one_run.minimise(pf_stepwise, LATEST);
  one_run.minimise(pf_stepwise, LATEST);
  EXPECT_NE(stepwise->value(LATEST), after_one);
  EXPECT_EQ(restarted->value(LATEST), stepwise->value(LATEST));

  // A negative count makes no run at all.
  auto counter = make_handle<ConstantTerm>(0.0, std::vector<VariableHandle>{restarted});
  PenaltyFunction counted({counter});
  EXPECT_FALSE(Simplex(-1, 20, 1e-9).minimise(counted, STARTING));
  EXPECT_EQ(counter->evaluations, 0);
}

TEST(Simplex, NeedsAFreeDimensionAndPassesFunctionErrorsThrough) {
  auto v = make_handle<FunctionVariable>(Values{1.0, 2.0});
  v->fix_to_starting();
  PenaltyFunction fixed({make_handle<ConstantTerm>(1.0, std::vector<VariableHandle>{v})});
  Simplex simplex;
  expect_throw_text<std::runtime_error>(
      [&] { simplex.minimise(fixed, STARTING); },
      "Simplex::minimise_simplex(PenaltyFunction& pf, VariableValue vv): no free dimension to "
      "vary");
  EXPECT_THROW(simplex.minimise_simplex(fixed, STARTING), std::runtime_error);

  PenaltyFunction empty;
  expect_throw_text<std::runtime_error>(
      [&] { simplex.minimise(empty, STARTING); },
      "PenaltyFunction::function_value(VariableValue vv):function contains no components "
      "and/or variables");
}

}  // namespace
}  // namespace structmath
