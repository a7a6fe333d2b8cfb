// SPDX-License-Identifier: MIT
// Element symbols 1 to 118 and van der Waals radii from Bondi (1964) and Mantina (2009).
#include "structmath/io/elements.hpp"

#include <array>
#include <stdexcept>

namespace structmath::io {

namespace {

constexpr std::array<char const*, 119> symbols = {
    "",   "H",  "He", "Li", "Be", "B",  "C",  "N",  "O",  "F",  "Ne", "Na", "Mg", "Al", "Si",
    "P",  "S",  "Cl", "Ar", "K",  "Ca", "Sc", "Ti", "V",  "Cr", "Mn", "Fe", "Co", "Ni", "Cu",
    "Zn", "Ga", "Ge", "As", "Se", "Br", "Kr", "Rb", "Sr", "Y",  "Zr", "Nb", "Mo", "Tc", "Ru",
    "Rh", "Pd", "Ag", "Cd", "In", "Sn", "Sb", "Te", "I",  "Xe", "Cs", "Ba", "La", "Ce", "Pr",
    "Nd", "Pm", "Sm", "Eu", "Gd", "Tb", "Dy", "Ho", "Er", "Tm", "Yb", "Lu", "Hf", "Ta", "W",
    "Re", "Os", "Ir", "Pt", "Au", "Hg", "Tl", "Pb", "Bi", "Po", "At", "Rn", "Fr", "Ra", "Ac",
    "Th", "Pa", "U",  "Np", "Pu", "Am", "Cm", "Bk", "Cf", "Es", "Fm", "Md", "No", "Lr", "Rf",
    "Db", "Sg", "Bh", "Hs", "Mt", "Ds", "Rg", "Cn", "Nh", "Fl", "Mc", "Lv", "Ts", "Og"};

struct Radius {
  int z;
  double radius;
};

// Bondi (1964), table I, in angstrom.
constexpr Radius bondi[] = {
    {1, 1.20},  {2, 1.40},  {3, 1.82},  {6, 1.70},  {7, 1.55},  {8, 1.52},  {9, 1.47},  {10, 1.54},
    {11, 2.27}, {12, 1.73}, {14, 2.10}, {15, 1.80}, {16, 1.80}, {17, 1.75}, {18, 1.88}, {19, 2.75},
    {28, 1.63}, {29, 1.40}, {30, 1.39}, {31, 1.87}, {33, 1.85}, {34, 1.90}, {35, 1.85}, {36, 2.02},
    {46, 1.63}, {47, 1.72}, {48, 1.58}, {49, 1.93}, {50, 2.17}, {52, 2.06}, {53, 1.98}, {54, 2.16},
    {78, 1.72}, {79, 1.66}, {80, 1.55}, {81, 1.96}, {82, 2.02}, {92, 1.86}};

// Mantina et al. (2009), for main-group elements Bondi did not tabulate.
constexpr Radius mantina[] = {
    {4, 1.53},  {5, 1.92},  {13, 1.84}, {20, 2.31}, {32, 2.11}, {37, 3.03}, {38, 2.49}, {51, 2.06},
    {55, 3.43}, {56, 2.68}, {83, 2.07}, {84, 1.97}, {85, 2.02}, {86, 2.20}, {87, 3.48}, {88, 2.83}};

}  // namespace

int atomic_number(std::string const& symbol) noexcept {
  for (std::size_t z = 1; z < symbols.size(); ++z) {
    if (symbol == symbols[z]) return static_cast<int>(z);
  }
  return 0;
}

int atomic_number_of_label(std::string_view label) noexcept {
  if (label.empty() || label.size() > 3) return 0;
  if (label == "D" || label == "T" || label == "d" || label == "t") return 1;
  std::string symbol(label);
  auto const upper = [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  };
  auto const lower = [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  };
  symbol[0] = upper(symbol[0]);
  for (std::size_t i = 1; i < symbol.size(); ++i) symbol[i] = lower(symbol[i]);
  return atomic_number(symbol);
}

std::string element_symbol(int atomic_number) {
  if (atomic_number < 1 || atomic_number > 118) {
    throw std::out_of_range("element_symbol(): no element has atomic number " +
                            std::to_string(atomic_number));
  }
  return symbols[static_cast<std::size_t>(atomic_number)];
}

std::optional<double> van_der_waals_radius(int atomic_number) noexcept {
  for (Radius const& r : bondi) {
    if (r.z == atomic_number) return r.radius;
  }
  for (Radius const& r : mantina) {
    if (r.z == atomic_number) return r.radius;
  }
  return std::nullopt;
}

}  // namespace structmath::io
