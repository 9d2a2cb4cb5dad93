#pragma once

#include <cmath>
#include <numbers>

/// @file
/// Trigonometry of angles in degrees, and of cones.

namespace tooldb {

inline constexpr double kDegree = std::numbers::pi / 180;

inline double sin_deg(double angle) { return std::sin(angle * kDegree); }
inline double cos_deg(double angle) { return std::cos(angle * kDegree); }
inline double tan_deg(double angle) { return std::tan(angle * kDegree); }

/// Height over which a cone gains `radius`, its side `angle` degrees from the axis; exactly 0 for
/// a right angle.
inline double cone_height(double radius, double angle) {
  return angle == 90 ? 0 : radius / tan_deg(angle);
}

/// Whether a length is what rounding leaves of 0.
inline bool is_zero(double length) { return std::abs(length) <= 1e-6; }

}  // namespace tooldb
