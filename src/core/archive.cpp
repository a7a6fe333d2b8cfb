// SPDX-License-Identifier: MIT
// Archive: little-endian encoding, bounds-checked reading and file round trips.
#include "structmath/core/archive.hpp"

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace structmath {

Archive::Archive(std::vector<unsigned char> bytes) : bytes_(std::move(bytes)) {}

void Archive::append(unsigned long long bits, std::size_t nbytes) {
  for (std::size_t i = 0; i < nbytes; ++i) {
    bytes_.push_back(static_cast<unsigned char>((bits >> (8 * i)) & 0xffU));
  }
}

unsigned long long Archive::take(std::size_t nbytes, char const* type_name) {
  std::size_t const remaining = bytes_.size() - read_position_;
  if (remaining < nbytes) {
    throw std::runtime_error("Archive: cannot read " + std::string(type_name) + " at offset " +
                             std::to_string(read_position_) + ": " + std::to_string(nbytes) +
                             " bytes needed, " + std::to_string(remaining) + " left");
  }
  unsigned long long bits = 0;
  for (std::size_t i = 0; i < nbytes; ++i) {
    bits |= static_cast<unsigned long long>(bytes_[read_position_ + i]) << (8 * i);
  }
  read_position_ += nbytes;
  return bits;
}

Archive& Archive::operator<<(int value) {
  append(static_cast<std::uint32_t>(value), 4);
  return *this;
}

Archive& Archive::operator<<(unsigned int value) {
  append(value, 4);
  return *this;
}

Archive& Archive::operator<<(double value) {
  static_assert(sizeof(double) == 8, "doubles must be IEEE 754 binary64");
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  append(bits, 8);
  return *this;
}

Archive& Archive::operator>>(int& value) {
  auto const bits = static_cast<std::uint32_t>(take(4, "int"));
  std::int32_t signed_bits = 0;
  std::memcpy(&signed_bits, &bits, sizeof bits);
  value = signed_bits;
  return *this;
}

Archive& Archive::operator>>(unsigned int& value) {
  value = static_cast<unsigned int>(take(4, "unsigned int"));
  return *this;
}

Archive& Archive::operator>>(double& value) {
  std::uint64_t const bits = take(8, "double");
  std::memcpy(&value, &bits, sizeof value);
  return *this;
}

void Archive::save(std::string const& path) const {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) throw std::runtime_error("Archive::save(): cannot open '" + path + "' for writing");
  out.write(reinterpret_cast<char const*>(bytes_.data()),
            static_cast<std::streamsize>(bytes_.size()));
  if (!out) throw std::runtime_error("Archive::save(): cannot write '" + path + "'");
}

Archive Archive::load(std::string const& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("Archive::load(): cannot open '" + path + "' for reading");
  std::vector<unsigned char> bytes((std::istreambuf_iterator<char>(in)),
                                   std::istreambuf_iterator<char>());
  if (in.bad()) throw std::runtime_error("Archive::load(): cannot read '" + path + "'");
  return Archive(std::move(bytes));
}

}  // namespace structmath
