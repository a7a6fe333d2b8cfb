// SPDX-License-Identifier: MIT
// NormalDistribution: the polynomial tail-area approximation.
#include "structmath/statistics/normal_distribution.hpp"

#include <cmath>
#include <stdexcept>

namespace structmath {

namespace {

void check_sd(double sd) {
  // Written as sd <= 0 so that a NaN passes, as documented.
  if (sd <= 0.0) {
    throw std::invalid_argument(
        "NormalDistribution::NormalDistribution(double mean, double sd): specified standard "
        "deviation zero or negative");
  }
}

}  // namespace

NormalDistribution::NormalDistribution(double mean, double sd) : mean_(mean), sd_(sd) {
  check_sd(sd);
}

void NormalDistribution::set_sd(double sd) {
  check_sd(sd);
  sd_ = sd;
}

double NormalDistribution::area_to_left(double x) const {
  double const z = (x - mean_) / sd_;
  if (z > 6.0) return 1.0;
  if (z < -6.0) return 0.0;
  double const a = std::fabs(z);
  double const t = 1.0 / (1.0 + 0.2316419 * a);
  double const p =
      t *
      (0.31938152 + t * (-0.356563782 + t * (1.781477937 + t * (-1.821255978 + t * 1.330274429))));
  double const q = p * 0.3989423 / std::exp(0.5 * a * a);
  return z > 0.0 ? 1.0 - q : q;
}

double NormalDistribution::area_between(double a, double b) const {
  return std::fabs(area_to_left(a) - area_to_left(b));
}

}  // namespace structmath
