// SPDX-License-Identifier: MIT
// Benchmarks of fractions, sample moments, normal tail areas and uncertain values.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "structmath/numeric/fraction.hpp"
#include "structmath/statistics/mean.hpp"
#include "structmath/statistics/normal_distribution.hpp"
#include "structmath/statistics/uncertain_value.hpp"

namespace {

using structmath::Fraction;

std::vector<Fraction> random_fractions(int n) {
  std::mt19937 engine(12345);
  std::uniform_int_distribution<int> whole(-20, 20);
  std::uniform_int_distribution<int> denominator(1, 30);
  std::vector<Fraction> values;
  values.reserve(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) {
    int const d = denominator(engine);
    values.emplace_back(whole(engine), std::uniform_int_distribution<int>(-d + 1, d - 1)(engine),
                        d);
  }
  return values;
}

// Sums of 1/k for k = 1..24: denominators grow to the lcm of 1..24 / a few.
void BM_FractionHarmonicSum(benchmark::State& state) {
  for (auto _ : state) {
    Fraction total(0);
    for (int k = 1; k <= 24; ++k) total += Fraction(1, k);
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(state.iterations() * 24);
}
BENCHMARK(BM_FractionHarmonicSum);

void BM_FractionMultiplyDivide(benchmark::State& state) {
  std::vector<Fraction> const values = random_fractions(1024);
  for (auto _ : state) {
    int hits = 0;
    for (std::size_t i = 0; i + 1 < values.size(); ++i) {
      Fraction const product = values[i] * values[i + 1];
      if (values[i + 1].sign() != 0 && product / values[i + 1] == values[i]) ++hits;
    }
    benchmark::DoNotOptimize(hits);
  }
  state.SetItemsProcessed(state.iterations() * 1023);
}
BENCHMARK(BM_FractionMultiplyDivide);

void BM_FractionCompare(benchmark::State& state) {
  std::vector<Fraction> const values = random_fractions(1024);
  for (auto _ : state) {
    int less = 0;
    for (std::size_t i = 0; i + 1 < values.size(); ++i) less += values[i] < values[i + 1];
    benchmark::DoNotOptimize(less);
  }
  state.SetItemsProcessed(state.iterations() * 1023);
}
BENCHMARK(BM_FractionCompare);

void BM_FractionPow(benchmark::State& state) {
  Fraction const base(-3, 2);
  for (auto _ : state) benchmark::DoNotOptimize(pow(base, 11));
}
BENCHMARK(BM_FractionPow);

std::vector<double> random_sample(std::size_t n) {
  std::mt19937 engine(777);
  std::normal_distribution<double> normal(3.0, 2.0);
  std::vector<double> data(n);
  for (double& x : data) x = normal(engine);
  return data;
}

void BM_MeanCalculate(benchmark::State& state) {
  std::vector<double> const data = random_sample(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    structmath::Mean const m(data);
    benchmark::DoNotOptimize(m.kurtosis());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_MeanCalculate)->Arg(1000)->Arg(100000);

std::vector<double> tail_points() {
  std::vector<double> z(4096);
  for (std::size_t i = 0; i < z.size(); ++i) z[i] = -7.0 + 14.0 * static_cast<double>(i) / 4096.0;
  return z;
}

void BM_AreaToLeft(benchmark::State& state) {
  structmath::NormalDistribution const d;
  std::vector<double> const z = tail_points();
  for (auto _ : state) {
    double total = 0.0;
    for (double x : z) total += d.area_to_left(x);
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<long>(z.size()));
}
BENCHMARK(BM_AreaToLeft);

// Baseline for the same work: the exact curve through the C library's erfc.
void BM_AreaToLeftErfcBaseline(benchmark::State& state) {
  std::vector<double> const z = tail_points();
  double const scale = 1.0 / std::sqrt(2.0);
  for (auto _ : state) {
    double total = 0.0;
    for (double x : z) total += 0.5 * std::erfc(-x * scale);
    benchmark::DoNotOptimize(total);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<long>(z.size()));
}
BENCHMARK(BM_AreaToLeftErfcBaseline);

void BM_UncertainValueParsePrint(benchmark::State& state) {
  std::string const texts[] = {"1.234(5)", "-0.5(12)", "6.02214076e23(12)", "1234(56)"};
  for (auto _ : state) {
    for (std::string const& text : texts) {
      benchmark::DoNotOptimize(structmath::UncertainValue::parse(text).to_string());
    }
  }
  state.SetItemsProcessed(state.iterations() * 4);
}
BENCHMARK(BM_UncertainValueParsePrint);

}  // namespace
