// SPDX-License-Identifier: MIT
// A program built against the installed library: the README's tour, checked.
#include <cmath>
#include <iostream>
#include <vector>

#include "structmath/structmath.hpp"
using namespace structmath;

int main() {
  // numeric: angles in radians, vectors and points, row-major 3x3 matrices.
  Angle const right = Angle::from_degrees(90.0);
  Vector3D v(3.0, 4.0, 0.0);
  v.normalize(1e-7);                      // (0.6, 0.8, 0)
  Matrix3D m(2, 1, 0, 1, 2, 0, 0, 0, 3);  // m(1, 2) counts from 1, m[0][1] from 0
  Vector3D d;
  Matrix3D vectors;
  Jacobi<3>(m, d, vectors);  // eigenvalues and eigenvectors (columns)
  EigenSort<3>(d, vectors);  // descending: 3, 3, 1

  // geometry: point sets, planes, transformations.
  std::vector<Point> ring = {Point(1, 0, 0), Point(0, 1, 0), Point(-1, 0, 0), Point(0, -1, 0)};
  Plane const plane(ring);  // least-squares plane, normal +-z
  Angle const tau = torsion_angle(ring[0], ring[1], ring[2], ring[3]);

  // superposition: fit a moved copy back onto the original.
  Transformation const move(Matrix3D(0, -1, 0, 1, 0, 0, 0, 0, 1), Vector3D(1, 2, 3));
  std::vector<Point> moved_ring;
  for (Point const& p : ring) moved_ring.push_back(move * p);
  OverlayPoints overlay(ring, /*inversion_allowed=*/false);
  double const rms = overlay.fit(moved_ring);          // ~0
  Transformation const t = *overlay.transformation();  // t * moved point ~ original

  // solids: Monte Carlo volume of a union of spheres, reproducible from two seeds.
  CompositeSolid::SolidSet members = {make_handle<Sphere>(Point(0, 0, 0), 1.0),
                                      make_handle<Sphere>(Point(1, 0, 0), 1.0)};
  UnionSolid const pair(members);  // two unit spheres 1 apart: 7.07
  double const volume = StochasticVolumeCalculator::get_solid_volume(
      pair, 10000, make_handle<RandomNumberGenerator>(1802, 9373));

  bool const ok = std::fabs(d[0] - 3.0) < 1e-12 && std::fabs(d[2] - 1.0) < 1e-12 &&
                  std::fabs(std::fabs(plane.normal().z()) - 1.0) < 1e-12 && rms < 1e-9 &&
                  equals(t * moved_ring[1], ring[1], 1e-9) && volume > 6.9 && volume < 7.25 &&
                  std::fabs(right.degrees() - 90.0) < 1e-12 && std::fabs(v.x() - 0.6) < 1e-15;
  std::cout << "torsion " << tau << ", union volume " << volume << '\n';
  if (!ok) return 1;
  std::cout << "structmath consumer ok\n";
  return 0;
}
