// SPDX-License-Identifier: MIT
// VascLog: the library's levelled debug log.
#pragma once

#include <iosfwd>

#include "structmath/export.hpp"

namespace structmath {

/// Process-wide debug log. A line of level L is written only when
/// `enabled(L)`, that is `level_ >= L && minimum_level_ <= L`; both levels are 0
/// by default, so nothing is written. Not synchronised: set the levels and the
/// stream before any library call that may log.
class STRUCTMATH_API VascLog {
 public:
  static int level_;
  static int minimum_level_;

  static bool enabled(int level) noexcept { return level_ >= level && minimum_level_ <= level; }

  /// Opens a line: returns the log stream when level is enabled, otherwise a
  /// stream that discards what is written into it.
  static std::ostream& start_debug_line(int level);
  /// Closes the line opened last: writes a newline when that line was enabled.
  static void end_debug_line();

  /// Points the log at another stream (the default is std::clog). The stream
  /// must outlive its use by the log.
  static void set_stream(std::ostream& stream) noexcept;
  static std::ostream& stream() noexcept;
};

}  // namespace structmath
