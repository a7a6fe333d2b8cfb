// SPDX-License-Identifier: MIT
// Known answers of OverlayPoints::fit on seeded random, planar, linear, mirrored, weighted
// and degenerate sets: deviations, rotation, translation and moved points, bit for bit.
#include <gtest/gtest.h>

#include "superposition/overlay_answers.hpp"

namespace structmath::testing {
namespace {

class OverlayAnswers : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(OverlayAnswers, FitsGiveTheRecordedDeviationsRotationsAndTranslations) {
  expect_fields(GetParam(), library_overlay_outcome(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Recorded, OverlayAnswers,
                         ::testing::ValuesIn(load_answers("superposition/overlays.txt")),
                         AnswerName());

}  // namespace
}  // namespace structmath::testing
