// SPDX-License-Identifier: MIT
// The inputs that once crashed the tool, hung it or made it allocate gigabytes:
// each must now end with exit status 1 and one line naming the file and line,
// quickly and in little memory.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fcntl.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Reproducer {
  std::string file;
  std::string command;
  int line = 0;
};

std::string const directory = STRUCTMATH_TEST_ANSWERS_DIR "/reproducers/";

std::vector<Reproducer> reproducers() {
  std::vector<Reproducer> list;
  std::ifstream in(directory + "expected.txt");
  std::string text;
  while (std::getline(in, text)) {
    if (text.empty() || text[0] == '#') continue;
    std::istringstream fields(text);
    Reproducer r;
    fields >> r.file >> r.command >> r.line;
    list.push_back(r);
  }
  return list;
}

struct ChildRun {
  int status = -1;
  std::string err;
  double cpu_seconds = 0.0;
  long max_resident_kb = 0;
};

// Runs the tool directly (no shell, whose own usage would be counted) with its
// standard error in a scratch file, and reports the child's resource use.
ChildRun run_tool(std::vector<std::string> args) {
  std::string const err_path = testing::TempDir() + "reproducer.err";
  args.insert(args.begin(), STRUCTMATH_TOOL_PATH);
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  ChildRun run;
  pid_t const pid = ::fork();
  if (pid == 0) {
    int const fd = ::open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    int const null = ::open("/dev/null", O_WRONLY);
    if (fd < 0 || null < 0) ::_exit(127);
    ::dup2(fd, 2);
    ::dup2(null, 1);
    ::execv(argv[0], argv.data());
    ::_exit(127);
  }
  int raw = 0;
  rusage usage{};
  if (pid < 0 || ::wait4(pid, &raw, 0, &usage) != pid) return run;
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  run.cpu_seconds = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                    1e-6 * static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
  run.max_resident_kb = usage.ru_maxrss;
  std::ifstream err(err_path);
  std::stringstream text;
  text << err.rdbuf();
  run.err = text.str();
  return run;
}

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif
#else
constexpr bool kSanitized = false;
#endif

// A child's peak resident size starts from its parent's at the fork (Linux keeps the
// larger across exec), and under valgrind that parent is large.
bool under_valgrind() {
  char const* preload = std::getenv("LD_PRELOAD");
  return preload != nullptr && std::strstr(preload, "vgpreload") != nullptr;
}

TEST(Reproducers, EachEndsWithOneLineNamingFileAndLine) {
  auto const list = reproducers();
  ASSERT_GE(list.size(), 10U);
  for (Reproducer const& r : list) {
    std::string const path = directory + r.file;
    ChildRun const run = run_tool({r.command, path});
    EXPECT_EQ(run.status, 1) << r.file << ": " << run.err;
    std::string const prefix = "structmath: " + path + ":" + std::to_string(r.line) + ": ";
    EXPECT_EQ(run.err.rfind(prefix, 0), 0U) << run.err;
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << "not one line: " << run.err;
    for (char const c : run.err.substr(0, run.err.size() - 1)) {
      EXPECT_TRUE(c >= 0x20 && c < 0x7f) << r.file << ": unescaped byte in " << run.err;
    }
    // The faults these pin took 16 s and 4 GB; bounds far above a normal run's
    // few milliseconds and megabytes but far below those. Sanitizers reserve
    // shadow memory, so the resident size is checked only without them.
    EXPECT_LT(run.cpu_seconds, 1.0) << r.file;
    if (!kSanitized && !under_valgrind()) {
      EXPECT_LT(run.max_resident_kb, 50 * 1024) << r.file;
    }
  }
}

}  // namespace
