// SPDX-License-Identifier: MIT
// Graph: an undirected simple graph on integer node identifiers, and shortest paths in it.
#pragma once

#include <map>
#include <utility>
#include <vector>

#include "structmath/export.hpp"
#include "structmath/graph/resizable_array_2d.hpp"

namespace structmath {

/// An undirected graph without self-loops or parallel edges whose nodes are
/// identified by arbitrary ints.
///
/// Nodes, neighbours and edges are reported in ascending order of the node
/// identifiers; the adjacency matrix numbers the nodes in that order too.
/// Operations that name a node not in the graph throw std::invalid_argument
/// "Graph::<operation>(): unknown node".
class STRUCTMATH_API Graph {
 public:
  Graph() = default;
  /// The graph with nodes 0 … n−1 and an edge wherever `adjacency` is true
  /// above the diagonal. Throws std::invalid_argument
  /// "Graph::from_adjacency(): matrix not square" for a non-square matrix.
  static Graph from_adjacency(ResizableArray2D<bool> const& adjacency);

  /// Adds a node; false when it was already there.
  bool add_node(int node);
  /// Adds the edge a–b between existing nodes; false when it was already there.
  /// Throws "Graph::add_edge(): unknown node" or "Graph::add_edge(): self-loop".
  bool add_edge(int a, int b);
  /// Removes the edge a–b; false when there was none.
  bool remove_edge(int a, int b);
  /// Removes a node and its edges; false when there was no such node.
  bool remove_node(int node);

  bool has_node(int node) const { return adjacency_.count(node) != 0; }
  bool has_edge(int a, int b) const;
  int nnodes() const noexcept { return static_cast<int>(adjacency_.size()); }
  int nedges() const noexcept { return nedges_; }

  /// Node identifiers, ascending.
  std::vector<int> nodes() const;
  /// Each edge once as (smaller, larger), in ascending order.
  std::vector<std::pair<int, int>> edges() const;
  /// Neighbours of a node, ascending.
  std::vector<int> const& neighbours(int node) const;
  int degree(int node) const;
  /// Position of a node in `nodes()`, the row of its adjacency-matrix entries.
  int index_of(int node) const;

  /// nnodes() x nnodes() symmetric matrix, true where two nodes are joined.
  ResizableArray2D<bool> adjacency_matrix() const;

  friend bool operator==(Graph const& a, Graph const& b) { return a.adjacency_ == b.adjacency_; }
  friend bool operator!=(Graph const& a, Graph const& b) { return !(a == b); }

 private:
  std::vector<int> const& row(int node, char const* where) const;

  std::map<int, std::vector<int>> adjacency_;
  int nedges_ = 0;
};

/// A shortest path from `from` to `to` found by breadth-first search, both ends
/// included ({from} when they are the same node); empty when `to` cannot be
/// reached. Neighbours are visited in ascending order, so among several shortest
/// paths the one through the smallest identifiers near `from` is returned. Costs
/// O(nodes + edges). Throws std::invalid_argument "shortest_path(): unknown node".
STRUCTMATH_API std::vector<int> shortest_path(Graph const& graph, int from, int to);

}  // namespace structmath
