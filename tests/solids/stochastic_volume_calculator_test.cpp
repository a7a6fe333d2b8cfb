// SPDX-License-Identifier: MIT
// Tests of StochasticVolumeCalculator: sample counts, the order of draws, reproducibility
// and volume estimates against closed forms within a few binomial standard errors.
#include "structmath/solids/stochastic_volume_calculator.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <limits>
#include <stdexcept>
#include <vector>

#include "structmath/solids/box.hpp"
#include "structmath/solids/intersection_solid.hpp"
#include "structmath/solids/slab.hpp"
#include "structmath/solids/sphere.hpp"
#include "structmath/solids/union_solid.hpp"
#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using Calculator = StochasticVolumeCalculator;
constexpr double pi = 3.14159265358979323846;

THandle<RandomNumberGenerator> seeded(int seed1 = 1802, int seed2 = 9373) {
  return make_handle<RandomNumberGenerator>(seed1, seed2);
}

THandle<Solid> sphere(double x, double y, double z, double r) {
  return make_handle<Sphere>(Point(x, y, z), r);
}

/// The unit cube, counting every call made to it.
class ProbeSolid : public Solid {
 public:
  THandle<Box> bounding_box() const override {
    ++calls;
    return make_handle<Box>(0, 1, 0, 1, 0, 1);
  }
  bool contains(Point const& /*p*/) const override { return ++calls > 0; }
  mutable int calls = 0;
};

TEST(StochasticVolumeCalculator, DrawsDensityTimesBoxVolumeSamplesButNeverFewerThanDensity) {
  Box const cube(0, 1, 0, 1, 0, 1), half(0, 0.5, 0, 1, 0, 1), odd(0, 1.5, 0, 1.1, 0, 1);
  Sphere const ball(Point(0, 0, 0), 1);
  IntersectionSolid const nothing(make_handle<Box>(0, 1, 0, 1, 0, 1),
                                  make_handle<Box>(0, 1, 0, 1, 5, 6));  // negative box volume
  struct Row {
    Solid const* solid;
    unsigned int density, nsamples;
  };
  for (Row const& r :
       {Row{&half, 10, 10}, Row{&ball, 1000, 8000}, Row{&odd, 7, 11}, Row{&nothing, 20, 20}}) {
    Calculator const calc(*r.solid, r.density, seeded());
    EXPECT_EQ(calc.nsamples(), r.nsamples) << r.density;
    EXPECT_EQ(calc.box_volume(), r.solid->bounding_box()->volume()) << r.density;
  }
  Calculator const all(cube, 1000, seeded());
  EXPECT_EQ(all.points()->size(), 1000u);
  EXPECT_EQ(all.volume(), 1.0);
  EXPECT_EQ(Calculator::get_solid_volume(cube, 1000, seeded()), 1.0);
  EXPECT_EQ(Calculator(nothing, 20, seeded()).volume(), 0.0);
}

TEST(StochasticVolumeCalculator, DrawsEachPointAsXThenYThenZAcrossTheBox) {
  Calculator const calc(Box(1, 3, 10, 11, -1, 0), 5, seeded());
  RandomNumberGenerator const twin(1802, 9373);
  ASSERT_EQ(calc.points()->size(), 10u);
  for (Point const& p : *calc.points()) {
    EXPECT_EQ(p.x(), 1.0 + 2.0 * twin.random_uniform());
    EXPECT_EQ(p.y(), 10.0 + twin.random_uniform());
    EXPECT_EQ(p.z(), -1.0 + twin.random_uniform());
  }
}

TEST(StochasticVolumeCalculator, BothEntryPointsAgreeAndUnseededRunsShareOneGenerator) {
  UnionSolid const pair(sphere(0, 0, 0, 1), sphere(1.2, 0, 0, 0.8));
  Calculator const a(pair, 2000, seeded(7, 11));
  EXPECT_EQ(a.volume(), Calculator::get_solid_volume(pair, 2000, seeded(7, 11)));
  // Unseeded runs draw consecutive stretches of one sequence, so their points differ.
  Calculator const c(pair, 500, nullptr), d(pair, 500, nullptr);
  EXPECT_NE(c.points()->front().x(), d.points()->front().x());
}

TEST(StochasticVolumeCalculator, RefusesZeroDensityAndUnboundedSolids) {
  ProbeSolid const probe;
  THandle<RandomNumberGenerator> const generator = seeded();
  char const* const message =
      "StochasticVolumeCalculator Implementation: sample density must be > 0";
  testing::expect_throw_message<std::invalid_argument>(
      [&] { Calculator::get_solid_volume(probe, 0, generator); }, message);
  testing::expect_throw_message<std::invalid_argument>(
      [&] { Calculator const calc(probe, 0, generator); }, message);
  // Neither the solid nor the generator was touched.
  EXPECT_EQ(probe.calls, 0);
  EXPECT_EQ(generator->random_uniform(), RandomNumberGenerator(1802, 9373).random_uniform());
  // One box query and one containment test per sample.
  Calculator::get_solid_volume(probe, 100, generator);
  EXPECT_EQ(probe.calls, 101);
  EXPECT_THROW(Calculator::get_solid_volume(Slab(Plane(), 1.0), 1, seeded()), std::runtime_error);
}

/// Checks a seeded estimate against the exact volume within four binomial standard errors.
void expect_volume(Solid const& solid, unsigned int density, double exact) {
  double const box_volume = solid.bounding_box()->volume();
  double const n = std::floor(density * box_volume), p = exact / box_volume;
  double const standard_error = box_volume * std::sqrt(p * (1.0 - p) / n);
  EXPECT_NEAR(Calculator::get_solid_volume(solid, density, seeded(4711, 815)), exact,
              4.0 * standard_error)
      << "standard error " << standard_error << " over " << n << " samples";
}

TEST(StochasticVolumeCalculator, EstimatesAgreeWithClosedForms) {
  expect_volume(Sphere(Point(0.5, -1.0, 2.0), 1.0), 100000, 4.0 * pi / 3.0);
  // A box that is not its own sampling box: joined with a distant small ball.
  expect_volume(
      UnionSolid(make_handle<Box>(0.0, 2.0, 0.0, 1.0, 0.0, 1.0), sphere(5, 0.5, 0.5, 0.5)), 20000,
      2.0 + pi / 6.0);
  // Two unit balls one apart: the lens pi (4r + d)(2r - d)^2 / 12, and the union.
  THandle<Solid> const left = sphere(0, 0, 0, 1), right = sphere(1, 0, 0, 1);
  double const lens = pi * 5.0 / 12.0;
  expect_volume(IntersectionSolid(left, right), 50000, lens);
  expect_volume(UnionSolid(left, right), 50000, 2.0 * 4.0 * pi / 3.0 - lens);
  // A unit ball cut by the layer 0.2 < z < 0.8: the integral of pi (1 - z^2) over it.
  auto const slice = [](double z) { return pi * (z - z * z * z / 3.0); };
  IntersectionSolid const segment(sphere(0, 0, 0, 1),
                                  make_handle<Slab>(Plane(Vector3D(0, 0, 1), 0.5), 0.3));
  expect_volume(segment, 50000, slice(0.8) - slice(0.2));
}

/// The first n sample points that count_hits draws in the unit cube with seeded().
std::vector<Point> unit_cube_samples(int n) {
  RandomNumberGenerator const rng(1802, 9373);
  std::vector<Point> out;
  for (int i = 0; i < n; ++i) {
    double const x = rng.random_uniform(), y = rng.random_uniform(), z = rng.random_uniform();
    out.emplace_back(x, y, z);
  }
  return out;
}

/// Hits in the unit cube counted by asking each member in turn, as a union does.
unsigned long long member_hits(std::vector<THandle<Solid>> const& members,
                               std::vector<Point> const& points) {
  unsigned long long hits = 0;
  for (Point const& p : points) {
    for (THandle<Solid> const& s : members) {
      if (s->contains(p)) {
        ++hits;
        break;
      }
    }
  }
  return hits;
}

TEST(StochasticVolumeCalculator, UnionsOfSpheresAndBoxesCountAsTheirMembersAtTheSurface) {
  // Spheres whose surface passes exactly through a sample point (the radius is that
  // point's distance from the centre) or one or two ulps inside or outside it: the
  // sampler's test of a union must count what the members themselves count.
  int const n = 300;
  std::vector<Point> const points = unit_cube_samples(n);
  Box const cube(0, 1, 0, 1, 0, 1);
  for (int k = 0; k < n; k += 7) {
    Point const& on = points[static_cast<std::size_t>(k)];
    Point const centre(0.5 + 0.37 * std::sin(k), 0.5 - 0.29 * std::cos(3 * k), 0.25 + 1e-3 * k);
    double const r = std::sqrt((centre - on) * (centre - on));
    for (double radius : {r, std::nextafter(r, 0.0), std::nextafter(r, 1.0),
                          std::nextafter(std::nextafter(r, 0.0), 0.0)}) {
      std::vector<THandle<Solid>> const members = {make_handle<Sphere>(centre, radius),
                                                   make_handle<Box>(0.9, 1.0, 0.0, 0.05, 0.0, 1.0)};
      UnionSolid const both(members[0], members[1]);
      EXPECT_EQ(Calculator::count_hits(both, cube, n, *seeded()), member_hits(members, points))
          << "sphere " << k << " radius " << radius;
      EXPECT_EQ(Calculator::count_hits(*members[0], cube, n, *seeded()),
                member_hits({members[0]}, points));
    }
  }
  // Radii at the edges of the double range and of the sign.
  for (double radius :
       {0.0, -0.0, -1e-300, 1e-160, 1e-300, 1e200, 1e300, std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN()}) {
    std::vector<THandle<Solid>> const members = {make_handle<Sphere>(points[3], radius)};
    EXPECT_EQ(Calculator::count_hits(*members[0], cube, n, *seeded()), member_hits(members, points))
        << "radius " << radius;
  }
}

TEST(StochasticVolumeCalculator, EachRunSeesTheMembersAsTheyAreThen) {
  // Members are shared and a box can change after it joined a union: every run must test
  // the members as they are when it starts.
  auto const box = make_handle<Box>(0.0, 0.5, 0.0, 1.0, 0.0, 1.0);
  auto const ball = make_handle<Sphere>(Point(2.0, 2.0, 2.0), 0.25);
  THandle<Solid> const parts = make_handle<UnionSolid>(THandle<Solid>(box), THandle<Solid>(ball));
  UnionSolid const nested(parts, sphere(-1, -1, -1, 0.5));
  Box const cube(0, 1, 0, 1, 0, 1);
  auto const half = Calculator::count_hits(nested, cube, 4000, *seeded());
  *box = Box(0.0, 1.0, 0.0, 1.0, 0.0, 1.0);
  EXPECT_EQ(Calculator::count_hits(nested, cube, 4000, *seeded()), 4000u);
  *box = Box(0.0, 0.5, 0.0, 1.0, 0.0, 1.0);
  EXPECT_EQ(Calculator::count_hits(nested, cube, 4000, *seeded()), half);
  EXPECT_NEAR(static_cast<double>(half), 2000.0, 4.0 * std::sqrt(1000.0));
}

}  // namespace
}  // namespace structmath
