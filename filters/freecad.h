#pragma once

#include <string>
#include <string_view>

#include "filters/import.h"
#include "filters/json_fields.h"

/// @file
/// FreeCAD's tool files: bits (.fctb), libraries of bits (.fctl) and holders (.fcholder).

namespace tooldb {

bool fits_freecad_bit(std::string_view bytes);
bool fits_freecad_library(std::string_view bytes);
bool fits_freecad_holder(std::string_view bytes);

void read_freecad_bit(std::string_view bytes, const std::string& file_name,
                      const SiblingReader& siblings, ImportResult& result);
void read_freecad_library(std::string_view bytes, const std::string& file_name,
                          const SiblingReader& siblings, ImportResult& result);
void read_freecad_holder(std::string_view bytes, const std::string& file_name,
                         const SiblingReader& siblings, ImportResult& result);

/// The entry of one bit; `bytes` are those of the file `file_name`.
ImportEntry import_freecad_bit(std::string_view bytes, const std::string& file_name);

}  // namespace tooldb
