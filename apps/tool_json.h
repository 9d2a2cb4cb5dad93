#pragma once

#include <nlohmann/json.hpp>
#include <string>

class tdbTool;

namespace tooldb {

/// A tool with everything that its file holds. Keys and their order are stable.
nlohmann::ordered_json tool_json(tdbTool& tool);

/// The JSON as text, two blanks per level, with a line end; bytes that are not UTF-8 become U+FFFD.
std::string json_text(const nlohmann::ordered_json& value);

}  // namespace tooldb
