// SPDX-License-Identifier: MIT
// Tests of IndexMap: lookups, duplicate keys and growth.
#include "structmath/grid/index_map.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

namespace structmath {
namespace {

TEST(IndexMap, FindsWhatWasInsertedAndKeepsTheFirstIndexOfAKey) {
  IndexMap map;
  EXPECT_TRUE(map.empty());
  EXPECT_EQ(map.find(42), -1);
  EXPECT_TRUE(map.insert(42, 0));
  EXPECT_FALSE(map.insert(42, 7));
  EXPECT_EQ(map.find(42), 0);
  EXPECT_EQ(map.size(), 1u);
  EXPECT_THROW(map.insert(1, -1), std::invalid_argument);
}

TEST(IndexMap, GrowsPastManyStructuredKeys) {
  IndexMap map;
  int const n = 20000;
  // Keys that differ only in high bits or by multiples of 8, as grid keys do.
  for (int v = 0; v < n; ++v) {
    std::uint64_t const key =
        (static_cast<std::uint64_t>(v) << 40) | (static_cast<std::uint64_t>(v) << 3);
    ASSERT_TRUE(map.insert(key, v));
  }
  EXPECT_EQ(map.size(), static_cast<std::size_t>(n));
  for (int v = 0; v < n; ++v) {
    std::uint64_t const key =
        (static_cast<std::uint64_t>(v) << 40) | (static_cast<std::uint64_t>(v) << 3);
    ASSERT_EQ(map.find(key), v);
    ASSERT_EQ(map.find(key + 1), -1);
  }
}

}  // namespace
}  // namespace structmath
