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

#include "structmath/io/molfile.hpp"
#include "structmath/io/xyz.hpp"
#include "structmath/solids/random_number_generator.hpp"
#include "structmath/solids/sphere.hpp"
#include "structmath/solids/stochastic_volume_calculator.hpp"
#include "structmath/solids/union_solid.hpp"
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

// Six drug-like records, V2000 and V3000 (records 2 and 5), one 2-D (record 4).
std::string const drugs = STRUCTMATH_TEST_ANSWERS_DIR "/io/drugs.sdf";

std::string slurp(std::string const& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

// Compact JSON objects, one per line.
std::vector<Json> json_lines(std::string const& text) {
  std::vector<Json> lines;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) lines.push_back(Json::parse(line));
  return lines;
}

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
  expect_one_line_error(tool(""), 2, "a subcommand is required");
  expect_one_line_error(tool("frobnicate"), 2, "frobnicate");
  expect_one_line_error(tool("--frobnicate"), 2, "not expected: --frobnicate");
  expect_one_line_error(tool("volume --frobnicate"), 2, "not expected: --frobnicate");
  expect_one_line_error(tool("volume --density"), 2, "density");
  expect_one_line_error(tool("volume --density -5"), 2, "density");
  expect_one_line_error(tool("volume --seed 1"), 2, "seed");
  expect_one_line_error(tool("volume --seed 40000 1"), 2,
                        "the first seed must be in 0-31328 and the second in 0-30081");
  expect_one_line_error(tool("volume --seed 1 30082"), 2, "0-30081, found 1 30082");
  expect_one_line_error(tool("volume --record 2 --all " + drugs), 2, "excludes");
  expect_one_line_error(tool("plane - < " + drugs), 2, "needs --format");
  for (char const* level : {"nan", "inf", "-inf"}) {
    expect_one_line_error(tool(std::string("contour --level ") + level), 2,
                          "--level: expected a finite number");
  }
  // Output names are checked before anything is read or computed.
  expect_one_line_error(tool("contour /nonexistent.cube -o s.stl"), 2,
                        "'s.stl' must end in .obj, .ply or .ascii.ply");
  expect_one_line_error(tool("overlay /nonexistent.xyz -o out.pdb"), 2,
                        "'out.pdb' must end in .xyz or .sdf");
  ToolRun const version = tool("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out.rfind("structmath 0.", 0), 0U) << version.out;
  for (char const* sub :
       {"volume", "overlay", "plane", "measure", "contour", "mcs", "match", "tour"}) {
    ToolRun const help = tool(std::string(sub) + " --help");
    EXPECT_EQ(help.status, 0) << sub;
    EXPECT_NE(help.out.find("--json"), std::string::npos) << sub;
  }
  // What mcs computes is said where users look.
  ToolRun const mcs_help = tool("mcs --help");
  for (char const* words :
       {"induced subgraph", "same element", "bond orders ignored", "--connected"}) {
    EXPECT_NE(mcs_help.out.find(words), std::string::npos) << words;
  }
}

TEST(Tool, BadFilesExitWithOneAndAOneLineMessage) {
  for (char const* missing : {"/nonexistent.xyz", "/nonexistent", "/nonexistent.pdb"}) {
    expect_one_line_error(tool(std::string("volume ") + missing), 1,
                          std::string("cannot open ") + missing + ": No such file or directory");
  }
  expect_one_line_error(tool("contour /nonexistent"), 1, "cannot open /nonexistent");
  ScratchFile bad(".xyz");
  std::ofstream(bad.path()) << "2\ntitle\nC 0 0 0\nC 0 x 0\n";
  expect_one_line_error(tool("volume " + bad.path()), 1, ":4: expected a number for y, found 'x'");
  expect_one_line_error(tool("plane " + bad.path()), 1, ":4:");
  ScratchFile unknown(".pdb");
  std::ofstream(unknown.path()) << "ATOM\n";
  expect_one_line_error(tool("measure " + unknown.path()), 1, "unknown molecule format '.pdb'");
  expect_one_line_error(tool("plane --record 9 " + drugs), 1,
                        "holds 6 records, there is no record 9");
  expect_one_line_error(tool("overlay " + data("caffeine.xyz")), 1,
                        "holds one record; give B, or a file of two records");
  expect_one_line_error(tool("overlay " + data("caffeine.xyz") + " " + data("benzene.xyz")), 1,
                        "the molecules have 24 and 12 atoms");
  expect_one_line_error(tool("plane " + data("benzene.xyz") + " --atoms 1,2,40"), 1,
                        "atom 40 does not exist");
  expect_one_line_error(tool("plane " + data("benzene.xyz") + " --atoms 1-3,1-3"), 1,
                        "atom list '1-3,1-3' names atom 1 twice");
  expect_one_line_error(tool("mcs " + data("caffeine.xyz") + " " + data("benzene.sdf")), 1,
                        "needs bonds");
  ScratchFile cube(".cube");
  std::ofstream(cube.path()) << "c1\nc2\n1 0 0 0\n2 1 0 0\n2 0 1 0\n2 0 0 1\n1 0 0 0 0\n1 2 3\n";
  expect_one_line_error(tool("contour " + cube.path()), 1, "expected 8 values, found 3");
}

TEST(Tool, MeasureNamesTheWholeGroupInItsMessages) {
  std::string const caffeine = data("caffeine.xyz");
  expect_one_line_error(tool("measure " + caffeine + " 1-30"), 1,
                        "measure: '1-30': atom 30 does not exist (the molecule has 24 atoms)");
  expect_one_line_error(tool("measure " + caffeine + " 1-1"), 1,
                        "measure: '1-1': names atom 1 twice");
  expect_one_line_error(tool("measure " + caffeine + " 1-2-3-2"), 1,
                        "'1-2-3-2': names atom 2 twice");
  expect_one_line_error(tool("measure " + caffeine + " 1-2-3-4-5"), 1,
                        "'1-2-3-4-5': must name 2, 3 or 4 atoms");
  expect_one_line_error(tool("measure " + caffeine + " C1-C2"), 1, "'C1-C2': atom 1 is N, not C");
  expect_one_line_error(tool("measure " + caffeine + " 1-x"), 1, "'1-x': expected atom numbers");
  // Four atoms of a straight line have no torsion.
  ScratchFile line(".xyz");
  std::ofstream(line.path()) << "4\nline\nC 0 0 0\nC 1 0 0\nC 2 0 0\nC 3 1 0\n";
  expect_one_line_error(tool("measure " + line.path() + " 1-2-3-4"), 1,
                        "'1-2-3-4': the torsion is undefined");
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
  EXPECT_NE(tool_json("volume --density 400 --seed 1 2")["volume"].get<double>(), volume);
}

TEST(Tool, VolumeIsTheLibrarysEstimateToTheLastBitWithIntegerCounts) {
  ToolRun const run = tool("volume --json --density 700 --seed 11 22");
  ASSERT_EQ(run.status, 0) << run.err;
  Json const r = Json::parse(run.out);
  EXPECT_TRUE(r["samples"].is_number_integer()) << run.out;
  EXPECT_TRUE(r["hits"].is_number_integer()) << run.out;
  EXPECT_EQ(run.out.find("samples\": 369109."), std::string::npos);
  // The same spheres through the library's own entry point.
  structmath::CompositeSolid::SolidSet spheres;
  auto const molecule = structmath::io::read_xyz(data("caffeine.xyz")).front();
  for (auto const& atom : molecule.atoms) {
    double const radius = atom.element == "H"   ? 1.20
                          : atom.element == "C" ? 1.70
                          : atom.element == "N" ? 1.55
                                                : 1.52;  // Bondi
    spheres.insert(structmath::make_handle<structmath::Sphere>(atom.position, radius));
  }
  double const expected = structmath::StochasticVolumeCalculator::get_solid_volume(
      structmath::UnionSolid(spheres), 700,
      structmath::make_handle<structmath::RandomNumberGenerator>(11, 22));
  EXPECT_EQ(r["volume"].get<double>(), expected);  // full precision survives the JSON
  // A run beyond 1e10 samples is refused before it starts, with the count it would take.
  expect_one_line_error(tool("volume --density 1000000000"), 2, "would take 369109463902 samples");
}

TEST(Tool, OverlayOfConformersAndOfAMoleculeWithItself) {
  Json const r = tool_json("overlay");
  EXPECT_GT(r["rms"].get<double>(), 0.1);  // anti and gauche butane differ
  EXPECT_GT(r["maximum_deviation"].get<double>(), r["rms"].get<double>());
  EXPECT_EQ(r["moving"]["record"], 2);
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

TEST(Tool, OverlayRefusesPairsOfDifferentElementsAndWritesSdWithBonds) {
  // Theobromine's first atoms against caffeine's: same count after cutting, other elements.
  ScratchFile a(".xyz"), b(".xyz");
  std::ofstream(a.path()) << "3\na\nO 0 0 0\nC 1.2 0 0\nN 2 1 0\n";
  std::ofstream(b.path()) << "3\nb\nO 0 0 1\nN 1.2 0 1\nC 2 1 1\n";
  expect_one_line_error(tool("overlay " + a.path() + " " + b.path()), 1,
                        "atom 2 is C in the target but N in the moving molecule");
  EXPECT_EQ(tool("overlay --ignore-elements " + a.path() + " " + b.path()).status, 0);

  // Caffeine onto a moved copy of itself, written as SD: B's bonds with A's coordinates.
  ScratchFile out(".SDF");
  Json const r = tool_json("overlay " + data("caffeine.sdf") + " " + data("caffeine.sdf") + " -o " +
                           out.path());
  EXPECT_NEAR(r["rms"].get<double>(), 0.0, 1e-9);
  auto const written = structmath::io::read_sdf(out.path()).front();
  auto const original = structmath::io::read_sdf(data("caffeine.sdf")).front();
  ASSERT_EQ(written.bonds.size(), original.bonds.size());
  for (std::size_t i = 0; i < original.bonds.size(); ++i) {
    EXPECT_EQ(written.bonds[i].first, original.bonds[i].first);
    EXPECT_EQ(written.bonds[i].order, original.bonds[i].order);
  }
  EXPECT_TRUE(equals(written.atoms[7].position, original.atoms[7].position, 1e-4));
}

TEST(Tool, PlaneDistancesArePositiveOnTheSideTheNormalPointsTo) {
  Json const r = tool_json("plane " + drugs + " --record 1 --atoms 5-10");
  auto const aspirin = structmath::io::read_sdf(drugs).front();
  double const d = r["distance_from_origin"].get<double>();
  structmath::Vector3D const n(r["normal"][0].get<double>(), r["normal"][1].get<double>(),
                               r["normal"][2].get<double>());
  ASSERT_EQ(r["distances"].size(), aspirin.atoms.size());
  for (std::size_t i = 0; i < aspirin.atoms.size(); ++i) {
    double const expected = n * aspirin.atoms[i].position.vector() - d;
    EXPECT_NEAR(r["distances"][i]["distance"].get<double>(), expected, 1e-12) << i;
  }
  EXPECT_EQ(r["fitted_atoms"], 6);
  EXPECT_NEAR(r["rms_distance"].get<double>(), 0.0, 0.02);  // the benzene ring
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

TEST(Tool, RecordsAreChosenOrEachReportedInTurn) {
  // --record picks one; without it the first is used and stderr says there are more.
  Json const third = tool_json("plane --record 3 " + drugs);
  EXPECT_EQ(third["title"], "glycine zwitterion");
  ToolRun const first = tool("plane " + drugs);
  EXPECT_EQ(first.status, 0);
  EXPECT_NE(first.err.find("holds more than one record"), std::string::npos) << first.err;
  // V3000 records are read like the others: ibuprofen's 13 heavy atoms with itself.
  Json const mcs = tool_json("mcs --record-a 2 --record-b 2 " + drugs + " " + drugs);
  EXPECT_EQ(mcs["size"], 15);

  ToolRun const volumes = tool("volume --all --json --density 20 " + drugs);
  EXPECT_EQ(volumes.status, 0) << volumes.err;
  auto const lines = json_lines(volumes.out);
  ASSERT_EQ(lines.size(), 6U);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(lines[i]["record"], i + 1);
    EXPECT_GT(lines[i]["volume"].get<double>(), 50.0);
  }
  EXPECT_EQ(lines[4]["title"], "choline cation");

  // Screening: a benzene ring is in aspirin, ibuprofen and paracetamol, not in glycine,
  // choline or the pyridine of nicotine.
  ToolRun const screen = tool("match " + data("benzene.sdf") + " " + drugs + " --all");
  EXPECT_EQ(screen.status, 0);
  EXPECT_EQ(screen.out,
            "1\thit\taspirin\n2\thit\tibuprofen\n3\tmiss\tglycine zwitterion\n"
            "4\thit\tparacetamol 2-D\n5\tmiss\tcholine cation\n6\tmiss\tnicotine\n");
  ToolRun const measures = tool("measure --all " + drugs + " 1-2");
  EXPECT_EQ(std::count(measures.out.begin(), measures.out.end(), '='), 12) << measures.out;
}

TEST(Tool, ABadRecordInTheMiddleIsReportedAndTheRunGoesOn) {
  std::string const text = slurp(drugs);
  std::size_t const second = text.find("$$$$\n") + 5;
  std::size_t const third = text.find("$$$$\n", second) + 5;
  // Record 2 loses a line of its atom block.
  std::string damaged = text;
  std::size_t const atom_line = damaged.find("M  V30 3 ", second);
  damaged.erase(atom_line, damaged.find('\n', atom_line) + 1 - atom_line);
  ASSERT_LT(atom_line, third);
  ScratchFile library(".sdf");
  std::ofstream(library.path()) << damaged;

  ToolRun const text_run = tool("match " + data("benzene.sdf") + " " + library.path() + " --all");
  EXPECT_EQ(text_run.status, 1);
  EXPECT_EQ(text_run.out,
            "1\thit\taspirin\n3\tmiss\tglycine zwitterion\n4\thit\tparacetamol 2-D\n"
            "5\tmiss\tcholine cation\n6\tmiss\tnicotine\n");
  EXPECT_NE(text_run.err.find(library.path() + ":"), std::string::npos) << text_run.err;
  EXPECT_NE(text_run.err.find(": record 2: found 32 atoms, the counts line says 33"),
            std::string::npos)
      << text_run.err;
  ToolRun const json_run = tool("volume --all --json --density 10 " + library.path());
  EXPECT_EQ(json_run.status, 1);
  auto const lines = json_lines(json_run.out);
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[1]["record"], 2);
  EXPECT_NE(lines[1]["error"].get<std::string>().find("record 2"), std::string::npos);
  EXPECT_EQ(lines[2]["title"], "glycine zwitterion");
}

TEST(Tool, FormatsGoByExtensionInAnyCaseOrByTheFormatOption) {
  ScratchFile upper(".SDF"), upper_xyz(".XYZ"), sd(".sd"), plain("");
  std::ofstream(upper.path()) << slurp(data("benzene.sdf"));
  std::ofstream(sd.path()) << slurp(data("benzene.sdf"));
  std::ofstream(upper_xyz.path()) << slurp(data("benzene.xyz"));
  std::ofstream(plain.path()) << slurp(data("benzene.xyz"));
  for (std::string const& path : {upper.path(), sd.path(), upper_xyz.path()}) {
    EXPECT_EQ(tool_json("plane " + path)["fitted_atoms"], 12) << path;
  }
  expect_one_line_error(tool("plane " + plain.path()), 1, "unknown molecule format ''");
  EXPECT_EQ(tool_json("plane --format xyz " + plain.path())["fitted_atoms"], 12);
  Json const piped = tool_json("plane - --format sdf --record 1 < " + drugs);
  EXPECT_EQ(piped["file"], "<stdin>");
  EXPECT_EQ(piped["title"], "aspirin");
  ToolRun const screened =
      tool("match " + data("benzene.sdf") + " - --format sdf --all < " + drugs);
  EXPECT_EQ(std::count(screened.out.begin(), screened.out.end(), '\n'), 6);
  // Labels as other programs write them: lower case, deuterium.
  ScratchFile labels(".xyz");
  std::ofstream(labels.path())
      << "3\nheavy water\no 0 0 0.1173\nD 0 0.7572 -0.4692\nd 0 -0.7572 -0.4692\n";
  Json const water = tool_json("measure " + labels.path() + " 2-1-3 O1-H2");
  EXPECT_NEAR(water["measurements"][0]["value"].get<double>(), 104.48, 0.01);
  EXPECT_EQ(water["measurements"][1]["atoms"], "O1-H2");
}

TEST(Tool, MeasureButaneInternalCoordinates) {
  Json const r =
      tool_json("measure " + data("butane_conformers.xyz") + " --record 1 1-2 1-2-3 1-2-3-4 C1-C4");
  // Built with C-C 1.53 A, C-C-C 112 degrees and an anti torsion.
  EXPECT_NEAR(r["measurements"][0]["value"].get<double>(), 1.53, 1e-6);
  EXPECT_NEAR(r["measurements"][1]["value"].get<double>(), 112.0, 1e-4);
  EXPECT_NEAR(std::fabs(r["measurements"][2]["value"].get<double>()), 180.0, 1e-4);
  EXPECT_EQ(r["measurements"][2]["atoms"], "C1-C2-C3-C4");
}

TEST(Tool, ContourOfTheWaterDensityIsClosedAndWritesFiles) {
  Json const r = tool_json("contour --level 0.05");
  EXPECT_TRUE(r["closed"].get<bool>());
  EXPECT_TRUE(r["manifold"].get<bool>());
  EXPECT_EQ(r["euler_characteristic"], 2);
  EXPECT_GT(r["triangles"].get<int>(), 100);
  EXPECT_GT(r["enclosed_volume"].get<double>(), 0.0);
  Json const tetra = tool_json("contour --level 0.05 --tetrahedra");
  EXPECT_NEAR(tetra["enclosed_volume"].get<double>(), r["enclosed_volume"].get<double>(),
              0.05 * r["enclosed_volume"].get<double>());
  ScratchFile obj(".obj");
  ScratchFile ply(".PLY");
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

// The cube with every value and the level multiplied by 10^shift, written by moving the
// decimal exponents of its text, so the values stay what the file says.
std::string scaled_cube(int shift) {
  std::string text = slurp(data("water_density.cube"));
  std::size_t line_start = 0;
  int header_lines = 6;  // two comments, the atom count, three axes, then the atoms
  for (int line = 0; line < header_lines; ++line) {
    if (line == 2) header_lines += std::stoi(text.substr(line_start));
    line_start = text.find('\n', line_start) + 1;
  }
  std::string out = text.substr(0, line_start);
  std::istringstream values(text.substr(line_start));
  std::string value;
  int n = 0;
  while (values >> value) {
    std::size_t const e = value.find('E');
    out += value.substr(0, e + 1) + std::to_string(std::stoi(value.substr(e + 1)) + shift);
    out += ++n % 6 == 0 ? '\n' : ' ';
  }
  return out + '\n';
}

TEST(Tool, ContourDoesNotDependOnTheUnitsOfTheValues) {
  for (char const* method : {"", " --tetrahedra"}) {
    std::vector<Json> results;
    for (int shift : {-4, 0, 4}) {
      ScratchFile cube(".cube");
      std::ofstream(cube.path()) << scaled_cube(shift);
      std::string const level = "2e" + std::to_string(shift - 3);  // 0.002 at shift 0
      results.push_back(tool_json("contour " + cube.path() + " --level " + level + method));
    }
    for (Json const& r : results) {
      EXPECT_TRUE(r["closed"].get<bool>()) << method << r.dump();
      EXPECT_TRUE(r["manifold"].get<bool>()) << method;
      EXPECT_EQ(r["nodes"], results[1]["nodes"]) << method;
      EXPECT_EQ(r["triangles"], results[1]["triangles"]) << method;
      EXPECT_NEAR(r["area"].get<double>(), results[1]["area"].get<double>(),
                  1e-9 * results[1]["area"].get<double>())
          << method;
      EXPECT_NEAR(r["enclosed_volume"].get<double>(), results[1]["enclosed_volume"].get<double>(),
                  1e-9 * results[1]["enclosed_volume"].get<double>())
          << method;
    }
  }
}

TEST(Tool, CommonSubstructureAndSubstructureSearch) {
  // Theobromine is caffeine less one methyl group: 13 of caffeine's 14 heavy atoms.
  Json const mcs = tool_json("mcs");
  EXPECT_EQ(mcs["size"], 13);
  int previous = 0;
  for (auto const& pair : mcs["pairs"]) {
    int const atom = pair["first_atom"].get<int>();
    EXPECT_GT(atom, previous);  // in the order of the first molecule's atoms
    previous = atom;
    EXPECT_EQ(pair["first_label"].get<std::string>().substr(1), std::to_string(atom));
    EXPECT_GE(pair["second_atom"].get<int>(), 1);
  }
  Json const connected = tool_json("mcs --connected");
  EXPECT_EQ(connected["size"], 13);
  Json const match = tool_json("match");
  EXPECT_TRUE(match["found"].get<bool>());
  EXPECT_EQ(match["pairs"].size(), 5U);
  EXPECT_EQ(match["pairs"][0]["pattern_atom"], 1);
  Json const none = tool_json("match " + data("benzene.sdf") + " " + data("caffeine.sdf"));
  EXPECT_FALSE(none["found"].get<bool>());
  ToolRun const text = tool("match " + data("benzene.sdf") + " " + data("caffeine.sdf"));
  EXPECT_NE(text.out.find("no embedding"), std::string::npos);
}

TEST(Tool, McsReportsAnUnprovenMatchWhenTimeRunsOutAndCanMatchBondOrders) {
  ToolRun const rushed = tool("mcs --timeout 0");
  EXPECT_EQ(rushed.status, 0) << rushed.err;
  EXPECT_NE(rushed.out.find("not proven maximum"), std::string::npos) << rushed.out;
  EXPECT_FALSE(tool_json("mcs --timeout 0")["proven_maximum"].get<bool>());
  EXPECT_TRUE(tool_json("mcs")["proven_maximum"].get<bool>());
  // Ethene and ethane: two carbons each, joined by a double and by a single bond.
  auto const ethane_like = [](int order) {
    return "x\n  t\n\n  2  1  0  0  0  0  0  0  0  0999 V2000\n"
           "    0.0000    0.0000    0.0000 C   0  0  0  0  0  0  0  0  0  0  0  0\n"
           "    1.3000    0.0000    0.0000 C   0  0  0  0  0  0  0  0  0  0  0  0\n"
           "  1  2  " +
           std::to_string(order) + "  0\nM  END\n";
  };
  ScratchFile ethene(".mol"), ethane(".mol");
  std::ofstream(ethene.path()) << ethane_like(2);
  std::ofstream(ethane.path()) << ethane_like(1);
  EXPECT_EQ(tool_json("mcs " + ethene.path() + " " + ethane.path())["size"], 2);
  EXPECT_EQ(tool_json("mcs --bond-orders " + ethene.path() + " " + ethane.path())["size"], 1);
  expect_one_line_error(tool("mcs --timeout -1"), 2, "--timeout");
}

TEST(Tool, TourRunsEverySubcommand) {
  ToolRun const run = tool("tour");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  for (char const* sub : {"volume", "overlay", "plane", "measure", "contour", "mcs", "match"}) {
    EXPECT_NE(run.out.find(std::string("== structmath ") + sub), std::string::npos) << sub;
  }
  Json const all = tool_json("tour");
  EXPECT_EQ(all.size(), 7U);
}

}  // namespace
