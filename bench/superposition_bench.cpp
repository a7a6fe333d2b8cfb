// SPDX-License-Identifier: MIT
// Benchmarks of OverlayPoints::fit and of the quaternion-polynomial RMSD, with an
// SVD-based fit through Eigen where installed.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "structmath/geometry/quaternion.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/superposition/overlay_points.hpp"
#include "structmath/superposition/qcp.hpp"

#ifdef STRUCTMATH_HAVE_EIGEN
#include <Eigen/Dense>
#endif

namespace {

using structmath::Point;
using structmath::Vector3D;

// A random target and a noisy, rotated and shifted copy of it to fit.
struct Sets {
  std::vector<Point> target;
  std::vector<Point> moving;
};

Sets make_sets(std::size_t n) {
  std::mt19937_64 engine(42);
  std::uniform_real_distribution<double> coordinate(-10.0, 10.0), noise(-0.1, 0.1);
  std::normal_distribution<double> gauss(0.0, 1.0);
  structmath::Quaternion q(gauss(engine), gauss(engine), gauss(engine), gauss(engine));
  q.normalize();
  structmath::Matrix3D const rotation = q.rotation_matrix();
  Vector3D const shift(3.0, -4.0, 5.0);
  Sets sets;
  for (std::size_t i = 0; i < n; ++i) {
    Point const p(coordinate(engine), coordinate(engine), coordinate(engine));
    sets.target.push_back(p);
    sets.moving.push_back(rotation * p + shift +
                          Vector3D(noise(engine), noise(engine), noise(engine)));
  }
  return sets;
}

void BM_OverlayPointsFit(benchmark::State& state) {
  Sets const sets = make_sets(static_cast<std::size_t>(state.range(0)));
  structmath::OverlayPoints overlay(sets.target, false);
  for (auto _ : state) {
    benchmark::DoNotOptimize(overlay.fit(sets.moving));
  }
  state.counters["rms"] = overlay.rms();
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_OverlayPointsFit)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

void BM_OverlayPointsWeightedFit(benchmark::State& state) {
  Sets const sets = make_sets(static_cast<std::size_t>(state.range(0)));
  std::vector<double> const weights(sets.target.size(), 1.5);
  structmath::OverlayPoints overlay(sets.target, false);
  for (auto _ : state) {
    benchmark::DoNotOptimize(overlay.fit(sets.moving, weights));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_OverlayPointsWeightedFit)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

void BM_QcpRmsd(benchmark::State& state) {
  Sets const sets = make_sets(static_cast<std::size_t>(state.range(0)));
  double rmsd = 0.0;
  for (auto _ : state) {
    rmsd = structmath::qcp_rmsd(sets.moving, sets.target);
    benchmark::DoNotOptimize(rmsd);
  }
  state.counters["rms"] = rmsd;
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_QcpRmsd)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

void BM_QcpFit(benchmark::State& state) {
  Sets const sets = make_sets(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(structmath::qcp_fit(sets.moving, sets.target));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_QcpFit)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

#ifdef STRUCTMATH_HAVE_EIGEN

Eigen::Matrix3Xd to_eigen(std::vector<Point> const& points) {
  Eigen::Matrix3Xd m(3, static_cast<Eigen::Index>(points.size()));
  for (std::size_t i = 0; i < points.size(); ++i) {
    m.col(static_cast<Eigen::Index>(i)) << points[i].x(), points[i].y(), points[i].z();
  }
  return m;
}

// The same work as fit: centre the moving set, take the correlation matrix, find the
// proper rotation from its SVD, rotate and measure the RMS deviation. The target is
// centred once beforehand and the workspace allocated once, as OverlayPoints does.
void BM_Eigen_SvdKabschFit(benchmark::State& state) {
  Sets const sets = make_sets(static_cast<std::size_t>(state.range(0)));
  Eigen::Matrix3Xd target = to_eigen(sets.target);
  target.colwise() -= target.rowwise().mean();
  Eigen::Matrix3Xd const moving = to_eigen(sets.moving);
  Eigen::Matrix3Xd work(3, moving.cols()), rotated(3, moving.cols());
  double const n = static_cast<double>(moving.cols());
  double rms = 0.0;
  for (auto _ : state) {
    Eigen::Vector3d const c = moving.rowwise().mean();
    work = moving.colwise() - c;
    Eigen::Matrix3d const h = work * target.transpose();
    Eigen::JacobiSVD<Eigen::Matrix3d> svd(h, Eigen::ComputeFullU | Eigen::ComputeFullV);
    Eigen::Matrix3d d = Eigen::Matrix3d::Identity();
    d(2, 2) = (svd.matrixV() * svd.matrixU().transpose()).determinant() < 0.0 ? -1.0 : 1.0;
    Eigen::Matrix3d const rotation = svd.matrixV() * d * svd.matrixU().transpose();
    rotated.noalias() = rotation * work;
    rms = std::sqrt((rotated - target).squaredNorm() / n);
    benchmark::DoNotOptimize(rms);
  }
  state.counters["rms"] = rms;
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Eigen_SvdKabschFit)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

#endif

}  // namespace
