// SPDX-License-Identifier: MIT
// `structmath volume`: Monte Carlo volume of the union of the atoms' van der Waals spheres.
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <iomanip>
#include <iostream>

#include "structmath/io/elements.hpp"
#include "structmath/solids/box.hpp"
#include "structmath/solids/random_number_generator.hpp"
#include "structmath/solids/sphere.hpp"
#include "structmath/solids/stochastic_volume_calculator.hpp"
#include "structmath/solids/union_solid.hpp"
#include "tool.hpp"

namespace structmath::tool {

namespace {

// Runs above this many samples are drawn in batches, so that progress can be shown.
constexpr double batch_samples = 2.0e6;

// The calculator's own rule for the number of samples of one run.
double samples_for(unsigned int density, double box_volume) {
  return box_volume > 1.0 ? std::floor(density * box_volume) : density;
}

}  // namespace

Outcome run_volume(VolumeArgs const& args) {
  std::string const file = args.file.empty() ? bundled("caffeine.xyz") : args.file;
  io::Molecule const molecule = read_molecule(file);
  if (molecule.atoms.empty()) throw InputError(file + ": the molecule has no atoms");
  if (args.density == 0) throw InputError("--density must be at least 1 sample per A^3");

  CompositeSolid::SolidSet members;
  for (io::Atom const& atom : molecule.atoms) {
    auto const radius = io::van_der_waals_radius(io::atomic_number(atom.element));
    if (!radius) throw InputError(file + ": no van der Waals radius for element " + atom.element);
    members.insert(make_handle<Sphere>(atom.position, *radius));
  }
  auto const spheres = make_handle<UnionSolid>(members);
  auto const generator = make_handle<RandomNumberGenerator>(args.seed1, args.seed2);
  double const box_volume = spheres->bounding_box()->volume();

  // One run, or equal batches of at most about batch_samples each.
  double const requested = samples_for(args.density, box_volume);
  unsigned int const batches =
      requested > 2 * batch_samples
          ? static_cast<unsigned int>(std::min(1000.0, std::ceil(requested / batch_samples)))
          : 1U;
  unsigned int const batch_density = std::max(1U, args.density / batches);
  double const per_batch = samples_for(batch_density, box_volume);
  double hits = 0.0;
  for (unsigned int b = 0; b < batches; ++b) {
    double const v =
        StochasticVolumeCalculator::get_solid_volume(*spheres, batch_density, generator);
    hits += std::round(v * per_batch / box_volume);
    if (args.progress) {
      std::fprintf(stderr, "\rvolume: %3u%% of %.0f samples", (b + 1) * 100 / batches,
                   per_batch * batches);
      if (b + 1 == batches) std::fputc('\n', stderr);
    }
  }
  double const samples = per_batch * batches;
  double const fraction = hits / samples;
  double const volume = fraction * box_volume;
  double const error = box_volume * std::sqrt(fraction * (1.0 - fraction) / samples);

  Json result;
  result["file"] = file;
  result["atoms"] = molecule.atoms.size();
  result["radii"] = "Bondi (1964), Mantina et al. (2009)";
  result["density"] = batch_density;
  result["seeds"] = {args.seed1, args.seed2};
  result["box_volume"] = box_volume;
  result["samples"] = samples;
  result["volume"] = volume;
  result["standard_error"] = error;
  return {result, [](Json const& r, std::ostream& out) {
            out << std::fixed << std::setprecision(2);
            out << r["file"].get<std::string>() << ": " << r["atoms"].get<int>()
                << " atoms as van der Waals spheres\n";
            out << "volume: " << r["volume"].get<double>() << " A^3 +- "
                << r["standard_error"].get<double>() << " (standard error)\n";
            out << "samples: " << std::setprecision(0) << r["samples"].get<double>()
                << " in a bounding box of " << std::setprecision(2) << r["box_volume"].get<double>()
                << " A^3\n";
          }};
}

}  // namespace structmath::tool
