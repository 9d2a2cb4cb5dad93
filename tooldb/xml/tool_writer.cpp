#include <string>
#include <string_view>

#include "tooldb/model/type_tables.h"
#include "tooldb/tool.h"
#include "tooldb/xml/grammar.h"
#include "tooldb/xml/item_writer.h"
#include "tooldb/xml/xml_append.h"

using namespace tooldb;  // NOLINT(google-build-using-namespace): members of global classes follow

namespace {

constexpr int kToolVersion = 13;

void append_start_tag(std::string& out, const tdbTool& tool) {
  append(out, '<', tag::kTool, Attribute{att::kName, tool.GetName()});
  append_pose(out, tool.GetPos());
  append(out, Attribute{att::kTemporary, word::kFalse},
         Attribute{att::kExtensionValue, General{tool.GetCutterExtensionValue()}},
         Attribute{att::kOffsetX, General{tool.GetOffsetX()}},
         Attribute{att::kOffsetY, General{tool.GetOffsetY()}},
         Attribute{att::kOffsetZ, General{tool.GetOffsetZ()}},
         Attribute{att::kDiameter, General{tool.GetDiameter()}},
         Attribute{att::kVersion, kToolVersion},
         Attribute{att::kTolerance, General{tool.GetToolModelTolerance()}},
         Attribute{att::kType, type_name(kToolTypes, tool.GetType(), kOtherToolType)},
         Attribute{att::kTraceColor, tool.GetTraceColor()},
         Attribute{att::kAutoTraceColor, word::flag(tool.GetAutoColor())},
         Attribute{att::kUnits, word::unit(tool.GetUnitOfMeasurement())},
         Attribute{att::kCutterType, type_name(kToolSubTypes, tool.GetSubType(), kOtherSubType)},
         Attribute{att::kAutoTcp, word::flag(tool.GetAutoTcp())},
         Attribute{att::kSection, word::flag(tool.IsSectionEnabled())},
         Attribute{att::kSectionStart, General{tool.GetSectionStartAngle()}},
         Attribute{att::kSectionSpan, General{tool.GetSectionSpanAngle()}}, ">\n");
}

void append_parameter(std::string& out, std::string_view name, std::string_view value) {
  append(out, '<', tag::kParameter, Attribute{att::kName, name}, '>', value, "</", tag::kParameter,
         ">\n");
}

// A tool has parameters of two kinds, the item's and its own list; a pair that stands in both is
// written once.
void append_tool_parameters(std::string& out, const tdbTool& tool) {
  const auto item_params = tool.GetParams();
  for (const auto& [name, value] : item_params) append_parameter(out, name, value);
  for (const auto& [name, value] : tool.GetParamList()) {
    const auto same = item_params.find(name);
    if (same == item_params.end() || same->second != value) append_parameter(out, name, value);
  }
}

void append_offset(std::string& out, const OFFSET_VALUE& offset) {
  append(out, '<', tag::kOffset, ' ', Attribute{att::kNumber, offset.index},
         Attribute{att::kDx, Fixed{offset.DX}}, Attribute{att::kDy, Fixed{offset.DY}},
         Attribute{att::kDz, Fixed{offset.DZ}}, Attribute{att::kRadius, Fixed{offset.RAD}},
         Attribute{att::kPosition, offset.POS}, Attribute{att::kAbsolute, offset.ABS ? 1 : 0},
         "></", tag::kOffset, '>');
}

void append_length_option(std::string& out, const tdbTool& tool) {
  append(out, '<', tag::kLengthOption, ' ',
         Attribute{att::kStep, Fixed{tool.GetCutterExtensionStep()}},
         Attribute{att::kMax, Fixed{tool.GetCutterExtensionMax()}}, '>',
         word::flag(tool.IsCutterExtensionEnabled()), "</", tag::kLengthOption, '>');
}

}  // namespace

void tdbTool::WriteXml(std::string& out, const std::vector<std::string>& search_paths) const {
  append_start_tag(out, *this);
  append_line(out, tag::kDescription, description_);
  append_line(out, tag::kComment, comment_);
  append_items_below(out, *this, Contents::kTool, search_paths);
  append_tool_parameters(out, *this);
  for (const OFFSET_VALUE& offset : offset_list_) append_offset(out, offset);
  append_length_option(out, *this);
  if (IsTurningTool()) {
    turning_cut_cond_.WriteXml(out);
  } else {
    cut_cond_.WriteXml(out);
  }
  append(out, "</", tag::kTool, ">\n");
}
