#pragma once

#include <optional>
#include <span>
#include <vector>

#include "geom/vector_math.h"

/// @file
/// Contours made of lines and circular arcs. Lengths carry the contour's own unit; in a tool's
/// outline x is the distance from the axis and y the position along it.

namespace tooldb {

enum class SegmentKind { kLine, kCw, kCcw };

/// One element of a contour, from `start` to `end`.
struct ContourSegment {
  Vec2 start;
  Vec2 end;
  Vec2 center;  ///< of an arc; not used by a line
  SegmentKind kind = SegmentKind::kLine;
};

/// A corner of an outline, to be rounded with `radius`; 0 keeps it sharp.
struct SharpCorner {
  Vec2 point;
  double radius = 0;
};

/// The open outline through `corners` with each inner corner replaced by the arc that touches both
/// its sides; the radii of the first and the last one are not used. Corners that coincide are
/// merged, the larger radius stays.
/// @return nothing when a radius is negative or the arcs of a side's two ends do not fit on it
///         (they may exceed it by 1e-5 of its length, or by 1e-5: both radii then shrink to fit),
///         or for fewer than two different corners
std::optional<std::vector<ContourSegment>> round_corners(std::span<const SharpCorner> corners);

/// The same for the closed outline through `corners`: it starts and ends in the middle of the
/// first corner's arc, or at that corner when it is sharp.
std::optional<std::vector<ContourSegment>> round_closed_corners(
    std::span<const SharpCorner> corners);

/// Angle in radians that an arc sweeps, negative for a clockwise one, a full circle when its ends
/// are equal; 0 for a line.
double swept_angle(const ContourSegment& segment);

/// Number of equal chords that replace an arc so that none departs from it by more than
/// `tolerance`, which counts as at least 1e-9 radius and at most the sagitta of a quarter circle.
/// @param sweep  radians, 0 to 2 pi
/// Sagitta of a chord over the angle a: s = r (1 - cos(a/2)).
int chord_count(double radius, double sweep, double tolerance);

/// The points of a chain of segments, arcs replaced by chords that depart from them by at most
/// `tolerance`. An arc is cut at 0, 90, 180 and 270 degrees, so that its widest and lowest points
/// are among them; between ends of different radius the radius changes linearly. A segment that
/// starts within `tolerance` of the point before goes on from that point.
/// A chain that needs more than 250 000 chords or so gets as many, shared among its arcs: they then
/// depart further.
/// @param tolerance  one that is not positive counts as 1e-3
std::vector<Vec2> flatten(std::span<const ContourSegment> segments, double tolerance);

/// The same for segments that are no chain: each starts with a point of its own.
std::vector<Vec2> flatten_each(std::span<const ContourSegment> segments, double tolerance);

/// Area inside the contour, closed by a straight line; positive when it runs counter-clockwise.
/// Exact for arcs (Green's theorem).
double signed_area(std::span<const ContourSegment> segments);

/// Volume of the body that the contour makes when it turns about the y axis, closed along that
/// axis; positive when the contour runs counter-clockwise. Exact for arcs: V = pi * integral of
/// x^2 dy.
double volume_of_revolution(std::span<const ContourSegment> segments);

}  // namespace tooldb
