// SPDX-License-Identifier: MIT
// Tests of the OBJ and PLY surface writers on a hand-built tetrahedron.
#include "structmath/io/surface_writers.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <sstream>

#include "support/test_support.hpp"

namespace structmath::io {
namespace {

// A closed tetrahedron with outward windings and its normals set.
THandle<Surface> tetrahedron() {
  auto surface = make_handle<Surface>();
  Point const corners[4] = {Point(0, 0, 0), Point(1, 0, 0), Point(0, 1, 0), Point(0, 0, 1)};
  for (Point const& p : corners) surface->add_node(make_handle<SurfaceNode>(p));
  int const faces[4][3] = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
  for (auto const& f : faces) {
    surface->add_triangle(make_handle<SurfaceTriangle>(surface->node(f[0]), surface->node(f[1]),
                                                       surface->node(f[2])));
  }
  surface->update_node_normals();
  return surface;
}

TEST(SurfaceWriters, ObjListsVerticesNormalsAndOneBasedFaces) {
  std::ostringstream out;
  write_obj(out, *tetrahedron());
  std::string const text = out.str();
  EXPECT_NE(text.find("# 4 vertices, 4 triangles\n"), std::string::npos);
  EXPECT_NE(text.find("v 1 0 0\n"), std::string::npos);
  EXPECT_NE(text.find("f 1//1 3//3 2//2\n"), std::string::npos);
  EXPECT_NE(text.find("f 2//2 3//3 4//4\n"), std::string::npos);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 4 + 4 + 4);
}

TEST(SurfaceWriters, AsciiAndBinaryPlyCarryTheSameNumbers) {
  auto const surface = tetrahedron();
  std::ostringstream ascii;
  write_ply(ascii, *surface, PlyFormat::ascii);
  EXPECT_NE(ascii.str().find("element vertex 4\n"), std::string::npos);
  EXPECT_NE(ascii.str().find("end_header\n0 0 0 "), std::string::npos);
  EXPECT_NE(ascii.str().find("\n3 1 2 3\n"), std::string::npos);

  std::ostringstream binary;
  write_ply(binary, *surface, PlyFormat::binary_little_endian);
  std::string const bytes = binary.str();
  std::size_t const body = bytes.find("end_header\n") + std::strlen("end_header\n");
  ASSERT_EQ(bytes.size() - body, 4 * 6 * 4 + 4 * (1 + 3 * 4));
  auto le_float = [&](std::size_t at) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + i])) << (8 * i);
    }
    float f = 0;
    std::memcpy(&f, &bits, 4);
    return f;
  };
  EXPECT_EQ(le_float(body + 6 * 4), 1.0f);  // x of the second vertex
  Vector3D const n = surface->node(3)->normal();
  EXPECT_EQ(le_float(body + 3 * 24 + 20), static_cast<float>(n.z()));
  std::size_t const last_face = bytes.size() - 13;
  EXPECT_EQ(bytes[last_face], 3);
  EXPECT_EQ(bytes[last_face + 1], 1);  // first index of face {1, 2, 3}
}

TEST(SurfaceWriters, WriteSurfaceChoosesTheFormatByExtension) {
  auto const surface = tetrahedron();
  testing::ScratchFile obj(".obj"), ply(".ply"), ascii(".ascii.ply");
  write_surface(obj.path(), *surface);
  write_surface(ply.path(), *surface);
  write_surface(ascii.path(), *surface);
  std::string line;
  std::ifstream(ply.path()) >> line >> line >> line;
  EXPECT_EQ(line, "binary_little_endian");
  std::ifstream(ascii.path()) >> line >> line >> line;
  EXPECT_EQ(line, "ascii");
  EXPECT_THROW(write_surface("surface.stl", *surface), std::invalid_argument);
  EXPECT_THROW(write_surface("/nonexistent/s.obj", *surface), std::runtime_error);
}

}  // namespace
}  // namespace structmath::io
