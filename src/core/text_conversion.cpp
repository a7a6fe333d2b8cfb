// SPDX-License-Identifier: MIT
// Shortest round-trip printing of doubles and strict whole-text parsing of numbers.
#include "structmath/core/text_conversion.hpp"

#include <charconv>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace structmath {

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// The text without its surrounding blanks and without one leading '+'
// (std::from_chars does not accept a plus sign).
std::string_view number_part(std::string const& text) {
  std::size_t first = 0;
  std::size_t last = text.size();
  while (first < last && is_blank(text[first])) ++first;
  while (last > first && is_blank(text[last - 1])) --last;
  std::string_view part(text.data() + first, last - first);
  if (part.size() > 1 && part[0] == '+' && part[1] != '-' && part[1] != '+') part.remove_prefix(1);
  return part;
}

template <class T>
bool parse_whole(std::string const& text, T& value) {
  std::string_view const part = number_part(text);
  if (part.empty()) return false;
  T parsed{};
  auto const [end, error] = std::from_chars(part.data(), part.data() + part.size(), parsed);
  if (error != std::errc() || end != part.data() + part.size()) return false;
  value = parsed;
  return true;
}

}  // namespace

std::string double_to_string(double value) {
  char buffer[32];
  auto const result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

std::string int_to_string(int value) { return std::to_string(value); }

double string_to_double(std::string const& text) {
  double value = 0.0;
  if (!parse_whole(text, value)) {
    throw std::invalid_argument("string_to_double(): cannot convert '" + text + "' to a double");
  }
  return value;
}

int string_to_int(std::string const& text) {
  int value = 0;
  if (!parse_whole(text, value)) {
    throw std::invalid_argument("string_to_int(): cannot convert '" + text + "' to an int");
  }
  return value;
}

}  // namespace structmath
