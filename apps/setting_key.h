#pragma once

#include <string>
#include <vector>

class tdbCompositeItem;
class tdbItem;

namespace tooldb {

/// A key's parts, which points separate; quotes keep points inside a part.
/// Raises `UsageError` for an empty part or an open quote.
std::vector<std::string> key_parts(const std::string& key);

/// The item that a part names: by its name, with "#2" for the second of that name, or by its class
/// when it is the only one. Raises `UsageError`, with what there is to choose from.
/// @param root  a tool or a component
tdbItem& find_item(tdbCompositeItem& root, const std::string& part);

/// The same, for an item that is to be changed: `Failure` for a member of a library component.
tdbItem& find_item_to_change(tdbCompositeItem& root, const std::string& part);

}  // namespace tooldb
