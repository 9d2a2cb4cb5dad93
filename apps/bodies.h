#pragma once

#include <string>
#include <vector>

#include "tooldb/composite_item.h"
#include "tooldb/geometry.h"

/// @file
/// The bodies of a tool: what its cutters, shanks and holders look like, and where they stand.

namespace tooldb {

using Contour = std::vector<Point2d<double>>;

struct Body {
  enum class Role { kCutter, kShank, kHolder };

  tdbItem* item;
  Role role;
  bool is_revolved;               ///< else it is a plate in the plane of the tool's axis
  Transformation<double> place;   ///< in the frame of the tool
  std::vector<Contour> contours;  ///< (distance from its axis, position along it); none if refused
  std::string refusal;            ///< why it has no outline

  /// Where a point of a contour stands in the tool's frame: x to the right, y along the axis. A
  /// negative distance is the other side of the axis.
  Point2d<double> Placed(const Point2d<double>& point) const;
  /// True when its axis lies in, or parallel to, the tool's.
  bool IsAlongAxis() const;
};

/// An interval.
struct Extent {
  double low = 0;
  double high = 0;
  double Size() const { return high - low; }
};

/// A chord tolerance that shows the smallest tools, in the unit of `root`: 0.01 mm.
double fine_tolerance(const tdbItem& root);

/// Raises `UsageError` for a tolerance that is not above 0.
void require_tolerance(double tolerance);

/// The bodies below `root`, whose placements must be up to date, in list order.
/// @param tolerance  chord tolerance of arcs, the tool's unit, > 0
std::vector<Body> bodies_of(tdbCompositeItem& root, double tolerance);

/// Why bodies have no outline, a line each: "tool 'T1', item 'Cutter': DIAMETER must be positive".
/// @param owner  "tool 'T1'"
std::vector<std::string> refusals(const std::string& owner, const std::vector<Body>& bodies);

/// Where a body reaches along the tool's axis, and its largest distance from it.
Extent axial_extent(const Body& body);
double largest_radius(const Body& body);

/// The contours of a body where they stand in the tool's frame.
std::vector<Contour> placed_contours(const Body& body);

/// The largest distance of placed contours from the axis at a height; 0 where they are not.
double radius_at(const std::vector<Contour>& placed, double height);

}  // namespace tooldb
