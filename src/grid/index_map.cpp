// SPDX-License-Identifier: MIT
// IndexMap: table sizing, insertion and growth.
#include "structmath/grid/index_map.hpp"

#include <stdexcept>
#include <utility>

namespace structmath {

namespace {

/// log2 of the smallest power of two of at least 16 slots that keeps the load at most
/// one half for n entries.
unsigned int table_bits(std::size_t n) {
  unsigned int bits = 4;
  while ((std::size_t{1} << bits) < 2 * n) ++bits;
  return bits;
}

}  // namespace

IndexMap::IndexMap(std::size_t expected) {
  unsigned int const bits = table_bits(expected);
  std::size_t const slots = std::size_t{1} << bits;
  keys_.assign(slots, 0);
  values_.assign(slots, -1);
  mask_ = slots - 1;
  shift_ = 64 - bits;
}

bool IndexMap::insert(std::uint64_t key, int index) {
  if (index < 0) throw std::invalid_argument("IndexMap::insert(): index must not be negative");
  if (2 * (size_ + 1) > values_.size()) grow();
  std::size_t slot = home(key);
  while (values_[slot] >= 0) {
    if (keys_[slot] == key) return false;
    slot = (slot + 1) & mask_;
  }
  keys_[slot] = key;
  values_[slot] = index;
  ++size_;
  return true;
}

void IndexMap::grow() {
  IndexMap bigger(values_.size());
  for (std::size_t slot = 0; slot < values_.size(); ++slot) {
    if (values_[slot] >= 0) bigger.insert(keys_[slot], values_[slot]);
  }
  *this = std::move(bigger);
}

}  // namespace structmath
