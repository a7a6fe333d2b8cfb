// SPDX-License-Identifier: MIT
// LineReader and the field helpers shared by the text readers.
#include "line_reader.hpp"

#include <charconv>
#include <cmath>

#include "structmath/io/elements.hpp"

namespace structmath::io::detail {

bool LineReader::next(std::string& line) {
  if (has_unread_) {
    has_unread_ = false;
    line = std::move(unread_);
    ++line_;
    return true;
  }
  if (!std::getline(in_, line)) return false;
  ++line_;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

std::string LineReader::require(std::string const& what) {
  std::string line;
  if (!next(line)) {
    throw ParseError(name_, line_ + 1, "unexpected end of file, expected " + what);
  }
  return line;
}

void LineReader::unread(std::string line) {
  unread_ = std::move(line);
  has_unread_ = true;
  --line_;
}

void LineReader::fail(std::string const& problem) const { throw ParseError(name_, line_, problem); }

double LineReader::to_double(std::string_view field, std::string const& what) const {
  std::string_view const text = trim(field);
  double value = 0.0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
    fail("expected a number for " + what + ", found '" + std::string(field) + "'");
  }
  // from_chars reads "nan" and "inf"; no coordinate or grid value may be either.
  if (!std::isfinite(value)) {
    fail("expected a finite number for " + what + ", found '" + std::string(field) + "'");
  }
  return value;
}

namespace {

template <typename Integer>
Integer to_integer(LineReader const& reader, std::string_view field, std::string const& what) {
  std::string_view const text = trim(field);
  Integer value = 0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) {
    reader.fail("expected a whole number for " + what + ", found '" + std::string(field) + "'");
  }
  return value;
}

}  // namespace

int LineReader::to_int(std::string_view field, std::string const& what) const {
  return to_integer<int>(*this, field, what);
}

long long LineReader::to_count(std::string_view field, std::string const& what,
                               long long limit) const {
  auto const value = to_integer<long long>(*this, field, what);
  if (value < -limit || value > limit) {
    fail(what + " " + std::to_string(value) + " is out of range (at most " + std::to_string(limit) +
         " in magnitude)");
  }
  return value;
}

std::vector<std::string_view> split_fields(std::string_view line) {
  std::vector<std::string_view> fields;
  std::size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
    std::size_t const start = i;
    while (i < line.size() && line[i] != ' ' && line[i] != '\t') ++i;
    if (i > start) fields.push_back(line.substr(start, i - start));
  }
  return fields;
}

std::string_view trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

std::string element_of(LineReader const& reader, std::string_view field) {
  std::string const text(trim(field));
  if (!text.empty() && text[0] >= '0' && text[0] <= '9') {
    int const z = reader.to_int(text, "the atomic number");
    if (z < 1 || z > 118) reader.fail("unknown element '" + text + "'");
    return element_symbol(z);
  }
  int const z = atomic_number_of_label(text);
  if (z == 0) reader.fail("unknown element '" + text + "'");
  return element_symbol(z);
}

}  // namespace structmath::io::detail
