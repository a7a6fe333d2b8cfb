// SPDX-License-Identifier: MIT
// RegularGrid, NormalGrid and CalculatedGrid: geometry, outside modes and node values.
#include "structmath/grid/regular_grid.hpp"

#include <cmath>
#include <stdexcept>

#include "structmath/grid/calculated_grid.hpp"
#include "structmath/grid/normal_grid.hpp"

namespace structmath {

Grid::~Grid() = default;

namespace {

Vector3D step_along(Vector3D const& edge, int nodes) {
  return nodes >= 2 ? edge / static_cast<double>(nodes - 1) : Vector3D(0.0, 0.0, 0.0);
}

double dot_in_order(Vector3D const& a, Vector3D const& b) {
  double s = a[0] * b[0];
  s += a[1] * b[1];
  s += a[2] * b[2];
  return s;
}

Point const default_origin(0.0, 0.0, 0.0);
Vector3D const unit_x(1.0, 0.0, 0.0);
Vector3D const unit_y(0.0, 1.0, 0.0);
Vector3D const unit_z(0.0, 0.0, 1.0);

}  // namespace

RegularGrid::RegularGrid(int nx, int ny, int nz, Point const& origin, Vector3D const& plus_x,
                         Vector3D const& plus_y, Vector3D const& plus_z)
    : origin_(origin),
      plus_x_(plus_x),
      plus_y_(plus_y),
      plus_z_(plus_z),
      nx_(nx),
      ny_(ny),
      nz_(nz) {
  if (nx < 1 || ny < 1 || nz < 1)
    throw std::invalid_argument("Grid: node counts must be at least 1");
  update_extra_attributes();
}

void RegularGrid::update_extra_attributes() {
  plus_x_length_ = std::sqrt(plus_x_ * plus_x_);
  plus_y_length_ = std::sqrt(plus_y_ * plus_y_);
  plus_z_length_ = std::sqrt(plus_z_ * plus_z_);
  step_x_ = step_along(plus_x_, nx_);
  step_y_ = step_along(plus_y_, ny_);
  step_z_ = step_along(plus_z_, nz_);
  step_x_length_ = std::sqrt(step_x_ * step_x_);
  step_y_length_ = std::sqrt(step_y_ * step_y_);
  step_z_length_ = std::sqrt(step_z_ * step_z_);
}

Point RegularGrid::far_corner() const { return origin_ + plus_x_ + plus_y_ + plus_z_; }

Point RegularGrid::local_space(Point const& p) const {
  Vector3D const d = p - origin_;
  // Every divisor uses plus_x_length_: see the header.
  double u = dot_in_order(d, plus_x_) / (plus_x_length_ * step_x_length_);
  double v = dot_in_order(d, plus_y_) / (plus_x_length_ * step_y_length_);
  double w = dot_in_order(d, plus_z_) / (plus_x_length_ * step_z_length_);
  if (is_repeating_) {
    u -= std::floor(u);
    v -= std::floor(v);
    w -= std::floor(w);
  }
  return Point(u, v, w);
}

bool RegularGrid::inside_grid(Point const& p) const {
  Point const l = local_space(p);
  return l.x() >= 0.0 && l.x() <= nx_ && l.y() >= 0.0 && l.y() <= ny_ && l.z() >= 0.0 &&
         l.z() <= nz_;
}

void RegularGrid::set_location_valuer(THandle<LocationValuer> valuer) {
  valuer_ = std::move(valuer);
}

void RegularGrid::set_outside_location_valuer(THandle<LocationValuer> valuer) {
  outside_valuer_ = std::move(valuer);
  has_outside_valuer_ = true;
  has_outside_value_ = false;
  is_repeating_ = false;
}

void RegularGrid::set_repeating(bool repeating) {
  is_repeating_ = repeating;
  if (repeating) {
    has_outside_value_ = false;
    has_outside_valuer_ = false;
  }
}

void RegularGrid::set_outside_value(double value) {
  outside_ = value;
  has_outside_value_ = true;
  is_repeating_ = false;
  has_outside_valuer_ = false;
}

double RegularGrid::value_at(Point const& p, bool outside_throws) const {
  if (inside_grid(p) || is_repeating_) return valuer_->value(*this, p);
  if (has_outside_valuer_) return outside_valuer_->value(*this, p);
  if (has_outside_value_) return outside_;
  if (outside_throws) throw std::runtime_error("Cannot obtain value for outside of grid");
  return valuer_->value(*this, p);
}

NormalGrid::NormalGrid() : NormalGrid(10, 10, 10) {}

NormalGrid::NormalGrid(int nx, int ny, int nz)
    : NormalGrid(nx, ny, nz, default_origin, unit_x, unit_y, unit_z) {}

NormalGrid::NormalGrid(int nx, int ny, int nz, Point const& origin, Vector3D const& plus_x,
                       Vector3D const& plus_y, Vector3D const& plus_z)
    : RegularGrid(nx, ny, nz, origin, plus_x, plus_y, plus_z), values_(nx, ny, nz, 0.0) {
  valuer_ = make_handle<SimpleInterpolator>();
}

NormalGrid::NormalGrid(int& nx, int& ny, int& nz, Point& origin, Vector3D& plus_x, Vector3D& plus_y,
                       Vector3D& plus_z)
    : NormalGrid(static_cast<int const&>(nx), ny, nz, static_cast<Point const&>(origin),
                 static_cast<Vector3D const&>(plus_x), plus_y, plus_z) {}

double NormalGrid::value(Point const& p) const { return value_at(p, true); }

CalculatedGrid::CalculatedGrid() : CalculatedGrid(10, 10, 10) {}

CalculatedGrid::CalculatedGrid(int nx, int ny, int nz)
    : CalculatedGrid(nx, ny, nz, default_origin, unit_x, unit_y, unit_z) {}

CalculatedGrid::CalculatedGrid(int nx, int ny, int nz, Point const& origin, Vector3D const& plus_x,
                               Vector3D const& plus_y, Vector3D const& plus_z)
    : RegularGrid(nx, ny, nz, origin, plus_x, plus_y, plus_z) {
  valuer_ = make_handle<default_locationValuer>();
  outside_valuer_ = make_handle<default_locationValuer>();
}

CalculatedGrid::CalculatedGrid(int& nx, int& ny, int& nz, Point& origin, Vector3D& plus_x,
                               Vector3D& plus_y, Vector3D& plus_z)
    : CalculatedGrid(static_cast<int const&>(nx), ny, nz, static_cast<Point const&>(origin),
                     static_cast<Vector3D const&>(plus_x), plus_y, plus_z) {}

double CalculatedGrid::value(int i, int j, int k) const { return value(location(i, j, k)); }

double CalculatedGrid::value(Point const& p) const { return value_at(p, false); }

void CalculatedGrid::set_value(int /*i*/, int /*j*/, int /*k*/, double /*value*/) {
  throw std::runtime_error("Cannot set a grid value for a calculated grid");
}

}  // namespace structmath
