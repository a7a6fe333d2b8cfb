// SPDX-License-Identifier: MIT
// Tests of BronKerbosch: correspondence graph, both clique searches against brute force, logging.
#include "structmath/graph/bron_kerbosch.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "graph_random.hpp"
#include "support/graph_comparisons.hpp"
#include "support/graph_fixtures.hpp"
#include "support/test_support.hpp"

namespace structmath {
namespace {

using Pairs = std::vector<std::pair<int, int>>;

ResizableArray2D<bool> matrix(int n, Pairs const& edges) {
  ResizableArray2D<bool> a(n, n, false);
  for (auto const& [i, k] : edges) a[i][k] = a[k][i] = true;
  return a;
}

bool connected_in(ResizableArray2D<bool> const& a, std::vector<int> const& nodes) {
  if (nodes.empty()) return true;
  std::vector<int> reached{nodes.front()};
  for (std::size_t r = 0; r < reached.size(); ++r) {
    for (int other : nodes) {
      if (a[reached[r]][other] &&
          std::find(reached.begin(), reached.end(), other) == reached.end()) {
        reached.push_back(other);
      }
    }
  }
  return reached.size() == nodes.size();
}

// Every injective partial map of graph 1 into graph 2 that keeps both edges and
// non-edges, tallied by size, separately for those whose graph-1 nodes are connected.
struct BruteForce {
  ResizableArray2D<bool> const& a;
  ResizableArray2D<bool> const& b;
  std::vector<int> map1, map2;  // matched nodes, in step
  std::vector<bool> used;
  int best = 0, best_connected = 0, count_best = 0, count_best_connected = 0;

  BruteForce(ResizableArray2D<bool> const& a_, ResizableArray2D<bool> const& b_)
      : a(a_), b(b_), used(static_cast<std::size_t>(b_.nrows()), false) {
    search(0);
  }

  void tally() {
    int const size = static_cast<int>(map1.size());
    if (size > best) best = size, count_best = 0;
    if (size == best) ++count_best;
    if (size > 0 && connected_in(a, map1)) {
      if (size > best_connected) best_connected = size, count_best_connected = 0;
      if (size == best_connected) ++count_best_connected;
    }
  }

  void search(int i) {
    if (i == a.nrows()) return tally();
    search(i + 1);
    for (int j = 0; j < b.nrows(); ++j) {
      if (used[static_cast<std::size_t>(j)]) continue;
      bool fits = true;
      for (std::size_t m = 0; m < map1.size() && fits; ++m) {
        fits = a[i][map1[m]] == b[j][map2[m]];
      }
      if (!fits) continue;
      used[static_cast<std::size_t>(j)] = true;
      map1.push_back(i);
      map2.push_back(j);
      search(i + 1);
      map1.pop_back();
      map2.pop_back();
      used[static_cast<std::size_t>(j)] = false;
    }
  }
};

// Checks that a clique is a common induced subgraph; returns its graph-1 nodes.
std::vector<int> check_common_subgraph(std::vector<int> const& clique,
                                       ResizableArray2D<bool> const& a,
                                       ResizableArray2D<bool> const& b) {
  auto const match = BronKerbosch::subgraph_match(clique, a, b);  // throws on a repeated node
  std::vector<int> nodes1;
  for (auto const& [i1, j1] : match->node_pairs()) {
    for (auto const& [i2, j2] : match->node_pairs()) {
      if (i1 != i2) {
        EXPECT_EQ(a[i1][i2], b[j1][j2]) << i1 << "-" << i2 << " vs " << j1 << "-" << j2;
      }
    }
    nodes1.push_back(i1);
  }
  return nodes1;
}

TEST(BronKerbosch, CorrespondenceGraphPairsNodesIMajor) {
  // Graph 1: edge 0-1 plus isolated 2. Graph 2: edge 0-1.
  ResizableArray2D<bool> const a = matrix(3, {{0, 1}});
  ResizableArray2D<bool> const b = matrix(2, {{0, 1}});
  ResizableArray2D<int> const c = BronKerbosch::create_correspondence_graph(a, b);
  ASSERT_EQ(c.nrows(), 6);
  ASSERT_EQ(c.ncols(), 6);
  // Pair p = i * 2 + j.
  EXPECT_EQ(c.element(0, 0), 1);  // same pair
  EXPECT_EQ(c.element(0, 1), 0);  // (0,0)-(0,1): node 0 of graph 1 twice
  EXPECT_EQ(c.element(0, 2), 0);  // (0,0)-(1,0): node 0 of graph 2 twice
  EXPECT_EQ(c.element(0, 3), 1);  // (0,0)-(1,1): edge in both
  EXPECT_EQ(c.element(1, 2), 1);  // (0,1)-(1,0): edge in both
  EXPECT_EQ(c.element(0, 5), 0);  // (0,0)-(2,1): non-edge in 1, edge in 2
  ResizableArray2D<bool> const b3 = matrix(3, {{0, 1}});
  ResizableArray2D<int> const c3 = BronKerbosch::create_correspondence_graph(a, b3);
  EXPECT_EQ(c3.element(0 * 3 + 2, 2 * 3 + 0), -1);  // (0,2)-(2,0): non-edge in both
  for (int p = 0; p < 9; ++p) {
    for (int q = 0; q < 9; ++q) EXPECT_EQ(c3.element(p, q), c3.element(q, p));
  }
  EXPECT_THROW(BronKerbosch::create_correspondence_graph(ResizableArray2D<bool>(2, 3), b),
               std::invalid_argument);
}

TEST(BronKerbosch, HandWorkedMatches) {
  ResizableArray2D<bool> const single(1, 1, false);
  for (auto type : {Subgraph::CONNECTED, Subgraph::DISCONNECTED}) {
    auto const match = BronKerbosch::maximum_common_subgraph(single, single, type);
    ASSERT_TRUE(match);
    EXPECT_EQ(match->node_pairs(), (Pairs{{0, 0}}));
  }
  EXPECT_EQ(BronKerbosch::create_correspondence_graph(single, single),
            ResizableArray2D<int>(1, 1, 1));

  // Two triangles: all six node matchings, each of size 3.
  ResizableArray2D<bool> const triangle = matrix(3, {{0, 1}, {1, 2}, {0, 2}});
  ResizableArray2D<int> const ct = BronKerbosch::create_correspondence_graph(triangle, triangle);
  for (auto type : {Subgraph::CONNECTED, Subgraph::DISCONNECTED}) {
    CliqueList const cliques = BronKerbosch::find_cliques(ct, type, 10, 3);
    ASSERT_EQ(cliques->size(), 6u) << type;
    std::set<std::vector<int>> distinct;
    for (auto const& clique : *cliques) {
      EXPECT_EQ(clique->size(), 3u);
      std::vector<int> sorted = *clique;
      std::sort(sorted.begin(), sorted.end());
      distinct.insert(sorted);
    }
    EXPECT_EQ(distinct.size(), 6u);
  }

  // A path of three against a triangle: the path's end-to-end non-edge has no
  // counterpart, so only an edge is common.
  ResizableArray2D<bool> const path = matrix(3, {{0, 1}, {1, 2}});
  for (auto type : {Subgraph::CONNECTED, Subgraph::DISCONNECTED}) {
    auto const match = BronKerbosch::maximum_common_subgraph(path, triangle, type);
    ASSERT_TRUE(match);
    EXPECT_EQ(match->size(), 2);
    check_common_subgraph({match->node_pairs()[0].first * 3 + match->node_pairs()[0].second,
                           match->node_pairs()[1].first * 3 + match->node_pairs()[1].second},
                          path, triangle);
  }

  // Two isolated edges against one edge plus an isolated node: the disconnected
  // match may use the isolated node, the connected one may not.
  ResizableArray2D<bool> const two_edges = matrix(4, {{0, 1}, {2, 3}});
  ResizableArray2D<bool> const edge_and_node = matrix(3, {{0, 1}});
  EXPECT_EQ(BronKerbosch::maximum_common_subgraph(two_edges, edge_and_node, Subgraph::DISCONNECTED)
                ->size(),
            3);
  EXPECT_EQ(
      BronKerbosch::maximum_common_subgraph(two_edges, edge_and_node, Subgraph::CONNECTED)->size(),
      2);
}

TEST(BronKerbosch, EmptyGraphGivesNullMatchAndUnknownTypeRaisesNullHandleError) {
  ResizableArray2D<bool> const empty;
  ResizableArray2D<bool> const triangle = matrix(3, {{0, 1}, {1, 2}, {0, 2}});
  for (auto type : {Subgraph::CONNECTED, Subgraph::DISCONNECTED}) {
    EXPECT_FALSE(BronKerbosch::maximum_common_subgraph(empty, triangle, type));
    EXPECT_FALSE(BronKerbosch::maximum_common_subgraph(triangle, empty, type));
  }
  auto const unknown = static_cast<Subgraph::SubgraphType>(2);
  EXPECT_FALSE(BronKerbosch::find_cliques(ResizableArray2D<int>(1, 1, 1), unknown, 10, 1));
  try {
    BronKerbosch::maximum_common_subgraph(triangle, triangle, unknown);
    FAIL() << "no exception";
  } catch (std::runtime_error const& e) {
    EXPECT_STREQ(e.what(), "THandle: dereferenced an empty handle");
  }
  EXPECT_THROW(BronKerbosch::find_cliques(ResizableArray2D<int>(2, 1), Subgraph::CONNECTED, 10, 2),
               std::invalid_argument);
  EXPECT_THROW(BronKerbosch::subgraph_match({0, 9}, triangle, triangle), std::invalid_argument);
}

TEST(BronKerbosch, KeepsAtMostTheRequestedNumberOfLargestCliques) {
  // Four isolated nodes each: 4! = 24 largest cliques, of which ten are kept.
  ResizableArray2D<bool> const none(4, 4, false);
  ResizableArray2D<int> const c = BronKerbosch::create_correspondence_graph(none, none);
  testing::LogCapture capture(3, 0);
  CliqueList const cliques = BronKerbosch::find_cliques(c, Subgraph::DISCONNECTED, 10, 4);
  ASSERT_EQ(cliques->size(), 10u);
  std::set<std::vector<int>> distinct;
  for (auto const& clique : *cliques) {
    EXPECT_EQ(clique->size(), 4u);
    distinct.insert(*clique);
  }
  EXPECT_EQ(distinct.size(), 10u);
  std::string const text = capture.text();
  std::size_t records = 0;
  for (std::size_t at = text.find("add_solution"); at != std::string::npos;
       at = text.find("add_solution", at + 1)) {
    ++records;
  }
  EXPECT_EQ(records, 24u);
  EXPECT_NE(text.find("BronKerbosch add_solution() n cliques: 10 new clique size: 4 last "
                      "clique size: 4\n"),
            std::string::npos);
  EXPECT_EQ(BronKerbosch::find_cliques(c, Subgraph::CONNECTED, 3, 4)->size(), 3u);
  EXPECT_EQ(BronKerbosch::find_cliques(c, Subgraph::DISCONNECTED, 0, 4)->size(), 0u);
}

TEST(BronKerbosch, ConnectedSearchStopsGrowingAtTheSizeBound) {
  ResizableArray2D<bool> const path = matrix(4, {{0, 1}, {1, 2}, {2, 3}});
  ResizableArray2D<int> const c = BronKerbosch::create_correspondence_graph(path, path);
  EXPECT_EQ(BronKerbosch::find_cliques(c, Subgraph::CONNECTED, 10, 4)->front()->size(), 4u);
  CliqueList const bounded = BronKerbosch::find_cliques(c, Subgraph::CONNECTED, 10, 2);
  ASSERT_FALSE(bounded->empty());
  for (auto const& clique : *bounded) EXPECT_EQ(clique->size(), 2u);
  EXPECT_TRUE(BronKerbosch::find_cliques(c, Subgraph::CONNECTED, 10, 0)->empty());
}

void compare_with_brute_force(std::mt19937& rng, int trials, int min_size, int max_size,
                              double min_density, double max_density) {
  std::uniform_int_distribution<int> size(min_size, max_size);
  std::uniform_real_distribution<double> density(min_density, max_density);
  for (int trial = 0; trial < trials; ++trial) {
    ResizableArray2D<bool> const a = graph_test::random_graph(rng, size(rng), density(rng));
    ResizableArray2D<bool> const b = graph_test::random_graph(rng, size(rng), density(rng));
    BruteForce const brute(a, b);
    ResizableArray2D<int> const c = BronKerbosch::create_correspondence_graph(a, b);
    int const bound = std::min(a.nrows(), b.nrows());
    SCOPED_TRACE("trial " + std::to_string(trial));

    CliqueList const loose = BronKerbosch::find_cliques(c, Subgraph::DISCONNECTED, 10, bound);
    ASSERT_EQ(static_cast<int>(loose->size()), std::min(10, brute.count_best));
    std::set<std::vector<int>> distinct;
    for (auto const& clique : *loose) {
      EXPECT_EQ(static_cast<int>(clique->size()), brute.best);
      check_common_subgraph(*clique, a, b);
      std::vector<int> sorted = *clique;
      std::sort(sorted.begin(), sorted.end());
      distinct.insert(sorted);
    }
    EXPECT_EQ(distinct.size(), loose->size());

    CliqueList const tight = BronKerbosch::find_cliques(c, Subgraph::CONNECTED, 10, bound);
    ASSERT_EQ(static_cast<int>(tight->size()), std::min(10, brute.count_best_connected));
    distinct.clear();
    for (auto const& clique : *tight) {
      EXPECT_EQ(static_cast<int>(clique->size()), brute.best_connected);
      EXPECT_TRUE(connected_in(a, check_common_subgraph(*clique, a, b)));
      std::vector<int> sorted = *clique;
      std::sort(sorted.begin(), sorted.end());
      distinct.insert(sorted);
    }
    EXPECT_EQ(distinct.size(), tight->size());
  }
}

TEST(BronKerbosch, SearchesAgreeWithBruteForceOnRandomGraphs) {
  std::mt19937 rng(20260101);
  // Sparse graphs give many d-edges, where connected cliques must be reached
  // through nodes the pivot would skip.
  compare_with_brute_force(rng, 300, 3, 7, 0.1, 0.5);
  compare_with_brute_force(rng, 100, 2, 6, 0.4, 0.95);
}

TEST(BronKerbosch, MoleculeSkeletons) {
  auto const ring = testing::heavy_atoms(testing::benzene()).adjacency();
  auto const fused = testing::heavy_atoms(testing::naphthalene()).adjacency();
  auto const chain = testing::carbon_chain(5).adjacency();
  auto const star = testing::carbon_star(4).adjacency();
  EXPECT_EQ(BronKerbosch::maximum_common_subgraph(ring, fused, Subgraph::CONNECTED)->size(), 6);
  // A chain of five fits in the ring as an induced path of five.
  EXPECT_EQ(BronKerbosch::maximum_common_subgraph(chain, ring, Subgraph::CONNECTED)->size(), 5);
  // The star shares only a three-atom bend with the chain, but two leaves more
  // when pieces may be apart.
  EXPECT_EQ(BronKerbosch::maximum_common_subgraph(star, chain, Subgraph::CONNECTED)->size(), 3);
  EXPECT_EQ(BronKerbosch::maximum_common_subgraph(star, chain, Subgraph::DISCONNECTED)->size(), 3);
}

TEST(BronKerbosch, LogsTheSearchAtLevelThree) {
  ResizableArray2D<bool> const single(1, 1, false);
  {
    testing::LogCapture capture(3, 0);
    BronKerbosch::maximum_common_subgraph(single, single, Subgraph::DISCONNECTED);
    EXPECT_EQ(capture.text(),
              "BronKerbosch::find_disconnected_cliques() connected matrix size: 1\n"
              "BronKerbosch add_solution() n cliques: 0 new clique size: 1 last clique size: 1\n"
              "BronKerbosch::maximum_common_subgraph() n_found: 1\n"
              "BronKerbosch::maximum_common_subgraph() clique_size: 1\n"
              "BronKerbosch::maximum_common_subgraph() match: \n"
              "Nodes keyed on graph 1: 0-0\n"
              "Nodes keyed on graph 2: 0-0\n");
  }
  {
    testing::LogCapture capture(3, 0);
    BronKerbosch::maximum_common_subgraph(ResizableArray2D<bool>(), single, Subgraph::CONNECTED);
    EXPECT_EQ(capture.text(),
              "BronKerbosch::find_connected_cliques() connected matrix size: 0\n"
              "BronKerbosch::maximum_common_subgraph() n_found: 0\n");
  }
  for (auto [level, minimum] : {std::pair(2, 0), std::pair(3, 4)}) {
    testing::LogCapture capture(level, minimum);
    BronKerbosch::maximum_common_subgraph(single, single, Subgraph::CONNECTED);
    EXPECT_EQ(capture.text(), "");
  }
}

}  // namespace
}  // namespace structmath
