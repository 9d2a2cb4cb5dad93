#include "tooldb/xml/entry_reader.h"

#include <algorithm>
#include <array>

#include "geom/number_text.h"
#include "tooldb/model/text.h"
#include "tooldb/model/type_tables.h"
#include "tooldb/platform/error_codes.h"
#include "tooldb/xml/conditions_reader.h"
#include "tooldb/xml/grammar.h"
#include "tooldb/xml/older_attributes.h"
#include "tooldb/xml/pose_reader.h"

namespace tooldb {
namespace {

constexpr long kTemporaryFlag = 1;
constexpr double kWholeSection = 180;

// The code of a type name; without one, that of the table's first row.
template <std::size_t N>
int optional_type(const std::array<TypeName, N>& table, const ParsedEntry& entry,
                  std::string_view attribute_name) {
  const std::string name = upper_text(clean_name(attribute(entry.Root(), attribute_name)));
  if (name.empty()) return table[0].code;
  if (const auto code = type_code(table, name)) return *code;
  throw tdbError(kUnknownTypeError, entry.Where(entry.Root()) + "\"" + name + "\" is no " +
                                        std::string(attribute_name) + " of a TOOL; correct it");
}

int unit_of(const Element& element) {
  const auto name = has_attribute(element, att::kUnits) ? att::kUnits : att::kUnit;
  return attribute(element, name) == word::kInches ? 1 : 0;
}

void read_dimensions(const Element& element, tdbTool& tool) {
  const bool has_offset = has_attribute(element, att::kOffsetX) ||
                          has_attribute(element, att::kOffsetY) ||
                          has_attribute(element, att::kOffsetZ);
  tool.SetOffset(number(element, att::kOffsetX), number(element, att::kOffsetY),
                 number(element, att::kOffsetZ));
  if (!has_offset) tool.SetLength(number(element, att::kLength));
  tool.SetDiameter(number(element, att::kDiameter));
  tool.SetToolModelTolerance(number(element, att::kTolerance, tool.GetToolModelTolerance()));
  tool.SetCutterExtensionValue(
      number(element, att::kExtensionValue, tool.GetCutterExtensionValue()));
  tool.EnableSection(is_true(attribute(element, att::kSection)));
  tool.SetSectionStartAngle(number(element, att::kSectionStart));
  tool.SetSectionSpanAngle(number(element, att::kSectionSpan, kWholeSection));
}

void read_attributes(const ParsedEntry& entry, tdbTool& tool) {
  const Element& element = entry.Root();
  tool.SetCode(code_of(element));
  tool.SetName(clean_name(attribute(element, att::kName)));
  tool.SetType(optional_type(kToolTypes, entry, att::kType));
  tool.SetSubType(optional_type(kToolSubTypes, entry, att::kCutterType));
  const auto pose = pose_from_attributes(element);
  if (const auto any = pose ? pose : pose_from_children(element)) tool.SetPos(*any);
  if (is_true(attribute(element, att::kTemporary))) tool.SetFlags(kTemporaryFlag);
  tool.SetTraceColor(integer(element, att::kTraceColor, tool.GetTraceColor()));
  tool.SetAutoColor(is_true(attribute(element, att::kAutoTraceColor)));
  tool.SetAutoTcp(is_true(attribute(element, att::kAutoTcp)));
  tool.SetUnitOfMeasurement(unit_of(element));
  read_dimensions(element, tool);
  read_older_attributes(element, tool);
}

void read_description(const Element& element, tdbTool& tool) {
  tool.SetDescr(text_of(element).c_str());
}

void read_comment(const Element& element, tdbTool& tool) {
  tool.SetComment(text_of(element).c_str());
}

void read_parameter(const Element& element, tdbTool& tool) {
  const std::string name(attribute(element, att::kName));
  tool.AddParam(name.c_str(), text_of(element).c_str());
}

void read_offset(const Element& element, tdbTool& tool) {
  OFFSET_VALUE offset;
  offset.index = integer(element, att::kNumber);
  offset.DX = number(element, att::kDx);
  offset.DY = number(element, att::kDy);
  offset.DZ = number(element, att::kDz);
  offset.RAD = number(element, att::kRadius);
  offset.POS = integer(element, att::kPosition);
  offset.ABS = integer(element, att::kAbsolute) != 0;
  tool.AddOffsetParam(offset);
}

void read_length_option(const Element& element, tdbTool& tool) {
  tool.SetCutterExtensionStep(number(element, att::kStep, tool.GetCutterExtensionStep()));
  tool.SetCutterExtensionMax(number(element, att::kMax, tool.GetCutterExtensionMax()));
  tool.SetCutterExtensionEnabled(is_true(trimmed(text_of(element))));
}

void read_tool_conditions(const Element& element, tdbTool& tool) {
  if (tool.IsTurningTool()) {
    read_conditions(element, tool.GetTurningCutCond());
  } else {
    read_conditions(element, tool.GetCutCond());
  }
}

struct ChildRow {
  std::string_view name;
  void (*read)(const Element&, tdbTool&);
};
constexpr auto kToolChildren = std::to_array<ChildRow>({
    {tag::kDescription, read_description},
    {tag::kComment, read_comment},
    {tag::kParameter, read_parameter},
    {tag::kOffset, read_offset},
    {tag::kLengthOption, read_length_option},
    {tag::kConditions, read_tool_conditions},
});

}  // namespace

std::unique_ptr<tdbTool> EntryKind<tdbTool>::Read(const ParsedEntry& entry,
                                                  const ReadContext& context) {
  auto tool = std::make_unique<tdbTool>(std::string());
  read_attributes(entry, *tool);
  ItemReader items(entry, context, *tool);
  Scope scope{*tool};
  for (auto* child = entry.Root().FirstChildElement(); child; child = child->NextSiblingElement()) {
    const std::string name = upper_name(*child);
    const auto row = std::ranges::find(kToolChildren, name, &ChildRow::name);
    if (row != kToolChildren.end()) {
      row->read(*child, *tool);
    } else if (!items.Read(*child, scope) && !is_pose_child(name)) {
      items.Note(kGeneralError, *child,
                 "the element " + shown_tag(child->Name()) + " is not known; left out");
    }
  }
  return tool;
}

std::unique_ptr<tdbToolComponent> EntryKind<tdbToolComponent>::Read(const ParsedEntry& entry,
                                                                    const ReadContext& context) {
  const Element& element = entry.Root();
  auto component = std::make_unique<tdbToolComponent>();
  component->SetCode(clean_name(attribute(element, att::kCode)));
  component->SetName(clean_name(attribute(element, att::kName)));
  component->SetVersion(integer(element, att::kVersion));
  component->SetItemComponent(true);
  ItemReader items(entry, context, *component);
  items.ReadContent(element, *component);
  Scope scope{*component, true};
  for (auto* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
    items.Read(*child, scope);
  }
  return component;
}

}  // namespace tooldb
