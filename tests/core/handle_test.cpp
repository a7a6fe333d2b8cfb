// SPDX-License-Identifier: MIT
// Tests of THandle: sharing, lifetime, ordering and empty dereference.
#include "structmath/core/handle.hpp"

#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

#include "support/expect_throw.hpp"

namespace structmath {
namespace {

struct Base {
  virtual ~Base() = default;
  int value = 0;
};
struct Derived : Base {};

TEST(THandle, CopiesShareOneObjectThatDiesWithTheLastHandle) {
  THandle<Base> first = make_handle<Base>();
  std::weak_ptr<Base> const watch = first.shared();
  {
    THandle<Base> second = first;
    second->value = 9;
    EXPECT_EQ((*first).value, 9);
    first.reset();
    EXPECT_FALSE(first);
    EXPECT_FALSE(watch.expired());
  }
  EXPECT_TRUE(watch.expired());
}

TEST(THandle, DereferencingAnEmptyHandleThrows) {
  THandle<Base> empty;
  EXPECT_TRUE(empty == nullptr);
  testing::expect_throw_message<std::runtime_error>([&] { (void)*empty; },
                                                    "THandle: dereferenced an empty handle");
  EXPECT_THROW((void)empty->value, std::runtime_error);
}

TEST(THandle, EqualityAndOrderFollowTheObjectAddresses) {
  auto a = make_handle<Base>();
  auto b = make_handle<Base>();  // an equal value in a distinct object
  auto a2 = a;
  EXPECT_TRUE(a == a2);
  EXPECT_TRUE(a != b);
  EXPECT_EQ(a < b, std::less<Base*>()(a.get(), b.get()));
  EXPECT_FALSE(a < a2);
  EXPECT_EQ((std::set<THandle<Base>>{a, b, a2}.size()), 2U);
}

TEST(THandle, DerivedHandlesConvertToBaseAndCastBack) {
  THandle<Derived> derived = make_handle<Derived>();
  THandle<Base> base = derived;
  EXPECT_EQ(base.use_count(), 2);
  EXPECT_TRUE(dynamic_handle_cast<Derived>(base) == derived);
  EXPECT_FALSE(dynamic_handle_cast<Derived>(make_handle<Base>()));
}

}  // namespace
}  // namespace structmath
