#include "apps/tool_json.h"

#include <cmath>

#include "apps/condition_slots.h"
#include "apps/tree_items.h"
#include "tooldb/placement.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"
#include "tooldb/type_names.h"

namespace tooldb {
namespace {

using Json = nlohmann::ordered_json;

const char* unit_name(int unit) { return unit == 0 ? "mm" : "inch"; }

Json triple_json(double a, double b, double c) {
  return {number_json(a), number_json(b), number_json(c)};
}

Json placement_json(const Transformation<double>& placement) {
  const auto [rz, ry, rx] = tdbGetAngles(placement);
  return {{"position", triple_json(placement(0, 3), placement(1, 3), placement(2, 3))},
          {"angles_zyx", triple_json(rz, ry, rx)}};
}

void add_geometry(Json& json, const tdbItem& item) {
  if (item.GetShapeFilePath()[0] != '\0') {
    json["model"] = {{"file", item.GetShapeFilePath()},
                     {"unit", unit_name(item.GetFileUnits())},
                     {"options", item.GetFileOptions()},
                     {"placement", placement_json(item.GetShapePos())}};
  }
  if (item.GetProfileXml()[0] != '\0') json["profile"] = item.GetProfileXml();
}

Json item_json(const TreeItem& entry) {
  const tdbItem& item = *entry.item;
  Json json{{"depth", entry.depth}, {"class", class_name(item)}, {"name", item.GetName()}};
  if (!item.GetCode().empty()) json["code"] = item.GetCode();
  if (const std::string type = tdbGetTypeName(item); !type.empty()) json["type"] = type;
  if (item.IsComponent()) json["library_member"] = true;
  json["placement"] = placement_json(item.GetPos());
  json["parameters"] = item.GetParams();
  add_geometry(json, item);
  return json;
}

Json parameters_json(const tdbTool& tool) {
  Json list = Json::array();
  for (const auto& [name, value] : tool.GetParamList()) {
    list.push_back({{"name", name}, {"value", value}});
  }
  return list;
}

Json offsets_json(const tdbTool& tool) {
  Json list = Json::array();
  for (const OFFSET_VALUE& o : tool.GetOffsetParamList()) {
    list.push_back({{"index", o.index},
                    {"dx", number_json(o.DX)},
                    {"dy", number_json(o.DY)},
                    {"dz", number_json(o.DZ)},
                    {"radius", number_json(o.RAD)},
                    {"position", o.POS},
                    {"absolute", o.ABS}});
  }
  return list;
}

}  // namespace

Json number_json(double value) {
  const bool whole = value == std::floor(value) && std::abs(value) < 1e15;
  return whole ? Json(static_cast<std::int64_t>(value)) : Json(value);
}

// Flat, since a tree may be deeper than readers of JSON go.
Json items_json(tdbCompositeItem& root) {
  Json items = Json::array();
  for (const TreeItem& entry : items_below(root)) items.push_back(item_json(entry));
  return items;
}

Json tool_json(tdbTool& tool) {
  Json json{{"code", tool.GetCode()},
            {"name", tool.GetName()},
            {"type", tdbGetTypeName(tool)},
            {"subtype", tool.GetSubType()},
            {"description", tool.GetDescr()},
            {"comment", tool.GetComment()},
            {"unit", unit_name(tool.GetUnitOfMeasurement())},
            {"diameter", number_json(tool.GetDiameter())},
            {"length", number_json(tool.GetLength())},
            {"offset", triple_json(tool.GetOffsetX(), tool.GetOffsetY(), tool.GetOffsetZ())},
            {"auto_tcp", tool.GetAutoTcp()},
            {"tolerance", number_json(tool.GetToolModelTolerance())},
            {"color", tool.GetTraceColor()},
            {"auto_color", tool.GetAutoColor()}};
  if (tool.IsSectionEnabled()) {
    json["section"] = {{"start", number_json(tool.GetSectionStartAngle())},
                       {"span", number_json(tool.GetSectionSpanAngle())}};
  }
  json["placement"] = placement_json(tool.GetPos());
  json["parameters"] = parameters_json(tool);
  json["offsets"] = offsets_json(tool);
  Json& conditions = json["conditions"] = Json::object();
  for (const ConditionSlot& slot : condition_slots(tool)) {
    conditions[slot.name] =
        slot.kind == ConditionSlot::Kind::kFlag ? Json(slot.get() != 0) : number_json(slot.get());
  }
  json["items"] = items_json(tool);
  return json;
}

std::string json_text(const Json& value) {
  return value.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace tooldb
