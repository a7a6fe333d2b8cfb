// SPDX-License-Identifier: MIT
// Writers of triangulated surfaces: Wavefront OBJ and PLY, with node normals.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "structmath/grid/surface.hpp"
#include "structmath/io/export.hpp"

namespace structmath::io {

/// Writes "v", "vn" and "f a//a b//b c//c" lines (indices from 1), the normals as the
/// nodes hold them (call Surface::update_node_normals first for shading normals).
STRUCTMATH_IO_API void write_obj(std::ostream& out, Surface const& surface);

enum class PlyFormat { ascii, binary_little_endian };

/// Writes a PLY file with vertex x, y, z, nx, ny, nz as float and faces as a list of
/// uchar count and int indices. The binary form is little-endian whatever the host.
STRUCTMATH_IO_API void write_ply(std::ostream& out, Surface const& surface, PlyFormat format);

enum class SurfaceFormat { obj, ply_binary, ply_ascii };

/// The format a file name asks for by its extension, in any case: ".obj", ".ply"
/// (binary) or ".ascii.ply"; empty for any other name.
STRUCTMATH_IO_API std::optional<SurfaceFormat> surface_format(std::string const& path);

/// Writes in the format of surface_format(path). Throws std::invalid_argument for
/// another extension and std::runtime_error naming the file when it cannot be written.
STRUCTMATH_IO_API void write_surface(std::string const& path, Surface const& surface);

}  // namespace structmath::io
