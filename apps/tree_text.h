#pragma once

#include <string>

#include "tooldb/geometry.h"

class tdbCompositeItem;

namespace tooldb {

/// Appends the tree below `root`: a line per item, with its placement, parameters and source of
/// geometry below it.
void append_tree(std::string& out, tdbCompositeItem& root);

/// "at 0 0 35, turned Z 90 Y 0 X 0"; empty for the identity.
std::string placement_text(const Transformation<double>& placement);

}  // namespace tooldb
