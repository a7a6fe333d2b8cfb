// SPDX-License-Identifier: MIT
// Writes the known answers of Fraction arithmetic on simplified operands of every size
// (tests/data/numeric/fraction_ranges.txt) to stdout: seeded pairs from small mixed
// numbers to parts at the edge of the int range, and what +, -, *, / and the comparisons
// make of them, overflows included. Every result that does not overflow is checked
// against exact 128-bit rational arithmetic (value and simplified form); the program
// writes nothing and exits 1 if one disagrees, and reports on stderr how many
// operations overflowed and how many of those had a result that fits in an int.
#include <cstdint>
#include <iostream>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "numeric/fraction_answers.hpp"

namespace structmath::testing {
namespace {

__extension__ using Big = __int128;

constexpr int int_max = std::numeric_limits<int>::max();
constexpr int int_min = std::numeric_limits<int>::min();

Big gcd(Big a, Big b) {
  if (a < 0) a = -a;
  if (b < 0) b = -b;
  while (b != 0) {
    Big const r = a % b;
    a = b;
    b = r;
  }
  return a;
}

/// An exact rational n / d with d > 0, in lowest terms.
struct Exact {
  Big n, d;
};

Exact exact(Big n, Big d) {
  if (d < 0) {
    n = -n;
    d = -d;
  }
  Big const g = gcd(n, d);
  return g > 1 ? Exact{n / g, d / g} : Exact{n, d};
}

Exact exact_of(std::vector<int> const& f) {
  return exact(static_cast<Big>(f.at(0)) * f.at(2) + f.at(1), f.at(2));
}

/// The simplified mixed-number fields of an exact value, or nothing when a part does not
/// fit in an int.
bool mixed(Exact const& x, std::vector<std::string>& out) {
  Big const whole = x.n / x.d;  // truncating: whole and numerator share the sign
  Big const numerator = x.n - whole * x.d;
  Big const denominator = numerator == 0 ? 1 : x.d;
  for (Big part : {whole, numerator, denominator}) {
    if (part < int_min || part > int_max) return false;
  }
  out = {std::to_string(static_cast<int>(whole)), std::to_string(static_cast<int>(numerator)),
         std::to_string(static_cast<int>(denominator))};
  return true;
}

struct Tally {
  int results = 0, overflows = 0, overflows_that_fit = 0;
};

/// Checks one recorded outcome against the exact value; false on a disagreement.
bool check(std::string const& name, std::string const& key, std::vector<std::string> const& got,
           Exact const& want, Tally& tally) {
  ++tally.results;
  std::vector<std::string> expected;
  bool const fits = mixed(want, expected);
  if (got == std::vector<std::string>{"overflow"}) {
    ++tally.overflows;
    if (fits) ++tally.overflows_that_fit;
    return true;
  }
  if (fits && got == expected) return true;
  std::cerr << name << ": " << key << " differs from the exact value\n";
  return false;
}

bool check_case(AnswerCase const& c, AnswerFields const& library, Tally& tally) {
  Exact const a = exact_of(c.ints("a")), b = exact_of(c.ints("b"));
  AnswerCase const got = library.as_case(c.name);
  bool ok = true;
  ok = check(c.name, "sum", got.text("sum"), exact(a.n * b.d + b.n * a.d, a.d * b.d), tally) && ok;
  ok = check(c.name, "difference", got.text("difference"), exact(a.n * b.d - b.n * a.d, a.d * b.d),
             tally) &&
       ok;
  Exact const product = exact(a.n * b.n, a.d * b.d);
  ok = check(c.name, "product", got.text("product"), product, tally) && ok;
  ok = check(c.name, "reversed_product", got.text("reversed_product"), product, tally) && ok;
  ok = check(c.name, "square", got.text("square"), exact(a.n * a.n, a.d * a.d), tally) && ok;
  if (b.n == 0) {
    ok = got.text("quotient") == std::vector<std::string>{"division_by_zero"} && ok;
  } else {
    ok = check(c.name, "quotient", got.text("quotient"), exact(a.n * b.d, a.d * b.n), tally) && ok;
  }
  Big const left = a.n * b.d, right = b.n * a.d;
  ok = got.integer("equal") == (left == right) && got.integer("less") == (left < right) &&
       got.integer("greater") == (left > right) && ok;
  return ok;
}

/// Seeded operands of one size class: wholes in [-whole, whole], denominators in
/// [1, denominator], the numerator with the whole's sign, built by the constructor.
class Operands {
 public:
  explicit Operands(std::uint32_t seed) : engine_(seed) {}

  std::vector<int> operator()(int whole, int denominator) {
    int const d = pick(1, denominator);
    int const w = pick(-whole, whole);
    int n = pick(0, d - 1);
    if (w < 0 || (w == 0 && engine_() % 2 == 0)) n = -n;
    return fields_of(Fraction(w, n, d));
  }
  /// A whole number near the edge: within `spread` of INT_MAX or of -INT_MAX.
  std::vector<int> edge_whole(int spread) {
    int const w = int_max - pick(0, spread);
    return fields_of(Fraction(engine_() % 2 == 0 ? w : -w));
  }

 private:
  int pick(int low, int high) {
    auto const span = static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low) + 1;
    return static_cast<int>(low + static_cast<std::int64_t>(engine_() % span));
  }
  std::mt19937 engine_;
};

struct Pair {
  std::string name;
  std::vector<int> a, b;
};

std::vector<Pair> pairs() {
  std::vector<Pair> out;
  auto const hand = [&](std::string name, Fraction const& a, Fraction const& b) {
    out.push_back({std::move(name), fields_of(a), fields_of(b)});
  };
  hand("zero_and_one", Fraction(0), Fraction());
  hand("halves", Fraction(1, 2), Fraction(-1, 2));
  hand("equal_values", Fraction(-7, 3), Fraction(-14, 6));
  hand("same_whole_other_fraction", Fraction(3, 1, 4), Fraction(3, 1, 5));
  hand("largest_whole_plus_one", Fraction(int_max), Fraction(1));
  hand("largest_whole_plus_a_half", Fraction(int_max), Fraction(1, 2));
  hand("largest_whole_times_minus_one", Fraction(int_max), Fraction(-1));
  hand("smallest_whole_minus_one", Fraction(int_min), Fraction(1));
  hand("smallest_whole_times_minus_one", Fraction(int_min), Fraction(-1));
  hand("smallest_whole_over_minus_one", Fraction(int_min), Fraction(-1));
  hand("smallest_whole_plus_largest", Fraction(int_min), Fraction(int_max));
  hand("root_of_int_max_squared", Fraction(46340), Fraction(46340));
  hand("past_root_of_int_max_squared", Fraction(46341), Fraction(46341));
  hand("largest_denominators", Fraction(1, int_max), Fraction(1, int_max - 1));
  hand("largest_denominator_twice", Fraction(1, int_max), Fraction(-1, int_max));
  hand("cancelling_large_denominators", Fraction(65536, 65537), Fraction(65537, 65538));
  hand("coprime_denominators_just_fitting", Fraction(1, 46337), Fraction(1, 46339));
  hand("coprime_denominators_too_large", Fraction(1, 46349), Fraction(1, 46351));
  hand("large_mixed_numbers", Fraction(30000, 1, 3), Fraction(-40000, -2, 7));
  hand("large_whole_small_fraction", Fraction(1000000, 999, 1000), Fraction(2000, 1, 1001));
  hand("product_whole_at_limit", Fraction(65536), Fraction(32767, 1, 2));
  hand("product_whole_past_limit", Fraction(65536), Fraction(32768));
  hand("sum_at_limit", Fraction(1073741823, 1, 2), Fraction(1073741823, 1, 2));
  hand("sum_past_limit", Fraction(1073741824), Fraction(1073741824));

  struct SizeClass {
    char const* name;
    int whole, denominator, count;
  };
  SizeClass const classes[] = {
      {"small", 20, 30, 80},
      {"medium", 10000, 1000, 40},
      {"large_denominators", 50, 100000, 40},
      {"near_product_limit", 46341, 46341, 40},
      {"large_wholes", 1 << 20, 1 << 11, 30},
      {"huge", int_max, int_max, 30},
  };
  Operands draw(2718);
  for (SizeClass const& k : classes) {
    for (int i = 0; i < k.count; ++i) {
      std::vector<int> const a = draw(k.whole, k.denominator);
      std::vector<int> const b = draw(k.whole, k.denominator);
      out.push_back({std::string(k.name) + "_" + std::to_string(i), a, b});
    }
  }
  for (int i = 0; i < 20; ++i) {
    std::vector<int> const a = draw.edge_whole(1000);
    std::vector<int> const b = i % 2 == 0 ? draw(3, 5) : draw.edge_whole(1000);
    out.push_back({"edge_" + std::to_string(i), a, b});
  }
  return out;
}

int run() {
  bool agree = true;
  Tally tally;
  std::ostringstream file;
  file << "# Written by tests/numeric/make_fraction_range_answers.cpp; do not edit.\n"
          "# Each case: simplified operands a and b (whole numerator denominator), then the\n"
          "# fields of a + b, a - b, a * b, a / b, b * a and a * a (or overflow or\n"
          "# division_by_zero), and a == b, a < b, a > b; every result that did not overflow\n"
          "# agreed with exact rational arithmetic.\n";
  for (Pair const& p : pairs()) {
    AnswerFields in;
    in.add("a", p.a).add("b", p.b);
    AnswerCase const c = in.as_case(p.name);
    AnswerFields const library = library_fraction_range_outcome(c);
    agree = check_case(c, library, tally) && agree;
    file << "\ncase " << c.name << '\n';
    in.write(file);
    library.write(file);
  }
  std::cerr << tally.results << " results, " << tally.overflows << " overflows, "
            << tally.overflows_that_fit << " of them with a result that fits\n";
  if (!agree) return 1;
  std::cout << file.str();
  return 0;
}

}  // namespace
}  // namespace structmath::testing

int main() { return structmath::testing::run(); }
