// SPDX-License-Identifier: MIT
// Tests of Fraction against exact rational arithmetic done with std::gcd.
#include "structmath/numeric/fraction.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <numeric>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>

#include "support/statistics_support.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

// A rational number p/q with q > 0 and gcd(p, q) = 1, in 64-bit arithmetic.
struct Rational {
  std::int64_t p;
  std::int64_t q;
};

Rational make_rational(std::int64_t p, std::int64_t q) {
  if (q < 0) {
    p = -p;
    q = -q;
  }
  std::int64_t const g = std::gcd(p, q);
  return {p / g, q / g};
}

Rational of(Fraction const& f) {
  return make_rational(std::int64_t{f.whole()} * f.denominator() + f.numerator(), f.denominator());
}

// The canonical mixed-number fields of r: truncating division keeps whole and
// numerator of one sign.
void expect_fields(Fraction const& f, Rational r, std::string const& what) {
  std::int64_t const whole = r.p / r.q;
  std::int64_t const numerator = r.p % r.q;
  std::int64_t const denominator = numerator == 0 ? 1 : r.q;
  EXPECT_EQ(f.whole(), whole) << what;
  EXPECT_EQ(f.numerator(), numerator) << what;
  EXPECT_EQ(f.denominator(), denominator) << what;
}

std::string text(Fraction const& f) {
  std::ostringstream out;
  out << f;
  return out.str();
}

TEST(Fraction, ConstructionSimplifiesToTheMixedNumberForm) {
  struct Case {
    int whole, numerator, denominator;
    int w, n, d;
  };
  Case const cases[] = {
      {0, 6, -4, -1, -1, 2}, {1, 2, 4, 1, 1, 2},     {-1, 1, 2, 0, -1, 2},  {0, -6, -4, 1, 1, 2},
      {2, -1, 2, 1, 1, 2},   {0, 0, 7, 0, 0, 1},     {0, -7, 3, -2, -1, 3}, {3, 0, -5, 3, 0, 1},
      {-2, 9, 3, 1, 0, 1},   {5, -25, 4, -1, -1, 4}, {0, 12, 8, 1, 1, 2},   {-3, -3, 9, -3, -1, 3},
  };
  for (Case const& c : cases) {
    Fraction const f(c.whole, c.numerator, c.denominator);
    EXPECT_EQ(f.whole(), c.w) << c.whole << " " << c.numerator << "/" << c.denominator;
    EXPECT_EQ(f.numerator(), c.n) << c.whole << " " << c.numerator << "/" << c.denominator;
    EXPECT_EQ(f.denominator(), c.d) << c.whole << " " << c.numerator << "/" << c.denominator;
  }
  EXPECT_EQ(Fraction(6, -4), Fraction(-1, -1, 2));
  EXPECT_EQ(Fraction(), Fraction(1));
  EXPECT_EQ(Fraction().to_double(), 1.0);
  EXPECT_EQ(Fraction(-7).whole(), -7);
  EXPECT_EQ(Fraction(-7).denominator(), 1);
}

TEST(Fraction, ZeroDenominatorAndDivisionByZeroThrowTheirMessages) {
  std::string const zero_denominator = "Fraction: Denominator cannot be zero.";
  std::string const division_by_zero = "Fraction: division by zero.";
  expect_throw_message<std::invalid_argument>([] { Fraction(1, 0); }, zero_denominator);
  expect_throw_message<std::invalid_argument>([] { Fraction(2, 1, 0); }, zero_denominator);
  expect_throw_message<std::invalid_argument>([] { Fraction(1, 2) / 0; }, zero_denominator);
  expect_throw_message<std::invalid_argument>([] { Fraction(0, 3).reciprocal(); },
                                              division_by_zero);
  expect_throw_message<std::invalid_argument>([] { Fraction(1, 2) / Fraction(0); },
                                              division_by_zero);
  expect_throw_message<std::invalid_argument>([] { 3 / Fraction(0); }, division_by_zero);
  expect_throw_message<std::invalid_argument>([] { pow(Fraction(0), -2); }, division_by_zero);

  Fraction f(3, 4);
  EXPECT_THROW(f /= Fraction(0), std::invalid_argument);
  EXPECT_THROW(f /= 0, std::invalid_argument);
  EXPECT_EQ(f, Fraction(3, 4));
}

TEST(Fraction, ArithmeticMatchesExactRationalsOverRandomOperands) {
  std::mt19937 engine(20240611);
  std::uniform_int_distribution<int> whole(-60, 60);
  std::uniform_int_distribution<int> part(-400, 400);
  std::uniform_int_distribution<int> small(-30, 30);
  auto const random_fraction = [&] {
    int denominator = 0;
    while (denominator == 0) denominator = part(engine);
    return Fraction(whole(engine), part(engine), denominator);
  };
  auto const add = [](Rational a, Rational b) {
    return make_rational(a.p * b.q + b.p * a.q, a.q * b.q);
  };
  auto const sub = [](Rational a, Rational b) {
    return make_rational(a.p * b.q - b.p * a.q, a.q * b.q);
  };
  auto const mul = [](Rational a, Rational b) { return make_rational(a.p * b.p, a.q * b.q); };

  for (int i = 0; i < 3000; ++i) {
    Fraction const a = random_fraction();
    Fraction const b = random_fraction();
    int const k = small(engine);
    Rational const ra = of(a);
    Rational const rb = of(b);
    std::string const what = text(a) + " and " + text(b) + ", k = " + std::to_string(k);
    expect_fields(a, ra, "construction of " + what);

    expect_fields(a + b, add(ra, rb), "sum of " + what);
    expect_fields(a - b, sub(ra, rb), "difference of " + what);
    expect_fields(a * b, mul(ra, rb), "product of " + what);
    expect_fields(a * k, mul(ra, {k, 1}), "a * k for " + what);
    expect_fields(k * a, mul(ra, {k, 1}), "k * a for " + what);
    expect_fields(-a, {-ra.p, ra.q}, "negation of " + what);
    expect_fields(abs(a), {ra.p < 0 ? -ra.p : ra.p, ra.q}, "abs of " + what);
    Fraction squared = a;
    squared.square();
    expect_fields(squared, mul(ra, ra), "square of " + what);
    if (rb.p != 0) {
      expect_fields(a / b, mul(ra, make_rational(rb.q, rb.p)), "quotient of " + what);
      Fraction inverse = b;
      inverse.reciprocal();
      expect_fields(inverse, make_rational(rb.q, rb.p), "reciprocal of " + what);
      expect_fields(k / b, make_rational(k * rb.q, rb.p), "k / b for " + what);
    }
    if (k != 0) expect_fields(a / k, make_rational(ra.p, ra.q * k), "a / k for " + what);

    bool const less = ra.p * rb.q < rb.p * ra.q;
    bool const equal = ra.p == rb.p && ra.q == rb.q;
    EXPECT_EQ(a < b, less) << what;
    EXPECT_EQ(a > b, !less && !equal) << what;
    EXPECT_EQ(a <= b, less || equal) << what;
    EXPECT_EQ(a >= b, !less) << what;
    EXPECT_EQ(a == b, equal) << what;
    EXPECT_EQ(a != b, !equal) << what;
    EXPECT_EQ(a.sign(), (ra.p > 0) - (ra.p < 0)) << what;
    EXPECT_DOUBLE_EQ(a.to_double(), static_cast<double>(ra.p) / static_cast<double>(ra.q)) << what;
  }
}

TEST(Fraction, RoundingFloorAndCeilingAgreeWithExactIntegerDivision) {
  // floor by exact division, nearest with ties to the even neighbour.
  for (int q = 1; q <= 12; ++q) {
    for (int p = -40; p <= 40; ++p) {
      Fraction const f(p, q);
      int const fl = (p >= 0) ? p / q : -((-p + q - 1) / q);
      int const twice_rest = 2 * (p - fl * q);
      int nearest = twice_rest < q ? fl : fl + 1;
      if (twice_rest == q) nearest = (fl % 2 == 0) ? fl : fl + 1;
      std::string const what = std::to_string(p) + "/" + std::to_string(q);
      EXPECT_EQ(f.floor(), fl) << what;
      EXPECT_EQ(f.ceiling(), fl * q == p ? fl : fl + 1) << what;
      EXPECT_EQ(f.round_to_int(), nearest) << what;
    }
  }
  EXPECT_EQ(Fraction(5, 2).round_to_int(), 2);
  EXPECT_EQ(Fraction(7, 2).round_to_int(), 4);
  EXPECT_EQ(Fraction(-5, 2).round_to_int(), -2);
  EXPECT_EQ(Fraction(-7, 2).round_to_int(), -4);
  EXPECT_EQ(Fraction(-1, 2).round_to_int(), 0);
}

TEST(Fraction, PowersOfFractionsAndWholeNumbers) {
  EXPECT_EQ(pow(Fraction(2, 3), -2), Fraction(9, 4));
  EXPECT_EQ(pow(Fraction(-3, 2), 3), Fraction(-27, 8));
  EXPECT_EQ(pow(Fraction(-3, 2), -3), Fraction(-8, 27));
  EXPECT_EQ(pow(Fraction(0), 0), Fraction(1));
  EXPECT_EQ(pow(Fraction(5, 7), 0), Fraction(1));
  EXPECT_EQ(pow(Fraction(0), 5), Fraction(0));
  EXPECT_EQ(pow(Fraction(1), -9), Fraction(1));
  EXPECT_EQ(pow(Fraction(-1), -9), Fraction(-1));
  EXPECT_EQ(pow(Fraction(-1), std::numeric_limits<int>::min()), Fraction(1));
  EXPECT_EQ(pow(Fraction(2), 30), Fraction(1073741824));
  EXPECT_EQ(pow(Fraction(-2), -3), Fraction(-1, 8));
  expect_throw_message<std::invalid_argument>([] { pow(Fraction(10), 10); }, "ipow(): overflow.");
  // The power check lets 2^31 through; it does not fit in an int.
  EXPECT_THROW(pow(Fraction(2), 31), std::overflow_error);
  EXPECT_THROW(pow(Fraction(1, 2), 40), std::overflow_error);

  std::mt19937 engine(7);
  std::uniform_int_distribution<int> part(-9, 9);
  std::uniform_int_distribution<int> exponent(-6, 6);
  for (int i = 0; i < 500; ++i) {
    int const d = 1 + (part(engine) + 9) % 9;
    Fraction const f(part(engine) / 3, part(engine), d);
    int const n = exponent(engine);
    Rational const r = of(f);
    if (r.p == 0 && n < 0) continue;
    Rational expected{1, 1};
    Rational const factor = n >= 0 ? r : make_rational(r.q, r.p);
    for (int j = 0; j < (n >= 0 ? n : -n); ++j) {
      expected = make_rational(expected.p * factor.p, expected.q * factor.q);
    }
    expect_fields(pow(f, n), expected, text(f) + " ^ " + std::to_string(n));
  }
}

TEST(Fraction, IncrementAndDecrementStepByOneAcrossZero) {
  Fraction f(-1, 4);
  EXPECT_EQ(++f, Fraction(3, 4));
  EXPECT_EQ(f++, Fraction(3, 4));
  EXPECT_EQ(f, Fraction(7, 4));
  EXPECT_EQ(f--, Fraction(7, 4));
  EXPECT_EQ(--f, Fraction(-1, 4));
  EXPECT_EQ(--f, Fraction(-5, 4));
  EXPECT_EQ(++f, Fraction(-1, 4));
  Fraction g(1, 4);
  EXPECT_EQ(--g, Fraction(-3, 4));
  Fraction h(2);
  EXPECT_EQ(--h, Fraction(1));
  EXPECT_EQ(--h, Fraction(0));
  EXPECT_EQ(--h, Fraction(-1));
}

TEST(Fraction, NormalizeSignAndMixedArithmeticWithDoubles) {
  Fraction f(7, 3);
  f.normalize();
  EXPECT_EQ(f, Fraction(1, 3));
  Fraction g(-1, 4);
  g.normalize();
  EXPECT_EQ(g, Fraction(3, 4));
  Fraction h(-9, 4);
  h.normalize();
  EXPECT_EQ(h, Fraction(3, 4));

  EXPECT_EQ(Fraction(0).sign(), 0);
  EXPECT_EQ(Fraction(-1, 3).sign(), -1);
  EXPECT_EQ(Fraction(-2).sign(), -1);
  EXPECT_EQ(Fraction(1, 3).sign(), 1);

  EXPECT_EQ(0.5 * Fraction(3, 2), 0.75);
  EXPECT_EQ(Fraction(3, 2) * 4.0, 6.0);
  EXPECT_EQ(Fraction(-3, 2) / 2.0, -0.75);
  EXPECT_EQ(3.0 / Fraction(3, 2), 2.0);
}

TEST(Fraction, PrintsEverySignCombination) {
  EXPECT_EQ(text(Fraction(5)), "5");
  EXPECT_EQ(text(Fraction(0)), "0");
  EXPECT_EQ(text(Fraction(-3)), "-3");
  EXPECT_EQ(text(Fraction(1, 2)), "1/2");
  EXPECT_EQ(text(Fraction(-1, 2)), "-1/2");
  EXPECT_EQ(text(Fraction(7, 2)), "3+1/2");
  EXPECT_EQ(text(Fraction(-7, 2)), "-3-1/2");
  EXPECT_EQ(text(Fraction(6, -4)), "-1-1/2");
  std::ostringstream hex;
  hex << std::hex << Fraction(33, 16);
  EXPECT_EQ(hex.str(), "2+1/10");
}

TEST(Fraction, ArchiveRoundTripKeepsFieldsAndRejectsZeroDenominator) {
  Archive archive;
  Fraction const values[] = {Fraction(-7, 2), Fraction(0), Fraction(), Fraction(5, 1, 3)};
  for (Fraction const& f : values) f.write(archive);
  archive << 0 << 4 << -6;  // unsimplified
  archive << 1 << 1 << 0;
  for (Fraction const& f : values) {
    Fraction g(9, 7);
    g.read(archive);
    EXPECT_EQ(g, f);
  }
  Fraction raw;
  raw.read(archive);
  EXPECT_EQ(raw.numerator(), 4);
  EXPECT_EQ(raw.denominator(), -6);
  EXPECT_EQ(raw.greatest_common_divisor(), -2);  // truncating remainders keep a sign
  raw.simplify();
  EXPECT_EQ(raw, Fraction(-2, 3));

  Fraction kept(2, 5);
  expect_throw_message<std::runtime_error>([&] { kept.read(archive); },
                                           "Fraction::read: invalid denominator in archive");
  EXPECT_EQ(kept, Fraction(2, 5));
  EXPECT_THROW(kept.read(archive), std::runtime_error);  // archive exhausted
  EXPECT_EQ(kept, Fraction(2, 5));
}

TEST(Fraction, OverflowIsReportedNotWrapped) {
  int const big = std::numeric_limits<int>::max();
  // Intermediate products beyond int are fine when the reduced result fits.
  EXPECT_EQ(Fraction(1, 46341) + Fraction(1, 46341), Fraction(2, 46341));
  EXPECT_EQ(Fraction(big - 1, big) * Fraction(big, big - 1), Fraction(1));
  EXPECT_EQ(Fraction(big) * Fraction(-1), Fraction(-big));
  EXPECT_TRUE(Fraction(big - 2, big - 1) < Fraction(big - 1, big));

  Fraction f(1, 65536);
  EXPECT_THROW(f *= Fraction(1, 65537), std::overflow_error);
  EXPECT_EQ(f, Fraction(1, 65536));
  EXPECT_THROW(Fraction(big) + Fraction(1), std::overflow_error);
  EXPECT_THROW(Fraction(big) * 2, std::overflow_error);
  Fraction top(big);
  EXPECT_THROW(++top, std::overflow_error);
  EXPECT_EQ(top, Fraction(big));
  EXPECT_THROW(-Fraction(std::numeric_limits<int>::min()), std::overflow_error);
  EXPECT_THROW(Fraction(big, 1, 2).round_to_int(), std::overflow_error);
  EXPECT_EQ(Fraction(big, 1, 3).round_to_int(), big);
}

}  // namespace
}  // namespace structmath
