// SPDX-License-Identifier: MIT
// BronKerbosch: correspondence graph, the two clique searches and the match built from a clique.
#include "structmath/graph/bron_kerbosch.hpp"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <stdexcept>

#include "clique_core.hpp"
#include "structmath/core/vasc_log.hpp"
#include "structmath/graph/clique_search.hpp"

namespace structmath {

namespace {

std::size_t to_index(int i) { return static_cast<std::size_t>(i); }

void log_line(char const* text, std::size_t value) {
  if (!VascLog::enabled(3)) return;
  VascLog::start_debug_line(3) << text << value;
  VascLog::end_debug_line();
}

void require_square(ResizableArray2D<int> const& C, char const* message) {
  if (C.nrows() != C.ncols()) throw std::invalid_argument(message);
}

CliqueList to_list(CliqueSearchResult result) {
  auto list = make_handle<std::vector<THandle<std::vector<int>>>>();
  for (auto& clique : result.cliques) {
    list->push_back(make_handle<std::vector<int>>(std::move(clique)));
  }
  return list;
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
  log_line("BronKerbosch::find_disconnected_cliques() connected matrix size: ",
           to_index(C.nrows()));
  CliqueSearchOptions options;
  options.max_cliques = max_cliques;
  return to_list(CliqueSearch(options).disconnected(C, true));
}

CliqueList BronKerbosch::find_connected_cliques(ResizableArray2D<int> const& C, int max_cliques,
                                                int max_size) {
  require_square(C, "BronKerbosch::find_connected_cliques(): matrix not square");
  log_line("BronKerbosch::find_connected_cliques() connected matrix size: ", to_index(C.nrows()));
  CliqueSearchOptions options;
  options.max_cliques = max_cliques;
  options.max_size = max_size;
  return to_list(CliqueSearch(options).connected(C, true));
}

void BronKerbosch::add_solution(std::vector<int> const& clique, int size) {
  if (detail::CliqueCore* search = detail::active_search()) search->record(clique, size);
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
