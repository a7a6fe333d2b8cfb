// SPDX-License-Identifier: MIT
// maximum_common_subgraph of labelled graphs: a partitioning search over label classes.
#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <vector>

#include "structmath/graph/clique_search.hpp"

namespace structmath {

namespace {

std::size_t to_index(int i) { return static_cast<std::size_t>(i); }

// A class of still unmatched nodes of each graph that may be paired with each other:
// equal node labels and the same relation (no edge, or an edge of one label) to every
// matched node. Its nodes are the segments [l, l + left) of `left_` and [r, r + right)
// of `right_`. `adjacent`: joined by an edge to a matched node.
struct Bidomain {
  int l, r, left, right;
  bool adjacent;
};

// The search of J. McCreesh, P. Prosser and J. Trimble (IJCAI 2017): the nodes still
// unmatched are kept split into bidomains; a matching of m pairs cannot grow beyond
// m + sum of min(left, right) over the bidomains, and a branch that cannot beat (or,
// while matches are collected, reach) the best size is cut. Each matching is reached once.
class Partitioning {
 public:
  Partitioning(LabelledGraph const& a, LabelledGraph const& b, CommonSubgraphOptions const& options)
      : options_(options), n1_(a.adjacency.nrows()), n2_(b.adjacency.nrows()) {
    // Edge codes: 0 no edge, else 1 + the edge label (1 when edges are not labelled).
    bool const labelled = a.edge_labels.nrows() > 0 && b.edge_labels.nrows() > 0;
    auto codes = [labelled](LabelledGraph const& g) {
      int const n = g.adjacency.nrows();
      std::vector<int> out(to_index(n) * to_index(n), 0);
      for (int i = 0; i < n; ++i) {
        for (int k = 0; k < n; ++k) {
          if (i != k && g.adjacency[i][k]) {
            out[to_index(i) * to_index(n) + to_index(k)] = labelled ? 1 + g.edge_labels[i][k] : 1;
          }
        }
      }
      return out;
    };
    edge1_ = codes(a);
    edge2_ = codes(b);
    degree_.assign(to_index(n1_), 0);
    for (int i = 0; i < n1_; ++i) {
      for (int k = 0; k < n1_; ++k) degree_[to_index(i)] += edge1_[index1(i, k)] != 0 ? 1 : 0;
    }
    // The first bidomains: one per node label found in both graphs.
    // Node labels count only when both graphs have them.
    bool const node_labels = !a.node_labels.empty() && !b.node_labels.empty();
    auto label = [node_labels](LabelledGraph const& g, int i) {
      return node_labels ? g.node_labels[to_index(i)] : 0;
    };
    std::vector<int> labels;
    for (int i = 0; i < n1_; ++i) labels.push_back(label(a, i));
    std::sort(labels.begin(), labels.end());
    labels.erase(std::unique(labels.begin(), labels.end()), labels.end());
    for (int value : labels) {
      Bidomain d{static_cast<int>(left_.size()), static_cast<int>(right_.size()), 0, 0, false};
      for (int i = 0; i < n1_; ++i) {
        if (label(a, i) == value) left_.push_back(i), ++d.left;
      }
      for (int j = 0; j < n2_; ++j) {
        if (label(b, j) == value) right_.push_back(j), ++d.right;
      }
      pairs_ += d.left * d.right;
      if (d.right > 0) {
        initial_.push_back(d);
      } else {
        left_.resize(to_index(d.l));
      }
    }
    if (options_.budget.max_seconds >= 0.0) {
      has_deadline_ = true;
      deadline_ = std::chrono::steady_clock::now() +
                  std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                      std::chrono::duration<double>(options_.budget.max_seconds));
    }
  }

  CommonSubgraph run() {
    std::vector<Bidomain> domains = initial_;
    search(domains, false);
    CommonSubgraph result;
    result.size = best_;
    result.proven_optimal = !stopped_;
    result.steps = steps_;
    result.correspondence_nodes = pairs_;
    result.matches = std::move(found_);
    for (auto& match : result.matches) std::sort(match.begin(), match.end());
    return result;
  }

 private:
  std::size_t index1(int i, int k) const { return to_index(i) * to_index(n1_) + to_index(k); }
  std::size_t index2(int j, int k) const { return to_index(j) * to_index(n2_) + to_index(k); }

  bool out_of_budget() {
    if (stopped_) return true;
    ++steps_;
    if (options_.budget.max_steps >= 0 && steps_ > options_.budget.max_steps) stopped_ = true;
    if (has_deadline_ && (steps_ & 255) == 1 && std::chrono::steady_clock::now() >= deadline_) {
      stopped_ = true;
    }
    return stopped_;
  }

  // Whether collecting a tie of the best size is still wanted.
  bool want_ties() const { return static_cast<int>(found_.size()) < options_.max_matches; }

  void search(std::vector<Bidomain>& domains, bool grown) {
    if (out_of_budget()) return;
    int const size = static_cast<int>(matching_.size());
    if (grown) {
      if (size > best_) {
        best_ = size;
        found_.clear();
      }
      if (size == best_ && want_ties()) found_.push_back(matching_);
    }
    int bound = size;
    for (Bidomain const& d : domains) bound += std::min(d.left, d.right);
    if (bound < best_ || (bound == best_ && !want_ties())) return;

    // The bidomain with the fewest choices (among those joined to the matching, for a
    // connected subgraph once it has begun); the first on ties.
    int chosen = -1;
    for (std::size_t k = 0; k < domains.size(); ++k) {
      Bidomain const& d = domains[k];
      if (options_.connected && size > 0 && !d.adjacent) continue;
      if (chosen < 0 || std::max(d.left, d.right) < std::max(domains[to_index(chosen)].left,
                                                             domains[to_index(chosen)].right)) {
        chosen = static_cast<int>(k);
      }
    }
    if (chosen < 0) return;
    Bidomain& d = domains[to_index(chosen)];
    // Its node of the first graph of highest degree (lowest number on ties) goes last in
    // the segment and leaves the class.
    int at = d.l;
    for (int k = d.l; k < d.l + d.left; ++k) {
      int const u = left_[to_index(k)], best = left_[to_index(at)];
      if (degree_[to_index(u)] > degree_[to_index(best)] ||
          (degree_[to_index(u)] == degree_[to_index(best)] && u < best)) {
        at = k;
      }
    }
    int const v = left_[to_index(at)];
    std::swap(left_[to_index(at)], left_[to_index(d.l + d.left - 1)]);
    --d.left;

    std::vector<int> partners(right_.begin() + d.r, right_.begin() + d.r + d.right);
    std::sort(partners.begin(), partners.end());
    for (int w : partners) {
      // w leaves the class too while it is paired with v.
      int const wat = static_cast<int>(
          std::find(right_.begin() + d.r, right_.begin() + d.r + d.right, w) - right_.begin());
      std::swap(right_[to_index(wat)], right_[to_index(d.r + d.right - 1)]);
      --d.right;
      std::vector<Bidomain> next = split(domains, v, w);
      matching_.emplace_back(v, w);
      search(next, true);
      matching_.pop_back();
      ++d.right;
      if (stopped_) return;
    }
    // Or v stays unmatched.
    std::vector<Bidomain> rest = domains;
    rest.erase(std::remove_if(rest.begin(), rest.end(),
                              [](Bidomain const& x) { return x.left == 0 || x.right == 0; }),
               rest.end());
    search(rest, false);
    ++d.left;
  }

  // The bidomains after pairing v with w: each splits by the relation of its nodes to v
  // and to w (no edge, or an edge of each label); only parts with nodes on both sides
  // remain.
  std::vector<Bidomain> split(std::vector<Bidomain> const& domains, int v, int w) {
    std::vector<Bidomain> out;
    for (Bidomain const& d : domains) {
      if (d.left == 0 || d.right == 0) continue;
      auto left_code = [&](int u) { return edge1_[index1(v, u)]; };
      auto right_code = [&](int u) { return edge2_[index2(w, u)]; };
      auto lb = left_.begin() + d.l, rb = right_.begin() + d.r;
      std::sort(lb, lb + d.left, [&](int x, int y) { return left_code(x) < left_code(y); });
      std::sort(rb, rb + d.right, [&](int x, int y) { return right_code(x) < right_code(y); });
      int i = 0, j = 0;
      while (i < d.left && j < d.right) {
        int const ci = left_code(left_[to_index(d.l + i)]);
        int const cj = right_code(right_[to_index(d.r + j)]);
        if (ci < cj) {
          ++i;
        } else if (cj < ci) {
          ++j;
        } else {
          int i2 = i, j2 = j;
          while (i2 < d.left && left_code(left_[to_index(d.l + i2)]) == ci) ++i2;
          while (j2 < d.right && right_code(right_[to_index(d.r + j2)]) == ci) ++j2;
          out.push_back({d.l + i, d.r + j, i2 - i, j2 - j, d.adjacent || ci != 0});
          i = i2;
          j = j2;
        }
      }
    }
    return out;
  }

  CommonSubgraphOptions options_;
  int n1_, n2_;
  std::vector<int> edge1_, edge2_, degree_;
  std::vector<int> left_, right_;
  std::vector<Bidomain> initial_;
  int pairs_ = 0;
  std::vector<std::pair<int, int>> matching_;
  std::vector<std::vector<std::pair<int, int>>> found_;
  int best_ = 0;
  long long steps_ = 0;
  bool stopped_ = false;
  bool has_deadline_ = false;
  std::chrono::steady_clock::time_point deadline_;
};

}  // namespace

CommonSubgraph maximum_common_subgraph(LabelledGraph const& a, LabelledGraph const& b,
                                       CommonSubgraphOptions const& options) {
  auto const check = [](LabelledGraph const& g) {
    int const n = g.adjacency.nrows();
    bool const edge_labels_ok = (g.edge_labels.nrows() == 0 && g.edge_labels.ncols() == 0) ||
                                (g.edge_labels.nrows() == n && g.edge_labels.ncols() == n);
    if (g.adjacency.ncols() != n || !edge_labels_ok ||
        (!g.node_labels.empty() && static_cast<int>(g.node_labels.size()) != n)) {
      throw std::invalid_argument(
          "maximum_common_subgraph(): graph not square, or labels of the wrong size");
    }
  };
  check(a);
  check(b);
  return Partitioning(a, b, options).run();
}

}  // namespace structmath
