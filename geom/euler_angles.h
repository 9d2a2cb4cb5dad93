#pragma once

#include "tooldb/geometry.h"

/// @file
/// Placements as position and three angles.

namespace tooldb {

/// A rotation about Z, then about the turned Y, then about the twice turned X: R = Rz Ry Rx.
/// Degrees.
struct EulerAngles {
  double z = 0;
  double y = 0;
  double x = 0;
};

/// The angles of a placement's rotation: Y in -90..90, the others above -180 up to 180. Where Y is
/// a right angle the other two turn about one axis, and Z is 0. An X that is nothing but the
/// rounding of cancelling terms is 0 or 180. No turn about Y is -0.
EulerAngles split_zyx(const Transformation<double>& placement);

/// The placement of the rotation `angles` and the position `origin`. Multiples of 90 degrees come
/// out exact. Angles that `split_zyx` gave, rounded to six digits, split into themselves again.
Transformation<double> join_zyx(const EulerAngles& angles, const Vec3d<double>& origin);

/// Sine of an angle in degrees, exact for multiples of 90; an angle that is not finite gives NaN.
double sin_degrees(double angle);
double cos_degrees(double angle);

}  // namespace tooldb
