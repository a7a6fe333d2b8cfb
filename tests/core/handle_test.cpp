// SPDX-License-Identifier: MIT
// Tests of THandle: sharing, lifetime, ordering and empty dereference.
#include "structmath/core/handle.hpp"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <stdexcept>

namespace structmath {
namespace {

struct Counted {
  explicit Counted(int v, int* alive) : value(v), alive_count(alive) { ++*alive_count; }
  virtual ~Counted() { --*alive_count; }
  Counted(Counted const&) = delete;
  Counted& operator=(Counted const&) = delete;
  int value;
  int* alive_count;
};

struct Derived : Counted {
  using Counted::Counted;
};

TEST(THandle, CopiesShareOneObjectThatDiesWithTheLastHandle) {
  int alive = 0;
  {
    THandle<Counted> first = make_handle<Counted>(7, &alive);
    EXPECT_EQ(alive, 1);
    {
      THandle<Counted> second = first;
      EXPECT_EQ(second.get(), first.get());
      EXPECT_EQ(first.use_count(), 2);
      second->value = 9;
      EXPECT_EQ((*first).value, 9);
      first.reset();
      EXPECT_EQ(alive, 1);
      EXPECT_FALSE(first);
      EXPECT_TRUE(second);
    }
    EXPECT_EQ(alive, 0);
  }
  EXPECT_EQ(alive, 0);
}

TEST(THandle, DereferencingAnEmptyHandleThrows) {
  THandle<Counted> empty;
  EXPECT_FALSE(empty);
  EXPECT_EQ(empty.get(), nullptr);
  EXPECT_TRUE(empty == nullptr);
  EXPECT_THROW((void)empty->value, std::runtime_error);
  EXPECT_THROW((void)*empty, std::runtime_error);
  try {
    THandleCommon::null_handle_error();
    FAIL() << "null_handle_error returned";
  } catch (std::runtime_error const& e) {
    EXPECT_STREQ(e.what(), "THandle: dereferenced an empty handle");
  }
}

TEST(THandle, EqualityAndOrderFollowTheObjectAddresses) {
  int alive = 0;
  auto a = make_handle<Counted>(1, &alive);
  auto b = make_handle<Counted>(1, &alive);
  auto a2 = a;
  EXPECT_TRUE(a == a2);
  EXPECT_FALSE(a == b);  // equal values, distinct objects
  EXPECT_TRUE(a != b);
  EXPECT_EQ(a < b, std::less<Counted*>()(a.get(), b.get()));
  EXPECT_FALSE(a < a2);

  std::set<THandle<Counted>> set{a, b, a2};
  EXPECT_EQ(set.size(), 2U);
  std::map<THandle<Counted>, int> map;
  map[a] = 1;
  map[a2] += 1;
  EXPECT_EQ(map.size(), 1U);
  EXPECT_EQ(map[a], 2);
}

TEST(THandle, DerivedHandlesConvertToBaseAndCastBack) {
  int alive = 0;
  THandle<Derived> derived = make_handle<Derived>(3, &alive);
  THandle<Counted> base = derived;
  EXPECT_TRUE(base == derived);
  EXPECT_EQ(base.use_count(), 2);
  THandle<Derived> back = dynamic_handle_cast<Derived>(base);
  EXPECT_TRUE(back == derived);
  THandle<Counted> plain = make_handle<Counted>(4, &alive);
  EXPECT_FALSE(dynamic_handle_cast<Derived>(plain));
  std::shared_ptr<Counted> const& shared = base.shared();
  EXPECT_EQ(shared.get(), derived.get());
}

}  // namespace
}  // namespace structmath
