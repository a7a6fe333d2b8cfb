// SPDX-License-Identifier: MIT
// Known answers of Monte Carlo volumes of seeded unions and intersections of spheres,
// boxes and slabs: sample counts, hits, accepted points and estimates, bit for bit.
#include <gtest/gtest.h>

#include "solids/volume_answers.hpp"

namespace structmath::testing {
namespace {

class VolumeAnswers : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(VolumeAnswers, SeededSamplingGivesTheRecordedHitsAndEstimates) {
  expect_fields(GetParam(), library_volume_outcome(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Recorded, VolumeAnswers,
                         ::testing::ValuesIn(load_answers("solids/volumes.txt")), AnswerName());

}  // namespace
}  // namespace structmath::testing
