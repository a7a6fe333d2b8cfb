// SPDX-License-Identifier: MIT
// The chemical elements: symbols, atomic numbers and van der Waals radii.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "structmath/io/export.hpp"

namespace structmath::io {

/// Atomic number of a symbol in canonical case ("C", "Cl", "Og"), or 0 when the text
/// is not an element symbol. Symbols are case-sensitive: "CL" is not chlorine.
STRUCTMATH_IO_API int atomic_number(std::string const& symbol) noexcept;

/// Atomic number of an atom label as files write it: a symbol in any case ("C", "c",
/// "CL", "cl"), with the hydrogen isotopes "D" and "T" read as hydrogen; 0 when the
/// label is not an element.
STRUCTMATH_IO_API int atomic_number_of_label(std::string_view label) noexcept;

/// The symbol of atomic number 1 to 118; throws std::out_of_range otherwise.
STRUCTMATH_IO_API std::string element_symbol(int atomic_number);

/// Van der Waals radius in angstrom. Values from A. Bondi, J. Phys. Chem. 68 (1964)
/// 441-451, for the elements he tabulated; for the other main-group elements from
/// M. Mantina et al., J. Phys. Chem. A 113 (2009) 5806-5812. Empty for elements that
/// neither source covers (most transition metals, lanthanides, actinides but U).
STRUCTMATH_IO_API std::optional<double> van_der_waals_radius(int atomic_number) noexcept;

}  // namespace structmath::io
