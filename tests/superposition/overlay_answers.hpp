// SPDX-License-Identifier: MIT
// OverlayPoints fits as known-answer cases describe them.
#pragma once

#include <cstddef>
#include <vector>

#include "structmath/numeric/point.hpp"
#include "structmath/superposition/overlay_points.hpp"
#include "support/known_answers.hpp"

namespace structmath::testing {

/// Points from a flat list x0 y0 z0 x1 y1 z1 ...
inline std::vector<Point> points_of(std::vector<double> const& xyz) {
  std::vector<Point> out;
  for (std::size_t k = 0; k + 2 < xyz.size(); k += 3)
    out.emplace_back(xyz[k], xyz[k + 1], xyz[k + 2]);
  return out;
}

inline std::vector<double> flat(std::vector<Point> const& points) {
  std::vector<double> out;
  for (Point const& p : points) out.insert(out.end(), {p.x(), p.y(), p.z()});
  return out;
}

/// The first n points (all when there are fewer).
inline std::vector<Point> first_points(std::vector<Point> const& points, std::size_t n) {
  return std::vector<Point>(
      points.begin(),
      points.begin() + static_cast<std::ptrdiff_t>(n < points.size() ? n : points.size()));
}

/// An OverlayPoints on "target" ("inversion" 0 or 1) fitting "moving", weighted by
/// "weights" when the case has them; then, when the case has "refit", a second fit of
/// those points by the same object. Recorded for each fit: the returned rms, rms(),
/// the maximum deviation, the rotation (row-major) and the translation, and the first
/// four fitted points moved by transform().
inline AnswerFields library_overlay_outcome(AnswerCase const& c) {
  OverlayPoints overlay(points_of(c.doubles("target")), c.integer("inversion") != 0);
  AnswerFields out;
  auto const fit = [&](std::string const& prefix, std::vector<Point> const& moving) {
    double const returned =
        c.has("weights") ? overlay.fit(moving, c.doubles("weights")) : overlay.fit(moving);
    Matrix3D const& u = overlay.rotation();
    Vector3D const& t = overlay.translation();
    out.add(prefix + "rms", std::vector<double>{returned, overlay.rms()})
        .add(prefix + "maximum_deviation", overlay.maximum_deviation())
        .add(prefix + "rotation", std::vector<double>(u.elements().begin(), u.elements().end()))
        .add(prefix + "translation", std::vector<double>{t[0], t[1], t[2]})
        .add(prefix + "transformed", flat(overlay.transform(first_points(moving, 4))));
  };
  fit("", points_of(c.doubles("moving")));
  if (c.has("refit")) fit("refit_", points_of(c.doubles("refit")));
  return out;
}

}  // namespace structmath::testing
