// SPDX-License-Identifier: MIT
// Writes the simplex known answers (tests/data/optimisation/simplex_trajectories.txt) to
// stdout: seeded problems and settings, and what each minimisation left. Every case is
// run twice, by the library and by a step-by-step transcription of the method below; the
// program writes nothing and exits 1 if the two differ in any bit.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "optimisation/simplex_answers.hpp"

namespace structmath::testing {
namespace {

using Values = std::vector<double>;

/// The downhill simplex written out step by step: the ordering, stopping rule, reflection,
/// expansion, contraction and shrink in plain loops, sharing nothing with the library's
/// implementation but the penalty function.
class PlainSimplex {
 public:
  explicit PlainSimplex(AnswerCase const& c)
      : nrestart_(c.integer("restarts")),
        max_iterations_(c.integer("max_iterations")),
        tolerance_(c.number("tolerance")),
        k_(c.doubles("coefficients")) {}

  bool minimise(PenaltyFunction& pf, VariableValue vv) {
    bool result = false;
    for (int r = 0; r <= nrestart_; ++r) {
      setup(pf, vv);
      result = run(pf);
      pf.update_variables(LATEST, vertex_[best_]);
      if (result) pf.update_variables(OPTIMISED, vertex_[best_]);
      vv = LATEST;
    }
    return result;
  }

  int niterations = 0;
  int nevaluations = 0;
  std::vector<Values> const& vertices() const { return vertex_; }
  int best() const { return static_cast<int>(best_); }

  /// How often each move was made, to show what a case exercises.
  struct Moves {
    long expanded = 0, expansion_kept_though_worse_than_reflection = 0, reflected = 0,
         replaced_before_contraction = 0, contracted = 0, shrunk = 0, ordering_ties = 0;
  } moves;

 private:
  double f(PenaltyFunction& pf, Values const& x) {
    ++nevaluations;
    return pf.function_value(x);
  }

  void setup(PenaltyFunction const& pf, VariableValue vv) {
    nominal_ = static_cast<std::size_t>(pf.nominal_dimension());
    true_ = static_cast<std::size_t>(pf.true_dimension());
    fixed_ = pf.fixed_variables();
    perturbation_ = pf.perturbations();
    vertex_.clear();
    vertex_.push_back(pf.variable_values(vv));
    double s = +1.0;
    std::size_t search = 0;
    for (std::size_t k = 1; k <= true_; ++k) {
      vertex_.push_back(vertex_[0]);
      std::size_t i = search;
      while (fixed_[i]) ++i;
      vertex_[k][i] += s * perturbation_[i];
      s = -s;
      search = i + 1;
    }
    // Entry m of the centroid list belongs to the m-th free dimension.
    slot_.assign(nominal_, 0);
    for (std::size_t j = 0, m = 0; j < nominal_; ++j) {
      if (!fixed_[j]) slot_[j] = m++;
    }
  }

  bool run(PenaltyFunction& pf) {
    double const alpha = k_[0], beta = k_[1], gamma = k_[2], delta = k_[3];
    nevaluations = 0;
    std::vector<double> y(true_ + 1);
    for (std::size_t i = 0; i <= true_; ++i) y[i] = f(pf, vertex_[i]);
    niterations = 0;
    while (niterations <= max_iterations_) {
      std::size_t lo = y[0] > y[1] ? 1 : 0;
      std::size_t hi = y[0] <= y[1] ? 1 : 0;
      std::size_t nh = lo;
      for (std::size_t i = 2; i <= true_; ++i) {
        if (y[i] < y[lo]) lo = i;
        if (y[i] > y[nh]) nh = i;
        if (y[i] > y[hi]) {
          nh = hi;
          hi = i;
        }
      }
      best_ = lo;
      for (std::size_t i = 0; i <= true_; ++i) {
        for (std::size_t k = i + 1; k <= true_; ++k) moves.ordering_ties += y[i] == y[k];
      }

      double t = std::fabs(y[hi]) + std::fabs(y[lo]);
      if (t > tolerance_) t = 2.0 * std::fabs(y[hi] - y[lo]) / t;
      if (t < tolerance_) return true;
      if (niterations == max_iterations_) return false;

      Values centroid;
      for (std::size_t j = 0; j < nominal_; ++j) {
        if (fixed_[j]) continue;
        double sum = 0.0;
        for (std::size_t i = 0; i <= true_; ++i) {
          if (i != hi) sum += vertex_[i][j];
        }
        centroid.push_back(sum / static_cast<double>(true_));
      }
      auto const c = [&](std::size_t j) { return centroid[slot_[j]]; };

      Values xr(nominal_);
      for (std::size_t j = 0; j < nominal_; ++j) {
        xr[j] = fixed_[j] ? vertex_[0][j] : (1.0 + alpha) * c(j) - alpha * vertex_[hi][j];
      }
      double const yr = f(pf, xr);
      if (yr <= y[lo]) {
        Values xe(nominal_);
        for (std::size_t j = 0; j < nominal_; ++j) {
          xe[j] = fixed_[j] ? vertex_[0][j] : gamma * xr[j] + (1.0 - gamma) * c(j);
        }
        double const ye = f(pf, xe);
        if (ye < y[lo]) {
          ++moves.expanded;
          if (!(ye < yr)) ++moves.expansion_kept_though_worse_than_reflection;
          vertex_[hi] = xe;
          y[hi] = ye;
        } else {
          ++moves.reflected;
          vertex_[hi] = xr;
          y[hi] = yr;
        }
      } else if (yr < y[nh]) {
        ++moves.reflected;
        vertex_[hi] = xr;
        y[hi] = yr;
      } else {
        if (yr < y[hi]) {
          ++moves.replaced_before_contraction;
          vertex_[hi] = xr;
          y[hi] = yr;
        }
        Values xc(nominal_);
        for (std::size_t j = 0; j < nominal_; ++j) {
          xc[j] = fixed_[j] ? vertex_[0][j] : beta * vertex_[hi][j] + (1.0 - beta) * c(j);
        }
        double const yc = f(pf, xc);
        if (yc < y[hi]) {
          ++moves.contracted;
          vertex_[hi] = xc;
          y[hi] = yc;
        } else {
          ++moves.shrunk;
          for (std::size_t i = 0; i <= true_; ++i) {
            if (i == lo) continue;
            for (std::size_t j = 0; j < nominal_; ++j) {
              if (!fixed_[j]) vertex_[i][j] = delta * (vertex_[i][j] + vertex_[lo][j]);
            }
            y[i] = f(pf, vertex_[i]);
          }
        }
      }
      ++niterations;
    }
    return false;
  }

  int nrestart_;
  int max_iterations_;
  double tolerance_;
  Values k_;
  std::size_t nominal_ = 0;
  std::size_t true_ = 0;
  std::vector<bool> fixed_;
  Values perturbation_;
  std::vector<Values> vertex_;
  std::vector<std::size_t> slot_;
  std::size_t best_ = 0;
};

/// Uniform in [low, high) from the raw 32-bit output, the same on every platform.
class Draw {
 public:
  explicit Draw(std::uint32_t seed) : engine_(seed) {}
  double uniform(double low, double high) {
    return low + (high - low) * (static_cast<double>(engine_()) / 4294967296.0);
  }
  int integer(int low, int high) {
    return low + static_cast<int>(engine_() % static_cast<std::uint32_t>(high - low + 1));
  }

 private:
  std::mt19937 engine_;
};

// alpha, beta, gamma, delta: the defaults, then sets whose contraction (beta > 1) often
// fails, so that the shrink is exercised, with delta at and away from 0.5.
Values const kCoefficients[] = {{1.0, 0.5, 2.0, 0.5},
                                {1.0, 0.25, 3.0, 0.5},
                                {0.8, 1.5, 1.5, 0.5},
                                {1.3, 0.5, 2.5, 0.75},
                                {1.0, 1.25, 2.0, 0.6}};
int const kIterations[] = {1000, 4, 1000, 40, 250, 0, 1000, 12, -1};

void settings(AnswerFields& in, int index, double tolerance = 1e-9) {
  in.add("restarts", index % 4)
      .add("max_iterations", kIterations[index % 9])
      .add("tolerance", tolerance)
      .add("coefficients", kCoefficients[index % 5]);
}

AnswerFields quadratic(std::vector<int> const& dims, Values const& start,
                       std::vector<int> const& fixed, Values const& perturbation,
                       Values const& target) {
  AnswerFields in;
  in.add("problem", std::vector<std::string>{"quadratic"})
      .add("dims", dims)
      .add("start", start)
      .add("fixed", fixed)
      .add("perturbation", perturbation)
      .add("target", target);
  return in;
}

struct NamedCase {
  std::string name;
  AnswerFields inputs;
};

std::vector<NamedCase> cases() {
  std::vector<NamedCase> out;
  int index = 0;

  // Rosenbrock's valley in both layouts from several starts.
  double const starts[][2] = {{-1.2, 1.0}, {0.0, 0.0}, {2.0, -1.5}, {-0.5, 2.5}, {1.0, 1.0}};
  for (char const* layout : {"valley_shared", "valley_split"}) {
    for (auto const& s : starts) {
      AnswerFields in;
      in.add("problem", std::vector<std::string>{layout})
          .add("start", Values{s[0], s[1]})
          .add("r", index % 3 == 2 ? 1.0 : 100.0);
      settings(in, index, index % 5 == 3 ? 1e-12 : 1e-9);
      out.push_back({std::string(layout) + "_" + std::to_string(index), in});
      ++index;
    }
  }

  // Random convex quadratics of 2 to 5 dimensions over one to three variables, some
  // dimensions fixed (before free ones too).
  Draw draw(20240611);
  for (int n = 0; n < 20; ++n, ++index) {
    int const nominal = 2 + n % 5;
    std::vector<int> dims;
    for (int left = nominal; left > 0;) {
      int const d = std::min(left, draw.integer(1, 3));
      dims.push_back(d);
      left -= d;
    }
    std::vector<int> fixed(static_cast<std::size_t>(nominal), 0);
    Values start, perturbation, target;
    int nfree = 0;
    for (int j = 0; j < nominal; ++j) {
      fixed[static_cast<std::size_t>(j)] = (n % 3 != 0 && draw.uniform(0, 1) < 0.3) ? 1 : 0;
      nfree += 1 - fixed[static_cast<std::size_t>(j)];
      start.push_back(draw.uniform(-3.0, 3.0));
      // Small targets make the simplex straddle zero, where rounding tells formulas apart.
      target.push_back(draw.uniform(-3.0, 3.0) * (n % 2 == 0 ? 1.0 : 0.1));
      perturbation.push_back(n % 2 == 0 ? 1.0 : draw.uniform(0.1, 2.0));
    }
    if (nfree == 0) fixed.back() = 0;
    AnswerFields in = quadratic(dims, start, fixed, perturbation, target);
    settings(in, index, n % 4 == 1 ? 1e-6 : 1e-9);
    out.push_back({"quadratic_" + std::to_string(index), in});
  }

  // Exactly representable quadratics whose values tie, so that the strict comparisons
  // decide: in the ordering, and (with their own settings) a reflection equal to the best
  // or next-worst value, an expansion equal to the best, a stopping ratio equal to the
  // tolerance.
  struct Tie {
    std::vector<int> dims;
    Values start;
    std::vector<int> fixed;
    Values target;
    int coefficients = -1;  // the cycled settings when negative
    double tolerance = 1e-9;
  };
  Tie const ties[] = {
      {{3}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}},
      {{2}, {0, 0}, {0, 0}, {0.5, 0}},
      {{1, 1, 1}, {0, 0, 0}, {0, 0, 0}, {0.5, -0.5, 0.5}},
      {{2, 2}, {1, 1, 1, 1}, {0, 0, 0, 0}, {0, 2, 0, 2}},
      {{4}, {0, 0, 0, 0}, {1, 0, 0, 0}, {0, 1, -1, 1}},
      {{2, 1}, {2, 0, -2}, {0, 1, 0}, {1, 0, -1}},
      {{1}, {0}, {0}, {-0.5}, 0},
      {{1}, {0}, {0}, {-1.5}, 1, 0.5},
      {{1}, {0}, {0}, {-1}, 0, 1.0},
      {{2}, {0, 0}, {0, 0}, {-0.25, -1.5}, 0},
  };
  for (Tie const& t : ties) {
    AnswerFields in = quadratic(t.dims, t.start, t.fixed, Values(t.start.size(), 1.0), t.target);
    if (t.coefficients < 0) {
      settings(in, index);
    } else {
      in.add("restarts", 1)
          .add("max_iterations", 1000)
          .add("tolerance", t.tolerance)
          .add("coefficients", kCoefficients[t.coefficients]);
    }
    out.push_back({"ties_" + std::to_string(index++), in});
  }

  // Runs from LATEST values that differ from the starting ones.
  for (char const* layout : {"valley_shared", "valley_split"}) {
    AnswerFields in;
    in.add("problem", std::vector<std::string>{layout})
        .add("start", Values{-1.2, 1.0})
        .add("r", 100.0)
        .add("from_latest", Values{0.5, -0.75});
    settings(in, index);
    out.push_back({std::string(layout) + "_from_latest_" + std::to_string(index++), in});
  }
  return out;
}

int run() {
  bool agree = true;
  std::ostringstream file;
  file << "# Written by tests/optimisation/make_simplex_answers.cpp; do not edit.\n"
          "# Each case: a problem and the minimiser's settings, then what minimise()\n"
          "# left behind; every case agreed bit for bit with a transcription of the\n"
          "# method when it was written.\n";
  for (NamedCase const& named : cases()) {
    AnswerCase const c = named.inputs.as_case(named.name);
    AnswerFields const library = library_simplex_outcome(c);

    SimplexProblem problem = simplex_problem(c);
    PlainSimplex plain(c);
    bool const converged = plain.minimise(problem.pf, problem.from);
    AnswerFields const transcribed = simplex_outcome(
        converged, plain.niterations, plain.nevaluations, plain.best(), plain.vertices(), problem);

    agree = report_differences(c.name, library, transcribed, std::cerr) && agree;
    auto const& m = plain.moves;
    std::cerr << c.name << ": expanded " << m.expanded << " (kept though worse than the "
              << "reflection " << m.expansion_kept_though_worse_than_reflection << "), reflected "
              << m.reflected << ", replaced before contraction " << m.replaced_before_contraction
              << ", contracted " << m.contracted << ", shrunk " << m.shrunk << "; ties in ordering "
              << m.ordering_ties << '\n';
    file << "\ncase " << c.name << '\n';
    named.inputs.write(file);
    library.write(file);
  }
  if (!agree) return 1;
  std::cout << file.str();
  return 0;
}

}  // namespace
}  // namespace structmath::testing

int main() { return structmath::testing::run(); }
