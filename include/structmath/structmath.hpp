// SPDX-License-Identifier: MIT
// Every public header of the structmath core library.
#pragma once

#include "structmath/core/archive.hpp"
#include "structmath/core/handle.hpp"
#include "structmath/core/text_conversion.hpp"
#include "structmath/core/vasc_log.hpp"
#include "structmath/numeric/angle.hpp"
#include "structmath/numeric/array.hpp"
#include "structmath/numeric/fraction.hpp"
#include "structmath/numeric/linear_algebra.hpp"
#include "structmath/numeric/matrix.hpp"
#include "structmath/numeric/point.hpp"
#include "structmath/numeric/tolerance.hpp"
#include "structmath/numeric/vector.hpp"
#include "structmath/statistics/mean.hpp"
#include "structmath/statistics/normal_distribution.hpp"
#include "structmath/statistics/range_limit.hpp"
#include "structmath/statistics/uncertain_value.hpp"
#include "structmath/statistics/uncertainty.hpp"
