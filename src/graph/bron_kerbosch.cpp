// SPDX-License-Identifier: MIT
// BronKerbosch: correspondence graph, the two clique searches and the match built from a clique.
#include "structmath/graph/bron_kerbosch.hpp"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <stdexcept>

#include "structmath/core/vasc_log.hpp"

namespace structmath {

namespace {

// Search state shared by the recursion and add_solution; one search at a time.
int largest_size = 0;
int max_cliques_kept = 0;
int max_clique_size = 0;
CliqueList solutions = make_handle<std::vector<THandle<std::vector<int>>>>();
std::vector<int> current_clique;

std::size_t to_index(int i) { return static_cast<std::size_t>(i); }

void log_line(char const* text, std::size_t value) {
  if (!VascLog::enabled(3)) return;
  VascLog::start_debug_line(3) << text << value;
  VascLog::end_debug_line();
}

void require_square(ResizableArray2D<int> const& C, char const* message) {
  if (C.nrows() != C.ncols()) throw std::invalid_argument(message);
}

// ---------------------------------------------------------------------------
// Disconnected search: Algorithm 457, version 2.

class DisconnectedSearch {
 public:
  explicit DisconnectedSearch(ResizableArray2D<int> const& C) : C_(C) {}

  void run() {
    int const n = C_.nrows();
    if (n == 0) return;
    std::vector<int> all(to_index(n));
    for (int i = 0; i < n; ++i) all[to_index(i)] = i;
    extend(all.data(), 0, n, 0);
  }

 private:
  // old[0, ne) is the not-set, old[ne, ce) the candidates.
  void extend(int* old, int ne, int ce, std::size_t depth) {
    if (buffers_.size() <= depth) buffers_.emplace_back();
    if (buffers_[depth].size() < to_index(ce)) buffers_[depth].resize(to_index(ce));
    int* fresh = buffers_[depth].data();

    // Fixed point: fewest non-neighbours among the candidates, first one wins.
    int minnod = ce;
    int nod = 0;
    int fixp = 0;
    int s = 0;
    int pos = 0;
    for (int i = 0; i < ce && minnod != 0; ++i) {
      int const* row = C_[old[i]];
      int count = 0;
      for (int j = ne; j < ce && count < minnod; ++j) {
        if (row[old[j]] == 0) {
          ++count;
          pos = j;
        }
      }
      if (count < minnod) {
        fixp = old[i];
        minnod = count;
        if (i < ne) {
          s = pos;
        } else {
          s = i;
          nod = 1;  // the fixed point itself is tried first
        }
      }
    }

    for (nod += minnod; nod >= 1; --nod) {
      int const selected = old[s];
      old[s] = old[ne];
      old[ne] = selected;
      int const* row = C_[selected];
      int newne = 0;
      for (int i = 0; i < ne; ++i) {
        if (row[old[i]] != 0) fresh[newne++] = old[i];
      }
      int newce = newne;
      for (int i = ne + 1; i < ce; ++i) {
        if (row[old[i]] != 0) fresh[newce++] = old[i];
      }
      current_clique.push_back(selected);
      int const size = static_cast<int>(current_clique.size());
      if (newce == 0) {
        if (size >= largest_size) BronKerbosch::add_solution(current_clique, size);
      } else if (newne < newce && size + (newce - newne) >= largest_size) {
        // The size test only drops branches that could never be recorded.
        extend(fresh, newne, newce, depth + 1);
      }
      current_clique.pop_back();
      ++ne;
      if (nod > 1) {
        for (s = ne; s < ce && C_[fixp][old[s]] != 0; ++s) {
        }
        if (s == ce) break;  // only for an asymmetric matrix
      }
    }
  }

  ResizableArray2D<int> const& C_;
  std::vector<std::vector<int>> buffers_;
};

// ---------------------------------------------------------------------------
// Connected search.
//
// Besides the clique R each level holds, over the nodes joined to every node of
// R, the candidates (joined to R by at least one c-edge), the d-set (joined by
// d-edges only), and the nodes already explored, split in the same way into
// c-excluded and d-excluded. R is a maximal connected clique exactly when no
// candidates and no c-excluded nodes remain.

class ConnectedSearch {
 public:
  explicit ConnectedSearch(ResizableArray2D<int> const& C)
      : C_(C),
        n_(C.nrows()),
        mark_(to_index(n_), 0),
        levels_(to_index(std::max(0, std::min(max_clique_size, n_)) + 1)) {}

  void run() {
    if (max_clique_size < 1) return;
    for (int v = 0; v < n_; ++v) {
      Level& level = reset(0);
      int const* row = C_[v];
      for (int w = 0; w < n_; ++w) {
        if (w == v) continue;
        if (row[w] == 1) {
          (w < v ? level.xc : level.cand).push_back(w);
        } else if (row[w] == -1) {
          (w < v ? level.xd : level.dset).push_back(w);
        }
      }
      current_clique.assign(1, v);
      extend(0);
      current_clique.clear();
    }
  }

 private:
  struct Level {
    std::vector<int> cand, dset, xc, xd, to_try;
  };

  Level& reset(std::size_t depth) {
    Level& level = levels_[depth];
    if (level.cand.capacity() == 0) {
      for (auto* list : {&level.cand, &level.dset, &level.xc, &level.xd, &level.to_try}) {
        list->reserve(to_index(n_));
      }
    }
    level.cand.clear();
    level.dset.clear();
    level.xc.clear();
    level.xd.clear();
    level.to_try.clear();
    return level;
  }

  void extend(std::size_t depth) {
    Level& level = levels_[depth];
    int const size = static_cast<int>(current_clique.size());
    if (level.cand.empty() || size >= max_clique_size) {
      if (level.xc.empty() && size >= largest_size) {
        BronKerbosch::add_solution(current_clique, size);
      }
      return;
    }
    // No connected clique through this level can be recorded.
    if (size + static_cast<int>(level.cand.size() + level.dset.size()) < largest_size) return;

    choose_candidates(level);
    for (int v : level.to_try) {
      level.cand.erase(std::find(level.cand.begin(), level.cand.end(), v));
      Level& next = reset(depth + 1);
      int const* row = C_[v];
      for (int w : level.cand) {
        if (row[w] != 0) next.cand.push_back(w);
      }
      for (int w : level.dset) {
        if (row[w] == 1) {
          next.cand.push_back(w);
        } else if (row[w] == -1) {
          next.dset.push_back(w);
        }
      }
      for (int w : level.xc) {
        if (row[w] != 0) next.xc.push_back(w);
      }
      for (int w : level.xd) {
        if (row[w] == 1) {
          next.xc.push_back(w);
        } else if (row[w] == -1) {
          next.xd.push_back(w);
        }
      }
      current_clique.push_back(v);
      extend(depth + 1);
      current_clique.pop_back();
      level.xc.push_back(v);
    }
  }

  // The pivot u is the first candidate. A candidate v is tried when it is u, is
  // not joined to u, or reaches through c-edges within the d-set a d-set node
  // not joined to u; any other connected clique without u would grow by u.
  void choose_candidates(Level& level) {
    int const u = level.cand.front();
    int const* pivot_row = C_[u];
    // Mark the d-set nodes that lead to a node not joined to u.
    std::vector<int>& reach = level.to_try;  // scratch until the list is built
    for (int y : level.dset) {
      if (pivot_row[y] == 0) {
        mark_[to_index(y)] = 1;
        reach.push_back(y);
      }
    }
    for (std::size_t k = 0; k < reach.size(); ++k) {
      int const* row = C_[reach[k]];
      for (int y : level.dset) {
        if (row[y] == 1 && !mark_[to_index(y)]) {
          mark_[to_index(y)] = 1;
          reach.push_back(y);
        }
      }
    }
    std::size_t const nreach = reach.size();
    for (int v : level.cand) {
      bool tried = v == u || pivot_row[v] == 0;
      int const* row = C_[v];
      for (std::size_t k = 0; k < nreach && !tried; ++k) tried = row[reach[k]] == 1;
      if (tried) reach.push_back(v);
    }
    for (std::size_t k = 0; k < nreach; ++k) mark_[to_index(reach[k])] = 0;
    reach.erase(reach.begin(), reach.begin() + static_cast<std::ptrdiff_t>(nreach));
  }

  ResizableArray2D<int> const& C_;
  int n_;
  std::vector<char> mark_;
  std::vector<Level> levels_;
};

void start_search(int max_cliques, int max_size) {
  largest_size = 0;
  max_cliques_kept = max_cliques;
  max_clique_size = max_size;
  solutions = make_handle<std::vector<THandle<std::vector<int>>>>();
  current_clique.clear();
}

}  // namespace

ResizableArray2D<int> BronKerbosch::create_correspondence_graph(ResizableArray2D<bool> const& A,
                                                                ResizableArray2D<bool> const& B) {
  if (A.nrows() != A.ncols() || B.nrows() != B.ncols()) {
    throw std::invalid_argument("BronKerbosch::create_correspondence_graph(): matrix not square");
  }
  int const n1 = A.nrows();
  int const n2 = B.nrows();
  int const n = n1 * n2;
  ResizableArray2D<int> C(n, n, 0);
  for (int i1 = 0; i1 < n1; ++i1) {
    for (int j1 = 0; j1 < n2; ++j1) {
      int* row = C[i1 * n2 + j1];
      for (int i2 = 0; i2 < n1; ++i2) {
        if (i2 == i1) continue;
        bool const a = A[i1][i2];
        for (int j2 = 0; j2 < n2; ++j2) {
          if (j2 == j1) continue;
          bool const b = B[j1][j2];
          row[i2 * n2 + j2] = a && b ? 1 : (!a && !b ? -1 : 0);
        }
      }
      row[i1 * n2 + j1] = 1;
    }
  }
  return C;
}

CliqueList BronKerbosch::find_cliques(ResizableArray2D<int> const& C, Subgraph::SubgraphType type,
                                      int max_cliques, int max_size) {
  switch (type) {
    case Subgraph::CONNECTED:
      return find_connected_cliques(C, max_cliques, max_size);
    case Subgraph::DISCONNECTED:
      return find_disconnected_cliques(C, max_cliques);
  }
  return CliqueList();
}

CliqueList BronKerbosch::find_disconnected_cliques(ResizableArray2D<int> const& C,
                                                   int max_cliques) {
  require_square(C, "BronKerbosch::find_disconnected_cliques(): matrix not square");
  start_search(max_cliques, max_clique_size);
  log_line("BronKerbosch::find_disconnected_cliques() connected matrix size: ",
           to_index(C.nrows()));
  DisconnectedSearch(C).run();
  current_clique.clear();
  return solutions;
}

CliqueList BronKerbosch::find_connected_cliques(ResizableArray2D<int> const& C, int max_cliques,
                                                int max_size) {
  require_square(C, "BronKerbosch::find_connected_cliques(): matrix not square");
  start_search(max_cliques, max_size);
  log_line("BronKerbosch::find_connected_cliques() connected matrix size: ", to_index(C.nrows()));
  ConnectedSearch(C).run();
  current_clique.clear();
  return solutions;
}

void BronKerbosch::add_solution(std::vector<int> const& clique, int size) {
  if (size > largest_size) {
    solutions->clear();
    largest_size = size;
  }
  std::size_t const listed = solutions->size();
  if (static_cast<long long>(listed) < max_cliques_kept) {
    auto const kept =
        std::clamp<std::ptrdiff_t>(size, 0, static_cast<std::ptrdiff_t>(clique.size()));
    solutions->push_back(make_handle<std::vector<int>>(clique.begin(), clique.begin() + kept));
  }
  if (VascLog::enabled(3)) {
    VascLog::start_debug_line(3) << "BronKerbosch add_solution() n cliques: " << listed
                                 << " new clique size: " << size
                                 << " last clique size: " << largest_size;
    VascLog::end_debug_line();
  }
}

THandle<GraphMatch<int, int, int, int>> BronKerbosch::subgraph_match(
    std::vector<int> const& clique, ResizableArray2D<bool> const& A,
    ResizableArray2D<bool> const& B) {
  int const n1 = A.nrows();
  int const n2 = B.nrows();
  auto match = make_handle<GraphMatch<int, int, int, int>>();
  for (int p : clique) {
    if (p < 0 || p >= n1 * n2) {
      throw std::invalid_argument("BronKerbosch::subgraph_match(): clique node out of range");
    }
    match->add_node_match(p / n2, p % n2);
  }
  return match;
}

THandle<GraphMatch<int, int, int, int>> BronKerbosch::maximum_common_subgraph(
    ResizableArray2D<bool> const& A, ResizableArray2D<bool> const& B, Subgraph::SubgraphType type) {
  ResizableArray2D<int> const C = create_correspondence_graph(A, B);
  CliqueList const cliques = find_cliques(C, type, 10, std::min(A.nrows(), B.nrows()));
  // Kept: an unknown type leaves a null list, and asking its size raises the
  // handle's null-handle error.
  std::size_t const nfound = cliques->size();
  log_line("BronKerbosch::maximum_common_subgraph() n_found: ", nfound);
  THandle<GraphMatch<int, int, int, int>> result;
  if (nfound == 0) return result;
  result = subgraph_match(*cliques->front(), A, B);
  if (VascLog::enabled(3)) {
    for (auto const& clique : *cliques) {
      log_line("BronKerbosch::maximum_common_subgraph() clique_size: ", clique->size());
      std::ostream& out = VascLog::start_debug_line(3);
      out << "BronKerbosch::maximum_common_subgraph() match: ";
      subgraph_match(*clique, A, B)->print(out);
      VascLog::end_debug_line();
    }
  }
  return result;
}

}  // namespace structmath
