#pragma once

#include <string>
#include <vector>

#include "tooldb/tool_parts.h"

/// @file
/// The uses of library components in tools. What hangs on a use or on one of its members without
/// being a member itself, such as the cutting tool in a holder, is the tool's own and outlives
/// both.

namespace tooldb {

/// The uses below `root`: the components that are not members of others.
std::vector<tdbToolComponent*> component_uses(tdbCompositeItem& root);

/// Gives a use copies of the members of `definition` for its present ones. What hung on a member
/// hangs on the new member of the same chain of names; without one it moves up to where the use
/// hangs, its placement kept, and the topmost composite gets an error.
void load_members(tdbToolComponent& use, const tdbToolComponent& definition);

/// Removes every use of the component of that code below `root`. What hung on it moves up to where
/// the use hung, its placement kept.
void remove_uses(tdbCompositeItem& root, const std::string& code);

}  // namespace tooldb
