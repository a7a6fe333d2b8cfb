// SPDX-License-Identifier: MIT
// OrderedGraph: insertion-ordered nodes, edges and neighbour lists.
#include "structmath/graph/ordered_graph.hpp"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "breadth_first.hpp"

namespace structmath {

namespace {

std::pair<int, int> normalised(int a, int b) { return a < b ? std::pair(a, b) : std::pair(b, a); }

}  // namespace

bool OrderedGraph::add_node(int node) {
  if (nodes_.contains(node)) return false;
  nodes_.add(node);
  neighbours_.emplace_back();
  return true;
}

bool OrderedGraph::add_edge(int a, int b) {
  int const ia = nodes_.find(a);
  int const ib = nodes_.find(b);
  if (ia < 0 || ib < 0) throw std::invalid_argument("OrderedGraph::add_edge(): unknown node");
  if (a == b) throw std::invalid_argument("OrderedGraph::add_edge(): self-loop");
  if (!edge_set_.insert(normalised(a, b)).second) return false;
  edges_.emplace_back(a, b);
  neighbours_[static_cast<std::size_t>(ia)].push_back(b);
  neighbours_[static_cast<std::size_t>(ib)].push_back(a);
  return true;
}

bool OrderedGraph::remove_edge(int a, int b) {
  if (edge_set_.erase(normalised(a, b)) == 0) return false;
  edges_.erase(std::find_if(edges_.begin(), edges_.end(), [&](std::pair<int, int> const& e) {
    return normalised(e.first, e.second) == normalised(a, b);
  }));
  auto& list_a = neighbours_[static_cast<std::size_t>(nodes_.index(a))];
  list_a.erase(std::find(list_a.begin(), list_a.end(), b));
  auto& list_b = neighbours_[static_cast<std::size_t>(nodes_.index(b))];
  list_b.erase(std::find(list_b.begin(), list_b.end(), a));
  return true;
}

bool OrderedGraph::has_edge(int a, int b) const { return edge_set_.count(normalised(a, b)) != 0; }

int OrderedGraph::checked_index(int node, char const* where) const {
  int const index = nodes_.find(node);
  if (index < 0) throw std::invalid_argument(std::string(where) + ": unknown node");
  return index;
}

std::vector<int> const& OrderedGraph::neighbours(int node) const {
  return neighbours_[static_cast<std::size_t>(checked_index(node, "OrderedGraph::neighbours()"))];
}

int OrderedGraph::degree(int node) const {
  int const index = checked_index(node, "OrderedGraph::degree()");
  return static_cast<int>(neighbours_[static_cast<std::size_t>(index)].size());
}

int OrderedGraph::index_of(int node) const {
  return checked_index(node, "OrderedGraph::index_of()");
}

ResizableArray2D<bool> OrderedGraph::adjacency_matrix() const {
  ResizableArray2D<bool> matrix(nnodes(), nnodes(), false);
  for (auto const& [a, b] : edges_) {
    int const ia = nodes_.index(a);
    int const ib = nodes_.index(b);
    matrix[ia][ib] = true;
    matrix[ib][ia] = true;
  }
  return matrix;
}

std::vector<int> shortest_path(OrderedGraph const& graph, int from, int to) {
  return detail::breadth_first_path(graph, from, to);
}

}  // namespace structmath
