// SPDX-License-Identifier: MIT
// Tests of Graph and shortest_path, and of the molecule fixtures and comparison helpers.
#include "structmath/graph/graph.hpp"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "graph_random.hpp"
#include "support/expect_throw.hpp"
#include "support/graph_comparisons.hpp"
#include "support/graph_fixtures.hpp"

namespace structmath {
namespace {

using Edges = std::vector<std::pair<int, int>>;
using Nodes = std::vector<int>;

TEST(Graph, ReportsNodesNeighboursAndEdgesInAscendingOrder) {
  Graph g;  // 30 - 10 - 20, 10 - 40, and a lone 50
  for (int node : {30, 10, 20, 40, 50}) g.add_node(node);
  for (int node : {30, 20, 40}) g.add_edge(node, 10);
  EXPECT_FALSE(g.add_node(20));
  EXPECT_FALSE(g.add_edge(10, 30));
  EXPECT_EQ(g.nnodes(), 5);
  EXPECT_EQ(g.nedges(), 3);
  EXPECT_EQ(g.nodes(), (Nodes{10, 20, 30, 40, 50}));
  EXPECT_EQ(g.neighbours(10), (Nodes{20, 30, 40}));
  EXPECT_EQ(g.edges(), (Edges{{10, 20}, {10, 30}, {10, 40}}));
  EXPECT_EQ(g.index_of(30), 2);
  ResizableArray2D<bool> const a = g.adjacency_matrix();
  EXPECT_EQ(a, graph_test::matrix(5, {{0, 1}, {0, 2}, {0, 3}}));
  EXPECT_EQ(Graph::from_adjacency(a).edges(), (Edges{{0, 1}, {0, 2}, {0, 3}}));
  EXPECT_EQ(shortest_path(g, 30, 40), (Nodes{30, 10, 40}));
  EXPECT_EQ(shortest_path(g, 20, 20), (Nodes{20}));
  EXPECT_TRUE(shortest_path(g, 30, 50).empty());

  EXPECT_TRUE(g.remove_edge(10, 20));
  EXPECT_FALSE(g.remove_edge(10, 20));
  EXPECT_TRUE(g.remove_node(10));
  EXPECT_EQ(g.nedges(), 0);
  EXPECT_EQ(g.degree(30), 0);
  using testing::expect_throw_message;
  expect_throw_message<std::invalid_argument>([&] { g.add_edge(30, 99); },
                                              "Graph::add_edge(): unknown node");
  expect_throw_message<std::invalid_argument>([&] { (void)g.neighbours(99); },
                                              "Graph::neighbours(): unknown node");
  EXPECT_THROW(g.add_edge(30, 30), std::invalid_argument);
  EXPECT_THROW((void)shortest_path(g, 30, 99), std::invalid_argument);
  EXPECT_THROW(Graph::from_adjacency(ResizableArray2D<bool>(2, 3)), std::invalid_argument);
}

TEST(Graph, ShortestPathsAreAsLongAsTheDistancesAndFollowEdges) {
  std::mt19937 rng(77);
  int const n = 12, far = 100;
  for (int trial = 0; trial < 40; ++trial) {
    ResizableArray2D<bool> const a = graph_test::random_graph(rng, n, 0.15);
    Graph const g = Graph::from_adjacency(a);
    ResizableArray2D<int> d(n, n);  // distances by Floyd-Warshall
    for (int i = 0; i < n; ++i) {
      for (int k = 0; k < n; ++k) d[i][k] = i == k ? 0 : a[i][k] ? 1 : far;
    }
    for (int m = 0; m < n; ++m) {
      for (int i = 0; i < n; ++i) {
        for (int k = 0; k < n; ++k) d[i][k] = std::min(d[i][k], d[i][m] + d[m][k]);
      }
    }
    for (int s = 0; s < n; ++s) {
      for (int t = 0; t < n; ++t) {
        Nodes const path = shortest_path(g, s, t);
        ASSERT_EQ(static_cast<int>(path.size()), d[s][t] >= far ? 0 : d[s][t] + 1);
        if (path.empty()) continue;
        EXPECT_TRUE(path.front() == s && path.back() == t);
        for (std::size_t k = 1; k < path.size(); ++k) EXPECT_TRUE(g.has_edge(path[k - 1], path[k]));
      }
    }
  }
}

TEST(Graph, MoleculeFixturesHaveTheirFormulaeAndBonds) {
  struct Expected {
    testing::MoleculeGraph molecule;
    int atoms, bonds, carbons;
  };
  for (auto const& [molecule, atoms, bonds, carbons] :
       {Expected{testing::benzene(), 12, 12, 6}, Expected{testing::cyclohexane(), 18, 18, 6},
        Expected{testing::naphthalene(), 18, 19, 10}, Expected{testing::carbon_chain(4), 4, 3, 4},
        Expected{testing::carbon_star(4), 5, 4, 5}, Expected{testing::empty_molecule(), 0, 0, 0}}) {
    SCOPED_TRACE(molecule.name);
    EXPECT_EQ(molecule.natoms(), atoms);
    EXPECT_EQ(molecule.graph.nedges(), bonds);
    EXPECT_EQ(testing::heavy_atoms(molecule).natoms(), carbons);
    for (int i = 0; i < molecule.natoms(); ++i) {
      EXPECT_LE(molecule.graph.degree(i), molecule.elements[std::size_t(i)] == "H" ? 1 : 4);
    }
  }
  // The ring-fusion carbons of naphthalene.
  Graph const skeleton = testing::heavy_atoms(testing::naphthalene()).graph;
  EXPECT_EQ(skeleton.neighbours(8), (Nodes{3, 4, 9}));
  EXPECT_EQ(skeleton.neighbours(9), (Nodes{0, 7, 8}));
}

TEST(ComparisonHelpers, ReportFailuresWithTheOffendingValues) {
  using testing::test_vectors_equivalence;
  Nodes const values{3, 1, 2, 1};
  EXPECT_TRUE(testing::test_contains(values, 2));
  EXPECT_FALSE(testing::test_contains(values, 5));
  EXPECT_TRUE(test_vectors_equivalence(values, Nodes{1, 1, 2, 3}));
  EXPECT_FALSE(test_vectors_equivalence(values, Nodes{1, 2, 3}));
  EXPECT_FALSE(test_vectors_equivalence(values, Nodes{1, 2, 2, 3}));

  using Points = std::vector<std::array<double, 3>>;
  Points const a{{0.0, 1.0, 2.0}, {3.0, 4.0, 5.0}};
  EXPECT_TRUE(testing::test_compare_points_vector(a, Points{{0, 1, 2}, {3, 4, 5 + 1e-8}}, 1e-7));
  auto const result = testing::test_compare_points_vector(a, Points{{0, 1, 2}, {3, 4.1, 5}}, 1e-7);
  EXPECT_FALSE(result);
  EXPECT_NE(std::string(result.message()).find("point 1 coordinate 1"), std::string::npos);
  EXPECT_FALSE(testing::test_compare_points_vector(a, Points{}, 1.0));
  EXPECT_NONFATAL_FAILURE(testing::TestSuiteHelpers::log_error("bad clique"), "bad clique");
}

}  // namespace
}  // namespace structmath
