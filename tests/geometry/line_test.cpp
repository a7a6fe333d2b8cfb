// SPDX-License-Identifier: MIT
// Tests of Line and LineSegment.
#include "structmath/geometry/line.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "structmath/core/archive.hpp"
#include "support/geometry_support.hpp"

namespace structmath {
namespace {

TEST(Line, IsKeptWithItsOriginNearestTheCoordinateOrigin) {
  Line const line(Point(5, 1, 0), Vector3D(2, 0, 0));
  EXPECT_TRUE(equals(line.origin(), Point(0, 1, 0), 0.0));
  EXPECT_TRUE(equals(line.direction(), Vector3D(1, 0, 0), 0.0));
  Line const z;
  EXPECT_TRUE(equals(z.origin(), Point(0, 0, 0), 0.0));
  EXPECT_TRUE(equals(z.direction(), Vector3D(0, 0, 1), 0.0));

  testing::GeometryRandom random(31);
  for (int n = 0; n < 200; ++n) {
    Point const a = random.point();
    Vector3D const v = random.vector();
    Line const by_vector(a, v);
    Line const by_points(a + 2.5 * v, a - v);  // another pair, opposite sense
    EXPECT_NEAR(by_vector.direction().length(), 1.0, 1e-14);
    EXPECT_NEAR(by_vector.origin().vector() * by_vector.direction(), 0.0, 1e-12);
    EXPECT_TRUE(equals(by_vector, by_points, 1e-10));
    EXPECT_NEAR(by_vector.distance(a + 0.3 * v), 0.0, 1e-10);
    // The origin is the nearest point: moving along the line only gets further away.
    EXPECT_LE(by_vector.origin().vector().length(),
              (by_vector.origin() + 1e-3 * v).vector().length());
  }
}

TEST(Line, OppositeSensesAreEqualButDifferentLinesAreNot) {
  Line const up(Point(0, 0, 0), Point(0, 0, 3));
  Line const down(Point(0, 0, 3), Point(0, 0, 0));
  EXPECT_TRUE(equals(up, down, 1e-7));
  EXPECT_TRUE(equals(down.direction(), Vector3D(0, 0, -1), 0.0));  // sense kept
  EXPECT_FALSE(equals(up, Line(Point(1, 0, 0), Vector3D(0, 0, 1)), 0.5));
  EXPECT_FALSE(equals(up, Line(Point(0, 0, 0), Vector3D(0, 1, 1)), 0.1));
  EXPECT_TRUE(equals(Line(LineSegment(Point(0, 0, 3), Point(0, 0, 0))), up, 0.0));
}

TEST(Line, DistanceAndProjectionOfAPoint) {
  Line const line(Point(0, 0, 1), Vector3D(1, 1, 0));
  EXPECT_NEAR(line.distance(Point(2, 0, 1)), std::sqrt(2.0), 1e-15);
  EXPECT_TRUE(equals(line.projection(Point(2, 0, 4)), Point(1, 1, 1), 1e-15));
}

TEST(Line, CoincidentPointsAndZeroVectorsThrow) {
  for (auto make : {+[] { Line(Point(1, 1, 1), Point(1, 1, 1)); },
                    +[] { Line(Point(1, 1, 1), Vector3D(0, 1e-8, 0)); },
                    +[] { Line(LineSegment(Point(2, 2, 2), Point(2, 2, 2))); }}) {
    try {
      make();
      FAIL();
    } catch (std::runtime_error const& e) {
      EXPECT_STREQ(e.what(), "Cannot normalize a zero length Vector");
    }
  }
}

TEST(LineSegment, StoresItsEndsInXyzOrder) {
  LineSegment const s(Point(1, 0, 0), Point(0, 0, 0));
  EXPECT_TRUE(equals(s.point1(), Point(0, 0, 0), 0.0));
  EXPECT_TRUE(equals(s, LineSegment(Point(0, 0, 0), Point(1, 0, 0)), 0.0));
  // Ties in x within the tolerance fall through to y, then z.
  LineSegment const t(Point(1e-8, 5, 0), Point(0, 4, 9));
  EXPECT_TRUE(equals(t.point1(), Point(0, 4, 9), 0.0));
  LineSegment const u(Point(0, 0, 2), Point(0, 0, 1));
  EXPECT_TRUE(equals(u.point1(), Point(0, 0, 1), 0.0));
  EXPECT_FALSE(equals(s, LineSegment(Point(0, 0, 0), Point(1, 0, 1e-3)), 1e-4));
  EXPECT_EQ(LineSegment().length(), 1.0);
}

TEST(LineSegment, LengthAndMidpoint) {
  LineSegment const s(Point(1, 2, 3), Point(4, 6, 3));
  EXPECT_EQ(s.length(), 5.0);
  EXPECT_TRUE(equals(s.midpoint(), Point(2.5, 4, 3), 0.0));
  EXPECT_EQ(LineSegment(Point(1, 1, 1), Point(1, 1, 1)).length(), 0.0);
}

TEST(LineAndSegment, PrintAndRoundTripThroughAnArchive) {
  std::ostringstream out;
  Line(Point(5, 1, 0), Vector3D(2, 0, 0)).print(out);
  EXPECT_EQ(out.str(), "origin:    0.000   1.000   0.000, direction:    1.000   0.000   0.000");
  out.str("");
  LineSegment(Point(1, 0, 0), Point(0, -2.5, 0)).print(out);
  EXPECT_EQ(out.str(), "point 1:    0.000  -2.500   0.000, point 2:    1.000   0.000   0.000");

  Line const line(Point(1, 2, 3), Vector3D(-1, 0.5, 2));
  LineSegment const segment(Point(3, 2, 1), Point(-1, 0, 4));
  Archive archive;
  line.write(archive);
  segment.write(archive);
  EXPECT_EQ(archive.size(), 12u * 8u);
  Line line_back;
  LineSegment segment_back;
  line_back.read(archive);
  segment_back.read(archive);
  EXPECT_TRUE(equals(line_back, line, 0.0));
  EXPECT_TRUE(equals(line_back.direction(), line.direction(), 0.0));
  EXPECT_TRUE(equals(segment_back, segment, 0.0));
  archive.rewind();
  double x = 0.0;
  archive >> x;
  EXPECT_EQ(x, line.origin().x());  // origin first
}

}  // namespace
}  // namespace structmath
