// SPDX-License-Identifier: MIT
// Tests of CliqueSearch and the labelled maximum common subgraph: brute force, budgets,
// and separate searches on several threads at once.
#include "structmath/graph/clique_search.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "graph_answers.hpp"
#include "graph_random.hpp"
#include "structmath/graph/bron_kerbosch.hpp"
#include "structmath/graph/ullmann.hpp"
#include "support/graph_fixtures.hpp"

namespace structmath {
namespace {

using Matrix = ResizableArray2D<bool>;
using Pairs = std::vector<std::pair<int, int>>;

LabelledGraph random_labelled(std::mt19937& rng, int n, double density) {
  LabelledGraph g;
  g.adjacency = graph_test::random_graph(rng, n, density);
  std::uniform_int_distribution<int> label(0, 1), order(1, 2);
  for (int i = 0; i < n; ++i) g.node_labels.push_back(label(rng));
  g.edge_labels = ResizableArray2D<int>(n, n, 0);
  for (int i = 0; i < n; ++i) {
    for (int k = i + 1; k < n; ++k) g.edge_labels[i][k] = g.edge_labels[k][i] = order(rng);
  }
  return g;
}

bool compatible(LabelledGraph const& a, LabelledGraph const& b, int i1, int j1, int i2, int j2) {
  bool const x = a.adjacency[i1][i2], y = b.adjacency[j1][j2];
  return x == y && (!x || a.edge_labels[i1][i2] == b.edge_labels[j1][j2]);
}

bool connected_in(Matrix const& m, std::vector<int> const& nodes) {
  std::vector<int> reached{nodes.front()};
  for (std::size_t k = 0; k < reached.size(); ++k) {
    for (int v : nodes) {
      if (m[reached[k]][v] && std::count(reached.begin(), reached.end(), v) == 0) {
        reached.push_back(v);
      }
    }
  }
  return reached.size() == nodes.size();
}

// The largest common induced subgraphs of two labelled graphs, by trying every map.
struct BruteForce {
  LabelledGraph const &a, &b;
  Pairs map;
  int best = 0, best_connected = 0;

  BruteForce(LabelledGraph const& x, LabelledGraph const& y) : a(x), b(y) { search(0); }
  void search(int i) {
    if (i == a.adjacency.nrows()) {
      int const size = static_cast<int>(map.size());
      best = std::max(best, size);
      std::vector<int> nodes;
      for (auto const& [p, q] : map) nodes.push_back(p);
      if (size > 0 && connected_in(a.adjacency, nodes))
        best_connected = std::max(best_connected, size);
      return;
    }
    search(i + 1);
    for (int j = 0; j < b.adjacency.nrows(); ++j) {
      bool fits =
          a.node_labels[static_cast<std::size_t>(i)] == b.node_labels[static_cast<std::size_t>(j)];
      for (auto const& [p, q] : map) fits = fits && q != j && compatible(a, b, i, j, p, q);
      if (!fits) continue;
      map.emplace_back(i, j);
      search(i + 1);
      map.pop_back();
    }
  }
};

TEST(CommonSubgraph, LabelledSearchesAgreeWithBruteForce) {
  std::mt19937 rng(1616);
  std::uniform_int_distribution<int> size(1, 6);
  std::uniform_real_distribution<double> density(0.1, 0.9);
  for (int trial = 0; trial < 300; ++trial) {
    SCOPED_TRACE("trial " + std::to_string(trial));
    LabelledGraph const a = random_labelled(rng, size(rng), density(rng));
    LabelledGraph const b = random_labelled(rng, size(rng), density(rng));
    BruteForce const brute(a, b);
    for (bool connected : {false, true}) {
      CommonSubgraphOptions options;
      options.connected = connected;
      options.max_matches = 3;
      CommonSubgraph const found = maximum_common_subgraph(a, b, options);
      EXPECT_TRUE(found.proven_optimal);
      ASSERT_EQ(found.size, connected ? brute.best_connected : brute.best) << connected;
      for (Pairs const& match : found.matches) {
        ASSERT_EQ(static_cast<int>(match.size()), found.size);
        EXPECT_TRUE(std::is_sorted(match.begin(), match.end()));
        std::vector<int> nodes;
        for (std::size_t m = 0; m < match.size(); ++m) {
          auto const [i, j] = match[m];
          nodes.push_back(i);
          EXPECT_EQ(a.node_labels[static_cast<std::size_t>(i)],
                    b.node_labels[static_cast<std::size_t>(j)]);
          for (std::size_t n = 0; n < m; ++n) {
            EXPECT_TRUE(compatible(a, b, i, j, match[n].first, match[n].second));
          }
        }
        if (connected && !nodes.empty()) {
          EXPECT_TRUE(connected_in(a.adjacency, nodes));
        }
      }
    }
  }
  LabelledGraph wrong;
  wrong.adjacency = Matrix(2, 2, false);
  wrong.node_labels = {1};
  EXPECT_THROW(maximum_common_subgraph(wrong, wrong), std::invalid_argument);
}

TEST(CommonSubgraph, LabelsShrinkTheCorrespondenceGraphToSameLabelPairs) {
  auto const ring = testing::heavy_atoms(testing::benzene());
  LabelledGraph const a{ring.adjacency(), {0, 0, 1, 0, 0, 1}, {}};
  LabelledGraph const b{ring.adjacency(), {1, 0, 0, 0, 0, 0}, {}};
  CommonSubgraph const found = maximum_common_subgraph(a, b);
  EXPECT_EQ(found.correspondence_nodes, 4 * 5 + 2 * 1);
  // The ring pairs five of its six atoms; two same-label N atoms of a cannot both map.
  EXPECT_EQ(found.size, 5);
}

// A pair on which the searches take many steps.
struct HardPair {
  Matrix a, b;
  HardPair() {
    std::mt19937 rng(77);
    a = graph_test::random_graph(rng, 9, 0.3);
    b = graph_test::random_graph(rng, 9, 0.3);
  }
};

TEST(CliqueSearch, ABudgetStopsTheSearchAndSaysSo) {
  HardPair const pair;
  auto const c = BronKerbosch::create_correspondence_graph(pair.a, pair.b);
  for (bool connected : {false, true}) {
    CliqueSearchOptions options;
    CliqueSearchResult const full =
        connected ? CliqueSearch(options).connected(c) : CliqueSearch(options).disconnected(c);
    EXPECT_TRUE(full.proven_optimal);
    ASSERT_GT(full.steps, 20);
    options.budget.max_steps = 20;
    CliqueSearchResult const cut =
        connected ? CliqueSearch(options).connected(c) : CliqueSearch(options).disconnected(c);
    EXPECT_FALSE(cut.proven_optimal);
    EXPECT_LE(cut.steps, 21);
    EXPECT_LE(cut.largest_size, full.largest_size);
    options.budget = SearchBudget{-1, 0.0};  // no time at all
    EXPECT_FALSE(CliqueSearch(options).disconnected(c).proven_optimal);
    EXPECT_FALSE(CliqueSearch(options).connected(c).proven_optimal);
  }
  LabelledGraph const a{pair.a, {}, {}}, b{pair.b, {}, {}};
  CommonSubgraphOptions options;
  options.budget.max_steps = 5;
  CommonSubgraph const cut = maximum_common_subgraph(a, b, options);
  EXPECT_FALSE(cut.proven_optimal);

  // Ullmann: a search that must try many columns, stopped after two.
  auto const m = make_handle<Matrix>(9, 9, true);
  Matrix const given = *m;
  Ullmann search;
  search.create(make_handle<Matrix>(graph_test::matrix(
                    9, {{0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}, {5, 6}, {6, 7}, {7, 8}, {8, 0}})),
                make_handle<Matrix>(pair.b), m);
  search.set_budget(SearchBudget{2, -1.0});
  EXPECT_FALSE(search.find());
  EXPECT_FALSE(search.completed());
  EXPECT_EQ(*m, given);
  search.set_budget(SearchBudget{});
  search.find();
  EXPECT_TRUE(search.completed());
}

TEST(CliqueSearch, SeparateSearchesRunOnFourThreadsAtOnce) {
  std::mt19937 rng(4);
  std::vector<std::function<std::vector<int>()>> jobs;
  for (int k = 0; k < 4; ++k) {
    Matrix const a = graph_test::random_graph(rng, 7, 0.4);
    Matrix const b = graph_test::random_graph(rng, 7, 0.4);
    jobs.push_back([a, b, k] {
      std::vector<int> out;
      auto const c = BronKerbosch::create_correspondence_graph(a, b);
      auto const type = k % 2 == 0 ? Subgraph::DISCONNECTED : Subgraph::CONNECTED;
      out = graph_answers::encode(*BronKerbosch::find_cliques(c, type, 10, 7));
      graph_answers::UllmannRun const run = graph_answers::run_ullmann(
          graph_test::matrix(4, {{0, 1}, {1, 2}, {2, 3}}), b, Matrix(4, 7, true),
          graph_answers::ullmann_modes[static_cast<std::size_t>(k % 3)], false);
      out.insert(out.end(), run.offered.begin(), run.offered.end());
      CommonSubgraph const labelled =
          maximum_common_subgraph(LabelledGraph{a, {}, {}}, LabelledGraph{b, {}, {}});
      out.push_back(labelled.size);
      return out;
    });
  }
  std::vector<std::vector<int>> sequential;
  for (auto const& job : jobs) sequential.push_back(job());
  std::vector<std::vector<std::vector<int>>> parallel(jobs.size());
  std::vector<std::thread> threads;
  for (std::size_t k = 0; k < jobs.size(); ++k) {
    threads.emplace_back([&, k] {
      for (int repeat = 0; repeat < 20; ++repeat) parallel[k].push_back(jobs[k]());
    });
  }
  for (std::thread& t : threads) t.join();
  for (std::size_t k = 0; k < jobs.size(); ++k) {
    for (auto const& result : parallel[k]) EXPECT_EQ(result, sequential[k]) << k;
  }
}

TEST(CliqueSearch, AddSolutionOutsideASearchChangesNoResult) {
  Matrix const triangle = graph_test::matrix(3, {{0, 1}, {1, 2}, {0, 2}});
  auto const c = BronKerbosch::create_correspondence_graph(triangle, triangle);
  CliqueList const before = BronKerbosch::find_cliques(c, Subgraph::DISCONNECTED, 10, 3);
  std::vector<int> const first = *before->front();
  BronKerbosch::add_solution({0, 1, 2, 3, 4}, 5);
  EXPECT_EQ(before->size(), 6U);  // a returned list is the caller's own
  EXPECT_EQ(*before->front(), first);
  CliqueList const after = BronKerbosch::find_cliques(c, Subgraph::DISCONNECTED, 10, 3);
  EXPECT_EQ(graph_answers::encode(*after), graph_answers::encode(*before));
}

}  // namespace
}  // namespace structmath
