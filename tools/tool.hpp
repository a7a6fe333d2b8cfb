// SPDX-License-Identifier: MIT
// Shared pieces of the command-line tool: results, input reading, the subcommands.
#pragma once

#include <functional>
#include <iosfwd>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "structmath/io/molecule.hpp"

namespace structmath::tool {

using Json = nlohmann::ordered_json;

/// Bad input from the user's files or values: exit status 1, one line on stderr.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The path of a bundled sample file (installed data first, then the source tree).
std::string bundled(std::string const& file);

/// Every molecule in an .xyz, .sdf or .mol file.
std::vector<io::Molecule> read_molecules(std::string const& path);
/// The first molecule of a file.
io::Molecule read_molecule(std::string const& path);

/// Atom selections counted from 1: "1,3,5-9"; throws InputError for text that is not
/// such a list or names an atom beyond `natoms`. Returns indices counted from 0.
std::vector<int> parse_atom_list(std::string const& text, int natoms);

/// An atom label for reports: element and number from 1, e.g. "N7".
std::string atom_label(io::Molecule const& molecule, int index);

/// One subcommand's work: compute a JSON result, then print it for people.
struct Outcome {
  Json result;
  std::function<void(Json const&, std::ostream&)> print;
};

// The subcommands. Each takes its parsed arguments and returns its outcome; they
// throw InputError (or a library exception) for bad input.
struct VolumeArgs {
  std::string file;
  unsigned int density = 1000;
  int seed1 = 1802;
  int seed2 = 9373;
  bool progress = false;
};
Outcome run_volume(VolumeArgs const& args);

struct OverlayArgs {
  std::string target;
  std::string moving;
  bool mirror = false;
  std::string output;
};
Outcome run_overlay(OverlayArgs const& args);

struct PlaneArgs {
  std::string file;
  std::string atoms;
};
Outcome run_plane(PlaneArgs const& args);

struct MeasureArgs {
  std::string file;
  std::vector<std::string> groups;
};
Outcome run_measure(MeasureArgs const& args);

struct ContourArgs {
  std::string file;
  double level = 0.05;
  bool tetrahedra = false;
  std::string output;
};
Outcome run_contour(ContourArgs const& args);

struct McsArgs {
  std::string first;
  std::string second;
  bool connected = false;
  bool hydrogens = false;
};
Outcome run_mcs(McsArgs const& args);

struct MatchArgs {
  std::string pattern;
  std::string target;
  bool hydrogens = false;
};
Outcome run_match(MatchArgs const& args);

}  // namespace structmath::tool
