// SPDX-License-Identifier: MIT
// Solid: the defaults of the optional operations.
#include "structmath/solids/solid.hpp"

namespace structmath {

Solid::~Solid() = default;

void Solid::print(std::ostream& /*os*/) const {}
void Solid::write(Archive& /*archive*/) const {}
void Solid::read(Archive& /*archive*/) {}

}  // namespace structmath
