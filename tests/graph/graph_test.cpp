// SPDX-License-Identifier: MIT
// Tests of Graph and shortest_path, and of the molecule fixtures built on them.
#include "structmath/graph/graph.hpp"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

#include "graph_random.hpp"
#include "support/graph_comparisons.hpp"
#include "support/graph_fixtures.hpp"

namespace structmath {
namespace {

Graph sample() {
  // 30 - 10 - 20, 10 - 40, and a lone 50.
  Graph g;
  for (int node : {30, 10, 20, 40, 50}) g.add_node(node);
  g.add_edge(30, 10);
  g.add_edge(20, 10);
  g.add_edge(40, 10);
  return g;
}

TEST(Graph, ReportsNodesNeighboursAndEdgesInAscendingOrder) {
  Graph g = sample();
  EXPECT_FALSE(g.add_node(20));
  EXPECT_FALSE(g.add_edge(10, 30));
  EXPECT_EQ(g.nnodes(), 5);
  EXPECT_EQ(g.nedges(), 3);
  EXPECT_EQ(g.nodes(), (std::vector<int>{10, 20, 30, 40, 50}));
  EXPECT_EQ(g.neighbours(10), (std::vector<int>{20, 30, 40}));
  EXPECT_EQ(g.degree(50), 0);
  EXPECT_TRUE(g.has_edge(30, 10));
  EXPECT_FALSE(g.has_edge(30, 20));
  EXPECT_EQ(g.edges(), (std::vector<std::pair<int, int>>{{10, 20}, {10, 30}, {10, 40}}));
  EXPECT_EQ(g.index_of(30), 2);

  ResizableArray2D<bool> const a = g.adjacency_matrix();
  ASSERT_EQ(a.nrows(), 5);
  for (int i = 0; i < 5; ++i) {
    for (int k = 0; k < 5; ++k) {
      EXPECT_EQ(a[i][k], g.has_edge(g.nodes()[std::size_t(i)], g.nodes()[std::size_t(k)]));
    }
  }
  EXPECT_EQ(Graph::from_adjacency(Graph::from_adjacency(a).adjacency_matrix()),
            Graph::from_adjacency(a));

  EXPECT_TRUE(g.remove_edge(10, 20));
  EXPECT_FALSE(g.remove_edge(10, 20));
  EXPECT_TRUE(g.remove_node(10));
  EXPECT_EQ(g.nedges(), 0);
  EXPECT_EQ(g.degree(30), 0);
}

TEST(Graph, RejectsUnknownNodesAndSelfLoops) {
  Graph g = sample();
  try {
    g.add_edge(10, 99);
    FAIL() << "no exception";
  } catch (std::invalid_argument const& e) {
    EXPECT_STREQ(e.what(), "Graph::add_edge(): unknown node");
  }
  EXPECT_THROW(g.add_edge(10, 10), std::invalid_argument);
  try {
    (void)g.neighbours(99);
    FAIL() << "no exception";
  } catch (std::invalid_argument const& e) {
    EXPECT_STREQ(e.what(), "Graph::neighbours(): unknown node");
  }
  EXPECT_THROW((void)g.degree(99), std::invalid_argument);
  EXPECT_THROW((void)shortest_path(g, 10, 99), std::invalid_argument);
  EXPECT_THROW(Graph::from_adjacency(ResizableArray2D<bool>(2, 3)), std::invalid_argument);
}

TEST(Graph, ShortestPathsAreAsLongAsTheDistancesAndFollowEdges) {
  Graph const g = sample();
  EXPECT_EQ(shortest_path(g, 30, 40), (std::vector<int>{30, 10, 40}));
  EXPECT_EQ(shortest_path(g, 20, 20), (std::vector<int>{20}));
  EXPECT_TRUE(shortest_path(g, 30, 50).empty());

  std::mt19937 rng(77);
  for (int trial = 0; trial < 40; ++trial) {
    int const n = 12;
    Graph const r = Graph::from_adjacency(graph_test::random_graph(rng, n, 0.15));
    // Distances by repeated relaxation over all edges.
    int const far = n + 1;
    std::vector<std::vector<int>> d(n, std::vector<int>(n, far));
    for (int i = 0; i < n; ++i) d[std::size_t(i)][std::size_t(i)] = 0;
    for (int pass = 0; pass < n; ++pass) {
      for (auto const& [a, b] : r.edges()) {
        for (int s = 0; s < n; ++s) {
          auto& row = d[std::size_t(s)];
          row[std::size_t(a)] = std::min(row[std::size_t(a)], row[std::size_t(b)] + 1);
          row[std::size_t(b)] = std::min(row[std::size_t(b)], row[std::size_t(a)] + 1);
        }
      }
    }
    for (int s = 0; s < n; ++s) {
      for (int t = 0; t < n; ++t) {
        std::vector<int> const path = shortest_path(r, s, t);
        int const distance = d[std::size_t(s)][std::size_t(t)];
        if (distance == far) {
          EXPECT_TRUE(path.empty());
          continue;
        }
        ASSERT_EQ(static_cast<int>(path.size()), distance + 1);
        EXPECT_EQ(path.front(), s);
        EXPECT_EQ(path.back(), t);
        for (std::size_t k = 1; k < path.size(); ++k) EXPECT_TRUE(r.has_edge(path[k - 1], path[k]));
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
      int const valence = molecule.elements[std::size_t(i)] == "H" ? 1 : 4;
      EXPECT_LE(molecule.graph.degree(i), valence);
    }
  }
  // Naphthalene's ring-fusion carbons are the only carbons with three carbon neighbours.
  testing::MoleculeGraph const skeleton = testing::heavy_atoms(testing::naphthalene());
  std::vector<int> branched;
  for (int i = 0; i < skeleton.natoms(); ++i) {
    if (skeleton.graph.degree(i) == 3) branched.push_back(i);
  }
  EXPECT_TRUE(testing::test_vectors_equivalence(branched, std::vector<int>{9, 8}));
  EXPECT_TRUE(testing::test_contains(skeleton.graph.neighbours(8), 9));
  EXPECT_FALSE(testing::test_contains(skeleton.graph.neighbours(8), 0));
}

}  // namespace
}  // namespace structmath
