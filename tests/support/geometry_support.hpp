// SPDX-License-Identifier: MIT
// Geometry test helpers: reproducible random input and exception messages.
#pragma once

#include <cmath>
#include <exception>
#include <random>
#include <string>

#include "structmath/geometry/quaternion.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath::testing {

/// A fixed-seed source of coordinates uniform in [-range, range].
class GeometryRandom {
 public:
  explicit GeometryRandom(unsigned int seed, double range = 10.0)
      : engine_(seed), uniform_(-range, range) {}

  double value() { return uniform_(engine_); }
  double value(double low, double high) {
    return low + (high - low) * std::uniform_real_distribution<double>(0.0, 1.0)(engine_);
  }
  Point point() { return Point(value(), value(), value()); }
  Vector3D vector() { return Vector3D(value(), value(), value()); }
  /// A rotation uniform over SO(3) (normalised Gaussian quaternion).
  Quaternion rotation() {
    std::normal_distribution<double> g(0.0, 1.0);
    Quaternion q(g(engine_), g(engine_), g(engine_), g(engine_));
    q.normalize();
    return q;
  }

 private:
  std::mt19937 engine_;
  std::uniform_real_distribution<double> uniform_;
};

/// The message of the exception f throws, or "no exception". An exception that is
/// not an E escapes, so a test can pin the type as well as the message.
template <typename E = std::exception, typename F>
std::string message_of(F f) {
  try {
    f();
  } catch (E const& e) {
    return e.what();
  }
  return "no exception";
}

}  // namespace structmath::testing
