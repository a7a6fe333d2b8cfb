// SPDX-License-Identifier: MIT
// Tests of GraphMatch: one-to-one pairs, lookups from both sides and the print format.
#include "structmath/graph/graph_match.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

TEST(GraphMatch, LooksUpPairsFromEitherSideAndPrintsBothListings) {
  GraphMatch<int, int, int, int> match;
  std::ostringstream empty;
  match.print(empty);
  EXPECT_EQ(empty.str(), "\nNodes keyed on graph 1: \nNodes keyed on graph 2: ");
  for (auto [n1, n2] : {std::pair(2, 0), std::pair(0, 5), std::pair(1, 1)}) {
    match.add_node_match(n1, n2);
  }
  EXPECT_EQ(match.size(), 3);
  EXPECT_EQ(match.node_2(2), 0);
  EXPECT_EQ(match.node_1(5), 0);
  EXPECT_FALSE(match.has_node_2(2));
  EXPECT_EQ(match.node_pairs(), (std::vector<std::pair<int, int>>{{2, 0}, {0, 5}, {1, 1}}));
  testing::expect_throw_message<std::invalid_argument>([&] { (void)match.node_2(7); },
                                                       "GraphMatch::node_2(): not matched");
  EXPECT_THROW(match.add_node_match(2, 9), std::invalid_argument);  // node 2 of graph 1 taken
  EXPECT_THROW(match.add_node_match(9, 5), std::invalid_argument);  // node 5 of graph 2 taken
  EXPECT_EQ(match.size(), 3);

  std::ostringstream nodes;
  match.print(nodes);
  EXPECT_EQ(nodes.str(),
            "\nNodes keyed on graph 1: 0-5 1-1 2-0\nNodes keyed on graph 2: 0-2 1-1 5-0");
  match.add_edge_match(4, 3);
  EXPECT_EQ(match.edge_1(3), 4);
  EXPECT_THROW(match.add_edge_match(4, 6), std::invalid_argument);
  EXPECT_EQ(match.nedge_matches(), 1);
  std::ostringstream with_edges;
  with_edges << match;
  EXPECT_EQ(with_edges.str(),
            nodes.str() + "\nEdges keyed on graph 1: 4-3\nEdges keyed on graph 2: 3-4");
}

}  // namespace
}  // namespace structmath
