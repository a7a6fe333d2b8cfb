// SPDX-License-Identifier: MIT
// Shared pieces of the command-line tool: results, input reading, batches, the subcommands.
#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "structmath/io/molecule.hpp"

namespace structmath::io {
class SdfReader;
class XyzReader;
}  // namespace structmath::io

namespace structmath::tool {

using Json = nlohmann::ordered_json;

/// Bad input from the user's files or values: exit status 1, one line on stderr.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A request the tool refuses whatever the files hold: exit status 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The path of a bundled sample file (installed data first, then the source tree).
std::string bundled(std::string const& file);

/// Where molecules come from: a file ("-" for standard input), the format for standard
/// input and for files without a known extension ("xyz", "sdf" or "mol"; empty to go by
/// the extension), and the record wanted (from 1; 0 for the first, with a note on stderr
/// when the file holds more).
struct MoleculeInput {
  std::string path;
  std::string format;
  int record = 0;
};

/// One record of a molecule file.
struct Record {
  int number = 0;          ///< counting from 1
  int first_line = 0;      ///< its first line in the file
  bool has_bonds = false;  ///< whether the format holds bonds (molfiles do, XYZ does not)
  io::Molecule molecule;
};

/// The records of one molecule file, read one at a time.
class MoleculeSource {
 public:
  /// Opens the input: InputError "cannot open FILE: reason" when it cannot be read,
  /// whatever its name; then picks the reader by extension, in any case (.xyz; .sdf,
  /// .sd and .mol), or by the format. Standard input without a format is a UsageError.
  explicit MoleculeSource(MoleculeInput const& input);
  ~MoleculeSource();
  MoleculeSource(MoleculeSource const&) = delete;
  MoleculeSource& operator=(MoleculeSource const&) = delete;

  /// The next record; false at the end. A malformed record throws io::ParseError and
  /// the source goes on after it where the format allows.
  bool next(Record& record);
  /// Passes over the next record; false at the end.
  bool skip();
  /// Records read or skipped so far, malformed ones included.
  int records() const noexcept;
  /// The name used in messages: the path, or "<stdin>".
  std::string const& name() const noexcept { return name_; }

 private:
  std::string name_;
  std::unique_ptr<std::istream> file_;
  std::istream* in_ = nullptr;
  std::unique_ptr<io::SdfReader> sdf_;
  std::unique_ptr<io::XyzReader> xyz_;
};

/// The record the input asks for; InputError when the file holds fewer records.
Record read_record(MoleculeInput const& input);

/// Atom selections counted from 1: "1,3,5-9"; throws InputError for text that is not
/// such a list, names an atom beyond `natoms` or names an atom twice. Returns indices
/// counted from 0, in the order given.
std::vector<int> parse_atom_list(std::string const& text, int natoms);

/// An atom label for reports: element and number from 1, e.g. "N7".
std::string atom_label(io::Molecule const& molecule, int index);

/// One subcommand's work on one input: a JSON result, a text report made from it, and
/// for batches a one-word summary (empty when the full report is printed instead).
struct Outcome {
  using Printer = std::function<void(Json const&, std::ostream&)>;
  using Summary = std::function<std::string(Json const&)>;
  Outcome() = default;
  Outcome(Json r, Printer p, Summary s = nullptr)
      : result(std::move(r)), print(std::move(p)), summary(std::move(s)) {}

  Json result;
  Printer print;
  Summary summary;
};

/// The result's opening fields: the file, the record's number and its title.
Json source_fields(std::string const& file, Record const& record);

/// Prints an outcome as pretty JSON or as its text report.
void emit(Outcome const& outcome, bool json, std::ostream& out);

/// Runs `compute` on every record of the input and prints each outcome as it comes:
/// one compact JSON object per line, or the text report under a "== record N: title"
/// line (or one line "N<TAB>summary<TAB>title" when the outcome has a summary). A record
/// that cannot be read or computed is reported on stderr (and as {"record", "error"} in
/// JSON) and the run goes on. Returns the exit status: 0, or 1 when any record was bad.
/// A UsageError ends the run.
int run_batch(MoleculeInput const& input, bool json,
              std::function<Outcome(Record const&, std::string const&)> const& compute);

// The subcommands. Each computes on what it was given and throws InputError (or a
// library exception) for bad input.
struct VolumeArgs {
  unsigned int density = 1000;
  int seed1 = 1802;
  int seed2 = 9373;
  bool progress = false;
};
/// Runs above this many samples are refused.
constexpr double max_volume_samples = 1e10;
Outcome volume(Record const& record, std::string const& file, VolumeArgs const& args);

struct OverlayArgs {
  bool mirror = false;
  bool ignore_elements = false;
  std::string output;  ///< .xyz or .sdf, checked by the caller
};
Outcome overlay(Record const& target, Record const& moving, std::string const& target_file,
                std::string const& moving_file, OverlayArgs const& args);

Outcome plane(Record const& record, std::string const& file, std::string const& atoms);

Outcome measure(Record const& record, std::string const& file,
                std::vector<std::string> const& groups);

struct ContourArgs {
  std::string file;  ///< a cube file, or "-" for standard input
  double level = 0.05;
  bool tetrahedra = false;
  std::string output;  ///< .obj, .ply or .ascii.ply, checked by the caller
};
Outcome contour(ContourArgs const& args);

struct McsArgs {
  bool connected = false;
  bool hydrogens = false;
  bool bond_orders = false;
  double timeout = 10.0;  ///< seconds of search before the best match so far is reported
};
Outcome mcs(Record const& first, Record const& second, std::string const& first_file,
            std::string const& second_file, McsArgs const& args);

Outcome match(Record const& pattern, Record const& target, std::string const& pattern_file,
              std::string const& target_file, bool hydrogens);

}  // namespace structmath::tool
