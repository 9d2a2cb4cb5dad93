#pragma once

#include <vector>

#include "geom/vector_math.h"

namespace tooldb {

/// A straight piece of a contour.
struct LineSegment {
  Vec2 from;
  Vec2 to;
};

/// How loose ends are joined.
struct LoopJoining {
  double grid = 0.01;    ///< ends nearer than this belong together
  double max_gap = 1;    ///< wider gaps stay open
  int max_steps = 5000;  ///< largest number of gaps wider than `grid` that are closed
};

/// Puts segments end to end. Ends of equal coordinates, one that arrives and one that leaves, are
/// joined first; then loose ends of either kind, the nearest first.
/// @return the closed loops, the first point not repeated, in the order of their first segments;
///         chains that stay open are left out
std::vector<Polyline> build_loops(const std::vector<LineSegment>& segments,
                                  const LoopJoining& joining);

}  // namespace tooldb
