// SPDX-License-Identifier: MIT
// CliqueSearch and maximum_common_subgraph: clique searches with budgets, per-search state.
#pragma once

#include <climits>
#include <utility>
#include <vector>

#include "structmath/export.hpp"
#include "structmath/graph/resizable_array_2d.hpp"
#include "structmath/graph/search_budget.hpp"

namespace structmath {

struct CliqueSearchOptions {
  int max_cliques = 10;    ///< cliques of the largest size kept, in the order found
  int max_size = INT_MAX;  ///< connected search: cliques are not grown beyond this size
  SearchBudget budget;
};

struct CliqueSearchResult {
  /// Cliques of the largest size found, in the order found, as correspondence nodes.
  std::vector<std::vector<int>> cliques;
  int largest_size = 0;
  /// False when the budget ran out: larger cliques, or more of this size, may exist.
  bool proven_optimal = true;
  long long steps = 0;  ///< extensions made
};

/// The clique searches of BronKerbosch (same cliques, in the same order, with the same
/// level-3 log lines when `log` is set) on their own state, so that separate searches
/// may run on separate threads at once (with the debug log off: the log is one stream).
///
/// The correspondence graph is held as bit rows (64 nodes a word). Both searches cut a
/// branch when a greedy colouring of its candidates shows that it cannot reach a clique
/// of the largest size recorded so far; when the log is off and `max_cliques` cliques of
/// the largest size are listed, a branch that can only tie is cut as well, since it
/// could change nothing a caller sees. The branching order, and so the order in which
/// cliques are found, is that of BronKerbosch. Memory: O(N^2 / 8) bytes for N nodes.
class STRUCTMATH_API CliqueSearch {
 public:
  explicit CliqueSearch(CliqueSearchOptions options = {}) : options_(options) {}

  /// Largest cliques of C, every non-zero entry counting as an edge (Algorithm 457).
  CliqueSearchResult disconnected(ResizableArray2D<int> const& C, bool log = false) const;
  /// Largest cliques of C held together by its entries 1 (c-edges).
  CliqueSearchResult connected(ResizableArray2D<int> const& C, bool log = false) const;

  CliqueSearchOptions const& options() const noexcept { return options_; }

 private:
  CliqueSearchOptions options_;
};

/// A graph for common-subgraph searches: adjacency, optional node labels (elements, for
/// instance) and optional edge labels (bond orders, for instance).
struct LabelledGraph {
  ResizableArray2D<bool> adjacency;
  std::vector<int> node_labels;       ///< one per node; empty: all nodes alike
  ResizableArray2D<int> edge_labels;  ///< n x n, read where adjacent; empty: all edges alike
};

struct CommonSubgraphOptions {
  bool connected = false;  ///< one piece held together by edges of both graphs
  int max_matches = 1;     ///< matches of the largest size kept
  SearchBudget budget;
};

struct CommonSubgraph {
  /// Each match as (node of graph 1, node of graph 2) pairs in the order of graph 1.
  std::vector<std::vector<std::pair<int, int>>> matches;
  int size = 0;                  ///< nodes in each match
  bool proven_optimal = true;    ///< false when the budget ran out first
  long long steps = 0;           ///< extensions made by the clique search
  int correspondence_nodes = 0;  ///< label-compatible pairs (nodes of the correspondence graph)
};

/// The maximum common induced subgraph of two labelled graphs: a one-to-one pairing of
/// nodes with equal labels (when both graphs have node labels) such that two nodes are
/// joined in one graph exactly when their partners are joined in the other, by edges of
/// equal labels (when both have edge labels). With `connected`, the paired nodes form
/// one connected piece.
///
/// Method: the partitioning search of J. McCreesh, P. Prosser and J. Trimble (IJCAI 2017,
/// 709-716), equivalent to a clique search in the correspondence graph of the label-
/// compatible pairs but far faster on molecule graphs: the unmatched nodes are kept in
/// classes of equal label and equal relation to every matched node, a node of graph 1
/// from the smallest class is paired with each node of its class in graph 2 in turn (or
/// left out), and a branch is cut when the matched pairs plus the sum over the classes
/// of the smaller side cannot beat the best size (or reach it, while `max_matches` ties
/// are collected). Each matching is met once; matches come in the order found, each
/// sorted by node of graph 1. The cost is exponential in the worst case, with a memory
/// of O(n1 + n2) per level. Throws std::invalid_argument "maximum_common_subgraph():
/// graph not square, or labels of the wrong size" for inconsistent input.
STRUCTMATH_API CommonSubgraph maximum_common_subgraph(LabelledGraph const& a,
                                                      LabelledGraph const& b,
                                                      CommonSubgraphOptions const& options = {});

}  // namespace structmath
