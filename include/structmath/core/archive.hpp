// SPDX-License-Identifier: MIT
// Archive: binary serialisation stream with a fixed little-endian encoding.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "structmath/export.hpp"

namespace structmath {

/// A binary stream of ints, unsigned ints and doubles in an in-memory buffer.
///
/// The encoding does not depend on the host: an int or unsigned int is four
/// bytes little-endian (two's complement), a double eight bytes little-endian
/// IEEE 754. Writing appends at the end; reading consumes from a read position
/// that starts at the first byte. Persistable classes stream their fields with
/// `write(Archive&) const` and `read(Archive&)`.
class STRUCTMATH_API Archive {
 public:
  Archive() = default;
  /// An archive whose content is the given bytes, read from the first.
  explicit Archive(std::vector<unsigned char> bytes);

  Archive& operator<<(int value);
  Archive& operator<<(unsigned int value);
  Archive& operator<<(double value);

  /// Each reader throws std::runtime_error naming the type and the offset when
  /// fewer bytes remain than it needs; the target is then left unchanged.
  Archive& operator>>(int& value);
  Archive& operator>>(unsigned int& value);
  Archive& operator>>(double& value);

  std::vector<unsigned char> const& bytes() const noexcept { return bytes_; }
  std::size_t size() const noexcept { return bytes_.size(); }
  std::size_t read_position() const noexcept { return read_position_; }
  /// True when everything written has been read.
  bool at_end() const noexcept { return read_position_ == bytes_.size(); }
  /// Starts reading again from the first byte.
  void rewind() noexcept { read_position_ = 0; }

  /// Writes the bytes to a file; throws std::runtime_error naming the path on failure.
  void save(std::string const& path) const;
  /// Reads a whole file into a new archive; throws std::runtime_error naming the path.
  static Archive load(std::string const& path);

 private:
  void append(unsigned long long bits, std::size_t nbytes);
  unsigned long long take(std::size_t nbytes, char const* type_name);

  std::vector<unsigned char> bytes_;
  std::size_t read_position_ = 0;
};

}  // namespace structmath
