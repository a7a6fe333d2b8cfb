// SPDX-License-Identifier: MIT
// THandle: the reference-counted shared handle through which polymorphic objects are held.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "structmath/export.hpp"

namespace structmath {

/// What every handle shares: the reaction to dereferencing an empty handle.
struct STRUCTMATH_API THandleCommon {
  /// Throws std::runtime_error("THandle: dereferenced an empty handle").
  [[noreturn]] static void null_handle_error();
};

/// Shared ownership of one object: copies share it, the last handle destroys it.
///
/// Equality and ordering are those of the held objects' addresses, so handles
/// serve as keys of std::set and std::map. Dereferencing an empty handle calls
/// THandleCommon::null_handle_error().
template <class T>
class THandle {
 public:
  using element_type = T;

  constexpr THandle() noexcept = default;
  constexpr THandle(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)
  /// Takes ownership of a raw pointer made with new.
  explicit THandle(T* object) : object_(object) {}
  explicit THandle(std::shared_ptr<T> object) noexcept : object_(std::move(object)) {}

  /// A handle to a derived class converts to a handle to its base.
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  THandle(THandle<U> const& other) noexcept  // NOLINT(google-explicit-constructor)
      : object_(other.shared()) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  THandle(THandle<U>&& other) noexcept  // NOLINT(google-explicit-constructor)
      : object_(std::move(other).release_shared()) {}

  T& operator*() const {
    if (!object_) THandleCommon::null_handle_error();
    return *object_;
  }
  T* operator->() const {
    if (!object_) THandleCommon::null_handle_error();
    return object_.get();
  }

  /// The held object's address, or nullptr; never throws.
  T* get() const noexcept { return object_.get(); }
  explicit operator bool() const noexcept { return static_cast<bool>(object_); }
  /// The underlying shared pointer, for interoperation with std code.
  std::shared_ptr<T> const& shared() const noexcept { return object_; }
  std::shared_ptr<T> release_shared() && noexcept { return std::move(object_); }
  /// Number of handles (and shared pointers) sharing the object; 0 when empty.
  long use_count() const noexcept { return object_.use_count(); }
  void reset() noexcept { object_.reset(); }

 private:
  std::shared_ptr<T> object_;
};

/// Creates a T from the arguments and returns the first handle to it.
template <class T, class... Args>
THandle<T> make_handle(Args&&... args) {
  return THandle<T>(std::make_shared<T>(std::forward<Args>(args)...));
}

/// Casts a handle down the class hierarchy; empty when the object is not a U.
template <class U, class T>
THandle<U> dynamic_handle_cast(THandle<T> const& handle) noexcept {
  return THandle<U>(std::dynamic_pointer_cast<U>(handle.shared()));
}

template <class T, class U>
bool operator==(THandle<T> const& a, THandle<U> const& b) noexcept {
  return a.get() == b.get();
}
template <class T, class U>
bool operator!=(THandle<T> const& a, THandle<U> const& b) noexcept {
  return !(a == b);
}
template <class T>
bool operator==(THandle<T> const& a, std::nullptr_t) noexcept {
  return a.get() == nullptr;
}
template <class T>
bool operator!=(THandle<T> const& a, std::nullptr_t) noexcept {
  return a.get() != nullptr;
}
/// Orders by address (a total order, also across unrelated allocations).
template <class T>
bool operator<(THandle<T> const& a, THandle<T> const& b) noexcept {
  return std::less<T*>()(a.get(), b.get());
}

}  // namespace structmath

template <class T>
struct std::hash<structmath::THandle<T>> {
  std::size_t operator()(structmath::THandle<T> const& h) const noexcept {
    return std::hash<T*>()(h.get());
  }
};
