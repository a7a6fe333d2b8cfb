// SPDX-License-Identifier: MIT
// GraphMatch: a one-to-one correspondence between the nodes (and edges) of two graphs.
#pragma once

#include <map>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace structmath {

/// Matched node pairs, and optionally matched edge pairs, of graph 1 and graph 2.
///
/// N1 and N2 are the node types of the two graphs, E1 and E2 their edge types.
/// The match is one-to-one: a node (or edge) takes part in at most one pair, and
/// adding a second pair for it throws std::invalid_argument. Pairs are kept in
/// the order they were added and can be looked up from either side.
template <class N1, class N2, class E1, class E2>
class GraphMatch {
 public:
  /// Records that node n1 of graph 1 corresponds to node n2 of graph 2. Throws
  /// std::invalid_argument "GraphMatch::add_node_match(): node already matched".
  void add_node_match(N1 const& n1, N2 const& n2) {
    if (nodes_1_.count(n1) || nodes_2_.count(n2)) {
      throw std::invalid_argument("GraphMatch::add_node_match(): node already matched");
    }
    nodes_1_.emplace(n1, n2);
    nodes_2_.emplace(n2, n1);
    node_pairs_.emplace_back(n1, n2);
  }

  /// Records that edge e1 of graph 1 corresponds to edge e2 of graph 2. Throws
  /// std::invalid_argument "GraphMatch::add_edge_match(): edge already matched".
  void add_edge_match(E1 const& e1, E2 const& e2) {
    if (edges_1_.count(e1) || edges_2_.count(e2)) {
      throw std::invalid_argument("GraphMatch::add_edge_match(): edge already matched");
    }
    edges_1_.emplace(e1, e2);
    edges_2_.emplace(e2, e1);
    edge_pairs_.emplace_back(e1, e2);
  }

  /// Number of matched node pairs.
  int size() const noexcept { return static_cast<int>(node_pairs_.size()); }
  int nedge_matches() const noexcept { return static_cast<int>(edge_pairs_.size()); }
  bool empty() const noexcept { return node_pairs_.empty(); }

  bool has_node_1(N1 const& n1) const { return nodes_1_.count(n1) != 0; }
  bool has_node_2(N2 const& n2) const { return nodes_2_.count(n2) != 0; }
  bool has_edge_1(E1 const& e1) const { return edges_1_.count(e1) != 0; }
  bool has_edge_2(E2 const& e2) const { return edges_2_.count(e2) != 0; }

  /// The graph-2 node matched to n1; throws std::invalid_argument
  /// "GraphMatch::node_2(): not matched" (and likewise for the other lookups).
  N2 const& node_2(N1 const& n1) const { return lookup(nodes_1_, n1, "GraphMatch::node_2()"); }
  /// The graph-1 node matched to n2.
  N1 const& node_1(N2 const& n2) const { return lookup(nodes_2_, n2, "GraphMatch::node_1()"); }
  E2 const& edge_2(E1 const& e1) const { return lookup(edges_1_, e1, "GraphMatch::edge_2()"); }
  E1 const& edge_1(E2 const& e2) const { return lookup(edges_2_, e2, "GraphMatch::edge_1()"); }

  /// Node pairs in the order they were added.
  std::vector<std::pair<N1, N2>> const& node_pairs() const noexcept { return node_pairs_; }
  std::vector<std::pair<E1, E2>> const& edge_pairs() const noexcept { return edge_pairs_; }
  /// Node pairs sorted on the graph-1 node, and on the graph-2 node.
  std::map<N1, N2> const& nodes_keyed_on_1() const noexcept { return nodes_1_; }
  std::map<N2, N1> const& nodes_keyed_on_2() const noexcept { return nodes_2_; }

  /// Writes both listings of the node pairs, each pair as "key-value" with the
  /// listing's key first, sorted on the key and separated by single spaces:
  /// "\nNodes keyed on graph 1: 0-2 1-0\nNodes keyed on graph 2: 0-1 2-0".
  /// Edge pairs, when there are any, follow in two more listings of the same form.
  void print(std::ostream& out) const {
    out << "\nNodes keyed on graph 1: ";
    list(out, nodes_1_);
    out << "\nNodes keyed on graph 2: ";
    list(out, nodes_2_);
    if (!edge_pairs_.empty()) {
      out << "\nEdges keyed on graph 1: ";
      list(out, edges_1_);
      out << "\nEdges keyed on graph 2: ";
      list(out, edges_2_);
    }
  }

  friend bool operator==(GraphMatch const& a, GraphMatch const& b) {
    return a.nodes_1_ == b.nodes_1_ && a.edges_1_ == b.edges_1_;
  }
  friend bool operator!=(GraphMatch const& a, GraphMatch const& b) { return !(a == b); }

 private:
  template <class K, class V>
  static V const& lookup(std::map<K, V> const& map, K const& key, char const* where) {
    auto const found = map.find(key);
    if (found == map.end()) {
      throw std::invalid_argument(std::string(where) + ": not matched");
    }
    return found->second;
  }
  template <class K, class V>
  static void list(std::ostream& out, std::map<K, V> const& map) {
    char const* separator = "";
    for (auto const& [key, value] : map) {
      out << separator << key << '-' << value;
      separator = " ";
    }
  }

  std::map<N1, N2> nodes_1_;
  std::map<N2, N1> nodes_2_;
  std::map<E1, E2> edges_1_;
  std::map<E2, E1> edges_2_;
  std::vector<std::pair<N1, N2>> node_pairs_;
  std::vector<std::pair<E1, E2>> edge_pairs_;
};

/// Streams the print format.
template <class N1, class N2, class E1, class E2>
std::ostream& operator<<(std::ostream& out, GraphMatch<N1, N2, E1, E2> const& match) {
  match.print(out);
  return out;
}

}  // namespace structmath
