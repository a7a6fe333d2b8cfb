// SPDX-License-Identifier: MIT
// What the graph searches show their callers, encoded as integer lists: shared by the
// program that writes the known answers and the test that checks them.
#pragma once

#include <cctype>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "structmath/core/vasc_log.hpp"
#include "structmath/graph/bron_kerbosch.hpp"
#include "structmath/graph/ullmann.hpp"

namespace structmath::graph_answers {

/// Captures the debug log at level 3 while it lives; tokens() turns each line into its
/// kind (the place of its fixed text in `kinds`), the count of its numbers and the
/// numbers, so that every line and its order are compared.
class LogTokens {
 public:
  LogTokens() : previous_stream_(&VascLog::stream()) {
    previous_level_ = VascLog::level_;
    previous_minimum_ = VascLog::minimum_level_;
    VascLog::set_stream(text_);
    VascLog::level_ = 3;
    VascLog::minimum_level_ = 0;
  }
  ~LogTokens() {
    VascLog::set_stream(*previous_stream_);
    VascLog::level_ = previous_level_;
    VascLog::minimum_level_ = previous_minimum_;
  }
  LogTokens(LogTokens const&) = delete;
  LogTokens& operator=(LogTokens const&) = delete;

  std::vector<int> tokens() const {
    static char const* const kinds[] = {
        "BronKerbosch::find_disconnected_cliques() connected matrix size: ",
        "BronKerbosch::find_connected_cliques() connected matrix size: ",
        "BronKerbosch add_solution() n cliques: ",
        "BronKerbosch::maximum_common_subgraph() n_found: ",
        "BronKerbosch::maximum_common_subgraph() clique_size: ",
        "BronKerbosch::maximum_common_subgraph() match: ",
        "Nodes keyed on graph 1: ",
        "Nodes keyed on graph 2: ",
        "Ullmann::find() entered",
        "Ullmann::depthfirst() entered: d = ",
        "Ullmann::depthfirst() processing node ",
        "Ullmann::find() returning: nmatches_ = "};
    std::vector<int> out;
    std::istringstream lines(text_.str());
    std::string line;
    while (std::getline(lines, line)) {
      int kind = 0;
      for (char const* k : kinds) {
        ++kind;
        std::string const prefix(k);
        if (line.compare(0, prefix.size(), prefix) != 0) continue;
        std::vector<int> numbers;
        std::string rest = line.substr(prefix.size());
        for (char& c : rest) {
          if (!std::isdigit(static_cast<unsigned char>(c))) c = ' ';
        }
        std::istringstream in(rest);
        for (int n = 0; in >> n;) numbers.push_back(n);
        out.push_back(kind);
        out.push_back(static_cast<int>(numbers.size()));
        out.insert(out.end(), numbers.begin(), numbers.end());
        kind = -1;
        break;
      }
      if (kind != -1) throw std::runtime_error("unknown log line: " + line);
    }
    return out;
  }

 private:
  std::ostringstream text_;
  std::ostream* previous_stream_;
  int previous_level_;
  int previous_minimum_;
};

/// A clique list: the count, then each clique as its size and nodes.
inline std::vector<int> encode(std::vector<THandle<std::vector<int>>> const& cliques) {
  std::vector<int> out{static_cast<int>(cliques.size())};
  for (auto const& clique : cliques) {
    out.push_back(static_cast<int>(clique->size()));
    out.insert(out.end(), clique->begin(), clique->end());
  }
  return out;
}

/// A match: -1 for none, else its pairs in order.
inline std::vector<int> encode(THandle<GraphMatch<int, int, int, int>> const& match) {
  if (!match) return {-1};
  std::vector<int> out;
  for (auto const& [a, b] : match->node_pairs()) {
    out.push_back(a);
    out.push_back(b);
  }
  return out;
}

/// A boolean matrix: rows, columns, then the entries as 0 and 1, row by row.
inline std::vector<int> encode(ResizableArray2D<bool> const& m) {
  std::vector<int> out{m.nrows(), m.ncols()};
  for (int i = 0; i < m.nrows(); ++i) {
    for (int j = 0; j < m.ncols(); ++j) out.push_back(m[i][j] ? 1 : 0);
  }
  return out;
}

inline ResizableArray2D<bool> decode_matrix(std::vector<int> const& v) {
  ResizableArray2D<bool> m(v.at(0), v.at(1), false);
  std::size_t k = 2;
  for (int i = 0; i < m.nrows(); ++i) {
    for (int j = 0; j < m.ncols(); ++j) m[i][j] = v.at(k++) != 0;
  }
  return m;
}

/// An adjacency matrix from its node count and edge list.
inline ResizableArray2D<bool> decode_graph(std::vector<int> const& v) {
  ResizableArray2D<bool> m(v.at(0), v.at(0), false);
  for (std::size_t k = 1; k + 1 < v.size(); k += 2) m[v[k]][v[k + 1]] = m[v[k + 1]][v[k]] = true;
  return m;
}

/// How check_match answers and when the search stops.
struct UllmannMode {
  std::string key;
  bool accept;
  int limit;
};
inline std::vector<UllmannMode> const ullmann_modes = {
    {"first", true, 1}, {"three", true, 3}, {"none", false, 1}};

/// Offers every match to a record, accepting or rejecting it.
class RecordingUllmann : public Ullmann {
 public:
  explicit RecordingUllmann(UllmannMode const& mode) : accept_(mode.accept) {
    match_limit_ = mode.limit;
  }
  bool check_match(THandle<std::vector<int>> match) override {
    offered.push_back(static_cast<int>(match->size()));
    offered.insert(offered.end(), match->begin(), match->end());
    return accept_;
  }
  std::vector<int> offered;

 private:
  bool accept_;
};

struct UllmannRun {
  std::vector<int> summary;  ///< found, nmatches
  std::vector<int> offered;  ///< each offered match: its size, then its entries
  std::vector<int> final_candidates;
  std::vector<int> log;
};

/// One search; with `log` false the debug log stays off (the search may then take
/// shortcuts that only the log could show) and run.log stays empty.
inline UllmannRun run_ullmann(ResizableArray2D<bool> const& pattern,
                              ResizableArray2D<bool> const& target,
                              ResizableArray2D<bool> const& candidates, UllmannMode const& mode,
                              bool log = true) {
  auto const m = make_handle<ResizableArray2D<bool>>(candidates);
  RecordingUllmann search(mode);
  search.create(make_handle<ResizableArray2D<bool>>(pattern),
                make_handle<ResizableArray2D<bool>>(target), m);
  UllmannRun run;
  if (log) {
    LogTokens tokens;
    bool const found = search.find();
    run.log = tokens.tokens();
    run.summary = {found ? 1 : 0, search.nmatches()};
  } else {
    bool const found = search.find();
    run.summary = {found ? 1 : 0, search.nmatches()};
  }
  run.offered = search.offered;
  run.final_candidates = encode(*m);
  return run;
}

}  // namespace structmath::graph_answers
