// SPDX-License-Identifier: MIT
// Tests of Line and LineSegment.
#include "structmath/geometry/line.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <stdexcept>
#include <string>

#include "structmath/core/archive.hpp"
#include "support/geometry_support.hpp"

namespace structmath {
namespace {

using testing::message_of;

TEST(Line, IsKeptWithItsOriginNearestTheCoordinateOrigin) {
  Line const line(Point(5, 1, 0), Vector3D(2, 0, 0));
  EXPECT_TRUE(equals(line.origin(), Point(0, 1, 0), 0.0));
  EXPECT_TRUE(equals(line.direction(), Vector3D(1, 0, 0), 0.0));
  EXPECT_TRUE(equals(Line().origin(), Point(0, 0, 0), 0.0));
  EXPECT_TRUE(equals(Line().direction(), Vector3D(0, 0, 1), 0.0));

  testing::GeometryRandom random(31);
  for (int n = 0; n < 200; ++n) {
    Point const a = random.point();
    Vector3D const v = random.vector();
    Line const by_vector(a, v);
    EXPECT_NEAR(by_vector.direction().length(), 1.0, 1e-14);
    EXPECT_NEAR(by_vector.origin().vector() * by_vector.direction(), 0.0, 1e-12);
    EXPECT_TRUE(equals(by_vector, Line(a + 2.5 * v, a - v), 1e-10));  // opposite sense
  }
}

TEST(Line, EqualityDistanceProjectionAndDegenerateInput) {
  Line const up(Point(0, 0, 0), Point(0, 0, 3));
  Line const down(Point(0, 0, 3), Point(0, 0, 0));
  EXPECT_TRUE(equals(up, down, 1e-7));
  EXPECT_TRUE(equals(down.direction(), Vector3D(0, 0, -1), 0.0));  // sense kept
  EXPECT_FALSE(equals(up, Line(Point(1, 0, 0), Vector3D(0, 0, 1)), 0.5));
  EXPECT_FALSE(equals(up, Line(Point(0, 0, 0), Vector3D(0, 1, 1)), 0.1));
  EXPECT_TRUE(equals(Line(LineSegment(Point(0, 0, 3), Point(0, 0, 0))), up, 0.0));

  Line const diagonal(Point(0, 0, 1), Vector3D(1, 1, 0));
  EXPECT_NEAR(diagonal.distance(Point(2, 0, 1)), std::sqrt(2.0), 1e-15);
  EXPECT_TRUE(equals(diagonal.projection(Point(2, 0, 4)), Point(1, 1, 1), 1e-15));

  std::string const zero = "Cannot normalize a zero length Vector";
  EXPECT_EQ(message_of<std::runtime_error>([] { Line(Point(1, 1, 1), Point(1, 1, 1)); }), zero);
  EXPECT_EQ(message_of<std::runtime_error>([] { Line(Point(1, 1, 1), Vector3D(0, 1e-8, 0)); }),
            zero);
  EXPECT_EQ(
      message_of<std::runtime_error>([] { Line(LineSegment(Point(2, 2, 2), Point(2, 2, 2))); }),
      zero);
}

TEST(LineSegment, StoresItsEndsInXyzOrder) {
  LineSegment const s(Point(1, 0, 0), Point(0, 0, 0));
  EXPECT_TRUE(equals(s.point1(), Point(0, 0, 0), 0.0));
  EXPECT_TRUE(equals(s, LineSegment(Point(0, 0, 0), Point(1, 0, 0)), 0.0));
  EXPECT_FALSE(equals(s, LineSegment(Point(0, 0, 0), Point(1, 0, 1e-3)), 1e-4));
  // Ties in x within the tolerance fall through to y, then z.
  EXPECT_TRUE(equals(LineSegment(Point(1e-8, 5, 0), Point(0, 4, 9)).point1(), Point(0, 4, 9), 0.0));
  EXPECT_TRUE(equals(LineSegment(Point(0, 0, 2), Point(0, 0, 1)).point1(), Point(0, 0, 1), 0.0));

  LineSegment const t(Point(1, 2, 3), Point(4, 6, 3));
  EXPECT_EQ(t.length(), 5.0);
  EXPECT_TRUE(equals(t.midpoint(), Point(2.5, 4, 3), 0.0));
  EXPECT_EQ(LineSegment().length(), 1.0);
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
  EXPECT_TRUE(equals(line_back.origin(), line.origin(), 0.0));
  EXPECT_TRUE(equals(line_back.direction(), line.direction(), 0.0));
  EXPECT_TRUE(equals(segment_back, segment, 0.0));
  archive.rewind();
  double x = 0.0;
  archive >> x;
  EXPECT_EQ(x, line.origin().x());  // origin first
}

}  // namespace
}  // namespace structmath
