// SPDX-License-Identifier: MIT
// StochasticVolumeCalculator: Monte Carlo volume of a solid by sampling its bounding box.
#pragma once

#include <deque>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/solids/box.hpp"
#include "structmath/solids/random_number_generator.hpp"
#include "structmath/solids/solid.hpp"

namespace structmath {

/// Estimates the volume of a solid by hit-or-miss Monte Carlo sampling.
///
/// Points are drawn uniformly in the solid's bounding box, each as three deviates of the
/// generator taken in x, y, z order, and the estimate is hits * box volume / samples.
/// The number of samples is density * box volume truncated to an integer, but never
/// fewer than density: below a box volume of 1 exactly density points are drawn. No
/// statistical error is computed; the binomial standard error is
/// box volume * sqrt(p (1 - p) / samples) with p the fraction of hits.
///
/// A null generator handle selects one generator shared by every such call, created
/// clock-seeded on first need, so successive unseeded runs continue one sequence; pass
/// a seeded generator for reproducible runs. Neither that shared generator nor any
/// shared generator is synchronised.
///
/// Throws std::invalid_argument("StochasticVolumeCalculator Implementation: sample
/// density must be > 0") for density 0, before the generator or the solid is used, and
/// std::runtime_error when the number of samples would not fit an unsigned int (an
/// unbounded solid such as a slab on its own).
class STRUCTMATH_API StochasticVolumeCalculator {
 public:
  /// Samples the solid and keeps the points that fall inside it, in the order drawn.
  StochasticVolumeCalculator(Solid const& solid, unsigned int density,
                             THandle<RandomNumberGenerator> generator);

  /// The volume estimate, counting hits without keeping them; allocates nothing.
  static double get_solid_volume(Solid const& solid, unsigned int density,
                                 THandle<RandomNumberGenerator> generator);

  /// The number of samples drawn for a box of this volume: density * box volume truncated
  /// to an integer when the box volume exceeds 1, density otherwise. Unlike the two
  /// entry points above, the count is not limited to the unsigned int range.
  static unsigned long long sample_count(unsigned int density, double box_volume) noexcept;

  /// Draws `nsamples` points uniformly in `box` (three deviates each, in x, y, z order)
  /// and returns how many of them `solid` contains: the sampling loop of the entry points
  /// on its own. Successive calls with one generator continue its sequence, so sampling
  /// in parts counts exactly what one call would (a caller can report progress between
  /// parts); get_solid_volume(solid, density, g) equals count_hits(solid,
  /// *solid.bounding_box(), sample_count(density, box volume), *g) * box volume / samples.
  static unsigned long long count_hits(Solid const& solid, Box const& box,
                                       unsigned long long nsamples,
                                       RandomNumberGenerator const& generator);

  /// The accepted points, in the order drawn.
  THandle<std::deque<Point>> const& points() const noexcept { return points_; }
  /// The volume of the bounding box that was sampled.
  double box_volume() const noexcept { return box_volume_; }
  /// The number of points drawn.
  unsigned int nsamples() const noexcept { return nsamples_; }
  /// accepted points * box volume / samples, as get_solid_volume computes it.
  double volume() const;

 private:
  THandle<std::deque<Point>> points_;
  double box_volume_ = 0.0;
  unsigned int nsamples_ = 0;
};

}  // namespace structmath
