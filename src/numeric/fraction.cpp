// SPDX-License-Identifier: MIT
// Fraction: simplification, arithmetic, powers, printing and archiving.
#include "structmath/numeric/fraction.hpp"

#include "structmath/numeric/tolerance.hpp"

#include <cmath>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <utility>

namespace structmath {

namespace {

using Wide = long long;

constexpr char kZeroDenominator[] = "Fraction: Denominator cannot be zero.";
constexpr char kDivisionByZero[] = "Fraction: division by zero.";

// Euclid's algorithm on (larger, smaller) by signed comparison, the denominator
// counting as the larger when both are equal. Truncating remainders keep a sign
// that the caller corrects afterwards. Neither argument may be zero.
Wide signed_divisor(Wide numerator, Wide denominator) {
  Wide larger = denominator;
  Wide smaller = numerator;
  if (numerator > denominator) std::swap(larger, smaller);
  for (;;) {
    Wide const remainder = larger % smaller;
    if (remainder == 0) return smaller;
    larger = smaller;
    smaller = remainder;
  }
}

// The positive greatest common divisor of two non-zero magnitudes, by Stein's
// binary method: shifts and subtractions instead of 64-bit divisions.
unsigned long long magnitude_divisor(unsigned long long a, unsigned long long b) {
#if defined(__GNUC__) || defined(__clang__)
  int const shift = __builtin_ctzll(a | b);
  a >>= __builtin_ctzll(a);
  do {
    b >>= __builtin_ctzll(b);
    if (a > b) std::swap(a, b);
    b -= a;
  } while (b != 0);
  return a << shift;
#else
  while (b != 0) {
    unsigned long long const r = a % b;
    a = b;
    b = r;
  }
  return a;
#endif
}

unsigned long long magnitude(Wide value) {
  return value < 0 ? 0ULL - static_cast<unsigned long long>(value)
                   : static_cast<unsigned long long>(value);
}

// Truncating a / b; operands that fit in 32 bits use the much faster 32-bit
// division (INT_MIN is left to the 64-bit one, as INT_MIN / -1 would trap).
Wide divide(Wide a, Wide b) {
  constexpr Wide low = -static_cast<Wide>(std::numeric_limits<int>::max());
  constexpr Wide high = std::numeric_limits<int>::max();
  if (a >= low && a <= high && b >= low && b <= high) {
    return static_cast<int>(a) / static_cast<int>(b);
  }
  return a / b;
}

constexpr Wide int_max = std::numeric_limits<int>::max();

// Whether n / d is a proper fraction with a positive denominator, as in a simplified
// fraction (a fraction read from an archive need not be one).
constexpr bool proper(Wide n, Wide d) { return d > 0 && n < d && -n < d; }

int narrow(Wide value) {
  if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
    Fraction::overflow();
  }
  return static_cast<int>(value);
}

// ipow() of a whole number, rejecting the results just above INT_MAX that its
// ceiling-style bound admits (they wrap): a double holds every such power exactly.
int whole_power(int base, unsigned exponent) {
  int const result = ipow(base, exponent);
  if (static_cast<double>(result) != std::pow(static_cast<double>(base), exponent)) {
    Fraction::overflow();
  }
  return result;
}

}  // namespace

void Fraction::overflow() { throw std::overflow_error("Fraction: integer overflow."); }

Fraction Fraction::reduced(Wide whole, Wide numerator, Wide denominator) {
  if (denominator == 0) throw std::invalid_argument(kZeroDenominator);
  Wide const quotient = divide(numerator, denominator);
  if (quotient != 0) {
    whole += quotient;
    numerator -= quotient * denominator;
  }
  if (numerator != 0) {
    // Any divisor of the same magnitude as signed_divisor's gives the same result
    // once the sign is moved to the numerator, so the faster one is used here.
    auto const divisor =
        static_cast<Wide>(magnitude_divisor(magnitude(numerator), magnitude(denominator)));
    numerator = divide(numerator, divisor);
    denominator = divide(denominator, divisor);
    if (denominator < 0) {
      numerator = -numerator;
      denominator = -denominator;
    }
  } else {
    denominator = 1;
  }
  if (whole < 0 && numerator >= 1) {
    whole += 1;
    numerator -= denominator;
  } else if (whole >= 1 && numerator < 0) {
    whole -= 1;
    numerator += denominator;
  }
  Fraction result;
  result.whole_ = narrow(whole);
  result.numerator_ = narrow(numerator);
  result.denominator_ = narrow(denominator);
  return result;
}

void Fraction::init() {
  if (denominator_ == 0) throw std::invalid_argument(kZeroDenominator);
  simplify();
}

void Fraction::simplify() { *this = reduced(whole_, numerator_, denominator_); }

int Fraction::greatest_common_divisor() const noexcept {
  if (numerator_ == 0 || denominator_ == 0) return numerator_ == 0 ? denominator_ : numerator_;
  // |result| <= min(|numerator|, |denominator|) unless both are equal: it fits.
  return static_cast<int>(signed_divisor(numerator_, denominator_));
}

int Fraction::round_to_int() const {
  int const away = numerator_ > 0 ? 1 : -1;
  if (denominator_ == 2) {
    return whole_ % 2 == 0 ? whole_ : checked_step(whole_, away);
  }
  if (2 * static_cast<Wide>(numerator_ < 0 ? -static_cast<Wide>(numerator_) : numerator_) <
      denominator_) {
    return whole_;
  }
  return checked_step(whole_, away);
}

void Fraction::square() {
  Wide const w = whole_;
  Wide const n = numerator_;
  Wide const d = denominator_;
  Fraction const s = reduced(0, 2 * w * n, d) + reduced(0, n * n, d * d);
  Fraction result;
  result.whole_ = narrow(w * w + s.whole_);
  result.numerator_ = s.numerator_;
  result.denominator_ = s.denominator_;
  *this = result;
}

void Fraction::reciprocal() {
  if (whole_ == 0 && numerator_ == 0) throw std::invalid_argument(kDivisionByZero);
  *this = reduced(0, denominator_, static_cast<Wide>(whole_) * denominator_ + numerator_);
}

Fraction& Fraction::operator+=(Fraction const& other) {
  *this = reduced(static_cast<Wide>(whole_) + other.whole_,
                  static_cast<Wide>(numerator_) * other.denominator_ +
                      static_cast<Wide>(other.numerator_) * denominator_,
                  static_cast<Wide>(denominator_) * other.denominator_);
  return *this;
}

Fraction& Fraction::operator-=(Fraction const& other) {
  *this = reduced(static_cast<Wide>(whole_) - other.whole_,
                  static_cast<Wide>(numerator_) * other.denominator_ -
                      static_cast<Wide>(other.numerator_) * denominator_,
                  static_cast<Wide>(denominator_) * other.denominator_);
  return *this;
}

Fraction& Fraction::operator*=(Fraction const& other) {
  // (wa + na/da)(wb + nb/db) = wa wb + S with S = wa nb/db + na wb/da + na nb/(da db);
  // for simplified operands the three terms of S share the sign of wa wb, so the result
  // is simplified without a further step.
  Wide const wa = whole_;
  Wide const na = numerator_;
  Wide const da = denominator_;
  Wide const wb = other.whole_;
  Wide const nb = other.numerator_;
  Wide const db = other.denominator_;
  Fraction s;
  if (proper(na, da) && proper(nb, db) && da * db <= int_max &&
      magnitude(wa) + magnitude(wb) < static_cast<unsigned long long>(int_max)) {
    // S over the common denominator, reduced once. Here every term of S and each partial
    // sum has parts that fit in an int (|S| < |wa| + |wb| + 1, denominators divide
    // da db), so this is the same value, in the same simplified fields, as the three
    // terms reduced and added one by one; and |numerator| < (|wa| + |wb| + 1) da db
    // < 2^62 cannot overflow.
    s = reduced(0, wa * nb * da + na * wb * db + na * nb, da * db);
  } else {
    // Large parts: the three terms reduced and added one by one, so that a term or a
    // partial sum whose parts do not fit in an int throws, whatever the final value.
    s = reduced(0, wa * nb, db) + reduced(0, na * wb, da) + reduced(0, na * nb, da * db);
  }
  Fraction result;
  result.whole_ = narrow(wa * wb + s.whole_);
  result.numerator_ = s.numerator_;
  result.denominator_ = s.denominator_;
  *this = result;
  return *this;
}

Fraction& Fraction::operator/=(Fraction const& other) {
  Fraction inverse = other;
  inverse.reciprocal();
  return *this *= inverse;
}

Fraction& Fraction::operator*=(int k) {
  *this = reduced(static_cast<Wide>(whole_) * k, static_cast<Wide>(numerator_) * k, denominator_);
  return *this;
}

Fraction& Fraction::operator/=(int k) { return *this *= Fraction(1, k); }

Fraction Fraction::negated() const {
  Fraction result = *this;
  result.whole_ = narrow(-static_cast<Wide>(whole_));
  result.numerator_ = narrow(-static_cast<Wide>(numerator_));
  return result;
}

Fraction Fraction::absolute() const {
  Fraction result = *this;
  if (whole_ < 0) result.whole_ = narrow(-static_cast<Wide>(whole_));
  if (numerator_ < 0) result.numerator_ = narrow(-static_cast<Wide>(numerator_));
  return result;
}

void Fraction::print(std::ostream& os) const {
  if (numerator_ == 0) {
    os << whole_;
  } else if (whole_ == 0) {
    os << numerator_ << '/' << denominator_;
  } else {
    os << whole_;
    if (numerator_ >= 0) os << '+';
    os << numerator_ << '/' << denominator_;
  }
}

void Fraction::write(Archive& archive) const { archive << whole_ << numerator_ << denominator_; }

void Fraction::read(Archive& archive) {
  int whole = 0;
  int numerator = 0;
  int denominator = 0;
  archive >> whole >> numerator >> denominator;
  // A zero denominator would divide by zero later; the most negative one would let
  // the 64-bit cross products overflow.
  if (denominator == 0 || denominator == std::numeric_limits<int>::min()) {
    throw std::runtime_error("Fraction::read: invalid denominator in archive");
  }
  whole_ = whole;
  numerator_ = numerator;
  denominator_ = denominator;
}

Fraction pow(Fraction const& f, int n) {
  if (n == 0) return Fraction();
  if (f.numerator() == 0) {
    if (f.whole() == 1) return Fraction();
    if (n > 0) return Fraction(whole_power(f.whole(), static_cast<unsigned>(n)));
  }
  Fraction base = f;
  Wide exponent = n;
  if (exponent < 0) {
    base.reciprocal();
    exponent = -exponent;
  }
  Fraction result;
  while (exponent > 0) {
    if (exponent % 2 == 0) {
      exponent /= 2;
      base.square();
    } else {
      result *= base;
      --exponent;
    }
  }
  return result;
}

std::ostream& operator<<(std::ostream& os, Fraction const& f) {
  f.print(os);
  return os;
}

}  // namespace structmath
