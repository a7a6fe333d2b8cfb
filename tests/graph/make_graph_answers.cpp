// SPDX-License-Identifier: MIT
// Writes tests/data/graph/searches.txt: what the clique searches and Ullmann's search show
// their callers (clique lists in order, returned matches, the level-3 log, check_match
// calls, the candidate matrix left behind) on seeded random graphs and molecule graphs.
// Run by hand: structmath_make_graph_answers DATA_DIR ANSWERS_DIR > tests/data/graph/searches.txt
#include <cstdio>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "graph_answers.hpp"
#include "graph_random.hpp"
#include "structmath/core/vasc_log.hpp"
#include "structmath/graph/bron_kerbosch.hpp"
#include "structmath/graph/ullmann.hpp"
#include "structmath/io/molfile.hpp"

namespace {

using namespace structmath;
using Matrix = ResizableArray2D<bool>;

void put(std::ostream& out, std::string const& key, std::vector<int> const& values) {
  out << key;
  for (int v : values) out << ' ' << v;
  out << '\n';
}

void put_graph(std::ostream& out, std::string const& key, Matrix const& m) {
  std::vector<int> v{m.nrows()};
  for (int i = 0; i < m.nrows(); ++i) {
    for (int k = i + 1; k < m.nrows(); ++k) {
      if (m[i][k]) {
        v.push_back(i);
        v.push_back(k);
      }
    }
  }
  put(out, key, v);
}

void clique_case(std::ostream& out, std::string const& name, Matrix const& a, Matrix const& b) {
  out << "case " << name << '\n';
  put_graph(out, "a", a);
  put_graph(out, "b", b);
  auto const c = BronKerbosch::create_correspondence_graph(a, b);
  int const bound = std::min(a.nrows(), b.nrows());
  for (auto [type, label] : {std::pair(Subgraph::DISCONNECTED, std::string("disconnected")),
                             std::pair(Subgraph::CONNECTED, std::string("connected"))}) {
    // With the log off (searches may then stop early once the list is full) ...
    for (int kept : {10, 1}) {
      CliqueList const cliques = BronKerbosch::find_cliques(c, type, kept, bound);
      put(out, label + (kept == 10 ? "" : "_first"), graph_answers::encode(*cliques));
    }
    // ... and on, where every line must come as before.
    graph_answers::LogTokens log;
    auto const match = BronKerbosch::maximum_common_subgraph(a, b, type);
    put(out, "mcs_" + label, graph_answers::encode(match));
    put(out, "mcs_" + label + "_log", log.tokens());
  }
  out << '\n';
}

void ullmann_case(std::ostream& out, std::string const& name, Matrix const& pattern,
                  Matrix const& target, Matrix const& candidates) {
  out << "case " << name << '\n';
  put_graph(out, "pattern", pattern);
  put_graph(out, "target", target);
  put(out, "candidates", graph_answers::encode(candidates));
  for (graph_answers::UllmannMode const& mode : graph_answers::ullmann_modes) {
    graph_answers::UllmannRun const run =
        graph_answers::run_ullmann(pattern, target, candidates, mode);
    // Rejecting every match walks the whole tree: kept only where that stays short.
    if (!mode.accept && run.log.size() > 2000) continue;
    put(out, mode.key, run.summary);
    put(out, mode.key + "_offered", run.offered);
    put(out, mode.key + "_final", run.final_candidates);
    put(out, mode.key + "_log", run.log);
  }
  out << '\n';
}

// Heavy-atom bond graph of an SD record, with element codes for Ullmann candidates.
struct Molecule {
  Matrix adjacency;
  std::vector<std::string> elements;
};

Molecule heavy(io::Molecule const& m) {
  std::vector<int> node(m.atoms.size(), -1);
  Molecule g;
  for (std::size_t a = 0; a < m.atoms.size(); ++a) {
    if (m.atoms[a].element == "H") continue;
    node[a] = static_cast<int>(g.elements.size());
    g.elements.push_back(m.atoms[a].element);
  }
  int const n = static_cast<int>(g.elements.size());
  g.adjacency = Matrix(n, n, false);
  for (io::Bond const& bond : m.bonds) {
    int const i = node[static_cast<std::size_t>(bond.first)];
    int const k = node[static_cast<std::size_t>(bond.second)];
    if (i >= 0 && k >= 0) g.adjacency[i][k] = g.adjacency[k][i] = true;
  }
  return g;
}

Matrix element_candidates(Molecule const& p, Molecule const& t) {
  Matrix m(p.adjacency.nrows(), t.adjacency.nrows(), false);
  for (int i = 0; i < m.nrows(); ++i) {
    for (int j = 0; j < m.ncols(); ++j) {
      m[i][j] = p.elements[static_cast<std::size_t>(i)] == t.elements[static_cast<std::size_t>(j)];
    }
  }
  return m;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: make_graph_answers DATA_DIR ANSWERS_DIR\n";
    return 2;
  }
  std::string const data = argv[1];
  std::string const answers = argv[2];
  std::ostringstream out;
  out << "# Written by tests/graph/make_graph_answers.cpp from the searches as they were\n"
         "# before their bit-parallel rewrite; read by tests/graph/graph_answers_test.cpp.\n\n";

  std::mt19937 rng(16016);
  std::uniform_real_distribution<double> density(0.1, 0.9);
  // Clique searches on random pairs: small and sparse to small and dense.
  std::uniform_int_distribution<int> clique_size(1, 7);
  for (int trial = 0; trial < 300; ++trial) {
    int const n1 = clique_size(rng), n2 = clique_size(rng);
    Matrix const a = graph_test::random_graph(rng, n1, density(rng));
    Matrix const b = graph_test::random_graph(rng, n2, density(rng));
    clique_case(out, "cliques_random_" + std::to_string(trial), a, b);
  }
  // Ullmann on random pairs, with all or some candidates.
  std::uniform_int_distribution<int> pattern_size(1, 6), extra(-1, 4);
  std::bernoulli_distribution restrictive(0.5), keep(0.7);
  for (int trial = 0; trial < 200; ++trial) {
    int const np = pattern_size(rng);
    int const nt = std::max(1, np + extra(rng));
    Matrix const p = graph_test::random_graph(rng, np, density(rng));
    Matrix const t = graph_test::random_graph(rng, nt, density(rng));
    Matrix m(np, nt, true);
    if (restrictive(rng)) {
      for (int i = 0; i < np; ++i) {
        for (int j = 0; j < nt; ++j) m[i][j] = keep(rng);
      }
    }
    ullmann_case(out, "ullmann_random_" + std::to_string(trial), p, t, m);
  }

  // Molecule graphs: the bundled samples and the drug-like records.
  auto const one = [&](std::string const& file) { return heavy(io::read_sdf(file).front()); };
  Molecule const caffeine = one(data + "/caffeine.sdf");
  Molecule const theobromine = one(data + "/theobromine.sdf");
  Molecule const imidazole = one(data + "/imidazole_ring.sdf");
  Molecule const benzene = one(data + "/benzene.sdf");
  std::vector<Molecule> drugs;
  for (io::Molecule const& m : io::read_sdf(answers + "/io/drugs.sdf")) drugs.push_back(heavy(m));
  clique_case(out, "cliques_imidazole_caffeine", imidazole.adjacency, caffeine.adjacency);
  clique_case(out, "cliques_benzene_caffeine", benzene.adjacency, caffeine.adjacency);
  clique_case(out, "cliques_glycine_choline", drugs[2].adjacency, drugs[4].adjacency);
  clique_case(out, "cliques_caffeine_theobromine", caffeine.adjacency, theobromine.adjacency);
  clique_case(out, "cliques_paracetamol_aspirin", drugs[3].adjacency, drugs[0].adjacency);
  ullmann_case(out, "ullmann_imidazole_caffeine", imidazole.adjacency, caffeine.adjacency,
               element_candidates(imidazole, caffeine));
  ullmann_case(out, "ullmann_benzene_ibuprofen", benzene.adjacency, drugs[1].adjacency,
               element_candidates(benzene, drugs[1]));
  ullmann_case(out, "ullmann_benzene_nicotine", benzene.adjacency, drugs[5].adjacency,
               element_candidates(benzene, drugs[5]));
  ullmann_case(out, "ullmann_ring_aspirin", benzene.adjacency, drugs[0].adjacency,
               Matrix(benzene.adjacency.nrows(), drugs[0].adjacency.nrows(), true));
  std::cout << out.str();
  return 0;
}
