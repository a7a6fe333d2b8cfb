// SPDX-License-Identifier: MIT
// Helpers shared by the test suites: log capture and scratch files.
#pragma once

#include <sstream>
#include <string>

namespace structmath::testing {

/// Points the debug log at a string for the lifetime of the object and sets its
/// levels; restores the previous stream and levels on destruction.
class LogCapture {
 public:
  LogCapture(int level, int minimum_level);
  ~LogCapture();
  LogCapture(LogCapture const&) = delete;
  LogCapture& operator=(LogCapture const&) = delete;

  std::string text() const { return buffer_.str(); }
  void clear() { buffer_.str(""); }

 private:
  std::ostringstream buffer_;
  std::ostream* previous_stream_;
  int previous_level_;
  int previous_minimum_level_;
};

/// A fresh path under the system's temporary directory, unique per call; the
/// file is removed when the object dies.
class ScratchFile {
 public:
  explicit ScratchFile(std::string const& suffix = "");
  ~ScratchFile();
  ScratchFile(ScratchFile const&) = delete;
  ScratchFile& operator=(ScratchFile const&) = delete;

  std::string const& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace structmath::testing
