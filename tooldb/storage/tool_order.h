#pragma once

#include "tooldb/storage/item_list.h"

/// @file
/// The orders that a database can be sorted by.

namespace tooldb {

/// The order of tools for a sort key; of an unknown key, that by code.
ItemList::Sorter tool_order(int key);
/// The order of components: key 2 their type, any other key their code.
ItemList::Sorter component_order(int key);

}  // namespace tooldb
