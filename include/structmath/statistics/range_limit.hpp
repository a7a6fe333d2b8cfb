// SPDX-License-Identifier: MIT
// RangeLimit: an interval with optional, open or closed bounds.
#pragma once

#include <iosfwd>
#include <limits>
#include <string>

#include "structmath/core/archive.hpp"
#include "structmath/export.hpp"
#include "structmath/statistics/uncertain_value.hpp"

namespace structmath {

/// An interval of the real line: a lower and an upper bound, each closed
/// (the bound itself is inside) or open, or absent. An absent bound is held as an
/// open infinite one, so lower() is -inf and upper() +inf when there is none.
///
/// Text form: interval notation with a square bracket for a closed bound, a round
/// one for an open bound and "inf" for an absent one, "[1.5, 3)", "(0, 2.5]",
/// "[0, inf)", "(-inf, inf)". Numbers print as the shortest text that reads back
/// as the same double. Parsing accepts blanks around the numbers and the
/// whole text, "+inf" for "inf", and any number text of `string_to_double`.
class STRUCTMATH_API RangeLimit {
 public:
  /// The whole real line.
  RangeLimit() = default;
  /// Bounds lower and upper; -inf for lower or +inf for upper means no bound (the
  /// closed flag is then ignored). Throws std::invalid_argument "RangeLimit: invalid
  /// bounds" for a NaN bound, +inf as lower, -inf as upper, or lower > upper.
  RangeLimit(double lower, double upper, bool lower_closed = true, bool upper_closed = true);

  /// Throws std::invalid_argument "RangeLimit::parse(): cannot convert 'text' to a
  /// range" for text not in the form above or with invalid bounds, a closed
  /// infinite bound included.
  static RangeLimit parse(std::string const& text);

  bool has_lower() const noexcept { return lower_ > -kInfinity; }
  bool has_upper() const noexcept { return upper_ < kInfinity; }
  double lower() const noexcept { return lower_; }
  double upper() const noexcept { return upper_; }
  bool lower_closed() const noexcept { return lower_closed_; }
  bool upper_closed() const noexcept { return upper_closed_; }

  /// Replace one bound; the same checks as the constructor, and the range is
  /// unchanged when they fail.
  void set_lower(double lower, bool closed = true);
  void set_upper(double upper, bool closed = true);
  void clear_lower() noexcept { set_bounds(-kInfinity, false, upper_, upper_closed_); }
  void clear_upper() noexcept { set_bounds(lower_, lower_closed_, kInfinity, false); }

  /// Whether x lies inside; NaN never does.
  bool contains(double x) const noexcept;
  /// Whether the value lies inside when it may move by up to k standard
  /// uncertainties, that is whether [value - k u, value + k u] meets the range.
  /// k = 0 tests the value alone. Throws std::invalid_argument
  /// "RangeLimit::contains: k must not be negative" for k < 0 or NaN.
  bool contains(UncertainValue const& value, double k = 0.0) const;

  void print(std::ostream& os) const;
  std::string to_string() const;
  /// Streams lower (double), lower closed (int 0 or 1), upper, upper closed.
  void write(Archive& archive) const;
  /// Throws std::runtime_error "RangeLimit::read: invalid range in archive" for
  /// flags other than 0 and 1 or bounds the constructor rejects; the range is
  /// then unchanged.
  void read(Archive& archive);

 private:
  static constexpr double kInfinity = std::numeric_limits<double>::infinity();
  static bool valid(double lower, double upper) noexcept;
  void set_bounds(double lower, bool lower_closed, double upper, bool upper_closed) noexcept;

  double lower_ = -kInfinity;
  double upper_ = kInfinity;
  bool lower_closed_ = false;
  bool upper_closed_ = false;
};

STRUCTMATH_API std::ostream& operator<<(std::ostream& os, RangeLimit const& range);

}  // namespace structmath
