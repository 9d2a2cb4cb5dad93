#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "filters/cutter_plan.h"
#include "filters/entry_builder.h"
#include "filters/quantity.h"

/// @file
/// The shapes of FreeCAD's tool bits: which parameters each has, and which cutter it is.

namespace tooldb {

/// All that a bit's parameters can say; the tool's unit and degrees, 0: not given.
struct BitSize : CutterSize {
  double shank_diameter = 0;
  double overall = 0;
  double stickout = 0;
  double included_angle = 0;  ///< of a cone or a tooth
  double flat_radius = 0;
  double ball_diameter = 0;
  double tip_radius = 0;
  double neck_length = 0;
  double edge_length = 0;
};

/// Where the value of a parameter goes.
struct BitField {
  std::string_view name;  ///< lower case
  double BitSize::*target;
  Dimension dimension = Dimension::kLength;
};

/// Completes sizes from what the shape gives in its own way; remarks go to the report.
using BitAdjustment = void (*)(BitSize& size, std::vector<std::string>& remarks);

struct BitShape {
  std::string_view name;  ///< as `bit_shape_key` has it
  CutterRecipe recipe;
  ToolKind kind;
  std::span<const BitField> fields;
  BitAdjustment adjust;
};

/// The fields that every shape may have.
std::span<const BitField> common_bit_fields();
/// The fields of turning inserts.
std::span<const BitField> insert_bit_fields();
/// The keys of turning inserts begin so; a letter may follow.
inline constexpr std::string_view kInsertShapePrefix = "isoshape";

/// A shape's name or file name, possibly with a folder, without folder, extension, "-", "_" and
/// blanks, in lower case.
std::string bit_shape_key(std::string_view name);
/// Null for a shape that is not known.
const BitShape* find_bit_shape(std::string_view key);

}  // namespace tooldb
