#pragma once

#include <memory>
#include <string_view>

#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"
#include "tooldb/xml/element.h"
#include "tooldb/xml/grammar.h"
#include "tooldb/xml/item_reader.h"

/// @file
/// Tools and components from their entries.

namespace tooldb {

/// The entries that hold a kind of part. `Read` makes the part; its code is the one in the
/// document, empty when there is none. Raises `tdbError` 3 for an unknown type.
template <class Part>
struct EntryKind;

template <>
struct EntryKind<tdbTool> {
  static constexpr std::string_view kTag = tag::kTool;
  static std::unique_ptr<tdbTool> Read(const ParsedEntry& entry, const ReadContext& context);
};

/// The component and all below it are members.
template <>
struct EntryKind<tdbToolComponent> {
  static constexpr std::string_view kTag = tag::kToolComponent;
  static std::unique_ptr<tdbToolComponent> Read(const ParsedEntry& entry,
                                                const ReadContext& context);
};

}  // namespace tooldb
