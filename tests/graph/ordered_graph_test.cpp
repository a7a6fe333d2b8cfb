// SPDX-License-Identifier: MIT
// Tests of OrderedGraph: insertion order of nodes, edges and neighbours.
#include "structmath/graph/ordered_graph.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>
#include <vector>

namespace structmath {
namespace {

TEST(OrderedGraph, KeepsInsertionOrderEverywhere) {
  OrderedGraph g;
  for (int node : {30, 10, 20, 40}) g.add_node(node);
  EXPECT_FALSE(g.add_node(10));
  g.add_edge(10, 40);
  g.add_edge(30, 10);
  g.add_edge(20, 30);
  EXPECT_FALSE(g.add_edge(40, 10));
  EXPECT_EQ(g.nodes(), (std::vector<int>{30, 10, 20, 40}));
  EXPECT_EQ(g.edges(), (std::vector<std::pair<int, int>>{{10, 40}, {30, 10}, {20, 30}}));
  EXPECT_EQ(g.neighbours(10), (std::vector<int>{40, 30}));
  EXPECT_EQ(g.degree(30), 2);
  EXPECT_EQ(g.index_of(20), 2);

  ResizableArray2D<bool> const a = g.adjacency_matrix();
  ResizableArray2D<bool> expected(4, 4, false);
  for (auto [i, k] : {std::pair(1, 3), std::pair(0, 1), std::pair(2, 0)}) {
    expected[i][k] = expected[k][i] = true;
  }
  EXPECT_EQ(a, expected);

  EXPECT_TRUE(g.remove_edge(10, 30));
  EXPECT_FALSE(g.has_edge(30, 10));
  EXPECT_EQ(g.edges(), (std::vector<std::pair<int, int>>{{10, 40}, {20, 30}}));
  EXPECT_EQ(g.neighbours(10), (std::vector<int>{40}));
  EXPECT_FALSE(g.remove_edge(10, 30));
}

TEST(OrderedGraph, ShortestPathPrefersEarlierNeighbours) {
  // Square 1-2-4-3-1: two shortest paths from 1 to 4.
  OrderedGraph g;
  for (int node : {1, 2, 3, 4, 5}) g.add_node(node);
  g.add_edge(1, 3);
  g.add_edge(1, 2);
  g.add_edge(2, 4);
  g.add_edge(3, 4);
  EXPECT_EQ(shortest_path(g, 1, 4), (std::vector<int>{1, 3, 4}));
  EXPECT_TRUE(shortest_path(g, 1, 5).empty());
  try {
    g.add_edge(1, 9);
    FAIL() << "no exception";
  } catch (std::invalid_argument const& e) {
    EXPECT_STREQ(e.what(), "OrderedGraph::add_edge(): unknown node");
  }
  EXPECT_THROW(g.add_edge(2, 2), std::invalid_argument);
  EXPECT_THROW((void)g.neighbours(9), std::invalid_argument);
}

}  // namespace
}  // namespace structmath
