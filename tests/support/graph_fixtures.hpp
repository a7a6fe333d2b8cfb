// SPDX-License-Identifier: MIT
// Molecule-shaped graphs for the graph-matching tests and benchmarks.
#pragma once

#include <string>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/graph/graph.hpp"
#include "structmath/graph/resizable_array_2d.hpp"

namespace structmath::testing {

/// A molecule as a graph: node i is atom i, edges are bonds.
struct MoleculeGraph {
  std::string name;
  std::vector<std::string> elements;  // element symbol of each atom
  Graph graph;                        // nodes 0 … atoms − 1

  int natoms() const { return static_cast<int>(elements.size()); }
  ResizableArray2D<bool> adjacency() const { return graph.adjacency_matrix(); }
  THandle<ResizableArray2D<bool>> adjacency_handle() const {
    return make_handle<ResizableArray2D<bool>>(graph.adjacency_matrix());
  }
};

/// C6H6: carbons 0–5 in a ring (i bonded to i+1 and 5 to 0), hydrogen 6+i on carbon i.
MoleculeGraph benzene();
/// C6H12: the same ring, hydrogens 6+2i and 7+2i on carbon i.
MoleculeGraph cyclohexane();
/// C10H8: carbons 0–7 on the rim, 8 and 9 the shared ring-fusion carbons
/// (rings 0-1-2-3-8-9 and 8-4-5-6-7-9), hydrogen 10+i on carbon i for i < 8.
MoleculeGraph naphthalene();
/// A chain of `length` carbons, i bonded to i+1 (hydrogens omitted).
MoleculeGraph carbon_chain(int length);
/// Carbon 0 bonded to `arms` further carbons 1 … arms (hydrogens omitted).
MoleculeGraph carbon_star(int arms);
/// No atoms at all.
MoleculeGraph empty_molecule();
/// The molecule without its hydrogens, the remaining atoms renumbered in order.
MoleculeGraph heavy_atoms(MoleculeGraph const& molecule);

/// Candidate matrix for embedding `pattern` in `target`: true where the two
/// atoms are of the same element and the target atom has at least the pattern
/// atom's degree.
THandle<ResizableArray2D<bool>> element_candidates(MoleculeGraph const& pattern,
                                                   MoleculeGraph const& target);

}  // namespace structmath::testing
