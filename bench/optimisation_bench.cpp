// SPDX-License-Identifier: MIT
// Benchmarks of the simplex minimiser on Rosenbrock's valley and on a chain of valleys.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <iosfwd>
#include <vector>

#include "structmath/optimisation/penalty_function.hpp"
#include "structmath/optimisation/rosenbrock.hpp"
#include "structmath/optimisation/simplex.hpp"

namespace {

using structmath::FunctionComponent;
using structmath::FunctionVariable;
using structmath::make_handle;
using structmath::PenaltyFunction;
using structmath::Rosenbrock1;
using structmath::Rosenbrock2;
using structmath::Simplex;
using structmath::THandle;
using structmath::VariableValue;

// A zero term that counts the evaluations of the function it belongs to.
class EvaluationCounter : public FunctionComponent {
 public:
  double component_value(VariableValue) override {
    ++count;
    return 0.0;
  }
  void print(std::ostream&) const override {}
  void write(structmath::Archive&) const override {}
  void read(structmath::Archive&) override {}
  long count = 0;
};

// R (x - y^2)^2 + (1 - y)^2 from (-1.2, 1), on one 2-d variable or two scalar ones.
PenaltyFunction valley(bool split) {
  std::vector<THandle<FunctionComponent>> terms;
  if (split) {
    auto x = make_handle<FunctionVariable>(-1.2);
    auto y = make_handle<FunctionVariable>(1.0);
    auto steep = make_handle<Rosenbrock1>(x, y);
    steep->set_constants(100.0);
    terms = {steep, make_handle<Rosenbrock2>(y)};
  } else {
    auto xy = make_handle<FunctionVariable>(std::vector<double>{-1.2, 1.0});
    auto steep = make_handle<Rosenbrock1>();
    steep->add_variable(xy);
    steep->set_constants(100.0);
    terms = {steep, make_handle<Rosenbrock2>(xy)};
  }
  return PenaltyFunction(terms);
}

// The chained valley over n scalars: sum over i of R (x_i - x_{i+1}^2)^2 + (1 - x_{i+1})^2,
// minimum 0 at all ones; started from -1.2, 1, -1.2, 1, ...
PenaltyFunction chained_valley(int n) {
  std::vector<THandle<FunctionVariable>> x;
  for (int i = 0; i < n; ++i) x.push_back(make_handle<FunctionVariable>(i % 2 ? 1.0 : -1.2));
  std::vector<THandle<FunctionComponent>> terms;
  for (std::size_t i = 0; i + 1 < x.size(); ++i) {
    auto steep = make_handle<Rosenbrock1>(x[i], x[i + 1]);
    steep->set_constants(100.0);
    terms.push_back(steep);
    terms.push_back(make_handle<Rosenbrock2>(x[i + 1]));
  }
  return PenaltyFunction(terms);
}

// Times full minimisations from the starting values; reports the evaluations per
// minimisation (counted once, outside the timed loop) and the evaluation rate.
void run_minimisation(benchmark::State& state, PenaltyFunction pf, Simplex simplex) {
  PenaltyFunction counted(pf);
  auto counter = make_handle<EvaluationCounter>();
  counted.add_component(counter);
  bool const converged = simplex.minimise(counted, structmath::STARTING);
  double const final_value = pf.function_value(structmath::LATEST);

  for (auto _ : state) {
    benchmark::DoNotOptimize(simplex.minimise(pf, structmath::STARTING));
  }
  auto const evaluations = static_cast<double>(counter->count);
  state.counters["evaluations"] = evaluations;
  state.counters["converged"] = converged ? 1.0 : 0.0;
  state.counters["final_f"] = final_value;
  state.counters["evals_per_s"] = benchmark::Counter(
      evaluations * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

void BM_SimplexValleyOneVariable(benchmark::State& state) {
  run_minimisation(state, valley(false), Simplex());
}
BENCHMARK(BM_SimplexValleyOneVariable);

void BM_SimplexValleyTwoVariables(benchmark::State& state) {
  run_minimisation(state, valley(true), Simplex());
}
BENCHMARK(BM_SimplexValleyTwoVariables);

void BM_SimplexValleyOneRun(benchmark::State& state) {
  run_minimisation(state, valley(false), Simplex(0, 1000, 1e-9));
}
BENCHMARK(BM_SimplexValleyOneRun);

void BM_SimplexChainedValley(benchmark::State& state) {
  int const n = static_cast<int>(state.range(0));
  run_minimisation(state, chained_valley(n), Simplex(2, 200 * n * n, 1e-9));
}
BENCHMARK(BM_SimplexChainedValley)->Arg(4)->Arg(8)->Unit(benchmark::kMillisecond);

// One evaluation at a trial point: writing the point into the variables and summing.
void BM_PenaltyFunctionValue(benchmark::State& state) {
  auto pf = chained_valley(static_cast<int>(state.range(0)));
  std::vector<double> x(static_cast<std::size_t>(pf.nominal_dimension()), 0.9);
  for (auto _ : state) {
    x[0] += 1e-12;
    benchmark::DoNotOptimize(pf.function_value(x));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PenaltyFunctionValue)->Arg(2)->Arg(8);

}  // namespace
