#include "apps/settings.h"

#include <algorithm>
#include <array>

#include "apps/command.h"
#include "apps/condition_slots.h"
#include "apps/display_text.h"
#include "apps/item_settings.h"
#include "apps/setting_key.h"
#include "apps/text_rules.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"
#include "tooldb/type_names.h"

namespace tooldb {
namespace {

using Parts = std::vector<std::string>;

std::string yes_or_no(bool value) { return value ? "yes" : "no"; }

// The offsets are computed while they follow a cutter: what is set would not stay.
void require_free_offsets(const tdbTool& tool) {
  if (tool.GetAutoTcp() && tool.GetCutter(0) != nullptr) {
    throw Failure("the offsets follow the cutter; set auto_tcp=no before");
  }
}

void require_free_diameter(const tdbTool& tool) {
  if (tool.GetCutter(0) != nullptr) {
    throw Failure("the diameter follows the first cutter; set cutter.DIAMETER");
  }
}

struct ToolKey {
  std::string_view name;
  std::string (*get)(const tdbTool& tool);
  void (*set)(tdbTool& tool, const std::string& value);
};

template <double (tdbTool::*Get)() const, void (tdbTool::*Set)(double)>
constexpr ToolKey number_key(std::string_view name) {
  return {name, [](const tdbTool& t) { return shown_number((t.*Get)()); },
          [](tdbTool& t, const std::string& v) { (t.*Set)(require_number(v)); }};
}

template <double (tdbTool::*Get)() const, void (tdbTool::*Set)(double)>
constexpr ToolKey offset_key(std::string_view name) {
  return {name, [](const tdbTool& t) { return shown_number((t.*Get)()); },
          [](tdbTool& t, const std::string& v) {
            require_free_offsets(t);
            (t.*Set)(require_number(v));
          }};
}

template <bool (tdbTool::*Get)() const, void (tdbTool::*Set)(bool)>
constexpr ToolKey flag_key(std::string_view name) {
  return {name, [](const tdbTool& t) { return yes_or_no((t.*Get)()); },
          [](tdbTool& t, const std::string& v) { (t.*Set)(require_flag(v)); }};
}

using T = tdbTool;

constexpr auto kToolKeys = std::to_array<ToolKey>({
    {"name", [](const T& t) { return t.GetName(); },
     [](T& t, const std::string& v) { t.SetName(v); }},
    {"description", [](const T& t) { return std::string(t.GetDescr()); },
     [](T& t, const std::string& v) { t.SetDescr(v.c_str()); }},
    {"comment", [](const T& t) { return std::string(t.GetComment()); },
     [](T& t, const std::string& v) { t.SetComment(v.c_str()); }},
    {"units", [](const T& t) { return std::string(t.GetUnitOfMeasurement() == 0 ? "mm" : "inch"); },
     [](T& t, const std::string& v) { t.SetUnitOfMeasurement(require_unit(v)); }},
    {"type", [](const T& t) { return tdbGetTypeName(t); },
     [](T& t, const std::string& v) { t.SetType(require_type(t, v)); }},
    {"subtype", [](const T& t) { return std::to_string(t.GetSubType()); },
     [](T& t, const std::string& v) { t.SetSubType(require_integer(v)); }},
    number_key<&T::GetToolModelTolerance, &T::SetToolModelTolerance>("tolerance"),
    {"color", [](const T& t) { return std::to_string(t.GetTraceColor()); },
     [](T& t, const std::string& v) { t.SetTraceColor(require_integer(v)); }},
    flag_key<&T::GetAutoColor, &T::SetAutoColor>("auto_color"),
    flag_key<&T::GetAutoTcp, &T::SetAutoTcp>("auto_tcp"),
    {"diameter", [](const T& t) { return shown_number(t.GetDiameter()); },
     [](T& t, const std::string& v) {
       require_free_diameter(t);
       t.SetDiameter(require_number(v));
     }},
    offset_key<&T::GetLength, &T::SetLength>("length"),
    offset_key<&T::GetOffsetX, &T::SetOffsetX>("offset_x"),
    offset_key<&T::GetOffsetY, &T::SetOffsetY>("offset_y"),
    offset_key<&T::GetOffsetZ, &T::SetOffsetZ>("offset_z"),
    flag_key<&T::IsSectionEnabled, &T::EnableSection>("section"),
    number_key<&T::GetSectionStartAngle, &T::SetSectionStartAngle>("section_start"),
    number_key<&T::GetSectionSpanAngle, &T::SetSectionSpanAngle>("section_span"),
});

std::string set_tool_value(tdbTool& tool, const std::string& name, const std::string& value) {
  const auto key = std::ranges::find(kToolKeys, std::string_view(name), &ToolKey::name);
  if (key == kToolKeys.end()) {
    const auto meant = nearest(name, kToolKeys, &ToolKey::name);
    throw UsageError("a tool has no value '" + name + "'" +
                     (meant.empty() ? "" : "; did you mean '" + std::string(meant) + "'?"));
  }
  const std::string old = key->get(tool);
  key->set(tool, value);
  return old + " -> " + key->get(tool);
}

// What stands after the first point of a key; a parameter's name may hold points.
std::string rest_of(const Parts& parts) {
  std::string rest = parts[1];
  for (std::size_t i = 2; i < parts.size(); ++i) rest += '.' + parts[i];
  return rest;
}

std::string set_tool_parameter(tdbTool& tool, const std::string& name, const std::string& value) {
  if (const std::string problem = text_problem(name, true); !problem.empty()) {
    throw Failure("'" + name + "' cannot be the name of a parameter: " + problem);
  }
  const std::string old = tool.GetParamValue(name.c_str());
  if (tool.SetParamValue(name.c_str(), value.c_str()) >= 0) return old + " -> " + value;
  tool.AddParam(name.c_str(), value.c_str());
  return "(new) -> " + value;
}

struct OffsetField {
  std::string_view name;
  OFFSET_VALUE::VarIndex field;
};

constexpr auto kOffsetFields = std::to_array<OffsetField>({{"DX", OFFSET_VALUE::VarIndex::DX},
                                                           {"DY", OFFSET_VALUE::VarIndex::DY},
                                                           {"DZ", OFFSET_VALUE::VarIndex::DZ},
                                                           {"RAD", OFFSET_VALUE::VarIndex::RAD},
                                                           {"POS", OFFSET_VALUE::VarIndex::POS},
                                                           {"ABS", OFFSET_VALUE::VarIndex::ABS}});

std::string set_offset(tdbTool& tool, const Parts& parts, const std::string& value) {
  if (parts.size() != 3) throw UsageError("an offset is set as offset.N.DX=VALUE");
  const auto row = std::ranges::find(kOffsetFields, std::string_view(parts[2]), &OffsetField::name);
  if (row == kOffsetFields.end()) {
    throw UsageError("an offset record has DX, DY, DZ, RAD, POS and ABS, not '" + parts[2] + "'");
  }
  const int index = require_integer(parts[1]);
  const bool whole = row->field == OFFSET_VALUE::VarIndex::POS;
  double number = 0;
  if (row->field == OFFSET_VALUE::VarIndex::ABS) {
    number = require_flag(value) ? 1 : 0;
  } else {
    number = whole ? require_integer(value) : require_number(value);
  }
  // A record that is made through ABS would come out relative: make it first.
  const auto& records = tool.GetOffsetParamList();
  if (std::ranges::find(records, index, &OFFSET_VALUE::index) == records.end()) {
    OFFSET_VALUE record;
    record.index = index;
    tool.AddOffsetParam(record);
  }
  tool.AddOffsetParam(index, row->field, number);
  return shown_number(number);
}

std::string set_condition(tdbTool& tool, const std::string& name, const std::string& value) {
  auto slots = condition_slots(tool);
  const auto slot = std::ranges::find(slots, name, &ConditionSlot::name);
  if (slot == slots.end()) {
    const auto meant = nearest(name, slots, &ConditionSlot::name);
    throw UsageError(std::string(tool.IsTurningTool() ? "turning" : "milling") +
                     " conditions have no '" + name + "'" +
                     (meant.empty() ? "" : "; did you mean '" + std::string(meant) + "'?"));
  }
  const double old = slot->get();
  using Kind = ConditionSlot::Kind;
  slot->set(slot->kind == Kind::kFlag    ? static_cast<double>(require_flag(value))
            : slot->kind == Kind::kCount ? require_integer(value)
                                         : require_number(value));
  return shown_number(old) + " -> " + shown_number(slot->get());
}

std::string set_value(tdbTool& tool, const Parts& parts, const std::string& value) {
  if (parts.size() == 1) return set_tool_value(tool, parts[0], value);
  if (parts[0] == "param") return set_tool_parameter(tool, rest_of(parts), value);
  if (parts[0] == "offset") return set_offset(tool, parts, value);
  if (parts[0] == "conditions") return set_condition(tool, rest_of(parts), value);
  if (parts[0] == "tool") return set_tool_value(tool, rest_of(parts), value);
  return set_item_value(find_item_to_change(tool, parts[0]), rest_of(parts), value);
}

void remove_offset(tdbTool& tool, const std::string& number) {
  const int index = require_integer(number);
  for (int i = 0; i < tool.GetOffsetParamCount(); ++i) {
    if (tool.GetOffsetParam(i).index == index) return tool.RemoveOffsetParam(i);
  }
  throw UsageError("there is no offset record " + number);
}

void remove_tool_parameter(tdbTool& tool, const std::string& name) {
  const int index = tool.GetParamIndex(name.c_str());
  if (index < 0) throw UsageError("there is no parameter '" + name + "'");
  tool.RemoveParam(index);
}

// Splits "KEY=VALUE", sets the value, and tells the change.
template <class Set>
std::string applied(const std::string& setting, const Set& set) {
  const auto sign = setting.find('=');
  if (sign == std::string::npos || sign == 0) {
    throw UsageError("'" + setting + "' is not of the form KEY=VALUE");
  }
  const std::string key = setting.substr(0, sign);
  const Parts parts = key_parts(key);
  try {
    return key + ": " + set(parts, setting.substr(sign + 1));
  } catch (const Failure& failure) {
    throw Failure(key + ": " + failure.what());
  }
}

}  // namespace

std::string apply_setting(tdbTool& tool, const std::string& setting) {
  return applied(setting, [&](const Parts& parts, const std::string& value) {
    return set_value(tool, parts, value);
  });
}

std::string apply_item_setting(tdbToolComponent& component, const std::string& setting) {
  return applied(setting, [&](const Parts& parts, const std::string& value) {
    if (parts.size() < 2) throw UsageError("a component's values are set as ITEM.KEY=VALUE");
    return set_item_value(find_item_to_change(component, parts[0]), rest_of(parts), value);
  });
}

std::string remove_setting(tdbTool& tool, const std::string& key) {
  const Parts parts = key_parts(key);
  if (parts.size() < 2) {
    throw UsageError("'" + key + "' is neither param.NAME, ITEM.NAME nor offset.N");
  }
  if (parts[0] == "param") {
    remove_tool_parameter(tool, rest_of(parts));
  } else if (parts[0] == "offset") {
    remove_offset(tool, parts[1]);
  } else {
    remove_item_parameter(find_item_to_change(tool, parts[0]), rest_of(parts));
  }
  return key + ": removed";
}

}  // namespace tooldb
