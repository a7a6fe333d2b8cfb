// SPDX-License-Identifier: MIT
// MarchingContourer: iso-surface vertices per grid edge, then triangles per cell.
#include "structmath/grid/contourer.hpp"

#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <typeinfo>
#include <vector>

#include "structmath/core/text_conversion.hpp"
#include "structmath/grid/marching_cubes_tables.hpp"
#include "structmath/grid/normal_grid.hpp"

namespace structmath {

Contourer::~Contourer() = default;

namespace {

/// A node within this distance of the level lies on the surface.
constexpr double on_level = 1e-6;

/// Offsets of the neighbour in each direction code: +x, +y, +z, +x+y, +x+z, +y+z, +x+y+z.
constexpr int direction_offset[7][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 0},
                                        {1, 0, 1}, {0, 1, 1}, {1, 1, 1}};

/// The grid edges touching a cell: start offset (di, dj, dk) and direction code. Rows 0
/// to 11 are the cube edges of the case tables, 12 to 18 the diagonals of the tetrahedra.
struct CellEdge {
  int di, dj, dk, direction;
};
constexpr CellEdge cell_edge[19] = {{0, 0, 0, 0}, {1, 0, 0, 2}, {0, 0, 1, 0}, {0, 0, 0, 2},
                                    {0, 1, 0, 0}, {1, 1, 0, 2}, {0, 1, 1, 0}, {0, 1, 0, 2},
                                    {0, 0, 0, 1}, {1, 0, 0, 1}, {1, 0, 1, 1}, {0, 0, 1, 1},
                                    {0, 0, 0, 3}, {0, 0, 0, 4}, {0, 0, 0, 5}, {0, 0, 0, 6},
                                    {1, 0, 0, 5}, {0, 1, 0, 4}, {0, 0, 1, 3}};

/// The six tetrahedra (corner 0, A, B, corner 6) of a cell: the cell corners A and B,
/// and their edges c0c1, c0c2, c0c3, c1c2, c1c3, c2c3 as cell edges.
struct Tetrahedron {
  int a, b;
  int edge[6];
};
constexpr Tetrahedron tetrahedron[6] = {
    {1, 2, {0, 13, 15, 1, 16, 10}}, {3, 2, {3, 13, 15, 2, 18, 10}}, {3, 7, {3, 14, 15, 11, 18, 6}},
    {4, 7, {8, 14, 15, 7, 17, 6}},  {4, 5, {8, 12, 15, 4, 17, 5}},  {1, 5, {0, 12, 15, 9, 16, 5}}};

/// Triangles of a tetrahedron case as tetrahedron edge numbers, -1 ended. A case and its
/// complement 15 - n share a row: the same triangles with the same winding.
constexpr int tetrahedron_triangles[8][7] = {
    {-1, -1, -1, -1, -1, -1, -1}, {0, 1, 2, -1, -1, -1, -1}, {0, 4, 3, -1, -1, -1, -1},
    {2, 1, 4, 4, 3, 1, -1},       {1, 3, 5, -1, -1, -1, -1}, {0, 5, 2, 0, 3, 5, -1},
    {0, 4, 5, 0, 1, 5, -1},       {2, 5, 4, -1, -1, -1, -1}};

/// The grid's node values, k fastest: a NormalGrid's own array, or else every node read
/// once (a calculated grid computes each value only once this way).
class NodeValues {
 public:
  NodeValues(Grid const& grid, int nx, int ny, int nz)
      : ny_(static_cast<std::size_t>(ny)), nz_(static_cast<std::size_t>(nz)) {
    if (typeid(grid) == typeid(NormalGrid)) {
      data_ = static_cast<NormalGrid const&>(grid).values().data();
      return;
    }
    owned_.reserve(static_cast<std::size_t>(nx) * ny_ * nz_);
    for (int i = 0; i < nx; ++i) {
      for (int j = 0; j < ny; ++j) {
        for (int k = 0; k < nz; ++k) owned_.push_back(grid.value(i, j, k));
      }
    }
    data_ = owned_.data();
  }
  std::size_t index(int i, int j, int k) const noexcept {
    return (static_cast<std::size_t>(i) * ny_ + static_cast<std::size_t>(j)) * nz_ +
           static_cast<std::size_t>(k);
  }
  double operator[](std::size_t index) const noexcept { return data_[index]; }
  double operator()(int i, int j, int k) const noexcept { return data_[index(i, j, k)]; }

 private:
  std::size_t ny_;
  std::size_t nz_;
  double const* data_ = nullptr;
  std::vector<double> owned_;
};

}  // namespace

MarchingContourer::MarchingContourer(bool use_tetrahedra) : use_tetrahedra_(use_tetrahedra) {}

MarchingContourer::MarchingContourer(THandle<Grid> grid, bool use_tetrahedra)
    : grid_(std::move(grid)), use_tetrahedra_(use_tetrahedra) {}

void MarchingContourer::set_grid(THandle<Grid> grid) { grid_ = std::move(grid); }

THandle<SurfaceNode> MarchingContourer::interpolate(double level, double f1, double f2,
                                                    Point const& p1, Point const& p2) const {
  if (std::fabs(level - f1) < on_level) return make_handle<SurfaceNode>(p1);
  if (std::fabs(f1 - f2) < on_level) return make_handle<SurfaceNode>(p1);
  double const mu = (level - f1) / (f2 - f1);
  return make_handle<SurfaceNode>(Point(p1.x() + mu * (p2.x() - p1.x()),
                                        p1.y() + mu * (p2.y() - p1.y()),
                                        p1.z() + mu * (p2.z() - p1.z())));
}

std::string MarchingContourer::getcutkey(int i, int j, int k, int d) const {
  return to_string(i) + "|" + to_string(j) + "|" + to_string(k) + "|" + to_string(d);
}

std::string MarchingContourer::getedgekey(int a, int b) const {
  return a < b ? to_string(a) + "|" + to_string(b) : to_string(b) + "|" + to_string(a);
}

std::uint64_t MarchingContourer::cut_key(int i, int j, int k, int d) noexcept {
  return (((std::uint64_t(static_cast<std::uint32_t>(i)) << 42) |
           (std::uint64_t(static_cast<std::uint32_t>(j)) << 21) |
           std::uint64_t(static_cast<std::uint32_t>(k)))
          << 3) |
         std::uint64_t(static_cast<std::uint32_t>(d));
}

std::uint64_t MarchingContourer::edge_key(int a, int b) noexcept {
  if (b < a) std::swap(a, b);
  return (std::uint64_t(static_cast<std::uint32_t>(a)) << 32) |
         std::uint64_t(static_cast<std::uint32_t>(b));
}

int MarchingContourer::getnode(IndexMap const& cuts, int i, int j, int k, int d) const {
  int node = cuts.find(cut_key(i, j, k, d));
  if (node >= 0) return node;
  node = cuts.find(cut_key(i, j, k, 0));
  if (node >= 0) return node;
  int const* o = direction_offset[d];
  node = cuts.find(cut_key(i + o[0], j + o[1], k + o[2], 0));
  if (node >= 0) return node;
  throw std::runtime_error("Surface Index Error");
}

int MarchingContourer::tetragetnode(IndexMap const& cuts, int i, int j, int k, int t, int e) const {
  CellEdge const& ce = cell_edge[tetrahedron[t].edge[e]];
  return getnode(cuts, i + ce.di, j + ce.dj, k + ce.dk, ce.direction);
}

void MarchingContourer::addtriangle(THandle<Surface>& surface, IndexMap& edges, int& edge_count,
                                    int a, int b, int c) const {
  Surface& s = *surface;
  s.add_triangle(make_handle<SurfaceTriangle>(s.node(a), s.node(b), s.node(c)));
  int const pairs[3][2] = {{a, b}, {b, c}, {a, c}};
  for (auto const& p : pairs) {
    if (edges.find(edge_key(p[0], p[1])) >= 0) continue;
    s.add_edge(make_handle<SurfaceEdge>(s.node(p[0]), s.node(p[1])));
    edges.insert(edge_key(p[0], p[1]), edge_count);
    ++edge_count;
  }
}

THandle<Surface> MarchingContourer::surface(double level) const {
  Grid const& grid = *grid_;
  int const nx = grid.x_steps();
  int const ny = grid.y_steps();
  int const nz = grid.z_steps();
  // The vertex keys give each node index 21 bits.
  int const largest = 1 << 21;
  if (nx >= largest || ny >= largest || nz >= largest)
    throw std::invalid_argument("MarchingContourer::surface(): grid too large to contour");
  NodeValues const value(grid, nx, ny, nz);
  auto surface = make_handle<Surface>();

  // Phase 1: one node per straddling grid edge, or per grid node on the level.
  IndexMap cuts(2 * static_cast<std::size_t>(nx * ny + ny * nz + nz * nx));
  int node_count = 0;
  // For each combination of "has a +x / +y / +z neighbour", the directions that exist;
  // and the distance of each neighbour in the value array.
  unsigned int neighbours[8];
  for (unsigned int axes = 0; axes < 8; ++axes) {
    neighbours[axes] = 0;
    for (unsigned int d = 0; d < 7; ++d) {
      int const* o = direction_offset[d];
      if ((o[0] && !(axes & 1)) || (o[1] && !(axes & 2)) || (o[2] && !(axes & 4))) continue;
      neighbours[axes] |= 1u << d;
    }
  }
  std::size_t stride[7];
  for (int d = 0; d < 7; ++d) {
    int const* o = direction_offset[d];
    stride[d] = value.index(o[0], o[1], o[2]);
  }
  for (int i = 0; i < nx; ++i) {
    for (int j = 0; j < ny; ++j) {
      for (int k = 0; k < nz; ++k) {
        std::size_t const at = value.index(i, j, k);
        double const f = value[at];
        if (std::fabs(level - f) < on_level) {
          surface->add_node(make_handle<SurfaceNode>(grid.location(i, j, k)));
          cuts.insert(cut_key(i, j, k, 0), node_count++);
          continue;
        }
        bool const above = f > level;
        unsigned int const directions =
            neighbours[(i + 1 < nx ? 1 : 0) | (j + 1 < ny ? 2 : 0) | (k + 1 < nz ? 4 : 0)];
        bool have_p = false;
        Point p;
        for (int d = 0; d < 7; ++d) {
          if (!(directions & (1u << d))) continue;
          double const f2 = value[at + stride[d]];
          bool const straddles = above ? f2 <= level : f2 >= level;
          if (!straddles) continue;
          // A far end on the level is a vertex of its own (made when it is visited).
          if (!(std::fabs(level - f) <= on_level || std::fabs(level - f2) >= on_level)) continue;
          if (!have_p) {
            p = grid.location(i, j, k);
            have_p = true;
          }
          int const* o = direction_offset[d];
          surface->add_node(
              interpolate(level, f, f2, p, grid.location(i + o[0], j + o[1], k + o[2])));
          cuts.insert(cut_key(i, j, k, d), node_count++);
        }
      }
    }
  }

  // Phase 2: triangles per cell, sharing the vertices of phase 1 and the edges.
  IndexMap edges(3 * static_cast<std::size_t>(node_count));
  int edge_count = 0;
  std::size_t corner_stride[8];
  for (int n = 0; n < 8; ++n) {
    int const* o = marching_cubes_corner_offset[n];
    corner_stride[n] = value.index(o[0], o[1], o[2]);
  }
  for (int i = 0; i + 1 < nx; ++i) {
    for (int j = 0; j + 1 < ny; ++j) {
      for (int k = 0; k + 1 < nz; ++k) {
        std::size_t const at = value.index(i, j, k);
        double corner[8];
        for (int n = 0; n < 8; ++n) corner[n] = value[at + corner_stride[n]];
        unsigned int index = 0;
        for (unsigned int n = 0; n < 8; ++n) {
          if (corner[n] < level) index |= 1u << n;
        }
        // All corners on one side: no tetrahedron is cut either.
        if (index == 0 || index == 255) continue;
        if (!use_tetrahedra_) {
          unsigned int const mask = marching_cubes_edge_table[index];
          int vertex[12] = {};
          for (unsigned int e = 0; e < 12; ++e) {
            if (!(mask & (1u << e))) continue;
            CellEdge const& ce = cell_edge[e];
            vertex[e] = getnode(cuts, i + ce.di, j + ce.dj, k + ce.dk, ce.direction);
          }
          std::int8_t const* row = marching_cubes_triangle_table[index];
          for (int t = 0; row[t] >= 0; t += 3) {
            addtriangle(surface, edges, edge_count, vertex[row[t]], vertex[row[t + 1]],
                        vertex[row[t + 2]]);
          }
          continue;
        }
        for (int t = 0; t < 6; ++t) {
          double const c[4] = {corner[0], corner[tetrahedron[t].a], corner[tetrahedron[t].b],
                               corner[6]};
          unsigned int tetrahedron_case = 0;
          for (unsigned int n = 0; n < 4; ++n) {
            if (c[n] < level) tetrahedron_case |= 1u << n;
          }
          int const* row = tetrahedron_triangles[tetrahedron_case < 8 ? tetrahedron_case
                                                                      : 15 - tetrahedron_case];
          for (int r = 0; row[r] >= 0; r += 3) {
            addtriangle(surface, edges, edge_count, tetragetnode(cuts, i, j, k, t, row[r]),
                        tetragetnode(cuts, i, j, k, t, row[r + 1]),
                        tetragetnode(cuts, i, j, k, t, row[r + 2]));
          }
        }
      }
    }
  }
  return surface;
}

}  // namespace structmath
