#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "geom/polygons.h"

namespace tooldb {

/// Corners of a triangle as indices of points.
using IndexTriangle = std::array<std::uint32_t, 3>;

/// Cuts a region into triangles whose corners are the points of its rings (the GLU tessellator).
/// @param rings  as `clean` gives them: outer rings counter-clockwise, holes clockwise, nothing
///               crossing
/// @return counter-clockwise triangles, their corners counted through all rings in order; nothing
///         when the rings cross, so that a corner would be needed that is none of their points
std::optional<std::vector<IndexTriangle>> triangulate(const Rings& rings);

}  // namespace tooldb
