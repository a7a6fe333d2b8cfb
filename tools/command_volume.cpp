// SPDX-License-Identifier: MIT
// `structmath volume`: Monte Carlo volume of the union of the atoms' van der Waals spheres.
#include <chrono>
#include <cmath>
#include <cstdio>
#include <iomanip>
#include <ostream>

#include "structmath/io/elements.hpp"
#include "structmath/solids/box.hpp"
#include "structmath/solids/random_number_generator.hpp"
#include "structmath/solids/sphere.hpp"
#include "structmath/solids/stochastic_volume_calculator.hpp"
#include "structmath/solids/union_solid.hpp"
#include "tool.hpp"

namespace structmath::tool {

namespace {

// Samples are counted in parts, so that progress can be shown between them: small at
// first, to judge the speed early, then doubled while a part takes under 50 ms.
constexpr unsigned long long first_part = 1ULL << 14;
constexpr unsigned long long largest_part = 1ULL << 24;

// Counts the hits of one run part by part, exactly as one call would count them; shows
// progress on stderr once the run is expected to take more than about a second.
unsigned long long count_with_progress(Solid const& solid, Box const& box,
                                       unsigned long long samples,
                                       RandomNumberGenerator const& generator, bool progress) {
  using Clock = std::chrono::steady_clock;
  auto const start = Clock::now();
  bool shown = false;
  unsigned long long hits = 0;
  unsigned long long part_size = first_part;
  for (unsigned long long done = 0; done < samples;) {
    auto const part_start = Clock::now();
    unsigned long long const part = std::min(part_size, samples - done);
    hits += StochasticVolumeCalculator::count_hits(solid, box, part, generator);
    done += part;
    auto const now = Clock::now();
    if (part_size < largest_part && now - part_start < std::chrono::milliseconds(50)) {
      part_size *= 2;
    }
    if (!progress || done == samples) continue;
    double const elapsed = std::chrono::duration<double>(now - start).count();
    if (!shown && elapsed * static_cast<double>(samples) / static_cast<double>(done) < 1.0) {
      continue;
    }
    shown = true;
    std::fprintf(stderr, "\rvolume: %3.0f%% of %llu samples",
                 100.0 * static_cast<double>(done) / static_cast<double>(samples), samples);
    std::fflush(stderr);
  }
  if (shown) std::fprintf(stderr, "\rvolume: 100%% of %llu samples\n", samples);
  return hits;
}

}  // namespace

Outcome volume(Record const& record, std::string const& file, VolumeArgs const& args) {
  io::Molecule const& molecule = record.molecule;
  if (molecule.atoms.empty()) throw InputError("the molecule has no atoms");
  if (args.density == 0) throw UsageError("--density must be at least 1 sample per A^3");

  CompositeSolid::SolidSet members;
  for (std::size_t a = 0; a < molecule.atoms.size(); ++a) {
    io::Atom const& atom = molecule.atoms[a];
    auto const radius = io::van_der_waals_radius(io::atomic_number(atom.element));
    if (!radius) {
      throw InputError("no van der Waals radius for element " + atom.element + " (atom " +
                       std::to_string(a + 1) + ")");
    }
    members.insert(make_handle<Sphere>(atom.position, *radius));
  }
  UnionSolid const spheres(members);
  THandle<Box> const box = spheres.bounding_box();
  double const box_volume = box->volume();
  unsigned long long const samples =
      StochasticVolumeCalculator::sample_count(args.density, box_volume);
  if (static_cast<double>(samples) > max_volume_samples) {
    throw UsageError("--density " + std::to_string(args.density) + " would take " +
                     std::to_string(samples) + " samples for this molecule (" +
                     std::to_string(static_cast<long long>(std::ceil(box_volume))) +
                     " A^3 box); at most 1e10 are drawn, lower the density");
  }
  RandomNumberGenerator const generator(args.seed1, args.seed2);
  unsigned long long const hits =
      count_with_progress(spheres, *box, samples, generator, args.progress);
  double const n = static_cast<double>(samples);
  double const fraction = static_cast<double>(hits) / n;
  double const volume = static_cast<double>(hits) * box_volume / n;
  double const error = box_volume * std::sqrt(fraction * (1.0 - fraction) / n);

  Json result = source_fields(file, record);
  result["atoms"] = molecule.atoms.size();
  result["radii"] = "Bondi (1964), Mantina et al. (2009)";
  result["density"] = args.density;
  result["seeds"] = {args.seed1, args.seed2};
  result["box_volume"] = box_volume;
  result["samples"] = samples;
  result["hits"] = hits;
  result["volume"] = volume;
  result["standard_error"] = error;
  return {result, [](Json const& r, std::ostream& out) {
            out << std::fixed << std::setprecision(2);
            out << r["file"].get<std::string>() << ": " << r["atoms"].get<int>()
                << " atoms as van der Waals spheres\n";
            out << "volume: " << r["volume"].get<double>() << " A^3 +- "
                << r["standard_error"].get<double>() << " (standard error)\n";
            out << "samples: " << r["samples"].get<unsigned long long>() << " in a bounding box of "
                << r["box_volume"].get<double>() << " A^3\n";
          }};
}

}  // namespace structmath::tool
