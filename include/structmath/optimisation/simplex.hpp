// SPDX-License-Identifier: MIT
// Simplex: the downhill-simplex minimiser with restarts.
#pragma once

#include <vector>

#include "structmath/export.hpp"
#include "structmath/optimisation/function_variable.hpp"
#include "structmath/optimisation/minimise.hpp"

namespace structmath {

class PenaltyFunction;

/// The downhill-simplex method of Nelder and Mead (Computer Journal 7, 308-313, 1965):
/// a minimiser that needs function values only.
///
/// A run starts from a simplex of n + 1 vertices over the n free dimensions: the start
/// point x, then x displaced along the k-th free dimension by +p, -p, +p, ... in turn,
/// p being that dimension's perturbation. Each iteration orders the vertices, then
/// replaces the worst by its reflection through the centroid of the others (coefficient
/// alpha), expanded (gamma) when the reflection beats the best, or contracted towards
/// the centroid (beta); when even that fails, every other vertex becomes
/// delta x (vertex + best), the midpoint for the default delta 0.5. Trial points are evaluated
/// through the variables' TRIAL values; fixed dimensions keep the start's values throughout.
///
/// Stopping rule: a run converges when 2|f_hi - f_lo| / (|f_hi| + |f_lo|) falls below
/// fn_val_converge(), or when |f_hi| + |f_lo| itself does (so a minimum of 0 is found);
/// it gives up after max_iterations() iterations. Each iteration costs one or two
/// evaluations, n + 2 when it shrinks, and O(n^2) arithmetic for the centroid.
///
/// minimise() runs nrestart() + 1 times, each run after the first starting from the
/// LATEST values the run before it wrote. Every run writes its best vertex to the
/// LATEST values, and a converged run to the OPTIMISED values too. A negative nrestart()
/// makes no run (the result is false); a negative max_iterations() makes every run stop,
/// unconverged, at vertex 0, the start.
///
/// The centroid is kept at full length, an entry per dimension of the flat vector, so
/// fixed dimensions may lie anywhere in it, before free ones too.
class STRUCTMATH_API Simplex : public Minimise {
 public:
  /// Two restarts; alpha 1.0, beta 0.5, gamma 2.0, delta 0.5; the base's defaults.
  Simplex() = default;
  Simplex(int nrestart, int max_iterations, double fn_val_converge);
  Simplex(Simplex const& other) = default;
  /// Copies the simplex settings and state but keeps this object's iteration limit and
  /// tolerances. Kept: an assigned minimiser retains the limits it was configured with.
  Simplex& operator=(Simplex const& other);
  ~Simplex() override;

  /// Minimises from the STARTING or LATEST values and returns whether the last run
  /// converged. Throws std::invalid_argument for any other selector, and
  /// std::runtime_error when an iteration would run with no free dimension (with a
  /// negative max_iterations() a run makes none: it returns false and writes the start
  /// back to LATEST); errors of the function and variables pass through.
  bool minimise(PenaltyFunction& pf, VariableValue vv) override;

  /// Builds the starting simplex around the selected values. Resets the best-vertex
  /// index to 0 (kept: the dimension may change between runs, and an old index could
  /// point past the new simplex).
  void setup_simplex(PenaltyFunction const& pf, VariableValue vv);
  /// One run from the current simplex; true when it converged.
  bool minimise_simplex(PenaltyFunction& pf, VariableValue vv);
  /// Writes the best vertex to the LATEST values, and when converged to OPTIMISED.
  void send_results(PenaltyFunction& pf, bool converged) const;

  void set_nrestart(int n) noexcept { nrestart_ = n; }
  int nrestart() const noexcept { return nrestart_; }
  void set_simplex_parameters(double alpha, double beta, double gamma, double delta) noexcept;
  double alpha() const noexcept { return alpha_; }
  double beta() const noexcept { return beta_; }
  double gamma() const noexcept { return gamma_; }
  double delta() const noexcept { return delta_; }

  /// Function evaluations made by the last run, the initial simplex included.
  int nevaluations() const noexcept { return nevaluations_; }
  /// The current vertices, each a full flat vector.
  std::vector<std::vector<double>> const& vertices() const noexcept { return vertices_; }
  /// Index of the best vertex found by the last ordering step (0 before one).
  int best_vertex() const noexcept { return best_vertex_; }

 private:
  double evaluate(PenaltyFunction& pf, std::vector<double> const& x);
  // to[j] = c_centroid * centroid[j] + c_from * from[j] for free j, the start's value for
  // fixed j.
  void combine(double c_centroid, double c_from, std::vector<double> const& from,
               std::vector<double>& to) const;

  int nrestart_ = 2;
  double alpha_ = 1.0;
  double beta_ = 0.5;
  double gamma_ = 2.0;
  double delta_ = 0.5;
  int nominal_dimension_ = 0;
  int true_dimension_ = 0;
  std::vector<bool> fixed_;
  std::vector<double> perturbations_;
  std::vector<std::vector<double>> vertices_;
  int best_vertex_ = 0;

  // Working storage of a run, kept so that iterations do not allocate.
  int nevaluations_ = 0;
  std::vector<double> values_;
  std::vector<double> centroid_;
  std::vector<double> reflected_;
  std::vector<double> trial_;
};

}  // namespace structmath
