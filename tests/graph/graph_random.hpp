// SPDX-License-Identifier: MIT
// Small adjacency matrices, given or random, for the graph-matching tests.
#pragma once

#include <random>
#include <utility>
#include <vector>

#include "structmath/graph/resizable_array_2d.hpp"

namespace structmath::graph_test {

/// The n x n adjacency matrix with the given undirected edges.
inline ResizableArray2D<bool> matrix(int n, std::vector<std::pair<int, int>> const& edges) {
  ResizableArray2D<bool> a(n, n, false);
  for (auto const& [i, k] : edges) a[i][k] = a[k][i] = true;
  return a;
}

/// A symmetric n x n adjacency matrix without self-loops, each edge present
/// with probability `density`.
inline ResizableArray2D<bool> random_graph(std::mt19937& rng, int n, double density) {
  std::bernoulli_distribution edge(density);
  ResizableArray2D<bool> a(n, n, false);
  for (int i = 0; i < n; ++i) {
    for (int k = i + 1; k < n; ++k) a[i][k] = a[k][i] = edge(rng);
  }
  return a;
}

}  // namespace structmath::graph_test
