// SPDX-License-Identifier: MIT
// Tests of IndexedTable: dense indices in first-added order, both directions.
#include "structmath/graph/indexed_table.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace structmath {
namespace {

TEST(IndexedTable, NumbersKeysDenselyInTheOrderAdded) {
  IndexedTable<> table;
  EXPECT_EQ(table.add(40), 0);
  EXPECT_EQ(table.add(-3), 1);
  EXPECT_EQ(table.add(40), 0);
  EXPECT_EQ(table.add(7), 2);
  EXPECT_EQ(table.size(), 3);
  EXPECT_EQ(table.keys(), (std::vector<int>{40, -3, 7}));
  EXPECT_EQ(table.index(-3), 1);
  EXPECT_EQ(table.key(2), 7);
  EXPECT_EQ(table.find(8), -1);
  EXPECT_TRUE(table.contains(7));
  EXPECT_THROW((void)table.index(8), std::invalid_argument);
  try {
    (void)table.key(3);
    FAIL() << "no exception";
  } catch (std::invalid_argument const& e) {
    EXPECT_STREQ(e.what(), "IndexedTable::key(): index out of range");
  }
  table.clear();
  EXPECT_TRUE(table.empty());
  EXPECT_EQ(table.add(7), 0);

  IndexedTable<std::string> names;
  names.add("C1");
  EXPECT_EQ(names.add("H1"), 1);
  EXPECT_EQ(names.key(0), "C1");
}

}  // namespace
}  // namespace structmath
