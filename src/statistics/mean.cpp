// SPDX-License-Identifier: MIT
// Mean: moments of a sample, printing and archiving.
#include "structmath/statistics/mean.hpp"

#include <cmath>
#include <ostream>
#include <stdexcept>

namespace structmath {

Mean::Mean(std::vector<double> const& data) { calculate(data); }

void Mean::calculate(std::vector<double> const& data) {
  if (data.size() < 2) throw std::runtime_error("Mean::calculate: insufficient data");
  auto const n = static_cast<double>(data.size());
  mean_ = sum(data) / n;
  for (double const x : data) {
    double const d = x - mean_;
    double const d2 = d * d;
    average_deviation_ += std::fabs(d);
    variance_ += d2;
    skewness_ += d2 * d;
    kurtosis_ += d2 * d2;
  }
  average_deviation_ /= n;
  variance_ /= (n - 1.0);
  standard_deviation_ = std::sqrt(variance_);
  if (variance_ != 0.0) {
    skewness_ /= (n * (standard_deviation_ * standard_deviation_ * standard_deviation_));
    kurtosis_ = kurtosis_ / (n * variance_ * variance_) - 3.0;
  }
}

void Mean::print(std::ostream& os) const {
  os << "Mean: " << mean_ << ", Variance: " << variance_
     << ", Average deviation: " << average_deviation_
     << ", Standard deviation: " << standard_deviation_ << ", Skewness: " << skewness_
     << ", Kurtosis: " << kurtosis_;
}

void Mean::write(Archive& archive) const {
  archive << average_deviation_ << skewness_ << kurtosis_ << variance_ << mean_
          << standard_deviation_;
}

void Mean::read(Archive& archive) {
  Mean copy;
  archive >> copy.average_deviation_ >> copy.skewness_ >> copy.kurtosis_ >> copy.variance_ >>
      copy.mean_ >> copy.standard_deviation_;
  *this = copy;
}

std::ostream& operator<<(std::ostream& os, Mean const& mean) {
  mean.print(os);
  return os;
}

}  // namespace structmath
