#pragma once

#include <optional>
#include <string_view>

#include "tooldb/geometry.h"
#include "tooldb/xml/element.h"

/// @file
/// Placements of items, in the current layout and in older ones.

namespace tooldb {

/// The placement in the attributes POSX to RX, missing ones 0; nothing when there is none of them.
std::optional<Transformation<double>> pose_from_attributes(const Element& element);

/// The placement in the children of an element: TRANS, and ROT or QUAT or ALPHA and BETA, or all
/// of these inside a TRANSFORMATION. ROT holds the Z, Y and X angles; QUAT x, y, z and w of a
/// quaternion of any length; ALPHA turns about X and BETA about Y; degrees. Nothing when there is
/// none of them.
std::optional<Transformation<double>> pose_from_children(const Element& element);

/// True for the upper-case name of a child that `pose_from_children` looks at.
bool is_pose_child(std::string_view name);

}  // namespace tooldb
