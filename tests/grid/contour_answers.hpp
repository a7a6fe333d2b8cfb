// SPDX-License-Identifier: MIT
// Contoured surfaces as known-answer cases describe them.
#pragma once

#include <string>
#include <vector>

#include "structmath/grid/contourer.hpp"
#include "structmath/grid/normal_grid.hpp"
#include "support/known_answers.hpp"

namespace structmath::testing {

/// The surface of a case: a NormalGrid of "counts" nodes at "origin" with edge vectors
/// "plus_x", "plus_y", "plus_z" and "values" (k fastest), contoured at "level" by cubes
/// ("tetrahedra 0") or tetrahedra ("tetrahedra 1"). Recorded: every node position in
/// order, every triangle and edge as node numbers; then, after Surface::tidy(), the
/// triangles, the node normals, the area and the enclosed volume.
inline AnswerFields library_contour_outcome(AnswerCase const& c) {
  std::vector<int> const n = c.ints("counts");
  auto const vector = [&c](char const* key) {
    std::vector<double> const v = c.doubles(key);
    return Vector3D(v.at(0), v.at(1), v.at(2));
  };
  auto grid = make_handle<NormalGrid>(n.at(0), n.at(1), n.at(2), vector("origin").point(),
                                      vector("plus_x"), vector("plus_y"), vector("plus_z"));
  std::vector<double> const values = c.doubles("values");
  std::size_t at = 0;
  for (int i = 0; i < n[0]; ++i) {
    for (int j = 0; j < n[1]; ++j) {
      for (int k = 0; k < n[2]; ++k) grid->set_value(i, j, k, values.at(at++));
    }
  }
  MarchingContourer const contourer(grid, c.integer("tetrahedra") != 0);
  THandle<Surface> const s = contourer.surface(c.number("level"));
  std::vector<double> positions;
  for (int i = 0; i < s->node_count(); ++i) {
    Point const p = s->node(i)->position();
    positions.insert(positions.end(), {p.x(), p.y(), p.z()});
  }
  auto const triangles = [](Surface const& surface) {
    std::vector<int> out;
    for (int t = 0; t < surface.triangle_count(); ++t) {
      auto const corners = surface.triangle_nodes(t);
      out.insert(out.end(), corners.begin(), corners.end());
    }
    return out;
  };
  std::vector<int> edges;
  for (int e = 0; e < s->edge_count(); ++e) {
    edges.push_back(s->edge(e)->first()->index());
    edges.push_back(s->edge(e)->second()->index());
  }
  AnswerFields out;
  out.add("positions", positions).add("triangles", triangles(*s)).add("edges", edges);
  int const removed = s->tidy();
  std::vector<double> normals;
  for (int i = 0; i < s->node_count(); ++i) {
    Vector3D const v = s->node(i)->normal();
    normals.insert(normals.end(), {v.x(), v.y(), v.z()});
  }
  out.add("tidy_removed", removed)
      .add("tidy_triangles", triangles(*s))
      .add("tidy_normals", normals)
      .add("area", s->area())
      .add("enclosed_volume", s->enclosed_volume());
  return out;
}

}  // namespace structmath::testing
