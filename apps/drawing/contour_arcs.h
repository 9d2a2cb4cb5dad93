#pragma once

#include <string_view>
#include <vector>

#include "tooldb/geometry.h"

namespace tooldb {

/// An arc of a contour text.
struct ContourArc {
  Point2d<double> start;
  Point2d<double> end;
  Point2d<double> centre;
  bool is_clockwise = false;

  double Radius() const;
  /// Half-way along the arc.
  Point2d<double> Middle() const;
};

/// The arcs of a contour text, in order; what is not well-formed is passed over.
std::vector<ContourArc> contour_arcs(std::string_view contour_xml);

}  // namespace tooldb
