#pragma once

#include <nlohmann/json.hpp>
#include <string>

class tdbCompositeItem;
class tdbTool;

namespace tooldb {

/// A tool with everything that its file holds. Keys and their order are stable.
nlohmann::ordered_json tool_json(tdbTool& tool);
/// Its items, or those of a component: a flat list, parents first.
nlohmann::ordered_json items_json(tdbCompositeItem& root);

/// A number of a tool: whole ones without a point, and never -0.
nlohmann::ordered_json number_json(double value);

/// The JSON as text, two blanks per level, with a line end; bytes that are not UTF-8 become U+FFFD.
std::string json_text(const nlohmann::ordered_json& value);

}  // namespace tooldb
