// SPDX-License-Identifier: MIT
// Inversion by the adjugate, cyclic Jacobi eigen-decomposition and the eigenvalue sort.
#include "structmath/numeric/linear_algebra.hpp"

#include <cmath>
#include <stdexcept>

namespace structmath {

void Invert(Matrix3D& m) {
  Matrix3D const a = m;
  // Cofactor C(r, c), counted from 0, of the element in row r, column c.
  double const c00 = a[1][1] * a[2][2] - a[1][2] * a[2][1];
  double const c01 = a[1][2] * a[2][0] - a[1][0] * a[2][2];
  double const c02 = a[1][0] * a[2][1] - a[1][1] * a[2][0];
  double const c10 = a[0][2] * a[2][1] - a[0][1] * a[2][2];
  double const c11 = a[0][0] * a[2][2] - a[0][2] * a[2][0];
  double const c12 = a[0][1] * a[2][0] - a[0][0] * a[2][1];
  double const c20 = a[0][1] * a[1][2] - a[0][2] * a[1][1];
  double const c21 = a[0][2] * a[1][0] - a[0][0] * a[1][2];
  double const c22 = a[0][0] * a[1][1] - a[0][1] * a[1][0];
  double const det = a[0][0] * c00 + a[0][1] * c01 + a[0][2] * c02;
  if (det == 0.0) throw std::runtime_error("Singular Matrix3D in Matrix3D::inverse()");
  // The adjugate is the transposed cofactor matrix.
  m = Matrix3D(c00 / det, c10 / det, c20 / det, c01 / det, c11 / det, c21 / det, c02 / det,
               c12 / det, c22 / det);
}

namespace {

inline void rotate(double& x, double& y, double s, double tau) {
  double const g = x;
  double const h = y;
  x = g - s * (h + g * tau);
  y = h + s * (g - h * tau);
}

}  // namespace

template <>
void Jacobi<3>(Matrix3D a, Vector3D& d, Matrix3D& v) {
  constexpr unsigned int n = 3;
  v = Matrix3D();
  Vector3D b;
  Vector3D z;
  for (unsigned int p = 1; p <= n; ++p) {
    b[p - 1] = a(p, p);
    d[p - 1] = a(p, p);
  }
  for (int sweep = 1; sweep <= 50; ++sweep) {
    double sm = 0.0;
    for (unsigned int p = 1; p < n; ++p) {
      for (unsigned int q = p + 1; q <= n; ++q) sm += std::fabs(a(p, q));
    }
    if (sm == 0.0) return;
    double const tresh = sweep <= 3 ? 0.2 * sm / n / n : 0.0;
    for (unsigned int p = 1; p < n; ++p) {
      for (unsigned int q = p + 1; q <= n; ++q) {
        double const g = 100.0 * std::fabs(a(p, q));
        double const dp = std::fabs(d[p - 1]);
        double const dq = std::fabs(d[q - 1]);
        if (sweep > 4 && dp + g == dp && dq + g == dq) {
          a(p, q) = 0.0;
          continue;
        }
        if (!(std::fabs(a(p, q)) > tresh)) continue;
        double h = d[q - 1] - d[p - 1];
        double t = 0.0;
        if (std::fabs(h) + g == std::fabs(h)) {
          t = a(p, q) / h;
        } else {
          double const theta = 0.5 * h / a(p, q);
          t = 1.0 / (std::fabs(theta) + std::sqrt(1.0 + theta * theta));
          if (theta < 0.0) t = -t;
        }
        double const c = 1.0 / std::sqrt(1.0 + t * t);
        double const s = t * c;
        double const tau = s / (1.0 + c);
        h = t * a(p, q);
        z[p - 1] -= h;
        z[q - 1] += h;
        d[p - 1] -= h;
        d[q - 1] += h;
        a(p, q) = 0.0;
        for (unsigned int j = 1; j < p; ++j) rotate(a(j, p), a(j, q), s, tau);
        for (unsigned int j = p + 1; j < q; ++j) rotate(a(p, j), a(j, q), s, tau);
        for (unsigned int j = q + 1; j <= n; ++j) rotate(a(p, j), a(q, j), s, tau);
        for (unsigned int j = 1; j <= n; ++j) rotate(v(j, p), v(j, q), s, tau);
      }
    }
    for (unsigned int p = 0; p < n; ++p) {
      b[p] += z[p];
      d[p] = b[p];
      z[p] = 0.0;
    }
  }
  throw std::overflow_error("Jacobi: 50 iterations should never happen.");
}

template <>
void EigenSort<3>(Vector3D& d, Matrix3D& v) {
  constexpr unsigned int n = 3;
  for (unsigned int i = 1; i < n; ++i) {
    unsigned int k = i;
    double p = d(i);
    for (unsigned int j = i + 1; j <= n; ++j) {
      if (d(j) >= p) {  // '>=': on equal values the later index wins
        k = j;
        p = d(j);
      }
    }
    if (k != i) {
      d[k - 1] = d[i - 1];
      d[i - 1] = p;
      for (unsigned int r = 1; r <= n; ++r) {
        double const keep = v(r, i);
        v(r, i) = v(r, k);
        v(r, k) = keep;
      }
    }
  }
}

}  // namespace structmath
