#include "apps/drawing/svg_sheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "apps/display_text.h"

namespace tooldb {
namespace {

constexpr std::string_view kStyle = R"svg(
svg { font-family: "Liberation Sans", Arial, Helvetica, sans-serif; }
.frame, .outline, .hidden, .cutting, .dim, .extension { fill: none; }
.frame, .outline { stroke-width: 0.35; }
.outline, .cutting { stroke-linejoin: round; }
.rule, .edge, .hidden, .axis { stroke-width: 0.18; }
.dim, .extension, .hatch { stroke-width: 0.15; }
.gauge { stroke-width: 0.25; stroke-dasharray: 4 1; }
.cutting { stroke-width: 0.6; }
.hidden { stroke-dasharray: 1.6 0.8; }
.axis { stroke-dasharray: 6 1 1 1; }
text { paint-order: stroke; stroke-width: 0.9; stroke-linejoin: round; }
)svg";

// Cutting part, shank and holder differ in colour and in the direction of the hatch, so that they
// are told apart in black and white too.
constexpr std::string_view kLight = R"svg(
.paper { fill: #fff; }
.frame, .rule { stroke: #222; }
.outline, .edge { stroke: #111; }
.hidden { stroke: #555; }
.axis { stroke: #a33; }
.gauge { stroke: #06a; }
.cutting { stroke: #c22; }
.dim, .extension { stroke: #345; }
.arrow { fill: #345; }
.cutter { fill: #f6dc8a; }
.shank { fill: #d5d8dc; }
.holder { fill: #c5d7ea; }
.cutter-hatch { stroke: #8a6500; }
.shank-hatch { stroke: #666; }
.holder-hatch { stroke: #3a6089; }
text { fill: #111; stroke: #fff; }
text.caption { fill: #555; }
text.gauge-text { fill: #06a; }
)svg";

constexpr std::string_view kDark = R"svg(
.paper { fill: #16181b; }
.frame, .rule { stroke: #9aa; }
.outline, .edge { stroke: #eee; }
.hidden { stroke: #999; }
.axis { stroke: #f88; }
.gauge { stroke: #6cf; }
.cutting { stroke: #ff6b5e; }
.dim, .extension { stroke: #9bd; }
.arrow { fill: #9bd; }
.cutter { fill: #6b5410; }
.shank { fill: #43474c; }
.holder { fill: #27405c; }
.cutter-hatch { stroke: #d8b34a; }
.shank-hatch { stroke: #9a9a9a; }
.holder-hatch { stroke: #7fa9d6; }
text { fill: #eee; stroke: #16181b; }
text.caption { fill: #aab; }
text.gauge-text { fill: #6cf; }
)svg";

struct Hatch {
  std::string_view name;
  double distance;  ///< of its lines, mm
  int angle;        ///< degrees
};

constexpr Hatch kHatches[] = {
    {"cutter-hatch", 1.6, 45}, {"shank-hatch", 2.2, -45}, {"holder-hatch", 3.4, 45}};

std::string hatches() {
  std::string text = "<defs>\n";
  for (const auto& [name, distance, angle] : kHatches) {
    text += fmt::format(
        "<pattern id=\"{0}\" width=\"{1}\" height=\"{1}\" patternUnits=\"userSpaceOnUse\" "
        "patternTransform=\"rotate({2})\"><line class=\"hatch {0}\" x1=\"{3}\" y1=\"0\" "
        "x2=\"{3}\" y2=\"{1}\"/></pattern>\n",
        name, distance, angle, distance / 2);
  }
  return text + "</defs>\n";
}

std::string style_sheet() {
  return fmt::format(
      "<style>{0}{1}@media (prefers-color-scheme: dark) {{{2}}}\n@media print {{{1}}}\n</style>\n",
      kStyle, kLight, kDark);
}

// Thousandths of a millimetre are finer than any printer, and keep files small.
std::string number(double value) {
  const double rounded = std::round(value * 1000) / 1000;
  return fmt::format("{:.6g}", rounded == 0 ? 0.0 : rounded);
}

std::string path_data(const std::vector<PaperPoint>& points) {
  std::string data;
  for (const PaperPoint& p : points) {
    data += data.empty() ? 'M' : 'L';
    data += number(p.x) + ' ' + number(p.y);
  }
  return data;
}

constexpr const char* anchor_name(Anchor anchor) {
  return anchor == Anchor::kStart ? "start" : anchor == Anchor::kMiddle ? "middle" : "end";
}

}  // namespace

void SvgSheet::Line(std::string_view style, PaperPoint a, PaperPoint b) {
  body_ += fmt::format("<line class=\"{}\" x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\"/>\n", style,
                       number(a.x), number(a.y), number(b.x), number(b.y));
}

void SvgSheet::Polyline(std::string_view style, const std::vector<PaperPoint>& points) {
  body_ += fmt::format("<path class=\"{}\" d=\"{}\"/>\n", style, path_data(points));
}

void SvgSheet::Area(std::string_view style, const std::vector<std::vector<PaperPoint>>& polygons) {
  std::string data;
  for (const auto& polygon : polygons) data += path_data(polygon) + 'Z';
  // A hatch is a pattern, not a colour: it is asked for where it is used.
  const bool is_hatch = style.ends_with("-hatch");
  body_ +=
      is_hatch
          ? fmt::format("<path fill=\"url(#{})\" fill-rule=\"evenodd\" d=\"{}\"/>\n", style, data)
          : fmt::format("<path class=\"{}\" fill-rule=\"evenodd\" d=\"{}\"/>\n", style, data);
}

void SvgSheet::Circle(std::string_view style, PaperPoint centre, double radius) {
  body_ += fmt::format("<circle class=\"{}\" cx=\"{}\" cy=\"{}\" r=\"{}\"/>\n", style,
                       number(centre.x), number(centre.y), number(radius));
}

void SvgSheet::Rectangle(std::string_view style, PaperPoint corner, double width, double height) {
  body_ += fmt::format("<rect class=\"{}\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"/>\n", style,
                       number(corner.x), number(corner.y), number(width), number(height));
}

void SvgSheet::Arrow(PaperPoint tip, PaperPoint from) {
  constexpr double kLength = 2.4;
  constexpr double kHalfWidth = 0.4;
  const double distance = std::hypot(from.x - tip.x, from.y - tip.y);
  if (distance == 0) return;
  const double dx = (from.x - tip.x) / distance;
  const double dy = (from.y - tip.y) / distance;
  const PaperPoint back{tip.x + kLength * dx, tip.y + kLength * dy};
  body_ += fmt::format("<path class=\"arrow\" d=\"{}Z\"/>\n",
                       path_data({tip,
                                  {back.x - kHalfWidth * dy, back.y + kHalfWidth * dx},
                                  {back.x + kHalfWidth * dy, back.y - kHalfWidth * dx}}));
}

void SvgSheet::Text(std::string_view style, PaperPoint at, double height, Anchor anchor,
                    std::string_view text, double turn) {
  if (text.empty()) return;
  const std::string x = number(at.x);
  const std::string y = number(at.y);
  const std::string rotation =
      turn == 0 ? "" : fmt::format(" transform=\"rotate({} {} {})\"", number(-turn), x, y);
  const std::string style_class = style.empty() ? "" : fmt::format(" class=\"{}\"", style);
  body_ += fmt::format(
      "<text{} x=\"{}\" y=\"{}\" font-size=\"{}\" text-anchor=\"{}\"{}>{}</text>\n", style_class, x,
      y, number(height), anchor_name(anchor), rotation, xml_escaped(text));
}

void SvgSheet::BeginClip(PaperPoint centre, double radius) {
  body_ += fmt::format(
      "<clipPath id=\"clip{0}\"><circle cx=\"{1}\" cy=\"{2}\" r=\"{3}\"/></clipPath>\n"
      "<g clip-path=\"url(#clip{0})\">\n",
      ++clips_, number(centre.x), number(centre.y), number(radius));
}

void SvgSheet::EndClip() { body_ += "</g>\n"; }

std::string SvgSheet::Document(std::string_view title) const {
  const std::string width = number(width_);
  const std::string height = number(height_);
  return fmt::format(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}mm\" height=\"{1}mm\" "
      "viewBox=\"0 0 {0} {1}\">\n<title>{2}</title>\n{3}{4}"
      "<rect class=\"paper\" width=\"{0}\" height=\"{1}\"/>\n{5}</svg>\n",
      width, height, xml_escaped(title), style_sheet(), hatches(), body_);
}

std::string xml_escaped(std::string_view text) {
  std::string out;
  for (const char c : printable(text)) {
    switch (c) {
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '&':
        out += "&amp;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

// Widths of the letters of the sans-serif fonts that the style sheet names, in their height.
double text_width(std::string_view text, double height) {
  constexpr std::string_view kNarrow = " !'()*,-./:;I[]`fijlrt|";
  constexpr std::string_view kWide = "%@MWmw";
  double width = 0;
  std::size_t others = 0;
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) {
      ++others;
    } else if (kNarrow.find(c) != std::string_view::npos) {
      width += 0.32;
    } else if (kWide.find(c) != std::string_view::npos) {
      width += 0.88;
    } else {
      width += c >= 'A' && c <= 'Z' ? 0.7 : 0.56;
    }
  }
  // Letters beyond ASCII take about as much as a digit, per column.
  const int columns = display_width(printable(text));
  const auto ascii = static_cast<double>(text.size() - others);
  return height * (width + 0.6 * std::max(0.0, columns - ascii));
}

}  // namespace tooldb
