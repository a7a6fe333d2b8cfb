// SPDX-License-Identifier: MIT
// Writes the normal tail-area known answers (tests/data/statistics/normal_tail_areas.txt)
// to stdout. Each area is computed by the library and by a transcription of the
// polynomial approximation written below; the program writes nothing and exits 1 if
// the two differ in any bit.
#include <cmath>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "structmath/statistics/normal_distribution.hpp"
#include "support/known_answers.hpp"

namespace structmath::testing {
namespace {

/// Abramowitz and Stegun 26.2.17 as published, with the seven-place 1/sqrt(2 pi).
double transcribed_area(double mean, double sd, double x) {
  double const z = (x - mean) / sd;
  if (z > 6.0) return 1.0;
  if (z < -6.0) return 0.0;
  double const t = 1.0 / (1.0 + 0.2316419 * std::fabs(z));
  double const p =
      t *
      (0.31938152 + t * (-0.356563782 + t * (1.781477937 + t * (-1.821255978 + t * 1.330274429))));
  double const q = p * 0.3989423 / std::exp(0.5 * std::fabs(z) * std::fabs(z));
  return z > 0.0 ? 1.0 - q : q;
}

struct Sample {
  std::string name;
  double mean, sd, x;
};

std::vector<Sample> samples() {
  std::vector<Sample> out = {
      {"mean_of_standard", 0.0, 1.0, 0.0},
      {"negative_zero", 0.0, 1.0, -0.0},
      {"tiny_above_mean", 0.0, 1.0, 1e-300},
      {"tiny_below_mean", 0.0, 1.0, -1e-300},
      {"cut_off_plus_six", 0.0, 1.0, 6.0},
      {"cut_off_minus_six", 0.0, 1.0, -6.0},
      {"just_inside_plus_six", 0.0, 1.0, std::nextafter(6.0, 0.0)},
      {"just_inside_minus_six", 0.0, 1.0, std::nextafter(-6.0, 0.0)},
      {"just_outside_plus_six", 0.0, 1.0, std::nextafter(6.0, 7.0)},
      {"just_outside_minus_six", 0.0, 1.0, std::nextafter(-6.0, -7.0)},
      {"mean_of_shifted", 10.0, 2.0, 10.0},
      {"shifted_plus_six_sd", 10.0, 2.0, 22.0},
      {"shifted_minus_six_sd", 10.0, 2.0, -2.0},
      {"shifted_just_inside_plus", 10.0, 2.0, std::nextafter(22.0, 0.0)},
      {"shifted_just_outside_plus", 10.0, 2.0, std::nextafter(22.0, 23.0)},
      {"shifted_just_inside_minus", 10.0, 2.0, std::nextafter(-2.0, 0.0)},
      {"narrow_mean", -3.5, 0.25, -3.5},
      {"narrow_one_sd_above", -3.5, 0.25, -3.25},
      {"narrow_rounded_z", -3.5, 0.3, -3.2},
  };
  // A sweep of the standard curve, both tails.
  double const z[] = {0.1, 0.25, 0.5, 1.0, 1.5, 1.959963984540054, 2.5, 3.0, 4.0, 5.0, 5.999};
  for (double v : z) {
    std::string const tag = std::to_string(static_cast<int>(std::lround(v * 1000)));
    out.push_back({"standard_plus_" + tag, 0.0, 1.0, v});
    out.push_back({"standard_minus_" + tag, 0.0, 1.0, -v});
  }
  return out;
}

int run() {
  bool agree = true;
  std::ostringstream file;
  file << "# Written by tests/statistics/make_normal_answers.cpp; do not edit.\n"
          "# Each case: a normal distribution (mean, sd), a point x and area_to_left(x),\n"
          "# which agreed bit for bit with a transcription of the approximation.\n";
  for (Sample const& p : samples()) {
    AnswerFields in;
    in.add("mean", p.mean).add("sd", p.sd).add("x", p.x);
    // Computed from the texts, as the test will read them.
    AnswerCase const c = in.as_case(p.name);
    double const mean = c.number("mean"), sd = c.number("sd"), x = c.number("x");
    AnswerFields library, transcribed;
    library.add("area", NormalDistribution(mean, sd).area_to_left(x));
    transcribed.add("area", transcribed_area(mean, sd, x));
    agree = report_differences(p.name, library, transcribed, std::cerr) && agree;
    file << "\ncase " << p.name << '\n';
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
