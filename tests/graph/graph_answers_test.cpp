// SPDX-License-Identifier: MIT
// Known answers: the clique lists, matches, log lines, check_match calls and candidate
// matrices that the graph searches showed callers before their bit-parallel rewrite.
#include <gtest/gtest.h>

#include "graph_answers.hpp"
#include "support/known_answers.hpp"

namespace structmath {
namespace {

using testing::AnswerCase;

class GraphSearches : public ::testing::TestWithParam<AnswerCase> {};

void expect_cliques(AnswerCase const& c) {
  ResizableArray2D<bool> const a = graph_answers::decode_graph(c.ints("a"));
  ResizableArray2D<bool> const b = graph_answers::decode_graph(c.ints("b"));
  auto const C = BronKerbosch::create_correspondence_graph(a, b);
  int const bound = std::min(a.nrows(), b.nrows());
  for (auto [type, label] : {std::pair(Subgraph::DISCONNECTED, std::string("disconnected")),
                             std::pair(Subgraph::CONNECTED, std::string("connected"))}) {
    SCOPED_TRACE(label);
    // The log off: a full list lets the search skip ties, which must change nothing.
    EXPECT_EQ(graph_answers::encode(*BronKerbosch::find_cliques(C, type, 10, bound)),
              c.ints(label));
    EXPECT_EQ(graph_answers::encode(*BronKerbosch::find_cliques(C, type, 1, bound)),
              c.ints(label + "_first"));
    // The log on: every line, in order.
    graph_answers::LogTokens log;
    EXPECT_EQ(graph_answers::encode(BronKerbosch::maximum_common_subgraph(a, b, type)),
              c.ints("mcs_" + label));
    EXPECT_EQ(log.tokens(), c.ints("mcs_" + label + "_log"));
  }
}

void expect_ullmann(AnswerCase const& c) {
  ResizableArray2D<bool> const pattern = graph_answers::decode_graph(c.ints("pattern"));
  ResizableArray2D<bool> const target = graph_answers::decode_graph(c.ints("target"));
  ResizableArray2D<bool> const candidates = graph_answers::decode_matrix(c.ints("candidates"));
  for (graph_answers::UllmannMode const& mode : graph_answers::ullmann_modes) {
    if (!c.has(mode.key)) continue;
    for (bool log : {true, false}) {
      SCOPED_TRACE(mode.key + (log ? " with the log" : " without the log"));
      graph_answers::UllmannRun const run =
          graph_answers::run_ullmann(pattern, target, candidates, mode, log);
      EXPECT_EQ(run.summary, c.ints(mode.key));
      EXPECT_EQ(run.offered, c.ints(mode.key + "_offered"));
      EXPECT_EQ(run.final_candidates, c.ints(mode.key + "_final"));
      if (log) {
        EXPECT_EQ(run.log, c.ints(mode.key + "_log"));
      }
    }
  }
}

TEST_P(GraphSearches, ShowTheirCallersWhatTheyShowedBefore) {
  AnswerCase const& c = GetParam();
  if (c.has("a")) {
    expect_cliques(c);
  } else {
    expect_ullmann(c);
  }
}

INSTANTIATE_TEST_SUITE_P(Pinned, GraphSearches,
                         ::testing::ValuesIn(testing::load_answers("graph/searches.txt")),
                         testing::AnswerName());

}  // namespace
}  // namespace structmath
