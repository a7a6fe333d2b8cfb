// SPDX-License-Identifier: MIT
// The structmath command-line tool: subcommands over the library for scientists' files.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <climits>
#include <cmath>
#include <cstdio>
#include <functional>
#include <iostream>

#include "structmath/io/parse_error.hpp"
#include "structmath/io/surface_writers.hpp"
#include "tool.hpp"

#ifndef STRUCTMATH_VERSION
#define STRUCTMATH_VERSION "unknown"
#endif

namespace {

using namespace structmath::tool;

// Exit statuses: 0 success, 1 bad input, 2 bad usage.
constexpr int bad_input = 1;
constexpr int bad_usage = 2;

bool ends_with_lower(std::string const& text, std::string const& suffix) {
  if (text.size() < suffix.size()) return false;
  for (std::size_t i = 0; i < suffix.size(); ++i) {
    char const c = text[text.size() - suffix.size() + i];
    if (std::tolower(static_cast<unsigned char>(c)) != suffix[i]) return false;
  }
  return true;
}

CLI::Validator const finite_number(
    [](std::string& text) {
      double value = 0.0;
      try {
        value = std::stod(text);
      } catch (std::exception const&) {
        return std::string("expected a number, found '" + text + "'");
      }
      return std::isfinite(value) ? std::string()
                                  : "expected a finite number, found '" + text + "'";
    },
    "NUMBER");

CLI::Validator const molecule_output(
    [](std::string& path) {
      return ends_with_lower(path, ".xyz") || ends_with_lower(path, ".sdf")
                 ? std::string()
                 : "'" + path + "' must end in .xyz or .sdf";
    },
    "OUT.xyz|OUT.sdf");

CLI::Validator const surface_output(
    [](std::string& path) {
      return structmath::io::surface_format(path)
                 ? std::string()
                 : "'" + path + "' must end in .obj, .ply or .ascii.ply";
    },
    "OUT.obj|OUT.ply|OUT.ascii.ply");

void add_format(CLI::App* sub, std::string& format) {
  sub->add_option("--format", format,
                  "Format of standard input ('-') and of files without a known extension")
      ->check(CLI::IsMember({"xyz", "sdf", "mol"}));
}

CLI::Option* add_record(CLI::App* sub, char const* name, int& record, char const* what) {
  return sub->add_option(name, record, what)->check(CLI::Range(1, INT_MAX))->type_name("N");
}

// The record a subcommand reads when the user names a file, or the bundled default.
MoleculeInput input_or(std::string const& path, std::string const& format, int record,
                       char const* sample, int sample_record = 1) {
  if (path.empty()) return {bundled(sample), "", sample_record};
  return {path, format, record};
}

// The name of an input in reports.
std::string shown(MoleculeInput const& input) { return input.path == "-" ? "<stdin>" : input.path; }

int print(Outcome const& outcome, bool json) {
  emit(outcome, json, std::cout);
  return 0;
}

int run(int argc, char** argv) {
  CLI::App app{
      "structmath: geometry, volumes, superposition, contouring and graph matching of "
      "molecules and grids.\nEvery subcommand uses the bundled sample data when given no file; "
      "'-' reads standard input (with --format).",
      "structmath"};
  app.set_version_flag("--version", std::string("structmath ") + STRUCTMATH_VERSION);
  app.require_subcommand(0, 1);
  bool json = false;
  std::function<int()> action;
  auto on_run = [&](CLI::App* sub, std::function<int()> work) {
    sub->add_flag("--json", json, "Print the result as JSON (one object per line with --all)");
    sub->callback([&action, work = std::move(work)] { action = work; });
  };

  // volume
  std::string volume_file, volume_format;
  int volume_record = 0;
  bool volume_all = false;
  VolumeArgs volume_args;
  volume_args.progress = ::isatty(::fileno(stderr)) != 0;
  auto* v = app.add_subcommand("volume", "Van der Waals volume of a molecule by Monte Carlo");
  v->add_option("file", volume_file, "Molecule (.xyz, .sdf, .sd, .mol); default: bundled caffeine");
  add_format(v, volume_format);
  auto* v_record = add_record(v, "--record", volume_record, "Record of the file, from 1");
  v->add_flag("--all", volume_all, "One report per record of the file")->excludes(v_record);
  v->add_option("--density", volume_args.density, "Samples per cubic angstrom")
      ->capture_default_str()
      ->check(CLI::Range(1U, 1000000000U));
  v->add_option(
       "--seed",
       [&](CLI::results_t const& r) {
         long const s1 = std::stol(r.at(0));
         long const s2 = std::stol(r.at(1));
         if (s1 < 0 || s1 > 31328 || s2 < 0 || s2 > 30081) {
           throw CLI::ValidationError("--seed",
                                      "the first seed must be in 0-31328 and the "
                                      "second in 0-30081, found " +
                                          r.at(0) + " " + r.at(1));
         }
         volume_args.seed1 = static_cast<int>(s1);
         volume_args.seed2 = static_cast<int>(s2);
         return true;
       },
       "Two generator seeds, 0-31328 and 0-30081 (default 1802 9373)")
      ->expected(2)
      ->type_name("S1 S2")
      ->check(CLI::Number);
  on_run(v, [&] {
    MoleculeInput const in = input_or(volume_file, volume_format, volume_record, "caffeine.xyz");
    auto const compute = [&](Record const& r, std::string const& file) {
      return volume(r, file, volume_args);
    };
    if (volume_all) return run_batch(in, json, compute);
    return print(compute(read_record(in), shown(in)), json);
  });

  // overlay
  std::string overlay_a, overlay_b, overlay_format;
  int overlay_record_a = 0, overlay_record_b = 0;
  OverlayArgs overlay_args;
  auto* o = app.add_subcommand("overlay", "Least-squares superposition of B onto A");
  o->add_option("A", overlay_a,
                "Target molecule (or a file whose second record is fitted onto its first); "
                "default: bundled butane conformers");
  o->add_option("B", overlay_b, "Moving molecule, its atoms in the order of A's");
  add_format(o, overlay_format);
  add_record(o, "--record-a", overlay_record_a, "Record of A (default 1)");
  add_record(o, "--record-b", overlay_record_b,
             "Record of B (default 1, or 2 when B is not given)");
  o->add_flag("--mirror", overlay_args.mirror, "Allow a mirror-image fit");
  o->add_flag("--ignore-elements", overlay_args.ignore_elements,
              "Pair atoms by order even where their elements differ");
  o->add_option("-o,--output", overlay_args.output,
                "Write the moved B (.xyz, or .sdf with B's bonds)")
      ->check(molecule_output);
  on_run(o, [&] {
    std::string const a = overlay_a.empty() ? bundled("butane_conformers.xyz") : overlay_a;
    // One file: its second record (or --record-b) is fitted onto its first (or --record-a).
    bool const one_file = overlay_b.empty();
    if (one_file && a == "-") throw UsageError("overlay of standard input needs a second file, B");
    MoleculeInput const target{a, overlay_format,
                               one_file && overlay_record_a == 0 ? 1 : overlay_record_a};
    MoleculeInput const moving{one_file ? a : overlay_b, overlay_format,
                               one_file && overlay_record_b == 0 ? 2 : overlay_record_b};
    Record const first = read_record(target);
    Record second;
    try {
      second = read_record(moving);
    } catch (InputError const&) {
      if (!one_file || overlay_record_b != 0) throw;
      throw InputError(a +
                       " holds one record; give B, or a file of two records to fit the "
                       "second onto the first");
    }
    return print(overlay(first, second, shown(target), shown(moving), overlay_args), json);
  });

  // plane
  std::string plane_file, plane_format, plane_atoms;
  int plane_record = 0;
  bool plane_all = false;
  auto* p = app.add_subcommand("plane", "Least-squares plane and signed distances");
  p->add_option("file", plane_file, "Molecule; default: bundled caffeine");
  add_format(p, plane_format);
  auto* p_record = add_record(p, "--record", plane_record, "Record of the file, from 1");
  p->add_flag("--all", plane_all, "One report per record of the file")->excludes(p_record);
  p->add_option("--atoms", plane_atoms, "Atoms to fit, from 1, e.g. 1-9,12 (default: all)");
  on_run(p, [&] {
    MoleculeInput const in = input_or(plane_file, plane_format, plane_record, "caffeine.xyz");
    auto const compute = [&](Record const& r, std::string const& file) {
      return plane(r, file, plane_atoms);
    };
    if (plane_all) return run_batch(in, json, compute);
    return print(compute(read_record(in), shown(in)), json);
  });

  // measure
  std::string measure_file, measure_format;
  std::vector<std::string> measure_groups;
  int measure_record = 0;
  bool measure_all = false;
  auto* m = app.add_subcommand("measure", "Distances, angles and torsions");
  m->add_option("file", measure_file, "Molecule; default: bundled butane (anti)");
  m->add_option("atoms", measure_groups,
                "Atom groups from 1: 1-2 (distance), 1-2-3 (angle), 1-2-3-4 (torsion); each "
                "number may follow its element, as in C1-C2");
  add_format(m, measure_format);
  auto* m_record = add_record(m, "--record", measure_record, "Record of the file, from 1");
  m->add_flag("--all", measure_all, "One report per record of the file")->excludes(m_record);
  on_run(m, [&] {
    MoleculeInput const in =
        input_or(measure_file, measure_format, measure_record, "butane_conformers.xyz");
    std::vector<std::string> groups = measure_groups;
    if (groups.empty()) groups = {"1-2", "1-2-3", "1-2-3-4"};
    auto const compute = [&](Record const& r, std::string const& file) {
      return measure(r, file, groups);
    };
    if (measure_all) return run_batch(in, json, compute);
    return print(compute(read_record(in), shown(in)), json);
  });

  // contour
  ContourArgs contour_args;
  auto* c = app.add_subcommand("contour", "Iso-surface of a cube file");
  c->add_option("cube", contour_args.file,
                "Cube file ('-' for standard input); default: bundled water density");
  c->add_option("--level", contour_args.level, "Iso-value, in the units of the file's values")
      ->capture_default_str()
      ->check(finite_number);
  c->add_flag("--tetrahedra", contour_args.tetrahedra, "Split cells into six tetrahedra");
  c->add_option("-o,--output", contour_args.output, "Write the surface (.obj, .ply, .ascii.ply)")
      ->check(surface_output);
  on_run(c, [&] { return print(contour(contour_args), json); });

  // mcs
  std::string mcs_a, mcs_b, mcs_format;
  int mcs_record_a = 0, mcs_record_b = 0;
  McsArgs mcs_args;
  auto* s = app.add_subcommand(
      "mcs",
      "Maximum common substructure of two molecules: the largest common induced subgraph of "
      "their bond graphs (a set of atoms of each, paired one to one, such that two atoms are "
      "bonded in one molecule exactly when their partners are bonded in the other), atoms "
      "paired only with atoms of the same element, bond orders ignored (unless "
      "--bond-orders), hydrogens left out unless asked. The common part may fall apart into "
      "pieces; --connected asks for one connected piece.");
  s->add_option("A", mcs_a, "Molfile or SD file; default: bundled caffeine");
  s->add_option("B", mcs_b, "Molfile or SD file; default: bundled theobromine");
  add_format(s, mcs_format);
  add_record(s, "--record-a", mcs_record_a, "Record of A, from 1");
  add_record(s, "--record-b", mcs_record_b, "Record of B, from 1");
  s->add_flag("--connected", mcs_args.connected, "Only a connected common substructure");
  s->add_flag("--hydrogens", mcs_args.hydrogens, "Include hydrogen atoms");
  s->add_flag("--bond-orders", mcs_args.bond_orders,
              "Pair bonds only with bonds of the same order (aromatic apart)");
  s->add_option("--timeout", mcs_args.timeout,
                "Seconds of search; when they run out the best match found is printed, marked "
                "\"not proven maximum\"")
      ->capture_default_str()
      ->check(CLI::Range(0.0, 1e6));
  on_run(s, [&] {
    MoleculeInput const a = input_or(mcs_a, mcs_format, mcs_record_a, "caffeine.sdf");
    MoleculeInput const b = input_or(mcs_b, mcs_format, mcs_record_b, "theobromine.sdf");
    return print(mcs(read_record(a), read_record(b), shown(a), shown(b), mcs_args), json);
  });

  // match
  std::string match_pattern, match_target, match_format;
  int match_pattern_record = 0, match_record = 0;
  bool match_all = false, match_hydrogens = false;
  auto* u = app.add_subcommand("match", "Substructure search, atoms matched by element");
  u->add_option("PATTERN", match_pattern, "Pattern molfile; default: bundled imidazole ring");
  u->add_option("TARGET", match_target, "Target molfile or SD file; default: bundled caffeine");
  add_format(u, match_format);
  add_record(u, "--pattern-record", match_pattern_record, "Record of the pattern, from 1");
  auto* u_record = add_record(u, "--record", match_record, "Record of the target, from 1");
  u->add_flag("--all", match_all,
              "Search every record of the target file: one line per record (its number, hit "
              "or miss, its title)")
      ->excludes(u_record);
  u->add_flag("--hydrogens", match_hydrogens, "Include hydrogen atoms");
  on_run(u, [&] {
    MoleculeInput const pin =
        input_or(match_pattern, match_format, match_pattern_record, "imidazole_ring.sdf");
    MoleculeInput const tin = input_or(match_target, match_format, match_record, "caffeine.sdf");
    Record const pattern = read_record(pin);
    auto const compute = [&](Record const& r, std::string const& file) {
      return match(pattern, r, shown(pin), file, match_hydrogens);
    };
    if (match_all) return run_batch(tin, json, compute);
    return print(compute(read_record(tin), shown(tin)), json);
  });

  auto* t = app.add_subcommand("tour", "Run every subcommand on the bundled data");
  on_run(t, [&] {
    auto sample = [](char const* file, int record) -> Record {
      return read_record({bundled(file), "", record});
    };
    std::vector<std::pair<char const*, std::function<Outcome()>>> const steps = {
        {"volume",
         [&] { return volume(sample("caffeine.xyz", 1), bundled("caffeine.xyz"), VolumeArgs{}); }},
        {"overlay",
         [&] {
           std::string const f = bundled("butane_conformers.xyz");
           return overlay(sample("butane_conformers.xyz", 1), sample("butane_conformers.xyz", 2), f,
                          f, OverlayArgs{});
         }},
        {"plane", [&] { return plane(sample("caffeine.xyz", 1), bundled("caffeine.xyz"), ""); }},
        {"measure",
         [&] {
           return measure(sample("butane_conformers.xyz", 1), bundled("butane_conformers.xyz"),
                          {"1-2", "1-2-3", "1-2-3-4"});
         }},
        {"contour", [&] { return contour(ContourArgs{}); }},
        {"mcs",
         [&] {
           return mcs(sample("caffeine.sdf", 1), sample("theobromine.sdf", 1),
                      bundled("caffeine.sdf"), bundled("theobromine.sdf"), McsArgs{});
         }},
        {"match", [&] {
           return match(sample("imidazole_ring.sdf", 1), sample("caffeine.sdf", 1),
                        bundled("imidazole_ring.sdf"), bundled("caffeine.sdf"), false);
         }}};
    Json all;
    for (auto const& [name, step] : steps) {
      Outcome const outcome = step();
      if (json) {
        all[name] = outcome.result;
      } else {
        std::cout << "== structmath " << name << '\n';
        emit(outcome, false, std::cout);
        std::cout << '\n';
      }
    }
    if (json) std::cout << all.dump(2) << '\n';
    return 0;
  });

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
  if (!action) {
    std::cerr << "structmath: a subcommand is required\nRun with --help for usage.\n";
    return bad_usage;
  }
  try {
    return action();
  } catch (UsageError const& e) {
    std::cerr << "structmath: " << e.what() << "\nRun with --help for usage.\n";
    return bad_usage;
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (UsageError const& e) {
    std::cerr << "structmath: " << e.what() << '\n';
    return bad_usage;
  } catch (std::exception const& e) {
    std::cerr << "structmath: " << e.what() << '\n';
    return bad_input;
  }
}
