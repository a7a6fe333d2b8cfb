// SPDX-License-Identifier: MIT
// Surface: building, measuring, tidying, orienting and checking a triangulated surface.
#include "structmath/grid/surface.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <stdexcept>

namespace structmath {

double SurfaceEdge::length() const { return (second_->position() - first_->position()).length(); }

Vector3D SurfaceTriangle::area_vector() const {
  Point const& a = nodes_[0]->position();
  return (nodes_[1]->position() - a).cross(nodes_[2]->position() - a);
}

double SurfaceTriangle::area() const { return 0.5 * area_vector().length(); }

int Surface::add_node(THandle<SurfaceNode> node) {
  if (!node || node->index_ != -1)
    throw std::invalid_argument("Surface::add_node(): node is empty or already in a surface");
  node->index_ = node_count();
  nodes_.push_back(std::move(node));
  return node_count() - 1;
}

int Surface::add_triangle(THandle<SurfaceTriangle> triangle) {
  triangles_.push_back(std::move(triangle));
  return triangle_count() - 1;
}

int Surface::add_edge(THandle<SurfaceEdge> edge) {
  edges_.push_back(std::move(edge));
  return edge_count() - 1;
}

THandle<SurfaceNode> const& Surface::node(int index) const {
  if (index < 0 || index >= node_count())
    throw std::out_of_range("Surface::node(int): index out of range");
  return nodes_[static_cast<std::size_t>(index)];
}

THandle<SurfaceEdge> const& Surface::edge(int index) const {
  if (index < 0 || index >= edge_count())
    throw std::out_of_range("Surface::edge(int): index out of range");
  return edges_[static_cast<std::size_t>(index)];
}

THandle<SurfaceTriangle> const& Surface::triangle(int index) const {
  if (index < 0 || index >= triangle_count())
    throw std::out_of_range("Surface::triangle(int): index out of range");
  return triangles_[static_cast<std::size_t>(index)];
}

namespace {

/// The index of a node that must belong to the surface whose node list is given.
int checked_index(std::vector<THandle<SurfaceNode>> const& nodes, SurfaceNode const& node) {
  int const index = node.index();
  if (index < 0 || static_cast<std::size_t>(index) >= nodes.size() ||
      nodes[static_cast<std::size_t>(index)].get() != &node) {
    throw std::logic_error("Surface: a triangle or edge refers to a node of another surface");
  }
  return index;
}

std::array<int, 3> corners(std::vector<THandle<SurfaceNode>> const& nodes,
                           SurfaceTriangle const& t) {
  return {checked_index(nodes, *t.node(0)), checked_index(nodes, *t.node(1)),
          checked_index(nodes, *t.node(2))};
}

std::uint64_t pair_key(int a, int b) {
  auto const lo = static_cast<std::uint32_t>(std::min(a, b));
  auto const hi = static_cast<std::uint32_t>(std::max(a, b));
  return (std::uint64_t{lo} << 32) | hi;
}

/// One side of a triangle: the unordered node pair, the triangle, and whether the
/// triangle runs through it from the lower to the higher node index.
struct Side {
  std::uint64_t key;
  int triangle;
  bool forward;
};

/// The sides of every triangle without a repeated node, grouped by node pair (sorted by
/// key, then triangle).
std::vector<Side> sorted_sides(std::vector<THandle<SurfaceNode>> const& nodes,
                               std::vector<THandle<SurfaceTriangle>> const& triangles) {
  std::vector<Side> sides;
  sides.reserve(3 * triangles.size());
  for (std::size_t t = 0; t < triangles.size(); ++t) {
    if (triangles[t]->has_repeated_node()) continue;
    std::array<int, 3> const n = corners(nodes, *triangles[t]);
    for (std::size_t s = 0; s < 3; ++s) {
      int const a = n[s];
      int const b = n[(s + 1) % 3];
      sides.push_back({pair_key(a, b), static_cast<int>(t), a < b});
    }
  }
  std::sort(sides.begin(), sides.end(), [](Side const& x, Side const& y) {
    return x.key != y.key ? x.key < y.key : x.triangle < y.triangle;
  });
  return sides;
}

/// Calls f(first, count) for each run of sides with the same node pair.
template <class F>
void for_each_side_group(std::vector<Side> const& sides, F&& f) {
  std::size_t first = 0;
  while (first < sides.size()) {
    std::size_t last = first + 1;
    while (last < sides.size() && sides[last].key == sides[first].key) ++last;
    f(first, last - first);
    first = last;
  }
}

double signed_volume(SurfaceTriangle const& t, Point const& reference) {
  Vector3D const a = t.node(0)->position() - reference;
  Vector3D const b = t.node(1)->position() - reference;
  Vector3D const c = t.node(2)->position() - reference;
  return a.dot(b.cross(c)) / 6.0;
}

int find_root(std::vector<int>& parent, int x) {
  while (parent[static_cast<std::size_t>(x)] != x) {
    int& p = parent[static_cast<std::size_t>(x)];
    p = parent[static_cast<std::size_t>(p)];
    x = p;
  }
  return x;
}

}  // namespace

std::array<int, 3> Surface::triangle_nodes(int t) const { return corners(nodes_, *triangle(t)); }

double Surface::area() const {
  double sum = 0.0;
  for (auto const& t : triangles_) sum += t->area();
  return sum;
}

double Surface::enclosed_volume() const {
  if (triangles_.empty()) return 0.0;
  // Measuring from a point on the surface keeps the terms small for surfaces far from
  // the origin; the sum does not depend on the point when the surface is closed.
  Point const reference = triangles_.front()->node(0)->position();
  double sum = 0.0;
  for (auto const& t : triangles_) sum += signed_volume(*t, reference);
  return sum;
}

void Surface::update_node_normals() {
  for (auto const& n : nodes_) n->set_normal(Vector3D(0.0, 0.0, 0.0));
  for (auto const& t : triangles_) {
    Vector3D const v = t->area_vector();
    for (int c = 0; c < 3; ++c) t->node(c)->add_to_normal(v);
  }
  for (auto const& n : nodes_) {
    double const len = n->normal().length();
    n->set_normal(len > 0.0 ? n->normal() / len : Vector3D(0.0, 0.0, 0.0));
  }
}

int Surface::remove_degenerate_triangles(double tolerance) {
  auto const old_size = triangles_.size();
  triangles_.erase(std::remove_if(triangles_.begin(), triangles_.end(),
                                  [tolerance](THandle<SurfaceTriangle> const& t) {
                                    return t->has_repeated_node() || t->area() <= tolerance;
                                  }),
                   triangles_.end());
  return static_cast<int>(old_size - triangles_.size());
}

int Surface::remove_unused_edges() {
  std::vector<std::uint64_t> used;
  used.reserve(3 * triangles_.size());
  for (auto const& t : triangles_) {
    std::array<int, 3> const n = corners(nodes_, *t);
    used.push_back(pair_key(n[0], n[1]));
    used.push_back(pair_key(n[1], n[2]));
    used.push_back(pair_key(n[0], n[2]));
  }
  std::sort(used.begin(), used.end());
  auto const old_size = edges_.size();
  edges_.erase(std::remove_if(edges_.begin(), edges_.end(),
                              [&](THandle<SurfaceEdge> const& e) {
                                std::uint64_t const key =
                                    pair_key(checked_index(nodes_, *e->first()),
                                             checked_index(nodes_, *e->second()));
                                return !std::binary_search(used.begin(), used.end(), key);
                              }),
               edges_.end());
  return static_cast<int>(old_size - edges_.size());
}

int Surface::remove_unused_nodes() {
  std::vector<char> used(nodes_.size(), 0);
  for (auto const& t : triangles_) {
    for (int n : corners(nodes_, *t)) used[static_cast<std::size_t>(n)] = 1;
  }
  for (auto const& e : edges_) {
    used[static_cast<std::size_t>(checked_index(nodes_, *e->first()))] = 1;
    used[static_cast<std::size_t>(checked_index(nodes_, *e->second()))] = 1;
  }
  std::size_t kept = 0;
  for (std::size_t n = 0; n < nodes_.size(); ++n) {
    if (used[n]) {
      nodes_[n]->index_ = static_cast<int>(kept);
      nodes_[kept++] = std::move(nodes_[n]);
    } else {
      nodes_[n]->index_ = -1;
    }
  }
  auto const removed = nodes_.size() - kept;
  nodes_.resize(kept);
  return static_cast<int>(removed);
}

int Surface::orient_triangles() {
  std::vector<Side> const sides = sorted_sides(nodes_, triangles_);
  std::size_t const count = triangles_.size();

  // Neighbours across sides of exactly two triangles, with whether the pair runs
  // through the side the same way (so one of them must turn); and which triangles
  // touch a boundary or non-manifold side.
  struct Link {
    int other;
    bool same_direction;
  };
  std::vector<std::vector<Link>> links(count);
  std::vector<char> on_open_side(count, 0);
  for_each_side_group(sides, [&](std::size_t first, std::size_t n) {
    if (n == 2) {
      Side const& x = sides[first];
      Side const& y = sides[first + 1];
      bool const same = x.forward == y.forward;
      links[static_cast<std::size_t>(x.triangle)].push_back({y.triangle, same});
      links[static_cast<std::size_t>(y.triangle)].push_back({x.triangle, same});
    } else {
      for (std::size_t s = first; s < first + n; ++s)
        on_open_side[static_cast<std::size_t>(sides[s].triangle)] = 1;
    }
  });

  std::vector<char> visited(count, 0);
  std::vector<char> flip(count, 0);
  std::vector<int> piece;
  for (std::size_t seed = 0; seed < count; ++seed) {
    if (visited[seed] || triangles_[seed]->has_repeated_node()) continue;
    piece.clear();
    piece.push_back(static_cast<int>(seed));
    visited[seed] = 1;
    bool closed = true;
    for (std::size_t next = 0; next < piece.size(); ++next) {
      auto const t = static_cast<std::size_t>(piece[next]);
      if (on_open_side[t]) closed = false;
      for (Link const& link : links[t]) {
        auto const u = static_cast<std::size_t>(link.other);
        if (visited[u]) continue;
        visited[u] = 1;
        flip[u] = static_cast<char>(flip[t] ^ (link.same_direction ? 1 : 0));
        piece.push_back(link.other);
      }
    }
    if (!closed) continue;
    Point const reference = triangles_[seed]->node(0)->position();
    double volume = 0.0;
    for (int t : piece) {
      double const v = signed_volume(*triangles_[static_cast<std::size_t>(t)], reference);
      volume += flip[static_cast<std::size_t>(t)] ? -v : v;
    }
    if (volume < 0.0) {
      for (int t : piece) flip[static_cast<std::size_t>(t)] ^= 1;
    }
  }

  int flipped = 0;
  for (std::size_t t = 0; t < count; ++t) {
    if (flip[t]) {
      triangles_[t]->flip();
      ++flipped;
    }
  }
  return flipped;
}

int Surface::tidy() {
  int const removed = remove_degenerate_triangles(0.0);
  remove_unused_edges();
  remove_unused_nodes();
  orient_triangles();
  update_node_normals();
  return removed;
}

SurfaceTopology Surface::topology() const {
  SurfaceTopology report;
  std::vector<char> used(nodes_.size(), 0);
  std::vector<int> parent(nodes_.size());
  std::iota(parent.begin(), parent.end(), 0);
  for (auto const& t : triangles_) {
    if (t->has_repeated_node()) {
      ++report.degenerate_triangles;
      continue;
    }
    ++report.faces;
    std::array<int, 3> const n = corners(nodes_, *t);
    for (int c = 0; c < 3; ++c) used[static_cast<std::size_t>(n[static_cast<std::size_t>(c)])] = 1;
    int const r0 = find_root(parent, n[0]);
    int const r1 = find_root(parent, n[1]);
    parent[static_cast<std::size_t>(r1)] = r0;
    int const r2 = find_root(parent, n[2]);
    parent[static_cast<std::size_t>(r2)] = r0;
  }
  for (std::size_t n = 0; n < nodes_.size(); ++n) {
    if (!used[n]) continue;
    ++report.vertices;
    if (find_root(parent, static_cast<int>(n)) == static_cast<int>(n)) ++report.components;
  }
  std::vector<Side> const sides = sorted_sides(nodes_, triangles_);
  for_each_side_group(sides, [&](std::size_t first, std::size_t n) {
    ++report.edges;
    if (n == 1) ++report.boundary_edges;
    if (n >= 3) ++report.non_manifold_edges;
    if (n == 2 && sides[first].forward == sides[first + 1].forward)
      report.consistently_oriented = false;
  });
  return report;
}

}  // namespace structmath
