// SPDX-License-Identifier: MIT
// Log capture and scratch files for the test suites.
#include "support/test_support.hpp"

#include <unistd.h>
#include <atomic>
#include <cstdio>
#include <filesystem>

#include "structmath/core/vasc_log.hpp"

namespace structmath::testing {

LogCapture::LogCapture(int level, int minimum_level)
    : previous_stream_(&VascLog::stream()),
      previous_level_(VascLog::level_),
      previous_minimum_level_(VascLog::minimum_level_) {
  VascLog::set_stream(buffer_);
  VascLog::level_ = level;
  VascLog::minimum_level_ = minimum_level;
}

LogCapture::~LogCapture() {
  VascLog::set_stream(*previous_stream_);
  VascLog::level_ = previous_level_;
  VascLog::minimum_level_ = previous_minimum_level_;
}

ScratchFile::ScratchFile(std::string const& suffix) {
  static std::atomic<unsigned> counter{0};
  auto const name =
      "structmath_test_" + std::to_string(::getpid()) + "_" + std::to_string(counter++) + suffix;
  path_ = (std::filesystem::temp_directory_path() / name).string();
}

ScratchFile::~ScratchFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

}  // namespace structmath::testing
