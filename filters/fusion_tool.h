#pragma once

#include <string>

#include "filters/fusion_holders.h"
#include "filters/fusion_types.h"
#include "filters/import.h"
#include "filters/json_fields.h"

namespace tooldb {

/// The tool of one entry of a Fusion library.
/// @param source  names the entry to a person
/// @param code    the tool's code
ImportEntry import_fusion_tool(const Json& entry, const std::string& source,
                               const std::string& code, const FusionHolders& holders);

/// What the entry is called: its description, else one made of its type and size.
std::string fusion_description(const Json& entry);

}  // namespace tooldb
