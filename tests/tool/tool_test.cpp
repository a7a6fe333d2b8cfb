// SPDX-License-Identifier: MIT
// End-to-end tests of the structmath command-line tool: output, exit status, bad input.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "structmath/io/xyz.hpp"
#include "support/test_support.hpp"

namespace {

using Json = nlohmann::json;
using structmath::testing::ScratchFile;

struct ToolRun {
  int status = -1;
  std::string out;
  std::string err;
};

// Runs the tool with a shell-quoted argument string; stderr goes to a scratch file.
ToolRun tool(std::string const& args) {
  ScratchFile err_file(".err");
  std::string const command =
      std::string(STRUCTMATH_TOOL_PATH) + " " + args + " 2>" + err_file.path();
  ToolRun run;
  FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) return run;
  std::array<char, 4096> buffer{};
  std::size_t n = 0;
  while ((n = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
    run.out.append(buffer.data(), n);
  int const raw = ::pclose(pipe);
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  std::ifstream err(err_file.path());
  std::stringstream text;
  text << err.rdbuf();
  run.err = text.str();
  return run;
}

Json tool_json(std::string const& args) {
  ToolRun const run = tool(args + " --json");
  EXPECT_EQ(run.status, 0) << run.err;
  return Json::parse(run.out);
}

std::string data(char const* file) { return std::string(STRUCTMATH_TEST_DATA_DIR "/") + file; }

// One line on stderr, starting with the program name.
void expect_one_line_error(ToolRun const& run, int status, std::string const& fragment) {
  EXPECT_EQ(run.status, status) << run.out << run.err;
  EXPECT_EQ(run.err.rfind("structmath: ", 0), 0U) << run.err;
  EXPECT_NE(run.err.find(fragment), std::string::npos) << run.err;
  if (status == 1) {
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  }
}

TEST(Tool, UsageErrorsExitWithTwoAndHelpWithZero) {
  expect_one_line_error(tool(""), 2, "subcommand");
  expect_one_line_error(tool("frobnicate"), 2, "frobnicate");
  expect_one_line_error(tool("volume --density"), 2, "density");
  expect_one_line_error(tool("volume --density -5"), 2, "density");
  expect_one_line_error(tool("volume --seed 1"), 2, "seed");
  for (char const* sub :
       {"volume", "overlay", "plane", "measure", "contour", "mcs", "match", "tour"}) {
    ToolRun const help = tool(std::string(sub) + " --help");
    EXPECT_EQ(help.status, 0) << sub;
    EXPECT_NE(help.out.find("--json"), std::string::npos) << sub;
  }
}

TEST(Tool, BadFilesExitWithOneAndAOneLineMessage) {
  expect_one_line_error(tool("volume /nonexistent.xyz"), 1,
                        "/nonexistent.xyz:0: cannot open the file");
  ScratchFile bad(".xyz");
  std::ofstream(bad.path()) << "2\ntitle\nC 0 0 0\nC 0 x 0\n";
  expect_one_line_error(tool("volume " + bad.path()), 1, ":4: expected a number for y, found 'x'");
  expect_one_line_error(tool("plane " + bad.path()), 1, ":4:");
  ScratchFile unknown(".pdb");
  std::ofstream(unknown.path()) << "ATOM\n";
  expect_one_line_error(tool("measure " + unknown.path()), 1, "unknown molecule format '.pdb'");
  expect_one_line_error(tool("volume --seed 40000 1"), 1,
                        "Error in seeds. First seed must be in the range 0 - 31328");
  expect_one_line_error(tool("overlay " + data("caffeine.xyz") + " " + data("benzene.xyz")), 1,
                        "the molecules have 24 and 12 atoms");
  expect_one_line_error(tool("plane " + data("benzene.xyz") + " --atoms 1,2,40"), 1,
                        "atom 40 does not exist");
  expect_one_line_error(tool("measure " + data("benzene.xyz") + " 1-2-3-4-5"), 1,
                        "2, 3 or 4 atoms");
  expect_one_line_error(tool("mcs " + data("caffeine.xyz") + " " + data("benzene.sdf")), 1,
                        "needs bonds");
  ScratchFile cube(".cube");
  std::ofstream(cube.path()) << "c1\nc2\n1 0 0 0\n2 1 0 0\n2 0 1 0\n2 0 0 1\n1 0 0 0 0\n1 2 3\n";
  expect_one_line_error(tool("contour " + cube.path()), 1, "expected 8 values, found 3");
  expect_one_line_error(tool("contour --level 0.05 -o out.stl"), 1, "does not end in .obj");
}

TEST(Tool, VolumeOfCaffeineMatchesAnIndependentEstimate) {
  Json const r = tool_json("volume --density 400");
  double const volume = r["volume"].get<double>();
  double const error = r["standard_error"].get<double>();
  EXPECT_EQ(r["atoms"], 24);
  EXPECT_GT(error, 0.0);
  EXPECT_LT(error, 1.0);
  // Published estimate for caffeine (C8H10N4O2) by the additive method of Zhao, Abraham
  // and Zissimos, J. Org. Chem. 68 (2003) 7368: sum of atomic volumes (C 20.58, H 7.24,
  // N 15.60, O 14.71 A^3) = 328.86, minus 5.92 per bond (25 bonds) = 148.0, minus
  // 14.7 for the aromatic ring and 3.8 for the non-aromatic ring: 162.4 A^3.
  EXPECT_NEAR(volume, 162.4, 0.05 * 162.4);
  // The same seeds give the same answer.
  EXPECT_EQ(tool_json("volume --density 400")["volume"].get<double>(), volume);
  EXPECT_NE(tool_json("volume --density 400 --seed 1 2")["volume"].get<double>(), volume);
}

TEST(Tool, OverlayOfConformersAndOfAMoleculeWithItself) {
  Json const r = tool_json("overlay");
  EXPECT_GT(r["rms"].get<double>(), 0.1);  // anti and gauche butane differ
  EXPECT_GT(r["maximum_deviation"].get<double>(), r["rms"].get<double>());
  ScratchFile moved(".xyz");
  Json const self = tool_json("overlay " + data("caffeine.xyz") + " " + data("caffeine.xyz") +
                              " -o " + moved.path());
  EXPECT_NEAR(self["rms"].get<double>(), 0.0, 1e-6);
  EXPECT_NEAR(self["determinant"].get<double>(), 1.0, 1e-9);
  auto const frames = structmath::io::read_xyz(moved.path());
  auto const original = structmath::io::read_xyz(data("caffeine.xyz"));
  ASSERT_EQ(frames[0].atoms.size(), original[0].atoms.size());
  for (std::size_t i = 0; i < original[0].atoms.size(); ++i) {
    EXPECT_TRUE(equals(frames[0].atoms[i].position, original[0].atoms[i].position, 1e-5));
  }
  ToolRun const text = tool("overlay");
  EXPECT_EQ(text.status, 0);
  EXPECT_NE(text.out.find("rms deviation: "), std::string::npos);
  EXPECT_NE(text.out.find("translation:"), std::string::npos);
}

TEST(Tool, PlaneOfBenzeneHoldsEveryAtom) {
  Json const r = tool_json("plane " + data("benzene.xyz"));
  EXPECT_EQ(r["fitted_atoms"], 12);
  EXPECT_NEAR(std::fabs(r["normal"][2].get<double>()), 1.0, 1e-9);
  for (auto const& d : r["distances"]) EXPECT_NEAR(d["distance"].get<double>(), 0.0, 1e-9);
  // Caffeine's ring atoms are planar; its out-of-plane methyl hydrogens are 0.89 A off.
  Json const c = tool_json("plane --atoms 1-9");
  EXPECT_NEAR(c["rms_distance"].get<double>(), 0.0, 1e-9);
  EXPECT_NEAR(std::fabs(c["distances"][16]["distance"].get<double>()), 0.89, 0.01);
  EXPECT_EQ(c["distances"][16]["fitted"], false);
}

TEST(Tool, MeasureButaneInternalCoordinates) {
  Json const r = tool_json("measure " + data("butane_conformers.xyz") + " 1-2 1-2-3 1-2-3-4 C1-C4");
  // Built with C-C 1.53 A, C-C-C 112 degrees and an anti torsion.
  EXPECT_NEAR(r["measurements"][0]["value"].get<double>(), 1.53, 1e-6);
  EXPECT_NEAR(r["measurements"][1]["value"].get<double>(), 112.0, 1e-4);
  EXPECT_NEAR(std::fabs(r["measurements"][2]["value"].get<double>()), 180.0, 1e-4);
  EXPECT_EQ(r["measurements"][2]["atoms"], "C1-C2-C3-C4");
}

TEST(Tool, ContourOfTheWaterDensityIsClosedAndWritesFiles) {
  Json const r = tool_json("contour --level 0.05");
  EXPECT_TRUE(r["closed"].get<bool>());
  EXPECT_EQ(r["euler_characteristic"], 2);
  EXPECT_GT(r["triangles"].get<int>(), 100);
  EXPECT_GT(r["enclosed_volume"].get<double>(), 0.0);
  Json const tetra = tool_json("contour --level 0.05 --tetrahedra");
  EXPECT_NEAR(tetra["enclosed_volume"].get<double>(), r["enclosed_volume"].get<double>(),
              0.05 * r["enclosed_volume"].get<double>());
  ScratchFile obj(".obj");
  ScratchFile ply(".ply");
  EXPECT_EQ(tool("contour -o " + obj.path()).status, 0);
  EXPECT_EQ(tool("contour -o " + ply.path()).status, 0);
  std::ifstream obj_in(obj.path());
  std::string first;
  std::getline(obj_in, first);
  EXPECT_EQ(first.rfind("# ", 0), 0U);
  std::ifstream ply_in(ply.path(), std::ios::binary);
  std::string magic, format;
  std::getline(ply_in, magic);
  std::getline(ply_in, format);
  EXPECT_EQ(magic, "ply");
  EXPECT_EQ(format, "format binary_little_endian 1.0");
}

TEST(Tool, CommonSubstructureAndSubstructureSearch) {
  // Theobromine is caffeine less one methyl group: 13 of caffeine's 14 heavy atoms.
  Json const mcs = tool_json("mcs");
  EXPECT_EQ(mcs["size"], 13);
  Json const connected = tool_json("mcs --connected");
  EXPECT_EQ(connected["size"], 13);
  Json const match = tool_json("match");
  EXPECT_TRUE(match["found"].get<bool>());
  EXPECT_EQ(match["pairs"].size(), 5U);
  Json const none = tool_json("match " + data("benzene.sdf") + " " + data("caffeine.sdf"));
  EXPECT_FALSE(none["found"].get<bool>());
  ToolRun const text = tool("match " + data("benzene.sdf") + " " + data("caffeine.sdf"));
  EXPECT_NE(text.out.find("no embedding"), std::string::npos);
}

TEST(Tool, TourRunsEverySubcommand) {
  ToolRun const run = tool("tour");
  EXPECT_EQ(run.status, 0) << run.err;
  for (char const* sub : {"volume", "overlay", "plane", "measure", "contour", "mcs", "match"}) {
    EXPECT_NE(run.out.find(std::string("== structmath ") + sub), std::string::npos) << sub;
  }
  Json const all = tool_json("tour");
  EXPECT_EQ(all.size(), 7U);
}

}  // namespace
