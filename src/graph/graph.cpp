// SPDX-License-Identifier: MIT
// Graph: sorted neighbour lists keyed on the node identifier.
#include "structmath/graph/graph.hpp"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>

#include "breadth_first.hpp"

namespace structmath {

namespace {

bool insert_sorted(std::vector<int>& list, int value) {
  auto const at = std::lower_bound(list.begin(), list.end(), value);
  if (at != list.end() && *at == value) return false;
  list.insert(at, value);
  return true;
}

bool erase_sorted(std::vector<int>& list, int value) {
  auto const at = std::lower_bound(list.begin(), list.end(), value);
  if (at == list.end() || *at != value) return false;
  list.erase(at);
  return true;
}

}  // namespace

Graph Graph::from_adjacency(ResizableArray2D<bool> const& adjacency) {
  if (adjacency.nrows() != adjacency.ncols()) {
    throw std::invalid_argument("Graph::from_adjacency(): matrix not square");
  }
  Graph graph;
  int const n = adjacency.nrows();
  for (int i = 0; i < n; ++i) graph.add_node(i);
  for (int i = 0; i < n; ++i) {
    for (int k = i + 1; k < n; ++k) {
      if (adjacency[i][k]) graph.add_edge(i, k);
    }
  }
  return graph;
}

bool Graph::add_node(int node) { return adjacency_.emplace(node, std::vector<int>()).second; }

bool Graph::add_edge(int a, int b) {
  auto const ia = adjacency_.find(a);
  auto const ib = adjacency_.find(b);
  if (ia == adjacency_.end() || ib == adjacency_.end()) {
    throw std::invalid_argument("Graph::add_edge(): unknown node");
  }
  if (a == b) throw std::invalid_argument("Graph::add_edge(): self-loop");
  if (!insert_sorted(ia->second, b)) return false;
  insert_sorted(ib->second, a);
  ++nedges_;
  return true;
}

bool Graph::remove_edge(int a, int b) {
  auto const ia = adjacency_.find(a);
  auto const ib = adjacency_.find(b);
  if (ia == adjacency_.end() || ib == adjacency_.end() || !erase_sorted(ia->second, b)) {
    return false;
  }
  erase_sorted(ib->second, a);
  --nedges_;
  return true;
}

bool Graph::remove_node(int node) {
  auto const found = adjacency_.find(node);
  if (found == adjacency_.end()) return false;
  for (int other : found->second) erase_sorted(adjacency_[other], node);
  nedges_ -= static_cast<int>(found->second.size());
  adjacency_.erase(found);
  return true;
}

bool Graph::has_edge(int a, int b) const {
  auto const found = adjacency_.find(a);
  return found != adjacency_.end() &&
         std::binary_search(found->second.begin(), found->second.end(), b);
}

std::vector<int> Graph::nodes() const {
  std::vector<int> result;
  result.reserve(adjacency_.size());
  for (auto const& entry : adjacency_) result.push_back(entry.first);
  return result;
}

std::vector<std::pair<int, int>> Graph::edges() const {
  std::vector<std::pair<int, int>> result;
  result.reserve(static_cast<std::size_t>(nedges_));
  for (auto const& [node, list] : adjacency_) {
    for (auto at = std::upper_bound(list.begin(), list.end(), node); at != list.end(); ++at) {
      result.emplace_back(node, *at);
    }
  }
  return result;
}

std::vector<int> const& Graph::row(int node, char const* where) const {
  auto const found = adjacency_.find(node);
  if (found == adjacency_.end()) throw std::invalid_argument(std::string(where) + ": unknown node");
  return found->second;
}

std::vector<int> const& Graph::neighbours(int node) const {
  return row(node, "Graph::neighbours()");
}

int Graph::degree(int node) const { return static_cast<int>(row(node, "Graph::degree()").size()); }

int Graph::index_of(int node) const {
  auto const found = adjacency_.find(node);
  if (found == adjacency_.end()) throw std::invalid_argument("Graph::index_of(): unknown node");
  return static_cast<int>(std::distance(adjacency_.begin(), found));
}

ResizableArray2D<bool> Graph::adjacency_matrix() const {
  ResizableArray2D<bool> matrix(nnodes(), nnodes(), false);
  std::vector<int> const ids = nodes();
  int i = 0;
  for (auto const& entry : adjacency_) {
    for (int other : entry.second) {
      auto const k = std::lower_bound(ids.begin(), ids.end(), other) - ids.begin();
      matrix[i][k] = true;
    }
    ++i;
  }
  return matrix;
}

std::vector<int> shortest_path(Graph const& graph, int from, int to) {
  return detail::breadth_first_path(graph, from, to);
}

}  // namespace structmath
