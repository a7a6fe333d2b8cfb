// SPDX-License-Identifier: MIT
// Known answers of the normal tail area: exact values of the approximation, at the mean,
// at and around the cut-offs and along both tails.
#include <gtest/gtest.h>

#include "structmath/statistics/normal_distribution.hpp"
#include "support/known_answers.hpp"

namespace structmath::testing {
namespace {

class NormalTailAnswers : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(NormalTailAnswers, AreaToLeftIsTheRecordedValueBitForBit) {
  AnswerCase const& c = GetParam();
  NormalDistribution const d(c.number("mean"), c.number("sd"));
  expect_fields(c, AnswerFields().add("area", d.area_to_left(c.number("x"))));
}

INSTANTIATE_TEST_SUITE_P(Recorded, NormalTailAnswers,
                         ::testing::ValuesIn(load_answers("statistics/normal_tail_areas.txt")),
                         AnswerName());

}  // namespace
}  // namespace structmath::testing
