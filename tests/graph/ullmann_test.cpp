// SPDX-License-Identifier: MIT
// Tests of Ullmann: embeddings against brute force, the candidate matrix afterwards, logging.
#include "structmath/graph/ullmann.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
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
using MatrixHandle = THandle<Matrix>;
using Maps = std::vector<std::vector<int>>;

MatrixHandle handle(int n, std::vector<std::pair<int, int>> const& edges = {}) {
  return make_handle<Matrix>(graph_test::matrix(n, edges));
}

// All injective maps of the pattern into the target that keep every pattern
// edge and respect the candidates, in lexicographic order of the images.
struct Embeddings {
  Matrix const &pattern, &target, &candidates;
  Maps found;
  std::vector<int> map;

  Embeddings(Matrix const& p, Matrix const& t, Matrix const& m)
      : pattern(p), target(t), candidates(m) {
    search(0);
  }
  void search(int i) {
    if (pattern.nrows() == 0) return;  // no node to assign, no embedding
    if (i == pattern.nrows()) return found.push_back(map);
    for (int j = 0; j < target.nrows(); ++j) {
      bool fits = candidates[i][j] && std::count(map.begin(), map.end(), j) == 0;
      for (int k = 0; k < i && fits; ++k) {
        fits = !pattern[i][k] || target[j][map[static_cast<std::size_t>(k)]];
      }
      if (!fits) continue;
      map.push_back(j);
      search(i + 1);
      map.pop_back();
    }
  }
};

// Accepts or rejects every match offered, keeping them all.
class Recorder : public Ullmann {
 public:
  Recorder(bool accept, int limit) : accept_(accept) { match_limit_ = limit; }
  bool check_match(THandle<std::vector<int>> match) override {
    offered.push_back(*match);
    return accept_;
  }
  Maps offered;

 private:
  bool accept_;
};

Matrix assignment(int rows, int columns, std::vector<int> const& match) {
  Matrix m(rows, columns, false);
  for (int i = 0; i < rows; ++i) m[i][match[static_cast<std::size_t>(i)]] = true;
  return m;
}

TEST(Ullmann, AgreesWithBruteForceOnRandomGraphs) {
  std::mt19937 rng(4242);
  // Patterns of 0 to 5 nodes in targets of one node fewer up to three more.
  std::uniform_int_distribution<int> pattern_size(0, 5), extra_nodes(-1, 3);
  std::uniform_real_distribution<double> density(0.2, 0.8);
  std::bernoulli_distribution restrictive(0.5), keep(0.7);
  int embedded = 0, limited = 0;
  for (int trial = 0; trial < 300; ++trial) {
    SCOPED_TRACE("trial " + std::to_string(trial));
    int const np = pattern_size(rng);
    int const nt = std::max(0, np + extra_nodes(rng));
    auto const pattern = make_handle<Matrix>(graph_test::random_graph(rng, np, density(rng)));
    auto const target = make_handle<Matrix>(graph_test::random_graph(rng, nt, density(rng)));
    Matrix given(np, nt, true);
    if (restrictive(rng)) {
      for (int i = 0; i < np; ++i) {
        for (int j = 0; j < nt; ++j) given[i][j] = keep(rng);
      }
    }
    Maps const all = Embeddings(*pattern, *target, given).found;
    embedded += all.empty() ? 0 : 1;
    limited += all.size() >= 3 ? 1 : 0;
    // Accepting stops at the limit and leaves the last match in the candidate
    // matrix only when the limit was reached; rejecting sees every embedding.
    for (auto [accept, limit] : {std::tuple(true, 1), std::tuple(true, 3), std::tuple(false, 1)}) {
      auto const candidates = make_handle<Matrix>(given);
      Recorder search(accept, limit);
      search.create(pattern, target, candidates);
      std::size_t const n = accept ? std::min(all.size(), std::size_t(limit)) : all.size();
      EXPECT_EQ(search.find(), accept && n > 0);
      EXPECT_EQ(search.nmatches(), accept ? static_cast<int>(n) : 0);
      ASSERT_EQ(search.offered, Maps(all.begin(), all.begin() + static_cast<long>(n)));
      bool const full = accept && static_cast<int>(n) == limit;
      EXPECT_EQ(*candidates, full ? assignment(np, nt, search.offered.back()) : given);
    }
  }
  EXPECT_GT(embedded, 50);  // both outcomes and the limit are well represented
  EXPECT_LT(embedded, 250);
  EXPECT_GT(limited, 20);
}

TEST(Ullmann, MoleculeEmbeddingsByElement) {
  auto const embeds = [](testing::MoleculeGraph const& pattern,
                         testing::MoleculeGraph const& target) {
    Ullmann search;
    search.create(pattern.adjacency_handle(), target.adjacency_handle(),
                  testing::element_candidates(pattern, target));
    return search.find();
  };
  auto const benzene = testing::benzene(), naphthalene = testing::naphthalene();
  auto const skeleton = testing::heavy_atoms(naphthalene);
  EXPECT_TRUE(embeds(testing::heavy_atoms(benzene), skeleton));
  EXPECT_FALSE(embeds(benzene, naphthalene));  // two ring carbons there carry no hydrogen
  // Benzene with one hydrogen per carbon sits inside cyclohexane, not the reverse.
  EXPECT_TRUE(embeds(benzene, testing::cyclohexane()));
  EXPECT_FALSE(embeds(testing::cyclohexane(), benzene));
  EXPECT_FALSE(embeds(testing::carbon_star(3), testing::heavy_atoms(benzene)));
  EXPECT_TRUE(embeds(testing::carbon_star(3), skeleton));
}

TEST(Ullmann, FindReadsTheGraphsAsTheyStandWhenItRuns) {
  // A path a-b-c in a path: embeds. Closing the pattern into a triangle after create
  // must be seen by find, and a triangle does not embed in a path.
  auto const pattern = handle(3, {{0, 1}, {1, 2}});
  auto const target = handle(4, {{0, 1}, {1, 2}, {2, 3}});
  Ullmann search;
  search.create(pattern, target, make_handle<Matrix>(3, 4, true));
  (*pattern)[0][2] = (*pattern)[2][0] = true;
  EXPECT_FALSE(search.find());
  EXPECT_EQ(search.nmatches(), 0);
  // And the other way: a target edge added after create makes the triangle fit.
  (*target)[0][2] = (*target)[2][0] = true;
  EXPECT_TRUE(search.find());
  // Contents may change between create and find; sizes may not.
  auto const grown = handle(5);
  Ullmann other;
  other.create(pattern, target, make_handle<Matrix>(3, 4, true));
  *target = *grown;
  testing::expect_throw_message<std::invalid_argument>(
      [&] { other.find(); }, "Ullmann::find(): matrix sizes changed since create()");
}

TEST(Ullmann, EmptyPatternHasNoNodeToAssign) {
  for (int nt : {0, 3}) {
    testing::LogCapture capture(3, 0);
    Recorder search(true, 1);
    search.create(handle(0), handle(nt), make_handle<Matrix>(0, nt));
    EXPECT_FALSE(search.find()) << nt;
    EXPECT_EQ(search.nmatches(), 0);
    EXPECT_TRUE(search.offered.empty());
    EXPECT_EQ(capture.text(),
              "Ullmann::find() entered\n"
              "Ullmann::depthfirst() entered: d = 0\n"
              "Ullmann::find() returning: nmatches_ = 0\n");
  }
}

TEST(Ullmann, RejectsMismatchedOrMissingMatrices) {
  Ullmann search;
  EXPECT_THROW(search.find(), std::runtime_error);
  auto const p = handle(2, {{0, 1}});
  auto const t = handle(3);
  EXPECT_THROW(search.create(p, t, make_handle<Matrix>(3, 2)), std::invalid_argument);
  EXPECT_THROW(search.create(p, make_handle<Matrix>(3, 2), make_handle<Matrix>(2, 3)),
               std::invalid_argument);
  testing::expect_throw_message<std::invalid_argument>([&] { search.create(p, t, MatrixHandle()); },
                                                       "Ullmann::create(): null matrix");
}

TEST(Ullmann, LogsEntryAndStepsAtLevelThreeAndTheResultAtLevelTwo) {
  auto const run = [](MatrixHandle const& pattern, int level, int minimum) {
    testing::LogCapture capture(level, minimum);
    Ullmann search;
    search.create(pattern, handle(3, {{0, 1}, {1, 2}, {0, 2}}),
                  make_handle<Matrix>(pattern->nrows(), 3, true));
    search.find();
    return capture.text();
  };
  auto const edge = handle(2, {{0, 1}});
  std::string const steps =
      "Ullmann::find() entered\n"
      "Ullmann::depthfirst() entered: d = 0\n"
      "Ullmann::depthfirst() processing node 0\n"
      "Ullmann::depthfirst() entered: d = 1\n"
      "Ullmann::depthfirst() processing node 1\n";
  std::string const result = "Ullmann::find() returning: nmatches_ = 1\n";
  EXPECT_EQ(run(edge, 3, 0), steps + result);
  EXPECT_EQ(run(edge, 3, 3), steps);
  EXPECT_EQ(run(edge, 2, 0), result);
  EXPECT_EQ(run(edge, 2, 3), "");
  // A pattern larger than the target is turned away before any step.
  EXPECT_EQ(run(handle(4), 3, 0), "Ullmann::find() entered\n");
}

}  // namespace
}  // namespace structmath
