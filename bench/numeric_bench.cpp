// SPDX-License-Identifier: MIT
// Benchmarks of the numeric core: eigen-decomposition, inversion and products, with
// the same work through Eigen where it is installed.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "structmath/numeric/linear_algebra.hpp"
#include "structmath/numeric/matrix.hpp"

#ifdef STRUCTMATH_HAVE_EIGEN
#include <Eigen/Dense>
#endif

namespace {

using structmath::Matrix3D;
using structmath::Vector3D;

constexpr std::size_t batch = 1024;

std::vector<Matrix3D> random_matrices(bool symmetric) {
  std::mt19937_64 engine(42);
  std::uniform_real_distribution<double> draw(-10.0, 10.0);
  std::vector<Matrix3D> out;
  while (out.size() < batch) {
    Matrix3D m(0.0);
    for (unsigned r = 1; r <= 3; ++r) {
      for (unsigned c = 1; c <= 3; ++c) m(r, c) = draw(engine);
    }
    if (symmetric) m.make_symmetric();
    out.push_back(m);
  }
  return out;
}

void BM_JacobiEigenSort(benchmark::State& state) {
  auto const ms = random_matrices(true);
  for (auto _ : state) {
    for (auto const& m : ms) {
      Vector3D d;
      Matrix3D v;
      structmath::Jacobi<3>(m, d, v);
      structmath::EigenSort<3>(d, v);
      benchmark::DoNotOptimize(d);
      benchmark::DoNotOptimize(v);
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * batch));
}
BENCHMARK(BM_JacobiEigenSort);

void BM_Invert(benchmark::State& state) {
  auto const ms = random_matrices(false);
  for (auto _ : state) {
    for (auto m : ms) {
      structmath::Invert(m);
      benchmark::DoNotOptimize(m);
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * batch));
}
BENCHMARK(BM_Invert);

void BM_MatrixProducts(benchmark::State& state) {
  auto const ms = random_matrices(false);
  Vector3D v(1.0, 2.0, 3.0);
  Matrix3D const eighth(0.125, 0, 0, 0, 0.125, 0, 0, 0, 0.125);
  for (auto _ : state) {
    Matrix3D acc;
    for (auto const& m : ms) {
      acc = m * acc;
      v = m * v;
      v /= v.length();
      acc = acc * eighth;
    }
    benchmark::DoNotOptimize(acc);
    benchmark::DoNotOptimize(v);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * batch));
}
BENCHMARK(BM_MatrixProducts);

#ifdef STRUCTMATH_HAVE_EIGEN

std::vector<Eigen::Matrix3d> to_eigen(std::vector<Matrix3D> const& ms) {
  std::vector<Eigen::Matrix3d> out;
  for (auto const& m : ms) {
    Eigen::Matrix3d e;
    for (unsigned r = 0; r < 3; ++r) {
      for (unsigned c = 0; c < 3; ++c) e(r, c) = m[r][c];
    }
    out.push_back(e);
  }
  return out;
}

void BM_Eigen_SelfAdjointEigenSolver(benchmark::State& state) {
  auto const ms = to_eigen(random_matrices(true));
  Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver;
  for (auto _ : state) {
    for (auto const& m : ms) {
      solver.compute(m);
      benchmark::DoNotOptimize(solver.eigenvalues());
      benchmark::DoNotOptimize(solver.eigenvectors());
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * batch));
}
BENCHMARK(BM_Eigen_SelfAdjointEigenSolver);

void BM_Eigen_Inverse(benchmark::State& state) {
  auto const ms = to_eigen(random_matrices(false));
  for (auto _ : state) {
    for (auto const& m : ms) {
      Eigen::Matrix3d inv = m.inverse();
      benchmark::DoNotOptimize(inv);
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * batch));
}
BENCHMARK(BM_Eigen_Inverse);

void BM_Eigen_MatrixProducts(benchmark::State& state) {
  auto const ms = to_eigen(random_matrices(false));
  Eigen::Vector3d v(1.0, 2.0, 3.0);
  Eigen::Matrix3d const eighth = Eigen::Matrix3d::Identity() * 0.125;
  for (auto _ : state) {
    Eigen::Matrix3d acc = Eigen::Matrix3d::Identity();
    for (auto const& m : ms) {
      acc = (m * acc).eval();
      v = m * v;
      v /= v.norm();
      acc = (acc * eighth).eval();
    }
    benchmark::DoNotOptimize(acc);
    benchmark::DoNotOptimize(v);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * batch));
}
BENCHMARK(BM_Eigen_MatrixProducts);

#endif

}  // namespace
