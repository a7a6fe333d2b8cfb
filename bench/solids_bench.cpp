// SPDX-License-Identifier: MIT
// Benchmarks of Monte Carlo volumes: samples per second for a ball and a 20-atom union,
// beside a bare sampling loop, and generator draws beside std::mt19937_64.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "structmath/numeric/point.hpp"
#include "structmath/solids/box.hpp"
#include "structmath/solids/random_number_generator.hpp"
#include "structmath/solids/sphere.hpp"
#include "structmath/solids/stochastic_volume_calculator.hpp"
#include "structmath/solids/union_solid.hpp"

namespace {

using structmath::make_handle;
using structmath::Point;
using structmath::RandomNumberGenerator;
using structmath::Solid;
using structmath::Sphere;
using structmath::StochasticVolumeCalculator;
using structmath::THandle;
using structmath::UnionSolid;

constexpr unsigned int density = 10000;
constexpr unsigned int molecule_density = 1000;

struct Ball {
  Point centre;
  double radius;
};

/// Twenty van der Waals balls along a zigzag chain with 1.5 spacing and a small twist:
/// the shape of a small molecule.
std::vector<Ball> molecule_balls() {
  std::vector<Ball> balls;
  for (int i = 0; i < 20; ++i) {
    double const t = 0.4 * i;
    Point const centre(1.25 * i, 0.75 * ((i % 2) ? 1.0 : -1.0) + 0.3 * std::cos(t),
                       0.3 * std::sin(t));
    balls.push_back({centre, (i % 3 == 0) ? 1.52 : 1.7});
  }
  return balls;
}

THandle<UnionSolid> molecule() {
  auto result = make_handle<UnionSolid>(UnionSolid::SolidSet{});
  for (Ball const& b : molecule_balls()) result->add_solid(make_handle<Sphere>(b.centre, b.radius));
  return result;
}

void report_samples(benchmark::State& state, Solid const& solid, unsigned int density) {
  double const box_volume = solid.bounding_box()->volume();
  auto const per_call = static_cast<std::int64_t>(density * box_volume);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * per_call);
  state.counters["samples_per_call"] = static_cast<double>(per_call);
}

void BM_SphereVolume(benchmark::State& state) {
  Sphere const ball(Point(0.0, 0.0, 0.0), 1.0);
  auto const generator = make_handle<RandomNumberGenerator>(1802, 9373);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        StochasticVolumeCalculator::get_solid_volume(ball, density, generator));
  }
  report_samples(state, ball, density);
}
BENCHMARK(BM_SphereVolume)->Unit(benchmark::kMillisecond);

void BM_MoleculeVolume(benchmark::State& state) {
  auto const union_of_balls = molecule();
  auto const generator = make_handle<RandomNumberGenerator>(1802, 9373);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        StochasticVolumeCalculator::get_solid_volume(*union_of_balls, molecule_density, generator));
  }
  report_samples(state, *union_of_balls, molecule_density);
}
BENCHMARK(BM_MoleculeVolume)->Unit(benchmark::kMillisecond);

/// The floor for BM_SphereVolume: three draws and an inline ball test per sample,
/// no virtual call, no bounding box.
void BM_BareSphereLoop(benchmark::State& state) {
  RandomNumberGenerator const rng(1802, 9373);
  unsigned int const nsamples = density * 8;
  for (auto _ : state) {
    unsigned int hits = 0;
    for (unsigned int i = 0; i < nsamples; ++i) {
      double const x = -1.0 + 2.0 * rng.random_uniform();
      double const y = -1.0 + 2.0 * rng.random_uniform();
      double const z = -1.0 + 2.0 * rng.random_uniform();
      if (std::sqrt(x * x + y * y + z * z) <= 1.0) ++hits;
    }
    benchmark::DoNotOptimize(8.0 * hits / nsamples);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * nsamples);
}
BENCHMARK(BM_BareSphereLoop)->Unit(benchmark::kMillisecond);

/// The floor for BM_MoleculeVolume: the same box, sample count and generator, with the
/// twenty balls tested inline from a flat array in a bare loop, stopping at the first hit.
void BM_BareMoleculeLoop(benchmark::State& state) {
  std::vector<Ball> const balls = molecule_balls();
  std::vector<double> centres, squared_radii;
  for (Ball const& b : balls) {
    centres.insert(centres.end(), {b.centre.x(), b.centre.y(), b.centre.z()});
    squared_radii.push_back(b.radius * b.radius);
  }
  auto const box = molecule()->bounding_box();
  double const lo_x = box->min_x(), lo_y = box->min_y(), lo_z = box->min_z();
  double const dx = box->max_x() - lo_x, dy = box->max_y() - lo_y, dz = box->max_z() - lo_z;
  auto const nsamples = StochasticVolumeCalculator::sample_count(molecule_density, box->volume());
  std::size_t const n = balls.size();
  RandomNumberGenerator const rng(1802, 9373);
  for (auto _ : state) {
    unsigned long long hits = 0;
    for (unsigned long long i = 0; i < nsamples; ++i) {
      double const x = lo_x + dx * rng.random_uniform();
      double const y = lo_y + dy * rng.random_uniform();
      double const z = lo_z + dz * rng.random_uniform();
      for (std::size_t k = 0; k < n; ++k) {
        double const ex = centres[3 * k] - x, ey = centres[3 * k + 1] - y,
                     ez = centres[3 * k + 2] - z;
        if (ex * ex + ey * ey + ez * ez <= squared_radii[k]) {
          ++hits;
          break;
        }
      }
    }
    benchmark::DoNotOptimize(static_cast<double>(hits) * box->volume() /
                             static_cast<double>(nsamples));
  }
  report_samples(state, *molecule(), molecule_density);
}
BENCHMARK(BM_BareMoleculeLoop)->Unit(benchmark::kMillisecond);

constexpr int draws_per_iteration = 1 << 16;

void BM_GeneratorDraws(benchmark::State& state) {
  RandomNumberGenerator const rng(1802, 9373);
  for (auto _ : state) {
    double sum = 0.0;
    for (int i = 0; i < draws_per_iteration; ++i) sum += rng.random_uniform();
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * draws_per_iteration);
}
BENCHMARK(BM_GeneratorDraws);

void BM_Mt19937_64Draws(benchmark::State& state) {
  std::mt19937_64 engine(1802);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  for (auto _ : state) {
    double sum = 0.0;
    for (int i = 0; i < draws_per_iteration; ++i) sum += uniform(engine);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * draws_per_iteration);
}
BENCHMARK(BM_Mt19937_64Draws);

}  // namespace
