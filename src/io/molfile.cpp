// SPDX-License-Identifier: MIT
// Whole SD files and molfiles read through SdfReader, and SD records written.
#include "structmath/io/molfile.hpp"

#include <cstdio>
#include <fstream>
#include <ostream>
#include <stdexcept>

#include "ctab.hpp"
#include "structmath/io/sdf_reader.hpp"

namespace structmath::io {

namespace {

std::ifstream open_input(std::string const& path) {
  std::ifstream in(path);
  if (!in) throw ParseError(path, 0, "cannot open the file");
  return in;
}

std::string first_line(std::string const& text) { return text.substr(0, text.find('\n')); }

// The V2000 atom-block code of a charge: +3..+1 as 1..3, -1..-3 as 5..7, others as 0
// (they go in "M  CHG" lines, which readers take first).
int charge_code(int charge) {
  if (charge >= 1 && charge <= 3) return 4 - charge;
  if (charge <= -1 && charge >= -3) return 4 - charge;
  return 0;
}

void write_v2000(std::ostream& out, Molecule const& m) {
  char line[128];
  std::snprintf(line, sizeof line, "%3zu%3zu  0  0  0  0  0  0  0  0999 V2000\n", m.atoms.size(),
                m.bonds.size());
  out << line;
  for (Atom const& a : m.atoms) {
    std::snprintf(line, sizeof line, "%10.4f%10.4f%10.4f %-3s 0%3d  0  0  0  0  0  0  0  0  0  0\n",
                  a.position.x(), a.position.y(), a.position.z(), a.element.c_str(),
                  charge_code(a.charge));
    out << line;
  }
  for (Bond const& b : m.bonds) {
    std::snprintf(line, sizeof line, "%3d%3d%3d  0\n", b.first + 1, b.second + 1, b.order);
    out << line;
  }
  std::vector<int> charged;
  for (std::size_t i = 0; i < m.atoms.size(); ++i) {
    if (m.atoms[i].charge != 0) charged.push_back(static_cast<int>(i));
  }
  for (std::size_t first = 0; first < charged.size(); first += 8) {
    std::size_t const n = std::min<std::size_t>(8, charged.size() - first);
    std::snprintf(line, sizeof line, "M  CHG%3zu", n);
    out << line;
    for (std::size_t k = first; k < first + n; ++k) {
      int const atom = charged[k];
      std::snprintf(line, sizeof line, " %3d %3d", atom + 1,
                    m.atoms[static_cast<std::size_t>(atom)].charge);
      out << line;
    }
    out << '\n';
  }
}

void write_v3000(std::ostream& out, Molecule const& m) {
  char line[160];
  out << "  0  0  0     0  0            999 V3000\n"
      << "M  V30 BEGIN CTAB\n"
      << "M  V30 COUNTS " << m.atoms.size() << ' ' << m.bonds.size() << " 0 0 0\n"
      << "M  V30 BEGIN ATOM\n";
  for (std::size_t i = 0; i < m.atoms.size(); ++i) {
    Atom const& a = m.atoms[i];
    std::snprintf(line, sizeof line, "M  V30 %zu %s %.4f %.4f %.4f 0", i + 1, a.element.c_str(),
                  a.position.x(), a.position.y(), a.position.z());
    out << line;
    if (a.charge != 0) out << " CHG=" << a.charge;
    out << '\n';
  }
  out << "M  V30 END ATOM\n";
  if (!m.bonds.empty()) {
    out << "M  V30 BEGIN BOND\n";
    for (std::size_t i = 0; i < m.bonds.size(); ++i) {
      Bond const& b = m.bonds[i];
      out << "M  V30 " << i + 1 << ' ' << b.order << ' ' << b.first + 1 << ' ' << b.second + 1
          << '\n';
    }
    out << "M  V30 END BOND\n";
  }
  out << "M  V30 END CTAB\n";
}

}  // namespace

std::vector<Molecule> read_sdf(std::istream& in, std::string const& name) {
  SdfReader reader(in, name);
  std::vector<Molecule> records;
  SdfRecord record;
  while (reader.next(record)) records.push_back(std::move(record.molecule));
  if (records.empty()) throw ParseError(name, 0, "no record in the file");
  return records;
}

std::vector<Molecule> read_sdf(std::string const& path) {
  std::ifstream in = open_input(path);
  return read_sdf(in, path);
}

Molecule read_molfile(std::istream& in, std::string const& name) {
  detail::LineReader reader(in, name);
  detail::RecordLines lines(reader);
  Molecule molecule;
  if (!detail::read_molfile_record(lines, molecule)) {
    throw ParseError(name, 0, "no record in the file");
  }
  std::string line;
  while (reader.next(line)) {
    if (detail::starts_with(line, "$$$$")) break;
    if (!detail::trim(line).empty()) {
      reader.fail("expected the end of the molfile after \"M  END\", found '" + line + "'");
    }
  }
  return molecule;
}

Molecule read_molfile(std::string const& path) {
  std::ifstream in = open_input(path);
  return read_molfile(in, path);
}

void write_sdf(std::ostream& out, Molecule const& molecule) {
  out << first_line(molecule.title) << "\n  structmath\n\n";
  if (molecule.atoms.size() <= 999 && molecule.bonds.size() <= 999) {
    write_v2000(out, molecule);
  } else {
    write_v3000(out, molecule);
  }
  out << "M  END\n$$$$\n";
}

void write_sdf(std::string const& path, std::vector<Molecule> const& molecules) {
  std::ofstream out(path);
  if (!out) throw std::runtime_error("cannot open '" + path + "' for writing");
  for (Molecule const& m : molecules) write_sdf(out, m);
  if (!out) throw std::runtime_error("cannot write '" + path + "'");
}

}  // namespace structmath::io
