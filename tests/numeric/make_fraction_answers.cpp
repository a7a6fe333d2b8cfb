// SPDX-License-Identifier: MIT
// Writes the known answers of Fraction arithmetic on unsimplified operands
// (tests/data/numeric/fraction_unsimplified.txt) to stdout. Every result is computed by
// the library and by the transcription below of simplification, Euclid's divisor and
// the four operations in plain int arithmetic; the program writes nothing and exits 1
// if the two differ.
#include <cstdint>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "numeric/fraction_answers.hpp"

namespace structmath::testing {
namespace {

/// whole + numerator / denominator, fields as the algorithms below leave them.
struct Plain {
  int w, n, d;
};

/// Euclid on (larger, smaller) by signed comparison, the denominator counting as the
/// larger when both are equal, with truncating remainders; the last non-zero value.
int divisor(Plain const& f) {
  int larger = f.d, smaller = f.n;
  if (f.n > f.d) {
    larger = f.n;
    smaller = f.d;
  }
  for (;;) {
    int const r = larger % smaller;
    if (r == 0) return smaller;
    larger = smaller;
    smaller = r;
  }
}

void simplify(Plain& f) {
  int const q = f.n / f.d;
  if (q != 0) {
    f.w += q;
    f.n -= q * f.d;
  }
  if (f.n != 0) {
    int const g = divisor(f);
    f.n /= g;
    f.d /= g;
    if (f.d < 0) {
      f.n = -f.n;
      f.d = -f.d;
    }
  } else {
    f.d = 1;
  }
  if (f.w < 0 && f.n >= 1) {
    f.w += 1;
    f.n -= f.d;
  } else if (f.w >= 1 && f.n < 0) {
    f.w -= 1;
    f.n += f.d;
  }
}

Plain make(int n, int d) {
  Plain f{0, n, d};
  simplify(f);  // the denominators here are never zero
  return f;
}

Plain add(Plain a, Plain const& b) {
  a.w += b.w;
  a.n = a.n * b.d + b.n * a.d;
  a.d *= b.d;
  simplify(a);
  return a;
}

Plain subtract(Plain a, Plain const& b) {
  a.w -= b.w;
  a.n = a.n * b.d - b.n * a.d;
  a.d *= b.d;
  simplify(a);
  return a;
}

Plain multiply(Plain const& a, Plain const& b) {
  Plain const s = add(add(make(a.w * b.n, b.d), make(a.n * b.w, a.d)), make(a.n * b.n, a.d * b.d));
  return {a.w * b.w + s.w, s.n, s.d};
}

bool reciprocal(Plain& f) {
  if (f.w == 0 && f.n == 0) return false;
  int const d = f.w * f.d + f.n;
  f = {0, f.d, d};
  simplify(f);
  return true;
}

bool less(Plain const& a, Plain const& b) {
  if (a.w != b.w) return a.w < b.w;
  return a.n * b.d < b.n * a.d;
}

AnswerFields transcribed_outcome(AnswerCase const& c) {
  std::vector<int> const x = c.ints("a"), y = c.ints("b");
  Plain const a{x[0], x[1], x[2]}, b{y[0], y[1], y[2]};
  auto const fields = [](Plain const& f) { return std::vector<int>{f.w, f.n, f.d}; };
  AnswerFields out;
  out.add("sum", fields(add(a, b)))
      .add("difference", fields(subtract(a, b)))
      .add("product", fields(multiply(a, b)));
  Plain inverse = b;
  if (reciprocal(inverse)) {
    out.add("quotient", fields(multiply(a, inverse)));
  } else {
    out.add("quotient", std::vector<std::string>{"division_by_zero"});
  }
  out.add("equal", a.w == b.w && a.n == b.n && a.d == b.d).add("less", less(a, b));
  return out;
}

/// Operands whose value is zero but whose fields are not (such as 1 - 2/2) have no
/// reciprocal: it would have a zero denominator. They are used only on the left.
bool zero_in_disguise(std::vector<int> const& f) {
  return f[0] * f[2] + f[1] == 0 && !(f[0] == 0 && f[1] == 0);
}

int run() {
  std::vector<std::vector<int>> const chosen = {
      {0, 4, -6}, {1, -1, 2}, {-2, 1, 2}, {0, 7, 3},   {3, 10, 4},  {0, 0, 5},   {0, -3, -4},
      {2, 0, -1}, {1, 2, 4},  {-1, 1, 2}, {0, 1, 2},   {1, 0, 1},   {-1, -1, 2}, {0, 6, 3},
      {-3, 9, 4}, {2, -7, 3}, {0, 0, 1},  {4, -8, -6}, {-1, 0, -3}, {0, -5, 5}};
  std::vector<std::pair<std::vector<int>, std::vector<int>>> pairs;
  for (std::size_t i = 0; i + 1 < chosen.size(); i += 2) {
    pairs.push_back({chosen[i], chosen[i + 1]});
    pairs.push_back({chosen[i + 1], chosen[i]});
  }
  pairs.push_back({{0, 4, -6}, {0, -2, 3}});  // the same value, other fields
  pairs.push_back({{0, 4, -6}, {0, 4, -6}});
  pairs.push_back({{1, 1, 2}, {0, 3, 2}});
  std::mt19937 engine(1618);
  auto const pick = [&](int low, int high) {
    return low + static_cast<int>(engine() % static_cast<std::uint32_t>(high - low + 1));
  };
  auto const operand = [&] {
    int d = 0;
    while (d == 0) d = pick(-8, 8);
    return std::vector<int>{pick(-3, 3), pick(-11, 11), d};
  };
  while (pairs.size() < 48) pairs.push_back({operand(), operand()});

  bool agree = true;
  std::ostringstream file;
  file << "# Written by tests/numeric/make_fraction_answers.cpp; do not edit.\n"
          "# Each case: operands a and b (whole numerator denominator) read unsimplified,\n"
          "# then the fields of a + b, a - b, a * b, a / b, and a == b, a < b; every case\n"
          "# agreed with a transcription of the arithmetic.\n";
  int index = 0;
  for (auto const& [x, y] : pairs) {
    if (zero_in_disguise(y)) continue;
    AnswerFields in;
    in.add("a", x).add("b", y);
    AnswerCase const c = in.as_case("pair_" + std::to_string(index++));
    AnswerFields const library = library_fraction_outcome(c);
    agree = report_differences(c.name, library, transcribed_outcome(c), std::cerr) && agree;
    file << "\ncase " << c.name << '\n';
    in.write(file);
    library.write(file);
  }
  if (!agree) return 1;
  std::cout << file.str();
  return 0;
}

}  // namespace
}  // namespace structmath::testing

int main() { return structmath::testing::run(); }
