// SPDX-License-Identifier: MIT
// Benchmarks of whole calls as an application makes them: a fit from point lists to its
// transformation, and a contour from a grid to a tidied surface with its measures. They are
// the C++ side of bench/python_overhead.py, which times the same calls from Python.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "structmath/grid/contourer.hpp"
#include "structmath/grid/normal_grid.hpp"
#include "structmath/superposition/overlay_points.hpp"

namespace {

using structmath::Point;
using structmath::Vector3D;

/// A target spread over [-10, 10]^3 by sines, and the same points turned (x, y, z) ->
/// (y, z, x), shifted and slightly disturbed: a formula that bench/python_overhead.py
/// evaluates alike, so that both sides fit the same sets.
void point_sets(std::size_t n, std::vector<Point>& target, std::vector<Point>& moving) {
  for (std::size_t i = 0; i < n; ++i) {
    double const t = static_cast<double>(i);
    Point const p(10.0 * std::sin(1.1 * t), 10.0 * std::cos(2.3 * t),
                  10.0 * std::sin(0.7 * t + 1.0));
    target.push_back(p);
    double const e = 0.01 * std::sin(3.7 * t);
    moving.push_back(Point(p.y() + 3.0 + e, p.z() - 4.0 - e, p.x() + 5.0 + e));
  }
}

/// A new OverlayPoints for the target, one fit, and the kept transformation and deviations:
/// what structmath.overlay(target, moving) does.
void BM_OverlayOneShot(benchmark::State& state) {
  std::vector<Point> target, moving;
  point_sets(static_cast<std::size_t>(state.range(0)), target, moving);
  for (auto _ : state) {
    structmath::OverlayPoints overlay(target, false);
    overlay.fit(moving);
    auto const t = overlay.transformation();
    benchmark::DoNotOptimize(t->translation());
    benchmark::DoNotOptimize(overlay.maximum_deviation());
  }
}
BENCHMARK(BM_OverlayOneShot)->Arg(1000);

/// One fit onto a kept target, with its transformation: what Overlay.fit(moving) does.
void BM_OverlayRefit(benchmark::State& state) {
  std::vector<Point> target, moving;
  point_sets(static_cast<std::size_t>(state.range(0)), target, moving);
  structmath::OverlayPoints overlay(target, false);
  for (auto _ : state) {
    overlay.fit(moving);
    auto const t = overlay.transformation();
    benchmark::DoNotOptimize(t->translation());
  }
}
BENCHMARK(BM_OverlayRefit)->Arg(1000);

/// The distance from the middle of an n^3 grid over [-1.3, 1.3]^3, contoured at 1: the
/// unit sphere of bench/grid_bench.cpp. The surface is tidied and measured, as
/// structmath.marching_cubes does.
void BM_ContourTidyMeasure(benchmark::State& state) {
  int const n = static_cast<int>(state.range(0));
  auto grid = structmath::make_handle<structmath::NormalGrid>(
      n, n, n, Point(-1.3, -1.3, -1.3), Vector3D(2.6, 0.0, 0.0), Vector3D(0.0, 2.6, 0.0),
      Vector3D(0.0, 0.0, 2.6));
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j)
      for (int k = 0; k < n; ++k) {
        Point const p = grid->location(i, j, k);
        grid->set_value(i, j, k, std::sqrt(p.x() * p.x() + p.y() * p.y() + p.z() * p.z()));
      }
  structmath::MarchingContourer const contourer(grid, state.range(1) != 0);
  for (auto _ : state) {
    auto surface = contourer.surface(1.0);
    surface->tidy();
    auto const topology = surface->topology();
    benchmark::DoNotOptimize(surface->area());
    if (topology.closed()) benchmark::DoNotOptimize(surface->enclosed_volume());
  }
  state.SetLabel(state.range(1) != 0 ? "tetrahedra" : "cubes");
}
BENCHMARK(BM_ContourTidyMeasure)->Args({128, 0})->Args({128, 1})->Unit(benchmark::kMillisecond);

}  // namespace
