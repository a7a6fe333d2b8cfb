// SPDX-License-Identifier: MIT
// Known answers of the Jacobi eigen-decomposition and the eigenvalue sort: the order of
// the rotations and the signs of the eigenvectors, pinned bit for bit.
#include <gtest/gtest.h>

#include "numeric/eigen_answers.hpp"

namespace structmath::testing {
namespace {

class EigenAnswers : public ::testing::TestWithParam<AnswerCase> {};

TEST_P(EigenAnswers, JacobiAndEigenSortGiveTheRecordedValuesAndVectors) {
  expect_fields(GetParam(), library_eigen_outcome(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Recorded, EigenAnswers,
                         ::testing::ValuesIn(load_answers("numeric/eigen_decompositions.txt")),
                         AnswerName());

}  // namespace
}  // namespace structmath::testing
