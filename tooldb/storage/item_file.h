#pragma once

#include <string>
#include <vector>

#include "tooldb/item.h"

/// @file
/// What an item is stored as.

namespace tooldb {

/// The name of the file of `code`, with the item's extension.
std::string item_file_name(const std::string& code, tdbItem& item);

/// The path that an item is written to; raises `tdbError` when no such file can be made.
std::string item_file_path(const std::string& folder, tdbItem& item);

std::string item_text(const tdbItem& item, const std::vector<std::string>& search_paths);

}  // namespace tooldb
