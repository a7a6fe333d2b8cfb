// SPDX-License-Identifier: MIT
// NormalDistribution: tail areas of the normal curve.
#pragma once

#include "structmath/export.hpp"

namespace structmath {

/// A normal distribution given by its mean and standard deviation.
///
/// Tail areas come from the polynomial approximation of Abramowitz and Stegun,
/// Handbook of Mathematical Functions (1964), formula 26.2.17, whose absolute
/// error is below 7.5e-8; beyond six standard deviations the areas are exactly
/// 0 and 1. Each evaluation costs one exponential.
class STRUCTMATH_API NormalDistribution {
 public:
  /// The standard normal distribution: mean 0, sd 1.
  NormalDistribution() = default;
  /// Throws std::invalid_argument "NormalDistribution::NormalDistribution(double
  /// mean, double sd): specified standard deviation zero or negative" when sd <= 0
  /// (a NaN sd is not rejected).
  NormalDistribution(double mean, double sd);

  double mean() const noexcept { return mean_; }
  double sd() const noexcept { return sd_; }
  void set_mean(double mean) noexcept { mean_ = mean; }
  /// Checks sd as the constructor does, with the constructor's message.
  void set_sd(double sd);

  /// The probability that a variable with this distribution lies below x.
  double area_to_left(double x) const;
  /// The probability that it lies between a and b, in either order.
  double area_between(double a, double b) const;

 private:
  double mean_ = 0.0;
  double sd_ = 1.0;
};

}  // namespace structmath
