#include <algorithm>

#include "geom/number_text.h"
#include "tooldb/model/text.h"
#include "tooldb/platform/guard.h"
#include "tooldb/profile/body_outline.h"
#include "tooldb/tool_parts.h"

// What cutters, shanks and holders have in common: their outline as text, and its size.

namespace tooldb {
namespace {

void set_defaults(tdbItem& item, std::span<const BodyType> types, int code) {
  const auto type = std::ranges::find(types, code, &BodyType::code);
  if (type == types.end()) return;
  for (const ParameterRow& row : type->Parameters()) {
    if (row.standard.empty()) continue;
    item.SetParam(std::string(row.name).c_str(), std::string(row.standard).c_str());
  }
}

void clear_outline(tdbItem& item) {
  item.SetProfileXml("");
  item.RemoveParams();
}

double outline_length(const tdbItem& item) {
  const Outline outline = body_outline(item);
  if (!outline.Stands()) return 0;
  const auto [low, high] = bounds_of(outline);
  return high.y - low.y;
}

double outline_width(const tdbItem& item) {
  const Outline outline = body_outline(item);
  return outline.Stands() ? 2 * bounds_of(outline).high.x : 0;
}

double outline_diameter(const tdbItem& item) {
  if (const BodyType* type = body_type(item)) {
    for (const ParameterRow& row : type->Parameters()) {
      if (row.name != "DIAMETER") continue;
      const std::string_view text = item.GetParam("DIAMETER", "");
      return parameter_number(trimmed(text).empty() ? row.standard : text).value_or(0);
    }
  }
  return is_extruded(item) ? 0 : outline_width(item);
}

bool built(tdbItem& item) {
  return guarded(false, [&] { return build_outline(item); });
}

double measured(const tdbItem& item, double (*measure)(const tdbItem&)) {
  return guarded(0.0, [&] { return measure(item); });
}

}  // namespace
}  // namespace tooldb

void tdbToolCutter::InitProfile(int type) {
  tooldb::set_defaults(*this, tooldb::cutter_types(), type);
}
void tdbToolCutter::ResetProfile() {
  tooldb::clear_outline(*this);
  InitProfile(GetType());
}
bool tdbToolCutter::BuildProfile(int /*variant*/) { return tooldb::built(*this); }
double tdbToolCutter::GetDiameter() const {
  return tooldb::measured(*this, tooldb::outline_diameter);
}
void tdbToolCutter::SetDiameter(double diameter) {
  SetParam("DIAMETER", tooldb::general_text(diameter).c_str());
}
double tdbToolCutter::GetLength() const { return tooldb::measured(*this, tooldb::outline_length); }

void tdbToolShank::InitProfile() { tooldb::set_defaults(*this, tooldb::shank_types(), GetType()); }
void tdbToolShank::ResetProfile() {
  tooldb::clear_outline(*this);
  InitProfile();
}
bool tdbToolShank::BuildProfile() { return tooldb::built(*this); }
double tdbToolShank::GetDiameter() const {
  return tooldb::measured(*this, tooldb::outline_diameter);
}
double tdbToolShank::GetLength() const { return tooldb::measured(*this, tooldb::outline_length); }

void tdbToolHolder::ResetProfile() { tooldb::clear_outline(*this); }
bool tdbToolHolder::BuildProfile(int /*variant*/) { return tooldb::built(*this); }
double tdbToolHolder::GetDiameter() const {
  return tooldb::measured(*this, tooldb::outline_diameter);
}
double tdbToolHolder::GetLength() const { return tooldb::measured(*this, tooldb::outline_length); }
