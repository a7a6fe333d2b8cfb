// SPDX-License-Identifier: MIT
// Simplex runs as known-answer cases describe them: the problem, the settings, the outcome.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "structmath/optimisation/simplex.hpp"
#include "support/known_answers.hpp"
#include "support/optimisation_support.hpp"

namespace structmath::testing {

/// The penalty function of a case, with a zero ConstantTerm appended to count the
/// evaluations of every run.
///
/// "problem valley_shared" or "valley_split": Rosenbrock's valley in that layout, from
/// "start x y" with "r R". "problem quadratic": a SquaredDistanceTerm over variables of
/// "dims" dimensions each, with flat "start", "fixed" (0 or 1), "perturbation" and
/// "target". An optional "from_latest" sets the LATEST values, and the run starts from them.
struct SimplexProblem {
  PenaltyFunction pf;
  THandle<ConstantTerm> counter;
  VariableValue from = STARTING;
};

inline SimplexProblem simplex_problem(AnswerCase const& c) {
  SimplexProblem problem;
  std::string const kind = c.text("problem").at(0);
  if (kind == "quadratic") {
    std::vector<double> const start = c.doubles("start");
    std::vector<int> const fixed = c.ints("fixed");
    std::vector<double> const perturbation = c.doubles("perturbation");
    std::vector<THandle<FunctionVariable>> variables;
    std::size_t k = 0;
    for (int n : c.ints("dims")) {
      std::vector<double> const part(start.begin() + static_cast<std::ptrdiff_t>(k),
                                     start.begin() + static_cast<std::ptrdiff_t>(k) + n);
      auto v = make_handle<FunctionVariable>(part);
      for (int i = 0; i < n; ++i, ++k) {
        v->set_perturbation(i, perturbation.at(k));
        if (fixed.at(k) != 0) v->fix_to_starting(i);
      }
      variables.push_back(v);
    }
    problem.pf.add_component(make_handle<SquaredDistanceTerm>(variables, c.doubles("target")));
  } else {
    std::vector<double> const start = c.doubles("start");
    double const r = c.number("r");
    if (kind == "valley_shared") {
      problem.pf = shared_valley(start.at(0), start.at(1), r).pf;
    } else if (kind == "valley_split") {
      problem.pf = split_valley(start.at(0), start.at(1), r).pf;
    } else {
      throw std::runtime_error("case " + c.name + ": unknown problem " + kind);
    }
  }
  problem.counter = make_handle<ConstantTerm>(0.0);
  problem.pf.add_component(problem.counter);
  if (c.has("from_latest")) {
    problem.pf.update_variables(LATEST, c.doubles("from_latest"));
    problem.from = LATEST;
  }
  return problem;
}

/// A Simplex with the case's "restarts", "max_iterations", "tolerance" and
/// "coefficients" (alpha, beta, gamma, delta).
inline Simplex configured_simplex(AnswerCase const& c) {
  Simplex simplex(c.integer("restarts"), c.integer("max_iterations"), c.number("tolerance"));
  std::vector<double> const k = c.doubles("coefficients");
  simplex.set_simplex_parameters(k.at(0), k.at(1), k.at(2), k.at(3));
  return simplex;
}

/// What a minimisation leaves behind, from the penalty function and the minimiser's
/// last run: converged, iterations and evaluations of that run, evaluations of all runs,
/// the best vertex, the vertices (flat), LATEST and OPTIMISED ("unavailable" when unset).
inline AnswerFields simplex_outcome(bool converged, int iterations, int evaluations,
                                    int best_vertex,
                                    std::vector<std::vector<double>> const& vertices,
                                    SimplexProblem const& problem) {
  std::vector<double> flat;
  for (auto const& vertex : vertices) flat.insert(flat.end(), vertex.begin(), vertex.end());
  AnswerFields out;
  out.add("converged", converged)
      .add("iterations", iterations)
      .add("evaluations", evaluations)
      .add("all_evaluations", static_cast<int>(problem.counter->evaluations))
      .add("best_vertex", best_vertex)
      .add("vertices", flat)
      .add("latest", problem.pf.variable_values(LATEST));
  if (problem.pf.optimised_ok()) {
    out.add("optimised", problem.pf.variable_values(OPTIMISED));
  } else {
    out.add("optimised", std::vector<std::string>{"unavailable"});
  }
  return out;
}

/// Minimises the case's problem with the library's Simplex.
inline AnswerFields library_simplex_outcome(AnswerCase const& c) {
  SimplexProblem problem = simplex_problem(c);
  Simplex simplex = configured_simplex(c);
  bool const converged = simplex.minimise(problem.pf, problem.from);
  return simplex_outcome(converged, simplex.niterations(), simplex.nevaluations(),
                         simplex.best_vertex(), simplex.vertices(), problem);
}

}  // namespace structmath::testing
