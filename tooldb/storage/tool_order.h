#pragma once

#include <string_view>

#include "tooldb/storage/item_list.h"

/// @file
/// The orders that a database can be sorted by.

namespace tooldb {

/// Codes that both begin with a number other than zero come in the order of these numbers, any
/// others as text without regard to case: "9" before "10", "A" before "b". The rule is mixed on
/// purpose, and over three codes it may run in a circle.
bool code_comes_first(std::string_view a, std::string_view b);

/// The order of tools for a sort key; of an unknown key, that by code.
ItemList::Less tool_order(int key);
/// The order of components: key 2 their type, any other key their code.
ItemList::Less component_order(int key);

}  // namespace tooldb
