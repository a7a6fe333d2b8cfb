// SPDX-License-Identifier: MIT
// Angle: normalisation, inverse trigonometric factories, printing and streaming.
#include "structmath/numeric/angle.hpp"

#include <ostream>
#include <stdexcept>

#include "structmath/core/archive.hpp"
#include "structmath/core/text_conversion.hpp"

namespace structmath {

namespace {

// Values up to this many turns are reduced by repeated addition or subtraction alone
// (at most about 17 million steps, some tens of milliseconds).
constexpr double loop_turns = 16777216.0;

}  // namespace

void Angle::modulo() noexcept {
  // Kept for infinities and beyond 2^24 turns only: there the loops below would never
  // end (inf - 2pi is inf) or take too long, so a floating remainder brings the value
  // near the range first.
  if (std::isinf(value_)) {
    value_ = std::nan("");
    return;
  }
  if (std::fabs(value_) > loop_turns * two_pi) value_ = std::fmod(value_, two_pi);
  while (value_ < 0.0) value_ += two_pi;
  while (value_ >= two_pi) value_ -= two_pi;  // not '!(value_ < two_pi)': NaN must leave
}

void Angle::print(std::ostream& out) const { out << double_to_string(value_ * radians_to_degrees); }

void Angle::write(Archive& archive) const { archive << value_; }

void Angle::read(Archive& archive) { archive >> value_; }

Angle Angle::asin(double x) {
  if (x < -1.0 || x > +1.0) {
    throw std::invalid_argument("Angle::asin() : argument must be between -1.0 and +1.0.");
  }
  return Angle(std::asin(x));
}

Angle Angle::acos(double x) {
  if (x < -1.0 || x > +1.0) {
    throw std::invalid_argument("Angle::acos() : argument must be between -1.0 and +1.0.");
  }
  return Angle(std::acos(x));
}

std::ostream& operator<<(std::ostream& out, Angle const& angle) {
  angle.print(out);
  return out;
}

Angle minimum_difference(Angle const& a, Angle const& b) { return Angle::acos(cos(a - b)); }

Angle maximum_difference(Angle const& a, Angle const& b) {
  return Angle(Angle::two_pi) - minimum_difference(a, b);
}

}  // namespace structmath
