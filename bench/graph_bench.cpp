// SPDX-License-Identifier: MIT
// Benchmarks of graph matching: maximum common subgraph and ring embedding, with Boost.Graph's VF2.
#include <benchmark/benchmark.h>

#include <utility>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/graph/bron_kerbosch.hpp"
#include "structmath/graph/resizable_array_2d.hpp"
#include "structmath/graph/ullmann.hpp"

#if __has_include(<boost/graph/vf2_sub_graph_iso.hpp>)
#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/vf2_sub_graph_iso.hpp>
#define STRUCTMATH_HAVE_BOOST_GRAPH 1
#endif

namespace {

using structmath::ResizableArray2D;
using Edges = std::vector<std::pair<int, int>>;

ResizableArray2D<bool> to_matrix(int n, Edges const& edges) {
  ResizableArray2D<bool> a(n, n, false);
  for (auto const& [i, k] : edges) a[i][k] = a[k][i] = true;
  return a;
}

void add_ring(Edges& edges, std::vector<int> const& atoms) {
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    edges.emplace_back(atoms[i], atoms[(i + 1) % atoms.size()]);
  }
}

// `rings` six-rings fused in a row (acene skeleton, 4 * rings + 2 atoms) with a
// side chain of `chain` atoms on atom 0 and a two-atom branch half way along it.
Edges ring_system_with_chain(int rings, int chain, int& natoms) {
  Edges edges;
  // Rim atoms: top row 0 … rings, bottom row rings+1 … 2*rings+1; ring r uses
  // top r, r+1 and bottom r, r+1 plus one apex atom above and one below.
  int const bottom = rings + 1;
  int next = 2 * (rings + 1);
  for (int r = 0; r <= rings; ++r) edges.emplace_back(r, bottom + r);
  for (int r = 0; r < rings; ++r) {
    int const up = next++;
    int const down = next++;
    edges.emplace_back(r, up);
    edges.emplace_back(up, r + 1);
    edges.emplace_back(bottom + r, down);
    edges.emplace_back(down, bottom + r + 1);
  }
  int previous = 0;
  for (int c = 0; c < chain; ++c) {
    edges.emplace_back(previous, next);
    previous = next++;
    if (c == chain / 2) {
      edges.emplace_back(previous, next);
      edges.emplace_back(next, next + 1);
      next += 2;
    }
  }
  natoms = next;
  return edges;
}

void BM_MaximumCommonSubgraphConnected(benchmark::State& state) {
  int n1 = 0;
  int n2 = 0;
  // 3 rings + chain 6 (22 atoms) against 2 rings + chain 10 (24 atoms).
  Edges const e1 = ring_system_with_chain(3, static_cast<int>(state.range(0)), n1);
  Edges const e2 = ring_system_with_chain(2, static_cast<int>(state.range(1)), n2);
  ResizableArray2D<bool> const g1 = to_matrix(n1, e1);
  ResizableArray2D<bool> const g2 = to_matrix(n2, e2);
  int size = 0;
  for (auto _ : state) {
    auto const match =
        structmath::BronKerbosch::maximum_common_subgraph(g1, g2, structmath::Subgraph::CONNECTED);
    size = match->size();
    benchmark::DoNotOptimize(size);
  }
  state.counters["nodes1"] = n1;
  state.counters["nodes2"] = n2;
  state.counters["match"] = size;
}
BENCHMARK(BM_MaximumCommonSubgraphConnected)
    ->Args({6, 10})
    ->Args({10, 14})
    ->Unit(benchmark::kMillisecond);

void BM_MaximumCommonSubgraphDisconnected(benchmark::State& state) {
  int n1 = 0;
  int n2 = 0;
  Edges const e1 = ring_system_with_chain(2, static_cast<int>(state.range(0)), n1);
  Edges const e2 = ring_system_with_chain(1, static_cast<int>(state.range(1)), n2);
  ResizableArray2D<bool> const g1 = to_matrix(n1, e1);
  ResizableArray2D<bool> const g2 = to_matrix(n2, e2);
  int size = 0;
  for (auto _ : state) {
    auto const match = structmath::BronKerbosch::maximum_common_subgraph(
        g1, g2, structmath::Subgraph::DISCONNECTED);
    size = match->size();
    benchmark::DoNotOptimize(size);
  }
  state.counters["nodes1"] = n1;
  state.counters["nodes2"] = n2;
  state.counters["match"] = size;
}
BENCHMARK(BM_MaximumCommonSubgraphDisconnected)->Args({2, 4})->Unit(benchmark::kMillisecond);

// A chain of n − 6 atoms whose far end carries the only six-ring: the search
// has to try and abandon every chain atom before reaching the ring.
Edges chain_ending_in_ring(int n) {
  Edges edges;
  int const chain = n - 6;
  for (int i = 0; i + 1 < chain; ++i) edges.emplace_back(i, i + 1);
  add_ring(edges, {chain, chain + 1, chain + 2, chain + 3, chain + 4, chain + 5});
  edges.emplace_back(chain - 1, chain);
  return edges;
}

Edges six_ring() {
  Edges edges;
  add_ring(edges, {0, 1, 2, 3, 4, 5});
  return edges;
}

void BM_UllmannRingInChain(benchmark::State& state) {
  int const n = static_cast<int>(state.range(0));
  auto const pattern = structmath::make_handle<ResizableArray2D<bool>>(to_matrix(6, six_ring()));
  auto const target =
      structmath::make_handle<ResizableArray2D<bool>>(to_matrix(n, chain_ending_in_ring(n)));
  auto const candidates = structmath::make_handle<ResizableArray2D<bool>>(6, n, true);
  bool found = false;
  for (auto _ : state) {
    candidates->fill(true);
    structmath::Ullmann search;
    search.create(pattern, target, candidates);
    found = search.find();
    benchmark::DoNotOptimize(found);
  }
  if (!found) state.SkipWithError("ring not found");
}
BENCHMARK(BM_UllmannRingInChain)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);

#ifdef STRUCTMATH_HAVE_BOOST_GRAPH
using BoostGraph = boost::adjacency_list<boost::vecS, boost::vecS, boost::undirectedS>;

BoostGraph to_boost(int n, Edges const& edges) {
  BoostGraph g(static_cast<std::size_t>(n));
  for (auto const& [i, k] : edges) {
    boost::add_edge(static_cast<std::size_t>(i), static_cast<std::size_t>(k), g);
  }
  return g;
}

struct StopAtFirst {
  bool* found;
  template <class Map1, class Map2>
  bool operator()(Map1 const&, Map2 const&) const {
    *found = true;
    return false;
  }
};

void BM_BoostVf2RingInChain(benchmark::State& state) {
  int const n = static_cast<int>(state.range(0));
  BoostGraph const pattern = to_boost(6, six_ring());
  BoostGraph const target = to_boost(n, chain_ending_in_ring(n));
  bool found = false;
  for (auto _ : state) {
    found = false;
    boost::vf2_subgraph_mono(pattern, target, StopAtFirst{&found});
    benchmark::DoNotOptimize(found);
  }
  if (!found) state.SkipWithError("ring not found");
}
BENCHMARK(BM_BoostVf2RingInChain)->Arg(100)->Arg(300)->Arg(1000)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
