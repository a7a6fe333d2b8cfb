// SPDX-License-Identifier: MIT
// Benchmarks of the grid module: iso-surface contouring and point interpolation.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "structmath/grid/contourer.hpp"
#include "structmath/grid/normal_grid.hpp"

namespace {

using structmath::MarchingContourer;
using structmath::NormalGrid;
using structmath::Point;
using structmath::Vector3D;

constexpr double pi = 3.141592653589793;

/// n^3 nodes over a cube of side `side` at `origin`, filled from field(x, y, z).
template <class F>
structmath::THandle<NormalGrid> sampled_grid(int n, Point const& origin, double side, F field) {
  auto g = structmath::make_handle<NormalGrid>(n, n, n, origin, Vector3D(side, 0.0, 0.0),
                                               Vector3D(0.0, side, 0.0), Vector3D(0.0, 0.0, side));
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j)
      for (int k = 0; k < n; ++k) {
        Point const p = g->location(i, j, k);
        g->set_value(i, j, k, field(p.x(), p.y(), p.z()));
      }
  return g;
}

/// Distance from the middle of [-1.3, 1.3]^3; contoured at 1, a unit sphere.
structmath::THandle<NormalGrid> sphere(int n) {
  return sampled_grid(n, Point(-1.3, -1.3, -1.3), 2.6, [](double x, double y, double z) {
    return std::sqrt(x * x + y * y + z * z);
  });
}

/// The gyroid sin x cos y + sin y cos z + sin z cos x over two periods along each axis;
/// contoured at 0, a surface that fills the whole grid.
structmath::THandle<NormalGrid> gyroid(int n) {
  return sampled_grid(n, Point(0.0, 0.0, 0.0), 4.0 * pi, [](double x, double y, double z) {
    return std::sin(x) * std::cos(y) + std::sin(y) * std::cos(z) + std::sin(z) * std::cos(x);
  });
}

/// Writes the grid's values as a NumPy .npy file of float64, shape (nx, ny, nz), C order
/// (k fastest, as the grid stores them): the same grid for a peer in another language.
void write_npy(std::string const& path, NormalGrid const& grid) {
  std::ofstream out(path, std::ios::binary);
  std::string header = "{'descr': '<f8', 'fortran_order': False, 'shape': (" +
                       std::to_string(grid.x_steps()) + ", " + std::to_string(grid.y_steps()) +
                       ", " + std::to_string(grid.z_steps()) + "), }";
  header.append(64 - (10 + header.size() + 1) % 64, ' ');
  header += '\n';
  out << "\x93NUMPY" << '\x01' << '\x00';
  auto const length = static_cast<std::uint16_t>(header.size());
  out.put(static_cast<char>(length & 0xff)).put(static_cast<char>(length >> 8));
  out << header;
  out.write(reinterpret_cast<char const*>(grid.values().data()),
            static_cast<std::streamsize>(grid.values().size() * sizeof(double)));
}

template <class MakeGrid>
void contour(benchmark::State& state, MakeGrid make_grid, double level, char const* name) {
  int const n = static_cast<int>(state.range(0));
  bool const tetrahedra = state.range(1) != 0;
  auto const grid = make_grid(n);
  // With STRUCTMATH_BENCH_GRIDS set, the grids are written there for
  // bench/contour_vs_skimage.py.
  if (char const* dir = std::getenv("STRUCTMATH_BENCH_GRIDS")) {
    write_npy(std::string(dir) + "/" + name + "_" + std::to_string(n) + ".npy", *grid);
  }
  MarchingContourer const contourer(grid, tetrahedra);
  int triangles = 0;
  for (auto _ : state) {
    auto surface = contourer.surface(level);
    triangles = surface->triangle_count();
    benchmark::DoNotOptimize(triangles);
  }
  double const nodes = static_cast<double>(n) * n * n;
  state.counters["nodes/s"] =
      benchmark::Counter(nodes, benchmark::Counter::kIsIterationInvariantRate);
  state.counters["triangles/s"] =
      benchmark::Counter(triangles, benchmark::Counter::kIsIterationInvariantRate);
  state.counters["triangles"] = triangles;
  state.SetLabel(tetrahedra ? "tetrahedra" : "cubes");
}

void BM_ContourSphere(benchmark::State& state) { contour(state, sphere, 1.0, "sphere"); }
void BM_ContourGyroid(benchmark::State& state) { contour(state, gyroid, 0.0, "gyroid"); }

BENCHMARK(BM_ContourSphere)->ArgsProduct({{32, 64, 128}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ContourGyroid)->ArgsProduct({{32, 64, 128}, {0, 1}})->Unit(benchmark::kMillisecond);

/// Values at random points inside a 64^3 grid through the eight-node interpolator.
void BM_InterpolatePoints(benchmark::State& state) {
  auto const grid =
      sampled_grid(64, Point(-2.0, -2.0, -2.0), 4.0,
                   [](double x, double y, double z) { return std::exp(-(x * x + y * y + z * z)); });
  std::mt19937 random(7);
  std::uniform_real_distribution<double> inside(-2.0, 1.99);
  std::vector<Point> points(4096);
  for (Point& p : points) p = Point(inside(random), inside(random), inside(random));
  for (auto _ : state) {
    double sum = 0.0;
    for (Point const& p : points) sum += grid->value(p);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(points.size()));
}
BENCHMARK(BM_InterpolatePoints);

}  // namespace
