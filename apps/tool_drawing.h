#pragma once

#include <string>

#include "apps/drawn_parts.h"

namespace tooldb {

/// A tool drawn to scale on a sheet of A4, as SVG: its half section with dimensions, mill tip down
/// or lathe tool tip left, and a title block.
/// @param tool  its placements up to date
std::string tool_drawing(tdbTool& tool, const ToolView& view);

/// Chord tolerance that no drawing shows, in the tool's unit.
double drawing_tolerance(const tdbTool& tool);

}  // namespace tooldb
