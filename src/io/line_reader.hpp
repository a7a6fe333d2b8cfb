// SPDX-License-Identifier: MIT
// LineReader: numbered line access and strict field conversion for the text readers.
#pragma once

#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "structmath/io/parse_error.hpp"

namespace structmath::io::detail {

/// Reads a text stream line by line, counting lines from 1, and turns fields into
/// numbers or throws ParseError at the current line.
class LineReader {
 public:
  LineReader(std::istream& in, std::string name) : in_(in), name_(std::move(name)) {}

  /// The next line without its end (a trailing '\r' is dropped); false at the end.
  bool next(std::string& line);
  /// Gives a line back: the next call of next() returns it again, with its number.
  void unread(std::string line);
  /// The next line, or a ParseError "unexpected end of file, expected <what>".
  std::string require(std::string const& what);

  int line_number() const noexcept { return line_; }
  std::string const& name() const noexcept { return name_; }

  [[noreturn]] void fail(std::string const& problem) const;
  /// Whole-field conversions; `what` names the field in the message.
  double to_double(std::string_view field, std::string const& what) const;
  int to_int(std::string_view field, std::string const& what) const;
  /// A signed count read wide, so that any whole number in the file is caught:
  /// "<what> <n> is out of range (at most <limit> in magnitude)" beyond the limit.
  long long to_count(std::string_view field, std::string const& what, long long limit) const;

 private:
  std::istream& in_;
  std::string name_;
  int line_ = 0;
  bool has_unread_ = false;
  std::string unread_;
};

/// Whitespace-separated fields of a line.
std::vector<std::string_view> split_fields(std::string_view line);
/// The text without surrounding blanks.
std::string_view trim(std::string_view text);
/// The element symbol for a field that holds an atom label (a symbol in any case, D or T
/// for hydrogen) or an atomic number, or a ParseError "unknown element '<field>'".
std::string element_of(LineReader const& reader, std::string_view field);

}  // namespace structmath::io::detail
