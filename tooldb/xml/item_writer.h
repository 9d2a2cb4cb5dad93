#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tooldb/geometry.h"
#include "tooldb/item.h"

class tdbCompositeItem;

/// @file
/// Pieces that the elements of several classes have in common.

namespace tooldb {

/// Appends the attributes POSX to RX: position and angles in degrees.
void append_pose(std::string& out, const Transformation<double>& pose);
/// Appends the element `name` with position and angles as children.
void append_named_pose(std::string& out, std::string_view name, const Transformation<double>& pose);
void append_color(std::string& out, const tdbToolMaterial& material);
/// Appends one element per parameter, in the order of the names.
void append_parameters(std::string& out, const tdbItem& item);
/// Appends FILE and FILE_OPTIONS.
/// @param after_file  what stands between the two: a line break or nothing
void append_shape_file(std::string& out, const tdbItem& item,
                       const std::vector<std::string>& search_paths, std::string_view after_file);
/// Appends PROFILE, without a line break.
void append_profile(std::string& out, const tdbItem& item);

/// What PARENT says of an item: the name of its parent, or, where the parent is a member of a
/// library component and the item is not, the whole chain of names down to the parent.
std::string parent_reference(const tdbItem& item);
/// The name of the parent; empty without one.
std::string parent_name(const tdbItem& item);

/// Which items an element writes of those below its item.
enum class Contents {
  kTool,         ///< all but members, which the components bring along
  kComponent,    ///< members only
  kCuttingTool,  ///< all
};

/// Appends the items below `top` that the element of `top` holds itself, parents first: what a
/// cutting tool or a nested component below `top` holds is left to that, and members of a used
/// library component are written nowhere.
void append_items_below(std::string& out, const tdbCompositeItem& top, Contents contents,
                        const std::vector<std::string>& search_paths);

}  // namespace tooldb
