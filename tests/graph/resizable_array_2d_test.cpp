// SPDX-License-Identifier: MIT
// Tests of ResizableArray2D: shape, checked access, resizing and value semantics.
#include "structmath/graph/resizable_array_2d.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace structmath {
namespace {

TEST(ResizableArray2D, StoresRowMajorInOneBlock) {
  ResizableArray2D<int> a(2, 3, 7);
  EXPECT_EQ(a.nrows(), 2);
  EXPECT_EQ(a.ncols(), 3);
  EXPECT_EQ(a.size(), 6u);
  for (int r = 0; r < 2; ++r) {
    for (int c = 0; c < 3; ++c) a.element(r, c) = 10 * r + c;
  }
  EXPECT_EQ(a.data()[4], 11);  // row 1, column 1
  EXPECT_EQ(a[1][2], 12);
  EXPECT_EQ(&a[1][0], a.data() + 3);

  ResizableArray2D<bool> flags(3, 2, false);
  flags[2][1] = true;
  EXPECT_TRUE(flags.data()[5]);
  bool& ref = flags.element(0, 1);
  ref = true;
  EXPECT_TRUE(flags[0][1]);
  EXPECT_TRUE(ResizableArray2D<double>().empty());
}

TEST(ResizableArray2D, CheckedAccessRejectsIndicesOutsideTheShape) {
  ResizableArray2D<int> const a(2, 3, 0);
  for (auto [r, c] : {std::pair(-1, 0), std::pair(2, 0), std::pair(0, -1), std::pair(0, 3)}) {
    try {
      (void)a.element(r, c);
      ADD_FAILURE() << r << ", " << c;
    } catch (std::invalid_argument const& e) {
      EXPECT_STREQ(e.what(), "ResizableArray2D::element(): index out of range");
    }
  }
  ResizableArray2D<int> b;
  EXPECT_THROW(b.resize(-1, 2), std::invalid_argument);
}

TEST(ResizableArray2D, ResizeKeepsElementsThatStillFit) {
  ResizableArray2D<int> a(2, 3, 0);
  for (int r = 0; r < 2; ++r) {
    for (int c = 0; c < 3; ++c) a[r][c] = 10 * r + c;
  }
  a.resize(3, 4, -1);
  EXPECT_EQ(a[0][2], 2);
  EXPECT_EQ(a[1][1], 11);
  EXPECT_EQ(a[1][3], -1);
  EXPECT_EQ(a[2][0], -1);
  a.resize(1, 2);
  EXPECT_EQ(a.nrows(), 1);
  EXPECT_EQ(a.ncols(), 2);
  EXPECT_EQ(a[0][0], 0);
  EXPECT_EQ(a[0][1], 1);
  a.assign(2, 2, 5);
  EXPECT_EQ(a, ResizableArray2D<int>(2, 2, 5));
  a.fill(3);
  EXPECT_EQ(a[1][1], 3);
}

TEST(ResizableArray2D, CopiesAreIndependentAndEqualityNeedsTheSameShape) {
  ResizableArray2D<int> a(2, 2, 1);
  ResizableArray2D<int> b = a;
  EXPECT_EQ(a, b);
  b[0][0] = 2;
  EXPECT_NE(a, b);
  EXPECT_EQ(a[0][0], 1);
  EXPECT_NE(ResizableArray2D<int>(1, 4, 0), ResizableArray2D<int>(2, 2, 0));
  ResizableArray2D<int> c = std::move(b);
  EXPECT_EQ(c[0][0], 2);
  a = c;
  EXPECT_EQ(a, c);
  a = ResizableArray2D<int>(3, 1, 9);
  EXPECT_EQ(a.nrows(), 3);
  EXPECT_EQ(a[2][0], 9);
}

}  // namespace
}  // namespace structmath
