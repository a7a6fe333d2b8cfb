// SPDX-License-Identifier: MIT
// Box: the axis-aligned box, the bounding-box value of every solid and itself a solid.
#pragma once

#include <iosfwd>
#include <vector>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"
#include "structmath/numeric/matrix.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/solids/solid.hpp"

namespace structmath {

/// An axis-aligned box [min_x, max_x] x [min_y, max_y] x [min_z, max_z], bounds inclusive.
///
/// Bounds are stored per axis, lower then upper; that is also the order of the six-number
/// constructor and of the archive. The empty box has every lower bound at +1e10 and every
/// upper bound at -1e10, so merging anything into it gives exactly that thing's extent;
/// +-1e10 stands for an unbounded side. Nothing is validated: reversed bounds are kept
/// and show up through is_empty().
class STRUCTMATH_API Box : public Solid {
 public:
  /// The magnitude that stands for infinity in box bounds.
  static constexpr double unbounded = 1e10;

  /// The empty box.
  Box() noexcept = default;
  /// The box spanned by two opposite corners given in any order.
  Box(Point const& a, Point const& b) noexcept;
  /// The smallest box holding the points; the empty box for an empty list.
  explicit Box(std::vector<Point> const& points) noexcept;
  /// Stores the six bounds as given.
  Box(double min_x, double max_x, double min_y, double max_y, double min_z, double max_z) noexcept
      : min_x_(min_x), max_x_(max_x), min_y_(min_y), max_y_(max_y), min_z_(min_z), max_z_(max_z) {}
  Box(Box const&) = default;
  Box& operator=(Box const&) = default;
  ~Box() override;

  double min_x() const noexcept { return min_x_; }
  double max_x() const noexcept { return max_x_; }
  double min_y() const noexcept { return min_y_; }
  double max_y() const noexcept { return max_y_; }
  double min_z() const noexcept { return min_z_; }
  double max_z() const noexcept { return max_z_; }
  /// The corner (min_x, min_y, min_z).
  Point min_corner() const noexcept { return Point(min_x_, min_y_, min_z_); }
  /// The corner (max_x, max_y, max_z).
  Point max_corner() const noexcept { return Point(max_x_, max_y_, max_z_); }
  /// (max_x - min_x)(max_y - min_y)(max_z - min_z); zero or negative for reversed bounds.
  double volume() const noexcept {
    return (max_x_ - min_x_) * (max_y_ - min_y_) * (max_z_ - min_z_);
  }

  /// A new copy of this box.
  THandle<Box> bounding_box() const override;
  /// min <= coordinate <= max on every axis, tested x, y, z, lower bound first; a NaN
  /// coordinate is outside.
  bool contains(Point const& p) const override {
    return min_x_ <= p.x() && p.x() <= max_x_ && min_y_ <= p.y() && p.y() <= max_y_ &&
           min_z_ <= p.z() && p.z() <= max_z_;
  }

  /// The box with corners m * min_corner() and m * max_corner(), bounds not re-sorted.
  /// Exact for diagonal matrices with positive entries only; a matrix that flips or mixes
  /// axes can give reversed bounds, which is_empty() reports. Kept two-corner: callers
  /// scale boxes with it and rely on its cost and its reversed bounds.
  THandle<Box> transform_by(Matrix3D const& m) const;
  /// True when some axis has min >= max, so a box flat in one axis is empty although
  /// contains() accepts the points on it.
  bool is_empty() const noexcept {
    return min_x_ >= max_x_ || min_y_ >= max_y_ || min_z_ >= max_z_;
  }
  /// Whether the boxes overlap on every axis; boxes that touch intersect.
  bool intersects(Box const& other) const noexcept {
    return min_x_ <= other.max_x_ && other.min_x_ <= max_x_ && min_y_ <= other.max_y_ &&
           other.min_y_ <= max_y_ && min_z_ <= other.max_z_ && other.min_z_ <= max_z_;
  }

  /// Grows the box to hold the point.
  void merge(Point const& p) noexcept;
  /// Grows the box to hold the other box.
  void merge(Box const& other) noexcept;
  /// Grows the box to hold each point in turn.
  void merge(std::vector<Point> const& points) noexcept;
  /// Moves every lower bound down and every upper bound up by d.
  void expand(double d) noexcept { expand(d, d, d); }
  /// As expand(d), with one amount per axis.
  void expand(double dx, double dy, double dz) noexcept;

  /// The eight corners, x varying slowest and z fastest: (min, min, min),
  /// (min, min, max), (min, max, min), ..., (max, max, max).
  THandle<std::vector<Point>> corners() const;
  /// The centre: the mean of the lower and the upper corner.
  Point centroid() const noexcept;

  /// "min: " lower corner ", max: " upper corner, each coordinate fixed, width 8,
  /// precision 3, without a line end. The stream's format is restored afterwards.
  void print(std::ostream& os) const override;
  /// min_x, max_x, min_y, max_y, min_z, max_z as doubles.
  void write(Archive& archive) const override;
  /// Reads what write() wrote; a truncated archive leaves the box unchanged.
  void read(Archive& archive) override;

 private:
  double min_x_ = unbounded;
  double max_x_ = -unbounded;
  double min_y_ = unbounded;
  double max_y_ = -unbounded;
  double min_z_ = unbounded;
  double max_z_ = -unbounded;
};

/// The tolerant scalar equals on the six bounds in field order.
STRUCTMATH_API bool equals(Box const& a, Box const& b, double tolerance) noexcept;

}  // namespace structmath
