// SPDX-License-Identifier: MIT
// Surface: a triangulated surface of shared nodes, edges and triangles.
#pragma once

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/tolerance.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

/// A surface vertex: a position and a normal that is accumulated from the triangles
/// around it. A node belongs to at most one surface, which gives it its index.
class STRUCTMATH_API SurfaceNode {
 public:
  /// A node at a position, with a zero normal and no index yet.
  explicit SurfaceNode(Point const& position) noexcept : position_(position) {}

  Point const& position() const noexcept { return position_; }
  void set_position(Point const& position) noexcept { position_ = position; }
  /// The accumulated normal: unit length after Surface::update_node_normals(), zero for
  /// a node on no triangle.
  Vector3D const& normal() const noexcept { return normal_; }
  void set_normal(Vector3D const& normal) noexcept { normal_ = normal; }
  void add_to_normal(Vector3D const& contribution) noexcept { normal_ += contribution; }
  /// The position in its surface's node list, counting from 0; -1 before it is added.
  int index() const noexcept { return index_; }

 private:
  friend class Surface;
  Point position_;
  Vector3D normal_{0.0, 0.0, 0.0};
  int index_ = -1;
};

/// An undirected side shared by the triangles of a surface, kept as the pair of nodes
/// in the order given.
class STRUCTMATH_API SurfaceEdge {
 public:
  SurfaceEdge(THandle<SurfaceNode> first, THandle<SurfaceNode> second) noexcept
      : first_(std::move(first)), second_(std::move(second)) {}

  THandle<SurfaceNode> const& first() const noexcept { return first_; }
  THandle<SurfaceNode> const& second() const noexcept { return second_; }
  double length() const;

 private:
  THandle<SurfaceNode> first_;
  THandle<SurfaceNode> second_;
};

/// A triangle of three nodes. Its winding (the node order) fixes its front side by the
/// right-hand rule.
class STRUCTMATH_API SurfaceTriangle {
 public:
  SurfaceTriangle(THandle<SurfaceNode> a, THandle<SurfaceNode> b, THandle<SurfaceNode> c) noexcept
      : nodes_{std::move(a), std::move(b), std::move(c)} {}

  /// Node n = 0, 1, 2 in winding order; unchecked.
  THandle<SurfaceNode> const& node(int n) const noexcept {
    return nodes_[static_cast<std::size_t>(n)];
  }
  /// (b - a) x (c - a): along the front normal, with length twice the area.
  Vector3D area_vector() const;
  double area() const;
  /// Whether two corners are the same node.
  bool has_repeated_node() const noexcept {
    return nodes_[0] == nodes_[1] || nodes_[1] == nodes_[2] || nodes_[0] == nodes_[2];
  }
  /// Reverses the winding (swaps the second and third nodes).
  void flip() noexcept { std::swap(nodes_[1], nodes_[2]); }

 private:
  std::array<THandle<SurfaceNode>, 3> nodes_;
};

/// What a surface's triangles make of it, counted over the triangles without a repeated
/// node (those are counted apart as degenerate).
struct STRUCTMATH_API SurfaceTopology {
  int vertices = 0;            ///< nodes on at least one triangle
  int edges = 0;               ///< distinct node pairs that are triangle sides
  int faces = 0;               ///< triangles
  int boundary_edges = 0;      ///< sides of exactly one triangle
  int non_manifold_edges = 0;  ///< sides of three or more triangles
  int components = 0;          ///< pieces connected through shared nodes
  int degenerate_triangles = 0;
  /// Every side of two triangles is run through in opposite directions by them.
  bool consistently_oriented = true;

  /// V - E + F: 2 for a sphere-like closed surface, 1 for a disc.
  int euler_characteristic() const noexcept { return vertices - edges + faces; }
  /// No boundary and no non-manifold side (and at least one triangle).
  bool closed() const noexcept {
    return faces > 0 && boundary_edges == 0 && non_manifold_edges == 0;
  }
};

/// A triangulated surface: lists of nodes, edges and triangles in the order added.
///
/// Triangles and edges refer to nodes by handle; a node's index() is its place in the
/// node list. The surface is built by appending; its tidying operations (removals,
/// orientation, normals) work in place and keep the relative order of what remains.
class STRUCTMATH_API Surface {
 public:
  Surface() = default;
  Surface(Surface const&) = delete;
  Surface& operator=(Surface const&) = delete;

  /// Appends a node and gives it the next index (counting from 0), which it returns.
  /// Throws std::invalid_argument("Surface::add_node(): node is empty or already in a
  /// surface") for an empty handle or a node that already has an index.
  int add_node(THandle<SurfaceNode> node);
  /// Appends a triangle; returns its index.
  int add_triangle(THandle<SurfaceTriangle> triangle);
  /// Appends an edge; returns its index.
  int add_edge(THandle<SurfaceEdge> edge);

  int node_count() const noexcept { return static_cast<int>(nodes_.size()); }
  int edge_count() const noexcept { return static_cast<int>(edges_.size()); }
  int triangle_count() const noexcept { return static_cast<int>(triangles_.size()); }

  /// The element of an index. Throw std::out_of_range("Surface::node(int): index out of
  /// range"), and likewise for edge and triangle.
  THandle<SurfaceNode> const& node(int index) const;
  THandle<SurfaceEdge> const& edge(int index) const;
  THandle<SurfaceTriangle> const& triangle(int index) const;

  std::vector<THandle<SurfaceNode>> const& nodes() const noexcept { return nodes_; }
  std::vector<THandle<SurfaceEdge>> const& edges() const noexcept { return edges_; }
  std::vector<THandle<SurfaceTriangle>> const& triangles() const noexcept { return triangles_; }

  /// The node indices of triangle t in winding order.
  std::array<int, 3> triangle_nodes(int t) const;

  /// Sum of the triangle areas.
  double area() const;
  /// The volume enclosed, by the divergence theorem: the sum of the signed volumes of
  /// the tetrahedra joining each triangle to a fixed point. Positive when the triangles
  /// face outwards; meaningful only for a closed, consistently oriented surface.
  double enclosed_volume() const;

  /// Sets every node's normal to the unit sum of the area vectors of the triangles
  /// around it (so larger triangles weigh more). A node on no triangle, or whose sum
  /// vanishes, gets the zero vector. Follows the triangles' winding: orient first.
  void update_node_normals();

  /// Removes the triangles with a repeated node or with an area at most tolerance;
  /// returns how many were removed.
  int remove_degenerate_triangles(double tolerance = default_tolerance);
  /// Removes the edges that are not a side of any triangle; returns how many.
  int remove_unused_edges();
  /// Removes the nodes on no triangle and no edge and renumbers the rest in order;
  /// returns how many.
  int remove_unused_nodes();

  /// Makes the winding of neighbouring triangles consistent: within each connected
  /// piece, triangles are reached across sides shared by exactly two triangles and
  /// flipped where they run through the shared side in the same direction as their
  /// neighbour. The lowest-numbered triangle of a piece keeps its winding, except that
  /// a closed piece is then turned to face outwards (positive enclosed volume).
  /// Triangles with a repeated node are left alone. Returns the number of triangles
  /// flipped. A non-orientable piece stays inconsistent somewhere; topology() says so.
  int orient_triangles();

  /// The usual clean-up of a contoured surface, in this order: removes the triangles with
  /// a repeated node or no area, then the edges and nodes they no longer use; orients the
  /// triangles and sets the node normals. Returns the number of triangles removed.
  int tidy();

  /// Counts vertices, sides, faces, boundary and non-manifold sides, connected pieces
  /// and degenerate triangles, and checks the orientation.
  SurfaceTopology topology() const;

 private:
  std::vector<THandle<SurfaceNode>> nodes_;
  std::vector<THandle<SurfaceEdge>> edges_;
  std::vector<THandle<SurfaceTriangle>> triangles_;
};

}  // namespace structmath
