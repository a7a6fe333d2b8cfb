// SPDX-License-Identifier: MIT
// Reseeded random number generators as known-answer cases describe them.
#pragma once

#include <vector>

#include "structmath/solids/random_number_generator.hpp"
#include "support/known_answers.hpp"

namespace structmath::testing {

/// A generator built with "seeds", drawn "draws_before" times, then for each further
/// init: init with "reinit" (then "reinit_again", if present, after "draws_between"
/// draws). Recorded: the seeds in use and the next "count" draws.
inline AnswerFields library_reinit_outcome(AnswerCase const& c) {
  std::vector<int> const seeds = c.ints("seeds");
  RandomNumberGenerator rng(seeds.at(0), seeds.at(1));
  auto const skip = [&](int n) {
    for (int i = 0; i < n; ++i) rng.random_uniform();
  };
  skip(c.integer("draws_before"));
  std::vector<int> const again = c.ints("reinit");
  rng.init(again.at(0), again.at(1));
  if (c.has("reinit_again")) {
    skip(c.integer("draws_between"));
    std::vector<int> const third = c.ints("reinit_again");
    rng.init(third.at(0), third.at(1));
  }
  std::vector<double> next;
  for (int i = 0; i < c.integer("count"); ++i) next.push_back(rng.random_uniform());
  AnswerFields out;
  out.add("seeds_in_use", std::vector<int>{rng.seed1(), rng.seed2()}).add("next", next);
  return out;
}

}  // namespace structmath::testing
