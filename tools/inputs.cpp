// SPDX-License-Identifier: MIT
// Sample data lookup, molecule files record by record, atom selections and labels.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "structmath/io/parse_error.hpp"
#include "structmath/io/sdf_reader.hpp"
#include "structmath/io/xyz.hpp"
#include "tool.hpp"

#ifndef STRUCTMATH_SOURCE_DATA_DIR
#define STRUCTMATH_SOURCE_DATA_DIR ""
#endif
#ifndef STRUCTMATH_INSTALLED_DATA_DIR
#define STRUCTMATH_INSTALLED_DATA_DIR ""
#endif

namespace structmath::tool {

namespace fs = std::filesystem;

namespace {

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// "xyz" or "sdf" (a molfile is read as an SD file of one record).
std::string reader_for(MoleculeInput const& input, std::string const& name) {
  std::string format = input.format;
  if (input.path != "-") {
    std::string const ext = lower(fs::path(input.path).extension().string());
    if (ext == ".xyz") {
      format = "xyz";
    } else if (ext == ".sdf" || ext == ".sd" || ext == ".mol") {
      format = "sdf";
    } else if (format.empty()) {
      throw InputError(name + ": unknown molecule format '" + ext +
                       "', expected .xyz, .sdf, .sd or .mol (or give --format)");
    }
  } else if (format.empty()) {
    throw UsageError("reading standard input ('-') needs --format xyz, sdf or mol");
  }
  return format == "xyz" ? "xyz" : "sdf";
}

}  // namespace

std::string bundled(std::string const& file) {
  fs::path const self = fs::read_symlink("/proc/self/exe");
  fs::path const installed =
      self.parent_path().parent_path() / STRUCTMATH_INSTALLED_DATA_DIR / file;
  std::error_code ignored;
  if (fs::exists(installed, ignored)) return installed.string();
  fs::path const source = fs::path(STRUCTMATH_SOURCE_DATA_DIR) / file;
  if (fs::exists(source, ignored)) return source.string();
  throw InputError("the bundled sample file " + file + " is not installed");
}

MoleculeSource::MoleculeSource(MoleculeInput const& input)
    : name_(input.path == "-" ? "<stdin>" : input.path) {
  if (input.path == "-") {
    in_ = &std::cin;
  } else {
    std::error_code error;
    if (fs::is_directory(input.path, error)) {
      throw InputError("cannot open " + input.path + ": it is a directory");
    }
    auto file = std::make_unique<std::ifstream>(input.path);
    if (!*file) throw InputError("cannot open " + input.path + ": " + std::strerror(errno));
    in_ = file.get();
    file_ = std::move(file);
  }
  if (reader_for(input, name_) == "xyz") {
    xyz_ = std::make_unique<io::XyzReader>(*in_, name_);
  } else {
    sdf_ = std::make_unique<io::SdfReader>(*in_, name_);
  }
}

MoleculeSource::~MoleculeSource() = default;

bool MoleculeSource::next(Record& record) {
  if (sdf_) {
    io::SdfRecord r;
    if (!sdf_->next(r)) return false;
    record.number = r.number;
    record.first_line = r.first_line;
    record.has_bonds = true;
    record.molecule = std::move(r.molecule);
    return true;
  }
  if (!xyz_->next(record.molecule)) return false;
  record.number = xyz_->frames();
  record.first_line = xyz_->first_line();
  record.has_bonds = false;
  return true;
}

bool MoleculeSource::skip() {
  if (sdf_) return sdf_->skip();
  io::Molecule ignored;
  try {
    return xyz_->next(ignored);
  } catch (io::ParseError const&) {
    return true;  // a frame, if a malformed one
  }
}

int MoleculeSource::records() const noexcept { return sdf_ ? sdf_->records() : xyz_->frames(); }

Record read_record(MoleculeInput const& input) {
  MoleculeSource source(input);
  int const wanted = input.record > 0 ? input.record : 1;
  Record record;
  for (int k = 1; k < wanted; ++k) {
    if (!source.skip()) {
      throw InputError(source.name() + " holds " + std::to_string(k - 1) + " record" +
                       (k == 2 ? "" : "s") + ", there is no record " + std::to_string(wanted));
    }
  }
  if (!source.next(record)) {
    if (wanted == 1) throw InputError(source.name() + ": no record in the file");
    throw InputError(source.name() + " holds " + std::to_string(wanted - 1) + " record" +
                     (wanted == 2 ? "" : "s") + ", there is no record " + std::to_string(wanted));
  }
  if (input.record == 0 && source.skip()) {
    std::cerr << "structmath: note: " << source.name()
              << " holds more than one record; using the first (choose one with --record)\n";
  }
  return record;
}

std::string atom_label(io::Molecule const& molecule, int index) {
  return molecule.atoms[static_cast<std::size_t>(index)].element + std::to_string(index + 1);
}

Json source_fields(std::string const& file, Record const& record) {
  Json result;
  result["file"] = file;
  result["record"] = record.number;
  result["title"] = record.molecule.title;
  return result;
}

}  // namespace structmath::tool
