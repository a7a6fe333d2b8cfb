// SPDX-License-Identifier: MIT
// Monte Carlo volumes of composite solids as known-answer cases describe them.
#pragma once

#include <cstddef>
#include <set>
#include <vector>

#include "structmath/geometry/plane.hpp"
#include "structmath/solids/box.hpp"
#include "structmath/solids/intersection_solid.hpp"
#include "structmath/solids/random_number_generator.hpp"
#include "structmath/solids/slab.hpp"
#include "structmath/solids/sphere.hpp"
#include "structmath/solids/stochastic_volume_calculator.hpp"
#include "structmath/solids/union_solid.hpp"
#include "support/known_answers.hpp"

namespace structmath::testing {

/// The members a case lists: "spheres" (x y z radius ...), "boxes" (min_x max_x min_y
/// max_y min_z max_z ...) and "slabs" (normal x y z, offset, half-thickness ...).
inline std::vector<THandle<Solid>> members_of(AnswerCase const& c) {
  std::vector<THandle<Solid>> out;
  if (c.has("spheres")) {
    std::vector<double> const s = c.doubles("spheres");
    for (std::size_t k = 0; k + 3 < s.size(); k += 4) {
      out.push_back(make_handle<Sphere>(Point(s[k], s[k + 1], s[k + 2]), s[k + 3]));
    }
  }
  if (c.has("boxes")) {
    std::vector<double> const b = c.doubles("boxes");
    for (std::size_t k = 0; k + 5 < b.size(); k += 6) {
      out.push_back(make_handle<Box>(b[k], b[k + 1], b[k + 2], b[k + 3], b[k + 4], b[k + 5]));
    }
  }
  if (c.has("slabs")) {
    std::vector<double> const s = c.doubles("slabs");
    for (std::size_t k = 0; k + 4 < s.size(); k += 5) {
      out.push_back(
          make_handle<Slab>(Plane(Vector3D(s[k], s[k + 1], s[k + 2]), s[k + 3]), s[k + 4]));
    }
  }
  return out;
}

/// The solid of a case: "kind" 0 is the union of the members, 1 the union of two unions
/// (the first half of the members and the rest), 2 the intersection of a "bounds" box
/// with the union of the members.
inline THandle<Solid> solid_of(AnswerCase const& c) {
  std::vector<THandle<Solid>> const members = members_of(c);
  auto const union_of = [](auto first, auto last) {
    return make_handle<UnionSolid>(CompositeSolid::SolidSet(first, last));
  };
  switch (c.integer("kind")) {
    case 0:
      return union_of(members.begin(), members.end());
    case 1: {
      auto const middle = members.begin() + static_cast<std::ptrdiff_t>(members.size() / 2);
      return make_handle<UnionSolid>(THandle<Solid>(union_of(members.begin(), middle)),
                                     THandle<Solid>(union_of(middle, members.end())));
    }
    default: {
      std::vector<double> const b = c.doubles("bounds");
      THandle<Solid> const bounds =
          make_handle<Box>(b.at(0), b.at(1), b.at(2), b.at(3), b.at(4), b.at(5));
      return make_handle<IntersectionSolid>(
          bounds, THandle<Solid>(union_of(members.begin(), members.end())));
    }
  }
}

/// The solid sampled at "density" with generators seeded from "seeds": get_solid_volume;
/// the calculator's sample count, box volume, accepted points (count, first and last)
/// and volume; and count_hits over the same box and count.
inline AnswerFields library_volume_outcome(AnswerCase const& c) {
  THandle<Solid> const solid = solid_of(c);
  std::vector<int> const seeds = c.ints("seeds");
  auto const generator = [&] {
    return make_handle<RandomNumberGenerator>(seeds.at(0), seeds.at(1));
  };
  auto const density = static_cast<unsigned int>(c.integer("density"));
  AnswerFields out;
  out.add("volume", StochasticVolumeCalculator::get_solid_volume(*solid, density, generator()));
  StochasticVolumeCalculator const calculator(*solid, density, generator());
  auto const& points = *calculator.points();
  out.add("nsamples", static_cast<int>(calculator.nsamples()))
      .add("box_volume", calculator.box_volume())
      .add("accepted", static_cast<int>(points.size()))
      .add("calculator_volume", calculator.volume());
  if (!points.empty()) {
    Point const& first = points.front();
    Point const& last = points.back();
    out.add("first_and_last",
            std::vector<double>{first.x(), first.y(), first.z(), last.x(), last.y(), last.z()});
  }
  auto const hits = StochasticVolumeCalculator::count_hits(*solid, *solid->bounding_box(),
                                                           calculator.nsamples(), *generator());
  out.add("hits", static_cast<int>(hits));
  return out;
}

}  // namespace structmath::testing
