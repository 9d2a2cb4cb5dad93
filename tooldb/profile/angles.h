#pragma once

#include <cmath>
#include <numbers>

#include "geom/euler_angles.h"

/// @file
/// What the drawing of bodies takes from trigonometry. Angles in degrees.

namespace tooldb {

inline constexpr double kDegree = std::numbers::pi / 180;

inline double tangent(double angle) { return std::tan(angle * kDegree); }

/// Height over which a cone gains `radius`, its side `angle` degrees from the axis; exactly 0 for
/// a right angle.
inline double cone_height(double radius, double angle) {
  return angle == 90 ? 0 : radius / tangent(angle);
}

}  // namespace tooldb
