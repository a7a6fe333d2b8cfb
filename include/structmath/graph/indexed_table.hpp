// SPDX-License-Identifier: MIT
// IndexedTable: a two-way map between keys and dense indices 0, 1, 2, ...
#pragma once

#include <stdexcept>
#include <unordered_map>
#include <vector>

namespace structmath {

/// Gives each distinct key the next free index, in the order the keys are added,
/// and answers in both directions in constant time.
template <class Key = int>
class IndexedTable {
 public:
  /// The index of `key`, adding it at the end when it is new.
  int add(Key const& key) {
    auto const [found, inserted] = indices_.emplace(key, static_cast<int>(keys_.size()));
    if (inserted) keys_.push_back(key);
    return found->second;
  }

  bool contains(Key const& key) const { return indices_.count(key) != 0; }

  /// The index of a key; throws std::invalid_argument
  /// "IndexedTable::index(): unknown key".
  int index(Key const& key) const {
    auto const found = indices_.find(key);
    if (found == indices_.end()) throw std::invalid_argument("IndexedTable::index(): unknown key");
    return found->second;
  }

  /// The index of a key, or -1 when it is not in the table.
  int find(Key const& key) const {
    auto const found = indices_.find(key);
    return found == indices_.end() ? -1 : found->second;
  }

  /// The key at an index; throws std::invalid_argument
  /// "IndexedTable::key(): index out of range".
  Key const& key(int index) const {
    if (index < 0 || index >= size()) {
      throw std::invalid_argument("IndexedTable::key(): index out of range");
    }
    return keys_[static_cast<std::size_t>(index)];
  }

  int size() const noexcept { return static_cast<int>(keys_.size()); }
  bool empty() const noexcept { return keys_.empty(); }
  /// The keys in index order.
  std::vector<Key> const& keys() const noexcept { return keys_; }
  void clear() noexcept {
    indices_.clear();
    keys_.clear();
  }

  friend bool operator==(IndexedTable const& a, IndexedTable const& b) {
    return a.keys_ == b.keys_;
  }
  friend bool operator!=(IndexedTable const& a, IndexedTable const& b) { return !(a == b); }

 private:
  std::unordered_map<Key, int> indices_;
  std::vector<Key> keys_;
};

}  // namespace structmath
