// SPDX-License-Identifier: MIT
// Fuzz target: what UncertainValue and RangeLimit print reads back to what prints
// the same text. The first byte chooses between the text parsers and the printing
// of raw doubles.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

#include "structmath/statistics/range_limit.hpp"
#include "structmath/statistics/uncertain_value.hpp"

namespace {

template <typename T>
void check_text_round_trip(T const& value) {
  std::string const text = value.to_string();
  std::string again;
  try {
    again = T::parse(text).to_string();
  } catch (std::exception const&) {
    __builtin_trap();  // printed text must always read back
  }
  if (again != text) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  if (size == 0) return 0;
  std::string const text(reinterpret_cast<char const*>(data) + 1, size - 1);
  switch (data[0] % 3) {
    case 0:
      try {
        check_text_round_trip(structmath::UncertainValue::parse(text));
      } catch (std::invalid_argument const&) {
      }
      break;
    case 1:
      try {
        check_text_round_trip(structmath::RangeLimit::parse(text));
      } catch (std::invalid_argument const&) {
      }
      break;
    default: {
      // Every pair of finite doubles, the uncertainty taken as its magnitude.
      if (text.size() < 16) return 0;
      double value = 0.0;
      double uncertainty = 0.0;
      std::memcpy(&value, text.data(), 8);
      std::memcpy(&uncertainty, text.data() + 8, 8);
      if (!(value - value == 0.0) || !(uncertainty - uncertainty == 0.0)) return 0;
      check_text_round_trip(
          structmath::UncertainValue(value, uncertainty < 0 ? -uncertainty : uncertainty));
    }
  }
  return 0;
}
