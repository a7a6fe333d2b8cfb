// SPDX-License-Identifier: MIT
// Contourer and MarchingContourer: iso-surfaces of a grid as triangulated surfaces.
#pragma once

#include <cstdint>
#include <string>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/grid/grid.hpp"
#include "structmath/grid/index_map.hpp"
#include "structmath/grid/surface.hpp"
#include "structmath/numeric/point.hpp"

namespace structmath {

/// Turns a grid into the triangulated surface where the grid's value equals a level.
class STRUCTMATH_API Contourer {
 public:
  virtual ~Contourer();
  /// A new surface at the level; the contourer keeps no reference to it.
  virtual THandle<Surface> surface(double level) const = 0;
  virtual void set_grid(THandle<Grid> grid) = 0;
};

/// Marching cubes (W. E. Lorensen and H. E. Cline, "Marching cubes: a high resolution 3D
/// surface construction algorithm", SIGGRAPH 1987) or, as a variant, marching
/// tetrahedra with six tetrahedra per cell around its main diagonal.
///
/// surface(level) works in two passes over the grid:
/// 1. Vertices. Nodes are visited with i outermost and k innermost. A node within 1e-6
///    of the level becomes a surface node itself. Otherwise each of the seven grid edges
///    leaving it towards higher indices (+x, +y, +z, the three face diagonals +x+y,
///    +x+z, +y+z and the main diagonal; direction codes 0 to 6) whose far end lies on
///    the other side of the level, and not within 1e-6 of it, gets one node placed by
///    linear interpolation. Nodes are numbered in creation order.
/// 2. Triangles. Cells are visited in the same order. The cube variant classifies the
///    eight corners (below the level, strictly, or not) and emits the triangles of the
///    classical 256-case table; the tetrahedra variant classifies the four corners of
///    each of the six tetrahedra and emits at most two triangles each. Every triangle
///    adds its sides (a, b), (b, c), (a, c) as edges when first seen.
/// Vertices are shared by every triangle on their grid edge. Triangles come in table
/// order with no regard to which side is above the level: Surface::orient_triangles
/// makes the winding consistent. Degenerate triangles (from nodes on the level) are kept.
///
/// Cost: one pass classifying every node (clearly above, clearly below, below) into bit
/// rows, then work only where the surface is: whole words of nodes whose neighbours share
/// their side and of cells whose corners do are passed over at once. The passes run slab
/// by slab (phase 1 for slab i, then phase 2 for the cells below it), which keeps the
/// vertex lookup to two dense slabs; the order of nodes, triangles and edges is that of
/// the two passes above. The surface is built in its arrays, with no allocation per
/// element. Each node value is read in place for a NormalGrid (any other grid into a
/// copy of one double per node) and node positions are computed inline for the
/// library's own grids. The cube variant also makes the diagonal vertices but does not
/// use them: Surface::remove_unused_nodes drops them.
class STRUCTMATH_API MarchingContourer : public Contourer {
 public:
  /// With no grid yet: surface() then fails on the empty handle.
  explicit MarchingContourer(bool use_tetrahedra);
  MarchingContourer(THandle<Grid> grid, bool use_tetrahedra);

  /// Throws std::runtime_error("Surface Index Error") when a triangle needs a vertex
  /// that phase 1 did not make, and std::invalid_argument for a grid with 2^21 or more
  /// nodes along an axis; errors of the grid propagate.
  THandle<Surface> surface(double level) const override;
  void set_grid(THandle<Grid> grid) override;
  THandle<Grid> grid() const { return grid_; }
  bool use_tetrahedra() const noexcept { return use_tetrahedra_; }

  /// The vertex on the grid edge from p1 (value f1) to p2 (value f2): p1 when f1 is
  /// within 1e-6 of the level or f1 and f2 are within 1e-6 of each other, else
  /// p1 + (level - f1) / (f2 - f1) * (p2 - p1). No test for level near f2: phase 1 makes
  /// such an end a vertex itself.
  THandle<SurfaceNode> interpolate(double level, double f1, double f2, Point const& p1,
                                   Point const& p2) const;

  /// "i|j|k|d" in decimal: names the vertex on the grid edge from node (i, j, k) in
  /// direction d, or with d = 0 also a node lying on the level.
  std::string getcutkey(int i, int j, int k, int d) const;
  /// "a|b" with the smaller surface node index first.
  std::string getedgekey(int a, int b) const;
  /// The hashed forms of the two keys, as stored in the maps below. Node indices must
  /// be below 2^21 along each axis.
  static std::uint64_t cut_key(int i, int j, int k, int d) noexcept;
  static std::uint64_t edge_key(int a, int b) noexcept;

  /// The surface node of a grid edge, trying in order the cut on the edge, the start
  /// node on the level (key (i, j, k, 0)), and the end node on the level. Since key
  /// (i, j, k, 0) is also the cut on the +x edge, the second try can return that cut:
  /// kept, as the triangles' vertex indices depend on this order. Throws
  /// std::runtime_error("Surface Index Error") when none is found.
  int getnode(IndexMap const& cuts, int i, int j, int k, int d) const;
  /// getnode for edge e (0 to 5) of tetrahedron t (0 to 5) of cell (i, j, k).
  int tetragetnode(IndexMap const& cuts, int i, int j, int k, int t, int e) const;
  /// Appends triangle (a, b, c), then each of its sides (a, b), (b, c), (a, c) that
  /// edges does not know yet, as SurfaceEdge(node(first), node(second)) numbered by
  /// edge_count.
  void addtriangle(THandle<Surface>& surface, IndexMap& edges, int& edge_count, int a, int b,
                   int c) const;

 private:
  THandle<Grid> grid_;
  bool use_tetrahedra_;
};

}  // namespace structmath
