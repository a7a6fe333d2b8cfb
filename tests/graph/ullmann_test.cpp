// SPDX-License-Identifier: MIT
// Tests of Ullmann: embeddings against brute force, the candidate matrix afterwards, logging.
#include "structmath/graph/ullmann.hpp"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "graph_random.hpp"
#include "support/graph_fixtures.hpp"
#include "support/test_support.hpp"

namespace structmath {
namespace {

using Matrix = ResizableArray2D<bool>;
using MatrixHandle = THandle<Matrix>;

MatrixHandle matrix(int n, std::vector<std::pair<int, int>> const& edges) {
  auto a = make_handle<Matrix>(n, n, false);
  for (auto const& [i, k] : edges) (*a)[i][k] = (*a)[k][i] = true;
  return a;
}

// All injective maps of the pattern into the target that keep every pattern
// edge and respect the candidates, in lexicographic order of the images.
struct Embeddings {
  Matrix const& pattern;
  Matrix const& target;
  Matrix const& candidates;
  std::vector<std::vector<int>> found;
  std::vector<int> map;
  std::vector<bool> used;

  Embeddings(Matrix const& p, Matrix const& t, Matrix const& m)
      : pattern(p), target(t), candidates(m), used(static_cast<std::size_t>(t.nrows()), false) {
    search(0);
  }

  void search(int i) {
    if (i == pattern.nrows()) {
      found.push_back(map);
      return;
    }
    for (int j = 0; j < target.nrows(); ++j) {
      if (used[static_cast<std::size_t>(j)] || !candidates[i][j]) continue;
      bool fits = true;
      for (int k = 0; k < i && fits; ++k) {
        fits = !pattern[i][k] || target[j][map[static_cast<std::size_t>(k)]];
      }
      if (!fits) continue;
      used[static_cast<std::size_t>(j)] = true;
      map.push_back(j);
      search(i + 1);
      map.pop_back();
      used[static_cast<std::size_t>(j)] = false;
    }
  }
};

// Rejects every match, counting and keeping them; or accepts up to a limit.
class Recorder : public Ullmann {
 public:
  explicit Recorder(bool accept, int limit = 1) : accept_(accept) { match_limit_ = limit; }
  bool check_match(THandle<std::vector<int>> match) override {
    offered.push_back(*match);
    return accept_;
  }
  std::vector<std::vector<int>> offered;

 private:
  bool accept_;
};

Matrix assignment(int rows, int columns, std::vector<int> const& match) {
  Matrix m(rows, columns, false);
  for (int i = 0; i < rows; ++i) m[i][match[static_cast<std::size_t>(i)]] = true;
  return m;
}

TEST(Ullmann, EdgeInTriangleTakesTheFirstColumnsAndLeavesThemInTheMatrix) {
  auto const candidates = make_handle<Matrix>(2, 3, true);
  Recorder search(true);
  search.create(matrix(2, {{0, 1}}), matrix(3, {{0, 1}, {1, 2}, {0, 2}}), candidates);
  EXPECT_TRUE(search.find());
  EXPECT_EQ(search.nmatches(), 1);
  ASSERT_EQ(search.offered.size(), 1u);
  EXPECT_EQ(search.offered[0], (std::vector<int>{0, 1}));
  EXPECT_EQ(*candidates, assignment(2, 3, {0, 1}));
}

TEST(Ullmann, FailuresLeaveTheCandidatesAsGiven) {
  // Pattern larger than the target.
  auto const big = make_handle<Matrix>(4, 3, true);
  Ullmann too_big;
  too_big.create(matrix(4, {}), matrix(3, {}), big);
  EXPECT_FALSE(too_big.find());
  EXPECT_EQ(*big, Matrix(4, 3, true));

  // A pattern node with no candidate at all.
  auto const blocked = make_handle<Matrix>(3, 4, true);
  for (int j = 0; j < 4; ++j) (*blocked)[2][j] = false;
  Matrix const before = *blocked;
  Ullmann no_column;
  no_column.create(matrix(3, {{0, 1}}), matrix(4, {{0, 1}, {2, 3}}), blocked);
  EXPECT_FALSE(no_column.find());
  EXPECT_EQ(*blocked, before);

  // A triangle does not fit a square.
  auto const all = make_handle<Matrix>(3, 4, true);
  Ullmann no_triangle;
  no_triangle.create(matrix(3, {{0, 1}, {1, 2}, {0, 2}}),
                     matrix(4, {{0, 1}, {1, 2}, {2, 3}, {3, 0}}), all);
  EXPECT_FALSE(no_triangle.find());
  EXPECT_EQ(*all, Matrix(3, 4, true));
}

TEST(Ullmann, PatternWithoutEdgesTakesTheFirstInjectiveAssignment) {
  auto const candidates = make_handle<Matrix>(3, 4, true);
  (*candidates)[0][0] = false;
  Recorder search(true);
  search.create(matrix(3, {}), matrix(4, {{0, 1}}), candidates);
  EXPECT_TRUE(search.find());
  EXPECT_EQ(search.offered.at(0), (std::vector<int>{1, 0, 2}));

  // The empty pattern embeds once, as the empty map.
  Recorder empty(true);
  empty.create(make_handle<Matrix>(), matrix(2, {}), make_handle<Matrix>(0, 2));
  EXPECT_TRUE(empty.find());
  EXPECT_EQ(empty.offered, (std::vector<std::vector<int>>{{}}));
}

TEST(Ullmann, RejectingCheckExploresEveryEmbeddingAndLimitStopsEarly) {
  auto const ring = matrix(4, {{0, 1}, {1, 2}, {2, 3}, {3, 0}});
  auto const candidates = make_handle<Matrix>(4, 4, true);
  Recorder rejecting(false);
  rejecting.create(ring, ring, candidates);
  EXPECT_FALSE(rejecting.find());
  EXPECT_EQ(rejecting.nmatches(), 0);
  // The eight symmetries of the square, in lexicographic order.
  EXPECT_EQ(rejecting.offered, Embeddings(*ring, *ring, Matrix(4, 4, true)).found);
  EXPECT_EQ(*candidates, Matrix(4, 4, true));

  Recorder three(true, 3);
  three.create(ring, ring, candidates);
  EXPECT_TRUE(three.find());
  EXPECT_EQ(three.nmatches(), 3);
  EXPECT_EQ(three.offered.size(), 3u);
  EXPECT_EQ(*candidates, assignment(4, 4, three.offered.back()));
}

TEST(Ullmann, AgreesWithBruteForceOnRandomGraphs) {
  std::mt19937 rng(4242);
  std::uniform_int_distribution<int> pattern_size(1, 5);
  std::uniform_int_distribution<int> extra_nodes(0, 3);
  std::uniform_real_distribution<double> density(0.2, 0.8);
  std::bernoulli_distribution restrictive(0.5);
  int embedded = 0;
  for (int trial = 0; trial < 300; ++trial) {
    SCOPED_TRACE("trial " + std::to_string(trial));
    int const np = pattern_size(rng);
    int const nt = np + extra_nodes(rng);
    auto const pattern = make_handle<Matrix>(graph_test::random_graph(rng, np, density(rng)));
    auto const target = make_handle<Matrix>(graph_test::random_graph(rng, nt, density(rng)));
    auto const candidates = make_handle<Matrix>(np, nt, true);
    if (restrictive(rng)) {
      std::bernoulli_distribution keep(0.7);
      for (int i = 0; i < np; ++i) {
        for (int j = 0; j < nt; ++j) (*candidates)[i][j] = keep(rng);
      }
    }
    Matrix const given = *candidates;
    Embeddings const expected(*pattern, *target, given);

    Recorder first(true);
    first.create(pattern, target, candidates);
    bool const found = first.find();
    ASSERT_EQ(found, !expected.found.empty());
    if (found) {
      ++embedded;
      ASSERT_EQ(first.offered.size(), 1u);
      EXPECT_EQ(first.offered[0], expected.found.front());
      EXPECT_EQ(*candidates, assignment(np, nt, expected.found.front()));
    } else {
      EXPECT_EQ(*candidates, given);
    }

    *candidates = given;
    Recorder all(false);
    all.create(pattern, target, candidates);
    EXPECT_FALSE(all.find());
    EXPECT_EQ(all.offered, expected.found);
    EXPECT_EQ(*candidates, given);
  }
  EXPECT_GT(embedded, 50);  // both outcomes are well represented
  EXPECT_LT(embedded, 250);
}

TEST(Ullmann, MoleculeEmbeddingsByElement) {
  auto const embeds = [](testing::MoleculeGraph const& pattern,
                         testing::MoleculeGraph const& target) {
    Ullmann search;
    search.create(pattern.adjacency_handle(), target.adjacency_handle(),
                  testing::element_candidates(pattern, target));
    return search.find();
  };
  auto const benzene = testing::benzene();
  auto const naphthalene = testing::naphthalene();
  EXPECT_TRUE(embeds(testing::heavy_atoms(benzene), testing::heavy_atoms(naphthalene)));
  // Two ring carbons of naphthalene carry no hydrogen.
  EXPECT_FALSE(embeds(benzene, naphthalene));
  // Benzene's skeleton with one hydrogen per carbon sits inside cyclohexane, not the reverse.
  EXPECT_TRUE(embeds(benzene, testing::cyclohexane()));
  EXPECT_FALSE(embeds(testing::cyclohexane(), benzene));
  EXPECT_TRUE(embeds(testing::carbon_chain(6), testing::heavy_atoms(naphthalene)));
  EXPECT_FALSE(embeds(testing::carbon_star(3), testing::heavy_atoms(benzene)));
  EXPECT_TRUE(embeds(testing::carbon_star(3), testing::heavy_atoms(naphthalene)));
  EXPECT_TRUE(embeds(testing::empty_molecule(), benzene));
}

TEST(Ullmann, RejectsMismatchedOrMissingMatrices) {
  Ullmann search;
  EXPECT_THROW(search.find(), std::runtime_error);
  auto const p = matrix(2, {{0, 1}});
  auto const t = matrix(3, {});
  EXPECT_THROW(search.create(p, t, make_handle<Matrix>(3, 2)), std::invalid_argument);
  EXPECT_THROW(search.create(p, make_handle<Matrix>(3, 2), make_handle<Matrix>(2, 3)),
               std::invalid_argument);
  try {
    search.create(p, t, MatrixHandle());
    FAIL() << "no exception";
  } catch (std::invalid_argument const& e) {
    EXPECT_STREQ(e.what(), "Ullmann::create(): null matrix");
  }
}

TEST(Ullmann, LogsEntryAndStepsAtLevelThreeAndTheResultAtLevelTwo) {
  auto const run = [](MatrixHandle const& pattern, int level, int minimum) {
    testing::LogCapture capture(level, minimum);
    Ullmann search;
    search.create(pattern, matrix(3, {{0, 1}, {1, 2}, {0, 2}}),
                  make_handle<Matrix>(pattern->nrows(), 3, true));
    search.find();
    return capture.text();
  };
  auto const edge = matrix(2, {{0, 1}});
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
  EXPECT_EQ(run(matrix(4, {}), 3, 0), "Ullmann::find() entered\n");
}

}  // namespace
}  // namespace structmath
