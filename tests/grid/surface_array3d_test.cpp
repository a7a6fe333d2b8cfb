// SPDX-License-Identifier: MIT
// Tests of SurfaceArray3D: layout, subscripts and shared copies.
#include "structmath/grid/surface_array3d.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

namespace structmath {
namespace {

TEST(SurfaceArray3D, StoresKFastestAndReachesElementsThroughThreeSubscripts) {
  SurfaceArray3D<double> a(2, 3, 4, 1.5);
  ASSERT_EQ(a.size(), 24u);
  EXPECT_EQ(a.data()[23], 1.5);
  a[1][2][3] = 7.0;
  a(0, 1, 2) = 5.0;
  EXPECT_EQ(a.data()[(1 * 3 + 2) * 4 + 3], 7.0);
  EXPECT_EQ(a.data()[(0 * 3 + 1) * 4 + 2], 5.0);
  a.set_(-2.0);
  EXPECT_EQ(a[1][2][3], -2.0);
  EXPECT_THROW(SurfaceArray3D<double>(1, -1, 1, 0.0), std::invalid_argument);
}

TEST(SurfaceArray3D, CopiesShareTheBlockUntilTheLastGoes) {
  SurfaceArray3D<int> a(2, 2, 2, 0);
  {
    SurfaceArray3D<int> b(a);
    SurfaceArray3D<int> c;
    c = b;
    EXPECT_EQ(a.use_count(), 3);
    c(1, 1, 1) = 9;
    EXPECT_EQ(a(1, 1, 1), 9);
    c = SurfaceArray3D<int>(1, 1, 1, 4);
    EXPECT_EQ(a.use_count(), 2);
  }
  EXPECT_EQ(a.use_count(), 1);
}

TEST(SurfaceArray3D, InitializeAdoptsABlockAndDestroyLetsGoOfIt) {
  SurfaceArray3D<double> a(1, 1, 1, 5.0);
  SurfaceArray3D<double> const old_copy(a);
  auto* block = new double[6]{0, 1, 2, 3, 4, 5};
  a.initialize_(block, 1, 2, 3);
  EXPECT_EQ(a.data(), block);
  EXPECT_EQ(a[0][1][2], 5.0);
  EXPECT_EQ(a.use_count(), 1);
  EXPECT_EQ(old_copy(0, 0, 0), 5.0);  // the block given up stays with its other copy
  SurfaceArray3D<double> shared(a);
  a.destroy_();
  EXPECT_EQ(a.size(), 0U);
  EXPECT_EQ(shared[0][1][0], 3.0);  // still held by the copy
  EXPECT_EQ(shared.use_count(), 1);
}

}  // namespace
}  // namespace structmath
