#pragma once

#include <string>
#include <string_view>

/// @file
/// Names of files, and paths.

namespace tooldb {

/// Why no file can be made under `name`; empty when one can. Control characters are refused on
/// every system: no list, shell or document shows them.
std::string_view new_file_name_problem(std::string_view name);

/// Raises `FileError` for a path that the system would take for another one, for a device, or
/// refuse without a clear reason. What stands there is not looked at.
void require_plain_path(const std::string& path);

/// The name of the file in a path, without folder and extension; borrowed from the path.
std::string_view file_stem(std::string_view path);

/// The system's own rules for a name without folder; empty when it keeps them.
std::string_view system_name_problem(std::string_view name);

/// The same for a whole path; the names in it are looked at too.
std::string_view system_path_problem(const std::string& path);

}  // namespace tooldb
