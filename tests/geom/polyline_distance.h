#pragma once

#include <algorithm>
#include <limits>

#include "geom/vector_math.h"

namespace tooldb {

/// Distance of a point from the nearest place of a polyline of at least two points.
inline double distance_to_line(Vec2 p, const Polyline& line) {
  double best = std::numeric_limits<double>::infinity();
  for (std::size_t i = 1; i < line.size(); ++i) {
    const Vec2 along = line[i] - line[i - 1];
    const double square = dot(along, along);
    const double t = square > 0 ? std::clamp(dot(p - line[i - 1], along) / square, 0.0, 1.0) : 0;
    best = std::min(best, distance(p, line[i - 1] + t * along));
  }
  return best;
}

}  // namespace tooldb
