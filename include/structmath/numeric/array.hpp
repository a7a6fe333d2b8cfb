// SPDX-License-Identifier: MIT
// Array: N contiguous numbers, the storage of vectors, points, quaternions and matrices.
#pragma once

#include <type_traits>

namespace structmath {

/// Exactly N elements, contiguous, zero-filled by default. Subscripts count from 0
/// and are not checked.
template <typename T, unsigned int N>
class Array {
 public:
  constexpr Array() noexcept : elements_{} {}

  constexpr T& operator[](unsigned int i) noexcept { return elements_[i]; }
  constexpr T const& operator[](unsigned int i) const noexcept { return elements_[i]; }

  constexpr T const* begin() const noexcept { return elements_; }
  constexpr T const* end() const noexcept { return elements_ + N; }
  constexpr T* data() noexcept { return elements_; }
  constexpr T const* data() const noexcept { return elements_; }
  static constexpr unsigned int size() noexcept { return N; }

 private:
  T elements_[N];
};

static_assert(sizeof(Array<double, 3>) == 3 * sizeof(double), "no padding in Array");
static_assert(std::is_trivially_copyable_v<Array<double, 9>>, "Array is copied bitwise");

}  // namespace structmath
