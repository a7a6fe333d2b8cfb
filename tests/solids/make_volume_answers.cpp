// SPDX-License-Identifier: MIT
// Writes the known answers of Monte Carlo volumes (tests/data/solids/volumes.txt) to
// stdout: seeded unions of spheres and boxes (and a few nested unions and intersections
// with slabs), sampled with seeded generators. The hits of every union of spheres and
// boxes are also counted by a transcription of the sampling loop with the containment
// tests written out; the program writes nothing and exits 1 if the two counts differ.
#include <cmath>
#include <cstdint>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "solids/volume_answers.hpp"

namespace structmath::testing {
namespace {

class Draw {
 public:
  explicit Draw(std::uint32_t seed) : engine_(seed) {}
  double uniform(double low, double high) {
    return low + (high - low) * (static_cast<double>(engine_()) / 4294967296.0);
  }

 private:
  std::mt19937 engine_;
};

struct Volume {
  std::string name;
  int kind = 0;
  std::vector<int> seeds;
  int density;
  std::vector<double> spheres, boxes, slabs = {}, bounds = {};
};

/// Hits of a union of spheres and boxes counted by the sampling loop written out.
long long transcribed_hits(Volume const& v, Box const& box, unsigned int nsamples) {
  RandomNumberGenerator const rng(v.seeds[0], v.seeds[1]);
  long long hits = 0;
  for (unsigned int i = 0; i < nsamples; ++i) {
    double const x = box.min_x() + (box.max_x() - box.min_x()) * rng.random_uniform();
    double const y = box.min_y() + (box.max_y() - box.min_y()) * rng.random_uniform();
    double const z = box.min_z() + (box.max_z() - box.min_z()) * rng.random_uniform();
    bool inside = false;
    for (std::size_t k = 0; k + 3 < v.spheres.size() && !inside; k += 4) {
      double const dx = v.spheres[k] - x, dy = v.spheres[k + 1] - y, dz = v.spheres[k + 2] - z;
      inside = std::sqrt(dx * dx + dy * dy + dz * dz) <= v.spheres[k + 3];
    }
    for (std::size_t k = 0; k + 5 < v.boxes.size() && !inside; k += 6) {
      double const* b = &v.boxes[k];
      inside = b[0] <= x && x <= b[1] && b[2] <= y && y <= b[3] && b[4] <= z && z <= b[5];
    }
    hits += inside;
  }
  return hits;
}

std::vector<Volume> volumes() {
  Draw draw(3141);
  std::vector<Volume> out;
  // Both seeds at most 30081: a larger first seed would take the second from the clock.
  auto const seeds = [&] {
    return std::vector<int>{static_cast<int>(draw.uniform(0, 30081)),
                            static_cast<int>(draw.uniform(0, 30081))};
  };
  auto const spheres = [&](int n, double range, double r_low, double r_high) {
    std::vector<double> s;
    for (int i = 0; i < n; ++i) {
      s.insert(s.end(), {draw.uniform(-range, range), draw.uniform(-range, range),
                         draw.uniform(-range, range), draw.uniform(r_low, r_high)});
    }
    return s;
  };
  auto const boxes = [&](int n, double range, double size) {
    std::vector<double> b;
    for (int i = 0; i < n; ++i) {
      for (int axis = 0; axis < 3; ++axis) {
        double const lo = draw.uniform(-range, range);
        b.insert(b.end(), {lo, lo + draw.uniform(0.1, size)});
      }
    }
    return b;
  };

  std::vector<double> molecule;
  for (int i = 0; i < 20; ++i) {
    double const t = 0.4 * i;
    molecule.insert(molecule.end(), {1.25 * i, 0.75 * ((i % 2) ? 1.0 : -1.0) + 0.3 * std::cos(t),
                                     0.3 * std::sin(t), (i % 3 == 0) ? 1.52 : 1.7});
  }
  out.push_back({"chain_of_twenty_balls", 0, {1802, 9373}, 200, molecule, {}});
  out.push_back({"unit_cube", 0, {1802, 9373}, 1000, {}, {0, 1, 0, 1, 0, 1}});
  out.push_back({"unit_ball", 0, {1802, 9373}, 20000, {0, 0, 0, 1}, {}});
  out.push_back({"ball_in_its_box", 0, {12, 34}, 5000, {0.5, 0.5, 0.5, 0.5}, {0, 1, 0, 1, 0, 1}});
  out.push_back({"tiny_ball_draws_density_points", 0, {56, 78}, 3000, {1, 2, 3, 0.1}, {}});
  out.push_back(
      {"zero_and_negative_radii", 0, {9, 10}, 2000, {0, 0, 0, 0, 1, 1, 1, -0.5, 2, 2, 2, 1}, {}});
  out.push_back({"reversed_box_member", 0, {11, 12}, 2000, {0, 0, 0, 1}, {1, -1, 0, 1, 0, 1}});
  out.push_back({"touching_boxes", 0, {13, 14}, 4000, {}, {0, 1, 0, 1, 0, 1, 1, 2, 0, 1, 0, 1}});
  for (int k = 0; k < 8; ++k) {
    int const n = 2 + 4 * k;
    out.push_back({"random_balls_" + std::to_string(k),
                   0,
                   seeds(),
                   300 + 100 * k,
                   spheres(n, 4.0, 0.3, 2.0),
                   {}});
  }
  for (int k = 0; k < 5; ++k) {
    out.push_back(
        {"random_boxes_" + std::to_string(k), 0, seeds(), 400, {}, boxes(1 + 3 * k, 3.0, 2.5)});
  }
  for (int k = 0; k < 6; ++k) {
    out.push_back({"balls_and_boxes_" + std::to_string(k), 0, seeds(), 500,
                   spheres(3 + k, 3.0, 0.5, 1.5), boxes(1 + k, 3.0, 2.0)});
  }
  for (int k = 0; k < 3; ++k) {
    out.push_back({"nested_unions_" + std::to_string(k), 1, seeds(), 500, spheres(6, 3.0, 0.5, 1.5),
                   boxes(2, 3.0, 2.0)});
  }
  out.push_back({"intersection_with_slab",
                 2,
                 seeds(),
                 2000,
                 spheres(4, 1.0, 0.5, 1.0),
                 {},
                 {0, 0, 1, 0.25, 0.5},
                 {-2, 2, -2, 2, -2, 2}});
  out.push_back({"intersection_cutting_balls",
                 2,
                 seeds(),
                 2000,
                 spheres(5, 1.5, 0.5, 1.0),
                 boxes(1, 1.0, 1.0),
                 {},
                 {-1, 1, -1, 0.5, -1, 1}});
  return out;
}

int run() {
  bool agree = true;
  std::ostringstream file;
  file << "# Written by tests/solids/make_volume_answers.cpp; do not edit.\n"
          "# Each case: kind (0 union, 1 union of two unions, 2 intersection with a box),\n"
          "# generator seeds, density, members (spheres x y z r; boxes min_x max_x min_y\n"
          "# max_y min_z max_z; slabs normal offset half-thickness), bounds of kind 2; then\n"
          "# get_solid_volume, the calculator's counts, points and volume, and count_hits.\n";
  for (Volume const& v : volumes()) {
    AnswerFields in;
    in.add("kind", v.kind).add("seeds", v.seeds).add("density", v.density);
    if (!v.spheres.empty()) in.add("spheres", v.spheres);
    if (!v.boxes.empty()) in.add("boxes", v.boxes);
    if (!v.slabs.empty()) in.add("slabs", v.slabs);
    if (!v.bounds.empty()) in.add("bounds", v.bounds);
    AnswerCase const c = in.as_case(v.name);
    AnswerFields const library = library_volume_outcome(c);
    if (v.kind != 2) {
      AnswerCase const got = library.as_case(v.name);
      long long const want = transcribed_hits(v, *solid_of(c)->bounding_box(),
                                              static_cast<unsigned int>(got.integer("nsamples")));
      if (want != got.integer("hits") || want != got.integer("accepted")) {
        std::cerr << v.name << ": " << got.integer("hits") << " hits, transcription " << want
                  << '\n';
        agree = false;
      }
    }
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
