// SPDX-License-Identifier: MIT
// Molecule-shaped graphs for the graph-matching tests and benchmarks.
#include "support/graph_fixtures.hpp"

#include <utility>

namespace structmath::testing {

namespace {

using Bonds = std::vector<std::pair<int, int>>;

MoleculeGraph molecule(std::string name, std::vector<std::string> elements, Bonds const& bonds) {
  MoleculeGraph result{std::move(name), std::move(elements), Graph()};
  for (int i = 0; i < result.natoms(); ++i) result.graph.add_node(i);
  for (auto const& [a, b] : bonds) result.graph.add_edge(a, b);
  return result;
}

// `carbons` carbon symbols followed by `hydrogens` hydrogen ones.
std::vector<std::string> atoms(int carbons, int hydrogens) {
  std::vector<std::string> elements(static_cast<std::size_t>(carbons), "C");
  elements.resize(static_cast<std::size_t>(carbons + hydrogens), "H");
  return elements;
}

// Bonds along the atoms in turn, closing the ring when asked.
void add_path(Bonds& bonds, std::vector<int> const& path, bool ring) {
  for (std::size_t i = 0; i + 1 < path.size(); ++i) bonds.emplace_back(path[i], path[i + 1]);
  if (ring) bonds.emplace_back(path.back(), path.front());
}

// Six carbons in a ring, each carrying `per_carbon` hydrogens numbered from 6 on.
MoleculeGraph six_ring(std::string name, int per_carbon) {
  Bonds bonds;
  add_path(bonds, {0, 1, 2, 3, 4, 5}, true);
  for (int i = 0; i < 6; ++i) {
    for (int h = 0; h < per_carbon; ++h) bonds.emplace_back(i, 6 + per_carbon * i + h);
  }
  return molecule(std::move(name), atoms(6, 6 * per_carbon), bonds);
}

}  // namespace

MoleculeGraph benzene() { return six_ring("benzene", 1); }

MoleculeGraph cyclohexane() { return six_ring("cyclohexane", 2); }

MoleculeGraph naphthalene() {
  Bonds bonds;
  add_path(bonds, {0, 1, 2, 3, 8, 9}, true);
  add_path(bonds, {8, 4, 5, 6, 7, 9}, false);
  for (int i = 0; i < 8; ++i) bonds.emplace_back(i, 10 + i);
  return molecule("naphthalene", atoms(10, 8), bonds);
}

MoleculeGraph carbon_chain(int length) {
  Bonds bonds;
  for (int i = 0; i + 1 < length; ++i) bonds.emplace_back(i, i + 1);
  return molecule("chain", atoms(length, 0), bonds);
}

MoleculeGraph carbon_star(int arms) {
  Bonds bonds;
  for (int i = 1; i <= arms; ++i) bonds.emplace_back(0, i);
  return molecule("star", atoms(arms + 1, 0), bonds);
}

MoleculeGraph empty_molecule() { return molecule("empty", {}, {}); }

MoleculeGraph heavy_atoms(MoleculeGraph const& source) {
  std::vector<int> new_index(source.elements.size(), -1);
  std::vector<std::string> elements;
  for (std::size_t i = 0; i < source.elements.size(); ++i) {
    if (source.elements[i] == "H") continue;
    new_index[i] = static_cast<int>(elements.size());
    elements.push_back(source.elements[i]);
  }
  Bonds bonds;
  for (auto const& [a, b] : source.graph.edges()) {
    int const na = new_index[static_cast<std::size_t>(a)];
    int const nb = new_index[static_cast<std::size_t>(b)];
    if (na >= 0 && nb >= 0) bonds.emplace_back(na, nb);
  }
  return molecule(source.name + " heavy atoms", elements, bonds);
}

THandle<ResizableArray2D<bool>> element_candidates(MoleculeGraph const& pattern,
                                                   MoleculeGraph const& target) {
  auto candidates = make_handle<ResizableArray2D<bool>>(pattern.natoms(), target.natoms(), false);
  for (int i = 0; i < pattern.natoms(); ++i) {
    for (int j = 0; j < target.natoms(); ++j) {
      (*candidates)[i][j] = pattern.elements[static_cast<std::size_t>(i)] ==
                                target.elements[static_cast<std::size_t>(j)] &&
                            pattern.graph.degree(i) <= target.graph.degree(j);
    }
  }
  return candidates;
}

}  // namespace structmath::testing
