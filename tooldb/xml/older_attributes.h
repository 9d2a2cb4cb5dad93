#pragma once

#include <string>

#include "tooldb/tool.h"
#include "tooldb/xml/element.h"

/// @file
/// What TOOL elements of older files say in attributes.

namespace tooldb {

/// The code of a tool: CODE from version 4 on, ID before; without a version whichever
/// there is.
std::string code_of(const Element& element);

/// Keeps the attributes of older files in the tool's record of them, if there are any.
void read_older_attributes(const Element& element, tdbTool& tool);

}  // namespace tooldb
