// SPDX-License-Identifier: MIT
// Test helpers for the file readers: parse text as a named file, expect exact errors.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "structmath/io/parse_error.hpp"

namespace structmath::testing {

/// Runs a reader `read(std::istream&, name)` on text and expects a ParseError whose
/// what() is exactly message.
template <class Reader>
void expect_parse_error(Reader read, std::string const& name, std::string const& text,
                        std::string const& message) {
  std::istringstream in(text);
  try {
    (void)read(in, name);
    ADD_FAILURE() << "accepted:\n" << text;
  } catch (io::ParseError const& e) {
    EXPECT_EQ(std::string(e.what()), message);
  }
}

/// The text with its line number `line` (counted from 1) replaced.
inline std::string replace_line(std::string text, int line, std::string const& with) {
  std::size_t start = 0;
  for (int i = 1; i < line; ++i) start = text.find('\n', start) + 1;
  return text.replace(start, text.find('\n', start) - start, with);
}

}  // namespace structmath::testing
