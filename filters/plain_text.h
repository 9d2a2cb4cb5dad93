#pragma once

#include <string>
#include <string_view>

/// @file
/// Texts as tool files can hold them.

namespace tooldb {

std::string_view trimmed_text(std::string_view text);
std::string lower_case(std::string_view text);
/// The last part of a path, whose separators may be '/' or '\'.
std::string_view last_path_part(std::string_view path);
/// A file name without its last extension.
std::string_view without_extension(std::string_view name);
/// Appends a piece after ", ", or alone when `list` is empty.
void append_to_list(std::string& list, std::string_view piece);

/// The text as a tool file can hold it: '<', '&' and '"' in their full-width forms, line ends as
/// "\n", other control characters as blanks, trimmed.
std::string storable_text(std::string_view text);
/// The same on one line: line ends and tabs are blanks.
std::string storable_line(std::string_view text);
/// True when the text holds one of the three marks.
bool has_marks(std::string_view text);

/// A name fit for an XML element: what cannot stand in one becomes '_'.
std::string element_name(std::string_view text);

/// At most `size` bytes of the text, no character cut in two.
std::string_view at_most(std::string_view text, std::size_t size);

}  // namespace tooldb
