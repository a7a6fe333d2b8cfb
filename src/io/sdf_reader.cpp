// SPDX-License-Identifier: MIT
// SdfReader: one record at a time, with data items and recovery after a bad record.
#include "structmath/io/sdf_reader.hpp"

#include "ctab.hpp"

namespace structmath::io {

namespace detail {

bool read_molfile_record(RecordLines& lines, Molecule& molecule) {
  LineReader& reader = lines.reader();
  // Blank lines at the end of a file are not a record; a blank title is.
  std::string header[3];
  char const* const what[3] = {"the title line", "the program line of the header",
                               "the comment line of the header"};
  bool blank = true;
  for (int h = 0; h < 3; ++h) {
    if (!reader.next(header[h])) {
      if (blank) return false;
      throw ParseError(reader.name(), reader.line_number() + 1,
                       std::string("unexpected end of file, expected ") + what[h]);
    }
    if (starts_with(header[h], "$$$$")) {
      reader.unread(header[h]);
      (void)lines.require(what[h]);  // reports the early end and notes the separator
    }
    blank = blank && trim(header[h]).empty();
  }
  std::string counts;
  if (!reader.next(counts)) {
    if (blank) return false;
    throw ParseError(reader.name(), reader.line_number() + 1,
                     "unexpected end of file, expected the counts line");
  }
  reader.unread(counts);
  counts = lines.require("the counts line");
  molecule = Molecule();
  molecule.title = std::move(header[0]);
  if (counts.find("V3000") != std::string::npos) {
    read_v3000(lines, molecule);
  } else {
    read_v2000(lines, counts, molecule);
  }
  return true;
}

}  // namespace detail

struct SdfReader::Impl {
  Impl(std::istream& in, std::string name) : reader(in, std::move(name)) {}

  // Reads up to and including the next "$$$$"; false when the input ends first.
  bool pass_separator() {
    std::string line;
    while (reader.next(line)) {
      if (detail::starts_with(line, "$$$$")) return true;
    }
    return false;
  }

  // The data items after "M  END", up to the separator; other lines are passed over.
  void read_data(std::vector<std::pair<std::string, std::string>>& data) {
    std::string line;
    while (reader.next(line)) {
      if (detail::starts_with(line, "$$$$")) return;
      if (line.empty() || line[0] != '>') continue;
      std::size_t const open = line.find('<');
      std::size_t const close = open == std::string::npos ? open : line.find('>', open);
      std::string name =
          close == std::string::npos ? std::string() : line.substr(open + 1, close - open - 1);
      std::string value;
      bool first = true;
      while (reader.next(line)) {
        if (detail::starts_with(line, "$$$$")) {
          reader.unread(line);
          break;
        }
        if (detail::trim(line).empty()) break;
        if (!first) value += '\n';
        value += line;
        first = false;
      }
      data.emplace_back(std::move(name), std::move(value));
    }
    done = true;
  }

  detail::LineReader reader;
  int records = 0;
  bool done = false;
};

SdfReader::SdfReader(std::istream& in, std::string name)
    : impl_(std::make_unique<Impl>(in, std::move(name))) {}

SdfReader::~SdfReader() = default;

bool SdfReader::next(SdfRecord& record) {
  Impl& d = *impl_;
  if (d.done) return false;
  detail::RecordLines lines(d.reader);
  record.data.clear();
  int const first_line = d.reader.line_number() + 1;
  try {
    if (!detail::read_molfile_record(lines, record.molecule)) {
      d.done = true;
      return false;
    }
  } catch (ParseError const&) {
    ++d.records;
    if (!lines.separator_seen() && !d.pass_separator()) d.done = true;
    throw;
  }
  record.number = ++d.records;
  record.first_line = first_line;
  d.read_data(record.data);
  return true;
}

bool SdfReader::skip() {
  Impl& d = *impl_;
  if (d.done) return false;
  std::string line;
  bool blank = true;
  for (;;) {
    if (!d.reader.next(line)) {
      d.done = true;
      if (blank) return false;
      break;
    }
    if (detail::starts_with(line, "$$$$")) break;
    blank = blank && detail::trim(line).empty();
  }
  ++d.records;
  return true;
}

int SdfReader::records() const noexcept { return impl_->records; }

}  // namespace structmath::io
