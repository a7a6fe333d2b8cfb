// SPDX-License-Identifier: MIT
// Writes the reseeding known answers (tests/data/solids/generator_reinit.txt) to stdout:
// generators seeded, drawn from and seeded again with valid seeds (so no clock seed
// enters), and the draws that follow.
#include <iostream>
#include <string>
#include <vector>

#include "solids/reinit_answers.hpp"

namespace structmath::testing {
namespace {

struct Reseeding {
  std::string name;
  std::vector<int> seeds;
  int draws_before;
  std::vector<int> reinit;
  int draws_between = -1;  // no third init when negative
  std::vector<int> reinit_again = {};
};

int run() {
  Reseeding const cases[] = {
      {"published_seeds_then_others", {1802, 9373}, 0, {1, 2}},
      {"after_the_check_sequence", {1802, 9373}, 20006, {30081, 30081}},
      {"same_seeds_again", {0, 0}, 5, {0, 0}},
      {"after_one_turn_of_the_table", {12, 34}, 97, {56, 78}},
      {"three_inits", {12, 34}, 10, {56, 78}, 3, {9, 10}},
      {"largest_seeds_first", {30081, 30081}, 1000, {100, 200}},
      {"without_drawing_between", {7, 11}, 0, {7, 11}, 0, {7, 11}},
  };
  std::cout << "# Written by tests/solids/make_reinit_answers.cpp; do not edit.\n"
               "# Each case: the seeds, draws before a further init (two for reinit_again),\n"
               "# then the seeds in use and the next draws.\n";
  for (Reseeding const& r : cases) {
    AnswerFields in;
    in.add("seeds", r.seeds).add("draws_before", r.draws_before).add("reinit", r.reinit);
    if (r.draws_between >= 0) {
      in.add("draws_between", r.draws_between).add("reinit_again", r.reinit_again);
    }
    in.add("count", 12);
    AnswerCase const c = in.as_case(r.name);
    std::cout << "\ncase " << c.name << '\n';
    in.write(std::cout);
    library_reinit_outcome(c).write(std::cout);
  }
  return 0;
}

}  // namespace
}  // namespace structmath::testing

int main() { return structmath::testing::run(); }
