// SPDX-License-Identifier: MIT
// Fraction arithmetic on operands read unsimplified, as known-answer cases describe it.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "structmath/core/archive.hpp"
#include "structmath/numeric/fraction.hpp"
#include "support/known_answers.hpp"

namespace structmath::testing {

/// The fraction whose whole, numerator and denominator are read from an archive as
/// given, without simplification.
inline Fraction read_unsimplified(std::vector<int> const& fields) {
  Archive archive;
  archive << fields.at(0) << fields.at(1) << fields.at(2);
  Fraction f;
  f.read(archive);
  return f;
}

inline std::vector<int> fields_of(Fraction const& f) {
  return {f.whole(), f.numerator(), f.denominator()};
}

/// a and b ("a", "b": whole numerator denominator) read unsimplified, combined: the
/// fields of a + b, a - b, a * b and a / b ("division_by_zero" when it throws that),
/// and a == b, a < b.
inline AnswerFields library_fraction_outcome(AnswerCase const& c) {
  Fraction const a = read_unsimplified(c.ints("a"));
  Fraction const b = read_unsimplified(c.ints("b"));
  AnswerFields out;
  out.add("sum", fields_of(a + b))
      .add("difference", fields_of(a - b))
      .add("product", fields_of(a * b));
  try {
    out.add("quotient", fields_of(a / b));
  } catch (std::invalid_argument const& e) {
    if (std::string(e.what()) != "Fraction: division by zero.") throw;
    out.add("quotient", std::vector<std::string>{"division_by_zero"});
  }
  out.add("equal", a == b).add("less", a < b);
  return out;
}

/// The fields of the fraction that `operation` makes, or "overflow" when it throws
/// std::overflow_error "Fraction: integer overflow." and "division_by_zero" when it throws
/// std::invalid_argument "Fraction: division by zero."; any other exception or message
/// escapes.
template <class Operation>
std::vector<std::string> outcome_text(Operation const& operation) {
  try {
    std::vector<std::string> out;
    for (int field : fields_of(operation())) out.push_back(std::to_string(field));
    return out;
  } catch (std::overflow_error const& e) {
    if (std::string(e.what()) != "Fraction: integer overflow.") throw;
    return {"overflow"};
  } catch (std::invalid_argument const& e) {
    if (std::string(e.what()) != "Fraction: division by zero.") throw;
    return {"division_by_zero"};
  }
}

/// Simplified operands a and b ("a", "b": whole numerator denominator) combined: the
/// outcome texts of a + b, a - b, a * b, a / b, b * a and a * a, then a == b, a < b, b < a.
inline AnswerFields library_fraction_range_outcome(AnswerCase const& c) {
  Fraction const a = read_unsimplified(c.ints("a"));
  Fraction const b = read_unsimplified(c.ints("b"));
  AnswerFields out;
  out.add("sum", outcome_text([&] { return a + b; }))
      .add("difference", outcome_text([&] { return a - b; }))
      .add("product", outcome_text([&] { return a * b; }))
      .add("quotient", outcome_text([&] { return a / b; }))
      .add("reversed_product", outcome_text([&] { return b * a; }))
      .add("square", outcome_text([&] { return a * a; }))
      .add("equal", a == b)
      .add("less", a < b)
      .add("greater", a > b);
  return out;
}

}  // namespace structmath::testing
