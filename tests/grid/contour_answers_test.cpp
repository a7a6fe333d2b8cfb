// SPDX-License-Identifier: MIT
// Known answers of MarchingContourer and the surface's tidying: node, triangle and edge
// numbering, positions and normals bit for bit on seeded random grids, both variants.
#include <gtest/gtest.h>

#include "grid/contour_answers.hpp"

namespace structmath::testing {
namespace {

class ContourAnswers : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(ContourAnswers, SurfaceIsTheRecordedOne) {
  expect_fields(GetParam(), library_contour_outcome(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Recorded, ContourAnswers,
                         ::testing::ValuesIn(load_answers("grid/contours.txt")), AnswerName());

}  // namespace
}  // namespace structmath::testing
