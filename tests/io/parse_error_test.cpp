// SPDX-License-Identifier: MIT
// ParseError messages stay one printable line whatever bytes the file held.
#include "structmath/io/parse_error.hpp"

#include <gtest/gtest.h>

#include <string>

namespace structmath::io {
namespace {

TEST(ParseError, EscapesWhatIsNotPrintableUtf8AndKeepsTheRest) {
  EXPECT_EQ(printable("plain ASCII, 1.5 (ok)"), "plain ASCII, 1.5 (ok)");
  // Well-formed UTF-8 of two, three and four bytes is kept as it is.
  EXPECT_EQ(printable("\xC3\x85ngstr\xC3\xB6m \xE2\x84\xAB \xF0\x9F\x98\x80"),
            "\xC3\x85ngstr\xC3\xB6m \xE2\x84\xAB \xF0\x9F\x98\x80");
  // Control characters, DEL, C1 controls, stray continuation bytes, truncated,
  // overlong and surrogate sequences, and bytes that never start one.
  EXPECT_EQ(printable(std::string("a\0b", 3)), "a\\x00b");
  EXPECT_EQ(printable("\t\n\r\x1B[31m\x7F"), "\\x09\\x0A\\x0D\\x1B[31m\\x7F");
  EXPECT_EQ(printable("\xC2\x85"), "\\xC2\\x85");
  EXPECT_EQ(printable("\x80x\xBF"), "\\x80x\\xBF");
  EXPECT_EQ(printable("\xE2\x84"), "\\xE2\\x84");
  EXPECT_EQ(printable("\xC3("), "\\xC3(");
  EXPECT_EQ(printable("\xC0\xAF\xE0\x80\xAF"), "\\xC0\\xAF\\xE0\\x80\\xAF");
  EXPECT_EQ(printable("\xED\xA0\x80"), "\\xED\\xA0\\x80");
  EXPECT_EQ(printable("\xF5\x80\x80\x80\xFF\xFE"), "\\xF5\\x80\\x80\\x80\\xFF\\xFE");

  ParseError const error(
      "bin\xFF"
      "ary.xyz",
      3, "unknown element '\x01\xC3('");
  EXPECT_STREQ(error.what(), "bin\\xFFary.xyz:3: unknown element '\\x01\\xC3('");
  EXPECT_EQ(error.problem(), "unknown element '\\x01\\xC3('");
  EXPECT_EQ(error.file(),
            "bin\xFF"
            "ary.xyz");  // the name as given, for opening it again
}

}  // namespace
}  // namespace structmath::io
