// SPDX-License-Identifier: MIT
// Writes the known answers of OverlayPoints::fit (tests/data/superposition/overlays.txt)
// to stdout: seeded target and moving sets (noisy rigid motions, planar, linear, mirrored,
// far from the origin, weighted, degenerate) and what a fit keeps of them. Each fit is
// checked for consistency: the kept rotation is orthonormal (proper unless inversion is
// allowed) and the rms equals the RMS deviation of the moved points from the target;
// the program writes nothing and exits 1 if a check fails.
#include <cmath>
#include <cstdint>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "structmath/geometry/geometry_functions.hpp"
#include "structmath/geometry/quaternion.hpp"
#include "structmath/numeric/linear_algebra.hpp"
#include "superposition/overlay_answers.hpp"

namespace structmath::testing {
namespace {

class Draw {
 public:
  explicit Draw(std::uint32_t seed) : engine_(seed) {}
  double uniform(double low, double high) {
    return low + (high - low) * (static_cast<double>(engine_()) / 4294967296.0);
  }
  Point point(double range) {
    return Point(uniform(-range, range), uniform(-range, range), uniform(-range, range));
  }
  Matrix3D rotation() {
    Quaternion q(uniform(-1, 1), uniform(-1, 1), uniform(-1, 1), uniform(-1, 1));
    q.normalize();
    return q.rotation_matrix();
  }

 private:
  std::mt19937 engine_;
};

struct Overlay {
  std::string name;
  std::vector<Point> target, moving;
  bool inversion = false;
  std::vector<double> weights = {};
  std::vector<Point> refit = {};
};

std::vector<Point> moved(Draw& draw, std::vector<Point> const& points, Matrix3D const& m,
                         Vector3D const& shift, double noise) {
  std::vector<Point> out;
  for (Point const& p : points) {
    Vector3D const e(draw.uniform(-noise, noise), draw.uniform(-noise, noise),
                     draw.uniform(-noise, noise));
    out.push_back(m * p + shift + e);
  }
  return out;
}

std::vector<Overlay> overlays() {
  Draw draw(1976);
  std::vector<Overlay> out;
  Matrix3D const mirror(-1, 0, 0, 0, 1, 0, 0, 0, 1);
  auto const cloud = [&](int n, double range) {
    std::vector<Point> p;
    for (int i = 0; i < n; ++i) p.push_back(draw.point(range));
    return p;
  };
  auto const shift = [&](double range) { return draw.point(range).vector(); };

  int const sizes[] = {3, 4, 5, 7, 10, 16, 25, 40, 64, 100};
  for (int k = 0; k < 10; ++k) {
    std::vector<Point> const t = cloud(sizes[k], 10.0);
    Matrix3D const r = draw.rotation();
    out.push_back({"noisy_rigid_motion_" + std::to_string(k), t,
                   moved(draw, t, r, shift(5.0), k % 2 == 0 ? 0.1 : 1.0), k % 3 == 0});
  }
  {
    std::vector<Point> const t = cloud(20, 10.0);
    out.push_back(
        {"exact_rotation", t, moved(draw, t, draw.rotation(), Vector3D(0.0, 0.0, 0.0), 0.0)});
    out.push_back({"identical", t, t});
    out.push_back({"translated_only", t, moved(draw, t, Matrix3D(), Vector3D(1.5, -2, 0.25), 0.0)});
    out.push_back(
        {"mirror_not_allowed", t, moved(draw, t, mirror * draw.rotation(), shift(3), 0.0)});
    out.push_back(
        {"mirror_allowed", t, moved(draw, t, mirror * draw.rotation(), shift(3), 0.0), true});
    out.push_back({"noisy_mirror_allowed", t, moved(draw, t, mirror, shift(3), 0.5), true});
    std::vector<Point> longer = moved(draw, t, draw.rotation(), shift(2), 0.05);
    for (Point const& p : cloud(5, 50.0)) longer.push_back(p);
    out.push_back({"extra_points_ignored", t, longer});
    out.push_back({"refitted",
                   t,
                   moved(draw, t, draw.rotation(), shift(2), 0.2),
                   false,
                   {},
                   moved(draw, t, draw.rotation(), shift(2), 0.7)});
  }
  for (int k = 0; k < 4; ++k) {
    std::vector<Point> t;
    for (int i = 0; i < 12; ++i) t.emplace_back(draw.uniform(-5, 5), draw.uniform(-5, 5), 0.0);
    out.push_back({"planar_" + std::to_string(k), t,
                   moved(draw, t, draw.rotation(), shift(4), k < 2 ? 0.0 : 0.05), k % 2 == 1});
  }
  for (int k = 0; k < 4; ++k) {
    std::vector<Point> t;
    Vector3D const dir = draw.point(1.0).vector();
    for (int i = 0; i < 8; ++i) t.push_back(Point(0, 0, 0) + dir * draw.uniform(-4, 4));
    out.push_back({"linear_" + std::to_string(k), t,
                   moved(draw, t, draw.rotation(), shift(4), k < 2 ? 0.0 : 1e-3), k % 2 == 1});
  }
  for (int k = 0; k < 3; ++k) {
    std::vector<Point> const t = cloud(15, 2.0);
    std::vector<Point> m = moved(draw, t, draw.rotation(), Vector3D(1e6, -2e6, 5e5), 0.01);
    std::vector<Point> far_target;
    for (Point const& p : t) far_target.push_back(p + Vector3D(-3e5, 7e5, 1e6));
    out.push_back({"far_from_origin_" + std::to_string(k), far_target, m, k == 2});
  }
  for (int k = 0; k < 4; ++k) {
    std::vector<Point> const t = cloud(18, 8.0);
    std::vector<double> w;
    for (int i = 0; i < 18; ++i) w.push_back(k == 0 ? 2.0 : draw.uniform(0.1, 3.0));
    out.push_back({"weighted_" + std::to_string(k), t,
                   moved(draw, t, draw.rotation(), shift(3), 0.3), k == 3, w});
  }
  out.push_back({"one_point", {Point(1, 2, 3)}, {Point(-4, 5, 0.5)}});
  out.push_back({"two_points", {Point(0, 0, 0), Point(1, 0, 0)}, {Point(2, 2, 2), Point(2, 3, 2)}});
  out.push_back({"all_points_equal",
                 {Point(1, 1, 1), Point(1, 1, 1), Point(1, 1, 1)},
                 {Point(2, 0, 1), Point(2, 0, 1), Point(2, 0, 1)}});
  out.push_back({"centred_set_on_itself",
                 {Point(-1, 0, 0), Point(1, 0, 0), Point(0, 2, 0), Point(0, -2, 0)},
                 {Point(-1, 0, 0), Point(1, 0, 0), Point(0, 2, 0), Point(0, -2, 0)}});
  {
    std::vector<Point> const t = cloud(10, 0.01);
    out.push_back(
        {"below_eigenvalue_tolerance", t, moved(draw, t, draw.rotation(), shift(1), 0.0)});
  }
  {
    std::vector<Point> const t = cloud(200, 20.0);
    out.push_back({"two_hundred_points", t, moved(draw, t, draw.rotation(), shift(10), 0.5)});
  }
  return out;
}

bool consistent(std::string const& name, Overlay const& o, AnswerFields const& library) {
  AnswerCase const got = library.as_case(name);
  std::vector<double> const u = got.doubles("rotation");
  Matrix3D const m(u[0], u[1], u[2], u[3], u[4], u[5], u[6], u[7], u[8]);
  Matrix3D const mtm = m.transpose() * m;
  bool ok = equals(mtm, Matrix3D(), 1e-12);
  double const det = Determinant(m);
  ok = ok && (o.inversion ? std::fabs(std::fabs(det) - 1.0) < 1e-12 : std::fabs(det - 1.0) < 1e-12);
  // rms() is the deviation from the centred target of the fitted points moved by the
  // kept rotation and translation alone.
  OverlayPoints overlay(o.target, o.inversion);
  if (o.weights.empty())
    overlay.fit(o.moving);
  else
    overlay.fit(o.moving, o.weights);
  std::vector<Point> centred_target = o.target, kept;
  Vector3D const tc = centroid(o.target).vector();
  for (Point& p : centred_target) p -= tc;
  Vector3D const t(got.doubles("translation")[0], got.doubles("translation")[1],
                   got.doubles("translation")[2]);
  for (std::size_t k = 0; k < o.target.size(); ++k) kept.push_back(m * (o.moving[k] - t));
  double const rms = o.weights.empty() ? rms_distance(kept, centred_target)
                                       : weighted_rms_distance(kept, centred_target, o.weights);
  double const recorded = got.doubles("rms")[0];
  ok = ok && std::fabs(rms - recorded) <= 1e-9 * (1.0 + recorded);
  if (!ok) std::cerr << name << ": inconsistent fit\n";
  return ok;
}

int run() {
  bool agree = true;
  std::ostringstream file;
  file << "# Written by tests/superposition/make_overlay_answers.cpp; do not edit.\n"
          "# Each case: target and moving points (x y z ...), inversion allowed, optional\n"
          "# weights and a second set fitted by the same object; then for each fit the\n"
          "# returned rms and rms(), the maximum deviation, the rotation (row-major), the\n"
          "# translation and the first four moving points transformed.\n";
  for (Overlay const& o : overlays()) {
    AnswerFields in;
    in.add("target", flat(o.target)).add("moving", flat(o.moving)).add("inversion", o.inversion);
    if (!o.weights.empty()) in.add("weights", o.weights);
    if (!o.refit.empty()) in.add("refit", flat(o.refit));
    AnswerCase const c = in.as_case(o.name);
    AnswerFields const library = library_overlay_outcome(c);
    agree = consistent(o.name, o, library) && agree;
    file << "\ncase " << c.name << '\n';
    in.write(file);
    library.write(file);
  }
  if (!agree) return 1;
  std::cout << file.str();
  return 0;
}

}  // namespace
}  // namespace structmath::testing

int main() { return structmath::testing::run(); }
