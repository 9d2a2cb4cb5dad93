#include "fuzz/round_trip.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tooldb/tool.h"

namespace fuzz {
namespace {

bool has_markup(std::string_view text) {
  return text.find_first_of("<>&\"") != std::string_view::npos;
}

bool has_markup(const tdbItem& item) {
  if (has_markup(item.GetName()) || has_markup(item.GetCode()) ||
      has_markup(item.GetShapeFilePath()) || has_markup(item.GetFileOptions()) ||
      has_markup(item.GetMaterial().environmentMap)) {
    return true;
  }
  for (const auto& [name, value] : item.GetParams()) {
    if (has_markup(name) || has_markup(value)) return true;
  }
  const auto* tool = dynamic_cast<const tdbTool*>(&item);
  if (tool == nullptr) return false;
  for (const auto& [name, value] : tool->GetParamList()) {
    if (has_markup(name) || has_markup(value)) return true;
  }
  return has_markup(tool->GetDescr()) || has_markup(tool->GetComment());
}

}  // namespace

bool carries_markup(tdbCompositeItem& root) {
  bool found = false;
  root.Visit([](void* flag, tdbItem* item) { *static_cast<bool*>(flag) |= has_markup(*item); },
             &found);
  return found;
}

void expect_same(const std::string& first, const std::string& second) {
  if (first == second) return;
  std::fprintf(stderr, "written first:\n%s\nwritten again:\n%s\n", first.c_str(), second.c_str());
  std::abort();
}

}  // namespace fuzz
