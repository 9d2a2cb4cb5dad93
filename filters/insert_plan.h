#pragma once

#include <optional>
#include <string_view>

#include "filters/cutter_plan.h"
#include "filters/quantity.h"

namespace tooldb {

/// A turning insert shape of ISO 1832.
struct InsertShape {
  char letter;
  CuttingKind kind;
  double angle;  ///< included, of the cutting corner, degrees
};

/// The shape of a letter, upper or lower case; null for any other text.
const InsertShape* insert_shape(std::string_view letter);
/// The shape whose cutting corner has that angle; a rhombic one when none has.
const InsertShape& insert_shape_of_angle(double angle);

/// What a file says about an insert; 0: not given.
struct InsertSize {
  double inscribed_circle = 0;
  double edge_length = 0;
  double corner_radius = 0;
  double angle = 0;  ///< degrees; 0: the shape's own
  double thickness = 0;
};

/// @param size  its radius is cut to what fits
CutterPlan insert_plan(const InsertShape& shape, InsertSize& size, LengthUnit unit);

}  // namespace tooldb
