// SPDX-License-Identifier: MIT
// Known answers of the simplex: whole minimisations pinned bit for bit, so that a change
// in the order or arithmetic of its steps shows.
#include <gtest/gtest.h>

#include "optimisation/simplex_answers.hpp"

namespace structmath::testing {
namespace {

class SimplexAnswers : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(SimplexAnswers, MinimisationLeavesTheRecordedStateBitForBit) {
  expect_fields(GetParam(), library_simplex_outcome(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Recorded, SimplexAnswers,
                         ::testing::ValuesIn(load_answers("optimisation/simplex_trajectories.txt")),
                         AnswerName());

}  // namespace
}  // namespace structmath::testing
