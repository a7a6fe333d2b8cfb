// SPDX-License-Identifier: MIT
// OBJ and PLY writers for triangulated surfaces.
#include "structmath/io/surface_writers.hpp"

#include <cctype>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <optional>
#include <ostream>
#include <stdexcept>

namespace structmath::io {

namespace {

void put_le32(std::ostream& out, std::uint32_t bits) {
  char bytes[4];
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<char>((bits >> (8 * i)) & 0xffU);
  out.write(bytes, 4);
}

void put_float(std::ostream& out, double value) {
  auto const f = static_cast<float>(value);
  std::uint32_t bits = 0;
  std::memcpy(&bits, &f, sizeof bits);
  put_le32(out, bits);
}

bool ends_with(std::string const& text, std::string const& suffix) {
  return text.size() >= suffix.size() &&
         text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

}  // namespace

void write_obj(std::ostream& out, Surface const& surface) {
  out << "# " << surface.node_count() << " vertices, " << surface.triangle_count()
      << " triangles\n";
  for (Point const& p : surface.positions()) {
    out << "v " << p.x() << ' ' << p.y() << ' ' << p.z() << '\n';
  }
  for (Vector3D const& n : surface.normals()) {
    out << "vn " << n.x() << ' ' << n.y() << ' ' << n.z() << '\n';
  }
  for (auto const& idx : surface.triangle_indices()) {
    out << 'f';
    for (int i : idx) out << ' ' << i + 1 << "//" << i + 1;
    out << '\n';
  }
}

void write_ply(std::ostream& out, Surface const& surface, PlyFormat format) {
  bool const binary = format == PlyFormat::binary_little_endian;
  out << "ply\nformat " << (binary ? "binary_little_endian" : "ascii") << " 1.0\n"
      << "comment written by structmath\n"
      << "element vertex " << surface.node_count() << '\n'
      << "property float x\nproperty float y\nproperty float z\n"
      << "property float nx\nproperty float ny\nproperty float nz\n"
      << "element face " << surface.triangle_count() << '\n'
      << "property list uchar int vertex_indices\nend_header\n";
  for (std::size_t node = 0; node < surface.positions().size(); ++node) {
    Point const& p = surface.positions()[node];
    Vector3D const& n = surface.normals()[node];
    double const values[6] = {p.x(), p.y(), p.z(), n.x(), n.y(), n.z()};
    if (binary) {
      for (double v : values) put_float(out, v);
    } else {
      for (int i = 0; i < 6; ++i) out << (i ? " " : "") << static_cast<float>(values[i]);
      out << '\n';
    }
  }
  for (auto const& idx : surface.triangle_indices()) {
    if (binary) {
      out.put(3);
      for (int i : idx) put_le32(out, static_cast<std::uint32_t>(i));
    } else {
      out << "3 " << idx[0] << ' ' << idx[1] << ' ' << idx[2] << '\n';
    }
  }
}

std::optional<SurfaceFormat> surface_format(std::string const& path) {
  std::string lower = path;
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (ends_with(lower, ".ascii.ply")) return SurfaceFormat::ply_ascii;
  if (ends_with(lower, ".ply")) return SurfaceFormat::ply_binary;
  if (ends_with(lower, ".obj")) return SurfaceFormat::obj;
  return std::nullopt;
}

void write_surface(std::string const& path, Surface const& surface) {
  std::optional<SurfaceFormat> const format = surface_format(path);
  if (!format) {
    throw std::invalid_argument("'" + path + "' does not end in .obj, .ply or .ascii.ply");
  }
  std::ofstream out(path, std::ios::binary);
  if (!out) throw std::runtime_error("cannot open '" + path + "' for writing");
  if (*format == SurfaceFormat::obj) {
    write_obj(out, surface);
  } else {
    write_ply(
        out, surface,
        *format == SurfaceFormat::ply_ascii ? PlyFormat::ascii : PlyFormat::binary_little_endian);
  }
  if (!out) throw std::runtime_error("cannot write '" + path + "'");
}

}  // namespace structmath::io
