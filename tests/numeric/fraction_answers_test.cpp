// SPDX-License-Identifier: MIT
// Known answers of Fraction arithmetic and comparison: on operands read unsimplified from
// an archive, and on simplified operands from small to the edge of the int range, with
// the overflows; the fields of every result, pinned exactly.
#include <gtest/gtest.h>

#include "numeric/fraction_answers.hpp"

namespace structmath::testing {
namespace {

class FractionAnswers : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(FractionAnswers, ResultsOfUnsimplifiedOperandsHaveTheRecordedFields) {
  expect_fields(GetParam(), library_fraction_outcome(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Recorded, FractionAnswers,
                         ::testing::ValuesIn(load_answers("numeric/fraction_unsimplified.txt")),
                         AnswerName());

class FractionRangeAnswers : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(FractionRangeAnswers, ResultsAndOverflowsHaveTheRecordedOutcomes) {
  expect_fields(GetParam(), library_fraction_range_outcome(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Recorded, FractionRangeAnswers,
                         ::testing::ValuesIn(load_answers("numeric/fraction_ranges.txt")),
                         AnswerName());

}  // namespace
}  // namespace structmath::testing
