// SPDX-License-Identifier: MIT
// SearchBudget: how much work a graph search may do before it returns what it has.
#pragma once

namespace structmath {

/// How much work a search may do; when either limit is reached the search stops and
/// returns what it has found, marked as not proven (or not complete).
struct SearchBudget {
  long long max_steps = -1;   ///< extensions of a partial solution; negative: no limit
  double max_seconds = -1.0;  ///< wall-clock time; negative: no limit
};

}  // namespace structmath
