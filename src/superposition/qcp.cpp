// SPDX-License-Identifier: MIT
// qcp_rmsd and qcp_fit: one pass for the inner products, Newton's method on the quartic,
// and the quaternion as a null vector.
#include "structmath/superposition/qcp.hpp"

#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

#include "lanes.hpp"

namespace structmath {

namespace {

// Here lane 0 belongs to one point and lane 1 to the next, so every sum is gathered in
// two halves.
using detail::Lanes;
using detail::lanes;

inline double total(Lanes a) noexcept { return a[0] + a[1]; }

/// What one pass gathers, about the first point of each set: the (weighted) sums of the
/// shifted coordinates a of the moving and b of the target set, of a_i b_j, and of
/// |a|^2 + |b|^2, with the total weight.
struct Sums {
  double weight = 0.0;
  double a[3] = {}, b[3] = {};
  double ab[3][3] = {};
  double squares = 0.0;
};

template <bool Weighted>
Sums gather(Point const* x, Point const* y, double const* w, std::size_t n) {
  Lanes const zero = lanes(0.0, 0.0);
  Lanes const x0[3] = {lanes(x[0][0], x[0][0]), lanes(x[0][1], x[0][1]), lanes(x[0][2], x[0][2])};
  Lanes const y0[3] = {lanes(y[0][0], y[0][0]), lanes(y[0][1], y[0][1]), lanes(y[0][2], y[0][2])};
  Lanes sa[3] = {zero, zero, zero}, sb[3] = {zero, zero, zero};
  Lanes sab[3][3] = {{zero, zero, zero}, {zero, zero, zero}, {zero, zero, zero}};
  Lanes squares = zero, weight = zero;
  auto const add = [&](Lanes const a[3], Lanes const b[3], Lanes wk) {
    Lanes s = zero;
    for (int i = 0; i < 3; ++i) {
      Lanes const wa = Weighted ? wk * a[i] : a[i];
      sa[i] += wa;
      sb[i] += Weighted ? wk * b[i] : b[i];
      s += a[i] * a[i] + b[i] * b[i];
      for (int j = 0; j < 3; ++j) sab[i][j] += wa * b[j];
    }
    squares += Weighted ? wk * s : s;
    if (Weighted) weight += wk;
  };
  std::size_t k = 0;
  for (; k + 1 < n; k += 2) {
    Point const& p = x[k];
    Point const& q = x[k + 1];
    Point const& r = y[k];
    Point const& s = y[k + 1];
    Lanes const a[3] = {lanes(p[0], q[0]) - x0[0], lanes(p[1], q[1]) - x0[1],
                        lanes(p[2], q[2]) - x0[2]};
    Lanes const b[3] = {lanes(r[0], s[0]) - y0[0], lanes(r[1], s[1]) - y0[1],
                        lanes(r[2], s[2]) - y0[2]};
    add(a, b, Weighted ? lanes(w[k], w[k + 1]) : lanes(1.0, 1.0));
  }
  if (k < n) {  // the last point of an odd count, in lane 0 alone
    Lanes const a[3] = {lanes(x[k][0], x0[0][0]) - x0[0], lanes(x[k][1], x0[1][0]) - x0[1],
                        lanes(x[k][2], x0[2][0]) - x0[2]};
    Lanes const b[3] = {lanes(y[k][0], y0[0][0]) - y0[0], lanes(y[k][1], y0[1][0]) - y0[1],
                        lanes(y[k][2], y0[2][0]) - y0[2]};
    add(a, b, lanes(Weighted ? w[k] : 1.0, 0.0));
  }
  Sums out;
  out.weight = Weighted ? total(weight) : static_cast<double>(n);
  out.squares = total(squares);
  for (int i = 0; i < 3; ++i) {
    out.a[i] = total(sa[i]);
    out.b[i] = total(sb[i]);
    for (int j = 0; j < 3; ++j) out.ab[i][j] = total(sab[i][j]);
  }
  return out;
}

/// The determinant of a 4x4 matrix by elimination with partial pivoting.
double determinant(double m[4][4]) {
  double det = 1.0;
  for (int c = 0; c < 4; ++c) {
    int pivot = c;
    for (int r = c + 1; r < 4; ++r) {
      if (std::fabs(m[r][c]) > std::fabs(m[pivot][c])) pivot = r;
    }
    if (m[pivot][c] == 0.0) return 0.0;
    if (pivot != c) {
      std::swap(m[pivot], m[c]);
      det = -det;
    }
    det *= m[c][c];
    for (int r = c + 1; r < 4; ++r) {
      double const f = m[r][c] / m[c][c];
      for (int j = c + 1; j < 4; ++j) m[r][j] -= f * m[c][j];
    }
  }
  return det;
}

/// A unit null vector of the symmetric 4x4 matrix a (singular to within `tolerance`), by
/// elimination with full pivoting; the first free unknown is set to 1.
void null_vector(double a[4][4], double tolerance, double out[4]) {
  int column[4] = {0, 1, 2, 3};
  int rank = 0;
  for (; rank < 3; ++rank) {
    int pr = rank, pc = rank;
    for (int r = rank; r < 4; ++r) {
      for (int c = rank; c < 4; ++c) {
        if (std::fabs(a[r][c]) > std::fabs(a[pr][pc])) {
          pr = r;
          pc = c;
        }
      }
    }
    if (!(std::fabs(a[pr][pc]) > tolerance)) break;
    std::swap(a[pr], a[rank]);
    if (pc != rank) {
      for (int r = 0; r < 4; ++r) std::swap(a[r][pc], a[r][rank]);
      std::swap(column[pc], column[rank]);
    }
    for (int r = rank + 1; r < 4; ++r) {
      double const f = a[r][rank] / a[rank][rank];
      for (int c = rank; c < 4; ++c) a[r][c] -= f * a[rank][c];
    }
  }
  double x[4] = {0.0, 0.0, 0.0, 0.0};
  x[rank] = 1.0;
  for (int i = rank - 1; i >= 0; --i) {
    double s = 0.0;
    for (int j = i + 1; j < 4; ++j) s += a[i][j] * x[j];
    x[i] = -s / a[i][i];
  }
  double norm = 0.0;
  for (double v : x) norm += v * v;
  norm = std::sqrt(norm);
  for (int j = 0; j < 4; ++j) out[column[j]] = x[j] / norm;
}

struct Solution {
  double rmsd;
  double k[4][4];  // Horn's matrix of M
  double q[4];     // the unit quaternion of the best rotation
};

/// The least RMS deviation from the gathered sums.
Solution solve(Sums const& s) {
  double const wt = s.weight;
  double m[3][3];
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) m[i][j] = s.ab[i][j] - s.a[i] * s.b[j] / wt;
  }
  double const centring = (s.a[0] * s.a[0] + s.a[1] * s.a[1] + s.a[2] * s.a[2] + s.b[0] * s.b[0] +
                           s.b[1] * s.b[1] + s.b[2] * s.b[2]) /
                          wt;
  double const e0 = 0.5 * (s.squares - centring);

  double const sxx = m[0][0], sxy = m[0][1], sxz = m[0][2];
  double const syx = m[1][0], syy = m[1][1], syz = m[1][2];
  double const szx = m[2][0], szy = m[2][1], szz = m[2][2];
  Solution out{0.0,
               {{sxx + syy + szz, syz - szy, szx - sxz, sxy - syx},
                {syz - szy, sxx - syy - szz, sxy + syx, szx + sxz},
                {szx - sxz, sxy + syx, -sxx + syy - szz, syz + szy},
                {sxy - syx, szx + sxz, syz + szy, -sxx - syy + szz}},
               {1.0, 0.0, 0.0, 0.0}};

  double norm2 = 0.0;
  for (auto const& row : m) {
    for (double v : row) norm2 += v * v;
  }
  double lambda = 0.0;
  if (norm2 > 0.0 && e0 > 0.0) {
    double const c2 = -2.0 * norm2;
    double const c1 = -8.0 * (sxx * (syy * szz - syz * szy) + sxy * (syz * szx - syx * szz) +
                              sxz * (syx * szy - syy * szx));
    double kk[4][4];
    for (int r = 0; r < 4; ++r) {
      for (int c = 0; c < 4; ++c) kk[r][c] = out.k[r][c];
    }
    double const c0 = determinant(kk);
    lambda = e0;
    for (int step = 0; step < 100; ++step) {
      double const l2 = lambda * lambda;
      double const p = (l2 + c2) * l2 + c1 * lambda + c0;
      double const dp = (4.0 * l2 + 2.0 * c2) * lambda + c1;
      if (dp == 0.0) break;
      double const next = lambda - p / dp;
      bool const done = std::fabs(next - lambda) <= 1e-14 * std::fabs(next);
      lambda = next;
      if (done) break;
    }
  }
  double scale = 0.0;
  for (auto const& row : out.k) {
    for (double v : row) scale = std::fmax(scale, std::fabs(v));
  }
  if (scale > 0.0) {
    // Near a multiple root (a linear set, or a nearly linear one) the root of the quartic
    // is known to about sqrt(rounding) only, but its eigenvectors are well defined: L is
    // taken as the Rayleigh quotient q^T K q of the null vector q of K - L I, which is
    // exact to rounding wherever q lies in the top eigenspace.
    double shifted[4][4];
    for (int r = 0; r < 4; ++r) {
      for (int c = 0; c < 4; ++c) shifted[r][c] = out.k[r][c] - (r == c ? lambda : 0.0);
    }
    null_vector(shifted, 1e-12 * scale, out.q);
    double quotient = 0.0;
    for (int r = 0; r < 4; ++r) {
      double row = 0.0;
      for (int c = 0; c < 4; ++c) row += out.k[r][c] * out.q[c];
      quotient += out.q[r] * row;
    }
    lambda = quotient;
  }
  double const excess = e0 - lambda;
  out.rmsd = excess > 0.0 ? std::sqrt(2.0 * excess / wt) : 0.0;
  return out;
}

template <bool Weighted>
Sums checked_sums(char const* name, std::vector<Point> const& moving,
                  std::vector<Point> const& target, std::vector<double> const* weights) {
  auto const fail = [name](char const* what) {
    throw std::invalid_argument(std::string(name) + ": " + what);
  };
  if (moving.size() != target.size()) fail("the point sets differ in size");
  if (moving.empty()) fail("no points");
  if (weights != nullptr && weights->size() != moving.size())
    fail("one weight per point is needed");
  Sums const s = gather<Weighted>(moving.data(), target.data(),
                                  weights != nullptr ? weights->data() : nullptr, moving.size());
  if (!(s.weight > 0.0)) fail("the weights must have a positive sum");
  return s;
}

QcpFit fit(Sums const& s, Point const& x0, Point const& y0) {
  Solution const sol = solve(s);
  QcpFit out;
  out.rmsd = sol.rmsd;
  out.moving_centroid =
      Point(x0[0] + s.a[0] / s.weight, x0[1] + s.a[1] / s.weight, x0[2] + s.a[2] / s.weight);
  out.target_centroid =
      Point(y0[0] + s.b[0] / s.weight, y0[1] + s.b[1] / s.weight, y0[2] + s.b[2] / s.weight);
  // A set without spread leaves q at (1, 0, 0, 0): the identity.
  double const w = sol.q[0], x = sol.q[1], y = sol.q[2], z = sol.q[3];
  out.rotation =
      Matrix3D(w * w + x * x - y * y - z * z, 2.0 * (x * y - w * z), 2.0 * (x * z + w * y),
               2.0 * (x * y + w * z), w * w - x * x + y * y - z * z, 2.0 * (y * z - w * x),
               2.0 * (x * z - w * y), 2.0 * (y * z + w * x), w * w - x * x - y * y + z * z);
  return out;
}

}  // namespace

double qcp_rmsd(std::vector<Point> const& moving, std::vector<Point> const& target) {
  return solve(checked_sums<false>("qcp_rmsd()", moving, target, nullptr)).rmsd;
}

double qcp_rmsd(std::vector<Point> const& moving, std::vector<Point> const& target,
                std::vector<double> const& weights) {
  return solve(checked_sums<true>("qcp_rmsd()", moving, target, &weights)).rmsd;
}

QcpFit qcp_fit(std::vector<Point> const& moving, std::vector<Point> const& target) {
  Sums const s = checked_sums<false>("qcp_fit()", moving, target, nullptr);
  return fit(s, moving.front(), target.front());
}

QcpFit qcp_fit(std::vector<Point> const& moving, std::vector<Point> const& target,
               std::vector<double> const& weights) {
  Sums const s = checked_sums<true>("qcp_fit()", moving, target, &weights);
  return fit(s, moving.front(), target.front());
}

}  // namespace structmath
