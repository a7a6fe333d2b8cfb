// SPDX-License-Identifier: MIT
// Tests of Vector<double, 3> and Point: arithmetic, normalisation, perpendiculars,
// orderings and archiving.
#include "structmath/numeric/vector.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <tuple>
#include <vector>

#include "structmath/core/archive.hpp"
#include "structmath/numeric/point.hpp"
#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

void expect_vector(Vector3D const& v, double x, double y, double z) {
  EXPECT_EQ(v.x(), x);
  EXPECT_EQ(v.y(), y);
  EXPECT_EQ(v.z(), z);
}

Vector3D random_vector(std::mt19937_64& engine) {
  std::uniform_real_distribution<double> draw(-10.0, 10.0);
  return Vector3D(draw(engine), draw(engine), draw(engine));
}

TEST(Vector, IndexConventionsAndArithmetic) {
  Vector3D const a(1.0, 2.0, 3.0), b(4.0, -5.0, 6.0);
  EXPECT_TRUE(a(1) == 1.0 && a[2] == 3.0);  // call operator from 1, subscript from 0
  expect_vector(Vector3D(), 0.0, 0.0, 0.0);
  EXPECT_EQ(a * b, 12.0);
  expect_vector(-a + 2.0 * b - a * 2.0 + b / 2.0, 7.0, -18.5, 6.0);
  expect_vector(cross(a, b), 27.0, 6.0, -13.0);
  expect_vector(a.cross(b) + cross(b, a), 0.0, 0.0, 0.0);
  EXPECT_EQ(Vector3D(3.0, 4.0, 12.0).length(), 13.0);
  EXPECT_EQ(Vector3D(1.0, 2.0, -4.0).sum(), -1.0);
  expect_vector((((Vector3D(a) += b) -= a) *= 3.0) /= 2.0, 6.0, -7.5, 9.0);
}

TEST(Vector, NormalizeNeedsALengthAboveTheTolerance) {
  std::string const message = "Cannot normalize a zero length Vector";
  Vector3D v(3.0, 4.0, 0.0);
  EXPECT_FALSE(v.normalize_valid(5.0));  // length 5 is not > 5
  EXPECT_TRUE(v.normalize_valid(4.999));
  expect_throw_message<std::runtime_error>([&] { v.normalize(5.0); }, message);
  expect_vector(v, 3.0, 4.0, 0.0);  // unchanged when it throws
  v.normalize(1e-10);
  EXPECT_DOUBLE_EQ(v.x(), 0.6);
  EXPECT_DOUBLE_EQ(v.y(), 0.8);
  expect_throw_message<std::runtime_error>([] { Vector3D().normalize(1e-10); }, message);
}

TEST(Vector, PerpAndOrthogonalize) {
  expect_vector(Vector3D(1, 2, 3).perp(1e-7), 1.0, 1.0, -1.0);  // solves for the largest
  expect_vector(Vector3D(2, -2, 1).perp(1e-7), 0.5, 1.0, 1.0);  // tie: lowest index
  EXPECT_TRUE(std::signbit(Vector3D(0, 0, 2).perp(1e-7).z()));  // -(0) / 2 is -0.0
  std::mt19937_64 engine(5);
  for (int i = 0; i < 200; ++i) {
    Vector3D const v = random_vector(engine), p = v.perp(1e-7), b = random_vector(engine);
    EXPECT_NEAR(p * v, 0.0, 1e-12 * v.length() * p.length());
    Vector3D a = v;
    a.orthogonalize(b, 1e-7);
    EXPECT_NEAR(a * b, 0.0, 1e-10 * v.length() * b.length());
    // What was removed is parallel to b.
    EXPECT_NEAR(cross(v - a, b).length(), 0.0, 1e-9 * v.length() * b.length());
  }
  Vector3D zero;
  expect_throw_message<std::runtime_error>(
      [&] { (void)zero.perp(1e-7); },
      "Vector3D::orthogonalize(): Cannot calculate perp for the zero vector.");
  expect_throw_message<std::runtime_error>(
      [&] { zero.orthogonalize(Vector3D(), 1e-7); },
      "Vector3D::orthogonalize(): Cannot orthogonalize to the zero vector.");
  expect_throw_message<std::runtime_error>(
      [&] { zero.orthogonalize(Vector3D(1, 0, 0), 1e-7); },
      "Vector3D::orthogonalize(): Cannot orthogonalize the zero vector.");
}

TEST(Vector, EqualsAndOrderingsWithTolerance) {
  EXPECT_TRUE(equals(Vector3D(0, 0, 0), Vector3D(0.1, -0.1, 0.1), 0.1));  // a cube
  EXPECT_FALSE(equals(Vector3D(0, 0, 0), Vector3D(0.1, 0.1, 0.10001), 0.1));
  // By length, lengths within 1e-7 counting as equal.
  Vector3D const x(1, 0, 0);
  EXPECT_TRUE(compare_vector3D(x, Vector3D(0, 2, 0)) && !compare_vector3D(Vector3D(0, 2, 0), x));
  EXPECT_TRUE(compare_vector3D(x, Vector3D(1 + 2e-7, 0, 0)));
  EXPECT_FALSE(compare_vector3D(x, Vector3D(0, 1 + 0.5e-7, 0)));
  // Lexicographic, a coordinate within the tolerance passing the decision on.
  Vector3DCompareXYZ const less(0.01);
  Vector3D const p(1, 2, 3), q(1.001, 2.001, 3.001);
  EXPECT_TRUE(less(Vector3D(1.005, 2, 0), Vector3D(1, 5, 0)));
  EXPECT_FALSE(less(Vector3D(1, 5, 0), Vector3D(1.005, 2, 0)));
  EXPECT_FALSE(less(p, q) || less(q, p));
  EXPECT_TRUE(less(p, Vector3D(1, 2, 3.02)));
  EXPECT_EQ(Vector3DCompareXYZ().tolerance(), 1e-7);
  // With a zero tolerance it agrees with the plain lexicographic order.
  std::mt19937_64 engine(13);
  std::uniform_int_distribution<int> draw(0, 3);
  std::vector<Vector3D> vs;
  for (int i = 0; i < 300; ++i) vs.emplace_back(draw(engine), draw(engine), draw(engine));
  std::sort(vs.begin(), vs.end(), Vector3DCompareXYZ(0.0));
  EXPECT_TRUE(std::is_sorted(vs.begin(), vs.end(), [](Vector3D const& a, Vector3D const& b) {
    return std::make_tuple(a.x(), a.y(), a.z()) < std::make_tuple(b.x(), b.y(), b.z());
  }));
}

TEST(Vector, ArchiveRoundTripInXYZOrder) {
  Archive archive;
  Vector3D(1.5, -2.25, 1e-300).write(archive);
  Point(4.0, 5.0, 6.0).write(archive);
  double x = 0, y = 0, z = 0;
  Archive(archive.bytes()) >> x >> y >> z;
  expect_vector(Vector3D(x, y, z), 1.5, -2.25, 1e-300);
  Vector3D v;
  Point p, q(7, 8, 9);
  v.read(archive);
  p.read(archive);
  expect_vector(v, 1.5, -2.25, 1e-300);
  expect_vector(p.vector(), 4.0, 5.0, 6.0);
  Archive truncated(
      std::vector<unsigned char>(archive.bytes().begin(), archive.bytes().begin() + 23));
  EXPECT_THROW(q.read(truncated), std::runtime_error);
  expect_vector(q.vector(), 7.0, 8.0, 9.0);  // unchanged
}

TEST(Point, PositionsAndDisplacements) {
  Point const p(1.0, 2.0, 3.0);
  Vector3D const d(0.5, -1.0, 2.0);
  expect_vector(((Point(p) += d) -= 2.0 * d).vector(), 0.5, 3.0, 1.0);
  expect_vector((p + d).vector(), 1.5, 1.0, 5.0);
  expect_vector((p - d).vector(), 0.5, 3.0, 1.0);
  expect_vector(Point(4, 4, 4) - p, 3.0, 2.0, 1.0);
  expect_vector(Point(d).vector(), 0.5, -1.0, 2.0);
  expect_vector(d.point() - p, -0.5, -3.0, -1.0);
  EXPECT_EQ(p[1], 2.0);
  EXPECT_TRUE(equals(p, Point(1.04, 2, 3), 0.05) && !equals(p, Point(1.06, 2, 3), 0.05));
}

}  // namespace
}  // namespace structmath
