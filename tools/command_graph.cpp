// SPDX-License-Identifier: MIT
// `structmath mcs` and `match`: common substructures and substructure search on bond graphs.
#include <algorithm>
#include <ostream>

#include "structmath/graph/clique_search.hpp"
#include "structmath/graph/ullmann.hpp"
#include "structmath/io/elements.hpp"
#include "tool.hpp"

namespace structmath::tool {

namespace {

// The bond graph of a molecule, without hydrogens unless asked, and the atoms kept.
struct BondGraph {
  std::vector<int> atoms;  // molecule atom index of each graph node
  ResizableArray2D<bool> adjacency;
};

BondGraph bond_graph(Record const& record, bool hydrogens, char const* command) {
  if (!record.has_bonds) {
    throw InputError(std::string(command) + " needs bonds: give molfiles or SD files, not XYZ");
  }
  io::Molecule const& molecule = record.molecule;
  BondGraph graph;
  std::vector<int> node_of(molecule.atoms.size(), -1);
  for (std::size_t a = 0; a < molecule.atoms.size(); ++a) {
    if (hydrogens || molecule.atoms[a].element != "H") {
      node_of[a] = static_cast<int>(graph.atoms.size());
      graph.atoms.push_back(static_cast<int>(a));
    }
  }
  auto const n = static_cast<int>(graph.atoms.size());
  graph.adjacency = ResizableArray2D<bool>(n, n, false);
  for (io::Bond const& bond : molecule.bonds) {
    int const i = node_of[static_cast<std::size_t>(bond.first)];
    int const j = node_of[static_cast<std::size_t>(bond.second)];
    if (i < 0 || j < 0) continue;
    graph.adjacency.element(i, j) = true;
    graph.adjacency.element(j, i) = true;
  }
  return graph;
}

std::string const& element(io::Molecule const& m, BondGraph const& g, int node) {
  return m.atoms[static_cast<std::size_t>(g.atoms[static_cast<std::size_t>(node)])].element;
}

// One matched pair: both atoms by number from 1 and by label.
Json pair_json(char const* left, io::Molecule const& a, int atom_a, char const* right,
               io::Molecule const& b, int atom_b) {
  Json pair;
  pair[std::string(left) + "_atom"] = atom_a + 1;
  pair[std::string(left) + "_label"] = atom_label(a, atom_a);
  pair[std::string(right) + "_atom"] = atom_b + 1;
  pair[std::string(right) + "_label"] = atom_label(b, atom_b);
  return pair;
}

// Pairs of graph nodes as JSON, in the order of the first molecule's atoms.
Json pairs_json(std::vector<std::pair<int, int>> nodes, char const* left, io::Molecule const& a,
                BondGraph const& ga, char const* right, io::Molecule const& b,
                BondGraph const& gb) {
  std::sort(nodes.begin(), nodes.end());
  Json pairs = Json::array();
  for (auto const& [i, j] : nodes) {
    pairs.push_back(pair_json(left, a, ga.atoms[static_cast<std::size_t>(i)], right, b,
                              gb.atoms[static_cast<std::size_t>(j)]));
  }
  return pairs;
}

void print_pairs(Json const& r, std::ostream& out, std::string const& left,
                 std::string const& right) {
  for (auto const& p : r["pairs"]) {
    out << "  " << left << ' ' << p[left + "_label"].get<std::string>() << "  ->  " << right << ' '
        << p[right + "_label"].get<std::string>() << '\n';
  }
}

// The labelled graph of a bond graph: elements as node labels, bond orders as edge labels
// when asked.
LabelledGraph labelled(io::Molecule const& m, BondGraph const& g, bool bond_orders) {
  LabelledGraph out;
  out.adjacency = g.adjacency;
  int const n = g.adjacency.nrows();
  std::vector<int> node_of(m.atoms.size(), -1);
  for (int i = 0; i < n; ++i) {
    node_of[static_cast<std::size_t>(g.atoms[static_cast<std::size_t>(i)])] = i;
    out.node_labels.push_back(io::atomic_number(element(m, g, i)));
  }
  if (bond_orders) {
    out.edge_labels = ResizableArray2D<int>(n, n, 0);
    for (io::Bond const& bond : m.bonds) {
      int const i = node_of[static_cast<std::size_t>(bond.first)];
      int const k = node_of[static_cast<std::size_t>(bond.second)];
      if (i >= 0 && k >= 0) out.edge_labels[i][k] = out.edge_labels[k][i] = bond.order;
    }
  }
  return out;
}

}  // namespace

Outcome mcs(Record const& first, Record const& second, std::string const& first_file,
            std::string const& second_file, McsArgs const& args) {
  io::Molecule const& m1 = first.molecule;
  io::Molecule const& m2 = second.molecule;
  BondGraph const g1 = bond_graph(first, args.hydrogens, "mcs");
  BondGraph const g2 = bond_graph(second, args.hydrogens, "mcs");

  // Only pairs of atoms of one element enter the correspondence graph.
  CommonSubgraphOptions options;
  options.connected = args.connected;
  options.budget.max_seconds = args.timeout;
  CommonSubgraph const found = maximum_common_subgraph(labelled(m1, g1, args.bond_orders),
                                                       labelled(m2, g2, args.bond_orders), options);
  std::vector<std::pair<int, int>> nodes;
  if (!found.matches.empty()) nodes = found.matches.front();
  Json result;
  result["first"] = source_fields(first_file, first);
  result["second"] = source_fields(second_file, second);
  result["connected"] = args.connected;
  result["hydrogens"] = args.hydrogens;
  result["bond_orders"] = args.bond_orders;
  result["size"] = nodes.size();
  result["proven_maximum"] = found.proven_optimal;
  result["pairs"] = pairs_json(nodes, "first", m1, g1, "second", m2, g2);
  return {result, [](Json const& r, std::ostream& out) {
            out << "maximum common " << (r["connected"].get<bool>() ? "connected " : "")
                << "substructure of " << r["first"]["file"].get<std::string>() << " and "
                << r["second"]["file"].get<std::string>() << ": " << r["size"].get<int>()
                << " atoms" << (r["hydrogens"].get<bool>() ? "" : " (hydrogens left out)")
                << (r["bond_orders"].get<bool>() ? ", bond orders matched" : "") << '\n';
            if (!r["proven_maximum"].get<bool>()) {
              out << "not proven maximum: the time limit ran out; this is the best found\n";
            }
            print_pairs(r, out, "first", "second");
          }};
}

Outcome match(Record const& pattern, Record const& target, std::string const& pattern_file,
              std::string const& target_file, bool hydrogens) {
  BondGraph const gp = bond_graph(pattern, hydrogens, "match");
  BondGraph const gt = bond_graph(target, hydrogens, "match");
  int const np = gp.adjacency.nrows();
  int const nt = gt.adjacency.nrows();
  if (np == 0) throw InputError("the pattern has no atoms to match");

  std::vector<int> target_degree(static_cast<std::size_t>(nt), 0);
  for (int j = 0; j < nt; ++j) {
    for (int k = 0; k < nt; ++k)
      target_degree[static_cast<std::size_t>(j)] += gt.adjacency.element(j, k);
  }
  auto const candidates = make_handle<ResizableArray2D<bool>>(np, nt, false);
  for (int i = 0; i < np; ++i) {
    int degree_i = 0;
    for (int k = 0; k < np; ++k) degree_i += gp.adjacency.element(i, k) ? 1 : 0;
    for (int j = 0; j < nt; ++j) {
      candidates->element(i, j) =
          element(pattern.molecule, gp, i) == element(target.molecule, gt, j) &&
          degree_i <= target_degree[static_cast<std::size_t>(j)];
    }
  }
  Ullmann ullmann;
  ullmann.create(make_handle<ResizableArray2D<bool>>(gp.adjacency),
                 make_handle<ResizableArray2D<bool>>(gt.adjacency), candidates);
  bool const found = ullmann.find();
  std::vector<std::pair<int, int>> nodes;
  if (found) {
    // After a successful search the candidate matrix holds the embedding.
    for (int i = 0; i < np; ++i) {
      for (int j = 0; j < nt; ++j) {
        if (candidates->element(i, j)) nodes.emplace_back(i, j);
      }
    }
  }
  Json result;
  result["pattern"] = source_fields(pattern_file, pattern);
  result["target"] = source_fields(target_file, target);
  result["found"] = found;
  result["pairs"] =
      pairs_json(nodes, "pattern", pattern.molecule, gp, "target", target.molecule, gt);
  return {result,
          [](Json const& r, std::ostream& out) {
            out << r["pattern"]["file"].get<std::string>() << " in "
                << r["target"]["file"].get<std::string>() << ": ";
            if (!r["found"].get<bool>()) {
              out << "no embedding\n";
              return;
            }
            out << "embedding found\n";
            print_pairs(r, out, "pattern", "target");
          },
          [](Json const& r) { return std::string(r["found"].get<bool>() ? "hit" : "miss"); }};
}

}  // namespace structmath::tool
