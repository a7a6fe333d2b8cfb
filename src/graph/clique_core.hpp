// SPDX-License-Identifier: MIT
// The clique searches' shared core: bit rows of the correspondence graph and one search's state.
#pragma once

#include <chrono>
#include <deque>
#include <vector>

#include "bit_rows.hpp"
#include "structmath/graph/clique_search.hpp"

namespace structmath::detail {

/// A correspondence graph as bit rows, entry by entry: `nonzero` (entry != 0, the
/// diagonal included: every edge of the disconnected search), `c_edges` (entry 1) and
/// `d_edges` (entry -1). For an asymmetric matrix `either` joins p and q when either
/// row does (the colouring bound needs a symmetric relation).
struct CorrespondenceRows {
  int n = 0;
  BitRows nonzero;
  BitRows c_edges;
  BitRows d_edges;
  bool symmetric = true;
  BitRows either;
  /// When every two nodes p = i * pair_columns + j that share i or j are unjoined (a
  /// correspondence graph of graphs of n / pair_columns and pair_columns nodes), a
  /// clique pairs each i and each j at most once; 0 when no such numbering was found.
  int pair_columns = 0;
};

/// Finds pair_columns for a graph, trying every divisor of n.
void find_pair_numbering(CorrespondenceRows& g);

/// Rows from an integer matrix; c- and d-edges only when asked (the connected search).
CorrespondenceRows rows_of(ResizableArray2D<int> const& C, bool with_c_edges);
/// Sets `symmetric`, and `either` for an asymmetric graph.
void complete_colour_rows(CorrespondenceRows& g);

/// One search: its limits, its recorded cliques and the clique being built. While it
/// runs it is the search that BronKerbosch::add_solution records into on this thread.
class CliqueCore {
 public:
  CliqueCore(CorrespondenceRows const& graph, CliqueSearchOptions const& options, bool log);
  ~CliqueCore();
  CliqueCore(CliqueCore const&) = delete;
  CliqueCore& operator=(CliqueCore const&) = delete;

  void run_disconnected();
  void run_connected();

  /// Records a clique as BronKerbosch::add_solution documents it.
  void record(std::vector<int> const& clique, int size);

  CliqueSearchResult take_result();

 private:
  struct Level;

  void extend_disconnected(int* old, int ne, int ce, Word* cand, std::size_t depth);
  void extend_connected(std::size_t depth);
  void choose_connected(Level& level);
  Level& connected_level(std::size_t depth);
  /// The number of clique nodes a branch must still add to reach a clique whose
  /// recording a caller could see, having `size` nodes.
  int needed(int size) const;
  /// Colours `cand` greedily into classes of mutually unjoined nodes, stored at
  /// `depth`; returns their number, an upper bound on a clique within `cand`.
  int colour(Word const* cand, std::size_t depth);
  /// Marks the classes at `depth` as not made (the cheap test then passes).
  void forget_classes(std::size_t depth);
  /// Whether a branch of `size` nodes with the candidates `cand` may still reach a
  /// clique a caller could see (cheap tests first); makes the classes at depth + 1.
  bool worth_extending(int size, Word const* cand, std::size_t depth);
  /// Whether, with the pair numbering, the pieces of `cand` (pairs joined when they share
  /// a node of either graph) allow fewer than `need` more clique nodes: each piece gives
  /// at most the smaller of its distinct first and second nodes.
  bool few_pairs(Word const* cand, int need);
  /// Whether fewer than `need` of the classes stored at `depth` meet `cand`.
  bool few_classes_meet(Word const* cand, std::size_t depth, int need) const;
  bool out_of_budget();

  CorrespondenceRows const& g_;
  int words_;
  CliqueSearchOptions options_;
  bool logging_;  // writes the add_solution lines (and so may not cut ties)
  bool stopped_ = false;
  long long steps_ = 0;
  std::chrono::steady_clock::time_point deadline_;
  bool has_deadline_ = false;

  int largest_ = 0;
  std::vector<std::vector<int>> solutions_;
  std::vector<int> clique_;
  CliqueCore* previous_active_;

  // Storage per depth, reused: order arrays and candidate rows of the disconnected
  // search; the lists of the connected search; scratch rows for the colouring bound.
  std::vector<std::vector<int>> order_;
  std::vector<std::vector<Word>> bits_;
  std::deque<Level> levels_;  // references stay valid as it grows
  std::vector<Word> colour_left_, scratch_;
  std::vector<std::vector<Word>> classes_;  // per depth: the colour classes, one row each
  std::vector<int> nclasses_;
  std::vector<int> piece_of_, first_count_, second_count_, touched_, pair_first_, pair_second_;
};

/// The search running on this thread, if any (for BronKerbosch::add_solution).
CliqueCore* active_search() noexcept;

}  // namespace structmath::detail
