// SPDX-License-Identifier: MIT
// Test helper shared by the suites: checks of an exception's type and exact message.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace structmath::testing {

/// Runs action and expects it to throw an E whose what() is exactly message.
template <class E, class F>
void expect_throw_message(F&& action, std::string const& message) {
  try {
    action();
    ADD_FAILURE() << "no exception; expected: " << message;
  } catch (E const& e) {
    EXPECT_EQ(e.what(), message);
  } catch (...) {
    ADD_FAILURE() << "wrong exception type; expected: " << message;
  }
}

}  // namespace structmath::testing
