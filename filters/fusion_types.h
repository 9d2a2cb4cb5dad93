#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "filters/cutter_plan.h"
#include "filters/entry_builder.h"

/// @file
/// The kinds of entry of Fusion's tool libraries, and what each reads of "geometry".

namespace tooldb {

/// All that "geometry" can say about a cutter, in the tool's unit and degrees; 0: not given.
struct FusionSize : CutterSize {
  double shank_diameter = 0;
  double overall = 0;
  double stickout = 0;      ///< from the tip to the holder's nose
  double gauge_length = 0;  ///< from the tip to the gauge line
  double row_count = 0;
  double thread_angle = 0;  ///< included
};

/// Where the value of a key goes.
struct FusionField {
  std::string_view key;
  double FusionSize::*target;
};

/// The fields that every cutter may have.
std::span<const FusionField> common_fusion_fields();

enum class FusionClass { kCutter, kForm, kInsert, kGroove, kHolder, kJet };

struct FusionType {
  std::string_view name;
  FusionClass form;
  ToolKind kind;
  CutterRecipe recipe;  ///< of kCutter only
  std::span<const FusionField> fields;
  /// Completes sizes from what the type gives in its own way; may be null.
  void (*adjust)(FusionSize& size, std::vector<std::string>& remarks);
};

std::span<const FusionType> fusion_types();
/// Null for a type that is not known.
const FusionType* find_fusion_type(std::string_view name);

}  // namespace tooldb
