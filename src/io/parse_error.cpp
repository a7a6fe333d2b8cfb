// SPDX-License-Identifier: MIT
// ParseError: "<file>:<line>: <problem>".
#include "structmath/io/parse_error.hpp"

namespace structmath::io {

ParseError::ParseError(std::string file, int line, std::string const& problem)
    : std::runtime_error(file + ":" + std::to_string(line) + ": " + problem),
      file_(std::move(file)),
      line_(line),
      problem_(problem) {}

}  // namespace structmath::io
