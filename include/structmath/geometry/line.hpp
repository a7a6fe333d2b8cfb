// SPDX-License-Identifier: MIT
// Line and LineSegment: infinite and finite straight lines in canonical form.
#pragma once

#include <iosfwd>

#include "structmath/export.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath {

class Archive;
class LineSegment;

/// An infinite straight line held canonically: a unit direction and, as origin, the
/// point of the line nearest (0, 0, 0), so origin . direction == 0. The sense of the
/// direction is kept as constructed. Constructors that normalise throw
/// std::runtime_error("Cannot normalize a zero length Vector") when the direction's
/// length is within 1e-7 of zero.
class STRUCTMATH_API Line {
 public:
  /// The z axis: origin (0, 0, 0), direction (0, 0, 1).
  Line() noexcept;
  /// The line through p along v.
  Line(Point const& p, Vector3D const& v);
  /// The line through a and b, directed from a to b.
  Line(Point const& a, Point const& b);
  /// The line through the segment's two points, directed from point1 to point2.
  explicit Line(LineSegment const& segment);

  Point const& origin() const noexcept { return origin_; }
  Vector3D const& direction() const noexcept { return direction_; }

  /// The point of the line nearest p.
  Point projection(Point const& p) const noexcept;
  /// The distance from p to the line.
  double distance(Point const& p) const noexcept;

  /// "origin: " and the origin, ", direction: " and the direction, each coordinate at
  /// width 8, fixed, precision 3; no line end.
  void print(std::ostream& out) const;
  /// Origin, then direction, each as three doubles.
  void write(Archive& archive) const;
  void read(Archive& archive);

 private:
  Point origin_;
  Vector3D direction_;
};

/// True when the origins agree within the tolerance (per coordinate) and the directions
/// agree or are opposite within it: lines of opposite sense are equal.
STRUCTMATH_API bool equals(Line const& a, Line const& b, double tolerance) noexcept;

/// A straight segment between two points, stored in the tolerant x-then-y-then-z order
/// (Vector3DCompareXYZ with 1e-7), so the order of the arguments does not matter.
/// Never throws; a degenerate segment has length 0.
class STRUCTMATH_API LineSegment {
 public:
  /// From (0, 0, 0) to (0, 0, 1).
  LineSegment() noexcept;
  /// Stores a and b, swapped when b precedes a.
  LineSegment(Point const& a, Point const& b) noexcept;

  Point const& point1() const noexcept { return point1_; }
  Point const& point2() const noexcept { return point2_; }
  double length() const noexcept;
  /// The point halfway between the ends.
  Point midpoint() const noexcept;

  /// "point 1: " and point1, ", point 2: " and point2, each coordinate at width 8,
  /// fixed, precision 3; no line end.
  void print(std::ostream& out) const;
  /// point1, then point2, each as three doubles.
  void write(Archive& archive) const;
  void read(Archive& archive);

 private:
  Point point1_;
  Point point2_;
};

/// Both ends equal within the tolerance, in stored order.
STRUCTMATH_API bool equals(LineSegment const& a, LineSegment const& b, double tolerance) noexcept;

}  // namespace structmath
