// SPDX-License-Identifier: MIT
// Ullmann: depth-first assignment of pattern nodes with bit-parallel candidate refinement.
#include "structmath/graph/ullmann.hpp"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ostream>
#include <stdexcept>

#include "bit_rows.hpp"
#include "structmath/core/vasc_log.hpp"

namespace structmath {

namespace {

std::size_t to_index(int i) { return static_cast<std::size_t>(i); }

}  // namespace

// The candidate matrix and the target as bit rows, one saved copy of the candidates per
// depth, and per pattern node the union of the target rows of its candidates.
struct Ullmann::State {
  int words = 0;
  detail::BitRows m;
  detail::BitRows target;  // target.row(c) holds the j with target[c][j]
  std::vector<std::vector<detail::Word>> saved, saved_reach;
  detail::BitRows reach;
  std::vector<char> reach_stale;
  std::vector<detail::Word> scratch;
  ResizableArray2D<bool> given;  // M as find received it
  long long steps = 0;
  bool has_deadline = false;
  std::chrono::steady_clock::time_point deadline;
  bool stopped = false;
  bool limit_reached = false;

  detail::Word* row(int i) { return m.row(i); }
};

Ullmann::Ullmann() = default;
Ullmann::~Ullmann() = default;

Ullmann::Ullmann(Ullmann const& other)
    : pattern_(other.pattern_),
      target_(other.target_),
      candidates_(other.candidates_),
      rows_(other.rows_),
      columns_(other.columns_),
      match_limit_(other.match_limit_),
      nmatches_(other.nmatches_),
      used_columns_(other.used_columns_),
      budget_(other.budget_),
      completed_(other.completed_) {}

Ullmann& Ullmann::operator=(Ullmann const& other) {
  if (this != &other) {
    pattern_ = other.pattern_;
    target_ = other.target_;
    candidates_ = other.candidates_;
    rows_ = other.rows_;
    columns_ = other.columns_;
    match_limit_ = other.match_limit_;
    nmatches_ = other.nmatches_;
    used_columns_ = other.used_columns_;
    budget_ = other.budget_;
    completed_ = other.completed_;
    pattern_neighbours_.clear();
    state_.reset();
  }
  return *this;
}

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
  // The search reads the pattern, target and candidates as they are now.
  ResizableArray2D<bool> const& p = *pattern_;
  ResizableArray2D<bool> const& t = *target_;
  ResizableArray2D<bool> const& M = *candidates_;
  if (p.nrows() != rows_ || p.ncols() != rows_ || t.nrows() != columns_ || t.ncols() != columns_ ||
      M.nrows() != rows_ || M.ncols() != columns_) {
    throw std::invalid_argument("Ullmann::find(): matrix sizes changed since create()");
  }
  pattern_neighbours_.assign(to_index(rows_), {});
  for (int i = 0; i < rows_; ++i) {
    for (int k = 0; k < rows_; ++k) {
      if (p[i][k]) pattern_neighbours_[to_index(i)].push_back(k);
    }
  }
  auto state = std::make_unique<State>();
  State& s = *state;
  s.words = detail::words_for(columns_);
  s.m = detail::BitRows(rows_, columns_);
  s.target = detail::BitRows(columns_, columns_);
  s.reach = detail::BitRows(rows_, columns_);
  s.reach_stale.assign(to_index(rows_), 1);
  s.scratch.assign(to_index(s.words), 0);
  s.saved.assign(to_index(rows_), std::vector<detail::Word>(s.m.block().size()));
  s.saved_reach = s.saved;
  for (int i = 0; i < rows_; ++i) {
    for (int j = 0; j < columns_; ++j) {
      if (M[i][j]) s.m.set(i, j);
    }
  }
  for (int c = 0; c < columns_; ++c) {
    for (int j = 0; j < columns_; ++j) {
      if (t[c][j]) s.target.set(c, j);
    }
  }
  s.given = M;
  if (budget_.max_seconds >= 0.0) {
    s.has_deadline = true;
    s.deadline = std::chrono::steady_clock::now() +
                 std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                     std::chrono::duration<double>(budget_.max_seconds));
  }
  state_ = std::move(state);
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
  completed_ = true;
  // Without a log to keep, refining before the first assignment drops only columns
  // whose branches would fail: the matches offered stay the same.
  bool const hopeless = !VascLog::enabled(3) && rows_ > 0 && refine();
  if (!hopeless) depthfirst(0);
  completed_ = !state_->stopped;
  // The accepted assignment stays in M and its columns stay used; otherwise M is as it
  // was given and no column is used.
  if (!state_->limit_reached) {
    *candidates_ = state_->given;
    std::fill(used_columns_.begin(), used_columns_.end(), false);
  }
  if (VascLog::enabled(2)) {
    VascLog::start_debug_line(2) << "Ullmann::find() returning: nmatches_ = " << nmatches_;
    VascLog::end_debug_line();
  }
  state_.reset();
  return nmatches_ != 0;
}

bool Ullmann::check_match(THandle<std::vector<int>> /*match*/) { return true; }

void Ullmann::write_assignment() {
  ResizableArray2D<bool>& M = *candidates_;
  for (int i = 0; i < rows_; ++i) {
    bool* row = M[i];
    std::fill_n(row, columns_, false);
    int const j = detail::first_bit(state_->row(i), state_->words);
    if (j >= 0) row[j] = true;
  }
}

bool Ullmann::depthfirst(int d) {
  if (VascLog::enabled(3)) {
    VascLog::start_debug_line(3) << "Ullmann::depthfirst() entered: d = " << d;
    VascLog::end_debug_line();
  }
  // An empty pattern has no node 0 to assign: no candidate, no match.
  if (d >= rows_) return false;
  State& s = *state_;
  int const words = s.words;
  // Saved with the candidates: the unions of target rows, all brought up to date, so
  // that a step recomputes only the rows it changes.
  update_reach();
  std::vector<detail::Word>& saved = s.saved[to_index(d)];
  std::vector<detail::Word>& saved_reach = s.saved_reach[to_index(d)];
  std::copy(s.m.block().begin(), s.m.block().end(), saved.begin());
  std::copy(s.reach.block().begin(), s.reach.block().end(), saved_reach.begin());
  detail::Word const* const choices = saved.data() + to_index(d) * to_index(words);
  for (int j = detail::first_bit(choices, words); j >= 0;
       j = detail::next_bit(choices, words, j + 1)) {
    if (used_columns_[to_index(j)]) continue;
    ++s.steps;
    if (budget_.max_steps >= 0 && s.steps > budget_.max_steps) s.stopped = true;
    if (s.has_deadline && (s.steps & 63) == 1 && std::chrono::steady_clock::now() >= s.deadline) {
      s.stopped = true;
    }
    if (s.stopped) return true;
    if (VascLog::enabled(3)) {
      VascLog::start_debug_line(3) << "Ullmann::depthfirst() processing node " << j;
      VascLog::end_debug_line();
    }
    detail::Word* row = s.row(d);
    std::fill_n(row, words, detail::Word{0});
    detail::set_bit(row, j);
    s.reach_stale[to_index(d)] = 1;
    used_columns_[to_index(j)] = true;
    if (!refine()) {
      if (d == rows_ - 1) {
        write_assignment();
        if (check_match(create_match())) {
          ++nmatches_;
          if (nmatches_ == match_limit_) {
            s.limit_reached = true;
            return true;
          }
        }
      } else if (depthfirst(d + 1)) {
        return true;
      }
    }
    used_columns_[to_index(j)] = false;
    std::copy(saved.begin(), saved.end(), s.m.block().begin());
    std::copy(saved_reach.begin(), saved_reach.end(), s.reach.block().begin());
    std::fill(s.reach_stale.begin(), s.reach_stale.end(), 0);
  }
  return false;
}

bool Ullmann::refine() {
  State& s = *state_;
  int const words = s.words;
  // j stays a candidate of i while every pattern neighbour k of i has a candidate c
  // with target[c][j], that is while j lies in the union of the target rows of k's
  // candidates. Removals only shrink these unions, so repeating until nothing changes
  // reaches the same matrix whatever the order.
  bool changed = true;
  while (changed) {
    changed = false;
    update_reach();
    for (int i = 0; i < rows_; ++i) {
      detail::Word* row = s.row(i);
      detail::Word diff = 0;
      for (int k : pattern_neighbours_[to_index(i)]) {
        detail::Word const* reach = s.reach.row(k);
        for (int w = 0; w < words; ++w) {
          detail::Word const kept = row[w] & reach[w];
          diff |= kept ^ row[w];
          row[w] = kept;
        }
      }
      if (diff != 0) {
        if (!detail::any(row, words)) return true;
        s.reach_stale[to_index(i)] = 1;
        changed = true;
      }
    }
  }
  return false;
}

void Ullmann::update_reach() {
  State& s = *state_;
  int const words = s.words;
  for (int k = 0; k < rows_; ++k) {
    if (!s.reach_stale[to_index(k)]) continue;
    detail::Word* reach = s.reach.row(k);
    std::fill_n(reach, words, detail::Word{0});
    detail::for_each_bit(s.row(k), words, [&](int c) {
      detail::Word const* t = s.target.row(c);
      for (int w = 0; w < words; ++w) reach[w] |= t[w];
    });
    s.reach_stale[to_index(k)] = 0;
  }
}

bool Ullmann::corresponds(int i, int j) {
  for (int k : pattern_neighbours_[to_index(i)]) {
    if (!row_and_column(k, j)) return false;
  }
  return true;
}

bool Ullmann::row_and_column(int k, int j) {
  State& s = *state_;
  bool found = false;
  detail::for_each_bit(s.row(k), s.words, [&](int c) { found = found || s.target.test(c, j); });
  return found;
}

bool Ullmann::all_false(int i) { return !detail::any(state_->row(i), state_->words); }

THandle<std::vector<int>> Ullmann::create_match() {
  auto match = make_handle<std::vector<int>>(to_index(rows_), 0);
  for (int i = 0; i < rows_; ++i) {
    int const j = detail::first_bit(state_->row(i), state_->words);
    if (j >= 0) (*match)[to_index(i)] = j;
  }
  return match;
}

}  // namespace structmath
