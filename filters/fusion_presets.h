#pragma once

#include "filters/entry_builder.h"
#include "filters/json_fields.h"

namespace tooldb {

/// Keeps the presets of "start-values" as parameters FUSION.PRESET.<i>.<key>, and takes what the
/// first one says into the tool's cutting conditions.
void read_fusion_presets(const Json& start_values, EntryBuilder& builder);

}  // namespace tooldb
