#include "apps/item_settings.h"

#include <array>
#include <cmath>

#include "apps/command.h"
#include "apps/display_text.h"
#include "apps/query.h"
#include "apps/text_rules.h"
#include "apps/tree_text.h"
#include "tooldb/contour.h"
#include "tooldb/placement.h"
#include "tooldb/type_names.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

[[noreturn]] void refuse(const std::string& value, const std::string& what) {
  throw Failure("'" + value + "' is " + what);
}

// Three numbers, separated by commas.
std::array<double, 3> require_triple(const std::string& value) {
  std::array<double, 3> numbers{};
  std::string_view rest = value;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const auto comma = rest.find(',');
    if ((comma == std::string_view::npos) != (i + 1 == numbers.size())) {
      refuse(value, "not three numbers separated by commas");
    }
    numbers[i] = require_number(std::string(rest.substr(0, comma)));
    if (comma != std::string_view::npos) rest.remove_prefix(comma + 1);
  }
  return numbers;
}

std::string shown_placement(const tdbItem& item) {
  const std::string text = placement_text(item.GetPos());
  return text.empty() ? "at 0 0 0" : text;
}

void set_position(tdbItem& item, const std::string& value) {
  const auto [x, y, z] = require_triple(value);
  Transformation<double> placement = item.GetPos();
  placement(0, 3) = x;
  placement(1, 3) = y;
  placement(2, 3) = z;
  item.SetPos(placement);
}

void set_angles(tdbItem& item, const std::string& value) {
  const auto [z, y, x] = require_triple(value);
  const auto placement = item.GetPos();
  item.SetPos(tdbMakePlacement({placement(0, 3), placement(1, 3), placement(2, 3)}, {z, y, x}));
}

void set_profile(tdbItem& item, const std::string& value) {
  CEntityDB contour;
  if (!value.empty() && !contour.Read(value, false, 0)) {
    throw Failure("the profile is not a contour of LINE and ARC elements");
  }
  item.SetProfileXml(value.c_str());
}

struct ItemKey {
  std::string_view name;
  std::string (*get)(const tdbItem& item);
  void (*set)(tdbItem& item, const std::string& value);
};

constexpr auto kItemKeys = std::to_array<ItemKey>({
    {"name", [](const tdbItem& i) { return i.GetName(); },
     [](tdbItem& i, const std::string& v) { i.SetName(v); }},
    {"type", [](const tdbItem& i) { return tdbGetTypeName(i); },
     [](tdbItem& i, const std::string& v) { i.SetType(require_type(i, v)); }},
    {"position", shown_placement, set_position},
    {"angles", shown_placement, set_angles},
    {"file", [](const tdbItem& i) { return std::string(i.GetShapeFilePath()); },
     [](tdbItem& i, const std::string& v) { i.SetShapeFilePath(v.c_str()); }},
    {"file_units",
     [](const tdbItem& i) { return std::string(i.GetFileUnits() == 0 ? "mm" : "inch"); },
     [](tdbItem& i, const std::string& v) { i.SetFileUnits(require_unit(v)); }},
    {"profile",
     [](const tdbItem& i) {
       return std::to_string(std::string_view(i.GetProfileXml()).size()) + " bytes";
     },
     set_profile},
    {"spinning", [](const tdbItem& i) { return std::string(i.IsSpinningEnable() ? "yes" : "no"); },
     [](tdbItem& i, const std::string& v) { i.SetEnableSpinning(require_flag(v)); }},
});

// The spelling that the item has the parameter in: as typed, or in upper case as the library's own.
std::string parameter_name(const tdbItem& item, const std::string& name) {
  std::string upper = name;
  tdbUtil::to_upper(upper);
  const bool as_typed = item.GetParam(name.c_str(), nullptr) != nullptr;
  return !as_typed && item.GetParam(upper.c_str(), nullptr) != nullptr ? upper : name;
}

// Any name may be new, so that a mistyped key is not refused, but told.
std::string add_parameter(tdbItem& item, const std::string& name, const std::string& value) {
  const auto known = item.GetParams();
  std::string upper = name;
  tdbUtil::to_upper(upper);
  std::string meant(nearest(name, kItemKeys, &ItemKey::name));
  if (meant.empty()) meant = nearest(upper, known, &decltype(known)::value_type::first);
  item.SetParam(name.c_str(), value.c_str());
  return "(new) -> " + value + (meant.empty() ? "" : "; did you mean '" + meant + "'?");
}

std::string set_parameter(tdbItem& item, const std::string& typed, const std::string& value) {
  const std::string name = parameter_name(item, typed);
  const std::string problem = parameter_name_problem(name);
  if (!problem.empty()) throw UsageError("'" + name + "' cannot be a parameter: " + problem);
  const char* present = item.GetParam(name.c_str(), nullptr);
  if (present == nullptr) return add_parameter(item, name, value);
  const std::string old = present;
  if (parsed_number(old) && !parsed_number(value)) {
    refuse(value, "no number, but " + name + " is one (write a point as decimal mark)");
  }
  item.SetParam(name.c_str(), value.c_str());
  return old + " -> " + value;
}

}  // namespace

std::string set_item_value(tdbItem& item, const std::string& name, const std::string& value) {
  for (const ItemKey& key : kItemKeys) {
    if (key.name != name) continue;
    const std::string old = key.get(item);
    key.set(item, value);
    return old + " -> " + key.get(item);
  }
  return set_parameter(item, name, value);
}

void remove_item_parameter(tdbItem& item, const std::string& typed) {
  const std::string name = parameter_name(item, typed);
  auto params = item.GetParams();
  if (params.erase(name) == 0) throw UsageError("there is no parameter '" + typed + "'");
  item.RemoveParams();
  for (const auto& [kept, value] : params) item.SetParam(kept.c_str(), value.c_str());
}

double require_number(const std::string& value) {
  const auto number = parsed_number(value);
  if (!number) refuse(value, "not a number (write a point as decimal mark)");
  return *number;
}

int require_integer(const std::string& value) {
  const double number = require_number(value);
  if (number != std::floor(number) || std::abs(number) > 1e9) refuse(value, "not a whole number");
  return static_cast<int>(number);
}

bool require_flag(const std::string& value) {
  const std::string word = lower_text(value);
  for (const char* yes : {"yes", "on", "true", "1"}) {
    if (word == yes) return true;
  }
  for (const char* no : {"no", "off", "false", "0"}) {
    if (word == no) return false;
  }
  refuse(value, "neither yes nor no");
}

int require_unit(const std::string& value) {
  const std::string word = lower_text(value);
  if (word == "mm") return 0;
  if (word == "inch" || word == "inches" || word == "in") return 1;
  refuse(value, "neither mm nor inch");
}

int require_type(const tdbItem& item, const std::string& value) {
  std::string name = value;
  tdbUtil::to_upper(name);
  const int type = tdbGetTypeByName(item, name);
  if (type >= 0) return type;
  std::string names;
  for (const auto& known : tdbGetTypeNames(item)) names += (names.empty() ? "" : ", ") + known;
  refuse(value, names.empty() ? "no type: such items have none" : "none of the types " + names);
}

}  // namespace tooldb
