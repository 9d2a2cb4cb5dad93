#include "tooldb/xml/item_reader.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <optional>

#include "tooldb/model/text.h"
#include "tooldb/model/type_tables.h"
#include "tooldb/platform/error_codes.h"
#include "tooldb/tool_parts.h"
#include "tooldb/xml/grammar.h"
#include "tooldb/xml/model_path.h"
#include "tooldb/xml/pose_reader.h"

namespace tooldb {
namespace {

// What a cutting tool without a name for its type is written with.
constexpr std::string_view kUndefined = "UNDEF";

std::string type_text(const Element& element) {
  return upper_text(clean_name(attribute(element, att::kType)));
}

template <std::size_t N>
int required_type(const std::array<TypeName, N>& table, const Element& element) {
  const std::string name = type_text(element);
  const auto code = type_code(table, name);
  if (!code) {
    throw tdbError(kUnknownTypeError, "\"" + name + "\" is no type of a " + upper_name(element) +
                                          "; correct its TYPE");
  }
  return *code;
}

template <class Part, const auto& table>
std::unique_ptr<tdbItem> make_part(const Element& element) {
  return std::make_unique<Part>(required_type(table, element));
}

std::unique_ptr<tdbItem> make_cutting_tool(const Element& element) {
  const bool undefined = type_text(element) == kUndefined;
  return std::make_unique<tdbCuttingTool>(undefined ? -1
                                                    : required_type(kCuttingToolTypes, element));
}

// A use of a library component has its code, a definition has not.
std::unique_ptr<tdbItem> make_component(const Element& element) {
  auto component = std::make_unique<tdbToolComponent>();
  component->SetCode(clean_name(attribute(element, att::kCode)));
  component->SetVersion(integer(element, att::kVersion));
  component->SetItemComponent(!has_attribute(element, att::kCode));
  return component;
}

struct ItemRow {
  std::string_view name;
  std::unique_ptr<tdbItem> (*make)(const Element&);
};
constexpr auto kItems = std::to_array<ItemRow>({
    {tag::kCuttingTool, make_cutting_tool},
    {tag::kCutter, make_part<tdbToolCutter, kCutterTypes>},
    {tag::kShank, make_part<tdbToolShank, kShankTypes>},
    {tag::kHolder, make_part<tdbToolHolder, kHolderTypes>},
    {tag::kFixedLink, make_part<tdbFixedLink, kFixedLinkTypes>},
    {tag::kAngleHead, make_part<tdbToolAngleHead, kAngleHeadTypes>},
    {tag::kToolComponent, make_component},
});

const ItemRow* find_item_row(std::string_view name) {
  const auto row = std::ranges::find(kItems, name, &ItemRow::name);
  return row == kItems.end() ? nullptr : &*row;
}

float narrowed(double value) {
  return static_cast<float>(std::clamp(value, -double{FLT_MAX}, double{FLT_MAX}));
}

void read_color(const Element& element, tdbItem& item) {
  tdbToolMaterial& material = item.GetMaterial();
  if (has_attribute(element, att::kEnvironmentMap)) {
    material.environmentMap = attribute(element, att::kEnvironmentMap);
  }
  material.transparency =
      narrowed(number(element, att::kTransparency, double{material.transparency}));
  const std::string text = text_of(element);
  if (trimmed(text).empty()) return;
  const Vec3d<double> color = three_numbers(text);
  material.red = narrowed(color.x);
  material.green = narrowed(color.y);
  material.blue = narrowed(color.z);
}

void read_interference(const Element& element, tdbItem& item) {
  tdbInterferenceSettings settings;
  if (has_attribute(element, att::kInterferenceInherit)) {
    settings.inherit = is_true(attribute(element, att::kInterferenceInherit));
  }
  settings.type = attribute(element, att::kInterferenceType) == word::kNearMiss ? 1 : 0;
  settings.value = number(element, att::kInterferenceValue);
  item.SetInterferenceSettings(settings);
}

bool is_component_use(const Element& element) {
  return upper_name(element) == tag::kToolComponent && has_attribute(element, att::kCode);
}

Transformation<double> pose_of(const Element& element) {
  return pose_from_children(element).value_or(Transformation<double>());
}

}  // namespace

struct ItemReader::ChildRow {
  std::string_view name;
  void (*read)(ItemReader&, const Element&, tdbItem&);
};

const ItemReader::ChildRow* ItemReader::FindChildRow(std::string_view name) {
  static constexpr auto kRows = std::to_array<ChildRow>({
      {tag::kFile, [](auto& reader, auto& e, auto& item) { reader.ReadFile(e, item); }},
      {tag::kFileOptions,
       [](auto&, auto& e, auto& item) { item.SetFileOptions(text_of(e).c_str()); }},
      {tag::kProfile, [](auto&, auto& e, auto& item) { item.SetProfileXml(text_of(e).c_str()); }},
      {tag::kColor, [](auto&, auto& e, auto& item) { read_color(e, item); }},
      {tag::kShapePose, [](auto&, auto& e, auto& item) { item.SetShapePos(pose_of(e)); }},
      {tag::kProfilePose,
       [](auto&, auto& e, auto& item) {
         if (auto* cutter = dynamic_cast<tdbToolCutter*>(&item)) cutter->SetProfileCSys(pose_of(e));
       }},
  });
  const auto row = std::ranges::find(kRows, name, &ChildRow::name);
  return row == kRows.end() ? nullptr : &*row;
}

void ItemReader::Note(int code, const Element& element, const std::string& what) {
  root_.PushError(tdbError(code, entry_.Where(element) + what));
}

bool ItemReader::Read(const Element& element, Scope& scope) {
  const ItemRow* row = find_item_row(upper_name(element));
  if (row == nullptr) return false;
  std::unique_ptr<tdbItem> item;
  try {
    item = row->make(element);
  } catch (const tdbError& error) {
    throw tdbError(error.code, entry_.Where(element) + error.message);
  }
  item->RemoveParams();  // the constructor's defaults are not the document's
  item->SetName(clean_name(attribute(element, att::kName)));
  item->SetUnitOfMeasurement(root_.GetUnitOfMeasurement());
  if (scope.members) item->SetItemComponent(true);
  ReadContent(element, *item);
  tdbItem& added = Attach(element, std::move(item), scope);
  ReadMembers(element, added, scope);
  return true;
}

tdbItem& ItemReader::Attach(const Element& element, std::unique_ptr<tdbItem> item, Scope& scope) {
  const std::string name = clean_name(attribute(element, att::kParent));
  tdbCompositeItem* parent = assembly_.FindParent(name, scope);
  if (parent == nullptr) {
    parent = &scope.owner;
    if (parent == &root_) {
      Note(kGeneralError, element,
           "no part is named \"" + name + "\"; the " + upper_name(element) + " \"" +
               item->GetName() + "\" hangs on \"" + root_.GetName() + "\" instead");
    }
  }
  if (!assembly_.HasRoomBelow(*parent)) {
    throw tdbError(kGeneralError,
                   entry_.Where(element) +
                       "parts hang on one another more than 100 deep; correct their PARENT");
  }
  tdbItem& added = *item;
  assembly_.Add(std::move(item), *parent, scope);
  return added;
}

// The items inside the element, or from the library.
void ItemReader::ReadMembers(const Element& element, tdbItem& item, Scope& scope) {
  auto* group = dynamic_cast<tdbCompositeItem*>(&item);
  if (group == nullptr) return;
  if (is_component_use(element)) {
    LoadComponent(element, *group, item.GetCode());
    return;
  }
  const auto* holder = dynamic_cast<const tdbToolHolder*>(&item);
  if (holder != nullptr && !holder->GetComponentCode().empty()) {
    // A definition would write what is loaded here as its own, beside the code.
    if (holder->IsComponent()) {
      Note(kGeneralError, element,
           "a holder inside a component cannot be taken from the library; it is empty");
    } else {
      LoadComponent(element, *group, holder->GetComponentCode());
    }
  }
  // Where files list items one after the other, a part without a name cannot be named as a parent.
  if (item.GetName().empty() && !is_closed(item)) {
    if (ReadItemsIn(element, scope)) {
      Note(
          kGeneralError, element,
          "parts stand in a " + upper_name(element) +
              " that has no name to hang on; they are read as if they followed it. Give it a NAME");
    }
    return;
  }
  Scope inner{*group, item.IsComponent()};
  ReadItemsIn(element, inner);
}

bool ItemReader::ReadItemsIn(const Element& element, Scope& scope) {
  bool found = false;
  for (auto* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
    found |= Read(*child, scope);
  }
  return found;
}

void ItemReader::LoadComponent(const Element& element, tdbCompositeItem& user,
                               const std::string& code) {
  const auto& find = context_.find_component;
  if (const tdbToolComponent* component = find ? find(code) : nullptr) {
    assembly_.AddMembers(user, *component);
    return;
  }
  Note(kComponentNotFoundError, element,
       "component \"" + code + "\" is not in the components library; add it there, or link it");
}

void ItemReader::ReadContent(const Element& element, tdbItem& item) {
  const auto pose = pose_from_attributes(element);
  const auto older_pose = pose ? std::nullopt : pose_from_children(element);
  if (pose || older_pose) item.SetPos(pose ? *pose : *older_pose);
  if (has_attribute(element, att::kSpinning)) {
    item.SetEnableSpinning(is_true(attribute(element, att::kSpinning)));
  }
  read_interference(element, item);
  const bool takes_items = !item.IsLeaf() && (&item == &root_ || !is_component_use(element));
  for (auto* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
    const std::string name = upper_name(*child);
    if (find_item_row(name) != nullptr) {
      if (!takes_items) {
        Note(kGeneralError, *child,
             "a " + name + " cannot stand in a " + upper_name(element) + "; left out");
      }
    } else if (const ChildRow* row = FindChildRow(name)) {
      row->read(*this, *child, item);
    } else if (!older_pose || !is_pose_child(name)) {
      ReadParameter(*child, item);
    }
  }
}

// Any other element with a text is a parameter of that name.
void ItemReader::ReadParameter(const Element& child, tdbItem& item) {
  if (child.FirstChildElement() != nullptr) {
    Note(kGeneralError, child,
         "the element " + shown_tag(child.Name()) + " is not known; left out");
    return;
  }
  std::string name = child.Name();
  const std::string text = text_of(child);
  if (upper_name(child) == tag::kParameter && has_attribute(child, att::kName)) {
    name = attribute(child, att::kName);
  }
  item.SetParam(name.c_str(), text.c_str());
  auto* holder = dynamic_cast<tdbToolHolder*>(&item);
  if (holder != nullptr && upper_name(child) == tag::kComponentCode) {
    holder->SetComponentCode(clean_name(text));
  }
}

void ItemReader::ReadFile(const Element& child, tdbItem& item) {
  item.SetFileUnits(attribute(child, att::kUnit) == word::kInches ? 1 : 0);
  const std::string text = text_of(child);
  const std::string_view path = trimmed(text);
  if (path.empty()) return;
  item.SetShapeFilePath(resolved_model_path(path, context_.search_paths).c_str());
}

}  // namespace tooldb
