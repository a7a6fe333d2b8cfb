// SPDX-License-Identifier: MIT
// Printing outcomes, one input or a whole file of records as they are computed.
#include <iostream>
#include <sstream>

#include "structmath/io/parse_error.hpp"
#include "tool.hpp"

namespace structmath::tool {

namespace {

// A bad record goes to stderr, and into the JSON stream so that it stays one line per record.
void report_bad(std::string const& file, int line, int number, std::string const& problem,
                bool json) {
  std::string const where =
      file + ":" + std::to_string(line) + ": record " + std::to_string(number) + ": " + problem;
  std::cerr << "structmath: " << where << '\n';
  if (json) {
    Json bad;
    bad["record"] = number;
    bad["error"] = where;
    std::cout << bad.dump() << '\n';
  }
}

}  // namespace

void emit(Outcome const& outcome, bool json, std::ostream& out) {
  if (json) {
    out << outcome.result.dump(2) << '\n';
    return;
  }
  // Each report is formatted on a fresh stream, so no report inherits another's settings.
  std::ostringstream text;
  outcome.print(outcome.result, text);
  out << text.str();
}

int run_batch(MoleculeInput const& input, bool json,
              std::function<Outcome(Record const&, std::string const&)> const& compute) {
  MoleculeSource source(input);
  int good = 0;
  int bad = 0;
  Record record;
  for (;;) {
    try {
      if (!source.next(record)) break;
    } catch (io::ParseError const& e) {
      report_bad(e.file(), e.line(), source.records(), e.problem(), json);
      ++bad;
      continue;
    }
    Outcome outcome;
    try {
      outcome = compute(record, source.name());
    } catch (UsageError const&) {
      throw;
    } catch (std::exception const& e) {
      report_bad(source.name(), record.first_line, record.number, e.what(), json);
      ++bad;
      continue;
    }
    ++good;
    if (json) {
      // Every line opens with the record's number and title.
      Json line;
      line["record"] = record.number;
      line["title"] = record.molecule.title;
      for (auto const& [key, value] : outcome.result.items()) {
        if (key != "record" && key != "title") line[key] = value;
      }
      std::cout << line.dump() << '\n';
    } else if (outcome.summary) {
      std::cout << record.number << '\t' << outcome.summary(outcome.result) << '\t'
                << record.molecule.title << '\n';
    } else {
      std::cout << "== record " << record.number << ": " << record.molecule.title << '\n';
      emit(outcome, false, std::cout);
    }
  }
  if (good + bad == 0) throw InputError(source.name() + ": no record in the file");
  return bad > 0 ? 1 : 0;
}

}  // namespace structmath::tool
