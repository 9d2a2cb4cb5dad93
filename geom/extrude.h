#pragma once

#include <span>
#include <vector>

#include "geom/vector_math.h"

namespace tooldb {

/// Appends the body that a closed outline in the XZ plane (the points' x and y) makes when it is
/// drawn out along Y. The outline may run either way and cross itself; the first point may be
/// repeated. Facets face outwards and every edge is shared.
/// @return false, and nothing appended, when y_max <= y_min, when the outline encloses nothing, or
///         when a number is not finite or beyond 1e6
bool extrude(std::span<const Vec2> outline, double y_min, double y_max, std::vector<Facet>& mesh);

}  // namespace tooldb
