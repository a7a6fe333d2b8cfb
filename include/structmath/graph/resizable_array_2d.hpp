// SPDX-License-Identifier: MIT
// ResizableArray2D: a row-major two-dimensional array with contiguous storage.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <utility>

namespace structmath {

/// A rows x columns array of T stored row by row in one contiguous block.
///
/// Indices count from 0. `element` checks its indices and throws
/// std::invalid_argument; `operator[]` yields a pointer to the start of a row and
/// does not check, so `a[row][col]` is the fast unchecked access. Unlike
/// std::vector<bool>, a ResizableArray2D<bool> holds real bools, so references
/// to elements and `data()` work for every T.
template <class T>
class ResizableArray2D {
 public:
  using value_type = T;

  ResizableArray2D() = default;
  /// A nrows x ncols array with every element set to `value`.
  ResizableArray2D(int nrows, int ncols, T const& value = T()) { assign(nrows, ncols, value); }

  ResizableArray2D(ResizableArray2D const& other) : ResizableArray2D() { copy_from(other); }
  ResizableArray2D(ResizableArray2D&& other) noexcept { swap(other); }
  ResizableArray2D& operator=(ResizableArray2D const& other) {
    if (this != &other) copy_from(other);
    return *this;
  }
  ResizableArray2D& operator=(ResizableArray2D&& other) noexcept {
    ResizableArray2D moved(std::move(other));
    swap(moved);
    return *this;
  }
  ~ResizableArray2D() = default;

  int nrows() const noexcept { return nrows_; }
  int ncols() const noexcept { return ncols_; }
  /// Number of elements, nrows() * ncols().
  std::size_t size() const noexcept { return count(nrows_, ncols_); }
  bool empty() const noexcept { return size() == 0; }

  /// Element access with bounds checking: throws std::invalid_argument
  /// "ResizableArray2D::element(): index out of range".
  T& element(int row, int col) {
    check(row, col);
    return data_[offset(row, col)];
  }
  T const& element(int row, int col) const {
    check(row, col);
    return data_[offset(row, col)];
  }

  /// Start of a row, unchecked: `a[row][col]`.
  T* operator[](int row) noexcept { return data_.get() + offset(row, 0); }
  T const* operator[](int row) const noexcept { return data_.get() + offset(row, 0); }

  T* data() noexcept { return data_.get(); }
  T const* data() const noexcept { return data_.get(); }

  /// Changes the shape, keeping each existing element that still fits at its
  /// (row, col) and setting new elements to `value`. Negative sizes throw
  /// std::invalid_argument "ResizableArray2D::resize(): negative size".
  void resize(int nrows, int ncols, T const& value = T()) {
    if (nrows < 0 || ncols < 0) {
      throw std::invalid_argument("ResizableArray2D::resize(): negative size");
    }
    if (nrows == nrows_ && ncols == ncols_) return;
    std::unique_ptr<T[]> fresh(new T[count(nrows, ncols)]);
    std::fill_n(fresh.get(), count(nrows, ncols), value);
    int const keep_rows = std::min(nrows, nrows_);
    int const keep_cols = std::min(ncols, ncols_);
    for (int r = 0; r < keep_rows; ++r) {
      std::copy_n((*this)[r], keep_cols, fresh.get() + count(r, ncols));
    }
    data_ = std::move(fresh);
    nrows_ = nrows;
    ncols_ = ncols;
  }

  /// Replaces the content with a nrows x ncols array of `value`.
  void assign(int nrows, int ncols, T const& value) {
    if (nrows < 0 || ncols < 0) {
      throw std::invalid_argument("ResizableArray2D::resize(): negative size");
    }
    if (count(nrows, ncols) != size()) data_.reset(new T[count(nrows, ncols)]);
    nrows_ = nrows;
    ncols_ = ncols;
    fill(value);
  }

  void fill(T const& value) { std::fill_n(data_.get(), size(), value); }

  void swap(ResizableArray2D& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(nrows_, other.nrows_);
    std::swap(ncols_, other.ncols_);
  }

  /// Equal shapes and equal elements.
  friend bool operator==(ResizableArray2D const& a, ResizableArray2D const& b) {
    return a.nrows_ == b.nrows_ && a.ncols_ == b.ncols_ &&
           std::equal(a.data_.get(), a.data_.get() + a.size(), b.data_.get());
  }
  friend bool operator!=(ResizableArray2D const& a, ResizableArray2D const& b) { return !(a == b); }

 private:
  static std::size_t count(int nrows, int ncols) noexcept {
    return static_cast<std::size_t>(nrows) * static_cast<std::size_t>(ncols);
  }
  std::size_t offset(int row, int col) const noexcept {
    return count(row, ncols_) + static_cast<std::size_t>(col);
  }
  void check(int row, int col) const {
    if (row < 0 || row >= nrows_ || col < 0 || col >= ncols_) {
      throw std::invalid_argument("ResizableArray2D::element(): index out of range");
    }
  }
  void copy_from(ResizableArray2D const& other) {
    if (other.size() != size()) data_.reset(other.size() ? new T[other.size()] : nullptr);
    std::copy_n(other.data_.get(), other.size(), data_.get());
    nrows_ = other.nrows_;
    ncols_ = other.ncols_;
  }

  std::unique_ptr<T[]> data_;
  int nrows_ = 0;
  int ncols_ = 0;
};

}  // namespace structmath
