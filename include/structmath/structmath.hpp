// SPDX-License-Identifier: MIT
// Every public header of the structmath core library.
#pragma once

#include "structmath/core/archive.hpp"
#include "structmath/core/handle.hpp"
#include "structmath/core/text_conversion.hpp"
#include "structmath/core/vasc_log.hpp"
