// SPDX-License-Identifier: MIT
// Planes as known-answer cases describe them.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include "structmath/geometry/plane.hpp"
#include "support/known_answers.hpp"

namespace structmath::testing {

/// The plane of a case: "kind fit" is the least-squares plane of "points" (x y z of each,
/// in order); "kind frame" is Plane(normal, 0.0) of a given "normal", whose in-plane
/// axes come from calculate_vectors(). Recorded: normal, distance, v1, v2.
inline AnswerFields library_plane_outcome(AnswerCase const& c) {
  auto const components = [](Vector3D const& v) { return std::vector<double>{v[0], v[1], v[2]}; };
  std::string const kind = c.text("kind").at(0);
  Plane plane;
  if (kind == "fit") {
    std::vector<double> const xyz = c.doubles("points");
    std::vector<Point> points;
    for (std::size_t k = 0; k + 2 < xyz.size(); k += 3) {
      points.emplace_back(xyz[k], xyz[k + 1], xyz[k + 2]);
    }
    plane = Plane(points);
  } else if (kind == "frame") {
    std::vector<double> const n = c.doubles("normal");
    plane = Plane(Vector3D(n.at(0), n.at(1), n.at(2)), 0.0);
  } else {
    throw std::runtime_error("case " + c.name + ": unknown kind " + kind);
  }
  AnswerFields out;
  out.add("plane_normal", components(plane.normal()))
      .add("distance", plane.distance())
      .add("v1", components(plane.v1()))
      .add("v2", components(plane.v2()));
  return out;
}

}  // namespace structmath::testing
