#include "apps/title_block.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

#include "apps/condition_slots.h"
#include "apps/display_text.h"
#include "apps/tree_items.h"
#include "tooldb/tool_parts.h"
#include "tooldb/type_names.h"

namespace tooldb {
namespace {

constexpr double kRow = 4.2;

std::string scale_text(double scale) {
  return scale >= 1 ? shown_number(scale) + ":1" : "1:" + shown_number(1 / scale);
}

/// A text cut to the width of paper that it has.
std::string fitted(std::string_view text, double width) {
  constexpr double kColumn = 1.62;  // of the usual letters, at the size of the block
  return cut_to_width(printable(text), static_cast<int>(width / kColumn));
}

/// The cutting data: the conditions that describe the tool, not the limits of a check.
std::string cutting_data(tdbTool& tool) {
  // How a check samples the cut does not describe the tool.
  constexpr std::string_view kSampling[] = {"linear_tolerance", "angular_tolerance",
                                            "samples_offset", "sampling_step", "samples"};
  std::string text;
  for (const ConditionSlot& slot : condition_slots(tool)) {
    const bool describes = slot.name.find('.') == std::string::npos &&
                           slot.kind != ConditionSlot::Kind::kFlag &&
                           std::ranges::find(kSampling, slot.name) == std::end(kSampling);
    if (!describes) continue;
    if (!text.empty()) text += "; ";
    text += slot.name + " " + shown_number(slot.get());
  }
  return text;
}

/// Parameters that a machinist looks for, by the last part of their names.
struct KnownParameter {
  std::string_view name;
  std::string_view label;
};
constexpr KnownParameter kKnownParameters[] = {
    {"HAND", "right hand"},    {"TP", "pitch"},
    {"PITCH", "pitch"},        {"Pitch", "pitch"},
    {"BMC", "material"},       {"Material", "material"},
    {"GRADE", "grade"},        {"tool-coolant", "coolant"},
    {"vendor", "vendor"},      {"VENDOR", "vendor"},
    {"product-id", "product"}, {"PRODUCT", "product"},
};

std::string parameters(const tdbTool& tool) {
  std::string text;
  for (const auto& [name, value] : tool.GetParamList()) {
    const std::string_view last = std::string_view(name).substr(name.rfind('.') + 1);
    const auto known = std::ranges::find(kKnownParameters, last, &KnownParameter::name);
    if (known == std::end(kKnownParameters) || value.empty()) continue;
    const std::string shown = value == "true" ? "yes" : value == "false" ? "no" : value;
    const std::string entry = std::string(known->label) + " " + shown;
    if (text.find(entry) == std::string::npos) text += (text.empty() ? "" : "; ") + entry;
  }
  return text;
}

std::vector<std::string> offsets(const tdbTool& tool, std::size_t most) {
  std::vector<std::string> lines;
  for (const OFFSET_VALUE& o : tool.GetOffsetParamList()) {
    if (lines.size() == most) {
      lines.back() +=
          fmt::format(" (and {} more)", tool.GetOffsetParamCount() - static_cast<int>(most));
      break;
    }
    lines.push_back(fmt::format("offset {}: X {} Y {} Z {} R {}{}", o.index, shown_number(o.DX),
                                shown_number(o.DY), shown_number(o.DZ), shown_number(o.RAD),
                                o.ABS ? " absolute" : ""));
  }
  return lines;
}

void draw_legend(SvgPage& page, SvgPage::Point at) {
  struct Row {
    std::string_view css_class;
    std::string_view hatch;
    std::string_view text;
  };
  constexpr Row kRows[] = {{"cutter", "cutter-cut", "cutting part"},
                           {"shank", "shank-cut", "shank"},
                           {"holder", "holder-cut", "holder"}};
  for (const Row& row : kRows) {
    page.Rectangle({at.x, at.y - 2.4}, 6, 3, row.css_class);
    page.Rectangle({at.x, at.y - 2.4}, 6, 3, row.hatch);
    page.Text({at.x + 7.5, at.y}, "", row.text);
    at.y += kRow;
  }
  page.Line({at.x, at.y - 0.9}, {at.x + 6, at.y - 0.9}, "cutting");
  page.Text({at.x + 7.5, at.y}, "", "cutting edge");
  at.y += kRow;
  page.Circle({at.x + 3, at.y - 0.9}, 0.9, "point");
  page.Text({at.x + 7.5, at.y}, "", "programmed point");
}

}  // namespace

void draw_title_block(SvgPage& page, SvgPage::Point corner, double width, tdbTool& tool,
                      double scale) {
  constexpr double kLegendWidth = 40;
  const double text_width = width - kLegendWidth - 6;
  page.Rectangle(corner, width, kTitleBlockHeight, "frame");
  page.Line({corner.x + width - kLegendWidth, corner.y},
            {corner.x + width - kLegendWidth, corner.y + kTitleBlockHeight}, "rule");
  const double x = corner.x + 3;
  double y = corner.y + 6.5;
  const auto line = [&](const std::string& text) {
    page.Text({x, y}, "", fitted(text, text_width));
    y += kRow;
  };
  page.Text({x, y}, "head", fitted(tool.GetCode(), text_width / 1.8));
  y += kRow + 1.2;
  line(*tool.GetDescr() == '\0' ? tool.GetName() : tool.GetDescr());
  const auto* cutting_tool = first_of<tdbCuttingTool>(tool);
  const std::string kind = cutting_tool == nullptr ? "" : ", " + cutting_tool->GetTypeName();
  line(tdbGetTypeName(tool) + kind);
  line("scale " + scale_text(scale) + " on A4; lengths in " +
       (tool.GetUnitOfMeasurement() == 0 ? "millimetres" : "inches") + ", angles in degrees");
  line("cutting data (mm): " + cutting_data(tool));
  for (const std::string& offset : offsets(tool, 3)) line(offset);
  const std::string rest = parameters(tool);
  if (!rest.empty() && y < corner.y + kTitleBlockHeight - 1) line(rest);
  draw_legend(page, {corner.x + width - kLegendWidth + 3, corner.y + 6});
}

}  // namespace tooldb
