// SPDX-License-Identifier: MIT
// ParseError: the exception every reader throws for a malformed or truncated file.
#pragma once

#include <stdexcept>
#include <string>

#include "structmath/io/export.hpp"

namespace structmath::io {

/// Thrown by the readers. what() is "<file>:<line>: <problem>", for example
/// "caffeine.xyz:5: expected a number for x, found 'l.23'"; line 0 means the file
/// as a whole (it could not be opened, or it ended early). Bytes of the file name
/// and the problem that are not printable UTF-8 (control characters, invalid
/// sequences) are written as \xHH, so that the message stays one readable line.
class STRUCTMATH_IO_API ParseError : public std::runtime_error {
 public:
  ParseError(std::string file, int line, std::string const& problem);

  std::string const& file() const noexcept { return file_; }
  int line() const noexcept { return line_; }
  /// What was wrong, without the file and line, escaped as in what().
  std::string const& problem() const noexcept { return problem_; }

 private:
  std::string file_;
  int line_;
  std::string problem_;
};

/// The text with every byte that is not part of printable UTF-8 written as \xHH
/// (a backslash followed by two upper-case hexadecimal digits).
STRUCTMATH_IO_API std::string printable(std::string const& text);

}  // namespace structmath::io
