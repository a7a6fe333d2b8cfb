// SPDX-License-Identifier: MIT
// Known answers of Plane: least-squares fits with the signs of their normals and
// distances, and in-plane axes around the fallback for normals along x, bit for bit.
#include <gtest/gtest.h>

#include "geometry/plane_answers.hpp"

namespace structmath::testing {
namespace {

class PlaneAnswers : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(PlaneAnswers, NormalDistanceAndAxesAreTheRecordedOnes) {
  expect_fields(GetParam(), library_plane_outcome(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Recorded, PlaneAnswers,
                         ::testing::ValuesIn(load_answers("geometry/planes.txt")), AnswerName());

}  // namespace
}  // namespace structmath::testing
