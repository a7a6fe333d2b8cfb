// SPDX-License-Identifier: MIT
// Internal: the width-8, fixed, precision-3 coordinate format shared by the print functions.
#pragma once

#include <iomanip>
#include <ostream>

#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"

namespace structmath::detail {

/// Writes one value at width 8, fixed, precision 3; the fixed and precision settings
/// stay on the stream afterwards.
inline void write_fixed(std::ostream& out, double value) {
  out << std::setw(8) << std::fixed << std::setprecision(3) << value;
}

inline void write_fixed(std::ostream& out, Vector3D const& v) {
  write_fixed(out, v.x());
  write_fixed(out, v.y());
  write_fixed(out, v.z());
}

inline void write_fixed(std::ostream& out, Point const& p) { write_fixed(out, p.vector()); }

}  // namespace structmath::detail
