// SPDX-License-Identifier: MIT
// StochasticVolumeCalculator: the sampling loop shared by both entry points.
#include "structmath/solids/stochastic_volume_calculator.hpp"

#include <limits>
#include <stdexcept>

#include "flat_union.hpp"
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

/// Draws `nsamples` points in the box and applies the action to each one the test
/// contains. Per sample: three draws and one containment test, nothing else.
template <class Test, class Action>
void sample_with(Test const& test, Box const& box, unsigned long long nsamples,
                 RandomNumberGenerator const& rng, Action const& action) {
  double const lo_x = box.min_x(), lo_y = box.min_y(), lo_z = box.min_z();
  double const dx = box.max_x() - lo_x, dy = box.max_y() - lo_y, dz = box.max_z() - lo_z;
  for (unsigned long long i = 0; i < nsamples; ++i) {
    double const x = lo_x + dx * rng.random_uniform();
    double const y = lo_y + dy * rng.random_uniform();
    double const z = lo_z + dz * rng.random_uniform();
    Point const p(x, y, z);
    if (test.contains(p)) action(p);
  }
}

/// The sampling loop: a union of spheres and boxes is tested through its flat snapshot
/// (the same answers without a virtual call per member), any other solid through its
/// own contains().
template <class Action>
void sample(Solid const& solid, Box const& box, unsigned long long nsamples,
            RandomNumberGenerator const& rng, Action const& action) {
  detail::FlatUnion flat;
  if (flat.assign(solid)) {
    sample_with(flat, box, nsamples, rng, action);
  } else {
    sample_with(solid, box, nsamples, rng, action);
  }
}

/// The sampling routine of both entry points: checks the density, picks the generator,
/// sizes the run from the solid's bounding box and samples it.
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
  box_volume =
      (box->max_x() - box->min_x()) * (box->max_y() - box->min_y()) * (box->max_z() - box->min_z());
  unsigned long long const n = StochasticVolumeCalculator::sample_count(density, box_volume);
  if (n > std::numeric_limits<unsigned int>::max()) {
    throw std::runtime_error(
        "StochasticVolumeCalculator: sample count exceeds the unsigned int range");
  }
  nsamples = static_cast<unsigned int>(n);
  sample(solid, *box, nsamples, rng, action);
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

unsigned long long StochasticVolumeCalculator::sample_count(unsigned int density,
                                                            double box_volume) noexcept {
  if (!(box_volume > 1.0)) return density;
  double const n = static_cast<double>(density) * box_volume;
  // Beyond 2^64 (an unbounded box) the count saturates.
  if (!(n < 18446744073709551616.0)) return std::numeric_limits<unsigned long long>::max();
  return static_cast<unsigned long long>(n);
}

unsigned long long StochasticVolumeCalculator::count_hits(Solid const& solid, Box const& box,
                                                          unsigned long long nsamples,
                                                          RandomNumberGenerator const& generator) {
  long long count = 0;
  sample(solid, box, nsamples, generator, PointCounter(count));
  return static_cast<unsigned long long>(count);
}

double StochasticVolumeCalculator::volume() const {
  return estimate(static_cast<long long>(points_->size()), box_volume_, nsamples_);
}

}  // namespace structmath
