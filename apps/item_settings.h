#pragma once

#include <string>

#include "tooldb/item.h"

/// @file
/// Changing one value of an item of a tool; faults as in settings.h.

namespace tooldb {

/// Sets the value `name` of an item: a key in lower case, else a parameter.
/// @return "old -> new"
std::string set_item_value(tdbItem& item, const std::string& name, const std::string& value);

/// Removes a parameter of an item.
void remove_item_parameter(tdbItem& item, const std::string& name);

/// The number that a value is; raises `Failure`.
double require_number(const std::string& value);
/// The same for a whole number.
int require_integer(const std::string& value);
/// The flag that "yes", "no", "on", "off", "true", "false", "1" or "0" stands for.
bool require_flag(const std::string& value);
/// 0 for "mm", 1 for "inch", "inches" and "in".
int require_unit(const std::string& value);
/// The type code of a name, in any case, for items of this class.
int require_type(const tdbItem& item, const std::string& value);

}  // namespace tooldb
