#pragma once

#include <span>
#include <vector>

#include "geom/vector_math.h"

namespace tooldb {

/// How an outline is turned into a mesh.
struct Revolution {
  /// How far a facet may lie inside the round surface; the outline's unit. At most the largest
  /// radius and at least a millionth of it are used.
  double chord_tolerance = 0.01;
  /// Where the body begins, degrees about Z from X towards Y.
  double start_deg = 0;
  /// How far it goes round, degrees; 360 or more is the whole body.
  double span_deg = 360;
};

/// Number of facets round a full circle: the fewest that keep to the tolerance, a multiple of 4,
/// from 12 to 2224.
int ring_count(double largest_radius, double chord_tolerance);

/// Appends the body that `outline` makes when it turns about the Z axis: x is the distance from
/// the axis, y becomes Z. The outline is open, its ends joined to the axis at their height, or a
/// closed ring off the axis (the first point repeated); either direction will do. Facets face
/// outwards and corners that meet are the same numbers, so that every edge is shared. A section of
/// the body is closed by two flat caps.
/// @return false, and nothing appended, when a number is not finite, an x is below -1e-6, the
///         outline encloses nothing, the span is not positive, or the caps of a section cannot be
///         filled
bool revolve(std::span<const Vec2> outline, const Revolution& how, std::vector<Facet>& mesh);

}  // namespace tooldb
