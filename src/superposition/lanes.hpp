// SPDX-License-Identifier: MIT
// Lanes: two doubles side by side for the passes over point sets (internal).
#pragma once

namespace structmath::detail {

// Each lane is computed exactly as the scalar expression would be (plain IEEE additions,
// subtractions and products, no contraction), so pairing two sums changes no bit of
// either. GNU vector extensions where available, a plain pair elsewhere.
#if defined(__GNUC__)
typedef double Lanes __attribute__((vector_size(16)));
inline Lanes lanes(double a, double b) noexcept { return Lanes{a, b}; }
#else
struct Lanes {
  double v[2];
  double operator[](int i) const noexcept { return v[i]; }
};
inline Lanes lanes(double a, double b) noexcept { return Lanes{{a, b}}; }
inline Lanes operator+(Lanes a, Lanes b) noexcept { return lanes(a[0] + b[0], a[1] + b[1]); }
inline Lanes operator-(Lanes a, Lanes b) noexcept { return lanes(a[0] - b[0], a[1] - b[1]); }
inline Lanes operator*(Lanes a, Lanes b) noexcept { return lanes(a[0] * b[0], a[1] * b[1]); }
inline Lanes& operator+=(Lanes& a, Lanes b) noexcept { return a = a + b; }
#endif

}  // namespace structmath::detail
