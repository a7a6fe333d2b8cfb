// SPDX-License-Identifier: MIT
// RandomNumberGenerator: the reproducible uniform generator of the Monte Carlo sampler.
#pragma once

#include <vector>

#include "structmath/export.hpp"

namespace structmath {

/// Uniform deviates in [0, 1] from the universal generator of G. Marsaglia, A. Zaman and
/// W. W. Tsang, "Toward a universal random number generator", Statistics & Probability
/// Letters 9 (1990) 35-39: a lagged Fibonacci subtractive generator (lags 97 and 33)
/// combined with an arithmetic sequence modulo 16777213/16777216.
///
/// Every table entry is a multiple of 2^-24, so the double arithmetic reproduces the
/// single-precision reference sequence exactly, on every platform: the same two seeds
/// always give the same sequence. A draw costs a few additions and never allocates;
/// the period is about 2^144. random_uniform() is const although it advances the state
/// (the state is mutable), so a generator is shared through THandle and must not be
/// used from two threads at once.
class STRUCTMATH_API RandomNumberGenerator {
 public:
  /// Seeded from the microseconds of the system clock; may busy-wait up to about a
  /// second for the clock to reach a value in the seeds' ranges.
  RandomNumberGenerator();
  /// Seeded with seed1 in 0...31328 and seed2 in 0...30081, both compared as unsigned,
  /// so negative seeds fail. Throws std::invalid_argument with
  /// "Error in seeds. First seed must be in the range 0 - 31328" for seed1, or
  /// "Error in seeds. First seed must be in the range 0 - 30081" for seed2.
  RandomNumberGenerator(int seed1, int seed2);

  /// Seeds the state. A seed out of range is replaced by a clock seed; the second seed
  /// is replaced whenever seed1 (not seed2) exceeds 30081, so a valid first seed in
  /// 30082...31328 also takes the second from the clock (kept: existing seed pairs must
  /// keep giving their sequences). The lagged table is appended to rather than rebuilt,
  /// so this is meant to run once, from a constructor.
  void init(int seed1, int seed2);

  /// The next deviate, in [0, 1]; the bounds occur only in rare exact cases.
  double random_uniform() const noexcept {
    double uni = u_[static_cast<unsigned int>(i97_)] - u_[static_cast<unsigned int>(j97_)];
    if (uni <= 0.0) uni += 1.0;
    u_[static_cast<unsigned int>(i97_)] = uni;
    if (--i97_ < 0) i97_ = 96;
    if (--j97_ < 0) j97_ = 96;
    c_ -= cd_;
    if (c_ < 0.0) c_ += cm_;
    uni -= c_;
    if (uni < 0.0) uni += 1.0;
    return uni;
  }

  /// The seeds in use, after any replacement by clock seeds.
  int seed1() const noexcept { return seed1_; }
  int seed2() const noexcept { return seed2_; }

 private:
  int seed1_ = 0;
  int seed2_ = 0;
  mutable int i97_ = 96;
  mutable int j97_ = 32;
  mutable std::vector<double> u_;
  mutable double c_ = 0.0;
  double cm_ = 0.0;
  double cd_ = 0.0;
};

}  // namespace structmath
