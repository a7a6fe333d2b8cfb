// SPDX-License-Identifier: MIT
// Box: construction by merging, transformation, corners, printing and archiving.
#include "structmath/solids/box.hpp"

#include <ostream>

#include "../numeric/fixed_format.hpp"
#include "structmath/core/archive.hpp"
#include "structmath/geometry/geometry_functions.hpp"
#include "structmath/numeric/tolerance.hpp"

namespace structmath {

Box::Box(Point const& a, Point const& b) noexcept {
  merge(a);
  merge(b);
}

Box::Box(std::vector<Point> const& points) noexcept { merge(points); }

Box::~Box() = default;

THandle<Box> Box::bounding_box() const { return make_handle<Box>(*this); }

THandle<Box> Box::transform_by(Matrix3D const& m) const {
  Point const a = m * min_corner();
  Point const b = m * max_corner();
  return make_handle<Box>(a.x(), b.x(), a.y(), b.y(), a.z(), b.z());
}

void Box::merge(Point const& p) noexcept {
  if (min_x_ > p.x()) min_x_ = p.x();
  if (p.x() > max_x_) max_x_ = p.x();
  if (min_y_ > p.y()) min_y_ = p.y();
  if (p.y() > max_y_) max_y_ = p.y();
  if (min_z_ > p.z()) min_z_ = p.z();
  if (p.z() > max_z_) max_z_ = p.z();
}

void Box::merge(Box const& other) noexcept {
  if (other.min_x_ < min_x_) min_x_ = other.min_x_;
  if (other.max_x_ > max_x_) max_x_ = other.max_x_;
  if (other.min_y_ < min_y_) min_y_ = other.min_y_;
  if (other.max_y_ > max_y_) max_y_ = other.max_y_;
  if (other.min_z_ < min_z_) min_z_ = other.min_z_;
  if (other.max_z_ > max_z_) max_z_ = other.max_z_;
}

void Box::merge(std::vector<Point> const& points) noexcept {
  for (Point const& p : points) merge(p);
}

void Box::expand(double dx, double dy, double dz) noexcept {
  min_x_ -= dx;
  max_x_ += dx;
  min_y_ -= dy;
  max_y_ += dy;
  min_z_ -= dz;
  max_z_ += dz;
}

THandle<std::vector<Point>> Box::corners() const {
  auto result = make_handle<std::vector<Point>>();
  result->reserve(8);
  for (double const x : {min_x_, max_x_}) {
    for (double const y : {min_y_, max_y_}) {
      for (double const z : {min_z_, max_z_}) result->emplace_back(x, y, z);
    }
  }
  return result;
}

Point Box::centroid() const noexcept { return structmath::centroid(min_corner(), max_corner()); }

void Box::print(std::ostream& os) const {
  detail::StreamFormatGuard const guard(os);
  os << "min: ";
  detail::write_fixed(os, Vector3D(min_x_, min_y_, min_z_));
  os << ", max: ";
  detail::write_fixed(os, Vector3D(max_x_, max_y_, max_z_));
}

void Box::write(Archive& archive) const {
  archive << min_x_ << max_x_ << min_y_ << max_y_ << min_z_ << max_z_;
}

void Box::read(Archive& archive) {
  double in[6];
  archive >> in[0] >> in[1] >> in[2] >> in[3] >> in[4] >> in[5];
  *this = Box(in[0], in[1], in[2], in[3], in[4], in[5]);
}

bool equals(Box const& a, Box const& b, double tolerance) noexcept {
  return equals(a.min_x(), b.min_x(), tolerance) && equals(a.max_x(), b.max_x(), tolerance) &&
         equals(a.min_y(), b.min_y(), tolerance) && equals(a.max_y(), b.max_y(), tolerance) &&
         equals(a.min_z(), b.min_z(), tolerance) && equals(a.max_z(), b.max_z(), tolerance);
}

}  // namespace structmath
