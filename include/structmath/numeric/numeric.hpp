// SPDX-License-Identifier: MIT
// The numeric foundation: tolerances, angles, vectors, points, matrices, linear algebra.
#pragma once

#include "structmath/numeric/angle.hpp"
#include "structmath/numeric/array.hpp"
#include "structmath/numeric/linear_algebra.hpp"
#include "structmath/numeric/matrix.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/tolerance.hpp"
#include "structmath/numeric/vector.hpp"
