#pragma once

#include <string>
#include <string_view>

#include "filters/import.h"

/// @file
/// Fusion's tool libraries: a JSON document in the clear (.json) or packed as "tools.json" in a ZIP
/// archive (.tools).

namespace tooldb {

bool fits_fusion_json(std::string_view bytes);
void read_fusion_json(std::string_view bytes, const std::string& file_name,
                      const SiblingReader& siblings, ImportResult& result);

bool fits_fusion_archive(std::string_view bytes);
void read_fusion_archive(std::string_view bytes, const std::string& file_name,
                         const SiblingReader& siblings, ImportResult& result);

}  // namespace tooldb
