#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tooldb/error.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"
#include "tooldb/xml/part_reading.h"

namespace tooldb {

inline const std::vector<std::string> kNoPaths;

template <class Object>
std::string xml_of(const Object& object, const std::vector<std::string>& paths = kNoPaths) {
  std::string text;
  object.WriteXml(text, paths);
  return text;
}

/// The tool of a document, read without a database; raises what the reader raises.
/// @param finder  what finds the components that it uses
inline std::unique_ptr<tdbTool> tool_from(
    std::string_view text,
    const ComponentFinder& finder = [](const std::string&) { return nullptr; },
    const std::vector<std::string>& paths = kNoPaths) {
  return EntryReading<tdbTool>(first_entry(text, EntryKind<tdbTool>::kTag)).Finish({paths, finder});
}

/// A tool around some children of its element.
inline std::string tool_with(std::string_view children, std::string_view attributes = {}) {
  return "<TOOL NAME=\"T\" " + std::string(attributes) + ">" + std::string(children) + "</TOOL>";
}

}  // namespace tooldb
