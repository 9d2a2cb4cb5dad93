#pragma once

#include <string>

class tdbTool;
class tdbToolComponent;

/// @file
/// Changing one value of a tool by its name. What is wrong with the name raises `UsageError`, what
/// is wrong with the value raises `Failure`; the tool is then as it was.

namespace tooldb {

/// Sets what "KEY=VALUE" says. The answer tells the change: "cutter.DIAMETER: 10 -> 12".
std::string apply_setting(tdbTool& tool, const std::string& setting);

/// The same for an item of a component: "ITEM.NAME=VALUE".
std::string apply_item_setting(tdbToolComponent& component, const std::string& setting);

/// Removes a parameter or an offset record. The answer tells the change.
std::string remove_setting(tdbTool& tool, const std::string& key);

}  // namespace tooldb
