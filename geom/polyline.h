#pragma once

#include <span>

#include "geom/vector_math.h"

/// @file
/// Lists of points in the plane: area, and fewer points for the same shape.

namespace tooldb {

/// Area by the shoelace rule, closed by a straight line; positive when the points run
/// counter-clockwise, 0 for fewer than three.
double signed_area(std::span<const Vec2> points);

/// The points that are needed to stay within `tolerance` of every point left out (Douglas and
/// Peucker). The first and the last one stay.
Polyline thin_out(std::span<const Vec2> points, double tolerance);

/// Drops inner points until nothing changes: those nearer to the point before them than a tenth
/// of `tolerance` (the last of them also: to the end), and those where the line turns by less
/// than 0.01 degree, each measured against its present neighbours. The first and the last point
/// stay; a contour of at most two points is left alone.
void simplify(Polyline& points, double tolerance);

}  // namespace tooldb
