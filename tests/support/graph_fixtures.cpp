// SPDX-License-Identifier: MIT
// Molecule-shaped graphs for the graph-matching tests and benchmarks.
#include "support/graph_fixtures.hpp"

#include <utility>

namespace structmath::testing {

namespace {

MoleculeGraph molecule(std::string name, std::vector<std::string> elements,
                       std::vector<std::pair<int, int>> const& bonds) {
  MoleculeGraph result{std::move(name), std::move(elements), Graph()};
  for (int i = 0; i < result.natoms(); ++i) result.graph.add_node(i);
  for (auto const& [a, b] : bonds) result.graph.add_edge(a, b);
  return result;
}

void add_ring(std::vector<std::pair<int, int>>& bonds, std::vector<int> const& atoms) {
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    bonds.emplace_back(atoms[i], atoms[(i + 1) % atoms.size()]);
  }
}

}  // namespace

MoleculeGraph benzene() {
  std::vector<std::string> elements(6, "C");
  elements.resize(12, "H");
  std::vector<std::pair<int, int>> bonds;
  add_ring(bonds, {0, 1, 2, 3, 4, 5});
  for (int i = 0; i < 6; ++i) bonds.emplace_back(i, 6 + i);
  return molecule("benzene", elements, bonds);
}

MoleculeGraph cyclohexane() {
  std::vector<std::string> elements(6, "C");
  elements.resize(18, "H");
  std::vector<std::pair<int, int>> bonds;
  add_ring(bonds, {0, 1, 2, 3, 4, 5});
  for (int i = 0; i < 6; ++i) {
    bonds.emplace_back(i, 6 + 2 * i);
    bonds.emplace_back(i, 7 + 2 * i);
  }
  return molecule("cyclohexane", elements, bonds);
}

MoleculeGraph naphthalene() {
  std::vector<std::string> elements(10, "C");
  elements.resize(18, "H");
  std::vector<std::pair<int, int>> bonds;
  add_ring(bonds, {0, 1, 2, 3, 8, 9});
  bonds.emplace_back(8, 4);
  bonds.emplace_back(4, 5);
  bonds.emplace_back(5, 6);
  bonds.emplace_back(6, 7);
  bonds.emplace_back(7, 9);
  for (int i = 0; i < 8; ++i) bonds.emplace_back(i, 10 + i);
  return molecule("naphthalene", elements, bonds);
}

MoleculeGraph carbon_chain(int length) {
  std::vector<std::pair<int, int>> bonds;
  for (int i = 0; i + 1 < length; ++i) bonds.emplace_back(i, i + 1);
  return molecule("chain", std::vector<std::string>(static_cast<std::size_t>(length), "C"), bonds);
}

MoleculeGraph carbon_star(int arms) {
  std::vector<std::pair<int, int>> bonds;
  for (int i = 1; i <= arms; ++i) bonds.emplace_back(0, i);
  return molecule("star", std::vector<std::string>(static_cast<std::size_t>(arms + 1), "C"), bonds);
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
  std::vector<std::pair<int, int>> bonds;
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
