#pragma once

#include <memory>

#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"
#include "tooldb/xml/entry_scanner.h"
#include "tooldb/xml/item_reader.h"

/// @file
/// Tools and components from their entries.

namespace tooldb {

/// The tool of a TOOL entry; its code is the one in the document, empty when there is none.
/// Raises `tdbError`: 1 for text that does not parse, 3 for an unknown type.
std::unique_ptr<tdbTool> read_tool(Entry& entry, const ReadContext& context);

/// The component of a TOOLCOMPONENT entry, in the same way; it and all below it are members.
std::unique_ptr<tdbToolComponent> read_component(Entry& entry, const ReadContext& context);

}  // namespace tooldb
