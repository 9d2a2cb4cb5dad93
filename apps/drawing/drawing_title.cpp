#include <fmt/format.h>

#include <algorithm>
#include <span>

#include "apps/condition_slots.h"
#include "apps/display_text.h"
#include "apps/drawing/drawing.h"
#include "apps/drawing/tool_measures.h"
#include "apps/fields.h"
#include "tooldb/profile.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"
#include "tooldb/type_names.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

constexpr double kCaption = 2.3;
constexpr double kText = 3.1;
constexpr double kCode = 5.2;
constexpr double kRow = 8.2;          // of a caption and one line of text
constexpr double kLine = 4.1;         // of each further line
constexpr double kTableShare = 0.36;  // of the width, for the table of dimensions
constexpr int kMostOffsets = 6;

// Columns of text that a width on the paper has room for, in DejaVu Sans too, which is the widest
// of the fonts that stand in for those of the style sheet.
int columns_in(double width, double height) { return static_cast<int>(width / (0.55 * height)); }

// A text that is cut to the room it has on the paper.
std::string fitted(const std::string& text, double width, double height) {
  return cut_to_width(printable(text), columns_in(width, height));
}

std::vector<std::string> lines_of(const std::string& text, int columns) {
  std::vector<std::string> lines;
  std::string clean;
  append_printable_lines(clean, text);
  const std::string folded = wrapped(clean, columns, 0);
  for (std::size_t from = 0; from < folded.size();) {
    const std::size_t end = std::min(folded.find('\n', from), folded.size());
    lines.push_back(cut_to_width(folded.substr(from, end - from), columns));
    from = end + 1;
  }
  if (lines.empty()) lines.emplace_back();
  return lines;
}

std::string joined(const std::vector<std::string>& parts, const char* between) {
  return fmt::format("{}", fmt::join(parts, between));
}

// Conditions that a machinist looks for, how they are called on a drawing, and the value that need
// not be said. Their lengths are millimetres whatever the tool's unit.
struct ConditionName {
  const char* slot;
  const char* name;
  const char* unit;
  double usual;
};
constexpr ConditionName kConditions[] = {
    {"inserts", "teeth", "", -1},
    {"ap", "ap", " mm", -1},
    {"dc", "Dc", " mm", -1},
    {"corner_radius", "corner radius", " mm", -1},
    {"rake_angle", "rake", "\u00b0", 0},
    {"approach_angle", "approach", "\u00b0", 90},
    {"verify.feed.maximum", "feed \u2264", " mm/min", 30000},
    {"verify.spindle.maximum", "spindle \u2264", " /min", 20000}};

std::string condition_text(tdbTool& tool) {
  const auto slots = condition_slots(tool);
  std::vector<std::string> parts;
  for (const ConditionName& wanted : kConditions) {
    const auto slot = std::ranges::find(slots, wanted.slot, &ConditionSlot::name);
    if (slot == slots.end() || slot->get() == wanted.usual) continue;
    parts.push_back(fmt::format("{} {}{}", wanted.name, shown_number(slot->get()), wanted.unit));
  }
  return joined(parts, ", ");
}

std::string offset_text(const OFFSET_VALUE& o) {
  return fmt::format("{}: X{} Y{} Z{} R{}{}", o.index, shown_number(o.DX), shown_number(o.DY),
                     shown_number(o.DZ), shown_number(o.RAD), o.ABS ? " abs" : "");
}

std::string offsets_text(const tdbTool& tool) {
  std::vector<std::string> parts = {fmt::format("tool X{} Y{} Z{}", shown_number(tool.GetOffsetX()),
                                                shown_number(tool.GetOffsetY()),
                                                shown_number(tool.GetOffsetZ()))};
  const int count = tool.GetOffsetParamCount();
  for (int i = 0; i < std::min(count, kMostOffsets); ++i) {
    parts.push_back(offset_text(tool.GetOffsetParam(i)));
  }
  if (count > kMostOffsets) parts.push_back(fmt::format("and {} more", count - kMostOffsets));
  return joined(parts, "; ");
}

// Pitch, hand and the like, by the last part of the parameter's name, whatever file it came from.
struct FurtherName {
  std::string_view parameter;
  std::string_view name;
};
constexpr FurtherName kFurther[] = {{"PITCH", "pitch"},       {"TP", "pitch"},
                                    {"HAND", "hand"},         {"BMC", "material"},
                                    {"MATERIAL", "material"}, {"COATING", "coating"},
                                    {"VENDOR", "vendor"},     {"PRODUCT-ID", "product"}};
constexpr std::pair<std::string_view, std::string_view> kHands[] = {
    {"TRUE", "right"}, {"FALSE", "left"}, {"R", "right"}, {"L", "left"}, {"N", "neutral"}};

std::string upper_text(std::string text) {
  tdbUtil::to_upper(text);
  return text;
}

std::string hand_text(const std::string& value) {
  const auto* const row = std::ranges::find(
      kHands, upper_text(value), [](const auto& hand) { return std::string(hand.first); });
  return row == std::end(kHands) ? value : std::string(row->second);
}

// Adds what a list of parameters says; what is said already stays.
template <class Params>
void add_further(const Params& params, std::vector<std::string>& parts) {
  for (const auto& [name, value] : params) {
    const std::string key = upper_text(name.substr(name.rfind('.') + 1));
    const auto row = std::ranges::find(kFurther, key, &FurtherName::parameter);
    if (row == std::end(kFurther) || value.empty()) continue;
    const std::string start = std::string(row->name) + ' ';
    const auto is_said = [&](const std::string& part) { return part.starts_with(start); };
    if (std::ranges::any_of(parts, is_said)) continue;
    parts.push_back(start + (row->name == "hand" ? hand_text(value) : value));
  }
}

std::string further_text(tdbTool& tool) {
  std::vector<std::string> parts;
  for (int i = 0; i < tool.GetCutterCount(); ++i) {
    add_further(tool.GetCutter(i)->GetParams(), parts);
  }
  add_further(tool.GetParamList(), parts);
  return joined(parts, ", ");
}

std::string kind_text(tdbTool& tool) {
  if (tool.GetCutterCount() == 0) return "holder";
  const auto kind = field_value(tool, "kind");
  const std::string type = tdbGetTypeName(tool);
  return kind && !kind->text.empty() && kind->text != type ? type + ", " + kind->text : type;
}

std::vector<std::string> cutter_texts(const std::vector<Body>& bodies) {
  std::vector<std::string> texts;
  for (const Body& body : bodies) {
    if (body.role != Body::Role::kCutter) continue;
    for (const tdbDimension& dimension : tdbProfile::GetDimensions(*body.item)) {
      texts.push_back(dimension_text(dimension));
    }
  }
  std::erase(texts, "");
  return texts;
}

class TitleBlock {
 public:
  TitleBlock(SvgSheet& sheet, PaperPoint corner, double width, double height)
      : sheet_(sheet), corner_(corner), width_(width), height_(height) {}

  void Draw(tdbTool& tool, const std::vector<Body>& bodies, const std::string& scale) {
    sheet_.Rectangle("paper", corner_, width_, height_);
    sheet_.Rectangle("frame", corner_, width_, height_);
    const double left = width_ * (1 - kTableShare);
    sheet_.Line("rule", {corner_.x + left, corner_.y}, {corner_.x + left, corner_.y + height_});
    const char* unit = tool.GetUnitOfMeasurement() == 0 ? "mm" : "inch";
    DrawHead(tool, left, unit, scale);
    const bool has_cutter = tool.GetCutterCount() > 0;
    const std::pair<const char*, std::string> rows[] = {
        {"description", tool.GetDescr()},
        {"kind", kind_text(tool)},
        {"comment", tool.GetComment()},
        {"further data", further_text(tool)},
        {"cutting data", has_cutter ? condition_text(tool) : ""},
        {"offsets", has_cutter ? offsets_text(tool) : ""}};
    DrawRows(rows, left);
    DrawTable(corner_.x + left, width_ - left, bodies, unit);
    DrawLegend(corner_.x + left);
  }

 private:
  static constexpr double kHeadRow = 13.5;
  static constexpr double kLegendHeight = 16;
  static constexpr double kWideLetter = 0.68;
  static constexpr double kTableHead = 6;
  static constexpr double kTableStep = 4.8;
  static constexpr double kTableText = 2.9;

  void DrawHead(const tdbTool& tool, double width, const std::string& unit,
                const std::string& scale) {
    const double narrow = 22;
    const double code = width - 2 * narrow;
    sheet_.Text("caption", {corner_.x + 2, corner_.y + 4}, kCaption, Anchor::kStart, "code");
    DrawCode(tool.GetCode(), code - 4);
    const std::pair<const char*, const std::string&> cells[] = {{"unit", unit}, {"scale", scale}};
    double x = corner_.x + code;
    for (const auto& [caption, text] : cells) {
      sheet_.Line("rule", {x, corner_.y}, {x, corner_.y + kHeadRow});
      sheet_.Text("caption", {x + 2, corner_.y + 4}, kCaption, Anchor::kStart, caption);
      sheet_.Text("", {x + 2, corner_.y + 10}, kText + 0.8, Anchor::kStart, text);
      x += narrow;
    }
  }

  // Capitals are wide; a long code is written smaller before it is cut.
  void DrawCode(const std::string& code, double width) {
    const double wide = kWideLetter * display_width(printable(code));
    const double size = std::clamp(wide > 0 ? width / wide : kCode, kCaption, kCode);
    const int columns = static_cast<int>(width / (kWideLetter * size));
    sheet_.Text("", {corner_.x + 2, corner_.y + 10.5}, size, Anchor::kStart,
                cut_to_width(printable(code), columns));
  }

  // A long text takes further lines as far as there is room; empty rows make room for them.
  void DrawRows(std::span<const std::pair<const char*, std::string>> rows, double width) {
    double y = corner_.y + kHeadRow;
    const auto filled =
        std::ranges::count_if(rows, [](const auto& r) { return !r.second.empty(); });
    const double room = height_ - kHeadRow - kRow * static_cast<double>(filled);
    auto spare = static_cast<std::size_t>(std::max(room / kLine, 0.0));
    for (const auto& [caption, text] : rows) {
      if (text.empty()) continue;
      auto lines = lines_of(text, columns_in(width - 4, kText));
      const std::size_t shown = std::min(lines.size(), 1 + spare);
      if (shown < lines.size()) lines[shown - 1] += "\u2026";
      lines.resize(shown);
      spare -= shown - 1;
      DrawRow({corner_.x, y}, width, caption, lines);
      y += kRow + kLine * static_cast<double>(shown - 1);
    }
  }

  void DrawRow(PaperPoint at, double width, const char* caption,
               const std::vector<std::string>& lines) {
    sheet_.Line("rule", at, {at.x + width, at.y});
    sheet_.Text("caption", {at.x + 2, at.y + 3}, kCaption, Anchor::kStart, caption);
    double y = at.y + 6.9;
    for (const std::string& line : lines) {
      sheet_.Text("", {at.x + 2, y}, kText, Anchor::kStart, line);
      y += kLine;
    }
  }

  // The dimensions of the cutting parts: what the drawing has no room for stands here too.
  void DrawTable(double x, double width, const std::vector<Body>& bodies, const std::string& unit) {
    sheet_.Text("caption", {x + 2, corner_.y + 4}, kCaption, Anchor::kStart,
                "dimensions of the cutting part (" + unit + ")");
    const auto texts = cutter_texts(bodies);
    if (texts.empty()) return;
    const double room = height_ - kLegendHeight - kTableHead;
    const double step = std::min(kTableStep, room / static_cast<double>(texts.size()));
    const double size = step * kTableText / kTableStep;
    double y = corner_.y + kTableHead + step * 0.6;
    for (const std::string& text : texts) {
      sheet_.Text("", {x + 2, y}, size, Anchor::kStart, fitted(text, width - 4, size));
      y += step;
    }
  }

  void DrawLegend(double x) {
    const double y = corner_.y + height_ - kLegendHeight;
    sheet_.Line("rule", {x, y}, {corner_.x + width_, y});
    constexpr double kSwatch = 6;
    const auto place = [&](int i) {
      const int column = i / 3;
      return PaperPoint{x + 2 + 30 * column, y + 2 + 4.6 * (i % 3)};
    };
    constexpr std::pair<const char*, const char*> kAreas[] = {
        {"cutter", "cutting part"}, {"shank", "shank"}, {"holder", "holder"}};
    int row = 0;
    for (const auto& [style, name] : kAreas) {
      const PaperPoint at = place(row++);
      const std::vector<PaperPoint> area = {
          at, {at.x + kSwatch, at.y}, {at.x + kSwatch, at.y + 3}, {at.x, at.y + 3}};
      sheet_.Area(style, {area});
      sheet_.Area(std::string(style) + "-hatch", {area});
      sheet_.Text("caption", {at.x + kSwatch + 2, at.y + 2.4}, kCaption, Anchor::kStart, name);
    }
    constexpr std::pair<const char*, const char*> kLines[] = {
        {"cutting", "edge that cuts"}, {"gauge", "tool origin"}, {"dim", "programmed point"}};
    for (const auto& [style, name] : kLines) {
      const PaperPoint at = place(row++);
      if (std::string_view(style) == "dim") {
        sheet_.Circle(style, {at.x + kSwatch / 2, at.y + 1.5}, 1.2);
      } else {
        sheet_.Line(style, {at.x, at.y + 1.5}, {at.x + kSwatch, at.y + 1.5});
      }
      sheet_.Text("caption", {at.x + kSwatch + 2, at.y + 2.4}, kCaption, Anchor::kStart, name);
    }
  }

  SvgSheet& sheet_;
  PaperPoint corner_;
  double width_;
  double height_;
};

}  // namespace

void draw_title_block(SvgSheet& sheet, PaperPoint corner, double width, double height,
                      tdbTool& tool, const std::vector<Body>& bodies, const std::string& scale) {
  TitleBlock(sheet, corner, width, height).Draw(tool, bodies, scale);
}

}  // namespace tooldb
