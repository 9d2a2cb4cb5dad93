#pragma once

#include <string>
#include <vector>

#include "apps/bodies.h"
#include "apps/drawing/svg_sheet.h"

namespace tooldb {

/// What a view shows, in the tool's frame and unit.
struct ViewExtent {
  Extent along;   ///< the tool's axis
  Extent across;  ///< it
};

/// All of the bodies.
ViewExtent extent_of(const std::vector<Body>& bodies);

/// The part of the sheet that the tool is drawn in, and its scale.
class DrawingView {
 public:
  /// Where the tool may be drawn, mm on the paper.
  struct Field {
    PaperPoint corner;  ///< upper left
    double width = 0;
    double height = 0;
  };

  /// @param unit      millimetres per unit of the tool
  /// @param is_lying  the tool's tip points to the left, not down
  DrawingView(const Field& field, const ViewExtent& extent, double unit, bool is_lying);

  /// A point of the tool's frame, x from the axis and y along it, on the paper.
  PaperPoint Paper(const Point2d<double>& point) const;
  /// A length of the tool on the paper, mm.
  double Length(double length) const { return length * scale_ * unit_; }
  double Scale() const { return scale_; }
  /// "2:1"
  std::string ScaleText() const;
  /// True when something is drawn at a height along the tool's axis, or next to it.
  bool ShowsHeight(double height) const;
  bool IsLying() const { return is_lying_; }

  const Extent& Along() const { return extent_.along; }
  const Extent& Across() const { return extent_.across; }

 private:
  double unit_;
  bool is_lying_;
  double scale_ = 1;
  ViewExtent extent_;
  PaperPoint centre_;  // of the extent
};

}  // namespace tooldb
