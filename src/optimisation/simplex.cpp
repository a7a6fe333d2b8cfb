// SPDX-License-Identifier: MIT
// Simplex: starting simplex, the reflect-expand-contract-shrink loop and write-back.
#include "structmath/optimisation/simplex.hpp"

#include <cmath>
#include <cstddef>
#include <stdexcept>

#include "structmath/optimisation/penalty_function.hpp"

namespace structmath {

Simplex::Simplex(int nrestart, int max_iterations, double fn_val_converge) : Simplex() {
  nrestart_ = nrestart;
  max_iterations_ = max_iterations;
  fn_val_converge_ = fn_val_converge;
}

Simplex& Simplex::operator=(Simplex const& other) {
  if (this == &other) return *this;
  // The base's limits and tolerances stay (see the header).
  nrestart_ = other.nrestart_;
  alpha_ = other.alpha_;
  beta_ = other.beta_;
  gamma_ = other.gamma_;
  delta_ = other.delta_;
  nominal_dimension_ = other.nominal_dimension_;
  true_dimension_ = other.true_dimension_;
  fixed_ = other.fixed_;
  perturbations_ = other.perturbations_;
  vertices_ = other.vertices_;
  best_vertex_ = other.best_vertex_;
  nevaluations_ = other.nevaluations_;
  values_ = other.values_;
  centroid_ = other.centroid_;
  reflected_ = other.reflected_;
  trial_ = other.trial_;
  return *this;
}

Simplex::~Simplex() = default;

void Simplex::set_simplex_parameters(double alpha, double beta, double gamma,
                                     double delta) noexcept {
  alpha_ = alpha;
  beta_ = beta;
  gamma_ = gamma;
  delta_ = delta;
}

bool Simplex::minimise(PenaltyFunction& pf, VariableValue vv) {
  if (static_cast<unsigned int>(vv) > static_cast<unsigned int>(LATEST)) {
    throw std::invalid_argument(
        "Simplex::minimise(PenaltyFunction& pf, VariableValue vv): Can only minimise from "
        "starting or latest variable values");
  }
  bool converged = false;
  for (int run = 0; run <= nrestart_; ++run) {
    setup_simplex(pf, vv);
    converged = minimise_simplex(pf, vv);
    send_results(pf, converged);
    vv = LATEST;  // each restart continues from the best point of the run before
  }
  return converged;
}

void Simplex::setup_simplex(PenaltyFunction const& pf, VariableValue vv) {
  nominal_dimension_ = pf.nominal_dimension();
  true_dimension_ = pf.true_dimension();
  fixed_ = pf.fixed_variables();
  perturbations_ = pf.perturbations();
  best_vertex_ = 0;

  vertices_.clear();
  vertices_.push_back(pf.variable_values(vv));
  // Vertex k moves along the k-th free dimension, by +p, -p, +p, ... in turn, so that the
  // starting simplex does not lean to one side of the start.
  double sign = +1.0;
  std::size_t i = 0;
  for (int k = 1; k <= true_dimension_; ++k) {
    vertices_.push_back(vertices_[0]);
    while (fixed_[i]) ++i;
    vertices_.back()[i] += sign * perturbations_[i];
    sign = -sign;
    ++i;
  }
}

double Simplex::evaluate(PenaltyFunction& pf, std::vector<double> const& x) {
  ++nevaluations_;
  return pf.function_value(x);
}

void Simplex::combine(double c_centroid, double c_from, std::vector<double> const& from,
                      std::vector<double>& to) const {
  auto const n = static_cast<std::size_t>(nominal_dimension_);
  to.resize(n);
  for (std::size_t j = 0; j < n; ++j) {
    to[j] = fixed_[j] ? vertices_[0][j] : c_centroid * centroid_[j] + c_from * from[j];
  }
}

bool Simplex::minimise_simplex(PenaltyFunction& pf, VariableValue) {
  auto const nvertices = vertices_.size();
  auto const n = static_cast<std::size_t>(nominal_dimension_);
  nevaluations_ = 0;
  niterations_ = 0;
  values_.resize(nvertices);
  for (std::size_t i = 0; i < nvertices; ++i) values_[i] = evaluate(pf, vertices_[i]);
  auto& y = values_;

  while (niterations_ <= max_iterations_) {
    if (nvertices < 2) {
      // A single vertex has nothing to be ordered against or moved towards.
      throw std::runtime_error(
          "Simplex::minimise_simplex(PenaltyFunction& pf, VariableValue vv): no free "
          "dimension to vary");
    }
    // Order: best lo, worst hi, next-worst nh; strict comparisons, ties keep the earlier.
    std::size_t lo = y[0] > y[1] ? 1 : 0;
    std::size_t hi = y[0] <= y[1] ? 1 : 0;
    std::size_t nh = lo;
    for (std::size_t i = 2; i < nvertices; ++i) {
      if (y[i] < y[lo]) lo = i;
      if (y[i] > y[nh]) nh = i;
      if (y[i] > y[hi]) {
        nh = hi;
        hi = i;
      }
    }
    best_vertex_ = static_cast<int>(lo);

    double t = std::fabs(y[hi]) + std::fabs(y[lo]);
    if (t > fn_val_converge_) t = 2.0 * std::fabs(y[hi] - y[lo]) / t;
    if (t < fn_val_converge_) return true;
    if (niterations_ == max_iterations_) return false;

    centroid_.assign(n, 0.0);
    for (std::size_t i = 0; i < nvertices; ++i) {
      if (i == hi) continue;
      for (std::size_t j = 0; j < n; ++j) centroid_[j] += vertices_[i][j];
    }
    for (std::size_t j = 0; j < n; ++j) centroid_[j] /= static_cast<double>(nvertices - 1);

    auto& worst = vertices_[hi];
    combine(1.0 + alpha_, -alpha_, worst, reflected_);
    double const y_reflected = evaluate(pf, reflected_);
    if (y_reflected <= y[lo]) {
      combine(1.0 - gamma_, gamma_, reflected_, trial_);
      double const y_expanded = evaluate(pf, trial_);
      if (y_expanded < y[lo]) {
        worst.swap(trial_);
        y[hi] = y_expanded;
      } else {
        worst.swap(reflected_);
        y[hi] = y_reflected;
      }
    } else if (y_reflected < y[nh]) {
      worst.swap(reflected_);
      y[hi] = y_reflected;
    } else {
      if (y_reflected < y[hi]) {
        worst.swap(reflected_);
        y[hi] = y_reflected;
      }
      combine(1.0 - beta_, beta_, worst, trial_);
      double const y_contracted = evaluate(pf, trial_);
      if (y_contracted < y[hi]) {
        worst.swap(trial_);
        y[hi] = y_contracted;
      } else {
        auto const& best = vertices_[lo];
        for (std::size_t i = 0; i < nvertices; ++i) {
          if (i == lo) continue;
          for (std::size_t j = 0; j < n; ++j) {
            if (!fixed_[j]) vertices_[i][j] = delta_ * (vertices_[i][j] + best[j]);
          }
          y[i] = evaluate(pf, vertices_[i]);
        }
      }
    }
    ++niterations_;
  }
  return false;
}

void Simplex::send_results(PenaltyFunction& pf, bool converged) const {
  auto const& best = vertices_.at(static_cast<std::size_t>(best_vertex_));
  pf.update_variables(LATEST, best);
  if (converged) pf.update_variables(OPTIMISED, best);
}

}  // namespace structmath
