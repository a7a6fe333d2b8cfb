// SPDX-License-Identifier: MIT
// Tests of Archive: byte layout, round trips, truncated input and files.
#include "structmath/core/archive.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <stdexcept>

#include "support/test_support.hpp"

namespace structmath {
namespace {

using Bytes = std::vector<unsigned char>;

TEST(Archive, EncodesLittleEndianFixedWidths) {
  Archive archive;
  archive << 1 << -2 << 0x01020304U << 1.0;
  Bytes const expected{0x01, 0x00, 0x00, 0x00,                           // 1
                       0xfe, 0xff, 0xff, 0xff,                           // -2
                       0x04, 0x03, 0x02, 0x01,                           // 0x01020304
                       0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xf0, 0x3f};  // 1.0
  EXPECT_EQ(archive.bytes(), expected);
}

TEST(Archive, RoundTripsEveryTypeIncludingExtremes) {
  Archive archive;
  int const ints[] = {0, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()};
  unsigned const uints[] = {0U, 1U, std::numeric_limits<unsigned>::max()};
  double const doubles[] = {0.0, -0.0, 0.1, -1e-300, std::numeric_limits<double>::max(),
                            std::numeric_limits<double>::denorm_min(),
                            std::numeric_limits<double>::infinity()};
  for (int v : ints) archive << v;
  for (unsigned v : uints) archive << v;
  for (double v : doubles) archive << v;
  archive << std::numeric_limits<double>::quiet_NaN();

  Archive copy(archive.bytes());
  for (int v : ints) {
    int r = 12345;
    copy >> r;
    EXPECT_EQ(r, v);
  }
  for (unsigned v : uints) {
    unsigned r = 12345;
    copy >> r;
    EXPECT_EQ(r, v);
  }
  for (double v : doubles) {
    double r = 12345.0;
    copy >> r;
    EXPECT_EQ(r, v);
    EXPECT_EQ(std::signbit(r), std::signbit(v));
  }
  double nan = 0.0;
  copy >> nan;
  EXPECT_TRUE(std::isnan(nan));
  EXPECT_TRUE(copy.at_end());
}

TEST(Archive, TruncatedInputThrowsNamingTypeAndOffsetAndLeavesTargetUnchanged) {
  Archive archive(Bytes{1, 0, 0, 0, 9, 9, 9});
  int first = 0;
  archive >> first;
  EXPECT_EQ(first, 1);
  double target = 42.0;
  try {
    archive >> target;
    FAIL() << "read past the end";
  } catch (std::runtime_error const& e) {
    EXPECT_STREQ(e.what(), "Archive: cannot read double at offset 4: 8 bytes needed, 3 left");
  }
  EXPECT_EQ(target, 42.0);
  EXPECT_EQ(archive.read_position(), 4U);
  int i = 5;
  unsigned u = 6;
  EXPECT_THROW(Archive() >> i, std::runtime_error);
  EXPECT_THROW(Archive() >> u, std::runtime_error);
  EXPECT_EQ(i, 5);
  EXPECT_EQ(u, 6U);
}

TEST(Archive, SavesAndLoadsFiles) {
  testing::ScratchFile file(".bin");
  Archive archive;
  archive << 3 << 2.75;
  archive.save(file.path());
  Archive loaded = Archive::load(file.path());
  EXPECT_EQ(loaded.bytes(), archive.bytes());
  int i = 0;
  double d = 0.0;
  loaded >> i >> d;
  EXPECT_EQ(i, 3);
  EXPECT_EQ(d, 2.75);
  loaded.rewind();
  EXPECT_EQ(loaded.read_position(), 0U);

  std::string const missing = "/nonexistent-dir/archive.bin";
  try {
    (void)Archive::load(missing);
    FAIL() << "loaded a missing file";
  } catch (std::runtime_error const& e) {
    EXPECT_NE(std::string(e.what()).find(missing), std::string::npos);
  }
  EXPECT_THROW(archive.save(missing), std::runtime_error);
}

}  // namespace
}  // namespace structmath
