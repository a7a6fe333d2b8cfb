// SPDX-License-Identifier: MIT
// Tests of GraphMatch: one-to-one pairs, lookups from both sides and the print format.
#include "structmath/graph/graph_match.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

namespace structmath {
namespace {

using Match = GraphMatch<int, int, int, int>;

TEST(GraphMatch, LooksUpPairsFromEitherSide) {
  Match match;
  EXPECT_TRUE(match.empty());
  match.add_node_match(2, 0);
  match.add_node_match(0, 5);
  EXPECT_EQ(match.size(), 2);
  EXPECT_EQ(match.node_2(2), 0);
  EXPECT_EQ(match.node_1(5), 0);
  EXPECT_TRUE(match.has_node_1(0));
  EXPECT_FALSE(match.has_node_2(2));
  EXPECT_EQ(match.node_pairs(), (std::vector<std::pair<int, int>>{{2, 0}, {0, 5}}));
  try {
    (void)match.node_2(7);
    FAIL() << "no exception";
  } catch (std::invalid_argument const& e) {
    EXPECT_STREQ(e.what(), "GraphMatch::node_2(): not matched");
  }
  EXPECT_THROW(match.add_node_match(2, 9), std::invalid_argument);  // node 2 of graph 1 taken
  EXPECT_THROW(match.add_node_match(9, 5), std::invalid_argument);  // node 5 of graph 2 taken
  EXPECT_EQ(match.size(), 2);

  match.add_edge_match(1, 3);
  EXPECT_EQ(match.edge_1(3), 1);
  EXPECT_THROW(match.add_edge_match(1, 4), std::invalid_argument);
  EXPECT_EQ(match.nedge_matches(), 1);
}

TEST(GraphMatch, PrintsBothListingsSortedOnTheirKeys) {
  Match match;
  match.add_node_match(2, 0);
  match.add_node_match(0, 5);
  match.add_node_match(1, 1);
  std::ostringstream out;
  match.print(out);
  EXPECT_EQ(out.str(),
            "\nNodes keyed on graph 1: 0-5 1-1 2-0\nNodes keyed on graph 2: 0-2 1-1 5-0");
  match.add_edge_match(4, 3);
  std::ostringstream with_edges;
  with_edges << match;
  EXPECT_EQ(with_edges.str(),
            "\nNodes keyed on graph 1: 0-5 1-1 2-0\nNodes keyed on graph 2: 0-2 1-1 5-0"
            "\nEdges keyed on graph 1: 4-3\nEdges keyed on graph 2: 3-4");
  std::ostringstream empty;
  Match().print(empty);
  EXPECT_EQ(empty.str(), "\nNodes keyed on graph 1: \nNodes keyed on graph 2: ");
}

}  // namespace
}  // namespace structmath
