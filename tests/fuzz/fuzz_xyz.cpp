// SPDX-License-Identifier: MIT
// Fuzz target: the XYZ reader, frame by frame, on arbitrary bytes.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "structmath/io/parse_error.hpp"
#include "structmath/io/xyz.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<char const*>(data), size));
  structmath::io::XyzReader reader(in, "fuzz.xyz");
  // A bad frame is reported and the reader stands after it, so keep going; the
  // frame limit only bounds a run on an input that repeats an empty frame.
  for (int frame = 0; frame < 1000; ++frame) {
    try {
      structmath::io::Molecule molecule;
      if (!reader.next(molecule)) break;
    } catch (structmath::io::ParseError const&) {
    }
  }
  return 0;
}
