// SPDX-License-Identifier: MIT
// Tests of Vector<double, 3> and Point: arithmetic, normalisation, perpendiculars,
// orderings and archiving.
#include "structmath/numeric/vector.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <vector>

#include "structmath/core/archive.hpp"
#include "structmath/numeric/point.hpp"

namespace structmath {
namespace {

void expect_vector(Vector3D const& v, double x, double y, double z) {
  EXPECT_EQ(v.x(), x);
  EXPECT_EQ(v.y(), y);
  EXPECT_EQ(v.z(), z);
}

template <class F>
void expect_runtime_error(F&& f, char const* message) {
  try {
    f();
    ADD_FAILURE() << "no exception, expected: " << message;
  } catch (std::runtime_error const& e) {
    EXPECT_STREQ(e.what(), message);
  }
}

Vector3D random_vector(std::mt19937_64& engine) {
  std::uniform_real_distribution<double> draw(-10.0, 10.0);
  double const x = draw(engine), y = draw(engine), z = draw(engine);
  return Vector3D(x, y, z);
}

TEST(Vector, IndexConventionsAndAccessors) {
  Vector3D v(1.0, 2.0, 3.0);
  EXPECT_EQ(v(1), 1.0);
  EXPECT_EQ(v(3), 3.0);
  EXPECT_EQ(v[0], 1.0);
  EXPECT_EQ(v[2], 3.0);
  v.y() = 5.0;
  EXPECT_EQ(v(2), 5.0);
  expect_vector(Vector3D(), 0.0, 0.0, 0.0);
}

TEST(Vector, ArithmeticAndProducts) {
  Vector3D const a(1.0, 2.0, 3.0), b(4.0, -5.0, 6.0);
  EXPECT_EQ(a * b, 12.0);
  EXPECT_EQ(dot(a, b), 12.0);
  EXPECT_EQ(a.dot(b), 12.0);
  expect_vector(a + b, 5.0, -3.0, 9.0);
  expect_vector(a - b, -3.0, 7.0, -3.0);
  expect_vector(-a, -1.0, -2.0, -3.0);
  expect_vector(2.0 * a, 2.0, 4.0, 6.0);
  expect_vector(a * 2.0, 2.0, 4.0, 6.0);
  expect_vector(a / 2.0, 0.5, 1.0, 1.5);
  expect_vector(cross(Vector3D(1, 0, 0), Vector3D(0, 1, 0)), 0.0, 0.0, 1.0);  // right-handed
  expect_vector(a.cross(b), 27.0, 6.0, -13.0);
  EXPECT_EQ(Vector3D(3.0, 4.0, 12.0).length(), 13.0);
  EXPECT_EQ(Vector3D(1.0, 2.0, -4.0).sum(), -1.0);
  Vector3D c = a;
  c += b;
  c -= a;
  c *= 3.0;
  c /= 3.0;
  expect_vector(c, 4.0, -5.0, 6.0);
}

TEST(Vector, CrossProductIsPerpendicularAndOfAreaLength) {
  std::mt19937_64 engine(3);
  for (int i = 0; i < 200; ++i) {
    Vector3D const a = random_vector(engine), b = random_vector(engine);
    Vector3D const c = cross(a, b);
    double const scale = a.length() * b.length();
    EXPECT_NEAR(c * a, 0.0, 1e-12 * scale * a.length());
    EXPECT_NEAR(c * b, 0.0, 1e-12 * scale * b.length());
    double const cos_ab = (a * b) / scale;
    EXPECT_NEAR(c.length(), scale * std::sqrt(1.0 - cos_ab * cos_ab), 1e-9 * scale);
  }
}

TEST(Vector, NormalizeNeedsALengthAboveTheTolerance) {
  Vector3D v(3.0, 4.0, 0.0);
  v.normalize(1e-10);
  EXPECT_DOUBLE_EQ(v.x(), 0.6);
  EXPECT_DOUBLE_EQ(v.y(), 0.8);
  EXPECT_EQ(v.z(), 0.0);
  EXPECT_FALSE(Vector3D(3.0, 4.0, 0.0).normalize_valid(5.0));  // length 5 is not > 5
  EXPECT_TRUE(Vector3D(3.0, 4.0, 0.0).normalize_valid(4.999));
  Vector3D zero;
  expect_runtime_error([&] { zero.normalize(1e-10); }, "Cannot normalize a zero length Vector");
  Vector3D small(3.0, 4.0, 0.0);
  expect_runtime_error([&] { small.normalize(5.0); }, "Cannot normalize a zero length Vector");
  expect_vector(small, 3.0, 4.0, 0.0);  // unchanged when it throws
}

TEST(Vector, PerpSolvesForTheLargestComponent) {
  expect_vector(Vector3D(1, 2, 3).perp(1e-7), 1.0, 1.0, -1.0);
  expect_vector(Vector3D(-4, 1, 1).perp(1e-7), 0.5, 1.0, 1.0);
  Vector3D const p = Vector3D(0, 0, 2).perp(1e-7);
  expect_vector(p, 1.0, 1.0, 0.0);
  EXPECT_TRUE(std::signbit(p.z()));                             // -(0) / 2 is -0.0
  expect_vector(Vector3D(2, -2, 1).perp(1e-7), 0.5, 1.0, 1.0);  // tie: lowest index
  std::mt19937_64 engine(5);
  for (int i = 0; i < 200; ++i) {
    Vector3D const v = random_vector(engine);
    EXPECT_NEAR(v.perp(1e-7) * v, 0.0, 1e-12 * v.length() * v.perp(1e-7).length());
  }
  expect_runtime_error([] { (void)Vector3D().perp(1e-7); },
                       "Vector3D::orthogonalize(): Cannot calculate perp for the zero vector.");
}

TEST(Vector, OrthogonalizeRemovesTheComponentAlongTheOther) {
  Vector3D v(1.0, 1.0, 0.0);
  v.orthogonalize(Vector3D(1.0, 0.0, 0.0), 1e-7);
  expect_vector(v, 0.0, 1.0, 0.0);
  std::mt19937_64 engine(9);
  for (int i = 0; i < 200; ++i) {
    Vector3D a = random_vector(engine);
    Vector3D const b = random_vector(engine);
    Vector3D const before = a;
    a.orthogonalize(b, 1e-7);
    EXPECT_NEAR(a * b, 0.0, 1e-10 * before.length() * b.length());
    // What was removed is parallel to b.
    EXPECT_NEAR(cross(before - a, b).length(), 0.0, 1e-9 * before.length() * b.length());
  }
  Vector3D zero;
  expect_runtime_error([&] { zero.orthogonalize(Vector3D(), 1e-7); },
                       "Vector3D::orthogonalize(): Cannot orthogonalize to the zero vector.");
  expect_runtime_error([&] { zero.orthogonalize(Vector3D(1, 0, 0), 1e-7); },
                       "Vector3D::orthogonalize(): Cannot orthogonalize the zero vector.");
}

TEST(Vector, EqualsIsAPerComponentCube) {
  EXPECT_TRUE(equals(Vector3D(0, 0, 0), Vector3D(0.1, 0.1, 0.1), 0.1));
  EXPECT_FALSE(equals(Vector3D(0, 0, 0), Vector3D(0.1, 0.1, 0.10001), 0.1));
  EXPECT_FALSE(equals(Vector3D(0, 0, 0), Vector3D(-0.2, 0, 0), 0.1));
}

TEST(Vector, LengthOrderingTreatsCloseLengthsAsEqual) {
  EXPECT_FALSE(compare_vector3D(Vector3D(1, 0, 0), Vector3D(0, 1, 0)));
  EXPECT_FALSE(compare_vector3D(Vector3D(0, 1, 0), Vector3D(1, 0, 0)));
  EXPECT_TRUE(compare_vector3D(Vector3D(1, 0, 0), Vector3D(0, 2, 0)));
  EXPECT_FALSE(compare_vector3D(Vector3D(0, 2, 0), Vector3D(1, 0, 0)));
  EXPECT_FALSE(compare_vector3D(Vector3D(1, 0, 0), Vector3D(1 + 0.5e-7, 0, 0)));
  EXPECT_TRUE(compare_vector3D(Vector3D(1, 0, 0), Vector3D(1 + 2e-7, 0, 0)));
}

TEST(Vector, LexicographicOrderingWithTolerance) {
  Vector3DCompareXYZ const less(0.01);
  EXPECT_TRUE(less(Vector3D(1.005, 2, 0), Vector3D(1, 5, 0)));  // x within t: decided by y
  EXPECT_FALSE(less(Vector3D(1, 5, 0), Vector3D(1.005, 2, 0)));
  EXPECT_TRUE(less(Vector3D(0, 9, 9), Vector3D(1, 0, 0)));
  EXPECT_FALSE(less(Vector3D(1, 2, 3), Vector3D(1.001, 2.001, 3.001)));
  EXPECT_FALSE(less(Vector3D(1.001, 2.001, 3.001), Vector3D(1, 2, 3)));
  EXPECT_TRUE(less(Vector3D(1, 2, 3), Vector3D(1, 2, 3.02)));
  EXPECT_EQ(Vector3DCompareXYZ().tolerance(), 1e-7);

  // With a zero tolerance it agrees with the plain lexicographic order.
  std::mt19937_64 engine(13);
  std::uniform_int_distribution<int> draw(0, 3);
  std::vector<Vector3D> vs;
  for (int i = 0; i < 300; ++i) vs.emplace_back(draw(engine), draw(engine), draw(engine));
  std::sort(vs.begin(), vs.end(), Vector3DCompareXYZ(0.0));
  for (std::size_t i = 1; i < vs.size(); ++i) {
    auto const& a = vs[i - 1];
    auto const& b = vs[i];
    EXPECT_LE(std::make_tuple(a.x(), a.y(), a.z()), std::make_tuple(b.x(), b.y(), b.z()));
  }
}

TEST(Vector, ArchiveRoundTripInXYZOrder) {
  Archive archive;
  Vector3D(1.5, -2.25, 1e-300).write(archive);
  Point(4.0, 5.0, 6.0).write(archive);
  Archive check(archive.bytes());
  double x = 0, y = 0, z = 0;
  check >> x >> y >> z;
  EXPECT_EQ(x, 1.5);
  EXPECT_EQ(y, -2.25);
  EXPECT_EQ(z, 1e-300);
  Vector3D v;
  Point p;
  archive.rewind();
  v.read(archive);
  p.read(archive);
  expect_vector(v, 1.5, -2.25, 1e-300);
  expect_vector(p.vector(), 4.0, 5.0, 6.0);
  Archive truncated(std::vector<unsigned char>(archive.bytes().begin(), archive.bytes().end() - 1));
  truncated >> x >> y >> z;
  Point q(7, 8, 9);
  EXPECT_THROW(q.read(truncated), std::runtime_error);
  expect_vector(q.vector(), 7.0, 8.0, 9.0);
}

TEST(Point, PositionsAndDisplacements) {
  Point const p(1.0, 2.0, 3.0);
  Vector3D const d(0.5, -1.0, 2.0);
  expect_vector((p + d).vector(), 1.5, 1.0, 5.0);
  expect_vector((p - d).vector(), 0.5, 3.0, 1.0);
  expect_vector(Point(4, 4, 4) - p, 3.0, 2.0, 1.0);
  Point q = p;
  q += d;
  q -= d;
  q -= d;
  expect_vector(q.vector(), 0.5, 3.0, 1.0);
  expect_vector(d.point().vector(), 0.5, -1.0, 2.0);
  expect_vector(Point(d).vector(), 0.5, -1.0, 2.0);
  EXPECT_EQ(p[1], 2.0);
  EXPECT_EQ(p.z(), 3.0);
  EXPECT_TRUE(equals(p, Point(1.04, 2, 3), 0.05));
  EXPECT_FALSE(equals(p, Point(1.06, 2, 3), 0.05));
}

}  // namespace
}  // namespace structmath
