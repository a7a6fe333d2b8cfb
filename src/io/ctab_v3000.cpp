// SPDX-License-Identifier: MIT
// V3000 connection tables: the "M  V30" CTAB block with its atoms, charges and bonds.
#include <optional>
#include <unordered_map>
#include <vector>

#include "ctab.hpp"

namespace structmath::io::detail {

namespace {

// The logical lines of a V3000 block: the text after "M  V30 ", a line ending in '-'
// continuing on the next one.
class V30Lines {
 public:
  explicit V30Lines(RecordLines& lines) : lines_(lines) {}

  std::string next(std::string const& what) {
    std::string line = lines_.require(what);
    std::string content;
    for (;;) {
      if (!starts_with(line, "M  V30 ")) {
        reader().fail("expected a \"M  V30\" line with " + what + ", found '" + line + "'");
      }
      std::string_view part = trim(std::string_view(line).substr(7));
      if (part.empty() || part.back() != '-') {
        content += part;
        return content;
      }
      part.remove_suffix(1);
      content += part;
      line = lines_.require("the rest of a continued \"M  V30\" line");
    }
  }

  LineReader const& reader() const noexcept { return lines_.reader(); }

 private:
  RecordLines& lines_;
};

// Fields of a logical line: blank-separated, a quoted string ("" standing for a quote)
// or a parenthesised list kept as one field.
std::vector<std::string> tokens(LineReader const& reader, std::string const& text) {
  std::vector<std::string> out;
  std::size_t i = 0;
  while (i < text.size()) {
    if (text[i] == ' ' || text[i] == '\t') {
      ++i;
      continue;
    }
    std::string token;
    int depth = 0;
    bool quoted = false;
    for (; i < text.size(); ++i) {
      char const c = text[i];
      if (quoted) {
        if (c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
          token += '"';
          ++i;
        } else if (c == '"') {
          quoted = false;
        } else {
          token += c;
        }
        continue;
      }
      if ((c == ' ' || c == '\t') && depth == 0) break;
      if (c == '"') {
        quoted = true;
        continue;
      }
      if (c == '(') ++depth;
      if (c == ')') --depth;
      token += c;
    }
    if (quoted || depth != 0) reader.fail("unbalanced quotes or parentheses in '" + text + "'");
    out.push_back(std::move(token));
  }
  return out;
}

// The value of a KEY=value field from field `first` on, if there is one.
std::optional<std::string> property(std::vector<std::string> const& fields, std::size_t first,
                                    std::string const& key) {
  for (std::size_t f = first; f < fields.size(); ++f) {
    if (fields[f].size() > key.size() && fields[f].compare(0, key.size(), key) == 0 &&
        fields[f][key.size()] == '=') {
      return fields[f].substr(key.size() + 1);
    }
  }
  return std::nullopt;
}

void skip_block(V30Lines& lines, std::string const& name) {
  std::string const end = "END " + name;
  for (;;) {
    std::string const text = lines.next("\"" + end + "\"");
    if (text == end || text.rfind(end + " ", 0) == 0) return;
  }
}

void read_atoms(V30Lines& lines, long long natoms, Molecule& molecule,
                std::unordered_map<long long, int>& index_of) {
  LineReader const& reader = lines.reader();
  molecule.atoms.reserve(reserve_for(natoms));
  for (;;) {
    std::string const text = lines.next("an atom or \"END ATOM\"");
    if (text == "END ATOM") break;
    auto const fields = tokens(reader, text);
    if (fields.size() < 5) {
      reader.fail("expected an atom (index, type, x, y, z), found '" + text + "'");
    }
    if (static_cast<long long>(molecule.atoms.size()) == natoms) {
      reader.fail("more atoms than the " + std::to_string(natoms) + " of the counts line");
    }
    long long const id = reader.to_int(fields[0], "the atom index");
    if (id < 1) reader.fail("atom index " + fields[0] + ", expected a positive number");
    if (!index_of.emplace(id, static_cast<int>(molecule.atoms.size())).second) {
      reader.fail("atom index " + fields[0] + " used twice");
    }
    Atom atom;
    atom.element = element_of(reader, fields[1]);
    atom.label = fields[1];
    atom.position = Point(reader.to_double(fields[2], "x"), reader.to_double(fields[3], "y"),
                          reader.to_double(fields[4], "z"));
    if (auto const charge = property(fields, 6, "CHG")) {
      atom.charge = reader.to_int(*charge, "the charge");
      if (atom.charge < -15 || atom.charge > 15) {
        reader.fail("charge " + *charge + ", expected -15 to 15");
      }
    }
    molecule.atoms.push_back(std::move(atom));
  }
  if (static_cast<long long>(molecule.atoms.size()) != natoms) {
    reader.fail("found " + std::to_string(molecule.atoms.size()) + " atoms, the counts line says " +
                std::to_string(natoms));
  }
}

void read_bonds(V30Lines& lines, long long nbonds, Molecule& molecule,
                std::unordered_map<long long, int> const& index_of) {
  LineReader const& reader = lines.reader();
  molecule.bonds.reserve(reserve_for(nbonds));
  for (;;) {
    std::string const text = lines.next("a bond or \"END BOND\"");
    if (text == "END BOND") break;
    auto const fields = tokens(reader, text);
    if (fields.size() < 4) {
      reader.fail("expected a bond (index, type, first and second atom), found '" + text + "'");
    }
    if (static_cast<long long>(molecule.bonds.size()) == nbonds) {
      reader.fail("more bonds than the " + std::to_string(nbonds) + " of the counts line");
    }
    Bond bond;
    bond.order = reader.to_int(fields[1], "the bond type");
    int ends[2] = {0, 0};
    for (int e = 0; e < 2; ++e) {
      long long const id = reader.to_int(fields[2 + static_cast<std::size_t>(e)],
                                         e == 0 ? "the first atom" : "the second atom");
      auto const found = index_of.find(id);
      if (found == index_of.end()) {
        reader.fail("bond to atom " + std::to_string(id) + ", which the atom block does not hold");
      }
      ends[e] = found->second;
    }
    if (ends[0] == ends[1]) reader.fail("bond from an atom to itself");
    if (bond.order < 1 || bond.order > 4) {
      reader.fail("bond type " + std::to_string(bond.order) + ", expected 1 to 4");
    }
    bond.first = ends[0];
    bond.second = ends[1];
    molecule.bonds.push_back(bond);
  }
  if (static_cast<long long>(molecule.bonds.size()) != nbonds) {
    reader.fail("found " + std::to_string(molecule.bonds.size()) + " bonds, the counts line says " +
                std::to_string(nbonds));
  }
}

}  // namespace

void read_v3000(RecordLines& record, Molecule& molecule) {
  V30Lines lines(record);
  LineReader const& reader = lines.reader();
  if (lines.next("\"BEGIN CTAB\"") != "BEGIN CTAB") reader.fail("expected \"M  V30 BEGIN CTAB\"");
  std::string const counts = lines.next("the COUNTS line");
  auto const count_fields = tokens(reader, counts);
  if (count_fields.size() < 3 || count_fields[0] != "COUNTS") {
    reader.fail("expected \"COUNTS\" with the atom and bond counts, found '" + counts + "'");
  }
  long long const natoms = reader.to_int(count_fields[1], "the atom count");
  long long const nbonds = reader.to_int(count_fields[2], "the bond count");
  if (natoms < 0 || nbonds < 0) reader.fail("expected non-negative atom and bond counts");

  std::unordered_map<long long, int> index_of;
  bool atoms_read = false;
  bool bonds_read = false;
  for (;;) {
    std::string const text = lines.next("a block or \"END CTAB\"");
    if (text == "END CTAB") break;
    if (text == "BEGIN ATOM" && !atoms_read) {
      read_atoms(lines, natoms, molecule, index_of);
      atoms_read = true;
    } else if (text == "BEGIN BOND" && atoms_read && !bonds_read) {
      read_bonds(lines, nbonds, molecule, index_of);
      bonds_read = true;
    } else if (text.rfind("BEGIN ", 0) == 0 && text != "BEGIN ATOM" && text != "BEGIN BOND") {
      skip_block(lines, text.substr(6));
    } else {
      reader.fail("unexpected '" + text + "' in the CTAB block");
    }
  }
  if (!atoms_read && natoms > 0) reader.fail("the CTAB block has no atom block");
  if (!bonds_read && nbonds > 0) reader.fail("the CTAB block has no bond block");

  // Templates and R-groups may follow the table; the record ends at "M  END".
  for (;;) {
    std::string const line = record.require("\"M  END\"");
    if (starts_with(line, "M  END")) return;
    record.reader().unread(line);
    std::string const text = lines.next("a block or \"M  END\"");
    if (text.rfind("BEGIN ", 0) != 0) reader.fail("unexpected '" + text + "' after the CTAB block");
    skip_block(lines, text.substr(6));
  }
}

}  // namespace structmath::io::detail
