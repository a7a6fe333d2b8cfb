// SPDX-License-Identifier: MIT
// Ullmann: depth-first assignment of pattern nodes with candidate refinement.
#include "structmath/graph/ullmann.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <ostream>
#include <stdexcept>

#include "structmath/core/vasc_log.hpp"

namespace structmath {

namespace {

std::size_t to_index(int i) { return static_cast<std::size_t>(i); }

static_assert(sizeof(bool) == 1, "candidate rows are scanned as bytes");

// The column of the first true entry of row[from, n), or n. Rows of M are
// mostly false once the search is under way, so a byte search beats testing
// entry by entry.
int next_true(bool const* row, int from, int n) {
  if (from >= n) return n;
  void const* const found = std::memchr(row + from, 1, to_index(n - from));
  return found ? static_cast<int>(static_cast<bool const*>(found) - row) : n;
}

}  // namespace

Ullmann::Ullmann() = default;
Ullmann::~Ullmann() = default;

void Ullmann::create(THandle<ResizableArray2D<bool>> pattern,
                     THandle<ResizableArray2D<bool>> target,
                     THandle<ResizableArray2D<bool>> candidates) {
  if (!pattern || !target || !candidates) {
    throw std::invalid_argument("Ullmann::create(): null matrix");
  }
  int const np = candidates->nrows();
  int const nt = candidates->ncols();
  if (pattern->nrows() != np || pattern->ncols() != np || target->nrows() != nt ||
      target->ncols() != nt) {
    throw std::invalid_argument("Ullmann::create(): matrix sizes do not agree");
  }
  pattern_ = std::move(pattern);
  target_ = std::move(target);
  candidates_ = std::move(candidates);
  rows_ = np;
  columns_ = nt;
  used_columns_.assign(to_index(columns_), false);
  nmatches_ = 0;
}

void Ullmann::read_graphs() {
  // The search reads the pattern and target as they are now, through the shared handles.
  ResizableArray2D<bool> const& p = *pattern_;
  ResizableArray2D<bool> const& t = *target_;
  if (p.nrows() != rows_ || p.ncols() != rows_ || t.nrows() != columns_ || t.ncols() != columns_ ||
      candidates_->nrows() != rows_ || candidates_->ncols() != columns_) {
    throw std::invalid_argument("Ullmann::find(): matrix sizes changed since create()");
  }
  pattern_neighbours_.assign(to_index(rows_), {});
  for (int i = 0; i < rows_; ++i) {
    for (int k = 0; k < rows_; ++k) {
      if (p[i][k]) pattern_neighbours_[to_index(i)].push_back(k);
    }
  }
  target_sources_.assign(to_index(columns_), {});
  for (int c = 0; c < columns_; ++c) {
    for (int j = 0; j < columns_; ++j) {
      if (t[c][j]) target_sources_[to_index(j)].push_back(c);
    }
  }
  saved_.resize(to_index(rows_));
}

bool Ullmann::find() {
  if (VascLog::enabled(3)) {
    VascLog::start_debug_line(3) << "Ullmann::find() entered";
    VascLog::end_debug_line();
  }
  if (!candidates_) throw std::runtime_error("Ullmann::find(): create() has not been called");
  if (rows_ > columns_) return false;
  read_graphs();
  nmatches_ = 0;
  depthfirst(0);
  if (VascLog::enabled(2)) {
    VascLog::start_debug_line(2) << "Ullmann::find() returning: nmatches_ = " << nmatches_;
    VascLog::end_debug_line();
  }
  return nmatches_ != 0;
}

bool Ullmann::check_match(THandle<std::vector<int>> /*match*/) { return true; }

bool Ullmann::depthfirst(int d) {
  if (VascLog::enabled(3)) {
    VascLog::start_debug_line(3) << "Ullmann::depthfirst() entered: d = " << d;
    VascLog::end_debug_line();
  }
  // An empty pattern has no node 0 to assign: no candidate, no match.
  if (d >= rows_) return false;
  ResizableArray2D<bool>& M = *candidates_;
  ResizableArray2D<bool>& saved = saved_[to_index(d)];
  saved = M;  // reuses the buffer once its shape is set
  bool const* const choices = saved[d];
  for (int j = next_true(choices, 0, columns_); j < columns_;
       j = next_true(choices, j + 1, columns_)) {
    if (used_columns_[to_index(j)]) continue;
    if (VascLog::enabled(3)) {
      VascLog::start_debug_line(3) << "Ullmann::depthfirst() processing node " << j;
      VascLog::end_debug_line();
    }
    std::fill_n(M[d], columns_, false);
    M[d][j] = true;
    used_columns_[to_index(j)] = true;
    if (!refine()) {
      if (d == rows_ - 1) {
        if (check_match(create_match())) {
          ++nmatches_;
          if (nmatches_ == match_limit_) return true;
        }
      } else if (depthfirst(d + 1)) {
        return true;
      }
    }
    used_columns_[to_index(j)] = false;
    std::copy_n(saved.data(), saved.size(), M.data());
  }
  return false;
}

bool Ullmann::refine() {
  ResizableArray2D<bool>& M = *candidates_;
  bool changed = true;
  while (changed) {
    changed = false;
    for (int i = 0; i < rows_; ++i) {
      bool* const row = M[i];
      for (int j = next_true(row, 0, columns_); j < columns_; j = next_true(row, j + 1, columns_)) {
        if (corresponds(i, j)) continue;
        row[j] = false;
        changed = true;
        if (all_false(i)) return true;
      }
    }
  }
  return false;
}

bool Ullmann::corresponds(int i, int j) {
  for (int k : pattern_neighbours_[to_index(i)]) {
    if (!row_and_column(k, j)) return false;
  }
  return true;
}

bool Ullmann::row_and_column(int k, int j) {
  bool const* row = (*candidates_)[k];
  for (int c : target_sources_[to_index(j)]) {
    if (row[c]) return true;
  }
  return false;
}

bool Ullmann::all_false(int i) { return next_true((*candidates_)[i], 0, columns_) == columns_; }

THandle<std::vector<int>> Ullmann::create_match() {
  auto match = make_handle<std::vector<int>>(to_index(rows_), 0);
  ResizableArray2D<bool> const& M = *candidates_;
  for (int i = 0; i < rows_; ++i) {
    bool const* row = M[i];
    auto const first = std::find(row, row + columns_, true);
    if (first != row + columns_) (*match)[to_index(i)] = static_cast<int>(first - row);
  }
  return match;
}

}  // namespace structmath
