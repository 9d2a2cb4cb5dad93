#pragma once

#include <string>
#include <string_view>

/// @file
/// Documents as UTF-8, whatever they are stored in.

namespace tooldb {

/// A stored document as UTF-8 without byte-order mark: UTF-16 is told by its byte-order mark;
/// bytes that are not UTF-8 are Latin-1. A lone surrogate becomes U+FFFD.
/// @param storage  takes the text when it has to be converted
/// @return a view of `bytes` or of `storage`
/// Raises `tdbError` when the text holds a zero byte.
std::string_view document_text(std::string_view bytes, std::string& storage);

bool is_utf8(std::string_view text);

}  // namespace tooldb
