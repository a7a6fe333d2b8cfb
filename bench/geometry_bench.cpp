// SPDX-License-Identifier: MIT
// Benchmarks of the geometry module: point-set measures, plane fitting, rotations and
// clipping, with the same work through Eigen where it is installed.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "structmath/geometry/convex_polygon.hpp"
#include "structmath/geometry/geometry_functions.hpp"
#include "structmath/geometry/plane.hpp"
#include "structmath/geometry/quaternion.hpp"
#include "structmath/geometry/transformation.hpp"

#if defined(STRUCTMATH_HAVE_EIGEN)
#include <Eigen/Dense>
#include <Eigen/Geometry>
#endif

namespace {

using structmath::Point;
using structmath::Vector3D;

std::vector<Point> random_points(std::size_t n, unsigned int seed) {
  std::mt19937 engine(seed);
  std::uniform_real_distribution<double> u(-10.0, 10.0);
  std::vector<Point> points;
  points.reserve(n);
  for (std::size_t i = 0; i < n; ++i) points.emplace_back(u(engine), u(engine), u(engine));
  return points;
}

// Points scattered thinly about the plane z = 0.3 x - 0.2 y + 1.
std::vector<Point> near_plane_points(std::size_t n) {
  std::mt19937 engine(7);
  std::uniform_real_distribution<double> u(-10.0, 10.0);
  std::uniform_real_distribution<double> noise(-0.05, 0.05);
  std::vector<Point> points;
  points.reserve(n);
  for (std::size_t i = 0; i < n; ++i) {
    double const x = u(engine);
    double const y = u(engine);
    points.emplace_back(x, y, 0.3 * x - 0.2 * y + 1.0 + noise(engine));
  }
  return points;
}

void BM_RmsDistance(benchmark::State& state) {
  auto const n = static_cast<std::size_t>(state.range(0));
  std::vector<Point> const a = random_points(n, 1);
  std::vector<Point> const b = random_points(n, 2);
  for (auto _ : state) benchmark::DoNotOptimize(structmath::rms_distance(a, b));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_RmsDistance)->Arg(1000);

void BM_RmsDistanceEarlyExit(benchmark::State& state) {
  auto const n = static_cast<std::size_t>(state.range(0));
  std::vector<Point> const a = random_points(n, 1);
  std::vector<Point> const b = random_points(n, 2);
  for (auto _ : state) benchmark::DoNotOptimize(structmath::rms_distance(a, b, 1.0));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_RmsDistanceEarlyExit)->Arg(1000);

void BM_Centroid(benchmark::State& state) {
  std::vector<Point> const a = random_points(static_cast<std::size_t>(state.range(0)), 3);
  for (auto _ : state) benchmark::DoNotOptimize(structmath::centroid(a));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Centroid)->Arg(1000);

void BM_TorsionAngle(benchmark::State& state) {
  std::vector<Point> const p = random_points(static_cast<std::size_t>(state.range(0)) + 3, 4);
  for (auto _ : state) {
    double sum = 0.0;
    for (std::size_t i = 0; i + 3 < p.size(); ++i) {
      sum += structmath::torsion_angle(p[i], p[i + 1], p[i + 2], p[i + 3]).radians();
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_TorsionAngle)->Arg(1000);

void BM_LeastSquaresPlane(benchmark::State& state) {
  std::vector<Point> const points = near_plane_points(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    structmath::Plane const plane(points);
    benchmark::DoNotOptimize(plane.distance());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_LeastSquaresPlane)->Arg(1000);

void BM_QuaternionRotate(benchmark::State& state) {
  std::vector<Point> const p = random_points(static_cast<std::size_t>(state.range(0)), 5);
  structmath::Quaternion const q(Vector3D(1, 2, 3), structmath::Angle(0.7));
  for (auto _ : state) {
    Vector3D sum(0, 0, 0);
    for (Point const& x : p) sum += q.rotate(x.vector());
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_QuaternionRotate)->Arg(1000);

void BM_TransformPoints(benchmark::State& state) {
  std::vector<Point> const p = random_points(static_cast<std::size_t>(state.range(0)), 6);
  structmath::Transformation const t(
      structmath::Quaternion(Vector3D(1, 2, 3), structmath::Angle(0.7)).rotation_matrix(),
      Vector3D(1, -2, 3));
  for (auto _ : state) {
    Vector3D sum(0, 0, 0);
    for (Point const& x : p) sum += (t * x).vector();
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_TransformPoints)->Arg(1000);

void BM_AlignThreePoints(benchmark::State& state) {
  std::vector<Point> const p = random_points(6, 8);
  for (auto _ : state) {
    benchmark::DoNotOptimize(structmath::align_three_points(p[0], p[1], p[2], p[3], p[4], p[5]));
  }
}
BENCHMARK(BM_AlignThreePoints);

void BM_ConvexPolygonClip(benchmark::State& state) {
  structmath::Plane const plane(Vector3D(1, 1, 1), 1.0);
  std::vector<Point> vertices;
  int const n = static_cast<int>(state.range(0));
  for (int i = 0; i < n; ++i) {
    double const a = 6.283185307179586 * i / n;
    vertices.push_back(plane.local_to_global_coord(Point(3 * std::cos(a), 3 * std::sin(a), 0)));
  }
  structmath::ConvexPolygon const polygon(plane, vertices);
  structmath::Plane const cutter(Vector3D(1, -1, 0.5), 0.3);
  for (auto _ : state) {
    auto const clipped = polygon.clip(cutter, structmath::HalfSpace::along_normal);
    benchmark::DoNotOptimize(clipped.size());
  }
}
BENCHMARK(BM_ConvexPolygonClip)->Arg(16);

#if defined(STRUCTMATH_HAVE_EIGEN)

Eigen::Matrix3Xd to_eigen(std::vector<Point> const& points) {
  Eigen::Matrix3Xd m(3, static_cast<Eigen::Index>(points.size()));
  for (std::size_t i = 0; i < points.size(); ++i) {
    m.col(static_cast<Eigen::Index>(i)) << points[i].x(), points[i].y(), points[i].z();
  }
  return m;
}

void BM_Eigen_RmsDistance(benchmark::State& state) {
  auto const n = static_cast<std::size_t>(state.range(0));
  Eigen::Matrix3Xd const a = to_eigen(random_points(n, 1));
  Eigen::Matrix3Xd const b = to_eigen(random_points(n, 2));
  for (auto _ : state) {
    benchmark::DoNotOptimize(std::sqrt((a - b).squaredNorm() / static_cast<double>(a.cols())));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Eigen_RmsDistance)->Arg(1000);

void BM_Eigen_Centroid(benchmark::State& state) {
  Eigen::Matrix3Xd const a = to_eigen(random_points(static_cast<std::size_t>(state.range(0)), 3));
  for (auto _ : state) {
    Eigen::Vector3d const c = a.rowwise().mean();
    benchmark::DoNotOptimize(c);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Eigen_Centroid)->Arg(1000);

void BM_Eigen_TorsionAngle(benchmark::State& state) {
  Eigen::Matrix3Xd const p =
      to_eigen(random_points(static_cast<std::size_t>(state.range(0)) + 3, 4));
  for (auto _ : state) {
    double sum = 0.0;
    for (Eigen::Index i = 0; i + 3 < p.cols(); ++i) {
      Eigen::Vector3d const b1 = p.col(i + 1) - p.col(i);
      Eigen::Vector3d const b2 = p.col(i + 2) - p.col(i + 1);
      Eigen::Vector3d const b3 = p.col(i + 3) - p.col(i + 2);
      Eigen::Vector3d const n1 = b1.cross(b2).normalized();
      Eigen::Vector3d const n2 = b2.cross(b3).normalized();
      double const c = std::min(1.0, std::max(-1.0, n1.dot(n2)));
      double const a = std::acos(c);
      sum += (b2.dot(n1.cross(n2)) < 0.0) ? -a : a;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Eigen_TorsionAngle)->Arg(1000);

void BM_Eigen_LeastSquaresPlane(benchmark::State& state) {
  Eigen::Matrix3Xd const p = to_eigen(near_plane_points(static_cast<std::size_t>(state.range(0))));
  for (auto _ : state) {
    Eigen::Vector3d const c = p.rowwise().mean();
    Eigen::Matrix3Xd const centred = p.colwise() - c;
    Eigen::Matrix3d const scatter = centred * centred.transpose();
    Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> const solver(scatter);
    Eigen::Vector3d const normal = solver.eigenvectors().col(0);  // smallest spread
    benchmark::DoNotOptimize(normal.dot(c));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Eigen_LeastSquaresPlane)->Arg(1000);

void BM_Eigen_QuaternionRotate(benchmark::State& state) {
  Eigen::Matrix3Xd const p = to_eigen(random_points(static_cast<std::size_t>(state.range(0)), 5));
  Eigen::Quaterniond const q(Eigen::AngleAxisd(0.7, Eigen::Vector3d(1, 2, 3).normalized()));
  for (auto _ : state) {
    Eigen::Vector3d sum = Eigen::Vector3d::Zero();
    for (Eigen::Index i = 0; i < p.cols(); ++i) sum += q * Eigen::Vector3d(p.col(i));
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Eigen_QuaternionRotate)->Arg(1000);

void BM_Eigen_TransformPoints(benchmark::State& state) {
  Eigen::Matrix3Xd const p = to_eigen(random_points(static_cast<std::size_t>(state.range(0)), 6));
  Eigen::Isometry3d t = Eigen::Isometry3d::Identity();
  t.rotate(Eigen::AngleAxisd(0.7, Eigen::Vector3d(1, 2, 3).normalized()));
  t.pretranslate(Eigen::Vector3d(1, -2, 3));
  for (auto _ : state) {
    Eigen::Vector3d sum = Eigen::Vector3d::Zero();
    for (Eigen::Index i = 0; i < p.cols(); ++i) sum += t * Eigen::Vector3d(p.col(i));
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Eigen_TransformPoints)->Arg(1000);

#endif  // STRUCTMATH_HAVE_EIGEN

}  // namespace
