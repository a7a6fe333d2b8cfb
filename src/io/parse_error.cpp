// SPDX-License-Identifier: MIT
// ParseError: "<file>:<line>: <problem>", with unprintable bytes escaped.
#include "structmath/io/parse_error.hpp"

#include <cstdio>

namespace structmath::io {

namespace {

// Length of the well-formed UTF-8 sequence of a printable character starting at
// text[i], or 0 for a control character, a stray or overlong byte.
std::size_t printable_length(std::string const& text, std::size_t i) {
  auto const byte = [&](std::size_t k) { return static_cast<unsigned char>(text[k]); };
  unsigned char const lead = byte(i);
  if (lead < 0x80) return lead >= 0x20 && lead != 0x7f ? 1 : 0;
  std::size_t length = 0;
  unsigned int code = 0;
  if (lead >= 0xc2 && lead <= 0xdf) {
    length = 2;
    code = lead & 0x1fu;
  } else if (lead >= 0xe0 && lead <= 0xef) {
    length = 3;
    code = lead & 0x0fu;
  } else if (lead >= 0xf0 && lead <= 0xf4) {
    length = 4;
    code = lead & 0x07u;
  } else {
    return 0;
  }
  if (i + length > text.size()) return 0;
  for (std::size_t k = 1; k < length; ++k) {
    if ((byte(i + k) & 0xc0u) != 0x80u) return 0;
    code = (code << 6) | (byte(i + k) & 0x3fu);
  }
  bool const overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  bool const surrogate = code >= 0xd800 && code <= 0xdfff;
  bool const c1_control = code >= 0x80 && code < 0xa0;
  if (overlong || surrogate || code > 0x10ffff || c1_control) return 0;
  return length;
}

}  // namespace

std::string printable(std::string const& text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    std::size_t const length = printable_length(text, i);
    if (length > 0) {
      result.append(text, i, length);
      i += length;
      continue;
    }
    char escape[5];
    std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned char>(text[i]));
    result += escape;
    ++i;
  }
  return result;
}

ParseError::ParseError(std::string file, int line, std::string const& problem)
    : std::runtime_error(printable(file) + ":" + std::to_string(line) + ": " + printable(problem)),
      file_(std::move(file)),
      line_(line),
      problem_(printable(problem)) {}

}  // namespace structmath::io
