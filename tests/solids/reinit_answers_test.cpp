// SPDX-License-Identifier: MIT
// Known answers of a reseeded random number generator: a further init appends to the
// lagged table, so the entries of the first seeding (and their draws) stay in use.
#include <gtest/gtest.h>

#include "solids/reinit_answers.hpp"

namespace structmath::testing {
namespace {

class ReinitAnswers : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(ReinitAnswers, DrawsAfterAFurtherInitAreTheRecordedOnes) {
  expect_fields(GetParam(), library_reinit_outcome(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Recorded, ReinitAnswers,
                         ::testing::ValuesIn(load_answers("solids/generator_reinit.txt")),
                         AnswerName());

}  // namespace
}  // namespace structmath::testing
