// SPDX-License-Identifier: MIT
// Tests of OrderedGraph and the IndexedTable that numbers its nodes: insertion order throughout.
#include "structmath/graph/ordered_graph.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "graph_random.hpp"
#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using Edges = std::vector<std::pair<int, int>>;

TEST(OrderedGraph, KeepsInsertionOrderEverywhere) {
  // The square 10-40-20-30-10 and a lone 50.
  OrderedGraph g;
  for (int node : {30, 10, 20, 40, 50}) g.add_node(node);
  EXPECT_FALSE(g.add_node(10));
  for (auto [a, b] : Edges{{10, 40}, {30, 10}, {20, 30}, {40, 20}}) g.add_edge(a, b);
  EXPECT_FALSE(g.add_edge(40, 10));
  EXPECT_EQ(g.nodes(), (std::vector<int>{30, 10, 20, 40, 50}));
  EXPECT_EQ(g.edges(), (Edges{{10, 40}, {30, 10}, {20, 30}, {40, 20}}));
  EXPECT_EQ(g.neighbours(10), (std::vector<int>{40, 30}));
  EXPECT_EQ(g.degree(30), 2);
  EXPECT_EQ(g.index_of(20), 2);
  EXPECT_EQ(g.adjacency_matrix(), graph_test::matrix(5, {{1, 3}, {0, 1}, {2, 0}, {3, 2}}));
  // Of the two shortest paths the one through the earlier-added neighbour.
  EXPECT_EQ(shortest_path(g, 10, 20), (std::vector<int>{10, 40, 20}));
  EXPECT_TRUE(shortest_path(g, 20, 50).empty());

  EXPECT_TRUE(g.remove_edge(10, 30));
  EXPECT_FALSE(g.remove_edge(10, 30));
  EXPECT_FALSE(g.has_edge(30, 10));
  EXPECT_EQ(g.edges(), (Edges{{10, 40}, {20, 30}, {40, 20}}));
  EXPECT_EQ(g.neighbours(10), (std::vector<int>{40}));
  testing::expect_throw_message<std::invalid_argument>([&] { g.add_edge(10, 99); },
                                                       "OrderedGraph::add_edge(): unknown node");
  EXPECT_THROW(g.add_edge(20, 20), std::invalid_argument);
  EXPECT_THROW((void)g.neighbours(99), std::invalid_argument);
}

TEST(IndexedTable, NumbersKeysDenselyInTheOrderAdded) {
  IndexedTable<> table;
  for (int key : {40, -3, 40, 7}) table.add(key);
  EXPECT_EQ(table.size(), 3);
  EXPECT_EQ(table.keys(), (std::vector<int>{40, -3, 7}));
  EXPECT_EQ(table.add(-3), 1);
  EXPECT_EQ(table.index(7), 2);
  EXPECT_EQ(table.key(1), -3);
  EXPECT_EQ(table.find(8), -1);
  EXPECT_TRUE(table.contains(7));
  EXPECT_THROW((void)table.index(8), std::invalid_argument);
  testing::expect_throw_message<std::invalid_argument>([&] { (void)table.key(3); },
                                                       "IndexedTable::key(): index out of range");
  table.clear();
  EXPECT_TRUE(table.empty());
  EXPECT_EQ(table.add(7), 0);

  IndexedTable<std::string> names;
  names.add("C1");
  EXPECT_EQ(names.add("H1"), 1);
  EXPECT_EQ(names.key(0), "C1");
}

}  // namespace
}  // namespace structmath
