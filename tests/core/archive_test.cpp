// SPDX-License-Identifier: MIT
// Tests of Archive: byte layout, round trips, truncated input and files.
#include "structmath/core/archive.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <stdexcept>

#include "support/expect_throw.hpp"
#include "support/test_support.hpp"

namespace structmath {
namespace {

using Bytes = std::vector<unsigned char>;
using testing::expect_throw_message;

TEST(Archive, EncodesLittleEndianFixedWidths) {
  Archive archive;
  archive << 1 << -2 << 0x01020304U << 1.0;
  // 1, -2 and 0x01020304 in four bytes each, then 1.0 in eight.
  EXPECT_EQ(archive.bytes(),
            (Bytes{1, 0, 0, 0, 0xfe, 0xff, 0xff, 0xff, 4, 3, 2, 1, 0, 0, 0, 0, 0, 0, 0xf0, 0x3f}));
}

// Writes the values, reads them back from a copy of the bytes and compares bit for
// bit (so -0.0 and NaN count too).
template <class T>
void expect_round_trip(std::initializer_list<T> values) {
  Archive archive;
  for (T v : values) archive << v;
  Archive copy(archive.bytes());
  for (T v : values) {
    T read{};
    copy >> read;
    EXPECT_EQ(std::memcmp(&read, &v, sizeof v), 0) << v;
  }
  EXPECT_TRUE(copy.at_end());
}

TEST(Archive, RoundTripsEveryTypeIncludingExtremes) {
  using L = std::numeric_limits<double>;
  expect_round_trip<int>({0, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()});
  expect_round_trip<unsigned>({0U, 1U, std::numeric_limits<unsigned>::max()});
  expect_round_trip<double>(
      {0.0, -0.0, 0.1, -1e-300, L::max(), L::denorm_min(), L::infinity(), L::quiet_NaN()});
}

TEST(Archive, TruncatedInputThrowsNamingTypeAndOffsetAndLeavesTargetUnchanged) {
  Archive archive(Bytes{1, 0, 0, 0, 9, 9, 9});
  int i = 0;
  archive >> i;  // 1
  double target = 42.0;
  expect_throw_message<std::runtime_error>(
      [&] { archive >> target; },
      "Archive: cannot read double at offset 4: 8 bytes needed, 3 left");
  EXPECT_EQ(target, 42.0);
  EXPECT_EQ(archive.read_position(), 4U);
  unsigned u = 6;
  EXPECT_THROW(archive >> u, std::runtime_error);
  EXPECT_THROW(archive >> i, std::runtime_error);
  EXPECT_EQ(u, 6U);
  EXPECT_EQ(i, 1);
}

TEST(Archive, SavesAndLoadsFilesAndNamesAPathItCannotOpen) {
  testing::ScratchFile file(".bin");
  Archive archive;
  archive << 3 << 2.75;
  archive.save(file.path());
  EXPECT_EQ(Archive::load(file.path()).bytes(), archive.bytes());

  std::string const missing = "/nonexistent-dir/archive.bin";
  expect_throw_message<std::runtime_error>(
      [&] { (void)Archive::load(missing); },
      "Archive::load(): cannot open '" + missing + "' for reading");
  EXPECT_THROW(archive.save(missing), std::runtime_error);
}

}  // namespace
}  // namespace structmath
