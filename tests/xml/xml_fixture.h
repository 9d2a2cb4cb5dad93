#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tooldb/error.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"
#include "tooldb/xml_reader.h"

namespace tooldb {

inline const std::vector<std::string> kNoPaths;

template <class Object>
std::string xml_of(const Object& object, const std::vector<std::string>& paths = kNoPaths) {
  std::string text;
  object.WriteXml(text, paths);
  return text;
}

/// The tool of a document; raises what the reader raises.
/// @param components  those that it may use; null for none
inline std::unique_ptr<tdbTool> tool_from(const std::string& text,
                                          tdbToolComponentsDB* components = nullptr,
                                          const std::vector<std::string>& paths = kNoPaths) {
  tdbError error;
  std::unique_ptr<tdbTool> tool(
      tdbXmlReader::ImportToolFromXml(text.c_str(), paths, error, components));
  if (tool == nullptr) throw error;
  return tool;
}

/// A tool around some children of its element.
inline std::string tool_with(const std::string& children) {
  return "<TOOL NAME=\"T\">" + children + "</TOOL>";
}

}  // namespace tooldb
