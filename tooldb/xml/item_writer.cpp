#include "tooldb/xml/item_writer.h"

#include "geom/euler_angles.h"
#include "tooldb/model/text.h"
#include "tooldb/tool_parts.h"
#include "tooldb/xml/grammar.h"
#include "tooldb/xml/model_path.h"
#include "tooldb/xml/xml_append.h"

namespace tooldb {

void append_pose(std::string& out, const Transformation<double>& pose) {
  const EulerAngles angles = split_zyx(pose);
  append(out, Attribute{att::kPosX, General{pose(0, 3)}},
         Attribute{att::kPosY, General{pose(1, 3)}}, Attribute{att::kPosZ, General{pose(2, 3)}},
         Attribute{att::kRotZ, General{angles.z}}, Attribute{att::kRotY, General{angles.y}},
         Attribute{att::kRotX, General{angles.x}});
}

void append_named_pose(std::string& out, std::string_view name,
                       const Transformation<double>& pose) {
  const EulerAngles angles = split_zyx(pose);
  append(out, '<', name, " >\n");
  append(out, '<', tag::kTranslation, '>', General{pose(0, 3)}, ' ', General{pose(1, 3)}, ' ',
         General{pose(2, 3)}, "</", tag::kTranslation, ">\n");
  append(out, '<', tag::kRotation, Attribute{att::kType, word::kAngleOrder}, '>', General{angles.z},
         ' ', General{angles.y}, ' ', General{angles.x}, "</", tag::kRotation, ">\n");
  append(out, "</", name, ">\n");
}

void append_color(std::string& out, const tdbToolMaterial& material) {
  append(out, '<', tag::kColor, Attribute{att::kEnvironmentMap, material.environmentMap},
         Attribute{att::kTransparency, General{material.transparency}}, '>', General{material.red},
         ' ', General{material.green}, ' ', General{material.blue}, "</", tag::kColor, '>');
}

void append_parameters(std::string& out, const tdbItem& item) {
  for (const auto& [name, value] : item.GetParams()) append_line(out, name, value);
}

void append_shape_file(std::string& out, const tdbItem& item,
                       const std::vector<std::string>& search_paths, std::string_view after_file) {
  append(out, '<', tag::kFile, Attribute{att::kUnit, word::unit(item.GetFileUnits())}, '>',
         stored_model_path(trimmed(item.GetShapeFilePath()), search_paths), "</", tag::kFile, '>',
         after_file);
  append_element(out, tag::kFileOptions, trimmed(item.GetFileOptions()));
}

void append_profile(std::string& out, const tdbItem& item) {
  append_element(out, tag::kProfile, trimmed(item.GetProfileXml()));
}

std::string parent_name(const tdbItem& item) {
  const tdbItem* parent = item.GetParent();
  return parent == nullptr ? std::string() : parent->GetName();
}

std::string parent_reference(const tdbItem& item) {
  const tdbItem* parent = item.GetParent();
  if (parent != nullptr && parent->IsComponent() && !item.IsComponent()) {
    return parent_chain(*parent);
  }
  return parent_name(item);
}

namespace {

// Who writes the members among the items at some place of the walk.
enum class Members { kThisElement, kNestedComponent, kLibrary };

struct Place {
  const tdbItem* item;
  Members members;
};

bool is_written(const Place& place, Contents contents) {
  const bool member = place.item->IsComponent();
  if (place.members != Members::kThisElement) {
    return !member && contents != Contents::kComponent;
  }
  switch (contents) {
    case Contents::kTool:
      return !member || dynamic_cast<const tdbToolComponent*>(place.item) != nullptr;
    case Contents::kComponent:
      return member;
    case Contents::kCuttingTool:
      break;
  }
  return true;
}

bool is_written_elsewhere(const Place& place) {
  return place.members == Members::kNestedComponent && place.item->IsComponent();
}

// Who writes the members below a component that stands at `place`.
Members members_below(const Place& place, bool written) {
  if (dynamic_cast<const tdbToolComponent*>(place.item) == nullptr) return place.members;
  const bool definition = place.item->IsComponent() && (written || is_written_elsewhere(place));
  return definition ? Members::kNestedComponent : Members::kLibrary;
}

void push_children(std::vector<Place>& open, const tdbItem& item, Members members) {
  const auto* group = dynamic_cast<const tdbCompositeItem*>(&item);
  if (group == nullptr) return;
  for (auto i = static_cast<unsigned>(group->GetItemCount()); i > 0; --i) {
    open.push_back({group->GetItem(i - 1), members});
  }
}

}  // namespace

void append_items_below(std::string& out, const tdbCompositeItem& top, Contents contents,
                        const std::vector<std::string>& search_paths) {
  std::vector<Place> open;  // what is still to be visited, the next one last
  push_children(open, top, Members::kThisElement);
  while (!open.empty()) {
    const Place place = open.back();
    open.pop_back();
    const bool written = is_written(place, contents);
    if (written) place.item->WriteXml(out, search_paths);
    const bool holds_all = dynamic_cast<const tdbCuttingTool*>(place.item) != nullptr &&
                           (written || is_written_elsewhere(place));
    if (!holds_all) push_children(open, *place.item, members_below(place, written));
  }
}

}  // namespace tooldb

void tdbItem::WriteInterfSettingsXml(std::string& out) const {
  using namespace tooldb;
  out.clear();
  append(out, att::kInterferenceInherit, "=\"", word::flag(interference_.inherit), '"',
         Attribute{att::kInterferenceType,
                   interference_.type == 1 ? word::kNearMiss : word::kAllowedInterference},
         Attribute{att::kInterferenceValue, General{interference_.value}});
}
