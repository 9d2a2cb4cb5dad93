#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "apps/query.h"

class tdbTool;

/// @file
/// What can be listed, sorted by and asked for: the fields of a tool.

namespace tooldb {

struct Field {
  std::string_view name;
  FieldKind kind;
  int least;  ///< a table may cut its column down to so many characters; 0: never
  FieldValue (*value)(tdbTool& tool);
  std::string_view help;
};

std::span<const Field> fields();

/// The field of a name; null if there is none.
const Field* find_field(std::string_view name);

/// The kind of a field, of "param.NAME" (a parameter of the tool), and of "cutter.NAME",
/// "shank.NAME" and "holder.NAME" (a parameter of the first such item).
std::optional<FieldKind> field_kind(std::string_view name);

/// The value of such a field; nothing when the tool has none.
std::optional<FieldValue> field_value(tdbTool& tool, std::string_view name);

}  // namespace tooldb
