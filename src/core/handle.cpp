// SPDX-License-Identifier: MIT
// The reaction of every handle to being dereferenced while empty.
#include "structmath/core/handle.hpp"

#include <stdexcept>

namespace structmath {

void THandleCommon::null_handle_error() {
  throw std::runtime_error("THandle: dereferenced an empty handle");
}

}  // namespace structmath
