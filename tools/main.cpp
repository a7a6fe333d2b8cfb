// SPDX-License-Identifier: MIT
// The structmath command-line tool: subcommands over the library for scientists' files.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <functional>
#include <iostream>
#include <sstream>

#include "tool.hpp"

namespace {

using structmath::tool::Json;
using structmath::tool::Outcome;

// Exit statuses: 0 success, 1 bad input, 2 bad usage.
constexpr int bad_input = 1;
constexpr int bad_usage = 2;

// Each report is formatted on a fresh stream, so no report inherits another's
// stream settings.
std::string text_of(Outcome const& outcome) {
  std::ostringstream out;
  outcome.print(outcome.result, out);
  return out.str();
}

void emit(Outcome const& outcome, bool json) {
  if (json) {
    std::cout << outcome.result.dump(2) << '\n';
  } else {
    std::cout << text_of(outcome);
  }
}

// Adds --json to a subcommand and makes it run `work` when chosen.
void on_run(CLI::App* sub, bool& json, std::function<Outcome()> work) {
  sub->add_flag("--json", json, "Print the result as JSON");
  sub->callback([sub, &json, work = std::move(work)] {
    (void)sub;
    emit(work(), json);
  });
}

int run(int argc, char** argv) {
  CLI::App app{
      "structmath: geometry, volumes, superposition, contouring and graph matching of "
      "molecules and grids.\nEvery subcommand uses the bundled sample data when given no file.",
      "structmath"};
  app.require_subcommand(1);
  bool json = false;

  structmath::tool::VolumeArgs volume;
  volume.progress = ::isatty(::fileno(stderr)) != 0;
  auto* v = app.add_subcommand("volume", "Van der Waals volume of a molecule by Monte Carlo");
  v->add_option("file", volume.file, "Molecule (.xyz, .sdf, .mol); default: bundled caffeine");
  v->add_option("--density", volume.density, "Samples per cubic angstrom")
      ->capture_default_str()
      ->check(CLI::Range(1U, 1000000000U));
  v->add_option(
       "--seed",
       [&](CLI::results_t const& r) {
         volume.seed1 = std::stoi(r.at(0));
         volume.seed2 = std::stoi(r.at(1));
         return true;
       },
       "Two generator seeds, 0-31328 and 0-30081 (default 1802 9373)")
      ->expected(2)
      ->type_name("S1 S2")
      ->check(CLI::Number);
  on_run(v, json, [&] { return structmath::tool::run_volume(volume); });

  structmath::tool::OverlayArgs overlay;
  auto* o = app.add_subcommand("overlay", "Least-squares superposition of B onto A");
  o->add_option("A", overlay.target,
                "Target molecule (or a file of two frames); default: bundled butane conformers");
  o->add_option("B", overlay.moving, "Moving molecule, atoms in the order of A");
  o->add_flag("--mirror", overlay.mirror, "Allow a mirror-image fit");
  o->add_option("-o,--output", overlay.output, "Write the moved B as XYZ");
  on_run(o, json, [&] { return structmath::tool::run_overlay(overlay); });

  structmath::tool::PlaneArgs plane;
  auto* p = app.add_subcommand("plane", "Least-squares plane and signed distances");
  p->add_option("file", plane.file, "Molecule; default: bundled caffeine");
  p->add_option("--atoms", plane.atoms, "Atoms to fit, from 1, e.g. 1-9,12 (default: all)");
  on_run(p, json, [&] { return structmath::tool::run_plane(plane); });

  structmath::tool::MeasureArgs measure;
  auto* m = app.add_subcommand("measure", "Distances, angles and torsions");
  m->add_option("file", measure.file, "Molecule; default: bundled butane (anti)");
  m->add_option("atoms", measure.groups,
                "Atom groups from 1: 1-2 (distance), 1-2-3 (angle), 1-2-3-4 (torsion)");
  on_run(m, json, [&] { return structmath::tool::run_measure(measure); });

  structmath::tool::ContourArgs contour;
  auto* c = app.add_subcommand("contour", "Iso-surface of a cube file");
  c->add_option("cube", contour.file, "Cube file; default: bundled water density");
  c->add_option("--level", contour.level, "Iso-value")->capture_default_str();
  c->add_flag("--tetrahedra", contour.tetrahedra, "Split cells into six tetrahedra");
  c->add_option("-o,--output", contour.output, "Write the surface (.obj, .ply, .ascii.ply)");
  on_run(c, json, [&] { return structmath::tool::run_contour(contour); });

  structmath::tool::McsArgs mcs;
  auto* s = app.add_subcommand("mcs", "Maximum common substructure of two molecules");
  s->add_option("A", mcs.first, "Molfile or SD file; default: bundled caffeine");
  s->add_option("B", mcs.second, "Molfile or SD file; default: bundled theobromine");
  s->add_flag("--connected", mcs.connected, "Only a connected common substructure");
  s->add_flag("--hydrogens", mcs.hydrogens, "Include hydrogen atoms");
  on_run(s, json, [&] { return structmath::tool::run_mcs(mcs); });

  structmath::tool::MatchArgs match;
  auto* u = app.add_subcommand("match", "Substructure search, atoms matched by element");
  u->add_option("PATTERN", match.pattern, "Pattern molfile; default: bundled imidazole ring");
  u->add_option("TARGET", match.target, "Target molfile; default: bundled caffeine");
  u->add_flag("--hydrogens", match.hydrogens, "Include hydrogen atoms");
  on_run(u, json, [&] { return structmath::tool::run_match(match); });

  auto* t = app.add_subcommand("tour", "Run every subcommand on the bundled data");
  t->add_flag("--json", json, "Print the results as JSON");
  t->callback([&] {
    using namespace structmath::tool;
    std::vector<std::pair<char const*, std::function<Outcome()>>> const steps = {
        {"volume", [] { return run_volume({}); }},   {"overlay", [] { return run_overlay({}); }},
        {"plane", [] { return run_plane({}); }},     {"measure", [] { return run_measure({}); }},
        {"contour", [] { return run_contour({}); }}, {"mcs", [] { return run_mcs({}); }},
        {"match", [] { return run_match({}); }}};
    Json all;
    for (auto const& [name, step] : steps) {
      Outcome const outcome = step();
      if (json) {
        all[name] = outcome.result;
      } else {
        std::cout << "== structmath " << name << '\n' << text_of(outcome) << '\n';
      }
    }
    if (json) std::cout << all.dump(2) << '\n';
  });

  if (argc > 1 && argv[1][0] != '-') {
    try {
      (void)app.get_subcommand(argv[1]);
    } catch (CLI::OptionNotFound const&) {
      std::cerr << "structmath: unknown subcommand '" << argv[1]
                << "'\nRun with --help for usage.\n";
      return bad_usage;
    }
  }
  try {
    app.parse(argc, argv);
  } catch (CLI::CallForHelp const& e) {
    return app.exit(e);
  } catch (CLI::CallForAllHelp const& e) {
    return app.exit(e);
  } catch (CLI::CallForVersion const& e) {
    return app.exit(e);
  } catch (CLI::ParseError const& e) {
    std::cerr << "structmath: " << e.what() << "\nRun with --help for usage.\n";
    return bad_usage;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (std::exception const& e) {
    std::cerr << "structmath: " << e.what() << '\n';
    return bad_input;
  }
}
