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

/// The working state of Jacobi<3>: the upper triangle of a, the eigenvalue estimates d,
/// their sweep start values b and the sweep's accumulated changes z, and the rotations
/// v, all counted from 0. Held in plain locals so that they stay in registers.
struct JacobiState {
  double a[3][3];
  double d[3], b[3], z[3];
  double v[3][3];
};

/// The step of one sweep at element (p, q), p < q, counted from 0: zero it when
/// negligible (after the fourth sweep), or rotate it away when it exceeds the threshold.
/// P and Q are template arguments so that the index ranges of the element pairs the
/// rotation moves are fixed at compile time.
template <int P, int Q>
inline void jacobi_step(JacobiState& st, int sweep, double tresh) {
  double& apq = st.a[P][Q];
  double const g = 100.0 * std::fabs(apq);
  double const dp = std::fabs(st.d[P]);
  double const dq = std::fabs(st.d[Q]);
  if (sweep > 4 && dp + g == dp && dq + g == dq) {
    apq = 0.0;
    return;
  }
  if (!(std::fabs(apq) > tresh)) return;
  double h = st.d[Q] - st.d[P];
  double t = 0.0;
  if (std::fabs(h) + g == std::fabs(h)) {
    t = apq / h;
  } else {
    double const theta = 0.5 * h / apq;
    t = 1.0 / (std::fabs(theta) + std::sqrt(1.0 + theta * theta));
    if (theta < 0.0) t = -t;
  }
  double const c = 1.0 / std::sqrt(1.0 + t * t);
  double const s = t * c;
  double const tau = s / (1.0 + c);
  h = t * apq;
  st.z[P] -= h;
  st.z[Q] += h;
  st.d[P] -= h;
  st.d[Q] += h;
  apq = 0.0;
  for (int j = 0; j < P; ++j) rotate(st.a[j][P], st.a[j][Q], s, tau);
  for (int j = P + 1; j < Q; ++j) rotate(st.a[P][j], st.a[j][Q], s, tau);
  for (int j = Q + 1; j < 3; ++j) rotate(st.a[P][j], st.a[Q][j], s, tau);
  for (int j = 0; j < 3; ++j) rotate(st.v[j][P], st.v[j][Q], s, tau);
}

}  // namespace

// Kept out of line: its results then depend on the library's floating-point flags only,
// never on a caller's (contraction into fused multiply-adds would change the last bits).
template <>
void Jacobi<3>(Matrix3D a, Vector3D& d, Matrix3D& v) {
  JacobiState st;
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 3; ++c) {
      st.a[r][c] = a[static_cast<unsigned int>(r)][static_cast<unsigned int>(c)];
      st.v[r][c] = r == c ? 1.0 : 0.0;
    }
    st.b[r] = st.d[r] = st.a[r][r];
    st.z[r] = 0.0;
  }
  auto const store = [&] {
    d = Vector3D(st.d[0], st.d[1], st.d[2]);
    v = Matrix3D(st.v[0][0], st.v[0][1], st.v[0][2], st.v[1][0], st.v[1][1], st.v[1][2], st.v[2][0],
                 st.v[2][1], st.v[2][2]);
  };
  for (int sweep = 1; sweep <= 50; ++sweep) {
    double const sm = std::fabs(st.a[0][1]) + std::fabs(st.a[0][2]) + std::fabs(st.a[1][2]);
    if (sm == 0.0) {
      store();
      return;
    }
    double const tresh = sweep <= 3 ? 0.2 * sm / 3 / 3 : 0.0;
    jacobi_step<0, 1>(st, sweep, tresh);
    jacobi_step<0, 2>(st, sweep, tresh);
    jacobi_step<1, 2>(st, sweep, tresh);
    for (int p = 0; p < 3; ++p) {
      st.b[p] += st.z[p];
      st.d[p] = st.b[p];
      st.z[p] = 0.0;
    }
  }
  store();
  throw std::overflow_error("Jacobi: 50 iterations should never happen.");
}

template <>
void EigenSort<3>(Vector3D& d, Matrix3D& v) {
  // Selection sort on copies in locals; '>=': on equal values the later index wins.
  double e[3] = {d[0], d[1], d[2]};
  int order[3] = {0, 1, 2};
  for (int i = 0; i < 2; ++i) {
    int k = i;
    double p = e[i];
    for (int j = i + 1; j < 3; ++j) {
      if (e[j] >= p) {
        k = j;
        p = e[j];
      }
    }
    if (k != i) {
      e[k] = e[i];
      e[i] = p;
      int const keep = order[i];
      order[i] = order[k];
      order[k] = keep;
    }
  }
  if (order[0] == 0 && order[1] == 1) return;  // d and v untouched
  Matrix3D const w = v;
  auto const u = [](int i) { return static_cast<unsigned int>(i); };
  d = Vector3D(e[0], e[1], e[2]);
  v = Matrix3D(w[0][u(order[0])], w[0][u(order[1])], w[0][u(order[2])], w[1][u(order[0])],
               w[1][u(order[1])], w[1][u(order[2])], w[2][u(order[0])], w[2][u(order[1])],
               w[2][u(order[2])]);
}

}  // namespace structmath
