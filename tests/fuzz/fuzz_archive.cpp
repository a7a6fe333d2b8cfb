// SPDX-License-Identifier: MIT
// Fuzz target: every persistable type reads arbitrary archive bytes (the first byte
// chooses the type, evenly); whatever reads without an exception is written back,
// read again and written again, and the two writings must be the same bytes.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

#include "structmath/core/archive.hpp"
#include "structmath/geometry/line.hpp"
#include "structmath/geometry/plane.hpp"
#include "structmath/geometry/quaternion.hpp"
#include "structmath/geometry/transformation.hpp"
#include "structmath/numeric/angle.hpp"
#include "structmath/numeric/fraction.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/vector.hpp"
#include "structmath/optimisation/rosenbrock.hpp"
#include "structmath/solids/box.hpp"
#include "structmath/solids/slab.hpp"
#include "structmath/statistics/mean.hpp"
#include "structmath/statistics/range_limit.hpp"
#include "structmath/statistics/uncertain_value.hpp"
#include "structmath/statistics/uncertainty.hpp"

namespace {

using structmath::Archive;
using Bytes = std::vector<unsigned char>;

// Reads a fresh object of type T from `archive`, writes it and returns the bytes.
// The factory makes the fresh object (some types have no default constructor).
template <typename T>
Bytes read_and_write(Archive& archive, std::function<std::unique_ptr<T>()> const& make) {
  std::unique_ptr<T> object = make();
  object->read(archive);
  Archive out;
  object->write(out);
  return out.bytes();
}

template <typename T>
void round_trip(Bytes const& input, std::function<std::unique_ptr<T>()> const& make) {
  Bytes first;
  try {
    Archive archive(input);
    first = read_and_write<T>(archive, make);
  } catch (std::exception const&) {
    return;  // bad bytes are refused; that is all that is asked of them
  }
  Archive again(first);
  Bytes second;
  try {
    second = read_and_write<T>(again, make);
  } catch (std::exception const&) {
    __builtin_trap();  // what was written must read
  }
  if (second != first || !again.at_end()) __builtin_trap();
}

template <typename T>
std::function<std::unique_ptr<T>()> made_default() {
  return [] { return std::make_unique<T>(); };
}

using Check = void (*)(Bytes const&);

Check const checks[] = {
    [](Bytes const& b) { round_trip(b, made_default<structmath::Angle>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Fraction>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Point>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Vector3D>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Line>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Plane>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Quaternion>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Transformation>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Box>()); },
    [](Bytes const& b) {
      round_trip<structmath::Slab>(
          b, [] { return std::make_unique<structmath::Slab>(structmath::Plane(), 1.0); });
    },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Rosenbrock1>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Rosenbrock2>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Mean>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::RangeLimit>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::Uncertainty>()); },
    [](Bytes const& b) { round_trip(b, made_default<structmath::UncertainValue>()); },
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  if (size == 0) return 0;
  constexpr std::size_t count = sizeof checks / sizeof checks[0];
  // Scaled rather than taken modulo, so that every type gets as many first bytes.
  std::size_t const choice = data[0] * count / 256;
  checks[choice](Bytes(data + 1, data + size));
  return 0;
}
