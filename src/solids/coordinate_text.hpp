// SPDX-License-Identifier: MIT
// Coordinate printing shared by the solids' print functions (internal).
#pragma once

#include <iomanip>
#include <ostream>

#include "structmath/numeric/vector.hpp"

namespace structmath::detail {

/// Restores a stream's flags, precision and fill when it goes out of scope.
class StreamFormatGuard {
 public:
  explicit StreamFormatGuard(std::ostream& os)
      : os_(os), flags_(os.flags()), precision_(os.precision()), fill_(os.fill()) {}
  ~StreamFormatGuard() {
    os_.flags(flags_);
    os_.precision(precision_);
    os_.fill(fill_);
  }
  StreamFormatGuard(StreamFormatGuard const&) = delete;
  StreamFormatGuard& operator=(StreamFormatGuard const&) = delete;

 private:
  std::ostream& os_;
  std::ios_base::fmtflags flags_;
  std::streamsize precision_;
  char fill_;
};

/// Writes three coordinates, each fixed with width 8 and precision 3, no separator.
inline void write_coordinates(std::ostream& os, double x, double y, double z) {
  os << std::fixed << std::setprecision(3) << std::setw(8) << x << std::setw(8) << y << std::setw(8)
     << z;
}

inline void write_coordinates(std::ostream& os, Vector3D const& v) {
  write_coordinates(os, v.x(), v.y(), v.z());
}

}  // namespace structmath::detail
