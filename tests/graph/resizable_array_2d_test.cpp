// SPDX-License-Identifier: MIT
// Tests of ResizableArray2D: shape, checked access, resizing and value semantics.
#include "structmath/graph/resizable_array_2d.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using Array = ResizableArray2D<int>;

TEST(ResizableArray2D, StoresRowMajorInOneBlockAndChecksElementIndices) {
  Array a(2, 3, 7);
  for (int r = 0; r < 2; ++r) {
    for (int c = 0; c < 3; ++c) a.element(r, c) = 10 * r + c;
  }
  EXPECT_EQ(a.size(), 6u);
  EXPECT_EQ(a.data()[4], 11);  // row 1, column 1
  EXPECT_EQ(&a[1][0], a.data() + 3);
  ResizableArray2D<bool> flags(3, 2, false);
  flags.element(2, 1) = true;
  EXPECT_TRUE(flags.data()[5]);
  EXPECT_TRUE(ResizableArray2D<double>().empty());
  for (auto [r, c] : {std::pair(-1, 0), std::pair(2, 0), std::pair(0, -1), std::pair(0, 3)}) {
    testing::expect_throw_message<std::invalid_argument>(
        [&, r = r, c = c] { (void)a.element(r, c); },
        "ResizableArray2D::element(): index out of range");
  }

  // Resizing keeps the elements that still fit.
  a.resize(3, 4, -1);
  EXPECT_EQ(a.nrows(), 3);
  EXPECT_EQ(a.ncols(), 4);
  EXPECT_EQ(a[0][2], 2);
  EXPECT_EQ(a[1][1], 11);
  EXPECT_EQ(a[1][3], -1);
  EXPECT_EQ(a[2][0], -1);
  a.resize(1, 2);
  Array expected(1, 2, 0);
  expected[0][1] = 1;
  EXPECT_EQ(a, expected);
  EXPECT_THROW(a.resize(-1, 2), std::invalid_argument);
}

TEST(ResizableArray2D, CopiesAreIndependentAndEqualityNeedsTheSameShape) {
  Array a(2, 2, 1);
  Array b = a;
  b[0][0] = 2;
  EXPECT_NE(a, b);
  EXPECT_EQ(a[0][0], 1);
  EXPECT_NE(Array(1, 4, 0), Array(2, 2, 0));
  Array c = std::move(b);
  EXPECT_EQ(c[0][0], 2);
  a = c;
  c[1][1] = 4;
  EXPECT_EQ(a[1][1], 1);
  a = Array(3, 1, 9);
  EXPECT_EQ(a, Array(3, 1, 9));
  a.assign(2, 2, 5);
  a.fill(3);
  EXPECT_EQ(a, Array(2, 2, 3));
}

}  // namespace
}  // namespace structmath
