// SPDX-License-Identifier: MIT
// Surface: a triangulated surface of shared nodes, edges and triangles, stored in pools.
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

class Surface;

/// A surface vertex: a position and a normal that is accumulated from the triangles
/// around it. A node belongs to at most one surface, which gives it its index.
///
/// A node made by the caller holds its own position and normal until a surface adopts
/// it; a node in a surface is a view of the surface's arrays (the handles a surface
/// hands out are such views). When its surface removes it or is destroyed, a node keeps
/// a copy of its position and normal and its index becomes -1.
class STRUCTMATH_API SurfaceNode {
 public:
  /// A node at a position, with a zero normal and no index yet.
  explicit SurfaceNode(Point const& position) noexcept : position_(position) {}
  SurfaceNode(SurfaceNode const&) = delete;
  SurfaceNode& operator=(SurfaceNode const&) = delete;

  Point position() const noexcept;
  void set_position(Point const& position) noexcept;
  /// The accumulated normal: unit length after Surface::update_node_normals(), zero for
  /// a node on no triangle.
  Vector3D normal() const noexcept;
  void set_normal(Vector3D const& normal) noexcept;
  void add_to_normal(Vector3D const& contribution) noexcept;
  /// The position in its surface's node list, counting from 0; -1 when in none.
  int index() const noexcept { return index_; }

 private:
  friend class Surface;
  SurfaceNode(Surface* surface, int index) noexcept : surface_(surface), index_(index) {}
  Surface* surface_ = nullptr;
  int index_ = -1;
  Point position_;
  Vector3D normal_{0.0, 0.0, 0.0};
};

/// An undirected side shared by the triangles of a surface, kept as the pair of nodes
/// in the order given. In a surface it is a view of the surface's arrays, as nodes are.
class STRUCTMATH_API SurfaceEdge {
 public:
  SurfaceEdge(THandle<SurfaceNode> first, THandle<SurfaceNode> second) noexcept
      : first_(std::move(first)), second_(std::move(second)) {}
  SurfaceEdge(SurfaceEdge const&) = delete;
  SurfaceEdge& operator=(SurfaceEdge const&) = delete;

  THandle<SurfaceNode> first() const;
  THandle<SurfaceNode> second() const;
  double length() const;

 private:
  friend class Surface;
  SurfaceEdge(Surface* surface, int index) noexcept : surface_(surface), index_(index) {}
  Surface* surface_ = nullptr;
  int index_ = -1;
  THandle<SurfaceNode> first_;  // while in no surface
  THandle<SurfaceNode> second_;
};

/// A triangle of three nodes. Its winding (the node order) fixes its front side by the
/// right-hand rule. In a surface it is a view of the surface's arrays, as nodes are.
class STRUCTMATH_API SurfaceTriangle {
 public:
  SurfaceTriangle(THandle<SurfaceNode> a, THandle<SurfaceNode> b, THandle<SurfaceNode> c) noexcept
      : nodes_{std::move(a), std::move(b), std::move(c)} {}
  SurfaceTriangle(SurfaceTriangle const&) = delete;
  SurfaceTriangle& operator=(SurfaceTriangle const&) = delete;

  /// Node n = 0, 1, 2 in winding order; unchecked.
  THandle<SurfaceNode> node(int n) const;
  /// (b - a) x (c - a): along the front normal, with length twice the area.
  Vector3D area_vector() const;
  double area() const;
  /// Whether two corners are the same node.
  bool has_repeated_node() const noexcept;
  /// Reverses the winding (swaps the second and third nodes).
  void flip() noexcept;

 private:
  friend class Surface;
  SurfaceTriangle(Surface* surface, int index) noexcept : surface_(surface), index_(index) {}
  Surface* surface_ = nullptr;
  int index_ = -1;
  std::array<THandle<SurfaceNode>, 3> nodes_;  // while in no surface
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
/// Storage is pooled: node positions and normals, triangle corners and edge ends are
/// contiguous arrays indexed from 0 (positions() is an n x 3 block of doubles, as a Point
/// is three), built with the index forms of add_node, add_triangle and add_edge without
/// one allocation per element. The handle forms keep working as views of these arrays:
/// node(i), edge(i), triangle(i) and nodes(), edges(), triangles() make a handle for an
/// element on first asking and give the same handle afterwards, and changes through a
/// handle (a flip, a new position) change the surface. Removals and the surface's
/// destruction detach the handles of the elements concerned (they keep their data, with
/// index -1). The tidying operations work in place and keep the relative order of what
/// remains. A surface is neither copied nor moved: its handles point at it.
class STRUCTMATH_API Surface {
 public:
  Surface() = default;
  Surface(Surface const&) = delete;
  Surface& operator=(Surface const&) = delete;
  ~Surface();

  /// Room for this many elements without reallocation.
  void reserve(int nodes, int triangles, int edges);

  /// Appends a node at a position; returns its index.
  int add_node(Point const& position);
  /// Adopts a node made by the caller: its position and normal join the arrays, and the
  /// handle becomes this surface's view of it with the next index (counting from 0),
  /// which is returned. Throws std::invalid_argument("Surface::add_node(): node is empty
  /// or already in a surface") for an empty handle or a node that already has an index.
  int add_node(THandle<SurfaceNode> node);
  /// Appends the triangle of nodes a, b, c (winding order); returns its index. Throws
  /// std::out_of_range("Surface::add_triangle(int, int, int): node index out of range").
  int add_triangle(int a, int b, int c);
  /// Adopts a triangle made by the caller from nodes of this surface; returns its index.
  /// Throws std::invalid_argument("Surface::add_triangle(): triangle is empty or already
  /// in a surface") and, when a corner is not a node of this surface,
  /// std::logic_error("Surface: a triangle or edge refers to a node of another surface").
  int add_triangle(THandle<SurfaceTriangle> triangle);
  /// Appends the edge from node a to node b; returns its index. Throws
  /// std::out_of_range("Surface::add_edge(int, int): node index out of range").
  int add_edge(int a, int b);
  /// Adopts an edge as add_triangle adopts a triangle ("Surface::add_edge(): edge is
  /// empty or already in a surface").
  int add_edge(THandle<SurfaceEdge> edge);

  int node_count() const noexcept { return static_cast<int>(positions_.size()); }
  int edge_count() const noexcept { return static_cast<int>(sides_.size()); }
  int triangle_count() const noexcept { return static_cast<int>(corners_.size()); }

  /// The handle of an element. Throw std::out_of_range("Surface::node(int): index out
  /// of range"), and likewise for edge and triangle.
  THandle<SurfaceNode> node(int index) const;
  THandle<SurfaceEdge> edge(int index) const;
  THandle<SurfaceTriangle> triangle(int index) const;

  /// Handles of every element, in order (each made on first asking).
  std::vector<THandle<SurfaceNode>> nodes() const;
  std::vector<THandle<SurfaceEdge>> edges() const;
  std::vector<THandle<SurfaceTriangle>> triangles() const;

  /// The arrays themselves: node positions and normals, triangle corners in winding
  /// order, edge ends as added.
  std::vector<Point> const& positions() const noexcept { return positions_; }
  /// The node normals (zero until set or computed).
  std::vector<Vector3D> const& normals() const;
  std::vector<std::array<int, 3>> const& triangle_indices() const noexcept { return corners_; }
  std::vector<std::array<int, 2>> const& edge_indices() const noexcept { return sides_; }

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
  friend class SurfaceNode;
  friend class SurfaceEdge;
  friend class SurfaceTriangle;

  int checked_node(SurfaceNode const& node) const;
  void detach_node(int index);
  void detach_triangle(int index);
  void detach_edge(int index);

  // The normals of nodes beyond the end of normals_ are zero: a new surface writes none.
  Vector3D& normal_of(int index);
  Vector3D normal_at(int index) const noexcept;

  std::vector<Point> positions_;
  mutable std::vector<Vector3D> normals_;
  std::vector<std::array<int, 3>> corners_;
  std::vector<std::array<int, 2>> sides_;
  // Handles handed out so far, by index (empty where none was asked for).
  mutable std::vector<THandle<SurfaceNode>> node_views_;
  mutable std::vector<THandle<SurfaceEdge>> edge_views_;
  mutable std::vector<THandle<SurfaceTriangle>> triangle_views_;
};

}  // namespace structmath
