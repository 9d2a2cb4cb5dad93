#pragma once

#include <memory>
#include <string>

#include "tooldb/tooldb.h"

namespace torture {

/// A tool of some kilobytes, so that a write can be cut in the middle, that says `mark` all over.
inline std::unique_ptr<tdbTool> marked_tool(const std::string& code, const std::string& mark) {
  auto tool = std::make_unique<tdbTool>(code, mark);
  for (int i = 0; i < 120; ++i) tool->AddParam(("P" + std::to_string(i)).c_str(), mark.c_str());
  return tool;
}

/// The mark of a tool; empty when it is not the same all over.
inline std::string mark_of(const tdbTool& tool) {
  const std::string mark = tool.GetName();
  for (int i = 0; i < 120; ++i) {
    if (tool.GetParamCount() != 120 || tool.GetParamValue(i) != mark) return {};
  }
  return mark;
}

}  // namespace torture
