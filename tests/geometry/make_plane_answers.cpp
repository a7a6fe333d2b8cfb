// SPDX-License-Identifier: MIT
// Writes the plane known answers (tests/data/geometry/planes.txt) to stdout: least-squares
// planes of seeded near-planar point sets, and the in-plane axes of normals at and around
// the 1e-7 fallback of calculate_vectors().
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "geometry/plane_answers.hpp"

namespace structmath::testing {
namespace {

using Values = std::vector<double>;

/// Uniform in [low, high) from the raw 32-bit output, the same on every platform.
class Draw {
 public:
  explicit Draw(std::uint32_t seed) : engine_(seed) {}
  double uniform(double low, double high) {
    return low + (high - low) * (static_cast<double>(engine_()) / 4294967296.0);
  }

 private:
  std::mt19937 engine_;
};

/// n points scattered over a square of half-width `size` in the plane through `origin`
/// spanned by e1, e2, each moved off it along e1 x e2 by up to `noise`.
Values near_planar(Draw& draw, int n, Values const& origin, Values const& e1, Values const& e2,
                   double size, double noise) {
  Values const normal = {e1[1] * e2[2] - e1[2] * e2[1], e1[2] * e2[0] - e1[0] * e2[2],
                         e1[0] * e2[1] - e1[1] * e2[0]};
  Values out;
  for (int i = 0; i < n; ++i) {
    double const u = draw.uniform(-size, size), v = draw.uniform(-size, size),
                 w = draw.uniform(-noise, noise);
    for (std::size_t k = 0; k < 3; ++k)
      out.push_back(origin[k] + u * e1[k] + v * e2[k] + w * normal[k]);
  }
  return out;
}

/// A random orthonormal pair.
void random_axes(Draw& draw, Values& e1, Values& e2) {
  Vector3D a(draw.uniform(-1, 1), draw.uniform(-1, 1), draw.uniform(-1, 1));
  Vector3D b(draw.uniform(-1, 1), draw.uniform(-1, 1), draw.uniform(-1, 1));
  a.normalize();
  b.orthogonalize(a);
  b.normalize();
  e1 = {a[0], a[1], a[2]};
  e2 = {b[0], b[1], b[2]};
}

struct Named {
  std::string name;
  AnswerFields inputs;
};

std::vector<Named> cases() {
  std::vector<Named> out;
  auto const fit = [&](std::string const& name, Values const& points) {
    AnswerFields in;
    in.add("kind", std::vector<std::string>{"fit"}).add("points", points);
    out.push_back({"fit_" + name, in});
  };
  auto const frame = [&](std::string const& name, Values const& normal) {
    AnswerFields in;
    in.add("kind", std::vector<std::string>{"frame"}).add("normal", normal);
    out.push_back({"frame_" + name, in});
  };

  // Exactly coplanar sets along the axes, and their reversed orders.
  Values const square_z2 = {0, 0, 2, 1, 0, 2, 1, 1, 2, 0, 1, 2};
  fit("square_in_z_2", square_z2);
  fit("square_in_z_2_reversed", {0, 1, 2, 1, 1, 2, 1, 0, 2, 0, 0, 2});
  fit("triangle_in_x_3", {3, 0, 0, 3, 1, 0, 3, 0, 1});
  fit("square_in_y_minus_1", {0, -1, 0, 2, -1, 0, 2, -1, 2, 0, -1, 2});
  fit("through_origin", {1, 1, 0, -1, 1, 0, -1, -1, 0, 1, -1, 0});

  Draw draw(2718);
  int const sizes[] = {3, 4, 5, 7, 10, 16, 25};
  double const noises[] = {0.0, 1e-6, 1e-2, 0.3};
  for (int n = 0; n < 14; ++n) {
    Values e1, e2;
    random_axes(draw, e1, e2);
    Values const origin = {draw.uniform(-5, 5), draw.uniform(-5, 5), draw.uniform(-5, 5)};
    fit("random_" + std::to_string(n),
        near_planar(draw, sizes[n % 7], origin, e1, e2, 3.0, noises[n % 4]));
  }
  // Nearly perpendicular to x, so the fit's axes come from the fallback or just miss it.
  fit("near_x_normal", near_planar(draw, 8, {2, 0, 0}, {0, 1, 0}, {0, 0, 1}, 1.0, 1e-9));
  fit("far_from_origin",
      near_planar(draw, 9, {1e6, -2e6, 5e5}, {0.6, 0.8, 0}, {0, 0, 1}, 2.0, 1e-3));
  fit("tiny_scale", near_planar(draw, 6, {1e-6, 0, 0}, {0, 0.6, 0.8}, {1, 0, 0}, 1e-6, 1e-9));

  // Normals at and around the fallback: v2 = (1, 0, 0) x n is replaced by (0, 1, 0) x n
  // when its length is at most 1e-7.
  frame("x", {1, 0, 0});
  frame("minus_x", {-1, 0, 0});
  frame("y", {0, 1, 0});
  frame("z", {0, 0, 1});
  frame("minus_z", {0, 0, -1});
  frame("diagonal", {1, 1, 1});
  frame("in_xy", {3, 4, 0});
  frame("y_1e_8", {1, 1e-8, 0});
  frame("minus_x_y_1e_8", {-1, 1e-8, 0});
  // Normalising (1, y, 0) shrinks y a little: find the y whose unit normal is the first
  // past the boundary, so that it and the y before it straddle the fallback.
  double y = 1e-7;
  while (y / std::sqrt(1.0 + y * y) <= 1e-7) y = std::nextafter(y, 1.0);
  frame("y_first_past_fallback", {1, y, 0});
  frame("y_last_at_fallback", {1, std::nextafter(y, 0.0), 0});
  frame("y_1e_7", {1, 1e-7, 0});
  frame("y_below_1e_7", {1, std::nextafter(1e-7, 0.0), 0});
  frame("y_above_1e_7", {1, std::nextafter(1e-7, 1.0), 0});
  frame("y_2e_7", {1, 2e-7, 0});
  frame("z_1e_7", {1, 0, 1e-7});
  frame("z_minus_1e_7", {1, 0, -1e-7});
  frame("minus_x_z_2e_7", {-1, 0, 2e-7});
  frame("yz_just_inside", {1, 7e-8, 7e-8});
  frame("yz_just_outside", {1, 7.1e-8, -7.1e-8});
  frame("scaled_to_y_1e_7", {1e-3, 1e-10, 0});
  frame("long_y_2e_7", {2, 4e-7, 0});
  return out;
}

int run() {
  std::cout << "# Written by tests/geometry/make_plane_answers.cpp; do not edit.\n"
               "# fit: the least-squares plane of the points (x y z each); frame: the plane\n"
               "# with the given normal and distance 0. Then its normal, distance, v1, v2.\n";
  for (Named const& named : cases()) {
    AnswerCase const c = named.inputs.as_case(named.name);
    std::cout << "\ncase " << c.name << '\n';
    named.inputs.write(std::cout);
    library_plane_outcome(c).write(std::cout);
  }
  return 0;
}

}  // namespace
}  // namespace structmath::testing

int main() { return structmath::testing::run(); }
