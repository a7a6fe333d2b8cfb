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
#include <tuple>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

using testing::expect_throw_message;

// A rational number p/q with q > 0 and gcd(p, q) = 1, in 64-bit arithmetic.
struct Rational {
  std::int64_t p;
  std::int64_t q;
};

Rational make_rational(std::int64_t p, std::int64_t q) {
  std::int64_t const g = std::gcd(p, q) * (q < 0 ? -1 : 1);
  return {p / g, q / g};
}

// A fraction built from raw parts, with the exact value of those parts.
std::pair<Fraction, Rational> with_value(int whole, int numerator, int denominator) {
  return {Fraction(whole, numerator, denominator),
          make_rational(std::int64_t{whole} * denominator + numerator, denominator)};
}

Rational operator*(Rational a, Rational b) { return make_rational(a.p * b.p, a.q * b.q); }

// Checks that f holds r in the canonical mixed-number fields: truncating division
// keeps whole and numerator of one sign.
void expect_fields(Fraction const& f, Rational r, std::string const& what) {
  std::int64_t const numerator = r.p % r.q;
  EXPECT_EQ(f.whole(), r.p / r.q) << what;
  EXPECT_EQ(f.numerator(), numerator) << what;
  EXPECT_EQ(f.denominator(), numerator == 0 ? 1 : r.q) << what;
}

std::string text(Fraction const& f) {
  std::ostringstream out;
  out << f;
  return out.str();
}

TEST(Fraction, ZeroDenominatorAndDivisionByZeroThrowTheirMessages) {
  std::string const zero_denominator = "Fraction: Denominator cannot be zero.";
  std::string const division_by_zero = "Fraction: division by zero.";
  using E = std::invalid_argument;
  expect_throw_message<E>([] { Fraction(1, 0); }, zero_denominator);
  expect_throw_message<E>([] { Fraction(2, 1, 0); }, zero_denominator);
  expect_throw_message<E>([] { Fraction(1, 2) / 0; }, zero_denominator);
  expect_throw_message<E>([] { Fraction(0, 3).reciprocal(); }, division_by_zero);
  expect_throw_message<E>([] { Fraction(1, 2) / Fraction(0); }, division_by_zero);
  expect_throw_message<E>([] { 3 / Fraction(0); }, division_by_zero);
  expect_throw_message<E>([] { pow(Fraction(0), -2); }, division_by_zero);
  Fraction f(3, 4);
  EXPECT_THROW(f /= Fraction(0), E);
  EXPECT_EQ(f, Fraction(3, 4));
}

TEST(Fraction, ConstructionAndArithmeticMatchExactRationalsOverRandomOperands) {
  std::mt19937 engine(20240611);
  std::uniform_int_distribution<int> whole(-60, 60), part(-400, 400), small(-30, 30);
  auto const random_fraction = [&] {
    int denominator = 0;
    while (denominator == 0) denominator = part(engine);
    return with_value(whole(engine), part(engine), denominator);
  };
  for (int i = 0; i < 3000; ++i) {
    auto const [a, ra] = random_fraction();
    auto const [b, rb] = random_fraction();
    int const k = small(engine);
    Rational const rk{k, 1};
    std::string const what = text(a) + " and " + text(b) + ", k = " + std::to_string(k);
    expect_fields(a, ra, "construction of " + what);
    expect_fields(a + b, make_rational(ra.p * rb.q + rb.p * ra.q, ra.q * rb.q), "sum, " + what);
    expect_fields(a - b, make_rational(ra.p * rb.q - rb.p * ra.q, ra.q * rb.q), "diff, " + what);
    expect_fields(a * b, ra * rb, "product, " + what);
    expect_fields(a * k, ra * rk, "a * k, " + what);
    expect_fields(k * a, ra * rk, "k * a, " + what);
    expect_fields(-a, {-ra.p, ra.q}, "negation, " + what);
    expect_fields(abs(a), {ra.p < 0 ? -ra.p : ra.p, ra.q}, "abs, " + what);
    Fraction squared = a, next = a, previous = a, fractional_part = a;
    squared.square();
    fractional_part.normalize();
    expect_fields(squared, ra * ra, "square, " + what);
    expect_fields(++next, {ra.p + ra.q, ra.q}, "increment, " + what);
    expect_fields(--previous, {ra.p - ra.q, ra.q}, "decrement, " + what);
    expect_fields(fractional_part, make_rational((ra.p % ra.q + ra.q) % ra.q, ra.q),
                  "fractional part, " + what);
    if (rb.p != 0) {
      Rational const inverse = make_rational(rb.q, rb.p);
      expect_fields(a / b, ra * inverse, "quotient, " + what);
      Fraction reciprocal = b;
      reciprocal.reciprocal();
      expect_fields(reciprocal, inverse, "reciprocal, " + what);
      expect_fields(k / b, rk * inverse, "k / b, " + what);
    }
    if (k != 0) expect_fields(a / k, make_rational(ra.p, ra.q * k), "a / k, " + what);

    bool const less = ra.p * rb.q < rb.p * ra.q, equal = ra.p == rb.p && ra.q == rb.q;
    EXPECT_EQ(std::make_tuple((a < b), (a > b), (a <= b), (a >= b), (a == b), (a != b)),
              std::make_tuple(less, !less && !equal, less || equal, !less, equal, !equal))
        << what;
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
}

TEST(Fraction, PowersMatchRepeatedExactProducts) {
  EXPECT_EQ(pow(Fraction(0), 0), Fraction(1));
  EXPECT_EQ(pow(Fraction(-1), std::numeric_limits<int>::min()), Fraction(1));
  expect_throw_message<std::invalid_argument>([] { pow(Fraction(10), 10); }, "ipow(): overflow.");
  // The power check lets 2^31 through; it does not fit in an int.
  EXPECT_THROW(pow(Fraction(2), 31), std::overflow_error);
  EXPECT_THROW(pow(Fraction(1, 2), 40), std::overflow_error);

  std::mt19937 engine(7);
  std::uniform_int_distribution<int> part(-9, 9), exponent(-6, 6);
  for (int i = 0; i < 500; ++i) {
    auto const [f, r] = with_value(part(engine) / 3, part(engine), 1 + (part(engine) + 9) % 9);
    int const n = exponent(engine);
    if (r.p == 0 && n < 0) continue;
    Rational expected{1, 1};
    for (int j = 0; j < std::abs(n); ++j)
      expected = expected * (n > 0 ? r : make_rational(r.q, r.p));
    expect_fields(pow(f, n), expected, text(f) + " ^ " + std::to_string(n));
  }
}

TEST(Fraction, DefaultIsOnePostfixStepsAndMixedArithmeticWithDoubles) {
  Fraction f;
  EXPECT_EQ(f, Fraction(1));
  EXPECT_EQ(f++, Fraction(1));
  EXPECT_EQ(f--, Fraction(2));
  EXPECT_EQ(f, Fraction(1));

  EXPECT_EQ(0.5 * Fraction(3, 2), 0.75);
  EXPECT_EQ(Fraction(3, 2) * 4.0, 6.0);
  EXPECT_EQ(Fraction(-3, 2) / 2.0, -0.75);
  EXPECT_EQ(3.0 / Fraction(3, 2), 2.0);
}

TEST(Fraction, PrintsEverySignCombination) {
  std::pair<Fraction, char const*> const cases[] = {
      {Fraction(5), "5"},          {Fraction(0), "0"},          {Fraction(-3), "-3"},
      {Fraction(1, 2), "1/2"},     {Fraction(-1, 2), "-1/2"},   {Fraction(7, 2), "3+1/2"},
      {Fraction(-7, 2), "-3-1/2"}, {Fraction(6, -4), "-1-1/2"},
  };
  for (auto const& [f, expected] : cases) EXPECT_EQ(text(f), expected);
  std::ostringstream hex;
  hex << std::hex << Fraction(33, 16);
  EXPECT_EQ(hex.str(), "2+1/10");
}

TEST(Fraction, ArchiveRoundTripKeepsFieldsAndRejectsZeroDenominator) {
  Archive archive;
  Fraction const values[] = {Fraction(-7, 2), Fraction(0), Fraction(5, 1, 3)};
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
  EXPECT_EQ(raw.denominator(), -6);
  EXPECT_EQ(raw.greatest_common_divisor(), -2);  // truncating remainders keep a sign
  raw.simplify();
  EXPECT_EQ(raw, Fraction(-2, 3));

  Fraction kept(2, 5);
  expect_throw_message<std::runtime_error>([&] { kept.read(archive); },
                                           "Fraction::read: invalid denominator in archive");
  EXPECT_THROW(kept.read(archive), std::runtime_error);  // archive exhausted
  EXPECT_EQ(kept, Fraction(2, 5));
}

TEST(Fraction, OverflowIsReportedNotWrapped) {
  int const big = std::numeric_limits<int>::max();
  // Intermediate products beyond int are fine when the reduced result fits.
  EXPECT_EQ(Fraction(1, 46341) + Fraction(1, 46341), Fraction(2, 46341));
  EXPECT_EQ(Fraction(big - 1, big) * Fraction(big, big - 1), Fraction(1));
  EXPECT_TRUE(Fraction(big - 2, big - 1) < Fraction(big - 1, big));
  EXPECT_EQ(Fraction(big, 1, 3).round_to_int(), big);

  Fraction f(1, 65536), top(big);
  EXPECT_THROW(f *= Fraction(1, 65537), std::overflow_error);
  EXPECT_EQ(f, Fraction(1, 65536));
  EXPECT_THROW(++top, std::overflow_error);
  EXPECT_EQ(top, Fraction(big));
  EXPECT_THROW(Fraction(big) + Fraction(1), std::overflow_error);
  EXPECT_THROW(Fraction(big) * 2, std::overflow_error);
  EXPECT_THROW(-Fraction(std::numeric_limits<int>::min()), std::overflow_error);
  EXPECT_THROW(Fraction(big, 1, 2).round_to_int(), std::overflow_error);
}

TEST(Fraction, ProductsWithPartsNearTheIntLimitsAreExact) {
  int const big = std::numeric_limits<int>::max();
  // Wholes whose magnitudes add up to just below, at and just above the int range.
  EXPECT_EQ(Fraction(big - 2, 1, 2) * Fraction(1), Fraction(big - 2, 1, 2));
  EXPECT_EQ(Fraction(big - 1, 1, 2) * Fraction(1), Fraction(big - 1, 1, 2));
  EXPECT_EQ(Fraction(-(big - 1), -1, 2) * Fraction(-1), Fraction(big - 1, 1, 2));
  EXPECT_EQ(Fraction(big) * Fraction(1), Fraction(big));
  EXPECT_EQ(Fraction(big - 1) * Fraction(1, 1, big), Fraction(big, -1, big));
  // Denominators whose product just fits, and one just past it where the product
  // cancels back into range.
  EXPECT_EQ(Fraction(3, 1, 46337) * Fraction(-2, -1, 46339),
            Fraction(-6, -(3 * 46337 + 2 * 46339 + 1), 46337 * 46339));
  EXPECT_EQ(Fraction(1, 46349) * Fraction(46349, 46351), Fraction(1, 46351));
  EXPECT_EQ(Fraction(46340) * Fraction(46340), Fraction(46340 * 46340));
  EXPECT_THROW(Fraction(46341) * Fraction(46341), std::overflow_error);
}

}  // namespace
}  // namespace structmath
