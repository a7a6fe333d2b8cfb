// SPDX-License-Identifier: MIT
// Graph matching against its peers on the same graphs: maximum common subgraph by clique
// search against Cliquer (igraph_largest_weighted_cliques, unit weights) on the same
// correspondence graph, and subgraph embedding against Boost.Graph's VF2.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/graph/bron_kerbosch.hpp"
#include "structmath/graph/clique_search.hpp"
#include "structmath/graph/resizable_array_2d.hpp"
#include "structmath/graph/ullmann.hpp"

#if __has_include(<boost/graph/vf2_sub_graph_iso.hpp>)
#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/vf2_sub_graph_iso.hpp>
#define STRUCTMATH_HAVE_BOOST_GRAPH 1
#endif
#ifdef STRUCTMATH_HAVE_IGRAPH
#include <igraph.h>
#endif

namespace {

using structmath::ResizableArray2D;
using Edges = std::vector<std::pair<int, int>>;

ResizableArray2D<bool> to_matrix(int n, Edges const& edges) {
  ResizableArray2D<bool> a(n, n, false);
  for (auto const& [i, k] : edges) a[i][k] = a[k][i] = true;
  return a;
}

// A molecule-like graph of n atoms: a random tree of degree at most 4 that mostly grows
// chains, then ring closures of five or six atoms between atoms that still have room.
Edges molecule_like(int n, unsigned seed) {
  std::mt19937 rng(seed);
  Edges edges;
  std::vector<int> degree(static_cast<std::size_t>(n), 0);
  std::vector<std::vector<int>> next(static_cast<std::size_t>(n));
  auto join = [&](int a, int b) {
    edges.emplace_back(a, b);
    ++degree[static_cast<std::size_t>(a)];
    ++degree[static_cast<std::size_t>(b)];
    next[static_cast<std::size_t>(a)].push_back(b);
    next[static_cast<std::size_t>(b)].push_back(a);
  };
  std::bernoulli_distribution chain(0.6);
  for (int i = 1; i < n; ++i) {
    int j = i - 1;
    if (!chain(rng) || degree[static_cast<std::size_t>(j)] >= 3) {
      std::uniform_int_distribution<int> any(0, i - 1);
      do {
        j = any(rng);
      } while (degree[static_cast<std::size_t>(j)] >= 3);
    }
    join(j, i);
  }
  std::uniform_int_distribution<int> atom(0, n - 1);
  for (int tries = 0; tries < n; ++tries) {
    int const a = atom(rng);
    if (degree[static_cast<std::size_t>(a)] >= 3) continue;
    // Atoms four or five bonds away close a ring of five or six.
    std::vector<int> distance(static_cast<std::size_t>(n), -1);
    std::vector<int> queue{a};
    distance[static_cast<std::size_t>(a)] = 0;
    for (std::size_t k = 0; k < queue.size(); ++k) {
      for (int b : next[static_cast<std::size_t>(queue[k])]) {
        if (distance[static_cast<std::size_t>(b)] < 0) {
          distance[static_cast<std::size_t>(b)] = distance[static_cast<std::size_t>(queue[k])] + 1;
          queue.push_back(b);
        }
      }
    }
    for (int b : queue) {
      int const d = distance[static_cast<std::size_t>(b)];
      if ((d == 4 || d == 5) && degree[static_cast<std::size_t>(b)] < 3) {
        join(a, b);
        break;
      }
    }
    if (static_cast<int>(edges.size()) >= n - 1 + n / 6) break;
  }
  return edges;
}

// `rings` six-rings fused in a row (acene skeleton, 4 * rings + 2 atoms) with a side chain
// of `chain` atoms on atom 0 and a two-atom branch half way along it: 4 * rings + chain + 4
// atoms in all.
Edges ring_system_with_chain(int rings, int chain, int& natoms) {
  Edges edges;
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

// The pairs of the measurements. range(0), range(1): atoms of the two graphs, random and
// molecule-like; or, when range(2) is 1, ring systems with chains: (rings, chain) = (2, 2)
// and (1, 4) for 14 x 12 atoms, (2, 4) and (1, 6) for 16 x 14, (3, 6) and (2, 10) for
// 22 x 22, (3, 10) and (2, 14) for 26 x 26.
ResizableArray2D<bool> ring_graph(int atoms, bool first) {
  static std::pair<int, int> const shapes[][2] = {
      {{2, 2}, {1, 4}}, {{2, 4}, {1, 6}}, {{3, 6}, {2, 10}}, {{3, 10}, {2, 14}}};
  int const row = atoms == 14 ? 0 : atoms == 16 ? 1 : atoms == 22 ? 2 : 3;
  auto const [rings, chain] = shapes[row][first ? 0 : 1];
  int n = 0;
  Edges const edges = ring_system_with_chain(rings, chain, n);
  return to_matrix(n, edges);
}
ResizableArray2D<bool> graph1(benchmark::State const& state) {
  int const n = static_cast<int>(state.range(0));
  if (state.range(2) == 1) return ring_graph(n, true);
  return to_matrix(n, molecule_like(n, 101U + static_cast<unsigned>(n)));
}
ResizableArray2D<bool> graph2(benchmark::State const& state) {
  int const n = static_cast<int>(state.range(1));
  if (state.range(2) == 1) return ring_graph(static_cast<int>(state.range(0)), false);
  return to_matrix(n, molecule_like(n, 202U + static_cast<unsigned>(n)));
}

// The pairs, as (atoms 1, atoms 2, ring systems).
void disconnected_pairs(benchmark::internal::Benchmark* b) {
  b->Args({12, 10, 0})->Args({14, 12, 0})->Args({16, 14, 0})->Args({14, 12, 1})->Args({16, 14, 1});
}
void connected_pairs(benchmark::internal::Benchmark* b) {
  b->Args({14, 14, 0})->Args({16, 16, 0})->Args({18, 18, 0})->Args({22, 22, 1})->Args({26, 26, 1});
}

void clique_search(benchmark::State& state, structmath::Subgraph::SubgraphType type) {
  auto const a = graph1(state);
  auto const b = graph2(state);
  auto const c = structmath::BronKerbosch::create_correspondence_graph(a, b);
  int const bound = std::min(a.nrows(), b.nrows());
  std::size_t size = 0;
  for (auto _ : state) {
    auto const cliques = structmath::BronKerbosch::find_cliques(c, type, 10, bound);
    size = cliques->empty() ? 0 : cliques->front()->size();
    benchmark::DoNotOptimize(size);
  }
  state.counters["clique"] = static_cast<double>(size);
  state.counters["nodes"] = c.nrows();
}

void BM_CliquesDisconnected(benchmark::State& state) {
  clique_search(state, structmath::Subgraph::DISCONNECTED);
}
BENCHMARK(BM_CliquesDisconnected)->Apply(disconnected_pairs)->Unit(benchmark::kMillisecond);

void BM_CliquesConnected(benchmark::State& state) {
  clique_search(state, structmath::Subgraph::CONNECTED);
}
BENCHMARK(BM_CliquesConnected)->Apply(connected_pairs)->Unit(benchmark::kMillisecond);

// The whole maximum_common_subgraph call, correspondence graph included.
void BM_MaximumCommonSubgraph(benchmark::State& state) {
  auto const a = graph1(state);
  auto const b = graph2(state);
  auto const type =
      state.range(3) != 0 ? structmath::Subgraph::CONNECTED : structmath::Subgraph::DISCONNECTED;
  int size = 0;
  for (auto _ : state) {
    size = structmath::BronKerbosch::maximum_common_subgraph(a, b, type)->size();
    benchmark::DoNotOptimize(size);
  }
  state.counters["match"] = size;
}
BENCHMARK(BM_MaximumCommonSubgraph)
    ->Args({16, 14, 1, 0})
    ->Args({26, 26, 1, 1})
    ->Unit(benchmark::kMillisecond);

#ifdef STRUCTMATH_HAVE_IGRAPH
// Cliquer on the same correspondence graph: every non-zero entry an edge.
void BM_CliquerLargestCliques(benchmark::State& state) {
  auto const a = graph1(state);
  auto const b = graph2(state);
  auto const c = structmath::BronKerbosch::create_correspondence_graph(a, b);
  igraph_vector_int_t edges;
  igraph_vector_int_init(&edges, 0);
  for (int p = 0; p < c.nrows(); ++p) {
    for (int q = p + 1; q < c.nrows(); ++q) {
      if (c[p][q] != 0) {
        igraph_vector_int_push_back(&edges, p);
        igraph_vector_int_push_back(&edges, q);
      }
    }
  }
  igraph_t g;
  igraph_create(&g, &edges, c.nrows(), IGRAPH_UNDIRECTED);
  igraph_vector_t weights;
  igraph_vector_init(&weights, c.nrows());
  igraph_vector_fill(&weights, 1.0);
  igraph_vector_int_list_t cliques;
  igraph_vector_int_list_init(&cliques, 0);
  igraph_integer_t size = 0;
  for (auto _ : state) {
    igraph_largest_weighted_cliques(&g, &weights, &cliques);
    size = igraph_vector_int_size(igraph_vector_int_list_get_ptr(&cliques, 0));
    benchmark::DoNotOptimize(size);
  }
  state.counters["clique"] = static_cast<double>(size);
  state.counters["found"] = static_cast<double>(igraph_vector_int_list_size(&cliques));
  igraph_vector_int_list_destroy(&cliques);
  igraph_vector_destroy(&weights);
  igraph_destroy(&g);
  igraph_vector_int_destroy(&edges);
}
BENCHMARK(BM_CliquerLargestCliques)
    ->Apply(disconnected_pairs)
    ->Apply(connected_pairs)
    ->Unit(benchmark::kMillisecond);
#endif

// Subgraph embedding. Pattern: a six-ring at the far end of a chain (every chain atom is
// tried and abandoned first), or 12 connected atoms taken from a molecule-like target.
Edges chain_ending_in_ring(int n) {
  Edges edges;
  int const chain = n - 6;
  for (int i = 0; i + 1 < chain; ++i) edges.emplace_back(i, i + 1);
  for (int i = 0; i < 6; ++i) edges.emplace_back(chain + i, chain + (i + 1) % 6);
  edges.emplace_back(chain - 1, chain);
  return edges;
}

Edges six_ring() {
  Edges edges;
  for (int i = 0; i < 6; ++i) edges.emplace_back(i, (i + 1) % 6);
  return edges;
}

// The subgraph on the first `size` atoms reached breadth-first from atom `start`,
// renumbered in the order reached (its edges, not induced: an embedding need not be).
Edges piece_of(int n, Edges const& edges, int start, int size) {
  std::vector<std::vector<int>> next(static_cast<std::size_t>(n));
  for (auto const& [i, k] : edges) {
    next[static_cast<std::size_t>(i)].push_back(k);
    next[static_cast<std::size_t>(k)].push_back(i);
  }
  std::vector<int> order{start}, index(static_cast<std::size_t>(n), -1);
  index[static_cast<std::size_t>(start)] = 0;
  for (std::size_t k = 0; k < order.size() && static_cast<int>(order.size()) < size; ++k) {
    for (int b : next[static_cast<std::size_t>(order[k])]) {
      if (index[static_cast<std::size_t>(b)] < 0 && static_cast<int>(order.size()) < size) {
        index[static_cast<std::size_t>(b)] = static_cast<int>(order.size());
        order.push_back(b);
      }
    }
  }
  Edges piece;
  for (auto const& [i, k] : edges) {
    int const a = index[static_cast<std::size_t>(i)], b = index[static_cast<std::size_t>(k)];
    if (a >= 0 && b >= 0) piece.emplace_back(a, b);
  }
  return piece;
}

struct Embedding {
  int np = 0, nt = 0;
  Edges pattern, target;
};

// range(0): 0 ring in chain, 1 piece of a molecule; range(1): target atoms.
Embedding embedding(benchmark::State const& state) {
  Embedding e;
  e.nt = static_cast<int>(state.range(1));
  if (state.range(0) == 0) {
    e.np = 6;
    e.pattern = six_ring();
    e.target = chain_ending_in_ring(e.nt);
  } else {
    e.np = 12;
    e.target = molecule_like(e.nt, 303U + static_cast<unsigned>(e.nt));
    e.pattern = piece_of(e.nt, e.target, e.nt / 2, e.np);
  }
  return e;
}

void BM_Ullmann(benchmark::State& state) {
  Embedding const e = embedding(state);
  auto const pattern = structmath::make_handle<ResizableArray2D<bool>>(to_matrix(e.np, e.pattern));
  auto const target = structmath::make_handle<ResizableArray2D<bool>>(to_matrix(e.nt, e.target));
  auto const candidates = structmath::make_handle<ResizableArray2D<bool>>(e.np, e.nt, true);
  bool found = false;
  for (auto _ : state) {
    candidates->fill(true);
    structmath::Ullmann search;
    search.create(pattern, target, candidates);
    found = search.find();
    benchmark::DoNotOptimize(found);
  }
  if (!found) state.SkipWithError("no embedding");
}
BENCHMARK(BM_Ullmann)
    ->Args({0, 100})
    ->Args({0, 300})
    ->Args({0, 1000})
    ->Args({1, 50})
    ->Args({1, 100})
    ->Args({1, 200})
    ->Unit(benchmark::kMicrosecond);

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

void BM_BoostVf2(benchmark::State& state) {
  Embedding const e = embedding(state);
  BoostGraph const pattern = to_boost(e.np, e.pattern);
  BoostGraph const target = to_boost(e.nt, e.target);
  bool found = false;
  for (auto _ : state) {
    found = false;
    boost::vf2_subgraph_mono(pattern, target, StopAtFirst{&found});
    benchmark::DoNotOptimize(found);
  }
  if (!found) state.SkipWithError("no embedding");
}
BENCHMARK(BM_BoostVf2)
    ->Args({0, 100})
    ->Args({0, 300})
    ->Args({0, 1000})
    ->Args({1, 50})
    ->Args({1, 100})
    ->Args({1, 200})
    ->Unit(benchmark::kMicrosecond);
#endif

}  // namespace
