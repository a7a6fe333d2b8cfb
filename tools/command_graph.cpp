// SPDX-License-Identifier: MIT
// `structmath mcs` and `match`: common substructures and substructure search on bond graphs.
#include <ostream>

#include "structmath/graph/bron_kerbosch.hpp"
#include "structmath/graph/ullmann.hpp"
#include "tool.hpp"

namespace structmath::tool {

namespace {

// The bond graph of a molecule, without hydrogens unless asked, and the atoms kept.
struct BondGraph {
  std::vector<int> atoms;  // molecule atom index of each graph node
  ResizableArray2D<bool> adjacency;
};

BondGraph bond_graph(io::Molecule const& molecule, bool hydrogens) {
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

Json pair_json(io::Molecule const& a, BondGraph const& ga, int na, io::Molecule const& b,
               BondGraph const& gb, int nb) {
  return {atom_label(a, ga.atoms[static_cast<std::size_t>(na)]),
          atom_label(b, gb.atoms[static_cast<std::size_t>(nb)])};
}

void print_pairs(Json const& r, std::ostream& out, char const* left, char const* right) {
  for (auto const& p : r["pairs"]) {
    out << "  " << left << ' ' << p[0].get<std::string>() << "  ->  " << right << ' '
        << p[1].get<std::string>() << '\n';
  }
}

}  // namespace

Outcome run_mcs(McsArgs const& args) {
  std::string const f1 = args.first.empty() ? bundled("caffeine.sdf") : args.first;
  std::string const f2 = args.second.empty() ? bundled("theobromine.sdf") : args.second;
  io::Molecule const m1 = read_molecule(f1);
  io::Molecule const m2 = read_molecule(f2);
  if (m1.bonds.empty() || m2.bonds.empty()) {
    throw InputError("mcs needs bonds: give molfiles or SD files, not XYZ");
  }
  BondGraph const g1 = bond_graph(m1, args.hydrogens);
  BondGraph const g2 = bond_graph(m2, args.hydrogens);
  int const n1 = g1.adjacency.nrows();
  int const n2 = g2.adjacency.nrows();

  // Atoms may only pair with atoms of the same element: other pairs are cut off from
  // every other pair in the correspondence graph.
  ResizableArray2D<int> c = BronKerbosch::create_correspondence_graph(g1.adjacency, g2.adjacency);
  for (int i = 0; i < n1; ++i) {
    for (int j = 0; j < n2; ++j) {
      if (element(m1, g1, i) == element(m2, g2, j)) continue;
      int const p = i * n2 + j;
      for (int q = 0; q < n1 * n2; ++q) {
        if (q == p) continue;
        c.element(p, q) = 0;
        c.element(q, p) = 0;
      }
    }
  }
  Subgraph::SubgraphType const type = args.connected ? Subgraph::CONNECTED : Subgraph::DISCONNECTED;
  CliqueList const cliques = BronKerbosch::find_cliques(c, type, 1, n1 * n2);
  Json pairs = Json::array();
  if (cliques && !cliques->empty()) {
    auto const match = BronKerbosch::subgraph_match(*cliques->front(), g1.adjacency, g2.adjacency);
    for (auto const& [a, b] : match->node_pairs()) {
      if (element(m1, g1, a) != element(m2, g2, b)) continue;  // a lone mismatched pair
      pairs.push_back(pair_json(m1, g1, a, m2, g2, b));
    }
  }
  Json result;
  result["first"] = f1;
  result["second"] = f2;
  result["connected"] = args.connected;
  result["hydrogens"] = args.hydrogens;
  result["size"] = pairs.size();
  result["pairs"] = pairs;
  return {result, [](Json const& r, std::ostream& out) {
            out << "maximum common " << (r["connected"].get<bool>() ? "connected " : "")
                << "substructure of " << r["first"].get<std::string>() << " and "
                << r["second"].get<std::string>() << ": " << r["size"].get<int>() << " atoms"
                << (r["hydrogens"].get<bool>() ? "" : " (hydrogens left out)") << '\n';
            print_pairs(r, out, "first", "second");
          }};
}

Outcome run_match(MatchArgs const& args) {
  std::string const fp = args.pattern.empty() ? bundled("imidazole_ring.sdf") : args.pattern;
  std::string const ft = args.target.empty() ? bundled("caffeine.sdf") : args.target;
  io::Molecule const pattern = read_molecule(fp);
  io::Molecule const target = read_molecule(ft);
  if (pattern.bonds.empty() || target.bonds.empty()) {
    throw InputError("match needs bonds: give molfiles or SD files, not XYZ");
  }
  BondGraph const gp = bond_graph(pattern, args.hydrogens);
  BondGraph const gt = bond_graph(target, args.hydrogens);
  int const np = gp.adjacency.nrows();
  int const nt = gt.adjacency.nrows();

  auto const candidates = make_handle<ResizableArray2D<bool>>(np, nt, false);
  for (int i = 0; i < np; ++i) {
    int degree_i = 0;
    for (int k = 0; k < np; ++k) degree_i += gp.adjacency.element(i, k) ? 1 : 0;
    for (int j = 0; j < nt; ++j) {
      int degree_j = 0;
      for (int k = 0; k < nt; ++k) degree_j += gt.adjacency.element(j, k) ? 1 : 0;
      candidates->element(i, j) =
          element(pattern, gp, i) == element(target, gt, j) && degree_i <= degree_j;
    }
  }
  Ullmann ullmann;
  ullmann.create(make_handle<ResizableArray2D<bool>>(gp.adjacency),
                 make_handle<ResizableArray2D<bool>>(gt.adjacency), candidates);
  bool const found = ullmann.find();
  Json pairs = Json::array();
  if (found) {
    // After a successful search the candidate matrix holds the embedding.
    for (int i = 0; i < np; ++i) {
      for (int j = 0; j < nt; ++j) {
        if (candidates->element(i, j)) pairs.push_back(pair_json(pattern, gp, i, target, gt, j));
      }
    }
  }
  Json result;
  result["pattern"] = fp;
  result["target"] = ft;
  result["found"] = found;
  result["pairs"] = pairs;
  return {result, [](Json const& r, std::ostream& out) {
            out << r["pattern"].get<std::string>() << " in " << r["target"].get<std::string>()
                << ": ";
            if (!r["found"].get<bool>()) {
              out << "no embedding\n";
              return;
            }
            out << "embedding found\n";
            print_pairs(r, out, "pattern", "target");
          }};
}

}  // namespace structmath::tool
