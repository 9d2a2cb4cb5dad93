#pragma once

#include <optional>
#include <span>

#include "geom/vector_math.h"

/// @file
/// Lines through points, so that the sum of the squared distances is least (the distances at right
/// angles to the line, so the result does not depend on the axes).

namespace tooldb {

struct FittedLine2d {
  Vec2 point;            ///< the mean of the points
  Vec2 direction;        ///< one long; its larger component is positive
  double deviation = 0;  ///< root of the mean squared distance
};
struct FittedLine3d {
  Vec3 point;
  Vec3 direction;
  double deviation = 0;
};

/// @return nothing for fewer than two different points, when two directions are equally good (the
///         corners of a square), or for a point that is not finite
std::optional<FittedLine2d> fit_line(std::span<const Vec2> points);
std::optional<FittedLine3d> fit_line(std::span<const Vec3> points);

}  // namespace tooldb
