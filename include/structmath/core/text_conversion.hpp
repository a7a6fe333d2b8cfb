// SPDX-License-Identifier: MIT
// Conversions between numbers and text used in messages and readers.
#pragma once

#include <sstream>
#include <string>

#include "structmath/export.hpp"

namespace structmath {

/// The shortest text that reads back as the same double: 180.0 gives "180",
/// 0.1 gives "0.1", 1e-20 gives "1e-20"; "nan", "inf" and "-inf" otherwise.
STRUCTMATH_API std::string double_to_string(double value);
/// Decimal text of an int.
STRUCTMATH_API std::string int_to_string(int value);
/// Reads one whole number with optional blanks (spaces, tabs, newlines) around it;
/// anything else, or a value out of range, throws std::invalid_argument quoting
/// the text: "string_to_double(): cannot convert 'text' to a double".
STRUCTMATH_API double string_to_double(std::string const& text);
/// As string_to_double, for a decimal int:
/// "string_to_int(): cannot convert 'text' to an int".
STRUCTMATH_API int string_to_int(std::string const& text);

/// The text that a default-formatted output string stream gives for the value
/// (for a double: six significant digits).
template <class T>
std::string to_string(T const& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

}  // namespace structmath
