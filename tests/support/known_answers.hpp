// SPDX-License-Identifier: MIT
// Known-answer files: reading them for parameterised tests, writing them from generators.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace structmath::testing {

/// One case of a known-answer file.
///
/// A file is a sequence of cases: a line "case <name>", then lines "key value value ...",
/// a blank line ends the case; lines starting with '#' are comments. Names are letters,
/// digits and underscores, unique in their file, so they serve as test names. Doubles
/// are written with 17 significant digits and so read back bit for bit.
struct AnswerCase {
  std::string name;
  std::map<std::string, std::vector<std::string>> fields;

  bool has(std::string const& key) const { return fields.count(key) != 0; }
  /// The values of a key as written. Every accessor throws std::runtime_error naming the
  /// case and key when the key is missing or a value does not parse whole.
  std::vector<std::string> const& text(std::string const& key) const;
  std::vector<int> ints(std::string const& key) const;
  std::vector<double> doubles(std::string const& key) const;
  /// The one value of a key that must hold exactly one.
  int integer(std::string const& key) const;
  double number(std::string const& key) const;
};

/// Every case of the file at path. Throws std::runtime_error naming the file and line
/// when the file is missing, malformed or holds no case.
std::vector<AnswerCase> read_answers(std::string const& path);

#ifdef STRUCTMATH_TEST_ANSWERS_DIR
/// Every case of tests/data/<relative>; fails as read_answers.
inline std::vector<AnswerCase> load_answers(std::string const& relative) {
  return read_answers(std::string(STRUCTMATH_TEST_ANSWERS_DIR) + "/" + relative);
}
#endif

inline void PrintTo(AnswerCase const& c, std::ostream* os) { *os << c.name; }

/// Names the instances of a parameterised test after their cases.
struct AnswerName {
  std::string operator()(::testing::TestParamInfo<AnswerCase> const& info) const {
    return info.param.name;
  }
};

/// The text of a double that reads back to the same bits ("%.17g"). Comparing two such
/// texts compares the doubles bit for bit, and tells -0 from 0.
std::string answer_text(double value);

/// Fields of a case in the order they are written: a generator's inputs and outputs, and
/// what a test recomputes to compare with the stored case.
class AnswerFields {
 public:
  AnswerFields& add(std::string const& key, std::vector<std::string> values);
  AnswerFields& add(std::string const& key, std::vector<double> const& values);
  AnswerFields& add(std::string const& key, std::vector<int> const& values);
  AnswerFields& add(std::string const& key, double value) { return add(key, std::vector{value}); }
  AnswerFields& add(std::string const& key, int value) { return add(key, std::vector{value}); }
  AnswerFields& add(std::string const& key, bool value) { return add(key, value ? 1 : 0); }

  std::vector<std::pair<std::string, std::vector<std::string>>> const& items() const {
    return items_;
  }
  /// The fields as a case of the given name, as a test would read them back.
  AnswerCase as_case(std::string const& name) const;
  /// Writes "key v1 v2 ..." lines.
  void write(std::ostream& out) const;

 private:
  std::vector<std::pair<std::string, std::vector<std::string>>> items_;
};

/// For generators: whether the library's and a transcription's fields agree, writing
/// each disagreement, with both texts, to err.
bool report_differences(std::string const& name, AnswerFields const& library,
                        AnswerFields const& transcribed, std::ostream& err);

/// Expects every field of `computed` in `stored` with the same texts.
void expect_fields(AnswerCase const& stored, AnswerFields const& computed);

}  // namespace structmath::testing
