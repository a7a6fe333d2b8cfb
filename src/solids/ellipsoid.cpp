// SPDX-License-Identifier: MIT
// Ellipsoid: the validity check, printing and comparison.
#include "structmath/solids/ellipsoid.hpp"

#include <cmath>
#include <ostream>
#include <stdexcept>
#include <string>

#include "../numeric/fixed_format.hpp"
#include "structmath/core/text_conversion.hpp"
#include "structmath/numeric/tolerance.hpp"

namespace structmath {

Ellipsoid::Ellipsoid(Point const& centre, Vector3D const& a1, Vector3D const& a2,
                     Vector3D const& a3)
    : centre_(centre), semi_axis1_(a1), semi_axis2_(a2), semi_axis3_(a3) {
  sanity_check();
}

Ellipsoid::~Ellipsoid() = default;

void Ellipsoid::sanity_check() const {
  Vector3D const* const axes[3] = {&semi_axis1_, &semi_axis2_, &semi_axis3_};
  for (unsigned int i = 0; i < 3; ++i) {
    double const length = std::sqrt(axes[i]->dot(*axes[i]));
    if (equals(length, 0.0, 1e-7)) {
      throw std::runtime_error("Ellipsoid semi_axis" + to_string(i + 1) +
                               " length is suspicious: " + to_string(length));
    }
  }
  static constexpr unsigned int pairs[3][2] = {{0, 1}, {0, 2}, {1, 2}};
  for (auto const& pair : pairs) {
    if (!equals(axes[pair[0]]->dot(*axes[pair[1]]), 0.0, 1e-6)) {
      throw std::runtime_error("Ellipsoid semi_axis" + to_string(pair[0] + 1) + " and semi_axis" +
                               to_string(pair[1] + 1) + " are not perpendicular");
    }
  }
}

void Ellipsoid::print(std::ostream& os) const {
  detail::StreamFormatGuard const guard(os);
  os << "centre: ";
  detail::write_fixed(os, centre_.vector());
  os << ", semi-axis 1: ";
  detail::write_fixed(os, semi_axis1_);
  os << ", semi-axis 2: ";
  detail::write_fixed(os, semi_axis2_);
  os << ", semi-axis 3: ";
  detail::write_fixed(os, semi_axis3_);
}

namespace {

bool same(Vector3D const& a, Vector3D const& b) noexcept {
  return a.x() == b.x() && a.y() == b.y() && a.z() == b.z();
}

}  // namespace

bool Ellipsoid::operator==(Ellipsoid const& other) const noexcept {
  return same(centre_.vector(), other.centre_.vector()) && same(semi_axis1_, other.semi_axis1_) &&
         same(semi_axis2_, other.semi_axis2_) && same(semi_axis3_, other.semi_axis3_);
}

bool equals(Ellipsoid const& a, Ellipsoid const& b, double tolerance) noexcept {
  return equals(a.centre(), b.centre(), tolerance) &&
         equals(a.semi_axis1(), b.semi_axis1(), tolerance) &&
         equals(a.semi_axis2(), b.semi_axis2(), tolerance) &&
         equals(a.semi_axis3(), b.semi_axis3(), tolerance);
}

}  // namespace structmath
