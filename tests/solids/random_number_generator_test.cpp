// SPDX-License-Identifier: MIT
// Tests of RandomNumberGenerator: the published check values, seed validation,
// reproducibility and clock seeding.
#include "structmath/solids/random_number_generator.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

namespace structmath {
namespace {

std::vector<double> draws(RandomNumberGenerator const& rng, int n) {
  std::vector<double> out;
  for (int i = 0; i < n; ++i) out.push_back(rng.random_uniform());
  return out;
}

void expect_seed_error(int seed1, int seed2, std::string const& message) {
  try {
    RandomNumberGenerator const rng(seed1, seed2);
    ADD_FAILURE() << "no exception for seeds " << seed1 << ", " << seed2;
  } catch (std::invalid_argument const& e) {
    EXPECT_EQ(e.what(), message);
  }
}

TEST(RandomNumberGenerator, ReproducesThePublishedCheckSequence) {
  RandomNumberGenerator const rng(1802, 9373);
  for (int i = 0; i < 20000; ++i) rng.random_uniform();
  double const expected[] = {6533892.0, 14220222.0, 7275067.0, 6172232.0, 8354498.0, 10633180.0};
  for (double const e : expected) EXPECT_EQ(rng.random_uniform() * 4096.0 * 4096.0, e);
}

TEST(RandomNumberGenerator, DrawsAreMultiplesOfTwoToTheMinus24InTheUnitInterval) {
  RandomNumberGenerator const rng(12, 34);
  double sum = 0.0;
  int const n = 100000;
  for (double const u : draws(rng, n)) {
    ASSERT_GE(u, 0.0);
    ASSERT_LE(u, 1.0);
    double const scaled = u * 16777216.0;
    ASSERT_EQ(scaled, std::floor(scaled));
    sum += u;
  }
  // Mean of n uniforms: standard error sqrt(1/12n); allow four of them.
  EXPECT_NEAR(sum / n, 0.5, 4.0 * std::sqrt(1.0 / (12.0 * n)));
}

TEST(RandomNumberGenerator, SameSeedsGiveTheSameSequenceAndOtherSeedsAnother) {
  RandomNumberGenerator const a(1802, 9373), b(1802, 9373), c(1802, 9374);
  auto const da = draws(a, 1000);
  EXPECT_EQ(da, draws(b, 1000));
  EXPECT_NE(da, draws(c, 1000));
  EXPECT_EQ(a.seed1(), 1802);
  EXPECT_EQ(a.seed2(), 9373);
}

TEST(RandomNumberGenerator, RejectsSeedsOutOfRangeAsUnsigned) {
  std::string const first = "Error in seeds. First seed must be in the range 0 - 31328";
  std::string const second = "Error in seeds. First seed must be in the range 0 - 30081";
  expect_seed_error(31329, 0, first);
  expect_seed_error(-1, 0, first);
  expect_seed_error(31329, 30082, first);
  expect_seed_error(0, 30082, second);
  expect_seed_error(0, -1, second);
  EXPECT_NO_THROW(RandomNumberGenerator(30081, 30081).random_uniform());
  EXPECT_NO_THROW(RandomNumberGenerator(0, 0).random_uniform());
}

TEST(RandomNumberGenerator, ClockSeedsLieInTheirRanges) {
  RandomNumberGenerator const rng;
  EXPECT_GE(rng.seed1(), 1);
  EXPECT_LE(rng.seed1(), 31328);
  EXPECT_GE(rng.seed2(), 1);
  EXPECT_LE(rng.seed2(), 30081);
}

TEST(RandomNumberGenerator, LargeValidFirstSeedTakesTheSecondSeedFromTheClock) {
  // A clock seed equals 5 only by chance, so one of three attempts must differ.
  bool replaced = false;
  for (int attempt = 0; attempt < 3 && !replaced; ++attempt) {
    RandomNumberGenerator const rng(31000, 5);
    EXPECT_EQ(rng.seed1(), 31000);
    EXPECT_GE(rng.seed2(), 1);
    EXPECT_LE(rng.seed2(), 30081);
    replaced = rng.seed2() != 5;
  }
  EXPECT_TRUE(replaced);
  RandomNumberGenerator const kept(30081, 5);
  EXPECT_EQ(kept.seed2(), 5);
}

}  // namespace
}  // namespace structmath
