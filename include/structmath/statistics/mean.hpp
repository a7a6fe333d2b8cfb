// SPDX-License-Identifier: MIT
// Mean: moments of a sample of doubles; sum of a vector.
#pragma once

#include <iosfwd>
#include <vector>

#include "structmath/core/archive.hpp"
#include "structmath/export.hpp"

namespace structmath {

/// Zero plus every element, in index order.
template <class T>
T sum(std::vector<T> const& data) {
  T total = T(0);
  for (T const& x : data) total += x;
  return total;
}

/// The usual moments of a sample: mean, average absolute deviation, sample
/// variance (divisor n - 1) and standard deviation, skewness and excess kurtosis.
///
/// Skewness and kurtosis divide by n while the variance inside them is the
/// n - 1 one: skewness = sum d^3 / (n sd^3), kurtosis = sum d^4 / (n var^2) - 3.
/// For a sample of equal values (variance exactly 0) both stay 0.
class STRUCTMATH_API Mean {
 public:
  /// All moments zero.
  Mean() = default;
  /// The moments of data. Throws as `calculate`.
  explicit Mean(std::vector<double> const& data);

  /// Computes the moments of data. The sums of deviations are added to what the
  /// fields already hold (kept: only a fresh object starts from zero), so call it
  /// once per object. Throws std::runtime_error "Mean::calculate: insufficient
  /// data" for fewer than two elements.
  void calculate(std::vector<double> const& data);

  double mean() const noexcept { return mean_; }
  double variance() const noexcept { return variance_; }
  double standard_deviation() const noexcept { return standard_deviation_; }
  double average_deviation() const noexcept { return average_deviation_; }
  double skewness() const noexcept { return skewness_; }
  double kurtosis() const noexcept { return kurtosis_; }

  /// "Mean: m, Variance: v, Average deviation: a, Standard deviation: s,
  /// Skewness: k, Kurtosis: c" with the stream's formatting and no line end.
  void print(std::ostream& os) const;
  /// Streams average deviation, skewness, kurtosis, variance, mean and standard
  /// deviation, in that order, as doubles.
  void write(Archive& archive) const;
  /// Reads what `write` wrote; the object is unchanged if the archive runs out.
  void read(Archive& archive);

 private:
  double average_deviation_ = 0.0;
  double skewness_ = 0.0;
  double kurtosis_ = 0.0;
  double variance_ = 0.0;
  double mean_ = 0.0;
  double standard_deviation_ = 0.0;
};

STRUCTMATH_API std::ostream& operator<<(std::ostream& os, Mean const& mean);

}  // namespace structmath
