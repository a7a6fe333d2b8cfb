// SPDX-License-Identifier: MIT
// Internal: the width-8, fixed, precision-3 coordinate format of the print functions.
#pragma once

#include <iomanip>
#include <ostream>

#include "structmath/numeric/point.hpp"
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
