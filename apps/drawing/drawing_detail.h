#pragma once

#include <optional>
#include <vector>

#include "apps/drawing/drawing_view.h"
#include "apps/drawing/tool_measures.h"

/// @file
/// A cutting end that is too small in the view of the whole tool is drawn once more, larger.

namespace tooldb {

/// The circle in the tool's frame that the detail shows.
struct DetailArea {
  Point2d<double> centre;
  double radius;

  ViewExtent Extent() const;
  bool Holds(const Point2d<double>& point) const;
};

/// The tip of the lowest cutter, when it is too small in `view`.
std::optional<DetailArea> detail_area(const std::vector<Body>& bodies, const Measures& measures,
                                      const DrawingView& view);

/// Takes away what is dimensioned in the detail.
Measures measures_in(const DetailArea& area, Measures& measures);

/// The circle around the area in the view of the whole tool.
void mark_detail(SvgSheet& sheet, const DrawingView& view, const DetailArea& area);
void draw_detail(SvgSheet& sheet, const DrawingView& view, const DetailArea& area,
                 const std::vector<Body>& bodies, const Measures& measures);

}  // namespace tooldb
