// SPDX-License-Identifier: MIT
// RangeLimit: interval tests, interval notation and archiving.
#include "structmath/statistics/range_limit.hpp"

#include <cmath>
#include <ostream>
#include <stdexcept>

#include "structmath/core/text_conversion.hpp"

namespace structmath {

namespace {

constexpr char kInvalidBounds[] = "RangeLimit: invalid bounds";

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

std::string trimmed(std::string const& text) {
  std::size_t first = 0;
  std::size_t last = text.size();
  while (first < last && is_blank(text[first])) ++first;
  while (last > first && is_blank(text[last - 1])) --last;
  return text.substr(first, last - first);
}

}  // namespace

bool RangeLimit::valid(double lower, double upper) noexcept {
  if (std::isnan(lower) || std::isnan(upper)) return false;
  if (lower == kInfinity || upper == -kInfinity) return false;
  return lower <= upper;
}

void RangeLimit::set_bounds(double lower, bool lower_closed, double upper,
                            bool upper_closed) noexcept {
  lower_ = lower;
  upper_ = upper;
  lower_closed_ = lower_closed && lower > -kInfinity;
  upper_closed_ = upper_closed && upper < kInfinity;
}

RangeLimit::RangeLimit(double lower, double upper, bool lower_closed, bool upper_closed) {
  if (!valid(lower, upper)) throw std::invalid_argument(kInvalidBounds);
  set_bounds(lower, lower_closed, upper, upper_closed);
}

void RangeLimit::set_lower(double lower, bool closed) {
  if (!valid(lower, upper_)) throw std::invalid_argument(kInvalidBounds);
  set_bounds(lower, closed, upper_, upper_closed_);
}

void RangeLimit::set_upper(double upper, bool closed) {
  if (!valid(lower_, upper)) throw std::invalid_argument(kInvalidBounds);
  set_bounds(lower_, lower_closed_, upper, closed);
}

RangeLimit RangeLimit::parse(std::string const& text) {
  auto const fail = [&text]() -> RangeLimit {
    throw std::invalid_argument("RangeLimit::parse(): cannot convert '" + text + "' to a range");
  };
  std::string const body = trimmed(text);
  if (body.size() < 3) return fail();
  char const open = body.front();
  char const close = body.back();
  if ((open != '[' && open != '(') || (close != ']' && close != ')')) return fail();
  std::size_t const comma = body.find(',');
  if (comma == std::string::npos || body.find(',', comma + 1) != std::string::npos) return fail();
  auto const bound = [&fail](std::string const& part, double infinity, bool closed) {
    std::string const word = trimmed(part);
    double value = 0.0;
    if (word == (infinity < 0 ? "-inf" : "inf") || (infinity > 0 && word == "+inf")) {
      if (closed) fail();
      return infinity;
    }
    try {
      value = string_to_double(word);
    } catch (std::invalid_argument const&) {
      fail();
    }
    if (!std::isfinite(value)) fail();
    return value;
  };
  double const lower = bound(body.substr(1, comma - 1), -kInfinity, open == '[');
  double const upper =
      bound(body.substr(comma + 1, body.size() - comma - 2), kInfinity, close == ']');
  if (!valid(lower, upper)) return fail();
  return RangeLimit(lower, upper, open == '[', close == ']');
}

bool RangeLimit::contains(double x) const noexcept {
  bool const above = lower_closed_ ? x >= lower_ : x > lower_;
  bool const below = upper_closed_ ? x <= upper_ : x < upper_;
  return above && below;
}

bool RangeLimit::contains(UncertainValue const& value, double k) const {
  if (!(k >= 0.0)) throw std::invalid_argument("RangeLimit::contains: k must not be negative");
  double const margin = k * value.standard_uncertainty();
  double const high = value.value() + margin;
  double const low = value.value() - margin;
  bool const above = lower_closed_ ? high >= lower_ : high > lower_;
  bool const below = upper_closed_ ? low <= upper_ : low < upper_;
  return above && below;
}

std::string RangeLimit::to_string() const {
  return std::string(lower_closed_ ? "[" : "(") + double_to_string(lower_) + ", " +
         double_to_string(upper_) + (upper_closed_ ? "]" : ")");
}

void RangeLimit::print(std::ostream& os) const { os << to_string(); }

void RangeLimit::write(Archive& archive) const {
  archive << lower_ << (lower_closed_ ? 1 : 0) << upper_ << (upper_closed_ ? 1 : 0);
}

void RangeLimit::read(Archive& archive) {
  double lower = 0.0;
  double upper = 0.0;
  int lower_closed = 0;
  int upper_closed = 0;
  archive >> lower >> lower_closed >> upper >> upper_closed;
  bool const flags_ok =
      (lower_closed == 0 || lower_closed == 1) && (upper_closed == 0 || upper_closed == 1);
  if (!flags_ok || !valid(lower, upper)) {
    throw std::runtime_error("RangeLimit::read: invalid range in archive");
  }
  set_bounds(lower, lower_closed == 1, upper, upper_closed == 1);
}

std::ostream& operator<<(std::ostream& os, RangeLimit const& range) {
  range.print(os);
  return os;
}

}  // namespace structmath
