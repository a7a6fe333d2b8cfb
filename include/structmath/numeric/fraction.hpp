// SPDX-License-Identifier: MIT
// Fraction: exact rational numbers held as mixed numbers.
#pragma once

#include <iosfwd>
#include <limits>
#include <type_traits>

#include "structmath/core/archive.hpp"
#include "structmath/export.hpp"

namespace structmath {

/// An exact rational number held as a mixed number: whole + numerator / denominator.
///
/// After every operation the value is simplified to its one canonical form:
/// denominator > 0; |numerator| < denominator; numerator and denominator coprime;
/// a zero numerator has denominator 1; whole and numerator never have opposite
/// signs (-2 1/2 is whole -2, numerator -1, denominator 2). Two fractions are
/// therefore equal exactly when their three fields are.
///
/// The default fraction is one, not zero: it is the identity of `pow`.
///
/// A trivially copyable value type of three ints, without virtual print, read and
/// write (kept: fractions are copied and stored in bulk, and a vtable would double
/// their size for no caller that overrides them).
///
/// Intermediate products are formed in 64-bit arithmetic and reduced before they
/// are stored, so a result is exact whenever its parts fit in an int; when a part
/// of a result (or of one of the mixed numbers a product is built from) does not,
/// the operation throws std::overflow_error "Fraction: integer overflow." and
/// leaves its object unchanged.
///
/// Text form (`print`, `operator<<`): "5", "0", "-3" for whole numbers; "1/2",
/// "-1/2" when the whole part is zero; otherwise "3+1/2" and "-3-1/2". Integers
/// use the stream's current integer formatting.
class STRUCTMATH_API Fraction {
 public:
  /// One (whole 1, 0/1).
  constexpr Fraction() noexcept = default;
  /// The whole number n.
  constexpr Fraction(int n) noexcept : whole_(n) {}  // NOLINT: implicit, as an int is a fraction
  /// numerator / denominator, simplified. Throws std::invalid_argument
  /// "Fraction: Denominator cannot be zero." for a zero denominator.
  Fraction(int numerator, int denominator)
      : whole_(0), numerator_(numerator), denominator_(denominator) {
    init();
  }
  /// whole + numerator / denominator, simplified; the parts may have any signs.
  /// Throws as the two-argument constructor.
  Fraction(int whole, int numerator, int denominator)
      : whole_(whole), numerator_(numerator), denominator_(denominator) {
    init();
  }

  constexpr int whole() const noexcept { return whole_; }
  constexpr int numerator() const noexcept { return numerator_; }
  constexpr int denominator() const noexcept { return denominator_; }
  /// The value whole + numerator / denominator as a double.
  constexpr double to_double() const noexcept {
    return whole_ + static_cast<double>(numerator_) / denominator_;
  }

  /// Checks the denominator, then simplifies.
  void init();
  /// Brings the fields to the canonical form described above. Throws
  /// "Fraction: Denominator cannot be zero." when the denominator is zero.
  void simplify();
  /// Euclid's algorithm on numerator and denominator with truncating remainders,
  /// so the result may be negative; a zero numerator gives the denominator.
  int greatest_common_divisor() const noexcept;

  /// Keeps only the fractional part, as a value in [0, 1): 2 1/3 becomes 1/3 and
  /// -1/4 becomes 3/4.
  void normalize() noexcept {
    whole_ = 0;
    if (numerator_ < 0) numerator_ += denominator_;
  }

  /// The nearest int; exact halves go to the even neighbour (5/2 gives 2, 7/2 gives 4).
  int round_to_int() const;
  /// The smallest int not below the value.
  int ceiling() const { return numerator_ > 0 ? checked_step(whole_, 1) : whole_; }
  /// The largest int not above the value.
  int floor() const { return numerator_ < 0 ? checked_step(whole_, -1) : whole_; }
  /// -1, 0 or 1.
  constexpr int sign() const noexcept {
    if (whole_ == 0 && numerator_ == 0) return 0;
    if (whole_ < 0) return -1;
    return numerator_ < 0 ? -1 : 1;
  }

  /// Squares in place.
  void square();
  /// Replaces the value by its reciprocal. Throws std::invalid_argument
  /// "Fraction: division by zero." for zero.
  void reciprocal();

  Fraction& operator+=(Fraction const& other);
  Fraction& operator-=(Fraction const& other);
  Fraction& operator*=(Fraction const& other);
  /// Throws "Fraction: division by zero." when other is zero.
  Fraction& operator/=(Fraction const& other);
  Fraction& operator*=(int k);
  /// Throws "Fraction: Denominator cannot be zero." when k is zero.
  Fraction& operator/=(int k);

  /// Adds one; -1/4 becomes 3/4.
  Fraction& operator++() {
    if (whole_ == 0 && numerator_ < 0) {
      numerator_ += denominator_;
    } else {
      whole_ = checked_step(whole_, 1);
    }
    return *this;
  }
  /// Subtracts one; 1/4 becomes -3/4.
  Fraction& operator--() {
    if (whole_ == 0 && numerator_ > 0) {
      numerator_ -= denominator_;
    } else {
      whole_ = checked_step(whole_, -1);
    }
    return *this;
  }
  Fraction operator++(int) {
    Fraction const previous = *this;
    ++*this;
    return previous;
  }
  Fraction operator--(int) {
    Fraction const previous = *this;
    --*this;
    return previous;
  }

  /// Field-by-field equality: both operands must be simplified.
  constexpr bool operator==(Fraction const& other) const noexcept {
    return whole_ == other.whole_ && numerator_ == other.numerator_ &&
           denominator_ == other.denominator_;
  }
  constexpr bool operator!=(Fraction const& other) const noexcept { return !(*this == other); }
  /// By whole part first, then by the cross products of the fractional parts.
  constexpr bool operator<(Fraction const& other) const noexcept {
    if (whole_ != other.whole_) return whole_ < other.whole_;
    return static_cast<long long>(numerator_) * other.denominator_ <
           static_cast<long long>(other.numerator_) * denominator_;
  }
  constexpr bool operator>(Fraction const& other) const noexcept { return other < *this; }
  constexpr bool operator<=(Fraction const& other) const noexcept { return !(other < *this); }
  constexpr bool operator>=(Fraction const& other) const noexcept { return !(*this < other); }

  void print(std::ostream& os) const;
  /// Streams whole, numerator, denominator as three ints.
  void write(Archive& archive) const;
  /// Reads whole, numerator, denominator without simplifying. Throws
  /// std::runtime_error "Fraction::read: invalid denominator in archive" for a zero
  /// or most negative denominator, leaving the fraction unchanged.
  void read(Archive& archive);

  /// The negated value (whole and numerator negated, denominator kept).
  Fraction negated() const;
  /// The absolute value (absolute values of whole and numerator).
  Fraction absolute() const;

  /// Throws std::overflow_error "Fraction: integer overflow.".
  [[noreturn]] static void overflow();

 private:
  /// Simplifies whole + numerator / denominator given in 64-bit parts and
  /// returns it as a fraction, throwing on a part that does not fit in an int.
  static Fraction reduced(long long whole, long long numerator, long long denominator);

  static int checked_step(int value, int step) {
    if (step > 0 ? value == std::numeric_limits<int>::max()
                 : value == std::numeric_limits<int>::min()) {
      overflow();
    }
    return value + step;
  }

  int whole_ = 1;
  int numerator_ = 0;
  int denominator_ = 1;
};

static_assert(sizeof(Fraction) == 3 * sizeof(int), "a Fraction is three ints");
static_assert(std::is_trivially_copyable<Fraction>::value, "a Fraction is copied as bytes");

inline Fraction operator+(Fraction const& f) { return f; }
inline Fraction operator-(Fraction const& f) { return f.negated(); }

inline Fraction operator+(Fraction const& a, Fraction const& b) {
  Fraction result = a;
  result += b;
  return result;
}
inline Fraction operator-(Fraction const& a, Fraction const& b) {
  Fraction result = a;
  result -= b;
  return result;
}
inline Fraction operator*(Fraction const& a, Fraction const& b) {
  Fraction result = a;
  result *= b;
  return result;
}
/// Throws "Fraction: division by zero." when b is zero.
inline Fraction operator/(Fraction const& a, Fraction const& b) {
  Fraction result = a;
  result /= b;
  return result;
}
inline Fraction operator*(Fraction const& f, int k) {
  Fraction result = f;
  result *= k;
  return result;
}
inline Fraction operator*(int k, Fraction const& f) { return f * k; }
/// Throws "Fraction: Denominator cannot be zero." when k is zero.
inline Fraction operator/(Fraction const& f, int k) {
  Fraction result = f;
  result /= k;
  return result;
}
/// k times the reciprocal of f; throws "Fraction: division by zero." when f is zero.
inline Fraction operator/(int k, Fraction const& f) {
  Fraction result = f;
  result.reciprocal();
  result *= k;
  return result;
}

/// Mixed arithmetic with doubles works on the fraction's double value.
constexpr double operator*(double x, Fraction const& f) noexcept { return x * f.to_double(); }
constexpr double operator*(Fraction const& f, double x) noexcept { return f.to_double() * x; }
constexpr double operator/(Fraction const& f, double x) noexcept { return f.to_double() / x; }
constexpr double operator/(double x, Fraction const& f) noexcept { return x / f.to_double(); }

/// The absolute value of f.
inline Fraction abs(Fraction const& f) { return f.absolute(); }

/// f raised to the integer power n; pow(f, 0) is one, also for zero. A negative
/// power of zero throws "Fraction: division by zero."; an integer f whose power
/// overflows throws std::invalid_argument "ipow(): overflow.".
STRUCTMATH_API Fraction pow(Fraction const& f, int n);

STRUCTMATH_API std::ostream& operator<<(std::ostream& os, Fraction const& f);

}  // namespace structmath
