#pragma once

#include <string>
#include <string_view>
#include <vector>

/// @file
/// How documents name model files: relative to one of the search paths where that can be told.
///
/// A search path is a folder. It may carry one marker, in front of it or behind it:
///   "__nosubfolders__"  only files directly in the folder are named by it
///   "__files__"         the entry is the path of one file, which is named without its folder
///   "__absfiles__"      files in or below the folder keep their absolute paths
/// A relative path belongs to the first entry that can have given it. So a file is stored relative
/// to an entry only when no earlier one claims the same text; any other path is stored as it
/// stands. The rules look at texts alone, never at a disk, and take both slashes as separators, so
/// a document means the same on every system.

namespace tooldb {

/// What the document says for a model file.
std::string stored_model_path(std::string_view path, const std::vector<std::string>& search_paths);

/// The path that `stored` stands for; absolute ones, and those that no entry claims, as they are.
std::string resolved_model_path(std::string_view stored,
                                const std::vector<std::string>& search_paths);

}  // namespace tooldb
