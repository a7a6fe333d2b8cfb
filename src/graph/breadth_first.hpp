// SPDX-License-Identifier: MIT
// Breadth-first shortest path shared by the graph containers.
#pragma once

#include <algorithm>
#include <deque>
#include <stdexcept>
#include <unordered_map>
#include <vector>

namespace structmath::detail {

/// Shortest path from `from` to `to` in any graph offering has_node and
/// neighbours; neighbours are expanded in the order the graph reports them.
template <class G>
std::vector<int> breadth_first_path(G const& graph, int from, int to) {
  if (!graph.has_node(from) || !graph.has_node(to)) {
    throw std::invalid_argument("shortest_path(): unknown node");
  }
  std::unordered_map<int, int> parent{{from, from}};
  std::deque<int> queue{from};
  while (!queue.empty() && parent.count(to) == 0) {
    int const node = queue.front();
    queue.pop_front();
    for (int next : graph.neighbours(node)) {
      if (parent.emplace(next, node).second) queue.push_back(next);
    }
  }
  std::vector<int> path;
  if (parent.count(to) == 0) return path;
  for (int node = to; node != from; node = parent[node]) path.push_back(node);
  path.push_back(from);
  std::reverse(path.begin(), path.end());
  return path;
}

}  // namespace structmath::detail
