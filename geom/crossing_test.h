#pragma once

#include <span>

#include "geom/vector_math.h"

namespace tooldb {

/// Whether a closed contour certainly neither crosses nor touches itself; the first point may be
/// repeated. Fast rather than complete: it may answer no for a contour that does not cross, when
/// pieces of it come very near or when many of its edges are long.
bool surely_does_not_cross(std::span<const Vec2> contour);

}  // namespace tooldb
