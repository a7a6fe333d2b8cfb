// SPDX-License-Identifier: MIT
// Benchmarks of the numeric core: eigen-decomposition, inversion, products and fraction
// arithmetic, with the same work through Eigen and Boost.Rational where they are installed.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <vector>

#include "structmath/numeric/fraction.hpp"
#include "structmath/numeric/linear_algebra.hpp"
#include "structmath/numeric/matrix.hpp"

#ifdef STRUCTMATH_HAVE_EIGEN
#include <Eigen/Dense>
#endif

#if __has_include(<boost/rational.hpp>)
#include <boost/rational.hpp>
#define STRUCTMATH_HAVE_BOOST_RATIONAL 1
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

// Mixed numbers with small parts, as fractions of crystallography and stoichiometry are:
// wholes in [-20, 20], denominators in [1, 30].
struct MixedNumber {
  int whole, numerator, denominator;
};

std::vector<MixedNumber> random_mixed_numbers() {
  std::mt19937 engine(12345);
  std::uniform_int_distribution<int> whole(-20, 20);
  std::uniform_int_distribution<int> denominator(1, 30);
  std::vector<MixedNumber> out;
  while (out.size() < batch) {
    int const d = denominator(engine);
    int const w = whole(engine);
    // The fractional part takes the sign of the whole part, as a simplified fraction has.
    int const n = std::uniform_int_distribution<int>(0, d - 1)(engine);
    out.push_back({w, w < 0 ? -n : n, d});
  }
  return out;
}

std::vector<structmath::Fraction> fractions() {
  std::vector<structmath::Fraction> out;
  for (auto const& m : random_mixed_numbers()) {
    out.emplace_back(m.whole, m.numerator, m.denominator);
  }
  return out;
}

// One sum, one product and one comparison per neighbouring pair.
void BM_FractionMix(benchmark::State& state) {
  auto const values = fractions();
  for (auto _ : state) {
    int less = 0;
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
      structmath::Fraction const sum = values[i] + values[i + 1];
      structmath::Fraction const product = values[i] * values[i + 1];
      less += sum < product;
    }
    benchmark::DoNotOptimize(less);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * (batch - 1)));
}
BENCHMARK(BM_FractionMix);

void BM_FractionMultiply(benchmark::State& state) {
  auto const values = fractions();
  for (auto _ : state) {
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
      structmath::Fraction const product = values[i] * values[i + 1];
      benchmark::DoNotOptimize(product);
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * (batch - 1)));
}
BENCHMARK(BM_FractionMultiply);

void BM_FractionAdd(benchmark::State& state) {
  auto const values = fractions();
  for (auto _ : state) {
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
      structmath::Fraction const sum = values[i] + values[i + 1];
      benchmark::DoNotOptimize(sum);
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * (batch - 1)));
}
BENCHMARK(BM_FractionAdd);

#ifdef STRUCTMATH_HAVE_BOOST_RATIONAL

using BoostRational = boost::rational<int>;

std::vector<BoostRational> boost_fractions() {
  std::vector<BoostRational> out;
  for (auto const& m : random_mixed_numbers()) {
    out.emplace_back(m.whole * m.denominator + m.numerator, m.denominator);
  }
  return out;
}

void BM_BoostRational_Mix(benchmark::State& state) {
  auto const values = boost_fractions();
  for (auto _ : state) {
    int less = 0;
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
      BoostRational const sum = values[i] + values[i + 1];
      BoostRational const product = values[i] * values[i + 1];
      less += sum < product;
    }
    benchmark::DoNotOptimize(less);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * (batch - 1)));
}
BENCHMARK(BM_BoostRational_Mix);

void BM_BoostRational_Multiply(benchmark::State& state) {
  auto const values = boost_fractions();
  for (auto _ : state) {
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
      BoostRational const product = values[i] * values[i + 1];
      benchmark::DoNotOptimize(product);
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * (batch - 1)));
}
BENCHMARK(BM_BoostRational_Multiply);

void BM_BoostRational_Add(benchmark::State& state) {
  auto const values = boost_fractions();
  for (auto _ : state) {
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
      BoostRational const sum = values[i] + values[i + 1];
      benchmark::DoNotOptimize(sum);
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * (batch - 1)));
}
BENCHMARK(BM_BoostRational_Add);

#endif

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
