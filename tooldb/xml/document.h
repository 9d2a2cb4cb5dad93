#pragma once

#include <string>

/// @file
/// What stands around the entries of an export.

namespace tooldb {

/// Appends the XML declaration and the start tag of the root, which carries the version number of
/// the database.
void append_document_header(std::string& out, int version);
/// Appends the end tag of the root.
void append_document_footer(std::string& out);

}  // namespace tooldb
