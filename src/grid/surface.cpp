// SPDX-License-Identifier: MIT
// Surface: pooled building, measuring, tidying, orienting and checking of a triangulated
// surface, and the handles that view it.
#include "structmath/grid/surface.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <stdexcept>

namespace structmath {

namespace {

std::size_t at(int i) { return static_cast<std::size_t>(i); }

Vector3D area_vector_of(Point const& a, Point const& b, Point const& c) {
  return (b - a).cross(c - a);
}

}  // namespace

// ---------------------------------------------------------------------------
// The handles: views of a surface's arrays while in one, their own data otherwise.

Point SurfaceNode::position() const noexcept {
  return surface_ ? surface_->positions_[at(index_)] : position_;
}

void SurfaceNode::set_position(Point const& position) noexcept {
  (surface_ ? surface_->positions_[at(index_)] : position_) = position;
}

Vector3D SurfaceNode::normal() const noexcept {
  return surface_ ? surface_->normal_at(index_) : normal_;
}

void SurfaceNode::set_normal(Vector3D const& normal) noexcept {
  (surface_ ? surface_->normal_of(index_) : normal_) = normal;
}

void SurfaceNode::add_to_normal(Vector3D const& contribution) noexcept {
  (surface_ ? surface_->normal_of(index_) : normal_) += contribution;
}

THandle<SurfaceNode> SurfaceEdge::first() const {
  return surface_ ? surface_->node(surface_->sides_[at(index_)][0]) : first_;
}

THandle<SurfaceNode> SurfaceEdge::second() const {
  return surface_ ? surface_->node(surface_->sides_[at(index_)][1]) : second_;
}

double SurfaceEdge::length() const { return (second()->position() - first()->position()).length(); }

THandle<SurfaceNode> SurfaceTriangle::node(int n) const {
  return surface_ ? surface_->node(surface_->corners_[at(index_)][at(n)]) : nodes_[at(n)];
}

Vector3D SurfaceTriangle::area_vector() const {
  if (surface_) {
    auto const& c = surface_->corners_[at(index_)];
    auto const& p = surface_->positions_;
    return area_vector_of(p[at(c[0])], p[at(c[1])], p[at(c[2])]);
  }
  return area_vector_of(nodes_[0]->position(), nodes_[1]->position(), nodes_[2]->position());
}

double SurfaceTriangle::area() const { return 0.5 * area_vector().length(); }

bool SurfaceTriangle::has_repeated_node() const noexcept {
  if (surface_) {
    auto const& c = surface_->corners_[at(index_)];
    return c[0] == c[1] || c[1] == c[2] || c[0] == c[2];
  }
  return nodes_[0] == nodes_[1] || nodes_[1] == nodes_[2] || nodes_[0] == nodes_[2];
}

void SurfaceTriangle::flip() noexcept {
  if (surface_) {
    auto& c = surface_->corners_[at(index_)];
    std::swap(c[1], c[2]);
  } else {
    std::swap(nodes_[1], nodes_[2]);
  }
}

// ---------------------------------------------------------------------------
// Building and access.

Surface::~Surface() {
  // Handles that outlive the surface keep their data: triangles and edges first (they
  // take handles of their nodes), then the nodes.
  for (int t = 0; t < static_cast<int>(triangle_views_.size()); ++t) detach_triangle(t);
  for (int e = 0; e < static_cast<int>(edge_views_.size()); ++e) detach_edge(e);
  for (int n = 0; n < static_cast<int>(node_views_.size()); ++n) detach_node(n);
}

Vector3D& Surface::normal_of(int index) {
  if (normals_.size() <= at(index)) normals_.resize(positions_.size(), Vector3D(0.0, 0.0, 0.0));
  return normals_[at(index)];
}

Vector3D Surface::normal_at(int index) const noexcept {
  return at(index) < normals_.size() ? normals_[at(index)] : Vector3D(0.0, 0.0, 0.0);
}

std::vector<Vector3D> const& Surface::normals() const {
  if (normals_.size() < positions_.size()) {
    normals_.resize(positions_.size(), Vector3D(0.0, 0.0, 0.0));
  }
  return normals_;
}

void Surface::reserve(int nodes, int triangles, int edges) {
  positions_.reserve(at(std::max(0, nodes)));
  corners_.reserve(at(std::max(0, triangles)));
  sides_.reserve(at(std::max(0, edges)));
}

int Surface::add_node(Point const& position) {
  positions_.push_back(position);
  return node_count() - 1;
}

int Surface::add_node(THandle<SurfaceNode> node) {
  if (!node || node->index_ != -1 || node->surface_ != nullptr)
    throw std::invalid_argument("Surface::add_node(): node is empty or already in a surface");
  int const index = add_node(node->position_);
  normal_of(index) = node->normal_;
  node->surface_ = this;
  node->index_ = index;
  node_views_.resize(at(index + 1));
  node_views_[at(index)] = std::move(node);
  return index;
}

int Surface::add_triangle(int a, int b, int c) {
  int const n = node_count();
  if (a < 0 || b < 0 || c < 0 || a >= n || b >= n || c >= n)
    throw std::out_of_range("Surface::add_triangle(int, int, int): node index out of range");
  corners_.push_back({a, b, c});
  return triangle_count() - 1;
}

int Surface::checked_node(SurfaceNode const& node) const {
  if (node.surface_ != this) {
    throw std::logic_error("Surface: a triangle or edge refers to a node of another surface");
  }
  return node.index_;
}

int Surface::add_triangle(THandle<SurfaceTriangle> triangle) {
  if (!triangle || triangle->surface_ != nullptr)
    throw std::invalid_argument(
        "Surface::add_triangle(): triangle is empty or already in a surface");
  std::array<int, 3> corner{};
  for (std::size_t c = 0; c < 3; ++c) corner[c] = checked_node(*triangle->nodes_[c]);
  int const index = add_triangle(corner[0], corner[1], corner[2]);
  triangle->surface_ = this;
  triangle->index_ = index;
  for (auto& node : triangle->nodes_) node.reset();
  triangle_views_.resize(at(index + 1));
  triangle_views_[at(index)] = std::move(triangle);
  return index;
}

int Surface::add_edge(int a, int b) {
  int const n = node_count();
  if (a < 0 || b < 0 || a >= n || b >= n)
    throw std::out_of_range("Surface::add_edge(int, int): node index out of range");
  sides_.push_back({a, b});
  return edge_count() - 1;
}

int Surface::add_edge(THandle<SurfaceEdge> edge) {
  if (!edge || edge->surface_ != nullptr)
    throw std::invalid_argument("Surface::add_edge(): edge is empty or already in a surface");
  int const index = add_edge(checked_node(*edge->first_), checked_node(*edge->second_));
  edge->surface_ = this;
  edge->index_ = index;
  edge->first_.reset();
  edge->second_.reset();
  edge_views_.resize(at(index + 1));
  edge_views_[at(index)] = std::move(edge);
  return index;
}

THandle<SurfaceNode> Surface::node(int index) const {
  if (index < 0 || index >= node_count())
    throw std::out_of_range("Surface::node(int): index out of range");
  if (node_views_.size() <= at(index)) node_views_.resize(positions_.size());
  THandle<SurfaceNode>& view = node_views_[at(index)];
  if (!view) view = THandle<SurfaceNode>(new SurfaceNode(const_cast<Surface*>(this), index));
  return view;
}

THandle<SurfaceEdge> Surface::edge(int index) const {
  if (index < 0 || index >= edge_count())
    throw std::out_of_range("Surface::edge(int): index out of range");
  if (edge_views_.size() <= at(index)) edge_views_.resize(sides_.size());
  THandle<SurfaceEdge>& view = edge_views_[at(index)];
  if (!view) view = THandle<SurfaceEdge>(new SurfaceEdge(const_cast<Surface*>(this), index));
  return view;
}

THandle<SurfaceTriangle> Surface::triangle(int index) const {
  if (index < 0 || index >= triangle_count())
    throw std::out_of_range("Surface::triangle(int): index out of range");
  if (triangle_views_.size() <= at(index)) triangle_views_.resize(corners_.size());
  THandle<SurfaceTriangle>& view = triangle_views_[at(index)];
  if (!view) {
    view = THandle<SurfaceTriangle>(new SurfaceTriangle(const_cast<Surface*>(this), index));
  }
  return view;
}

std::vector<THandle<SurfaceNode>> Surface::nodes() const {
  std::vector<THandle<SurfaceNode>> out;
  out.reserve(positions_.size());
  for (int i = 0; i < node_count(); ++i) out.push_back(node(i));
  return out;
}

std::vector<THandle<SurfaceEdge>> Surface::edges() const {
  std::vector<THandle<SurfaceEdge>> out;
  out.reserve(sides_.size());
  for (int i = 0; i < edge_count(); ++i) out.push_back(edge(i));
  return out;
}

std::vector<THandle<SurfaceTriangle>> Surface::triangles() const {
  std::vector<THandle<SurfaceTriangle>> out;
  out.reserve(corners_.size());
  for (int i = 0; i < triangle_count(); ++i) out.push_back(triangle(i));
  return out;
}

std::array<int, 3> Surface::triangle_nodes(int t) const {
  if (t < 0 || t >= triangle_count())
    throw std::out_of_range("Surface::triangle(int): index out of range");
  return corners_[at(t)];
}

void Surface::detach_node(int index) {
  if (at(index) >= node_views_.size() || !node_views_[at(index)]) return;
  SurfaceNode& node = *node_views_[at(index)];
  node.position_ = positions_[at(index)];
  node.normal_ = normal_at(index);
  node.surface_ = nullptr;
  node.index_ = -1;
  node_views_[at(index)].reset();
}

void Surface::detach_triangle(int index) {
  if (at(index) >= triangle_views_.size() || !triangle_views_[at(index)]) return;
  SurfaceTriangle& triangle = *triangle_views_[at(index)];
  for (std::size_t c = 0; c < 3; ++c) triangle.nodes_[c] = node(corners_[at(index)][c]);
  triangle.surface_ = nullptr;
  triangle.index_ = -1;
  triangle_views_[at(index)].reset();
}

void Surface::detach_edge(int index) {
  if (at(index) >= edge_views_.size() || !edge_views_[at(index)]) return;
  SurfaceEdge& edge = *edge_views_[at(index)];
  edge.first_ = node(sides_[at(index)][0]);
  edge.second_ = node(sides_[at(index)][1]);
  edge.surface_ = nullptr;
  edge.index_ = -1;
  edge_views_[at(index)].reset();
}

namespace {

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

bool repeated(std::array<int, 3> const& c) { return c[0] == c[1] || c[1] == c[2] || c[0] == c[2]; }

/// Orders items by their node pair (lo, hi), keeping the given order among equal pairs:
/// a counting sort on lo, then a stable insertion sort on hi within each lo (a node of a
/// surface has a handful of neighbours). Linear in the items and the nodes, where a
/// comparison sort of a large surface's sides took most of its tidying. Returns where
/// each lo's items start, with the end as a last entry.
template <class Item, class Lo, class Hi>
std::vector<std::size_t> sort_by_node_pair(std::vector<Item>& items, std::size_t node_count, Lo lo,
                                           Hi hi) {
  std::vector<std::size_t> start(node_count + 1, 0);
  for (Item const& item : items) ++start[lo(item) + 1];
  for (std::size_t n = 0; n < node_count; ++n) start[n + 1] += start[n];
  std::vector<Item> sorted(items.size());
  std::vector<std::size_t> next(start.begin(), start.end() - 1);
  for (Item const& item : items) sorted[next[lo(item)]++] = item;
  for (std::size_t n = 0; n < node_count; ++n) {
    for (std::size_t i = start[n] + 1; i < start[n + 1]; ++i) {
      Item const item = sorted[i];
      std::size_t j = i;
      for (; j > start[n] && hi(sorted[j - 1]) > hi(item); --j) sorted[j] = sorted[j - 1];
      sorted[j] = item;
    }
  }
  items.swap(sorted);
  return start;
}

/// The sides of every triangle without a repeated node, grouped by node pair (sorted by
/// key, then triangle).
std::vector<Side> sorted_sides(std::vector<std::array<int, 3>> const& corners,
                               std::size_t node_count) {
  std::vector<Side> sides;
  sides.reserve(3 * corners.size());
  for (std::size_t t = 0; t < corners.size(); ++t) {
    std::array<int, 3> const& n = corners[t];
    if (repeated(n)) continue;
    for (std::size_t s = 0; s < 3; ++s) {
      int const a = n[s];
      int const b = n[(s + 1) % 3];
      sides.push_back({pair_key(a, b), static_cast<int>(t), a < b});
    }
  }
  // Triangles are visited in order, so equal keys already stand in triangle order.
  sort_by_node_pair(
      sides, node_count, [](Side const& x) { return static_cast<std::size_t>(x.key >> 32); },
      [](Side const& x) { return static_cast<std::uint32_t>(x.key); });
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

double signed_volume(std::vector<Point> const& positions, std::array<int, 3> const& t,
                     Point const& reference) {
  Vector3D const a = positions[at(t[0])] - reference;
  Vector3D const b = positions[at(t[1])] - reference;
  Vector3D const c = positions[at(t[2])] - reference;
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

double Surface::area() const {
  double sum = 0.0;
  for (auto const& c : corners_) {
    sum +=
        0.5 *
        area_vector_of(positions_[at(c[0])], positions_[at(c[1])], positions_[at(c[2])]).length();
  }
  return sum;
}

double Surface::enclosed_volume() const {
  if (corners_.empty()) return 0.0;
  // Measuring from a point on the surface keeps the terms small for surfaces far from
  // the origin; the sum does not depend on the point when the surface is closed.
  Point const reference = positions_[at(corners_.front()[0])];
  double sum = 0.0;
  for (auto const& c : corners_) sum += signed_volume(positions_, c, reference);
  return sum;
}

void Surface::update_node_normals() {
  normals_.assign(positions_.size(), Vector3D(0.0, 0.0, 0.0));
  for (auto const& c : corners_) {
    Vector3D const v =
        area_vector_of(positions_[at(c[0])], positions_[at(c[1])], positions_[at(c[2])]);
    for (int corner : c) normals_[at(corner)] += v;
  }
  for (Vector3D& n : normals_) {
    double const len = n.length();
    n = len > 0.0 ? n / len : Vector3D(0.0, 0.0, 0.0);
  }
}

int Surface::remove_degenerate_triangles(double tolerance) {
  std::size_t kept = 0;
  for (std::size_t t = 0; t < corners_.size(); ++t) {
    std::array<int, 3> const& c = corners_[t];
    bool const degenerate =
        repeated(c) ||
        0.5 * area_vector_of(positions_[at(c[0])], positions_[at(c[1])], positions_[at(c[2])])
                    .length() <=
            tolerance;
    if (degenerate) {
      detach_triangle(static_cast<int>(t));
      continue;
    }
    if (t < triangle_views_.size() && triangle_views_[t]) {
      triangle_views_[t]->index_ = static_cast<int>(kept);
      if (triangle_views_.size() <= kept) triangle_views_.resize(kept + 1);
      triangle_views_[kept] = std::move(triangle_views_[t]);
    }
    corners_[kept++] = c;
  }
  auto const removed = corners_.size() - kept;
  corners_.resize(kept);
  if (triangle_views_.size() > kept) triangle_views_.resize(kept);
  return static_cast<int>(removed);
}

int Surface::remove_unused_edges() {
  std::vector<std::uint64_t> used;
  used.reserve(3 * corners_.size());
  for (auto const& n : corners_) {
    used.push_back(pair_key(n[0], n[1]));
    used.push_back(pair_key(n[1], n[2]));
    used.push_back(pair_key(n[0], n[2]));
  }
  std::vector<std::size_t> const start = sort_by_node_pair(
      used, positions_.size(),
      [](std::uint64_t key) { return static_cast<std::size_t>(key >> 32); },
      [](std::uint64_t key) { return static_cast<std::uint32_t>(key); });
  std::size_t kept = 0;
  for (std::size_t e = 0; e < sides_.size(); ++e) {
    std::array<int, 2> const side = sides_[e];
    std::uint64_t const key = pair_key(side[0], side[1]);
    auto const lo = static_cast<std::size_t>(key >> 32);
    if (!std::binary_search(used.begin() + static_cast<std::ptrdiff_t>(start[lo]),
                            used.begin() + static_cast<std::ptrdiff_t>(start[lo + 1]), key)) {
      detach_edge(static_cast<int>(e));
      continue;
    }
    if (e < edge_views_.size() && edge_views_[e]) {
      edge_views_[e]->index_ = static_cast<int>(kept);
      edge_views_[kept] = std::move(edge_views_[e]);
    }
    sides_[kept++] = side;
  }
  auto const removed = sides_.size() - kept;
  sides_.resize(kept);
  if (edge_views_.size() > kept) edge_views_.resize(kept);
  return static_cast<int>(removed);
}

int Surface::remove_unused_nodes() {
  std::vector<char> used(positions_.size(), 0);
  for (auto const& c : corners_) {
    for (int n : c) used[at(n)] = 1;
  }
  for (auto const& e : sides_) {
    used[at(e[0])] = 1;
    used[at(e[1])] = 1;
  }
  std::vector<int> renumbered(positions_.size(), -1);
  std::size_t kept = 0;
  for (std::size_t n = 0; n < positions_.size(); ++n) {
    if (!used[n]) {
      detach_node(static_cast<int>(n));
      continue;
    }
    renumbered[n] = static_cast<int>(kept);
    if (n < node_views_.size() && node_views_[n]) {
      node_views_[n]->index_ = static_cast<int>(kept);
      node_views_[kept] = std::move(node_views_[n]);
    }
    positions_[kept] = positions_[n];
    if (kept < normals_.size()) {
      normals_[kept] = n < normals_.size() ? normals_[n] : Vector3D(0.0, 0.0, 0.0);
    }
    ++kept;
  }
  auto const removed = positions_.size() - kept;
  positions_.resize(kept);
  if (normals_.size() > kept) normals_.resize(kept);
  if (node_views_.size() > kept) node_views_.resize(kept);
  for (auto& c : corners_) {
    for (int& n : c) n = renumbered[at(n)];
  }
  for (auto& e : sides_) {
    for (int& n : e) n = renumbered[at(n)];
  }
  return static_cast<int>(removed);
}

int Surface::orient_triangles() {
  std::vector<Side> const sides = sorted_sides(corners_, positions_.size());
  std::size_t const count = corners_.size();

  // Neighbours across sides of exactly two triangles, with whether the pair runs
  // through the side the same way (so one of them must turn); and which triangles
  // touch a boundary or non-manifold side.
  struct Link {
    int other;
    bool same_direction;
  };
  // At most one neighbour across each of a triangle's three sides.
  std::vector<std::array<Link, 3>> links(count);
  std::vector<unsigned char> link_count(count, 0);
  std::vector<char> on_open_side(count, 0);
  for_each_side_group(sides, [&](std::size_t first, std::size_t n) {
    if (n == 2) {
      Side const& x = sides[first];
      Side const& y = sides[first + 1];
      bool const same = x.forward == y.forward;
      links[at(x.triangle)][link_count[at(x.triangle)]++] = {y.triangle, same};
      links[at(y.triangle)][link_count[at(y.triangle)]++] = {x.triangle, same};
    } else {
      for (std::size_t s = first; s < first + n; ++s) on_open_side[at(sides[s].triangle)] = 1;
    }
  });

  std::vector<char> visited(count, 0);
  std::vector<char> flip(count, 0);
  std::vector<int> piece;
  for (std::size_t seed = 0; seed < count; ++seed) {
    if (visited[seed] || repeated(corners_[seed])) continue;
    piece.clear();
    piece.push_back(static_cast<int>(seed));
    visited[seed] = 1;
    bool closed = true;
    for (std::size_t next = 0; next < piece.size(); ++next) {
      auto const t = at(piece[next]);
      if (on_open_side[t]) closed = false;
      for (unsigned char l = 0; l < link_count[t]; ++l) {
        Link const& link = links[t][l];
        auto const u = at(link.other);
        if (visited[u]) continue;
        visited[u] = 1;
        flip[u] = static_cast<char>(flip[t] ^ (link.same_direction ? 1 : 0));
        piece.push_back(link.other);
      }
    }
    if (!closed) continue;
    Point const reference = positions_[at(corners_[seed][0])];
    double volume = 0.0;
    for (int t : piece) {
      double const v = signed_volume(positions_, corners_[at(t)], reference);
      volume += flip[at(t)] ? -v : v;
    }
    if (volume < 0.0) {
      for (int t : piece) flip[at(t)] ^= 1;
    }
  }

  int flipped = 0;
  for (std::size_t t = 0; t < count; ++t) {
    if (flip[t]) {
      std::swap(corners_[t][1], corners_[t][2]);
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
  std::vector<char> used(positions_.size(), 0);
  std::vector<int> parent(positions_.size());
  std::iota(parent.begin(), parent.end(), 0);
  for (auto const& n : corners_) {
    if (repeated(n)) {
      ++report.degenerate_triangles;
      continue;
    }
    ++report.faces;
    for (int c : n) used[at(c)] = 1;
    int const r0 = find_root(parent, n[0]);
    int const r1 = find_root(parent, n[1]);
    parent[at(r1)] = r0;
    int const r2 = find_root(parent, n[2]);
    parent[at(r2)] = r0;
  }
  for (std::size_t n = 0; n < positions_.size(); ++n) {
    if (!used[n]) continue;
    ++report.vertices;
    if (find_root(parent, static_cast<int>(n)) == static_cast<int>(n)) ++report.components;
  }
  std::vector<Side> const sides = sorted_sides(corners_, positions_.size());
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
