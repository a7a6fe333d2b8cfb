// SPDX-License-Identifier: MIT
// Solid: the abstract region of space that answers containment and a bounding box.
#pragma once

#include <iosfwd>

#include "structmath/core/handle.hpp"
#include "structmath/export.hpp"

namespace structmath {

class Archive;
class Box;
class Point;

/// A region of three-dimensional space, held and shared through THandle<Solid>.
///
/// Everything that samples or integrates over a region uses only bounding_box() and
/// contains(). print, write and read do nothing unless a solid overrides them.
class STRUCTMATH_API Solid {
 public:
  virtual ~Solid();

  /// An axis-aligned box enclosing the solid, freshly allocated for the caller.
  /// Composites merge into the box they receive, so it must never be shared state.
  virtual THandle<Box> bounding_box() const = 0;
  /// Whether the point lies in the solid.
  virtual bool contains(Point const& p) const = 0;
  virtual void print(std::ostream& os) const;
  virtual void write(Archive& archive) const;
  virtual void read(Archive& archive);

 protected:
  Solid() = default;
  Solid(Solid const&) = default;
  Solid& operator=(Solid const&) = default;
};

}  // namespace structmath
