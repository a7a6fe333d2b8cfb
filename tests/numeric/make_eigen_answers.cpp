// SPDX-License-Identifier: MIT
// Writes the eigen-decomposition known answers (tests/data/numeric/eigen_decompositions.txt)
// to stdout: symmetric 3x3 matrices and what Jacobi<3> and EigenSort<3> make of them. Each
// case is computed by the library and by the transcription of the cyclic Jacobi method
// and the selection sort below; the program writes nothing and exits 1 if the two differ
// in any bit.
#include <cmath>
#include <cstdint>
#include <iostream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "numeric/eigen_answers.hpp"

namespace structmath::testing {
namespace {

using Values = std::vector<double>;

/// What the transcription saw, to show what the data exercises.
struct Sweeps {
  int sweeps = 0;           // sweeps started before the off-diagonal sum vanished
  int negligible = 0;       // elements zeroed as negligible after the fourth sweep
  int small_angle = 0;      // rotations with t = a(p, q) / h
  int below_threshold = 0;  // elements left for a later sweep
};

/// The cyclic Jacobi method with threshold sweeps, written out step by step with plain
/// arrays counted from 0: element (p, q), counted from 1, is a[p - 1][q - 1].
void transcribed_jacobi(double a[3][3], double d[3], double v[3][3], Sweeps& seen) {
  double b[3], z[3];
  for (int p = 0; p < 3; ++p) {
    for (int q = 0; q < 3; ++q) v[p][q] = p == q ? 1.0 : 0.0;
    b[p] = d[p] = a[p][p];
    z[p] = 0.0;
  }
  auto const rotate = [](double& x, double& y, double s, double tau) {
    double const g = x, h = y;
    x = g - s * (h + g * tau);
    y = h + s * (g - h * tau);
  };
  for (int i = 1; i <= 50; ++i) {
    double sm = 0.0;
    for (int p = 0; p < 2; ++p) {
      for (int q = p + 1; q < 3; ++q) sm += std::fabs(a[p][q]);
    }
    if (sm == 0.0) return;
    ++seen.sweeps;
    double const tresh = i <= 3 ? 0.2 * sm / 3 / 3 : 0.0;
    for (int p = 0; p < 2; ++p) {
      for (int q = p + 1; q < 3; ++q) {
        double const g = 100.0 * std::fabs(a[p][q]);
        if (i > 4 && std::fabs(d[p]) + g == std::fabs(d[p]) &&
            std::fabs(d[q]) + g == std::fabs(d[q])) {
          a[p][q] = 0.0;
          ++seen.negligible;
        } else if (std::fabs(a[p][q]) > tresh) {
          double h = d[q] - d[p];
          double t;
          if (std::fabs(h) + g == std::fabs(h)) {
            t = a[p][q] / h;
            ++seen.small_angle;
          } else {
            double const theta = 0.5 * h / a[p][q];
            t = 1.0 / (std::fabs(theta) + std::sqrt(1.0 + theta * theta));
            if (theta < 0.0) t = -t;
          }
          double const c = 1.0 / std::sqrt(1.0 + t * t);
          double const s = t * c;
          double const tau = s / (1.0 + c);
          h = t * a[p][q];
          z[p] -= h;
          z[q] += h;
          d[p] -= h;
          d[q] += h;
          a[p][q] = 0.0;
          for (int j = 0; j < p; ++j) rotate(a[j][p], a[j][q], s, tau);
          for (int j = p + 1; j < q; ++j) rotate(a[p][j], a[j][q], s, tau);
          for (int j = q + 1; j < 3; ++j) rotate(a[p][j], a[q][j], s, tau);
          for (int j = 0; j < 3; ++j) rotate(v[j][p], v[j][q], s, tau);
        } else {
          ++seen.below_threshold;
        }
      }
    }
    for (int p = 0; p < 3; ++p) {
      b[p] += z[p];
      d[p] = b[p];
      z[p] = 0.0;
    }
  }
  throw std::overflow_error("Jacobi: 50 iterations should never happen.");
}

/// Selection sort into descending order; on equal values the later index wins.
void transcribed_sort(double d[3], double v[3][3]) {
  for (int i = 0; i < 2; ++i) {
    int k = i;
    double p = d[i];
    for (int j = i + 1; j < 3; ++j) {
      if (d[j] >= p) {
        k = j;
        p = d[j];
      }
    }
    if (k != i) {
      d[k] = d[i];
      d[i] = p;
      for (int r = 0; r < 3; ++r) std::swap(v[r][i], v[r][k]);
    }
  }
}

AnswerFields transcribed_outcome(AnswerCase const& c, Sweeps& seen) {
  Values const m = c.doubles("matrix");
  double a[3][3], d[3], v[3][3];
  for (int k = 0; k < 9; ++k) a[k / 3][k % 3] = m.at(static_cast<std::size_t>(k));
  transcribed_jacobi(a, d, v, seen);
  auto const flat = [&] {
    Values out;
    for (auto const& row : v) out.insert(out.end(), row, row + 3);
    return out;
  };
  AnswerFields out;
  out.add("jacobi_d", Values(d, d + 3)).add("jacobi_v", flat());
  transcribed_sort(d, v);
  out.add("sorted_d", Values(d, d + 3)).add("sorted_v", flat());
  return out;
}

/// Uniform in [low, high) from the raw 32-bit output, the same on every platform.
class Draw {
 public:
  explicit Draw(std::uint32_t seed) : engine_(seed) {}
  double uniform(double low, double high) {
    return low + (high - low) * (static_cast<double>(engine_()) / 4294967296.0);
  }

 private:
  std::mt19937 engine_;
};

Values symmetric(Draw& draw, double range) {
  double const a = draw.uniform(-range, range), b = draw.uniform(-range, range),
               c = draw.uniform(-range, range), d = draw.uniform(-range, range),
               e = draw.uniform(-range, range), f = draw.uniform(-range, range);
  return {a, b, c, b, d, e, c, e, f};
}

/// Q diag(l) Q^T for a rotation Q built by Gram-Schmidt from random columns: symmetric
/// to rounding, with eigenvalues l repeated as asked.
Values with_eigenvalues(Draw& draw, Values const& l) {
  Vector3D x(draw.uniform(-1, 1), draw.uniform(-1, 1), draw.uniform(-1, 1));
  Vector3D y(draw.uniform(-1, 1), draw.uniform(-1, 1), draw.uniform(-1, 1));
  x.normalize();
  y.orthogonalize(x);
  y.normalize();
  Vector3D const zc = x.cross(y);
  Vector3D const q[3] = {x, y, zc};  // the columns of Q
  Values m(9, 0.0);
  for (unsigned r = 0; r < 3; ++r) {
    for (unsigned c = r; c < 3; ++c) {
      double s = 0.0;
      for (unsigned k = 0; k < 3; ++k) s += q[k][r] * l[k] * q[k][c];
      m[3 * r + c] = m[3 * c + r] = s;
    }
  }
  return m;
}

Values scaled(Values m, double f) {
  for (double& x : m) x *= f;
  return m;
}

struct NamedMatrix {
  std::string name;
  Values matrix;
};

std::vector<NamedMatrix> matrices() {
  Draw draw(31415);
  std::vector<NamedMatrix> out = {
      {"diagonal", {3, 0, 0, 0, -1, 0, 0, 0, 2}},
      {"diagonal_repeated", {2, 0, 0, 0, 5, 0, 0, 0, 5}},
      {"identity", {1, 0, 0, 0, 1, 0, 0, 0, 1}},
      {"zero", {0, 0, 0, 0, 0, 0, 0, 0, 0}},
      {"double_eigenvalue_by_hand", {2, 1, 0, 1, 2, 0, 0, 0, 3}},
      {"all_ones", {1, 1, 1, 1, 1, 1, 1, 1, 1}},
      {"integer", {4, -2, 1, -2, 3, 0, 1, 0, 5}},
      {"only_12", {1, 2, 0, 2, 1, 0, 0, 0, 1}},
      {"only_13", {1, 0, -3, 0, 4, 0, -3, 0, 1}},
      {"only_23", {6, 0, 0, 0, 2, 0.5, 0, 0.5, 2}},
      {"nearly_diagonal", {1, 1e-9, 2e-9, 1e-9, 2, -3e-9, 2e-9, -3e-9, 3}},
      {"tiny_coupling_of_equal_values", {1, 1e-12, 0, 1e-12, 1, 1e-12, 0, 1e-12, 1}},
      {"negative_definite", {-4, 1, 0.5, 1, -3, 0.25, 0.5, 0.25, -2}},
  };
  for (int n = 0; n < 12; ++n) {
    out.push_back({"random_" + std::to_string(n), symmetric(draw, n < 8 ? 5.0 : 100.0)});
  }
  Values const base = symmetric(draw, 3.0);
  std::pair<char const*, double> const factors[] = {{"scaled_down_1e8", 1e-8},
                                                    {"scaled_up_1e8", 1e8},
                                                    {"scaled_down_1e150", 1e-150},
                                                    {"scaled_up_1e150", 1e150},
                                                    {"scaled_negative_half", -0.5}};
  for (auto const& [name, f] : factors) out.push_back({name, scaled(base, f)});
  out.push_back({"scaled_unit", base});
  out.push_back({"repeated_1_3_3", with_eigenvalues(draw, {1, 3, 3})});
  out.push_back({"repeated_3_3_1", with_eigenvalues(draw, {3, 3, 1})});
  out.push_back({"repeated_2_2_2", with_eigenvalues(draw, {2, 2, 2})});
  out.push_back({"repeated_0_0_5", with_eigenvalues(draw, {0, 0, 5})});
  out.push_back({"repeated_negative", with_eigenvalues(draw, {-1, 4, -1})});
  out.push_back({"close_eigenvalues", with_eigenvalues(draw, {1, 1 + 1e-10, 2})});
  out.push_back({"wide_spread", with_eigenvalues(draw, {1e-6, 1, 1e6})});
  for (int n = 0; n < 40; ++n) {
    out.push_back({"seeded_" + std::to_string(n), symmetric(draw, n < 20 ? 1.0 : 1000.0)});
  }
  // R^T R of random 3x3 matrices: the positive semi-definite normal matrices of fits.
  for (int n = 0; n < 20; ++n) {
    Values r(9);
    for (double& x : r) x = draw.uniform(-50.0, 50.0);
    if (n % 5 == 4) {
      for (std::size_t k = 0; k < 3; ++k) r[6 + k] = 1e-9 * r[k];  // nearly planar: rank close to 2
    }
    Values m(9, 0.0);
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) {
        for (std::size_t k = 0; k < 3; ++k) m[3 * i + j] += r[3 * k + i] * r[3 * k + j];
      }
    }
    out.push_back({"normal_matrix_" + std::to_string(n), m});
  }
  return out;
}

int run() {
  bool agree = true;
  std::ostringstream file;
  file << "# Written by tests/numeric/make_eigen_answers.cpp; do not edit.\n"
          "# Each case: a symmetric matrix (row-major), Jacobi<3>'s eigenvalues d and\n"
          "# eigenvectors v (columns; row-major), then both after EigenSort<3>; every case\n"
          "# agreed bit for bit with a transcription of the two methods.\n";
  for (NamedMatrix const& named : matrices()) {
    AnswerFields in;
    in.add("matrix", named.matrix);
    AnswerCase const c = in.as_case(named.name);
    Sweeps seen;
    AnswerFields const library = library_eigen_outcome(c);
    AnswerFields const transcribed = transcribed_outcome(c, seen);
    agree = report_differences(c.name, library, transcribed, std::cerr) && agree;
    std::cerr << c.name << ": " << seen.sweeps << " sweeps, " << seen.negligible << " negligible, "
              << seen.small_angle << " small-angle rotations, " << seen.below_threshold
              << " below threshold\n";
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
