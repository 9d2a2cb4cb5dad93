#include "apps/fields.h"

#include <algorithm>
#include <array>

#include "apps/display_text.h"
#include "apps/tree_items.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"
#include "tooldb/type_names.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

FieldValue text(std::string value) { return {std::move(value), std::nullopt, false}; }
FieldValue number(double value) { return {shown_number(value), value, false}; }
FieldValue length(const tdbTool& tool, double value) {
  return {shown_number(value), value, tool.GetUnitOfMeasurement() != 0};
}
FieldValue yes_or_no(bool value) { return text(value ? "yes" : "no"); }

std::string kind_of(tdbTool& tool) {
  if (const auto* cutting = first_of<tdbCuttingTool>(tool)) return cutting->GetTypeName();
  if (const auto* cutter = tool.GetCutter(0)) return tdbGetTypeName(*cutter);
  return {};
}

std::string component_codes(tdbTool& tool) {
  std::string codes;
  for (const TreeItem& entry : items_below(tool)) {
    const auto* component = dynamic_cast<const tdbToolComponent*>(entry.item);
    if (component == nullptr || component->IsComponent()) continue;
    codes += (codes.empty() ? "" : ", ") + component->GetCode();
  }
  return codes;
}

int teeth_of(tdbTool& tool) {
  return tool.IsTurningTool() ? 1 : tool.GetCutCond().GetNumberOfInsert();
}

constexpr auto kText = FieldKind::kText;
constexpr auto kNumber = FieldKind::kNumber;
constexpr auto kLength = FieldKind::kLength;

constexpr auto kFields = std::to_array<Field>({
    {"code", kText, 8, [](tdbTool& t) { return text(t.GetCode()); }, "the tool's code"},
    {"name", kText, 8, [](tdbTool& t) { return text(t.GetName()); }, "its name"},
    {"type", kText, 0, [](tdbTool& t) { return text(tdbGetTypeName(t)); },
     "what it does: MILL, DRILL, TAP, TURNING ..."},
    {"kind", kText, 8, [](tdbTool& t) { return text(kind_of(t)); },
     "what its first cutting tool is: MILL_FLATEND, DRILL ..."},
    {"diameter", kLength, 0, [](tdbTool& t) { return length(t, t.GetDiameter()); },
     "cutting diameter"},
    {"length", kLength, 0, [](tdbTool& t) { return length(t, t.GetLength()); },
     "length, which is the Z offset"},
    {"units", kText, 0,
     [](tdbTool& t) { return text(t.GetUnitOfMeasurement() == 0 ? "mm" : "inch"); }, "mm or inch"},
    {"description", kText, 12, [](tdbTool& t) { return text(t.GetDescr()); }, "description"},
    {"comment", kText, 8, [](tdbTool& t) { return text(t.GetComment()); }, "comment"},
    {"teeth", kNumber, 0, [](tdbTool& t) { return number(teeth_of(t)); },
     "cutting edges, from the cutting conditions"},
    {"cutters", kNumber, 0, [](tdbTool& t) { return number(t.GetCutterCount()); },
     "how many cutters it has"},
    {"shanks", kNumber, 0, [](tdbTool& t) { return number(t.GetShankCount()); }, "how many shanks"},
    {"holders", kNumber, 0, [](tdbTool& t) { return number(t.GetHolderCount()); },
     "how many holders"},
    {"components", kText, 8, [](tdbTool& t) { return text(component_codes(t)); },
     "codes of the library components that it uses"},
    {"offsets", kNumber, 0, [](tdbTool& t) { return number(t.GetOffsetParamCount()); },
     "how many offset records"},
    {"offset_x", kLength, 0, [](tdbTool& t) { return length(t, t.GetOffsetX()); }, "tool offset"},
    {"offset_y", kLength, 0, [](tdbTool& t) { return length(t, t.GetOffsetY()); }, "tool offset"},
    {"offset_z", kLength, 0, [](tdbTool& t) { return length(t, t.GetOffsetZ()); }, "tool offset"},
    {"auto_tcp", kText, 0, [](tdbTool& t) { return yes_or_no(t.GetAutoTcp()); },
     "yes when the offsets follow the cutter"},
    {"tolerance", kLength, 0, [](tdbTool& t) { return length(t, t.GetToolModelTolerance()); },
     "tolerance of the tool's model"},
    {"color", kNumber, 0, [](tdbTool& t) { return number(t.GetTraceColor()); },
     "trace colour, 0 to 19"},
    {"subtype", kNumber, 0, [](tdbTool& t) { return number(t.GetSubType()); },
     "kind of milling cutter: 0 mill, 7 face, 8 shoulder"},
});

std::optional<FieldValue> param_value(const char* value) {
  if (value == nullptr) return std::nullopt;
  return FieldValue{value, parsed_number(value), false};
}

const char* tool_param(tdbTool& tool, const char* name) {
  const int index = tool.GetParamIndex(name);
  return index < 0 ? tool.GetParam(name, nullptr) : tool.GetParamValue(index);
}

template <class T>
const char* item_param(tdbTool& tool, const char* name) {
  const T* item = first_of<T>(tool);
  return item == nullptr ? nullptr : item->GetParam(name, nullptr);
}

struct ParamPrefix {
  std::string_view prefix;
  const char* (*value)(tdbTool& tool, const char* name);
};

constexpr auto kPrefixes = std::to_array<ParamPrefix>({{"param.", tool_param},
                                                       {"cutter.", item_param<tdbToolCutter>},
                                                       {"shank.", item_param<tdbToolShank>},
                                                       {"holder.", item_param<tdbToolHolder>}});

const ParamPrefix* find_prefix(std::string_view name) {
  const auto row = std::ranges::find_if(kPrefixes, [&](const ParamPrefix& p) {
    return name.size() > p.prefix.size() && lower_text(name).starts_with(p.prefix);
  });
  return row == kPrefixes.end() ? nullptr : &*row;
}

}  // namespace

std::span<const Field> fields() { return kFields; }

const Field* find_field(std::string_view name) {
  const auto row = std::ranges::find(kFields, lower_text(name), &Field::name);
  return row == kFields.end() ? nullptr : &*row;
}

std::optional<FieldKind> field_kind(std::string_view name) {
  if (const Field* field = find_field(name)) return field->kind;
  return find_prefix(name) == nullptr ? std::nullopt : std::optional(FieldKind::kText);
}

std::optional<FieldValue> field_value(tdbTool& tool, std::string_view name) {
  if (const Field* field = find_field(name)) return field->value(tool);
  const ParamPrefix* prefix = find_prefix(name);
  if (prefix == nullptr) return std::nullopt;
  std::string param(name.substr(prefix->prefix.size()));
  const char* value = prefix->value(tool, param.c_str());
  if (value != nullptr) return param_value(value);
  tdbUtil::to_upper(param);  // what the library's own parameters are spelt in
  return param_value(prefix->value(tool, param.c_str()));
}

}  // namespace tooldb
