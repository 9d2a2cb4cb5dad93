#pragma once

#include <string_view>

/// @file
/// Names of files.

namespace tooldb {

/// Why no file can be made under `name`; empty when one can. Control characters are refused on
/// every system: no list, shell or document shows them.
std::string_view new_file_name_problem(std::string_view name);

/// True for a name that the system keeps for itself, such as that of a device.
bool is_reserved_file_name(std::string_view name);

/// False for bytes that are no text in the code page of the process, where the system has one: it
/// would make another name of them.
bool is_in_code_page(std::string_view name);

/// The name of the file in a path, without folder and extension; borrowed from the path.
std::string_view file_stem(std::string_view path);

}  // namespace tooldb
