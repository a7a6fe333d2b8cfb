// SPDX-License-Identifier: MIT
// Bit rows: sets of graph nodes as 64-bit words, for the bit-parallel graph searches.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The hot loops of the searches count bits; x86-64 processors without the popcnt
// instruction (before about 2008) need a call per count. Functions marked with this get a
// popcnt version, chosen when the library is loaded, beside the plain one.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__linux__) && \
    !defined(__SANITIZE_ADDRESS__)
#define STRUCTMATH_BIT_CLONES __attribute__((target_clones("popcnt", "default")))
#else
#define STRUCTMATH_BIT_CLONES
#endif

namespace structmath::detail {

using Word = std::uint64_t;

inline int words_for(int bits) noexcept { return (bits + 63) / 64; }

inline bool test_bit(Word const* row, int bit) noexcept {
  return (row[bit >> 6] >> (bit & 63)) & 1U;
}
inline void set_bit(Word* row, int bit) noexcept { row[bit >> 6] |= Word{1} << (bit & 63); }
inline void clear_bit(Word* row, int bit) noexcept { row[bit >> 6] &= ~(Word{1} << (bit & 63)); }

inline int popcount(Word const* row, int words) noexcept {
  int n = 0;
  for (int w = 0; w < words; ++w) n += __builtin_popcountll(row[w]);
  return n;
}

inline bool any(Word const* row, int words) noexcept {
  for (int w = 0; w < words; ++w) {
    if (row[w] != 0) return true;
  }
  return false;
}

/// The lowest set bit of the row, or -1.
inline int first_bit(Word const* row, int words) noexcept {
  for (int w = 0; w < words; ++w) {
    if (row[w] != 0) return w * 64 + __builtin_ctzll(row[w]);
  }
  return -1;
}

/// The lowest set bit at or after `from`, or -1.
inline int next_bit(Word const* row, int words, int from) noexcept {
  int w = from >> 6;
  if (w >= words) return -1;
  Word bits = row[w] & (~Word{0} << (from & 63));
  for (;;) {
    if (bits != 0) return w * 64 + __builtin_ctzll(bits);
    if (++w >= words) return -1;
    bits = row[w];
  }
}

/// Calls f(bit) for every set bit, in increasing order.
template <class F>
void for_each_bit(Word const* row, int words, F&& f) {
  for (int w = 0; w < words; ++w) {
    for (Word bits = row[w]; bits != 0; bits &= bits - 1) f(w * 64 + __builtin_ctzll(bits));
  }
}

/// n rows of `columns` bits each, in one block.
class BitRows {
 public:
  BitRows() = default;
  BitRows(int rows, int columns)
      : rows_(rows),
        words_(words_for(columns)),
        bits_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(words_for(columns)), 0) {}

  int rows() const noexcept { return rows_; }
  int words() const noexcept { return words_; }
  Word* row(int i) noexcept {
    return bits_.data() + static_cast<std::size_t>(i) * static_cast<std::size_t>(words_);
  }
  Word const* row(int i) const noexcept {
    return bits_.data() + static_cast<std::size_t>(i) * static_cast<std::size_t>(words_);
  }
  bool test(int i, int j) const noexcept { return test_bit(row(i), j); }
  void set(int i, int j) noexcept { set_bit(row(i), j); }
  std::vector<Word>& block() noexcept { return bits_; }
  std::vector<Word> const& block() const noexcept { return bits_; }

 private:
  int rows_ = 0;
  int words_ = 0;
  std::vector<Word> bits_;
};

}  // namespace structmath::detail
