// SPDX-License-Identifier: MIT
// Reproducible random points, vectors and rotations for the geometry test suites.
#pragma once

#include <cmath>
#include <random>

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

}  // namespace structmath::testing
