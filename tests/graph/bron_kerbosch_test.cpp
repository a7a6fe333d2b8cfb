// SPDX-License-Identifier: MIT
// Tests of BronKerbosch: correspondence graph, both clique searches against brute force, logging.
#include "structmath/graph/bron_kerbosch.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "graph_random.hpp"
#include "support/expect_throw.hpp"
#include "support/graph_fixtures.hpp"
#include "support/test_support.hpp"

namespace structmath {
namespace {

using Matrix = ResizableArray2D<bool>;
using graph_test::matrix;
using BK = BronKerbosch;

bool connected_in(Matrix const& a, std::vector<int> const& nodes) {
  std::vector<int> reached(nodes.begin(), nodes.begin() + (nodes.empty() ? 0 : 1));
  for (std::size_t r = 0; r < reached.size(); ++r) {
    for (int other : nodes) {
      if (a[reached[r]][other] && std::count(reached.begin(), reached.end(), other) == 0) {
        reached.push_back(other);
      }
    }
  }
  return reached.size() == nodes.size();
}

// Every injective partial map of graph 1 into graph 2 that keeps both edges and
// non-edges, tallied by size, separately for those whose graph-1 nodes are connected.
struct BruteForce {
  Matrix const &a, &b;
  std::vector<int> map1, map2;  // matched nodes, in step
  int best = 0, best_connected = 0, count_best = 0, count_best_connected = 0;

  BruteForce(Matrix const& a_, Matrix const& b_) : a(a_), b(b_) { search(0); }
  static void tally(int size, int& best_size, int& count) {
    if (size > best_size) best_size = size, count = 0;
    if (size == best_size) ++count;
  }
  void search(int i) {
    if (i == a.nrows()) {
      tally(static_cast<int>(map1.size()), best, count_best);
      if (!map1.empty() && connected_in(a, map1)) {
        tally(static_cast<int>(map1.size()), best_connected, count_best_connected);
      }
      return;
    }
    search(i + 1);
    for (int j = 0; j < b.nrows(); ++j) {
      bool fits = std::count(map2.begin(), map2.end(), j) == 0;
      for (std::size_t m = 0; m < map1.size() && fits; ++m) fits = a[i][map1[m]] == b[j][map2[m]];
      if (!fits) continue;
      map1.push_back(i), map2.push_back(j);
      search(i + 1);
      map1.pop_back(), map2.pop_back();
    }
  }
};

// Checks that every clique has `size` nodes, is listed once and is a common
// induced subgraph (connected in graph 1 when asked).
void check_cliques(CliqueList const& cliques, std::size_t size, Matrix const& a, Matrix const& b,
                   bool connected) {
  std::set<std::set<int>> distinct;
  for (auto const& clique : *cliques) {
    EXPECT_EQ(clique->size(), size);
    auto const match = BK::subgraph_match(*clique, a, b);
    std::vector<int> nodes1;
    for (auto const& [i1, j1] : match->node_pairs()) {
      for (auto const& [i2, j2] : match->node_pairs()) {
        EXPECT_TRUE(i1 == i2 || a[i1][i2] == b[j1][j2])
            << i1 << "-" << i2 << " / " << j1 << "-" << j2;
      }
      nodes1.push_back(i1);
    }
    EXPECT_TRUE(!connected || connected_in(a, nodes1));
    distinct.emplace(clique->begin(), clique->end());
  }
  EXPECT_EQ(distinct.size(), cliques->size());
}

TEST(BronKerbosch, CorrespondenceGraphPairsNodesIMajor) {
  // Both graphs: edge 0-1 and a lone 2; pair (i, j) is node i * 3 + j. Entries: the
  // same pair; node 0 of graph 1 twice; node 0 of graph 2 twice; (0,0)-(1,1) and
  // (0,1)-(1,0), an edge in both; (0,0)-(1,2), an edge in one; (0,2)-(2,0), in neither.
  auto const c = BK::create_correspondence_graph(matrix(3, {{0, 1}}), matrix(3, {{0, 1}}));
  ASSERT_EQ(std::pair(c.nrows(), c.ncols()), std::pair(9, 9));
  for (auto [p, q, value] : std::vector<std::array<int, 3>>{
           {0, 0, 1}, {0, 1, 0}, {0, 3, 0}, {0, 4, 1}, {1, 3, 1}, {0, 5, 0}, {2, 6, -1}}) {
    EXPECT_EQ(c.element(p, q), value) << p << ", " << q;
    EXPECT_EQ(c.element(q, p), value) << q << ", " << p;
  }
  EXPECT_THROW(BK::create_correspondence_graph(Matrix(2, 3), Matrix(2, 2)), std::invalid_argument);
}

TEST(BronKerbosch, EdgeCasesAndBadInput) {
  Matrix const empty, single(1, 1, false), triangle = matrix(3, {{0, 1}, {1, 2}, {0, 2}});
  for (auto type : {Subgraph::CONNECTED, Subgraph::DISCONNECTED}) {
    EXPECT_EQ(BK::maximum_common_subgraph(single, single, type)->node_pairs(),
              (std::vector<std::pair<int, int>>{{0, 0}}));
    EXPECT_FALSE(BK::maximum_common_subgraph(empty, triangle, type));
    EXPECT_FALSE(BK::maximum_common_subgraph(triangle, empty, type));
    EXPECT_THROW(BK::find_cliques(ResizableArray2D<int>(2, 1), type, 10, 2), std::invalid_argument);
  }
  auto const unknown = static_cast<Subgraph::SubgraphType>(2);
  EXPECT_FALSE(BK::find_cliques(ResizableArray2D<int>(1, 1, 1), unknown, 10, 1));
  testing::expect_throw_message<std::runtime_error>(
      [&] { BK::maximum_common_subgraph(triangle, triangle, unknown); },
      "THandle: dereferenced an empty handle");
  EXPECT_THROW(BK::subgraph_match({0, 9}, triangle, triangle), std::invalid_argument);
}

TEST(BronKerbosch, KeepsAtMostTheRequestedNumberOfCliquesUpToTheSizeBound) {
  // Four lone nodes each: 4! = 24 largest cliques, each recorded, ten kept.
  Matrix const none(4, 4, false);
  auto const c = BK::create_correspondence_graph(none, none);
  testing::LogCapture capture(3, 0);
  CliqueList const cliques = BK::find_cliques(c, Subgraph::DISCONNECTED, 10, 4);
  ASSERT_EQ(cliques->size(), 10u);
  check_cliques(cliques, 4, none, none, false);
  std::string const text = capture.text();
  EXPECT_NE(text.find("BronKerbosch add_solution() n cliques: 10 new clique size: 4 last "
                      "clique size: 4\n"),
            std::string::npos);
  std::size_t records = 0;
  for (std::size_t at = 0; (at = text.find("add_solution", at)) != std::string::npos; ++at) {
    ++records;
  }
  EXPECT_EQ(records, 24u);
  EXPECT_EQ(BK::find_cliques(c, Subgraph::CONNECTED, 3, 4)->size(), 3u);
  EXPECT_EQ(BK::find_cliques(c, Subgraph::DISCONNECTED, 0, 4)->size(), 0u);

  // The connected search stops growing at the size bound.
  Matrix const path = matrix(4, {{0, 1}, {1, 2}, {2, 3}});
  auto const cp = BK::create_correspondence_graph(path, path);
  EXPECT_EQ(BK::find_cliques(cp, Subgraph::CONNECTED, 10, 4)->front()->size(), 4u);
  CliqueList const bounded = BK::find_cliques(cp, Subgraph::CONNECTED, 10, 2);
  ASSERT_FALSE(bounded->empty());
  check_cliques(bounded, 2, path, path, true);
  EXPECT_TRUE(BK::find_cliques(cp, Subgraph::CONNECTED, 10, 0)->empty());
}

TEST(BronKerbosch, SearchesAgreeWithBruteForceOnRandomGraphs) {
  std::mt19937 rng(20260101);
  // Sparse graphs give many d-edges, where connected cliques must be reached
  // through nodes the pivot would skip; dense ones give many c-edges.
  for (auto [trials, min_n, max_n, min_d, max_d] :
       {std::tuple(300, 3, 7, 0.1, 0.5), std::tuple(100, 2, 6, 0.4, 0.95)}) {
    std::uniform_int_distribution<int> size(min_n, max_n);
    std::uniform_real_distribution<double> density(min_d, max_d);
    for (int trial = 0; trial < trials; ++trial) {
      SCOPED_TRACE("trial " + std::to_string(trial));
      Matrix const a = graph_test::random_graph(rng, size(rng), density(rng));
      Matrix const b = graph_test::random_graph(rng, size(rng), density(rng));
      BruteForce const brute(a, b);
      ResizableArray2D<int> const c = BK::create_correspondence_graph(a, b);
      int const bound = std::min(a.nrows(), b.nrows());
      CliqueList const loose = BK::find_cliques(c, Subgraph::DISCONNECTED, 10, bound);
      ASSERT_EQ(static_cast<int>(loose->size()), std::min(10, brute.count_best));
      check_cliques(loose, static_cast<std::size_t>(brute.best), a, b, false);
      CliqueList const tight = BK::find_cliques(c, Subgraph::CONNECTED, 10, bound);
      ASSERT_EQ(static_cast<int>(tight->size()), std::min(10, brute.count_best_connected));
      check_cliques(tight, static_cast<std::size_t>(brute.best_connected), a, b, true);
    }
  }
}

TEST(BronKerbosch, MoleculeSkeletons) {
  auto const size = [](testing::MoleculeGraph const& a, testing::MoleculeGraph const& b) {
    return BK::maximum_common_subgraph(a.adjacency(), b.adjacency(), Subgraph::CONNECTED)->size();
  };
  auto const ring = testing::heavy_atoms(testing::benzene());
  EXPECT_EQ(size(ring, testing::heavy_atoms(testing::naphthalene())), 6);
  EXPECT_EQ(size(testing::carbon_chain(5), ring), 5);                     // an induced path of five
  EXPECT_EQ(size(testing::carbon_star(4), testing::carbon_chain(5)), 3);  // only a bend of three
}

TEST(BronKerbosch, LogsTheSearchAtLevelThree) {
  Matrix const single(1, 1, false);
  auto const run = [&](Matrix const& a, Subgraph::SubgraphType type, int level, int minimum) {
    testing::LogCapture capture(level, minimum);
    BK::maximum_common_subgraph(a, single, type);
    return capture.text();
  };
  EXPECT_EQ(run(single, Subgraph::DISCONNECTED, 3, 0),
            "BronKerbosch::find_disconnected_cliques() connected matrix size: 1\n"
            "BronKerbosch add_solution() n cliques: 0 new clique size: 1 last clique size: 1\n"
            "BronKerbosch::maximum_common_subgraph() n_found: 1\n"
            "BronKerbosch::maximum_common_subgraph() clique_size: 1\n"
            "BronKerbosch::maximum_common_subgraph() match: \n"
            "Nodes keyed on graph 1: 0-0\n"
            "Nodes keyed on graph 2: 0-0\n");
  EXPECT_EQ(run(Matrix(), Subgraph::CONNECTED, 3, 0),
            "BronKerbosch::find_connected_cliques() connected matrix size: 0\n"
            "BronKerbosch::maximum_common_subgraph() n_found: 0\n");
  EXPECT_EQ(run(single, Subgraph::CONNECTED, 2, 0), "");
  EXPECT_EQ(run(single, Subgraph::CONNECTED, 3, 4), "");
}

}  // namespace
}  // namespace structmath
