// SPDX-License-Identifier: MIT
// Benchmarks of the core utilities: archive streaming and number printing.
#include <benchmark/benchmark.h>

#include "structmath/core/archive.hpp"
#include "structmath/core/text_conversion.hpp"

namespace {

void BM_ArchiveWriteReadDoubles(benchmark::State& state) {
  auto const n = static_cast<int>(state.range(0));
  for (auto _ : state) {
    structmath::Archive archive;
    for (int i = 0; i < n; ++i) archive << 0.5 * i;
    double sum = 0.0;
    for (int i = 0; i < n; ++i) {
      double v = 0.0;
      archive >> v;
      sum += v;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_ArchiveWriteReadDoubles)->Arg(1000);

void BM_DoubleToString(benchmark::State& state) {
  double v = 0.1;
  for (auto _ : state) {
    benchmark::DoNotOptimize(structmath::double_to_string(v));
    v += 1.25e-3;
  }
}
BENCHMARK(BM_DoubleToString);

}  // namespace
