// SPDX-License-Identifier: MIT
// OrderedGraph: an undirected simple graph that keeps its nodes and edges in insertion order.
#pragma once

#include <set>
#include <utility>
#include <vector>

#include "structmath/export.hpp"
#include "structmath/graph/indexed_table.hpp"
#include "structmath/graph/resizable_array_2d.hpp"

namespace structmath {

/// An undirected graph without self-loops or parallel edges on int node
/// identifiers that remembers the order of insertion: nodes, edges and each
/// node's neighbours are reported in the order they were added, and the
/// adjacency matrix numbers the nodes in that order (row i is `nodes()[i]`).
/// Operations that name a node not in the graph throw std::invalid_argument
/// "OrderedGraph::<operation>(): unknown node".
class STRUCTMATH_API OrderedGraph {
 public:
  OrderedGraph() = default;

  /// Adds a node at the end; false when it was already there.
  bool add_node(int node);
  /// Adds the edge a–b between existing nodes at the end; false when it was
  /// already there. Throws "OrderedGraph::add_edge(): unknown node" or
  /// "OrderedGraph::add_edge(): self-loop".
  bool add_edge(int a, int b);
  /// Removes the edge a–b, keeping the order of the others; false when there was none.
  bool remove_edge(int a, int b);

  bool has_node(int node) const { return nodes_.contains(node); }
  bool has_edge(int a, int b) const;
  int nnodes() const noexcept { return nodes_.size(); }
  int nedges() const noexcept { return static_cast<int>(edges_.size()); }

  /// Node identifiers in insertion order.
  std::vector<int> const& nodes() const noexcept { return nodes_.keys(); }
  /// Edges in insertion order, each as (a, b) the way it was added.
  std::vector<std::pair<int, int>> const& edges() const noexcept { return edges_; }
  /// Neighbours of a node in the order their edges were added.
  std::vector<int> const& neighbours(int node) const;
  int degree(int node) const;
  /// Insertion position of a node, its row in the adjacency matrix.
  int index_of(int node) const;

  /// nnodes() x nnodes() symmetric matrix in insertion order of the nodes.
  ResizableArray2D<bool> adjacency_matrix() const;

 private:
  int checked_index(int node, char const* where) const;

  IndexedTable<int> nodes_;
  std::vector<std::vector<int>> neighbours_;
  std::vector<std::pair<int, int>> edges_;
  std::set<std::pair<int, int>> edge_set_;  // each edge as (smaller, larger)
};

/// As shortest_path(Graph const&, int, int), visiting neighbours in insertion order.
STRUCTMATH_API std::vector<int> shortest_path(OrderedGraph const& graph, int from, int to);

}  // namespace structmath
