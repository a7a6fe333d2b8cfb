// SPDX-License-Identifier: MIT
// Ullmann: subgraph isomorphism by refinement and backtracking.
#pragma once

#include <memory>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/graph/resizable_array_2d.hpp"
#include "structmath/graph/search_budget.hpp"

namespace structmath {

/// Embeds a pattern graph in a target graph by Ullmann's method (J. R. Ullmann,
/// J. ACM 23 (1976) 31–42).
///
/// The candidate matrix M (pattern nodes x target nodes, shared with the
/// caller) says which target node each pattern node may become. Pattern node d
/// = 0, 1, … is fixed in turn to each of its free candidate columns in
/// increasing order; after each choice `refine` drops every M[i][j] whose
/// pattern neighbours k have no candidate joined to j in the target, repeating
/// until nothing changes, and the branch fails when a row empties. A complete
/// assignment is offered to `check_match`; the search stops once `match_limit_`
/// matches (1 unless a derived class changes it) have been accepted. The cost is
/// exponential in the worst case.
///
/// The search runs on bit rows (64 target nodes a word): refinement narrows a
/// row by the union of the target rows of each neighbour's candidates, word by
/// word, and tracks empty rows. The refined matrix does not depend on the order
/// of the removals, so the matches, their order and the log are those of the
/// entry-by-entry method; with the log off, one refinement before the first
/// assignment drops columns that could only fail. While `check_match` runs, M
/// holds the assignment offered (one true per row).
///
/// After a search that reached the limit M holds the accepted assignment (one
/// true per row); otherwise M is as `find` received it and no column is used.
/// `find` reads the pattern, target and candidates through the shared handles as
/// they stand when it runs, so edges changed after `create` count; their sizes must
/// not change. An empty pattern gives false: there is no node to assign.
class STRUCTMATH_API Ullmann {
 public:
  /// Null handles; match limit 1.
  Ullmann();
  virtual ~Ullmann();
  /// Copies the handles, limits and counts; the search state is made afresh by find.
  Ullmann(Ullmann const& other);
  Ullmann& operator=(Ullmann const& other);

  /// Shares the three matrices (no copies) and resets the search. Throws
  /// std::invalid_argument "Ullmann::create(): null matrix" for an empty handle
  /// and "Ullmann::create(): matrix sizes do not agree" unless the pattern is
  /// n_p x n_p, the target n_t x n_t and the candidates n_p x n_t.
  void create(THandle<ResizableArray2D<bool>> pattern, THandle<ResizableArray2D<bool>> target,
              THandle<ResizableArray2D<bool>> candidates);

  /// Runs the search; true when at least one match was accepted. A pattern
  /// larger than the target gives false at once. Throws std::runtime_error
  /// "Ullmann::find(): create() has not been called" before `create`, and
  /// std::invalid_argument "Ullmann::find(): matrix sizes changed since create()".
  virtual bool find();

  /// Accepts or rejects a complete match: entry i is the target node of pattern
  /// node i. Accepts every match; override to add conditions.
  virtual bool check_match(THandle<std::vector<int>> match);

  /// Matches accepted by the last search.
  int nmatches() const noexcept { return nmatches_; }
  int match_limit() const noexcept { return match_limit_; }

  /// Limits the work of later searches (one step per assignment tried); the default
  /// budget is unlimited, which gives the search as documented.
  void set_budget(SearchBudget const& budget) noexcept { budget_ = budget; }
  SearchBudget const& budget() const noexcept { return budget_; }
  /// False when the last search stopped because its budget ran out: more matches may
  /// exist than it found.
  bool completed() const noexcept { return completed_; }

 protected:
  /// Assigns pattern node d and recurses; true when the search must stop.
  bool depthfirst(int d);
  /// Narrows the candidates until stable; true when some pattern node has lost every
  /// candidate. The protected steps work on the search's state during find.
  bool refine();
  /// True when every pattern neighbour of i keeps a candidate joined to target node j.
  bool corresponds(int i, int j);
  /// True when pattern node k has a candidate c with target[c][j].
  bool row_and_column(int k, int j);
  /// True when row i of M is all false.
  bool all_false(int i);
  /// For each pattern node, the column of the first true entry of its row (0 if none).
  THandle<std::vector<int>> create_match();

  THandle<ResizableArray2D<bool>> pattern_;
  THandle<ResizableArray2D<bool>> target_;
  THandle<ResizableArray2D<bool>> candidates_;
  int rows_ = 0;
  int columns_ = 0;
  int match_limit_ = 1;
  int nmatches_ = 0;
  std::vector<bool> used_columns_;

 private:
  struct State;
  // Builds the search state from the matrices as they are when find runs.
  void read_graphs();
  // Recomputes the unions of target rows of the rows changed since they were made.
  void update_reach();
  // Writes the current assignment into M, for check_match and for the caller.
  void write_assignment();

  // pattern_neighbours_[i] holds the k with pattern[i][k], taken at find.
  std::vector<std::vector<int>> pattern_neighbours_;
  std::unique_ptr<State> state_;
  SearchBudget budget_;
  bool completed_ = true;
};

}  // namespace structmath
