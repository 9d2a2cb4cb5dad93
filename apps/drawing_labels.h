#pragma once

#include <string>
#include <vector>

#include "apps/drawn_parts.h"

namespace tooldb {

/// A text that points at a place of the tool.
struct Callout {
  std::string text;
  DrawnPart::Point target;  ///< in the tool's unit and frame
};

/// A length along the axis, measured from the tip.
struct AxialLength {
  std::string meaning;
  double end;  ///< where it ends, along the axis
};

/// What a drawing measures, in the tool's unit and frame.
struct DrawingLabels {
  std::vector<Callout> callouts;
  std::vector<AxialLength> lengths;  ///< shortest first, each end once
  double tip = 0;                    ///< the lowest point of what cuts, or of the whole
  bool has_gauge_line = false;
  double gauge_line = 0;
  std::vector<DrawnPart::Point> programmed_points;
};

DrawingLabels labels_of(const ToolView& view);

}  // namespace tooldb
