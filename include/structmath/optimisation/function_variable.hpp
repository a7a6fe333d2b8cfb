// SPDX-License-Identifier: MIT
// FunctionVariable: one unknown of an optimisation problem, with per-dimension fixing.
#pragma once

#include <cstddef>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/numeric/point.hpp"

namespace structmath {

/// Selects one of a variable's four value sets. The numeric values are part of the
/// interface; any other integer passed as a selector is rejected by the readers and
/// writers. The underlying type is fixed so that such a value is representable.
enum VariableValue : int {
  STARTING = 0,   ///< the starting guess
  LATEST = 1,     ///< the most recent value; reset to the starting value when that is set
  OPTIMISED = 2,  ///< the result of a converged minimisation; empty until written
  TRIAL = 3       ///< scratch values at which a minimiser evaluates a function
};

/// One unknown of an optimisation problem: a vector of reals (one number, a Point or any
/// length), with a fixed flag and a perturbation per dimension.
///
/// A fixed dimension is held at its value by minimisers; the perturbation is the step
/// a simplex takes along the dimension when it builds its starting simplex. The four
/// value sets are kept apart so that a starting guess, the latest value, an accepted
/// optimum and a minimiser's trial point are never confused. Dimensions count from 0.
/// Every failure throws before anything is changed.
class STRUCTMATH_API FunctionVariable {
 public:
  /// Dimension 0 (not yet set); every vector empty.
  FunctionVariable();
  /// Starting and latest values v; every dimension free with perturbation 1.0.
  explicit FunctionVariable(std::vector<double> const& v);
  /// One dimension, starting and latest value x, free, perturbation 1.0.
  explicit FunctionVariable(double x);
  /// Three dimensions x, y, z of the point, free, perturbations 1.0.
  explicit FunctionVariable(Point const& p);

  /// Deep copies: the copy shares no values with its source.
  FunctionVariable(FunctionVariable const& other);
  FunctionVariable& operator=(FunctionVariable const& other);
  ~FunctionVariable() = default;

  /// Sets the starting value, and the latest value to a copy of it. An empty v is
  /// ignored. A variable of dimension 0 takes v's length with every dimension free and
  /// perturbation 1.0; otherwise flags and perturbations are kept.
  /// Throws std::invalid_argument when the dimension is set and differs from v's length.
  void set_starting(std::vector<double> const& v);
  /// As above for one value; throws std::invalid_argument when the dimension exceeds 1.
  void set_starting(double start);
  /// As above for x, y, z; throws std::invalid_argument when the dimension is set and not 3.
  void set_starting(Point const& pstart);

  /// Fixes every dimension at its value (no value changes).
  void fix_to_starting();
  /// Fixes dimension i; throws std::invalid_argument unless 0 <= i < ndimensions().
  void fix_to_starting(int i);
  /// Frees every dimension.
  void unfix();
  /// Frees dimension i; bounds as fix_to_starting(int).
  void unfix(int i);
  /// Sets every perturbation to devn.
  void set_perturbation(double devn);
  /// Sets perturbation i; bounds as fix_to_starting(int).
  void set_perturbation(int i, double devn);
  /// Perturbation i; bounds as fix_to_starting(int).
  double perturbation(int i) const;
  /// Whether dimension i is fixed; bounds as fix_to_starting(int).
  bool fixed(int i) const;

  int ndimensions() const noexcept { return ndimensions_; }
  /// Empties the optimised values: the variable then has no optimised result.
  void clear_optimised() noexcept;

  /// The selected value set. Throws std::runtime_error for OPTIMISED when there is no
  /// optimised result, std::invalid_argument for a selector outside 0 to 3.
  std::vector<double> const& value(VariableValue vtype) const;
  /// Element 0 of the selected set. The dimension must be 1 (std::runtime_error, checked
  /// before the selector); selector failures as value(); TRIAL before any trial value
  /// has been written throws std::runtime_error.
  double double_value(VariableValue vtype) const;
  /// Elements 0, 1, 2 of the selected set as a point. The dimension must be 3
  /// (std::runtime_error, checked before the selector); other failures as double_value().
  Point point_value(VariableValue ptype) const;

  /// Replaces the LATEST, OPTIMISED or TRIAL values with a copy of v. The length is
  /// checked first (std::invalid_argument), then the selector: STARTING is rejected
  /// (std::invalid_argument) since starting values change only through set_starting.
  void update(VariableValue vv, std::vector<double> const& v);
  /// As update(vv, v) for the count values at first; reuses the storage of the set, so
  /// writing a trial point of the same length never allocates.
  void update(VariableValue vv, double const* first, std::size_t count);

 private:
  std::vector<double> const& value_set(VariableValue vtype, char const* unrecognised) const;
  void check_dimension_index(int i, char const* message) const;
  void adopt_dimension(int n);

  int ndimensions_ = 0;
  THandle<std::vector<double>> starting_;
  THandle<std::vector<double>> latest_;
  THandle<std::vector<bool>> fixed_;
  THandle<std::vector<double>> perturbations_;
  THandle<std::vector<double>> optimised_;
  THandle<std::vector<double>> trial_;
};

}  // namespace structmath
