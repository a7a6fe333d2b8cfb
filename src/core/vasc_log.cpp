// SPDX-License-Identifier: MIT
// VascLog: level state, the target stream and a discarding stream for disabled lines.
#include "structmath/core/vasc_log.hpp"

#include <iostream>
#include <ostream>
#include <streambuf>

namespace structmath {

namespace {

class NullBuffer final : public std::streambuf {
 protected:
  int_type overflow(int_type ch) override { return traits_type::not_eof(ch); }
  std::streamsize xsputn(char const*, std::streamsize n) override { return n; }
};

struct LogState {
  std::ostream* target = &std::clog;
  NullBuffer null_buffer;
  std::ostream null_stream{&null_buffer};
  bool line_enabled = false;
};

LogState& state() {
  static LogState instance;
  return instance;
}

}  // namespace

int VascLog::level_ = 0;
int VascLog::minimum_level_ = 0;

std::ostream& VascLog::start_debug_line(int level) {
  LogState& s = state();
  s.line_enabled = enabled(level);
  return s.line_enabled ? *s.target : s.null_stream;
}

void VascLog::end_debug_line() {
  LogState& s = state();
  if (s.line_enabled) *s.target << '\n';
  s.line_enabled = false;
}

void VascLog::set_stream(std::ostream& stream) noexcept { state().target = &stream; }

std::ostream& VascLog::stream() noexcept { return *state().target; }

}  // namespace structmath
