// SPDX-License-Identifier: MIT
// Known-answer files: the line format, strict number parsing and 17-digit doubles.
#include "support/known_answers.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <set>
#include <sstream>
#include <stdexcept>

namespace structmath::testing {

namespace {

[[noreturn]] void fail(std::string const& where, std::string const& what) {
  throw std::runtime_error(where + ": " + what);
}

std::string location(AnswerCase const& c, std::string const& key) {
  return "case " + c.name + ", key " + key;
}

bool valid_name(std::string const& name) {
  if (name.empty()) return false;
  for (char ch : name) {
    bool const ok = (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') ||
                    (ch >= '0' && ch <= '9') || ch == '_';
    if (!ok) return false;
  }
  return true;
}

std::vector<std::string> words(std::string const& line) {
  std::istringstream in(line);
  std::vector<std::string> out;
  for (std::string w; in >> w;) out.push_back(w);
  return out;
}

bool blank(std::string const& line) { return line.find_first_not_of(" \t\r") == std::string::npos; }

}  // namespace

std::vector<std::string> const& AnswerCase::text(std::string const& key) const {
  auto const found = fields.find(key);
  if (found == fields.end()) fail(location(*this, key), "missing");
  return found->second;
}

std::vector<int> AnswerCase::ints(std::string const& key) const {
  std::vector<int> out;
  for (std::string const& word : text(key)) {
    char* end = nullptr;
    errno = 0;
    long const value = std::strtol(word.c_str(), &end, 10);
    if (end == word.c_str() || *end != '\0' || errno == ERANGE ||
        value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
      fail(location(*this, key), "not an int: '" + word + "'");
    }
    out.push_back(static_cast<int>(value));
  }
  return out;
}

std::vector<double> AnswerCase::doubles(std::string const& key) const {
  std::vector<double> out;
  for (std::string const& word : text(key)) {
    char* end = nullptr;
    double const value = std::strtod(word.c_str(), &end);
    if (end == word.c_str() || *end != '\0') {
      fail(location(*this, key), "not a number: '" + word + "'");
    }
    out.push_back(value);
  }
  return out;
}

int AnswerCase::integer(std::string const& key) const {
  std::vector<int> const values = ints(key);
  if (values.size() != 1) fail(location(*this, key), "expected one value");
  return values[0];
}

double AnswerCase::number(std::string const& key) const {
  std::vector<double> const values = doubles(key);
  if (values.size() != 1) fail(location(*this, key), "expected one value");
  return values[0];
}

std::vector<AnswerCase> read_answers(std::string const& path) {
  std::ifstream in(path);
  if (!in) fail(path, "cannot open known-answer file");
  std::vector<AnswerCase> cases;
  std::set<std::string> names;
  bool open = false;
  int number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    std::string const where = path + ":" + std::to_string(number);
    if (blank(line)) {
      open = false;
      continue;
    }
    if (line[line.find_first_not_of(" \t")] == '#') continue;
    std::vector<std::string> w = words(line);
    if (w[0] == "case") {
      if (open) fail(where, "a new case before the blank line that ends the last");
      if (w.size() != 2 || !valid_name(w[1])) fail(where, "expected 'case <name>'");
      if (!names.insert(w[1]).second) fail(where, "case " + w[1] + " repeated");
      cases.push_back(AnswerCase{w[1], {}});
      open = true;
      continue;
    }
    if (!open) fail(where, "a field outside any case");
    std::string const key = w[0];
    w.erase(w.begin());
    if (!cases.back().fields.emplace(key, std::move(w)).second) {
      fail(where, "key " + key + " repeated");
    }
  }
  if (cases.empty()) fail(path, "no case");
  return cases;
}

std::string answer_text(double value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.17g", value);
  return buffer;
}

AnswerFields& AnswerFields::add(std::string const& key, std::vector<std::string> values) {
  items_.emplace_back(key, std::move(values));
  return *this;
}

AnswerFields& AnswerFields::add(std::string const& key, std::vector<double> const& values) {
  std::vector<std::string> texts;
  for (double v : values) texts.push_back(answer_text(v));
  return add(key, std::move(texts));
}

AnswerFields& AnswerFields::add(std::string const& key, std::vector<int> const& values) {
  std::vector<std::string> texts;
  for (int v : values) texts.push_back(std::to_string(v));
  return add(key, std::move(texts));
}

AnswerCase AnswerFields::as_case(std::string const& name) const {
  AnswerCase c{name, {}};
  for (auto const& [key, values] : items_) c.fields[key] = values;
  return c;
}

void AnswerFields::write(std::ostream& out) const {
  for (auto const& [key, values] : items_) {
    out << key;
    for (std::string const& v : values) out << ' ' << v;
    out << '\n';
  }
}

bool report_differences(std::string const& name, AnswerFields const& library,
                        AnswerFields const& transcribed, std::ostream& err) {
  auto const join = [](std::vector<std::string> const& values) {
    std::string out;
    for (std::string const& v : values) out += ' ' + v;
    return out;
  };
  if (library.items().size() != transcribed.items().size()) {
    err << name << ": the field lists differ\n";
    return false;
  }
  bool agree = true;
  for (std::size_t k = 0; k < library.items().size(); ++k) {
    auto const& [key, values] = library.items()[k];
    if (transcribed.items()[k] != library.items()[k]) {
      agree = false;
      err << name << ": " << key << " differs\n  library:      " << join(values)
          << "\n  transcription:" << join(transcribed.items()[k].second) << '\n';
    }
  }
  return agree;
}

void expect_fields(AnswerCase const& stored, AnswerFields const& computed) {
  for (auto const& [key, values] : computed.items()) {
    if (!stored.has(key)) {
      ADD_FAILURE() << "case " << stored.name << " has no key " << key;
      continue;
    }
    EXPECT_EQ(values, stored.text(key)) << "key " << key;
  }
}

}  // namespace structmath::testing
