// SPDX-License-Identifier: MIT
// MarchingContourer: iso-surface vertices per grid edge, then triangles per cell.
#include "structmath/grid/contourer.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <typeinfo>
#include <vector>

#include "structmath/core/text_conversion.hpp"
#include "structmath/grid/calculated_grid.hpp"
#include "structmath/grid/marching_cubes_tables.hpp"
#include "structmath/grid/normal_grid.hpp"
#include "structmath/grid/regular_grid.hpp"

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

/// The vertex between p1 (value f1) and p2 (value f2), as interpolate() documents it.
Point vertex_between(double level, double f1, double f2, Point const& p1, Point const& p2) {
  if (std::fabs(level - f1) < on_level) return p1;
  if (std::fabs(f1 - f2) < on_level) return p1;
  double const mu = (level - f1) / (f2 - f1);
  return Point(p1.x() + mu * (p2.x() - p1.x()), p1.y() + mu * (p2.y() - p1.y()),
               p1.z() + mu * (p2.z() - p1.z()));
}

/// Node positions: the library's own grids inline, any other grid through location().
class NodeLocations {
 public:
  explicit NodeLocations(Grid const& grid)
      : grid_(grid),
        regular_(typeid(grid) == typeid(NormalGrid) || typeid(grid) == typeid(CalculatedGrid)
                     ? static_cast<RegularGrid const*>(&grid)
                     : nullptr) {}
  Point operator()(int i, int j, int k) const {
    return regular_ ? regular_->RegularGrid::location(i, j, k) : grid_.location(i, j, k);
  }

 private:
  Grid const& grid_;
  RegularGrid const* regular_;
};

/// The edges made so far, as lists of the higher end per lower end: finds whether a node
/// pair is an edge by walking a list of a few entries, with no hashing.
class EdgeSet {
 public:
  void reserve(std::size_t nodes, std::size_t edges) {
    head_.reserve(nodes);
    entries_.reserve(edges);
  }
  /// Records edge (a, b) unless known; returns whether it was new.
  bool insert(int a, int b) {
    if (b < a) std::swap(a, b);
    auto const low = static_cast<std::size_t>(a);
    if (head_.size() <= low) head_.resize(low + 1, -1);
    for (int e = head_[low]; e >= 0; e = entries_[static_cast<std::size_t>(e)].next) {
      if (entries_[static_cast<std::size_t>(e)].high == b) return false;
    }
    entries_.push_back({b, head_[low]});
    head_[low] = static_cast<int>(entries_.size() - 1);
    return true;
  }

 private:
  struct Entry {
    int high;
    int next;
  };
  std::vector<int> head_;
  std::vector<Entry> entries_;
};

/// Appends a triangle and its sides that are not edges yet, in addtriangle()'s order.
void add_triangle_and_sides(Surface& s, EdgeSet& edges, int a, int b, int c) {
  s.add_triangle(a, b, c);
  if (edges.insert(a, b)) s.add_edge(a, b);
  if (edges.insert(b, c)) s.add_edge(b, c);
  if (edges.insert(a, c)) s.add_edge(a, c);
}

/// Appends a triangle and its sides not yet known as edges, as addtriangle() documents.
void add_triangle_and_sides(Surface& s, IndexMap& edges, int& edge_count, int a, int b, int c) {
  s.add_triangle(a, b, c);
  int const pairs[3][2] = {{a, b}, {b, c}, {a, c}};
  for (auto const& p : pairs) {
    std::uint64_t const key = MarchingContourer::edge_key(p[0], p[1]);
    if (edges.find(key) >= 0) continue;
    s.add_edge(p[0], p[1]);
    edges.insert(key, edge_count);
    ++edge_count;
  }
}

/// Per node, as bits along each row (i, j) of the grid: whether its value lies clearly
/// above the level (by at least the on-level distance), clearly below it, and below it
/// at all. A node whose seven higher neighbours lie clearly on its own side cannot make a
/// vertex, and a cell whose eight corners are all below (or all not below) is not cut:
/// whole words of them are passed over. NaN is in none of the first two classes.
class NodeClasses {
 public:
  using Word = std::uint64_t;

  NodeClasses(NodeValues const& value, double level, int nx, int ny, int nz)
      : ny_(ny),
        nz_(nz),
        words_((nz + 63) / 64),
        size_(static_cast<std::size_t>(nx) * static_cast<std::size_t>(ny) *
              static_cast<std::size_t>(words_)),
        above_(size_, 0),
        below_far_(size_, 0),
        below_(size_, 0) {
    for (int i = 0; i < nx; ++i) {
      for (int j = 0; j < ny; ++j) {
        std::size_t const first = value.index(i, j, 0);
        Word* above = row(above_, i, j);
        Word* far = row(below_far_, i, j);
        Word* below = row(below_, i, j);
        for (int k = 0; k < nz; ++k) {
          double const f = value[first + static_cast<std::size_t>(k)];
          bool const off_level = !(std::fabs(level - f) < on_level);
          Word const bit = Word{1} << (k & 63);
          std::size_t const w = static_cast<std::size_t>(k >> 6);
          if (f > level && off_level) above[w] |= bit;
          if (f < level && off_level) far[w] |= bit;
          if (f < level) below[w] |= bit;
        }
      }
    }
    scratch_.assign(static_cast<std::size_t>(words_), 0);
  }

  int words() const noexcept { return words_; }

  /// The nodes of row (i, j) that may make a vertex: all but those whose existing
  /// neighbours (+x, +y, +z and the diagonals) share their clear side.
  void possible_vertices(int i, int j, bool has_x, bool has_y, Word* out) const {
    quiet_nodes(above_, i, j, has_x, has_y, out);
    std::vector<Word>& quiet = scratch_;
    quiet_nodes(below_far_, i, j, has_x, has_y, quiet.data());
    for (int w = 0; w < words_; ++w) out[w] = ~(out[w] | quiet[static_cast<std::size_t>(w)]);
    trim(out, nz_);
  }

  /// The cells (i, j, k), k < nz - 1, whose corners are not all on one side.
  void cut_cells(int i, int j, Word* out) const {
    for (int w = 0; w < words_; ++w) {
      Word all = ~Word{0};
      Word nothing = ~Word{0};
      for (int a = 0; a <= 1; ++a) {
        for (int b = 0; b <= 1; ++b) {
          Word const* r = row(below_, i + a, j + b);
          Word const here = r[w];
          Word const next = shifted(r, w);
          all &= here & next;
          nothing &= ~here & ~next;
        }
      }
      out[w] = ~(all | nothing);
    }
    trim(out, nz_ - 1);
  }

 private:
  Word* row(std::vector<Word>& bits, int i, int j) {
    return bits.data() + (static_cast<std::size_t>(i) * static_cast<std::size_t>(ny_) +
                          static_cast<std::size_t>(j)) *
                             static_cast<std::size_t>(words_);
  }
  Word const* row(std::vector<Word> const& bits, int i, int j) const {
    return bits.data() + (static_cast<std::size_t>(i) * static_cast<std::size_t>(ny_) +
                          static_cast<std::size_t>(j)) *
                             static_cast<std::size_t>(words_);
  }
  // Bits of k + 1 at position k; past the row's end the bits are set (no neighbour).
  Word shifted(Word const* r, int w) const {
    Word const carry = w + 1 < words_ ? r[w + 1] << 63 : Word{1} << 63;
    Word result = (r[w] >> 1) | carry;
    if (w == (nz_ - 1) >> 6) result |= ~Word{0} << ((nz_ - 1) & 63);  // k + 1 = nz and on
    return result;
  }
  // Nodes of row (i, j) in `cls` whose existing higher neighbours are all in it too.
  void quiet_nodes(std::vector<Word> const& cls, int i, int j, bool has_x, bool has_y,
                   Word* out) const {
    for (int w = 0; w < words_; ++w) {
      Word q = ~Word{0};
      for (int a = 0; a <= (has_x ? 1 : 0); ++a) {
        for (int b = 0; b <= (has_y ? 1 : 0); ++b) {
          Word const* r = row(cls, i + a, j + b);
          q &= shifted(r, w);
          if (a != 0 || b != 0) q &= r[w];
        }
      }
      out[w] = q & row(cls, i, j)[w];
    }
  }
  // Clears the bits from `count` on.
  void trim(Word* bits, int count) const {
    for (int w = 0; w < words_; ++w) {
      int const first = w * 64;
      if (first >= count) {
        bits[w] = 0;
      } else if (count - first < 64) {
        bits[w] &= (Word{1} << (count - first)) - 1;
      }
    }
  }

  int ny_, nz_, words_;
  std::size_t size_;
  std::vector<Word> above_, below_far_, below_;
  mutable std::vector<Word> scratch_;
};

/// The first set bit at or after `from`, or -1.
int next_set(std::vector<std::uint64_t> const& bits, int from) {
  std::size_t w = static_cast<std::size_t>(from >> 6);
  if (w >= bits.size()) return -1;
  std::uint64_t word = bits[w] & (~std::uint64_t{0} << (from & 63));
  for (;;) {
    if (word != 0) return static_cast<int>(w * 64) + __builtin_ctzll(word);
    if (++w >= bits.size()) return -1;
    word = bits[w];
  }
}

/// The vertices of two consecutive slabs i of the grid: per node and direction code the
/// surface node made on that grid edge (or, with code 0, the node on the level), -1 for
/// none. Only the entries set are cleared when a slab is reused.
class SlabVertices {
 public:
  SlabVertices(int ny, int nz)
      : nz_(nz), cells_(7 * static_cast<std::size_t>(ny) * static_cast<std::size_t>(nz)) {
    for (auto& slab : slab_) slab.assign(cells_, -1);
  }
  void start(int i) {
    int const s = i & 1;
    for (std::size_t at : set_[s]) slab_[s][at] = -1;
    set_[s].clear();
  }
  void put(int i, int j, int k, int d, int node) {
    std::size_t const at = slot(j, k, d);
    slab_[i & 1][at] = node;
    set_[i & 1].push_back(at);
  }
  int get(int i, int j, int k, int d) const { return slab_[i & 1][slot(j, k, d)]; }

 private:
  std::size_t slot(int j, int k, int d) const {
    return (static_cast<std::size_t>(j) * static_cast<std::size_t>(nz_) +
            static_cast<std::size_t>(k)) *
               7 +
           static_cast<std::size_t>(d);
  }
  int nz_;
  std::size_t cells_;
  std::vector<int> slab_[2];
  std::vector<std::size_t> set_[2];
};

}  // namespace

MarchingContourer::MarchingContourer(bool use_tetrahedra) : use_tetrahedra_(use_tetrahedra) {}

MarchingContourer::MarchingContourer(THandle<Grid> grid, bool use_tetrahedra)
    : grid_(std::move(grid)), use_tetrahedra_(use_tetrahedra) {}

void MarchingContourer::set_grid(THandle<Grid> grid) { grid_ = std::move(grid); }

THandle<SurfaceNode> MarchingContourer::interpolate(double level, double f1, double f2,
                                                    Point const& p1, Point const& p2) const {
  return make_handle<SurfaceNode>(vertex_between(level, f1, f2, p1, p2));
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
  add_triangle_and_sides(*surface, edges, edge_count, a, b, c);
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
  NodeLocations const location(grid);
  NodeClasses const classes(value, level, nx, ny, nz);
  int const words = classes.words();
  std::vector<std::uint64_t> bits(static_cast<std::size_t>(words));
  auto surface = make_handle<Surface>();
  Surface& s = *surface;
  // A row of cells crossed by a smooth surface holds a few vertices and twice as many
  // triangles; room for that saves regrowing the arrays.
  std::size_t cells_cut = 0;
  for (int i = 0; i + 1 < nx; ++i) {
    for (int j = 0; j + 1 < ny; ++j) {
      classes.cut_cells(i, j, bits.data());
      for (std::uint64_t w : bits) cells_cut += static_cast<std::size_t>(__builtin_popcountll(w));
    }
  }
  // A cut cell of a smooth surface brings about three nodes, two triangles and three
  // edges by cubes, six triangles and nine edges by tetrahedra.
  std::size_t const per_cell = use_tetrahedra_ ? 3 : 1;
  std::size_t const expected_nodes = std::min<std::size_t>(3 * cells_cut + 64, 1U << 26);
  std::size_t const expected_triangles = 2 * per_cell * cells_cut + 64;
  std::size_t const expected_edges = 3 * per_cell * cells_cut + 64;
  s.reserve(static_cast<int>(expected_nodes),
            static_cast<int>(std::min<std::size_t>(expected_triangles, 1U << 27)),
            static_cast<int>(std::min<std::size_t>(expected_edges, 1U << 27)));

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
  std::size_t corner_stride[8];
  for (int n = 0; n < 8; ++n) {
    int const* o = marching_cubes_corner_offset[n];
    corner_stride[n] = value.index(o[0], o[1], o[2]);
  }

  // Phase 1 makes the vertices of slab i (one node per straddling grid edge, or per grid
  // node on the level); phase 2 then makes the triangles of the cells between slabs i - 1
  // and i, whose vertices all exist by then. Nodes, triangles and edges come in the order
  // of two passes over the whole grid, since each phase keeps its own order.
  SlabVertices cuts(ny, nz);
  int node_count = 0;
  auto vertices_of_slab = [&](int i) {
    cuts.start(i);
    for (int j = 0; j < ny; ++j) {
      classes.possible_vertices(i, j, i + 1 < nx, j + 1 < ny, bits.data());
      for (int k = next_set(bits, 0); k >= 0; k = next_set(bits, k + 1)) {
        std::size_t const at = value.index(i, j, k);
        double const f = value[at];
        if (std::fabs(level - f) < on_level) {
          s.add_node(location(i, j, k));
          cuts.put(i, j, k, 0, node_count++);
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
            p = location(i, j, k);
            have_p = true;
          }
          int const* o = direction_offset[d];
          s.add_node(vertex_between(level, f, f2, p, location(i + o[0], j + o[1], k + o[2])));
          cuts.put(i, j, k, d, node_count++);
        }
      }
    }
  };
  // The surface node of a grid edge, in getnode()'s order of trials.
  auto node_of = [&](int i, int j, int k, int d) {
    int node = cuts.get(i, j, k, d);
    if (node >= 0) return node;
    node = cuts.get(i, j, k, 0);
    if (node >= 0) return node;
    int const* o = direction_offset[d];
    node = cuts.get(i + o[0], j + o[1], k + o[2], 0);
    if (node >= 0) return node;
    throw std::runtime_error("Surface Index Error");
  };
  EdgeSet edges;
  edges.reserve(expected_nodes, std::min<std::size_t>(expected_edges, 1U << 27));
  auto triangles_of_slab = [&](int i) {
    for (int j = 0; j + 1 < ny; ++j) {
      classes.cut_cells(i, j, bits.data());
      for (int k = next_set(bits, 0); k >= 0; k = next_set(bits, k + 1)) {
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
            vertex[e] = node_of(i + ce.di, j + ce.dj, k + ce.dk, ce.direction);
          }
          std::int8_t const* row = marching_cubes_triangle_table[index];
          for (int t = 0; row[t] >= 0; t += 3) {
            add_triangle_and_sides(s, edges, vertex[row[t]], vertex[row[t + 1]],
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
          auto corner_node = [&](int e) {
            CellEdge const& ce = cell_edge[tetrahedron[t].edge[e]];
            return node_of(i + ce.di, j + ce.dj, k + ce.dk, ce.direction);
          };
          for (int r = 0; row[r] >= 0; r += 3) {
            int const a = corner_node(row[r]);
            int const b = corner_node(row[r + 1]);
            int const c2 = corner_node(row[r + 2]);
            add_triangle_and_sides(s, edges, a, b, c2);
          }
        }
      }
    }
  };
  for (int i = 0; i < nx; ++i) {
    vertices_of_slab(i);
    if (i > 0) triangles_of_slab(i - 1);
  }
  return surface;
}

}  // namespace structmath
