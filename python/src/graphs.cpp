// SPDX-License-Identifier: MIT
// Python bindings: labelled graphs, maximum common subgraphs and subgraph embeddings.
#include <climits>
#include <string>

#include <pybind11/stl.h>

#include "convert.hpp"
#include "structmath/graph/clique_search.hpp"
#include "structmath/graph/ullmann.hpp"

namespace structmath::python {

namespace {

std::vector<int> int_vector(py::handle value, py::ssize_t expected, char const* what) {
  py::array any = py::module_::import("numpy").attr("asarray")(value);
  char const kind = any.dtype().kind();
  if (kind != 'b' && kind != 'i' && kind != 'u' && any.size() != 0) {
    throw py::type_error(std::string(what) + " must be integers, got dtype " +
                         py::str(any.dtype()).cast<std::string>());
  }
  auto const a = py::array_t<long long, py::array::c_style | py::array::forcecast>::ensure(any);
  if (!a) throw py::error_already_set();
  if (a.ndim() != 1 || a.shape(0) != expected) {
    throw py::value_error(std::string(what) + " must be a 1-dimensional array of " +
                          std::to_string(expected) + " integers");
  }
  std::vector<int> out(static_cast<std::size_t>(expected));
  for (py::ssize_t i = 0; i < expected; ++i) {
    long long const v = a.at(i);
    if (v < INT_MIN || v > INT_MAX)
      throw py::value_error(std::string(what) + ": label out of range");
    out[static_cast<std::size_t>(i)] = static_cast<int>(v);
  }
  return out;
}

// A square integer matrix (adjacency or edge labels) as an n x n array of ints.
py::array_t<long long> square(py::handle value, char const* what) {
  py::array any = py::module_::import("numpy").attr("asarray")(value);
  char const kind = any.dtype().kind();
  if (kind != 'b' && kind != 'i' && kind != 'u') {
    throw py::type_error(std::string(what) +
                         " must be an array of booleans or integers, got dtype " +
                         py::str(any.dtype()).cast<std::string>());
  }
  auto a = py::array_t<long long, py::array::c_style | py::array::forcecast>::ensure(any);
  if (!a) throw py::error_already_set();
  if (a.ndim() != 2 || a.shape(0) != a.shape(1)) {
    throw py::value_error(std::string(what) + " must be a square (n, n) array");
  }
  return a;
}

void set_node_labels(LabelledGraph& g, py::handle labels) {
  if (!labels.is_none()) g.node_labels = int_vector(labels, g.adjacency.nrows(), "node_labels");
}

LabelledGraph from_adjacency(py::handle adjacency, py::handle node_labels, py::handle edge_labels) {
  auto const a = square(adjacency, "adjacency");
  auto const n = static_cast<int>(a.shape(0));
  LabelledGraph g;
  g.adjacency = ResizableArray2D<bool>(n, n, false);
  auto const r = a.unchecked<2>();
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j) {
      if ((r(i, j) != 0) != (r(j, i) != 0)) throw py::value_error("adjacency must be symmetric");
      g.adjacency[i][j] = i != j && r(i, j) != 0;
    }
  }
  set_node_labels(g, node_labels);
  if (!edge_labels.is_none()) {
    auto const e = square(edge_labels, "edge_labels");
    if (e.shape(0) != n) throw py::value_error("edge_labels must have the shape of adjacency");
    auto const l = e.unchecked<2>();
    g.edge_labels = ResizableArray2D<int>(n, n, 0);
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) g.edge_labels[i][j] = static_cast<int>(l(i, j));
    }
  }
  return g;
}

LabelledGraph from_edges(int n, py::handle edges, py::handle node_labels, py::handle edge_labels) {
  if (n < 0) throw py::value_error("the number of nodes must not be negative");
  std::vector<int> const ends = index_rows(edges, 2, n, "edges");
  LabelledGraph g;
  g.adjacency = ResizableArray2D<bool>(n, n, false);
  std::vector<int> labels;
  auto const m = static_cast<py::ssize_t>(ends.size() / 2);
  if (!edge_labels.is_none()) {
    labels = int_vector(edge_labels, m, "edge_labels");
    g.edge_labels = ResizableArray2D<int>(n, n, 0);
  }
  for (std::size_t e = 0; e < ends.size() / 2; ++e) {
    int const i = ends[2 * e];
    int const j = ends[2 * e + 1];
    if (i == j) throw py::value_error("edges: a node cannot be joined to itself");
    g.adjacency[i][j] = g.adjacency[j][i] = true;
    if (!labels.empty()) g.edge_labels[i][j] = g.edge_labels[j][i] = labels[e];
  }
  set_node_labels(g, node_labels);
  return g;
}

LabelledGraph as_graph(py::handle value) {
  if (py::isinstance<LabelledGraph>(value)) return value.cast<LabelledGraph>();
  return from_adjacency(value, py::none(), py::none());
}

py::object labels_or_none(LabelledGraph const& g) {
  if (g.edge_labels.empty()) return py::none();
  int const n = g.adjacency.nrows();
  py::array_t<int> out({n, n});
  std::copy(g.edge_labels.data(), g.edge_labels.data() + g.edge_labels.size(), out.mutable_data());
  return out;
}

py::array_t<bool> adjacency_of(LabelledGraph const& g) {
  int const n = g.adjacency.nrows();
  py::array_t<bool> out({n, n});
  std::copy(g.adjacency.data(), g.adjacency.data() + g.adjacency.size(), out.mutable_data());
  return out;
}

struct EmbeddingResult {
  std::vector<std::vector<int>> matches;
  bool complete = true;
};

/// Ullmann's search keeping every accepted match, with edge labels checked on each
/// complete assignment.
class CollectingUllmann : public Ullmann {
 public:
  CollectingUllmann(LabelledGraph const& pattern, LabelledGraph const& target, int limit)
      : pattern_graph_(pattern), target_graph_(target) {
    match_limit_ = limit;
  }
  bool check_match(THandle<std::vector<int>> match) override {
    std::vector<int> const& m = *match;
    if (!pattern_graph_.edge_labels.empty() && !target_graph_.edge_labels.empty()) {
      int const n = pattern_graph_.adjacency.nrows();
      for (int i = 0; i < n; ++i) {
        for (int k = i + 1; k < n; ++k) {
          if (pattern_graph_.adjacency[i][k] &&
              pattern_graph_.edge_labels[i][k] !=
                  target_graph_.edge_labels[m[static_cast<std::size_t>(i)]]
                                           [m[static_cast<std::size_t>(k)]]) {
            return false;
          }
        }
      }
    }
    matches.push_back(m);
    return true;
  }
  std::vector<std::vector<int>> matches;

 private:
  LabelledGraph const& pattern_graph_;
  LabelledGraph const& target_graph_;
};

EmbeddingResult embed(LabelledGraph const& pattern, LabelledGraph const& target, int max_matches,
                      SearchBudget budget) {
  int const np = pattern.adjacency.nrows();
  int const nt = target.adjacency.nrows();
  auto degrees = [](ResizableArray2D<bool> const& a) {
    std::vector<int> d(static_cast<std::size_t>(a.nrows()), 0);
    for (int i = 0; i < a.nrows(); ++i) {
      for (int j = 0; j < a.ncols(); ++j) d[static_cast<std::size_t>(i)] += a[i][j] ? 1 : 0;
    }
    return d;
  };
  std::vector<int> const dp = degrees(pattern.adjacency);
  std::vector<int> const dt = degrees(target.adjacency);
  bool const labelled = !pattern.node_labels.empty() && !target.node_labels.empty();
  // A pattern node may become a target node of the same label and at least its degree.
  auto candidates = make_handle<ResizableArray2D<bool>>(np, nt, false);
  for (int i = 0; i < np; ++i) {
    for (int j = 0; j < nt; ++j) {
      (*candidates)[i][j] = dp[static_cast<std::size_t>(i)] <= dt[static_cast<std::size_t>(j)] &&
                            (!labelled || pattern.node_labels[static_cast<std::size_t>(i)] ==
                                              target.node_labels[static_cast<std::size_t>(j)]);
    }
  }
  CollectingUllmann search(pattern, target, max_matches);
  search.set_budget(budget);
  search.create(make_handle<ResizableArray2D<bool>>(pattern.adjacency),
                make_handle<ResizableArray2D<bool>>(target.adjacency), candidates);
  search.find();
  EmbeddingResult result;
  result.matches = std::move(search.matches);
  result.complete = search.completed();
  return result;
}

py::list match_list(std::vector<std::vector<std::pair<int, int>>> const& matches) {
  py::list out;
  for (auto const& match : matches) {
    py::array_t<int> pairs({static_cast<py::ssize_t>(match.size()), py::ssize_t{2}});
    int* d = pairs.mutable_data();
    for (auto const& [i, j] : match) {
      *d++ = i;
      *d++ = j;
    }
    out.append(pairs);
  }
  return out;
}

SearchBudget budget_of(long long max_steps, double max_seconds) {
  SearchBudget budget;
  budget.max_steps = max_steps;
  budget.max_seconds = max_seconds;
  return budget;
}

}  // namespace

void bind_graphs(py::module_& m) {
  py::class_<LabelledGraph>(m, "Graph", R"doc(
An undirected graph for the graph searches: n nodes counted from 0, optional integer node
labels (elements, for instance) and optional integer edge labels (bond orders). Nodes pair
only with nodes of equal label, edges with edges of equal label, when both graphs have
such labels.)doc")
      .def(py::init(&from_adjacency), py::arg("adjacency"), py::arg("node_labels") = py::none(),
           py::arg("edge_labels") = py::none(),
           R"doc(From a symmetric (n, n) boolean or integer adjacency array (non-zero off the
diagonal is an edge), node labels (n,) and edge labels (n, n), read where adjacent.)doc")
      .def_static("from_edges", &from_edges, py::arg("n"), py::arg("edges"),
                  py::arg("node_labels") = py::none(), py::arg("edge_labels") = py::none(),
                  "From n and an (m, 2) array of edges, with node labels (n,) and edge labels "
                  "(m,), one per edge.")
      .def("__len__", [](LabelledGraph const& g) { return g.adjacency.nrows(); })
      .def_property_readonly("adjacency", &adjacency_of, "(n, n) boolean array.")
      .def_property_readonly("node_labels",
                             [](LabelledGraph const& g) -> py::object {
                               if (g.node_labels.empty()) return py::none();
                               return to_array(g.node_labels);
                             })
      .def_property_readonly("edge_labels", &labels_or_none, "(n, n) array, or None.")
      .def(py::pickle(
          [](LabelledGraph const& g) {
            return py::make_tuple(adjacency_of(g),
                                  g.node_labels.empty() ? py::object(py::none())
                                                        : py::object(to_array(g.node_labels)),
                                  labels_or_none(g));
          },
          [](py::tuple const& t) { return from_adjacency(t[0], t[1], t[2]); }));

  py::class_<CommonSubgraph>(m, "CommonSubgraph", R"doc(
A maximum common subgraph search's answer: matches, a list of (size, 2) int32 arrays of
(node of the first graph, node of the second) pairs in the order of the first graph's
nodes; size; proven_optimal (False when the budget ran out first: the matches are the
best found); steps, the extensions made; correspondence_nodes, the label-compatible
node pairs.)doc")
      .def_property_readonly("matches",
                             [](CommonSubgraph const& c) { return match_list(c.matches); })
      .def_readonly("size", &CommonSubgraph::size)
      .def_readonly("proven_optimal", &CommonSubgraph::proven_optimal)
      .def_readonly("steps", &CommonSubgraph::steps)
      .def_readonly("correspondence_nodes", &CommonSubgraph::correspondence_nodes)
      .def("__repr__",
           [](CommonSubgraph const& c) {
             return "CommonSubgraph(size=" + std::to_string(c.size) +
                    ", matches=" + std::to_string(c.matches.size()) +
                    ", proven_optimal=" + (c.proven_optimal ? "True" : "False") + ")";
           })
      .def(py::pickle(
          [](CommonSubgraph const& c) {
            return py::make_tuple(c.matches, c.size, c.proven_optimal, c.steps,
                                  c.correspondence_nodes);
          },
          [](py::tuple const& t) {
            CommonSubgraph c;
            c.matches = t[0].cast<std::vector<std::vector<std::pair<int, int>>>>();
            c.size = t[1].cast<int>();
            c.proven_optimal = t[2].cast<bool>();
            c.steps = t[3].cast<long long>();
            c.correspondence_nodes = t[4].cast<int>();
            return c;
          }));

  m.def(
      "maximum_common_subgraph",
      [](py::handle a, py::handle b, bool connected, int max_matches, long long max_steps,
         double max_seconds) {
        LabelledGraph const ga = as_graph(a);
        LabelledGraph const gb = as_graph(b);
        CommonSubgraphOptions options;
        options.connected = connected;
        options.max_matches = max_matches;
        options.budget = budget_of(max_steps, max_seconds);
        py::gil_scoped_release unlocked;
        return maximum_common_subgraph(ga, gb, options);
      },
      py::arg("a"), py::arg("b"), py::arg("connected") = false, py::arg("max_matches") = 1,
      py::arg("max_steps") = -1, py::arg("max_seconds") = -1.0,
      R"doc(The maximum common induced subgraph of two graphs (Graph objects or adjacency
arrays): nodes paired one to one (equal labels where both graphs have them) so that two
nodes are joined in one graph exactly when their partners are joined in the other. With
connected=True the pairs form one connected piece. Up to max_matches matches of the
largest size are kept. max_steps and max_seconds bound the work (negative: no bound); a
search stopped by them reports proven_optimal=False. Returns a CommonSubgraph; the GIL is
released during the search.)doc");

  py::class_<EmbeddingResult>(m, "Embeddings", R"doc(
Embeddings of a pattern graph in a target: matches, a list of int32 arrays whose entry i
is the target node of pattern node i, in the order found; complete is False when the
budget ran out first (more embeddings may exist).)doc")
      .def_property_readonly("matches",
                             [](EmbeddingResult const& r) {
                               py::list out;
                               for (auto const& match : r.matches) out.append(to_array(match));
                               return out;
                             })
      .def_readonly("complete", &EmbeddingResult::complete)
      .def("__bool__", [](EmbeddingResult const& r) { return !r.matches.empty(); })
      .def("__len__", [](EmbeddingResult const& r) { return r.matches.size(); })
      .def("__repr__",
           [](EmbeddingResult const& r) {
             return "Embeddings(matches=" + std::to_string(r.matches.size()) +
                    ", complete=" + (r.complete ? "True" : "False") + ")";
           })
      .def(
          py::pickle([](EmbeddingResult const& r) { return py::make_tuple(r.matches, r.complete); },
                     [](py::tuple const& t) {
                       EmbeddingResult r;
                       r.matches = t[0].cast<std::vector<std::vector<int>>>();
                       r.complete = t[1].cast<bool>();
                       return r;
                     }));

  m.def(
      "subgraph_embeddings",
      [](py::handle pattern, py::handle target, py::object max_matches, long long max_steps,
         double max_seconds) {
        LabelledGraph const gp = as_graph(pattern);
        LabelledGraph const gt = as_graph(target);
        int const limit = max_matches.is_none() ? INT_MAX : max_matches.cast<int>();
        if (limit < 1) throw py::value_error("max_matches must be at least 1, or None for all");
        py::gil_scoped_release unlocked;
        return embed(gp, gt, limit, budget_of(max_steps, max_seconds));
      },
      py::arg("pattern"), py::arg("target"), py::arg("max_matches") = 1, py::arg("max_steps") = -1,
      py::arg("max_seconds") = -1.0,
      R"doc(Embeddings of pattern in target by Ullmann's method: one-to-one maps of the
pattern's nodes to target nodes (of equal label where both graphs have node labels) that
carry every pattern edge onto a target edge (of equal label where both have edge labels);
target edges between mapped nodes need not be pattern edges (a monomorphism, as a
substructure search wants). Up to max_matches embeddings (None: all), in the order
found. max_steps (assignments tried) and max_seconds bound the work. Returns Embeddings,
true when at least one was found; the GIL is released during the search.)doc");
}

}  // namespace structmath::python
