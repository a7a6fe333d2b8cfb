// SPDX-License-Identifier: MIT
// Minimise: construction of the abstract minimiser.
#include "structmath/optimisation/minimise.hpp"

namespace structmath {

Minimise::Minimise(int max_iterations, double fn_val_converge, double grad_converge)
    : max_iterations_(max_iterations),
      fn_val_converge_(fn_val_converge),
      grad_converge_(grad_converge) {}

Minimise::~Minimise() = default;

}  // namespace structmath
