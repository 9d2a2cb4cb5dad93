#include "fuzz/round_trip.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tooldb/tool.h"

namespace fuzz {
namespace {

bool has_markup(std::string_view text) {
  return text.find_first_of("<&\"") != std::string_view::npos;
}

// Parameters of anything but a tool are elements of their name.
bool is_element_name(std::string_view name) {
  const auto starts = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || c < 0;
  };
  return !name.empty() && starts(name[0]) && std::ranges::all_of(name, [&](char c) {
    return starts(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
  });
}

bool has_markup(const tdbItem& item) {
  if (has_markup(item.GetName()) || has_markup(item.GetCode()) ||
      has_markup(item.GetShapeFilePath()) || has_markup(item.GetFileOptions()) ||
      has_markup(item.GetMaterial().environmentMap)) {
    return true;
  }
  const auto* tool = dynamic_cast<const tdbTool*>(&item);
  for (const auto& [name, value] : item.GetParams()) {
    if (has_markup(value) || (tool ? has_markup(name) : !is_element_name(name))) return true;
  }
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

bool carries_lost_zero(tdbCompositeItem& root) {
  auto* tool = dynamic_cast<tdbTool*>(&root);
  if (tool == nullptr) return false;
  if (tool->IsTurningTool()) return tool->GetTurningCutCond().GetStepSizeOfSampling() == 0;
  const tdbCutCond& conditions = tool->GetCutCond();
  return conditions.GetStepSizeOfSampling() == 0 || conditions.GetSamplesOffset() == 0;
}

void expect(bool holds, const char* property) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", property);
  std::abort();
}

void expect_same(const std::string& first, const std::string& second) {
  if (first == second) return;
  std::fprintf(stderr, "written first:\n%s\nwritten again:\n%s\n", first.c_str(), second.c_str());
  std::abort();
}

}  // namespace fuzz
