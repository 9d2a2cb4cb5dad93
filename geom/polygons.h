#pragma once

#include <optional>
#include <span>
#include <vector>

#include "geom/vector_math.h"

/// @file
/// Set operations on regions of the plane, and their offset (Clipper). Coordinates are rounded to
/// 2^-20 of their unit about the middle of the input, a nanometre for millimetres.

namespace tooldb {

/// The boundary of a region: outer rings counter-clockwise, holes clockwise, the first point not
/// repeated. As input any rings do, crossing or not: a point is inside where the rings wind round
/// it (the direction of a lone ring does not matter).
using Rings = std::vector<Polyline>;

/// Each gives an empty region when nothing is left, and nothing at all when a coordinate is not
/// finite or beyond 1e6, or when Clipper gives up.
std::optional<Rings> unite(const Rings& a, const Rings& b);
std::optional<Rings> intersect(const Rings& a, const Rings& b);
std::optional<Rings> subtract(const Rings& a, const Rings& b);
std::optional<Rings> exclusive_or(const Rings& a, const Rings& b);

/// The region of `rings` with a boundary that neither crosses itself nor repeats a piece.
std::optional<Rings> clean(const Rings& rings);

/// Moves the boundary of a closed contour outwards by `distance`, or inwards when it is negative,
/// whichever way the contour runs and whether or not it crosses itself. Corners stay sharp where
/// that moves them by at most twice the distance; sharper ones are squared off.
/// @return the outer boundaries, counter-clockwise, the first point repeated, the largest first;
///         none when nothing is left, for fewer than three different points, and when a number is
///         not finite or beyond 1e6
std::vector<Polyline> offset_contour(std::span<const Vec2> contour, double distance);

}  // namespace tooldb
