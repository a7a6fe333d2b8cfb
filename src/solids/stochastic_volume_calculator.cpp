// SPDX-License-Identifier: MIT
// StochasticVolumeCalculator: the sampling loop shared by both entry points.
#include "structmath/solids/stochastic_volume_calculator.hpp"

#include <limits>
#include <stdexcept>

#include "structmath/solids/box.hpp"

namespace structmath {
namespace {

/// The generator used when the caller passes none; created on first need.
THandle<RandomNumberGenerator> static_generator;

/// Counts the accepted points.
class PointCounter {
 public:
  explicit PointCounter(long long& count) noexcept : count_(count) {}
  void operator()(Point const& /*p*/) const noexcept { ++count_; }

 private:
  long long& count_;
};

/// Appends the accepted points to a deque.
class PointInserter {
 public:
  explicit PointInserter(std::deque<Point>& points) noexcept : points_(points) {}
  void operator()(Point const& p) const { points_.push_back(p); }

 private:
  std::deque<Point>& points_;
};

/// Draws the samples in the solid's bounding box and applies the action to each one
/// the solid contains. Per sample: three draws and one contains call, nothing else.
template <class Action>
void counter_init(Solid const& solid, unsigned int density,
                  THandle<RandomNumberGenerator> const& generator, Action const& action,
                  double& box_volume, unsigned int& nsamples) {
  if (density == 0) {
    throw std::invalid_argument(
        "StochasticVolumeCalculator Implementation: sample density must be > 0");
  }
  if (!generator && !static_generator) static_generator = make_handle<RandomNumberGenerator>();
  RandomNumberGenerator const& rng = generator ? *generator : *static_generator;

  THandle<Box> const box = solid.bounding_box();
  double const lo_x = box->min_x(), lo_y = box->min_y(), lo_z = box->min_z();
  double const dx = box->max_x() - lo_x, dy = box->max_y() - lo_y, dz = box->max_z() - lo_z;
  box_volume = dx * dy * dz;

  nsamples = density;
  if (box_volume > 1.0) {
    double const n = static_cast<double>(density) * box_volume;
    if (!(n < static_cast<double>(std::numeric_limits<unsigned int>::max()) + 1.0)) {
      throw std::runtime_error(
          "StochasticVolumeCalculator: sample count exceeds the unsigned int range");
    }
    nsamples = static_cast<unsigned int>(n);
  }

  for (unsigned int i = 0; i < nsamples; ++i) {
    double const x = lo_x + dx * rng.random_uniform();
    double const y = lo_y + dy * rng.random_uniform();
    double const z = lo_z + dz * rng.random_uniform();
    Point const p(x, y, z);
    if (solid.contains(p)) action(p);
  }
}

double estimate(long long count, double box_volume, unsigned int nsamples) noexcept {
  return static_cast<double>(count) * box_volume / static_cast<double>(nsamples);
}

}  // namespace

StochasticVolumeCalculator::StochasticVolumeCalculator(Solid const& solid, unsigned int density,
                                                       THandle<RandomNumberGenerator> generator)
    : points_(make_handle<std::deque<Point>>()) {
  counter_init(solid, density, generator, PointInserter(*points_), box_volume_, nsamples_);
}

double StochasticVolumeCalculator::get_solid_volume(Solid const& solid, unsigned int density,
                                                    THandle<RandomNumberGenerator> generator) {
  long long count = 0;
  double box_volume = 0.0;
  unsigned int nsamples = 0;
  counter_init(solid, density, generator, PointCounter(count), box_volume, nsamples);
  return estimate(count, box_volume, nsamples);
}

double StochasticVolumeCalculator::volume() const {
  return estimate(static_cast<long long>(points_->size()), box_volume_, nsamples_);
}

}  // namespace structmath
