#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tooldb {

bool is_zip(std::string_view bytes);

/// Unpacks one member of a ZIP archive (PKWARE APPNOTE: stored or deflated, no encryption, no
/// ZIP64).
/// @param name     the member's path in the archive, exactly
/// @param problem  filled when the answer is nothing
std::optional<std::string> unzip_member(std::string_view archive, std::string_view name,
                                        std::string& problem);

}  // namespace tooldb
