#pragma once

#include <optional>

#include "tooldb/geometry.h"

class tdbCuttingTool;

/// @file
/// How a cutter carries its shank.

namespace tooldb {

/// The placement, in the frame of the cutting tool, of a shank that sits on top of the cutter:
/// a parametric one that was not placed by hand. Nothing for any other shank, and without one.
std::optional<Transformation<double>> joined_shank_position(const tdbCuttingTool& tool);

}  // namespace tooldb
