// SPDX-License-Identifier: MIT
// The clique searches on bit rows, with colouring bounds and budgets, one state per search.
#include "structmath/graph/clique_search.hpp"

#include <algorithm>
#include <deque>
#include <ostream>
#include <stdexcept>

#include "clique_core.hpp"
#include "structmath/core/vasc_log.hpp"

namespace structmath::detail {

namespace {

thread_local CliqueCore* active = nullptr;

std::size_t to_index(int i) { return static_cast<std::size_t>(i); }

}  // namespace

CliqueCore* active_search() noexcept { return active; }

CorrespondenceRows rows_of(ResizableArray2D<int> const& C, bool with_c_edges) {
  CorrespondenceRows g;
  g.n = C.nrows();
  g.nonzero = BitRows(g.n, g.n);
  if (with_c_edges) {
    g.c_edges = BitRows(g.n, g.n);
    g.d_edges = BitRows(g.n, g.n);
  }
  for (int p = 0; p < g.n; ++p) {
    int const* row = C[p];
    for (int q = 0; q < g.n; ++q) {
      if (row[q] == 0) continue;
      g.nonzero.set(p, q);
      if (!with_c_edges) continue;
      if (row[q] == 1) g.c_edges.set(p, q);
      if (row[q] == -1) g.d_edges.set(p, q);
    }
  }
  complete_colour_rows(g);
  find_pair_numbering(g);
  return g;
}

void find_pair_numbering(CorrespondenceRows& g) {
  int const n = g.n;
  for (int columns = 2; columns < n; ++columns) {
    if (n % columns != 0) continue;
    bool fits = true;
    for (int p = 0; p < n && fits; ++p) {
      int const i = p / columns, j = p % columns;
      for (int k = 0; k < columns && fits; ++k) {
        int const q = i * columns + k;
        fits = q == p || (!g.nonzero.test(p, q) && !g.nonzero.test(q, p));
      }
      for (int k = 0; k < n / columns && fits; ++k) {
        int const q = k * columns + j;
        fits = q == p || (!g.nonzero.test(p, q) && !g.nonzero.test(q, p));
      }
    }
    if (fits) {
      g.pair_columns = columns;
      return;
    }
  }
}

void complete_colour_rows(CorrespondenceRows& g) {
  // A colour class must hold no two nodes that a clique could join; with an asymmetric
  // matrix a clique joins p and q when either row says so.
  bool symmetric = true;
  for (int p = 0; p < g.n && symmetric; ++p) {
    for (int q = p + 1; q < g.n; ++q) {
      if (g.nonzero.test(p, q) != g.nonzero.test(q, p)) {
        symmetric = false;
        break;
      }
    }
  }
  g.symmetric = symmetric;
  if (symmetric) return;
  g.either = g.nonzero;
  for (int p = 0; p < g.n; ++p) {
    for (int q = 0; q < g.n; ++q) {
      if (g.nonzero.test(q, p)) g.either.set(p, q);
    }
  }
}

// The lists of one level of the connected search: candidates in their order, the d-set
// (always ascending, so a row), and the explored nodes joined by a c-edge (xc) or by
// d-edges only (xd), whose order never matters.
struct CliqueCore::Level {
  std::vector<int> cand;
  std::vector<Word> cand_bits, dset, xc, xd, reach, frontier;
  std::vector<int> to_try;
};

CliqueCore::CliqueCore(CorrespondenceRows const& graph, CliqueSearchOptions const& options,
                       bool log)
    : g_(graph),
      words_(words_for(graph.n)),
      options_(options),
      logging_(log && VascLog::enabled(3)),
      previous_active_(active) {
  active = this;
  if (options_.budget.max_seconds >= 0.0) {
    has_deadline_ = true;
    deadline_ = std::chrono::steady_clock::now() +
                std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                    std::chrono::duration<double>(options_.budget.max_seconds));
  }
  colour_left_.resize(to_index(words_));
  scratch_.resize(to_index(words_));
}

CliqueCore::~CliqueCore() { active = previous_active_; }

void CliqueCore::record(std::vector<int> const& clique, int size) {
  if (size > largest_) {
    solutions_.clear();
    largest_ = size;
  }
  std::size_t const listed = solutions_.size();
  if (static_cast<long long>(listed) < options_.max_cliques) {
    auto const kept =
        std::clamp<std::ptrdiff_t>(size, 0, static_cast<std::ptrdiff_t>(clique.size()));
    solutions_.emplace_back(clique.begin(), clique.begin() + kept);
  }
  if (logging_ && VascLog::enabled(3)) {
    VascLog::start_debug_line(3) << "BronKerbosch add_solution() n cliques: " << listed
                                 << " new clique size: " << size
                                 << " last clique size: " << largest_;
    VascLog::end_debug_line();
  }
}

CliqueSearchResult CliqueCore::take_result() {
  CliqueSearchResult result;
  result.cliques = std::move(solutions_);
  result.largest_size = largest_;
  result.proven_optimal = !stopped_;
  result.steps = steps_;
  return result;
}

bool CliqueCore::out_of_budget() {
  if (stopped_) return true;
  ++steps_;
  if (options_.budget.max_steps >= 0 && steps_ > options_.budget.max_steps) stopped_ = true;
  if (has_deadline_ && (steps_ & 255) == 1 && std::chrono::steady_clock::now() >= deadline_) {
    stopped_ = true;
  }
  return stopped_;
}

int CliqueCore::needed(int size) const {
  // A branch that can only tie with the largest size changes nothing a caller sees
  // once the list is full and nothing is logged.
  bool const ties_invisible =
      !logging_ && static_cast<long long>(solutions_.size()) >= options_.max_cliques;
  return largest_ + (ties_invisible ? 1 : 0) - size;
}

STRUCTMATH_BIT_CLONES int CliqueCore::colour(Word const* cand, std::size_t depth) {
  if (classes_.size() <= depth) {
    classes_.resize(depth + 1);
    nclasses_.resize(depth + 1, 0);
  }
  std::vector<Word>& store = classes_[depth];
  BitRows const& joined = g_.symmetric ? g_.nonzero : g_.either;
  Word* const left = colour_left_.data();
  std::copy_n(cand, words_, left);
  int classes = 0;
  for (int first = 0; first < words_;) {
    if (left[first] == 0) {
      ++first;
      continue;
    }
    // A new class: the lowest node left, then every later node joined to none taken.
    std::size_t const at = to_index(classes) * to_index(words_);
    if (store.size() < at + to_index(words_)) store.resize(at + to_index(words_));
    Word* const klass = store.data() + at;
    std::fill_n(klass, words_, Word{0});
    Word* const open = scratch_.data();
    std::copy_n(left, words_, open);
    for (int w = first; w < words_; ++w) {
      while (open[w] != 0) {
        int const v = w * 64 + __builtin_ctzll(open[w]);
        Word const bit = open[w] & (~open[w] + 1);
        klass[w] |= bit;
        left[w] &= ~bit;
        Word const* row = joined.row(v);
        open[w] &= ~(bit | row[w]);
        for (int x = w + 1; x < words_; ++x) open[x] &= ~row[x];
      }
    }
    ++classes;
  }
  nclasses_[depth] = classes;
  return classes;
}

void CliqueCore::forget_classes(std::size_t depth) {
  if (classes_.size() <= depth) {
    classes_.resize(depth + 1);
    nclasses_.resize(depth + 1, 0);
  }
  nclasses_[depth] = -1;
}

bool CliqueCore::worth_extending(int size, Word const* cand, std::size_t depth) {
  int const need = needed(size);
  if (need <= 0) {
    forget_classes(depth + 1);  // nothing to cut yet: not worth colouring
    return true;
  }
  return popcount(cand, words_) >= need && !few_pairs(cand, need) &&
         !few_classes_meet(cand, depth, need) && colour(cand, depth + 1) >= need;
}

bool CliqueCore::few_pairs(Word const* cand, int need) {
  int const columns = g_.pair_columns;
  if (columns == 0 || need <= 0) return false;
  int const rows = g_.n / columns;
  if (piece_of_.empty()) {
    piece_of_.assign(to_index(rows + columns), -1);
    first_count_.assign(to_index(rows + columns), 0);
    second_count_.assign(to_index(rows + columns), 0);
  }
  // Pieces by union-find over the nodes of both graphs (second-graph node j is rows + j).
  auto find = [this](int x) {
    while (piece_of_[to_index(x)] != x) {
      int& up = piece_of_[to_index(x)];
      up = piece_of_[to_index(up)];
      x = up;
    }
    return x;
  };
  touched_.clear();
  auto touch = [&](int x) {
    if (piece_of_[to_index(x)] < 0) {
      piece_of_[to_index(x)] = x;
      touched_.push_back(x);
    }
  };
  if (pair_first_.empty()) {
    pair_first_.resize(to_index(g_.n));
    pair_second_.resize(to_index(g_.n));
    for (int p = 0; p < g_.n; ++p) {
      pair_first_[to_index(p)] = p / columns;
      pair_second_[to_index(p)] = rows + p % columns;
    }
  }
  for_each_bit(cand, words_, [&](int p) {
    int const a = pair_first_[to_index(p)], b = pair_second_[to_index(p)];
    touch(a);
    touch(b);
    int const ra = find(a), rb = find(b);
    if (ra != rb) piece_of_[to_index(ra)] = rb;
  });
  for (int x : touched_) ++(x < rows ? first_count_ : second_count_)[to_index(find(x))];
  int bound = 0;
  for (int x : touched_) {
    if (find(x) == x) bound += std::min(first_count_[to_index(x)], second_count_[to_index(x)]);
  }
  for (int x : touched_) {
    piece_of_[to_index(x)] = -1;
    first_count_[to_index(x)] = second_count_[to_index(x)] = 0;
  }
  return bound < need;
}

STRUCTMATH_BIT_CLONES bool CliqueCore::few_classes_meet(Word const* cand, std::size_t depth,
                                                        int need) const {
  if (need <= 0 || nclasses_[depth] < 0) return false;
  Word const* klass = classes_[depth].data();
  int meeting = 0;
  for (int c = 0; c < nclasses_[depth]; ++c, klass += words_) {
    for (int w = 0; w < words_; ++w) {
      if ((klass[w] & cand[w]) != 0) {
        if (++meeting >= need) return false;
        break;
      }
    }
  }
  return true;
}

// ---------------------------------------------------------------------------
// Disconnected search: Algorithm 457, version 2, with the order arrays of the published
// procedure (the order in which it meets nodes fixes the order of the cliques) and bit
// rows for the counts and the candidate sets.

void CliqueCore::run_disconnected() {
  int const n = g_.n;
  if (n == 0) return;
  order_.assign(1, std::vector<int>(to_index(n)));
  bits_.assign(1, std::vector<Word>(to_index(words_), 0));
  for (int i = 0; i < n; ++i) {
    order_[0][to_index(i)] = i;
    set_bit(bits_[0].data(), i);
  }
  std::vector<int>& all = order_[0];
  extend_disconnected(all.data(), 0, n, bits_[0].data(), 0);
}

// old[0, ne) is the not-set, old[ne, ce) the candidates, `cand` the candidates as a row.
STRUCTMATH_BIT_CLONES void CliqueCore::extend_disconnected(int* old, int ne, int ce, Word* cand,
                                                           std::size_t depth) {
  if (out_of_budget()) return;
  // The candidates' colour classes: made here for the first level, by the caller (which
  // cut the branch if they were too few) for the others.
  if (depth == 0) colour(cand, 0);
  if (order_.size() <= depth + 1) {
    order_.emplace_back(to_index(g_.n));
    bits_.emplace_back(to_index(words_), 0);
  }
  int* const fresh = order_[depth + 1].data();
  Word* const fresh_bits = bits_[depth + 1].data();
  BitRows const& row_of = g_.nonzero;

  // Fixed point: fewest non-neighbours among the candidates, first one wins; a not-set
  // fixed point starts at its last non-neighbour.
  int minnod = ce;
  int nod = 0;
  int fixp = 0;
  int s = 0;
  for (int i = 0; i < ce && minnod != 0; ++i) {
    Word const* row = row_of.row(old[i]);
    int count = 0;
    for (int w = 0; w < words_; ++w) count += __builtin_popcountll(cand[w] & ~row[w]);
    if (count < minnod) {
      fixp = old[i];
      minnod = count;
      if (i < ne) {
        if (count > 0) {
          s = ce - 1;
          while (test_bit(row, old[s])) --s;
        }
      } else {
        s = i;
        nod = 1;  // the fixed point itself is tried first
      }
    }
  }

  Word const* const fixed_row = row_of.row(fixp);
  for (nod += minnod; nod >= 1; --nod) {
    int const selected = old[s];
    old[s] = old[ne];
    old[ne] = selected;
    clear_bit(cand, selected);  // it joins the not-set after this branch
    Word const* row = row_of.row(selected);
    int newne = 0;
    for (int i = 0; i < ne; ++i) {
      if (test_bit(row, old[i])) fresh[newne++] = old[i];
    }
    for (int w = 0; w < words_; ++w) fresh_bits[w] = cand[w] & row[w];
    int const ncand = popcount(fresh_bits, words_);
    clique_.push_back(selected);
    int const size = static_cast<int>(clique_.size());
    if (newne + ncand == 0) {
      if (size >= largest_) record(clique_, size);
    } else if (ncand > 0 && worth_extending(size, fresh_bits, depth)) {
      int newce = newne;
      for (int i = ne + 1; i < ce; ++i) {
        if (test_bit(row, old[i])) fresh[newce++] = old[i];
      }
      extend_disconnected(fresh, newne, newce, fresh_bits, depth + 1);
    }
    clique_.pop_back();
    if (stopped_) return;
    ++ne;
    if (nod > 1) {
      for (s = ne; s < ce && test_bit(fixed_row, old[s]); ++s) {
      }
      if (s == ce) break;  // only for an asymmetric matrix
    }
  }
}

// ---------------------------------------------------------------------------
// Connected search. Besides the clique each level holds, over the nodes joined to every
// node of the clique, the candidates (joined by at least one c-edge), the d-set (joined
// by d-edges only) and the nodes already explored, split in the same way into xc and xd.
// A clique is recorded when no candidate and no node of xc remains.

CliqueCore::Level& CliqueCore::connected_level(std::size_t depth) {
  while (levels_.size() <= depth) {
    levels_.emplace_back();
    Level& level = levels_.back();
    for (auto* row :
         {&level.cand_bits, &level.dset, &level.xc, &level.xd, &level.reach, &level.frontier}) {
      row->assign(to_index(words_), 0);
    }
  }
  return levels_[depth];
}

void CliqueCore::run_connected() {
  int const n = g_.n;
  if (options_.max_size < 1) return;
  for (int v = 0; v < n && !stopped_; ++v) {
    Level& level = connected_level(0);
    level.cand.clear();
    for (auto* row : {&level.cand_bits, &level.dset, &level.xc, &level.xd}) {
      std::fill(row->begin(), row->end(), 0);
    }
    for (int w = 0; w < n; ++w) {
      if (w == v) continue;
      if (g_.c_edges.test(v, w)) {
        if (w < v) {
          set_bit(level.xc.data(), w);
        } else {
          level.cand.push_back(w);
          set_bit(level.cand_bits.data(), w);
        }
      } else if (g_.d_edges.test(v, w)) {
        set_bit(w < v ? level.xd.data() : level.dset.data(), w);
      }
    }
    clique_.assign(1, v);
    extend_connected(0);
    clique_.clear();
  }
}

STRUCTMATH_BIT_CLONES void CliqueCore::extend_connected(std::size_t depth) {
  if (out_of_budget()) return;
  connected_level(depth + 1);  // levels_ is a deque: references stay valid as it grows
  Level& level = levels_[depth];
  int const size = static_cast<int>(clique_.size());
  if (level.cand.empty() || size >= options_.max_size) {
    if (!any(level.xc.data(), words_) && size >= largest_) record(clique_, size);
    return;
  }
  if (depth == 0) {
    // Every node of a larger clique is a candidate or in the d-set; the classes of the
    // deeper levels are made by their callers, which cut the branches they condemn.
    Word* const reachable = level.frontier.data();  // free until choose_connected
    for (int w = 0; w < words_; ++w) {
      reachable[w] = level.cand_bits[to_index(w)] | level.dset[to_index(w)];
    }
    int const need = needed(size);
    if (colour(reachable, 0) < need) return;
  }

  choose_connected(level);
  Level& next = levels_[depth + 1];
  for (int v : level.to_try) {
    level.cand.erase(std::find(level.cand.begin(), level.cand.end(), v));
    clear_bit(level.cand_bits.data(), v);
    Word const* nz = g_.nonzero.row(v);
    Word const* c1 = g_.c_edges.row(v);
    Word const* d1 = g_.d_edges.row(v);
    Word* const reachable = level.frontier.data();  // free once to_try is made
    for (int w = 0; w < words_; ++w) {
      std::size_t const k = to_index(w);
      Word const promoted = level.dset[k] & c1[w];
      next.cand_bits[k] = (level.cand_bits[k] & nz[w]) | promoted;
      next.dset[k] = level.dset[k] & d1[w];
      reachable[w] = next.cand_bits[k] | next.dset[k];
    }
    // The branch is cut when its candidates and d-set cannot make up a clique a caller
    // could see: too few, too few of this level's classes, too few classes of their own.
    int const need = needed(size + 1);
    // A child without candidates (or at the size limit) only records or returns: no
    // bound is worth its cost there.
    bool const leaf = !any(next.cand_bits.data(), words_) || size + 1 >= options_.max_size;
    bool condemned = false;
    if (leaf) {
      forget_classes(depth + 1);
    } else if (need > 0) {
      condemned = popcount(reachable, words_) < need || few_classes_meet(reachable, depth, need) ||
                  colour(reachable, depth + 1) < need;
    } else {
      forget_classes(depth + 1);  // nothing to cut yet: not worth colouring
    }
    if (!condemned) {
      for (int w = 0; w < words_; ++w) {
        std::size_t const k = to_index(w);
        next.xc[k] = (level.xc[k] & nz[w]) | (level.xd[k] & c1[w]);
        next.xd[k] = level.xd[k] & d1[w];
      }
      next.cand.clear();
      for (int w : level.cand) {
        if (test_bit(nz, w)) next.cand.push_back(w);
      }
      // d-set nodes joined to v by a c-edge follow the candidates, in increasing order.
      for_each_bit(next.cand_bits.data(), words_, [&](int w) {
        if (test_bit(level.dset.data(), w) && test_bit(c1, w)) next.cand.push_back(w);
      });
    }
    clique_.push_back(v);
    if (!condemned) extend_connected(depth + 1);
    clique_.pop_back();
    if (stopped_) return;
    set_bit(level.xc.data(), v);
  }
}

// The pivot u is the first candidate. A candidate v is tried when it is u, is not joined
// to u, or reaches through c-edges within the d-set a d-set node not joined to u; any
// other connected clique without u would grow by u.
STRUCTMATH_BIT_CLONES void CliqueCore::choose_connected(Level& level) {
  int const u = level.cand.front();
  Word const* pivot = g_.nonzero.row(u);
  level.to_try.clear();
  // Candidates other than u joined to it are tried only through the d-set search below;
  // when there are none, or no d-set node is unjoined to u, it is not needed.
  bool joined_to_pivot = false;
  for (int v : level.cand) joined_to_pivot = joined_to_pivot || (v != u && test_bit(pivot, v));
  Word* const reach = level.reach.data();
  Word* const frontier = level.frontier.data();
  Word const* const dset = level.dset.data();
  bool reach_any = false;
  for (int w = 0; w < words_; ++w) {
    reach[w] = joined_to_pivot ? dset[w] & ~pivot[w] : 0;
    frontier[w] = reach[w];
    reach_any = reach_any || reach[w] != 0;
  }
  // Breadth-first within the d-set along c-edges, word by word: a node taken from the
  // frontier adds the d-set nodes it reaches that are not reached yet.
  for (int w = 0; reach_any && w < words_;) {
    if (frontier[w] == 0) {
      ++w;
      continue;
    }
    int const y = w * 64 + __builtin_ctzll(frontier[w]);
    frontier[w] &= frontier[w] - 1;
    Word const* c1 = g_.c_edges.row(y);
    int lowest = w;
    for (int x = 0; x < words_; ++x) {
      Word const fresh = c1[x] & dset[x] & ~reach[x];
      if (fresh != 0) {
        reach[x] |= fresh;
        frontier[x] |= fresh;
        lowest = std::min(lowest, x);
      }
    }
    w = lowest;
  }
  for (int v : level.cand) {
    bool tried = v == u || !test_bit(pivot, v);
    if (!tried && reach_any) {
      Word const* c1 = g_.c_edges.row(v);
      for (int w = 0; w < words_ && !tried; ++w) tried = (c1[w] & reach[w]) != 0;
    }
    if (tried) level.to_try.push_back(v);
  }
}

}  // namespace structmath::detail

namespace structmath {

CliqueSearchResult CliqueSearch::disconnected(ResizableArray2D<int> const& C, bool log) const {
  if (C.nrows() != C.ncols()) {
    throw std::invalid_argument("CliqueSearch::disconnected(): matrix not square");
  }
  detail::CorrespondenceRows const rows = detail::rows_of(C, false);
  detail::CliqueCore core(rows, options_, log);
  core.run_disconnected();
  return core.take_result();
}

CliqueSearchResult CliqueSearch::connected(ResizableArray2D<int> const& C, bool log) const {
  if (C.nrows() != C.ncols()) {
    throw std::invalid_argument("CliqueSearch::connected(): matrix not square");
  }
  detail::CorrespondenceRows const rows = detail::rows_of(C, true);
  detail::CliqueCore core(rows, options_, log);
  core.run_connected();
  return core.take_result();
}

}  // namespace structmath
