// SPDX-License-Identifier: MIT
// IndexMap: an open-addressing hash map from 64-bit keys to non-negative indices.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "structmath/export.hpp"

namespace structmath {

/// A map from 64-bit keys to non-negative int indices, stored flat with linear probing:
/// no allocation per entry, only when the table doubles. Lookups cost O(1) on average.
class STRUCTMATH_API IndexMap {
 public:
  /// An empty map with room for about expected entries before it grows.
  explicit IndexMap(std::size_t expected = 0);

  /// The index stored for key, or -1.
  int find(std::uint64_t key) const noexcept {
    std::size_t slot = home(key);
    for (;;) {
      int const v = values_[slot];
      if (v < 0) return -1;
      if (keys_[slot] == key) return v;
      slot = (slot + 1) & mask_;
    }
  }
  /// Stores key -> index unless key is present; returns whether it was stored. Throws
  /// std::invalid_argument("IndexMap::insert(): index must not be negative").
  bool insert(std::uint64_t key, int index);
  std::size_t size() const noexcept { return size_; }
  bool empty() const noexcept { return size_ == 0; }

 private:
  std::size_t home(std::uint64_t key) const noexcept {
    // Fibonacci hashing: spreads the structured keys over the table.
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ULL) >> shift_);
  }
  void grow();

  std::vector<std::uint64_t> keys_;
  std::vector<int> values_;  // -1 marks an empty slot
  std::size_t mask_ = 0;
  unsigned int shift_ = 64;
  std::size_t size_ = 0;
};

}  // namespace structmath
