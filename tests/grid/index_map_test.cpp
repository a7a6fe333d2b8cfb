// SPDX-License-Identifier: MIT
// Tests of IndexMap: lookups, duplicate keys and growth.
#include "structmath/grid/index_map.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

namespace structmath {
namespace {

TEST(IndexMap, KeepsTheFirstIndexOfAKeyAcrossManyStructuredKeys) {
  IndexMap map;
  EXPECT_EQ(map.find(42), -1);
  EXPECT_THROW(map.insert(1, -1), std::invalid_argument);
  // Keys that differ only in high bits or by multiples of 8, as grid keys do.
  auto key = [](std::uint64_t v) { return (v << 40) | (v << 3); };
  int const n = 20000;
  for (int v = 0; v < n; ++v) ASSERT_TRUE(map.insert(key(static_cast<std::uint64_t>(v)), v));
  EXPECT_FALSE(map.insert(key(7), 0));
  EXPECT_EQ(map.size(), static_cast<std::size_t>(n));
  for (int v = 0; v < n; ++v) {
    ASSERT_EQ(map.find(key(static_cast<std::uint64_t>(v))), v);
    ASSERT_EQ(map.find(key(static_cast<std::uint64_t>(v)) + 1), -1);
  }
}

}  // namespace
}  // namespace structmath
