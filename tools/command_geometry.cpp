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
#include "structmath/io/molfile.hpp"
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

bool ends_with_lower(std::string const& path, std::string const& suffix) {
  if (path.size() < suffix.size()) return false;
  for (std::size_t i = 0; i < suffix.size(); ++i) {
    char const c = path[path.size() - suffix.size() + i];
    if (std::tolower(static_cast<unsigned char>(c)) != suffix[i]) return false;
  }
  return true;
}

}  // namespace

Outcome overlay(Record const& target, Record const& moving, std::string const& target_file,
                std::string const& moving_file, OverlayArgs const& args) {
  io::Molecule const& a = target.molecule;
  io::Molecule const& b = moving.molecule;
  if (a.atoms.empty()) throw InputError("the target molecule has no atoms");
  if (a.atoms.size() != b.atoms.size()) {
    throw InputError("the molecules have " + std::to_string(a.atoms.size()) + " and " +
                     std::to_string(b.atoms.size()) +
                     " atoms; overlay pairs atom i of one with atom i of the other");
  }
  if (!args.ignore_elements) {
    for (std::size_t i = 0; i < a.atoms.size(); ++i) {
      if (a.atoms[i].element != b.atoms[i].element) {
        throw InputError("atom " + std::to_string(i + 1) + " is " + a.atoms[i].element +
                         " in the target but " + b.atoms[i].element +
                         " in the moving molecule; overlay pairs atoms by their order "
                         "(--ignore-elements pairs them anyway)");
      }
    }
  }
  OverlayPoints fit(a.positions(), args.mirror);
  fit.fit(b.positions());
  Transformation const t = *fit.transformation();

  if (!args.output.empty()) {
    io::Molecule moved = b;
    for (io::Atom& atom : moved.atoms) atom.position = t * atom.position;
    moved.title = b.title + " (overlaid)";
    if (ends_with_lower(args.output, ".sdf")) {
      io::write_sdf(args.output, {moved});
    } else {
      io::write_xyz(args.output, {moved});
    }
  }
  Json result;
  result["target"] = source_fields(target_file, target);
  result["moving"] = source_fields(moving_file, moving);
  result["atoms"] = a.atoms.size();
  result["mirror_allowed"] = args.mirror;
  result["rms"] = fit.rms();
  result["maximum_deviation"] = fit.maximum_deviation();
  result["rotation"] = to_json(t.rotation());
  result["translation"] = to_json(t.translation());
  result["determinant"] = Determinant(t.rotation());
  if (!args.output.empty()) result["output"] = args.output;
  return {result, [](Json const& r, std::ostream& out) {
            out << "overlay of '" << r["moving"]["title"].get<std::string>() << "' onto '"
                << r["target"]["title"].get<std::string>() << "', " << r["atoms"].get<int>()
                << " atoms\n"
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

Outcome plane(Record const& record, std::string const& file, std::string const& atom_list) {
  io::Molecule const& molecule = record.molecule;
  int const natoms = static_cast<int>(molecule.atoms.size());
  std::vector<int> atoms;
  if (atom_list.empty()) {
    for (int i = 0; i < natoms; ++i) atoms.push_back(i);
  } else {
    atoms = parse_atom_list(atom_list, natoms);
  }
  if (atoms.size() < 3) throw InputError("a plane needs at least 3 atoms");
  std::vector<Point> points;
  for (int a : atoms) points.push_back(molecule.atoms[static_cast<std::size_t>(a)].position);
  Plane const fit(points);

  Json result = source_fields(file, record);
  result["fitted_atoms"] = atoms.size();
  result["normal"] = to_json(fit.normal());
  result["distance_from_origin"] = fit.distance();
  Json distances = Json::array();
  double rms = 0.0;
  for (int a = 0; a < natoms; ++a) {
    // n.x - d: positive on the side the normal points to.
    double const d = -fit.signed_distance(molecule.atoms[static_cast<std::size_t>(a)].position);
    bool const fitted = std::find(atoms.begin(), atoms.end(), a) != atoms.end();
    if (fitted) rms += d * d;
    distances.push_back({{"atom", atom_label(molecule, a)}, {"fitted", fitted}, {"distance", d}});
  }
  result["rms_distance"] = std::sqrt(rms / static_cast<double>(atoms.size()));
  result["distances"] = distances;
  return {result, [](Json const& r, std::ostream& out) {
            out << std::fixed << std::setprecision(4) << r["file"].get<std::string>()
                << ": least-squares plane n.x = d through " << r["fitted_atoms"].get<int>()
                << " atoms\nnormal n:";
            print_vector(out, r["normal"]);
            out << "\ndistance d from the origin: " << r["distance_from_origin"].get<double>()
                << " A\nrms distance of the fitted atoms: " << r["rms_distance"].get<double>()
                << " A\nsigned distances n.x - d (A):\n";
            for (auto const& d : r["distances"]) {
              out << "  " << std::left << std::setw(6) << d["atom"].get<std::string>() << std::right
                  << std::setw(10) << d["distance"].get<double>()
                  << (d["fitted"].get<bool>() ? "" : "  (not fitted)") << '\n';
            }
          }};
}

Outcome measure(Record const& record, std::string const& file,
                std::vector<std::string> const& groups) {
  io::Molecule const& molecule = record.molecule;
  int const natoms = static_cast<int>(molecule.atoms.size());

  Json measurements = Json::array();
  for (std::string const& group : groups) {
    auto fail = [&](std::string const& problem) -> void {
      throw InputError("measure: '" + group + "': " + problem);
    };
    // "a-b", "a-b-c" or "a-b-c-d": atoms counted from 1, each optionally after its
    // element ("7" or "N7").
    std::vector<int> atoms;
    std::stringstream parts(group);
    std::string part;
    while (std::getline(parts, part, '-')) {
      std::size_t letters = 0;
      while (letters < part.size() && std::isalpha(static_cast<unsigned char>(part[letters]))) {
        ++letters;
      }
      std::string const digits = part.substr(letters);
      std::size_t used = 0;
      int number = 0;
      try {
        number = std::stoi(digits, &used);
      } catch (std::exception const&) {
        used = 0;
      }
      if (digits.empty() || used != digits.size()) {
        fail("expected atom numbers from 1 joined by '-', found '" + part + "'");
      }
      if (number < 1 || number > natoms) {
        fail("atom " + digits + " does not exist (the molecule has " + std::to_string(natoms) +
             " atoms)");
      }
      std::string const& element = molecule.atoms[static_cast<std::size_t>(number - 1)].element;
      if (letters > 0 && part.substr(0, letters) != element) {
        fail("atom " + digits + " is " + element + ", not " + part.substr(0, letters));
      }
      if (std::find(atoms.begin(), atoms.end(), number - 1) != atoms.end()) {
        fail("names atom " + digits + " twice");
      }
      atoms.push_back(number - 1);
    }
    if (atoms.size() < 2 || atoms.size() > 4 || group.back() == '-') {
      fail("must name 2, 3 or 4 atoms joined by '-'");
    }
    auto p = [&](std::size_t i) {
      return molecule.atoms[static_cast<std::size_t>(atoms[i])].position;
    };
    Json m;
    std::string labels;
    for (int a : atoms) labels += (labels.empty() ? "" : "-") + atom_label(molecule, a);
    m["atoms"] = labels;
    try {
      if (atoms.size() == 2) {
        m["kind"] = "distance";
        m["value"] = distance(p(0), p(1));
      } else if (atoms.size() == 3) {
        m["kind"] = "angle";
        m["value"] = angle(p(0), p(1), p(2)).degrees();
      } else {
        m["kind"] = "torsion";
        m["value"] = torsion_angle(p(0), p(1), p(2), p(3)).degrees();
      }
    } catch (std::runtime_error const&) {
      fail(atoms.size() == 3 ? "the angle is undefined: two of its atoms coincide"
                             : "the torsion is undefined: three consecutive atoms are in line");
    }
    measurements.push_back(m);
  }
  Json result = source_fields(file, record);
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
