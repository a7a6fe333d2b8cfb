// SPDX-License-Identifier: MIT
// `structmath overlay`, `plane` and `measure`: superposition, planes and internal coordinates.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <iomanip>
#include <ostream>
#include <sstream>

#include "structmath/geometry/geometry_functions.hpp"
#include "structmath/geometry/plane.hpp"
#include "structmath/geometry/transformation.hpp"
#include "structmath/io/xyz.hpp"
#include "structmath/numeric/linear_algebra.hpp"
#include "structmath/superposition/overlay_points.hpp"
#include "tool.hpp"

namespace structmath::tool {

namespace {

Json to_json(Vector3D const& v) { return Json::array({v.x(), v.y(), v.z()}); }

Json to_json(Matrix3D const& m) {
  return Json::array({to_json(Vector3D(m[0][0], m[0][1], m[0][2])),
                      to_json(Vector3D(m[1][0], m[1][1], m[1][2])),
                      to_json(Vector3D(m[2][0], m[2][1], m[2][2]))});
}

void print_vector(std::ostream& out, Json const& v) {
  for (std::size_t i = 0; i < 3; ++i) out << std::setw(11) << v[i].get<double>();
}

// The first two frames of one file, or the first frame of each of two files.
std::pair<io::Molecule, io::Molecule> overlay_inputs(OverlayArgs const& args) {
  if (args.target.empty()) {
    auto const frames = read_molecules(bundled("butane_conformers.xyz"));
    return {frames.at(0), frames.at(1)};
  }
  if (args.moving.empty()) {
    auto const frames = read_molecules(args.target);
    if (frames.size() < 2) {
      throw InputError(args.target + ": one file needs two frames to overlay, found " +
                       std::to_string(frames.size()));
    }
    return {frames[0], frames[1]};
  }
  return {read_molecule(args.target), read_molecule(args.moving)};
}

}  // namespace

Outcome run_overlay(OverlayArgs const& args) {
  auto const [target, moving] = overlay_inputs(args);
  if (target.atoms.empty()) throw InputError("the target molecule has no atoms");
  if (target.atoms.size() != moving.atoms.size()) {
    throw InputError("the molecules have " + std::to_string(target.atoms.size()) + " and " +
                     std::to_string(moving.atoms.size()) +
                     " atoms; overlay pairs atom i of one with atom i of the other");
  }
  OverlayPoints overlay(target.positions(), args.mirror);
  overlay.fit(moving.positions());
  Transformation const t = *overlay.transformation();

  if (!args.output.empty()) {
    io::Molecule moved = moving;
    for (io::Atom& atom : moved.atoms) atom.position = t * atom.position;
    moved.title = moving.title + " (overlaid)";
    io::write_xyz(args.output, {moved});
  }
  Json result;
  result["target"] = target.title;
  result["moving"] = moving.title;
  result["atoms"] = target.atoms.size();
  result["mirror_allowed"] = args.mirror;
  result["rms"] = overlay.rms();
  result["maximum_deviation"] = overlay.maximum_deviation();
  result["rotation"] = to_json(t.rotation());
  result["translation"] = to_json(t.translation());
  result["determinant"] = Determinant(t.rotation());
  if (!args.output.empty()) result["output"] = args.output;
  return {result, [](Json const& r, std::ostream& out) {
            out << "overlay of '" << r["moving"].get<std::string>() << "' onto '"
                << r["target"].get<std::string>() << "', " << r["atoms"].get<int>() << " atoms\n"
                << std::fixed << std::setprecision(4) << "rms deviation: " << r["rms"].get<double>()
                << " A\nmaximum deviation: " << r["maximum_deviation"].get<double>()
                << " A\nrotation (x' = R x + t):\n";
            for (std::size_t i = 0; i < 3; ++i) {
              print_vector(out, r["rotation"][i]);
              out << '\n';
            }
            out << "translation:\n";
            print_vector(out, r["translation"]);
            out << '\n';
            if (r["determinant"].get<double>() < 0) out << "the fit is a mirror image\n";
            if (r.contains("output")) {
              out << "moved coordinates written to " << r["output"].get<std::string>() << '\n';
            }
          }};
}

Outcome run_plane(PlaneArgs const& args) {
  std::string const file = args.file.empty() ? bundled("caffeine.xyz") : args.file;
  io::Molecule const molecule = read_molecule(file);
  int const natoms = static_cast<int>(molecule.atoms.size());
  std::vector<int> atoms;
  if (args.atoms.empty()) {
    for (int i = 0; i < natoms; ++i) atoms.push_back(i);
  } else {
    atoms = parse_atom_list(args.atoms, natoms);
  }
  if (atoms.size() < 3) throw InputError("a plane needs at least 3 atoms");
  std::vector<Point> points;
  for (int a : atoms) points.push_back(molecule.atoms[static_cast<std::size_t>(a)].position);
  Plane const plane(points);

  Json result;
  result["file"] = file;
  result["fitted_atoms"] = atoms.size();
  result["normal"] = to_json(plane.normal());
  result["distance_from_origin"] = plane.distance();
  Json distances = Json::array();
  double rms = 0.0;
  for (int a = 0; a < natoms; ++a) {
    double const d = plane.signed_distance(molecule.atoms[static_cast<std::size_t>(a)].position);
    bool const fitted = std::find(atoms.begin(), atoms.end(), a) != atoms.end();
    if (fitted) rms += d * d;
    distances.push_back({{"atom", atom_label(molecule, a)}, {"fitted", fitted}, {"distance", d}});
  }
  result["rms_distance"] = std::sqrt(rms / static_cast<double>(atoms.size()));
  result["distances"] = distances;
  return {result, [](Json const& r, std::ostream& out) {
            out << std::fixed << std::setprecision(4) << r["file"].get<std::string>()
                << ": least-squares plane through " << r["fitted_atoms"].get<int>()
                << " atoms\nnormal:";
            print_vector(out, r["normal"]);
            out << "\ndistance from the origin: " << r["distance_from_origin"].get<double>()
                << " A\nrms distance of the fitted atoms: " << r["rms_distance"].get<double>()
                << " A\nsigned distances (A):\n";
            for (auto const& d : r["distances"]) {
              out << "  " << std::left << std::setw(6) << d["atom"].get<std::string>() << std::right
                  << std::setw(10) << d["distance"].get<double>()
                  << (d["fitted"].get<bool>() ? "" : "  (not fitted)") << '\n';
            }
          }};
}

Outcome run_measure(MeasureArgs const& args) {
  std::string const file = args.file.empty() ? bundled("butane_conformers.xyz") : args.file;
  io::Molecule const molecule = read_molecule(file);
  std::vector<std::string> groups = args.groups;
  if (groups.empty()) groups = {"1-2", "1-2-3", "1-2-3-4"};
  int const natoms = static_cast<int>(molecule.atoms.size());

  Json measurements = Json::array();
  for (std::string const& group : groups) {
    // "a-b", "a-b-c" or "a-b-c-d": atoms counted from 1.
    std::vector<int> atoms;
    std::stringstream parts(group);
    std::string part;
    while (std::getline(parts, part, '-')) {
      // An atom is its number from 1, optionally after its element: "7" or "N7".
      std::size_t digits = 0;
      while (digits < part.size() && std::isalpha(static_cast<unsigned char>(part[digits]))) {
        ++digits;
      }
      int const atom = parse_atom_list(part.substr(digits), natoms).front();
      std::string const& element = molecule.atoms[static_cast<std::size_t>(atom)].element;
      if (digits > 0 && part.substr(0, digits) != element) {
        throw InputError("measure: atom " + part.substr(digits) + " is " + element + ", not " +
                         part.substr(0, digits));
      }
      atoms.push_back(atom);
    }
    auto p = [&](std::size_t i) {
      return molecule.atoms[static_cast<std::size_t>(atoms[i])].position;
    };
    Json m;
    std::string labels;
    for (int a : atoms) labels += (labels.empty() ? "" : "-") + atom_label(molecule, a);
    m["atoms"] = labels;
    if (atoms.size() == 2) {
      m["kind"] = "distance";
      m["value"] = distance(p(0), p(1));
    } else if (atoms.size() == 3) {
      m["kind"] = "angle";
      m["value"] = angle(p(0), p(1), p(2)).degrees();
    } else if (atoms.size() == 4) {
      m["kind"] = "torsion";
      m["value"] = torsion_angle(p(0), p(1), p(2), p(3)).degrees();
    } else {
      throw InputError("measure: '" + group + "' must name 2, 3 or 4 atoms joined by '-'");
    }
    measurements.push_back(m);
  }
  Json result;
  result["file"] = file;
  result["measurements"] = measurements;
  return {result, [](Json const& r, std::ostream& out) {
            out << r["file"].get<std::string>() << ":\n" << std::fixed << std::setprecision(3);
            for (auto const& m : r["measurements"]) {
              std::string const kind = m["kind"].get<std::string>();
              out << "  " << std::left << std::setw(9) << kind << std::setw(16)
                  << m["atoms"].get<std::string>() << std::right << std::setw(10)
                  << m["value"].get<double>() << (kind == "distance" ? " A" : " degrees") << '\n';
            }
          }};
}

}  // namespace structmath::tool
