// SPDX-License-Identifier: MIT
// BronKerbosch: clique search in correspondence graphs, and maximum common subgraphs.
#pragma once

#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/graph/graph_match.hpp"
#include "structmath/graph/resizable_array_2d.hpp"

namespace structmath {

/// Kinds of common subgraph.
struct Subgraph {
  /// CONNECTED: the matched nodes are held together by edges present in both
  /// graphs. DISCONNECTED: any common induced subgraph, possibly in pieces.
  enum SubgraphType : int { CONNECTED = 0, DISCONNECTED = 1 };
};

/// Cliques found by a search, each as its correspondence-graph nodes.
using CliqueList = THandle<std::vector<THandle<std::vector<int>>>>;

/// Maximum common induced subgraphs of two graphs by clique search in their
/// correspondence graph.
///
/// Node p = i * n2 + j of the correspondence graph C pairs node i of graph 1
/// (n1 nodes) with node j of graph 2 (n2 nodes). C[p][p] = 1; two distinct
/// pairs sharing a node of either graph get 0; otherwise C[p][q] is 1 (a
/// c-edge) when both graphs join the two nodes, −1 (a d-edge) when neither
/// does, and 0 when only one does. A clique of C in which every entry is non-zero
/// is a common induced subgraph; when its c-edges also connect it, the common
/// subgraph is connected.
///
/// The disconnected search is Bron and Kerbosch's Algorithm 457, version 2
/// (Comm. ACM 16 (1973) 575–577): at each level the node of the not-set or
/// candidate set with the fewest non-neighbours among the candidates (first
/// wins ties) is the fixed point, and only the fixed point (when a candidate)
/// and the candidates not joined to it are tried. The connected search grows
/// cliques from each start node in turn along c-edges only, keeping the nodes
/// joined so far by d-edges alone aside until a c-edge reaches them (after
/// Koch, Theor. Comput. Sci. 250 (2001) 1–30); with the first candidate as
/// pivot it skips candidates that cannot lead to a connected clique the pivot
/// would not extend. Both searches list maximal cliques only, and a clique is
/// recorded when it is at least as large as the largest recorded so far; the
/// cost is exponential in the worst case, O(3^(N/3)) for N = n1 * n2.
///
/// Each search keeps its own state (largest size so far, limits, solution list,
/// current clique), so searches on separate threads may run at once (with the
/// debug log off: it is one stream), and a search may start another. The
/// searches run on bit rows with a colouring bound, as CliqueSearch documents;
/// the cliques, their order and the log lines are those of the procedures above.
class STRUCTMATH_API BronKerbosch {
 public:
  /// The n1*n2 x n1*n2 correspondence graph of two square adjacency matrices.
  /// Throws std::invalid_argument
  /// "BronKerbosch::create_correspondence_graph(): matrix not square".
  static ResizableArray2D<int> create_correspondence_graph(ResizableArray2D<bool> const& A,
                                                           ResizableArray2D<bool> const& B);

  /// CONNECTED runs find_connected_cliques with both limits, DISCONNECTED runs
  /// find_disconnected_cliques with `max_cliques`; any other type gives a null
  /// handle.
  static CliqueList find_cliques(ResizableArray2D<int> const& C, Subgraph::SubgraphType type,
                                 int max_cliques, int max_size);

  /// Up to `max_cliques` cliques of the largest size, in the order found; every
  /// non-zero entry of C counts as an edge. Throws std::invalid_argument
  /// "BronKerbosch::find_disconnected_cliques(): matrix not square".
  static CliqueList find_disconnected_cliques(ResizableArray2D<int> const& C, int max_cliques);

  /// Up to `max_cliques` cliques of the largest size whose nodes are connected
  /// through c-edges (entries 1), in the order found; every clique of the
  /// largest size is reached. Cliques are not grown beyond `max_size` nodes (a
  /// clique that reaches it counts as complete); max_size < 1 finds nothing.
  /// A clique is recorded when no candidate remains and no explored node joins it
  /// by a c-edge; explored nodes joined by d-edges only do not block it (kept: they
  /// cannot extend it connectedly, and letting them block would lose maximal
  /// connected cliques).
  /// Throws std::invalid_argument
  /// "BronKerbosch::find_connected_cliques(): matrix not square".
  static CliqueList find_connected_cliques(ResizableArray2D<int> const& C, int max_cliques,
                                           int max_size);

  /// Records a clique of `size` nodes (its first `size` entries) in the
  /// solution list of the search running on this thread: a larger size than any
  /// so far empties the list first, and the clique is kept only while fewer than
  /// the search's `max_cliques` are listed. Logs at level 3. Meaningful only
  /// inside a search (from a callback it makes); outside one it does nothing, and
  /// lists already returned are their callers' own.
  static void add_solution(std::vector<int> const& clique, int size);

  /// The node pairs of a clique, in the clique's order, as a match of graph 1
  /// (A) onto graph 2 (B). Throws std::invalid_argument
  /// "BronKerbosch::subgraph_match(): clique node out of range".
  static THandle<GraphMatch<int, int, int, int>> subgraph_match(std::vector<int> const& clique,
                                                                ResizableArray2D<bool> const& A,
                                                                ResizableArray2D<bool> const& B);

  /// The first of up to ten largest common subgraphs of the given type, or a
  /// null handle when there is none (an empty graph). An unknown type ends in
  /// THandleCommon::null_handle_error() because the missing clique list is
  /// dereferenced. Logs the cliques found at level 3.
  static THandle<GraphMatch<int, int, int, int>> maximum_common_subgraph(
      ResizableArray2D<bool> const& A, ResizableArray2D<bool> const& B,
      Subgraph::SubgraphType type);
};

}  // namespace structmath
