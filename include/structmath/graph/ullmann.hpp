// SPDX-License-Identifier: MIT
// Ullmann: subgraph isomorphism by refinement and backtracking.
#pragma once

#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/graph/resizable_array_2d.hpp"

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
/// exponential in the worst case; each refinement pass costs
/// O(sum over candidates of pattern degree x target degree).
///
/// After a search that reached the limit M holds the accepted assignment (one
/// true per row); otherwise M is as `create` received it and no column is used.
/// `find` reads the pattern, target and candidates through the shared handles as
/// they stand when it runs, so edges changed after `create` count; their sizes must
/// not change. An empty pattern gives false: there is no node to assign.
class STRUCTMATH_API Ullmann {
 public:
  /// Null handles; match limit 1.
  Ullmann();
  virtual ~Ullmann();
  Ullmann(Ullmann const&) = default;
  Ullmann& operator=(Ullmann const&) = default;

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

 protected:
  /// Assigns pattern node d and recurses; true when the search must stop.
  bool depthfirst(int d);
  /// Narrows M until stable; true when some pattern node has lost every candidate.
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
  // Builds the neighbour lists from the matrices as they are when find runs.
  void read_graphs();

  // Neighbour lists taken at find: pattern_neighbours_[i] holds the k with
  // pattern[i][k], target_sources_[j] the c with target[c][j].
  std::vector<std::vector<int>> pattern_neighbours_;
  std::vector<std::vector<int>> target_sources_;
  // One saved copy of M per depth, reused across the search.
  std::vector<ResizableArray2D<bool>> saved_;
};

}  // namespace structmath
