// SPDX-License-Identifier: MIT
// SurfaceArray3D: a reference-counted three-dimensional array in one contiguous block.
#pragma once

#include <cstddef>
#include <stdexcept>

namespace structmath {

/// An nx x ny x nz array in one contiguous block, k varying fastest: element (i, j, k)
/// sits at (i * ny + j) * nz + k. An index of row pointers lets a[i][j][k] reach an
/// element through three subscripts. Copies share the block (reference counted); no
/// subscript is bounds-checked.
template <typename T>
class SurfaceArray3D {
 public:
  /// An empty array (all dimensions 0).
  SurfaceArray3D() noexcept = default;

  /// Allocates nx * ny * nz elements, each set to fill. Throws std::invalid_argument for
  /// a negative dimension.
  SurfaceArray3D(int nx, int ny, int nz, T const& fill) {
    if (nx < 0 || ny < 0 || nz < 0)
      throw std::invalid_argument("SurfaceArray3D: dimensions must not be negative");
    T* block = new T[element_count(nx, ny, nz)];
    try {
      initialize_(block, nx, ny, nz);
    } catch (...) {
      delete[] block;
      throw;
    }
    set_(fill);
  }

  SurfaceArray3D(SurfaceArray3D const& other) noexcept { share(other); }
  SurfaceArray3D& operator=(SurfaceArray3D const& other) noexcept {
    if (this != &other && block_ != other.block_) {
      release();
      share(other);
    }
    return *this;
  }
  ~SurfaceArray3D() { release(); }

  int nx() const noexcept { return nx_; }
  int ny() const noexcept { return ny_; }
  int nz() const noexcept { return nz_; }
  std::size_t size() const noexcept { return element_count(nx_, ny_, nz_); }
  /// Number of arrays sharing the block; 0 for an empty array.
  int use_count() const noexcept { return count_ ? *count_ : 0; }

  /// The plane i: a[i][j] is the row (i, j), a[i][j][k] the element.
  T* const* operator[](int i) const noexcept { return planes_[i]; }
  /// Element (i, j, k) by direct offset.
  T& operator()(int i, int j, int k) const noexcept {
    return block_[(static_cast<std::size_t>(i) * static_cast<std::size_t>(ny_) +
                   static_cast<std::size_t>(j)) *
                      static_cast<std::size_t>(nz_) +
                  static_cast<std::size_t>(k)];
  }
  /// The contiguous block, k fastest.
  T* data() const noexcept { return block_; }

  /// Sets every element (in every copy sharing the block) to value.
  void set_(T const& value) {
    std::size_t const n = size();
    for (std::size_t e = 0; e < n; ++e) block_[e] = value;
  }

  /// Takes ownership of `block` (nx * ny * nz elements allocated with new T[]) and
  /// builds the row index over it, after letting go of the block this array held. If it
  /// throws (out of memory), the block stays the caller's.
  void initialize_(T* block, int nx, int ny, int nz) {
    release();
    std::size_t const ni = static_cast<std::size_t>(nx);
    std::size_t const nj = static_cast<std::size_t>(ny);
    std::size_t const nk = static_cast<std::size_t>(nz);
    T** rows = new T*[ni * nj];
    T*** planes = nullptr;
    int* count = nullptr;
    try {
      planes = new T**[ni];
      count = new int(1);
    } catch (...) {
      delete[] planes;
      delete[] rows;
      throw;
    }
    for (std::size_t i = 0; i < ni; ++i) {
      planes[i] = rows + i * nj;
      for (std::size_t j = 0; j < nj; ++j) rows[i * nj + j] = block + (i * nj + j) * nk;
    }
    count_ = count;
    nx_ = nx;
    ny_ = ny;
    nz_ = nz;
    block_ = block;
    rows_ = rows;
    planes_ = planes;
  }

  /// Lets go of the block: this array becomes empty, and the block and its index are
  /// freed when no other copy shares them.
  void destroy_() noexcept { release(); }

 private:
  static std::size_t element_count(int nx, int ny, int nz) noexcept {
    return static_cast<std::size_t>(nx) * static_cast<std::size_t>(ny) *
           static_cast<std::size_t>(nz);
  }

  // Frees the block and its index.
  void free_block() noexcept {
    delete[] planes_;
    delete[] rows_;
    delete[] block_;
    delete count_;
    count_ = nullptr;
    planes_ = nullptr;
    rows_ = nullptr;
    block_ = nullptr;
    nx_ = ny_ = nz_ = 0;
  }

  void share(SurfaceArray3D const& other) noexcept {
    count_ = other.count_;
    nx_ = other.nx_;
    ny_ = other.ny_;
    nz_ = other.nz_;
    block_ = other.block_;
    rows_ = other.rows_;
    planes_ = other.planes_;
    if (count_) ++*count_;
  }

  void release() noexcept {
    if (count_ && --*count_ == 0) {
      free_block();
    } else {
      count_ = nullptr;
      planes_ = nullptr;
      rows_ = nullptr;
      block_ = nullptr;
      nx_ = ny_ = nz_ = 0;
    }
  }

  int* count_ = nullptr;
  int nx_ = 0;
  int ny_ = 0;
  int nz_ = 0;
  T* block_ = nullptr;
  T** rows_ = nullptr;
  T*** planes_ = nullptr;
};

}  // namespace structmath
