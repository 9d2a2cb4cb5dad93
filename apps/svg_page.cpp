#include "apps/svg_page.h"

#include <fmt/format.h>

#include <cmath>
#include <utility>

#include "apps/display_text.h"

namespace tooldb {
namespace {

// Colours on paper; a screen that is set to dark gets the second set, a printer never does.
constexpr std::string_view kStyle = R"svg(<style>
text { font-family: "DejaVu Sans", Arial, sans-serif; font-size: 2.6px; fill: #111; paint-order: stroke; stroke: #fff; stroke-width: .8 }
.head { font-size: 4.6px; font-weight: bold }
.small { font-size: 2.1px; fill: #444 }
.sheet { fill: #fff }
.frame { fill: none; stroke: #111; stroke-width: .35 }
.rule { stroke: #111; stroke-width: .18 }
.axis { stroke: #b3261e; stroke-width: .18; stroke-dasharray: 6 1.2 1 1.2; fill: none }
.gauge { stroke: #1d5fa8; stroke-width: .25; stroke-dasharray: 3 1.2; fill: none }
.dim { stroke: #444; stroke-width: .15; fill: none }
.tip { fill: #444; stroke: none }
.edge { stroke: #222; stroke-width: .15; fill: none }
.cutter { fill: #f6d75a; stroke: #222; stroke-width: .3 }
.shank { fill: #c9cdd2; stroke: #222; stroke-width: .3 }
.holder { fill: #9fb9d0; stroke: #222; stroke-width: .3 }
.cutter-cut { fill: url(#hatch-cutter); stroke: none }
.shank-cut { fill: url(#hatch-shank); stroke: none }
.holder-cut { fill: url(#hatch-holder); stroke: none }
.point { stroke: #c4161c; stroke-width: .25; fill: none }
.cutting { stroke: #c4161c; stroke-width: .6; fill: none; stroke-linejoin: round }
.hatch { stroke: #222; stroke-width: .12 }
@media screen and (prefers-color-scheme: dark) {
text { fill: #e8eaed; stroke: #16181c } .small { fill: #b5bac1 }
.sheet { fill: #16181c }
.frame, .rule { stroke: #e8eaed } .dim { stroke: #aeb4bc } .tip { fill: #aeb4bc }
.edge, .hatch { stroke: #d5d8dc } .axis { stroke: #ff8a80 } .gauge { stroke: #7ab8ff }
.cutter { fill: #8a6d0f; stroke: #e8eaed } .shank { fill: #4a4f57; stroke: #e8eaed }
.holder { fill: #2f4a63; stroke: #e8eaed } .cutting, .point { stroke: #ff6b6b }
}
</style>
<defs>
<pattern id="hatch-cutter" width="1.2" height="1.2" patternUnits="userSpaceOnUse" patternTransform="rotate(45)"><line class="hatch" x1="0" y1="0" x2="0" y2="1.2"/></pattern>
<pattern id="hatch-shank" width="2" height="2" patternUnits="userSpaceOnUse" patternTransform="rotate(-45)"><line class="hatch" x1="0" y1="0" x2="0" y2="2"/></pattern>
<pattern id="hatch-holder" width="3" height="3" patternUnits="userSpaceOnUse" patternTransform="rotate(45)"><line class="hatch" x1="0" y1="0" x2="0" y2="3"/></pattern>
</defs>
)svg";

constexpr double kArrowLength = 1.8;
constexpr double kArrowHalfWidth = 0.4;

/// The marks that files hold in their full-width forms, as people write them.
std::string plain(std::string text) {
  constexpr std::pair<std::string_view, char> kForms[] = {
      {"\uFF1C", '<'}, {"\uFF06", '&'}, {"\uFF02", '"'}};
  for (const auto& [form, mark] : kForms) {
    for (auto at = text.find(form); at != std::string::npos; at = text.find(form, at + 1)) {
      text.replace(at, form.size(), 1, mark);
    }
  }
  return text;
}

/// A text inside markup.
std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : plain(printable(text))) {
    switch (c) {
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '&':
        result += "&amp;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

/// Thousandths of a millimetre of paper are finer than any print.
std::string on_paper(double value) {
  std::string text = fmt::format("{:.3f}", value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string path_of(std::span<const SvgPage::Point> points) {
  std::string path;
  for (const auto& p : points) {
    path += (path.empty() ? "M" : "L") + on_paper(p.x) + ' ' + on_paper(p.y);
  }
  return path;
}

}  // namespace

SvgPage::SvgPage(double width, double height, std::string_view title)
    : title_(escaped(title)), width_(width), height_(height) {
  Rectangle({0, 0}, width, height, "sheet");
}

void SvgPage::Text(Point at, std::string_view css_class, std::string_view text, Anchor anchor,
                   double turned_deg) {
  constexpr std::string_view kAnchors[] = {"start", "middle", "end"};
  const std::string turn = turned_deg == 0
                               ? ""
                               : fmt::format(" transform=\"rotate({} {} {})\"",
                                             on_paper(turned_deg), on_paper(at.x), on_paper(at.y));
  body_ += fmt::format("<text class=\"{}\" x=\"{}\" y=\"{}\" text-anchor=\"{}\"{}>{}</text>\n",
                       css_class, on_paper(at.x), on_paper(at.y),
                       kAnchors[static_cast<std::size_t>(anchor)], turn, escaped(text));
}

void SvgPage::Line(Point from, Point to, std::string_view css_class) {
  body_ += fmt::format("<line class=\"{}\" x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\"/>\n", css_class,
                       on_paper(from.x), on_paper(from.y), on_paper(to.x), on_paper(to.y));
}

void SvgPage::Arrow(Point from, Point to, std::string_view css_class) {
  Line(from, to, css_class);
  const double length = std::hypot(to.x - from.x, to.y - from.y);
  if (length < 1e-9) return;
  const Point along{(to.x - from.x) / length, (to.y - from.y) / length};
  const Point back{to.x - kArrowLength * along.x, to.y - kArrowLength * along.y};
  const std::vector<Point> head{
      to,
      {back.x - kArrowHalfWidth * along.y, back.y + kArrowHalfWidth * along.x},
      {back.x + kArrowHalfWidth * along.y, back.y - kArrowHalfWidth * along.x}};
  body_ += "<path class=\"tip\" d=\"" + path_of(head) + "Z\"/>\n";
}

void SvgPage::Rectangle(Point corner, double width, double height, std::string_view css_class) {
  body_ +=
      fmt::format("<rect class=\"{}\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"/>\n", css_class,
                  on_paper(corner.x), on_paper(corner.y), on_paper(width), on_paper(height));
}

void SvgPage::Circle(Point center, double radius, std::string_view css_class) {
  body_ += fmt::format("<circle class=\"{}\" cx=\"{}\" cy=\"{}\" r=\"{}\"/>\n", css_class,
                       on_paper(center.x), on_paper(center.y), on_paper(radius));
}

void SvgPage::Area(std::span<const std::vector<Point>> outlines, std::string_view css_class) {
  std::string path;
  for (const auto& outline : outlines) path += path_of(outline) + "Z";
  body_ += fmt::format("<path class=\"{}\" fill-rule=\"evenodd\" d=\"{}\"/>\n", css_class, path);
}

void SvgPage::Polyline(std::span<const Point> points, std::string_view css_class) {
  body_ += fmt::format("<path class=\"{}\" d=\"{}\"/>\n", css_class, path_of(points));
}

void SvgPage::BeginClip(Point corner, double width, double height) {
  const int id = ++clips_;
  body_ += fmt::format("<clipPath id=\"clip{}\">", id);
  Rectangle(corner, width, height, "");
  body_ += fmt::format("</clipPath>\n<g clip-path=\"url(#clip{})\">\n", id);
}

void SvgPage::EndClip() { body_ += "</g>\n"; }

std::string SvgPage::Finish() const {
  return fmt::format(
             "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}mm\" height=\"{1}mm\" "
             "viewBox=\"0 0 {0} {1}\">\n<title>{2}</title>\n",
             on_paper(width_), on_paper(height_), title_) +
         std::string(kStyle) + body_ + "</svg>\n";
}

}  // namespace tooldb
