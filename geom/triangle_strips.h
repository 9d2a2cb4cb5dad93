#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "geom/triangulation.h"

/// @file
/// Triangle strips: a list of corners of which each three in a row are a triangle, every second
/// one with its winding turned.

namespace tooldb {

using Strip = std::vector<std::uint32_t>;

/// Covers triangles with few strips. Each triangle is in exactly one, with the winding it has in
/// the list; triangles that use a corner twice are left out.
std::vector<Strip> make_strips(std::span<const IndexTriangle> triangles);

/// The triangles of strips, in order; those that use a corner twice are left out.
std::vector<IndexTriangle> triangles_of(std::span<const Strip> strips);

}  // namespace tooldb
