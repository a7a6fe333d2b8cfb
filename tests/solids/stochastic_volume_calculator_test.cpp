// SPDX-License-Identifier: MIT
// Tests of StochasticVolumeCalculator: sample counts, the order of draws, reproducibility
// and volume estimates against closed forms within a few binomial standard errors.
#include "structmath/solids/stochastic_volume_calculator.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <stdexcept>
#include <string>

#include "structmath/solids/box.hpp"
#include "structmath/solids/intersection_solid.hpp"
#include "structmath/solids/slab.hpp"
#include "structmath/solids/sphere.hpp"
#include "structmath/solids/union_solid.hpp"

namespace structmath {
namespace {

constexpr double pi = 3.14159265358979323846;

THandle<RandomNumberGenerator> seeded(int seed1 = 1802, int seed2 = 9373) {
  return make_handle<RandomNumberGenerator>(seed1, seed2);
}

THandle<Solid> sphere(double x, double y, double z, double r) {
  return make_handle<Sphere>(Point(x, y, z), r);
}

/// Estimates the volume with a seeded generator and checks it against the exact value
/// within four binomial standard errors of the hit fraction.
void expect_volume(Solid const& solid, unsigned int density, double exact) {
  double const box_volume = solid.bounding_box()->volume();
  double const n = std::floor(density * box_volume);
  double const p = exact / box_volume;
  double const standard_error = box_volume * std::sqrt(p * (1.0 - p) / n);
  double const estimate =
      StochasticVolumeCalculator::get_solid_volume(solid, density, seeded(4711, 815));
  EXPECT_NEAR(estimate, exact, 4.0 * standard_error)
      << "standard error " << standard_error << " over " << n << " samples";
}

bool same_points(std::deque<Point> const& a, std::deque<Point> const& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](Point const& p, Point const& q) {
    return p.x() == q.x() && p.y() == q.y() && p.z() == q.z();
  });
}

/// Lens-shaped overlap of two balls of radius r whose centres are d apart (d < 2r).
double lens_volume(double r, double d) {
  return pi * (4.0 * r + d) * (2.0 * r - d) * (2.0 * r - d) / 12.0;
}

/// Counts the calls made to it; its box throws once armed.
class ProbeSolid : public Solid {
 public:
  THandle<Box> bounding_box() const override {
    ++calls;
    return make_handle<Box>(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
  }
  bool contains(Point const& /*p*/) const override {
    ++calls;
    return true;
  }
  mutable int calls = 0;
};

TEST(StochasticVolumeCalculator, UnitCubeIsSampledExactlyDensityTimesAndIsAllInside) {
  Box const cube(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
  StochasticVolumeCalculator const calc(cube, 1000, seeded());
  EXPECT_EQ(calc.nsamples(), 1000u);
  EXPECT_EQ(calc.box_volume(), 1.0);
  EXPECT_EQ(calc.points()->size(), 1000u);
  EXPECT_EQ(calc.volume(), 1.0);
  EXPECT_EQ(StochasticVolumeCalculator::get_solid_volume(cube, 1000, seeded()), 1.0);
}

TEST(StochasticVolumeCalculator, SampleCountIsDensityTimesBoxVolumeButNeverBelowDensity) {
  StochasticVolumeCalculator const half(Box(0.0, 0.5, 0.0, 1.0, 0.0, 1.0), 10, seeded());
  EXPECT_EQ(half.nsamples(), 10u);
  EXPECT_EQ(half.box_volume(), 0.5);
  StochasticVolumeCalculator const ball(Sphere(Point(0.0, 0.0, 0.0), 1.0), 1000, seeded());
  EXPECT_EQ(ball.box_volume(), 8.0);
  EXPECT_EQ(ball.nsamples(), 8000u);
  StochasticVolumeCalculator const odd(Box(0.0, 1.5, 0.0, 1.1, 0.0, 1.0), 7, seeded());
  EXPECT_EQ(odd.nsamples(), 11u);  // 7 * 1.65 = 11.55, truncated
  // An empty box has a negative volume: density samples, and an estimate of zero.
  IntersectionSolid const nothing(make_handle<Box>(0, 1, 0, 1, 0, 1),
                                  make_handle<Box>(0, 1, 0, 1, 5, 6));
  StochasticVolumeCalculator const empty(nothing, 20, seeded());
  EXPECT_EQ(empty.nsamples(), 20u);
  EXPECT_LT(empty.box_volume(), 0.0);
  EXPECT_EQ(empty.volume(), 0.0);
}

TEST(StochasticVolumeCalculator, DrawsEachPointAsXThenYThenZAcrossTheBox) {
  Box const box(1.0, 3.0, 10.0, 11.0, -1.0, 0.0);
  StochasticVolumeCalculator const calc(box, 5, seeded());
  RandomNumberGenerator const twin(1802, 9373);
  ASSERT_EQ(calc.points()->size(), 10u);
  for (Point const& p : *calc.points()) {
    double const x = 1.0 + 2.0 * twin.random_uniform();
    double const y = 10.0 + 1.0 * twin.random_uniform();
    double const z = -1.0 + 1.0 * twin.random_uniform();
    EXPECT_EQ(p.x(), x);
    EXPECT_EQ(p.y(), y);
    EXPECT_EQ(p.z(), z);
  }
}

TEST(StochasticVolumeCalculator, SameSeedsGiveTheSameEstimateAndPoints) {
  UnionSolid const pair(sphere(0, 0, 0, 1), sphere(1.2, 0, 0, 0.8));
  StochasticVolumeCalculator const a(pair, 2000, seeded(7, 11));
  StochasticVolumeCalculator const b(pair, 2000, seeded(7, 11));
  EXPECT_TRUE(same_points(*a.points(), *b.points()));
  EXPECT_EQ(a.volume(), StochasticVolumeCalculator::get_solid_volume(pair, 2000, seeded(7, 11)));
  EXPECT_NE(a.volume(), StochasticVolumeCalculator::get_solid_volume(pair, 2000, seeded(8, 11)));
  for (Point const& p : *a.points()) ASSERT_TRUE(pair.contains(p));
}

TEST(StochasticVolumeCalculator, UnseededRunsShareOneGenerator) {
  Sphere const ball(Point(0.0, 0.0, 0.0), 1.0);
  StochasticVolumeCalculator const a(ball, 500, nullptr);
  StochasticVolumeCalculator const b(ball, 500, THandle<RandomNumberGenerator>());
  // Consecutive stretches of one sequence: the accepted points differ.
  EXPECT_FALSE(same_points(*a.points(), *b.points()));
  EXPECT_GT(a.volume(), 2.0);
  EXPECT_LT(a.volume(), 6.0);
}

TEST(StochasticVolumeCalculator, ZeroDensityThrowsBeforeTouchingSolidOrGenerator) {
  ProbeSolid const probe;
  THandle<RandomNumberGenerator> const generator = seeded();
  std::string const message =
      "StochasticVolumeCalculator Implementation: sample density must be > 0";
  try {
    StochasticVolumeCalculator::get_solid_volume(probe, 0, generator);
    ADD_FAILURE() << "no exception";
  } catch (std::invalid_argument const& e) {
    EXPECT_EQ(e.what(), message);
  }
  try {
    StochasticVolumeCalculator const calc(probe, 0, generator);
    ADD_FAILURE() << "no exception";
  } catch (std::invalid_argument const& e) {
    EXPECT_EQ(e.what(), message);
  }
  EXPECT_EQ(probe.calls, 0);
  EXPECT_EQ(generator->random_uniform(), RandomNumberGenerator(1802, 9373).random_uniform());

  // One box query and one containment test per sample.
  StochasticVolumeCalculator::get_solid_volume(probe, 100, generator);
  EXPECT_EQ(probe.calls, 101);
}

TEST(StochasticVolumeCalculator, UnboundedSolidIsRefusedRatherThanOverflowingTheCount) {
  Slab const slab(Plane(), 1.0);
  EXPECT_THROW(StochasticVolumeCalculator::get_solid_volume(slab, 1, seeded()), std::runtime_error);
}

TEST(StochasticVolumeCalculator, EstimatesAgreeWithClosedForms) {
  // A ball: 800000 samples in a box of volume 8.
  expect_volume(Sphere(Point(0.5, -1.0, 2.0), 1.0), 100000, 4.0 * pi / 3.0);

  // A box that is not its own sampling box: joined with a distant small ball.
  expect_volume(
      UnionSolid(make_handle<Box>(0.0, 2.0, 0.0, 1.0, 0.0, 1.0), sphere(5, 0.5, 0.5, 0.5)), 20000,
      2.0 + pi / 6.0);

  // Two unit balls one apart: their lens and their union.
  THandle<Solid> const left = sphere(0, 0, 0, 1), right = sphere(1, 0, 0, 1);
  double const lens = lens_volume(1.0, 1.0);
  expect_volume(IntersectionSolid(left, right), 50000, lens);
  expect_volume(UnionSolid(left, right), 50000, 2.0 * 4.0 * pi / 3.0 - lens);

  // A unit ball cut by the layer 0.2 < z < 0.8: the integral of pi (1 - z^2) over it.
  auto const slice = [](double z) { return pi * (z - z * z * z / 3.0); };
  IntersectionSolid const segment(sphere(0, 0, 0, 1),
                                  make_handle<Slab>(Plane(Vector3D(0, 0, 1), 0.5), 0.3));
  expect_volume(segment, 50000, slice(0.8) - slice(0.2));
}

}  // namespace
}  // namespace structmath
