#include "apps/tool_drawing.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "apps/display_text.h"
#include "apps/drawing_labels.h"
#include "apps/svg_page.h"
#include "apps/title_block.h"

namespace tooldb {
namespace {

using Kind = DrawnPart::Kind;
using Point = DrawnPart::Point;

// A4, millimetres of paper.
constexpr double kLongSide = 297;
constexpr double kShortSide = 210;
constexpr double kMargin = 10;
constexpr double kCalloutColumn = 64;
constexpr double kLabelSpacing = 4.4;
constexpr double kLengthSpacing = 7;
constexpr double kLetterWidth = 1.45;  // of the usual letters

constexpr std::array kScales{1000.0, 500.0, 200.0, 100.0, 50.0, 20.0, 10.0, 5.0,  2.0,
                             1.0,    0.5,   0.2,   0.1,   0.05, 0.02, 0.01, 0.005};

struct Extent {
  Point low;
  Point high;
};

Extent extent_of(const ToolView& view) {
  Extent all{view.parts.front().low, view.parts.front().high};
  for (const DrawnPart& part : view.parts) {
    all.low = {std::min(all.low.x, part.low.x), std::min(all.low.y, part.low.y)};
    all.high = {std::max(all.high.x, part.high.x), std::max(all.high.y, part.high.y)};
  }
  return all;
}

/// The largest usual scale at which `across` x `along` millimetres fit into the room.
double fitting_scale(double across, double along, double room_across, double room_along) {
  const double most = std::min(room_across / across, room_along / along);
  const auto scale =
      std::ranges::find_if(kScales, [most](double s) { return s <= most * (1 + 1e-9); });
  return scale == kScales.end() ? most : *scale;
}

/// Draws one tool: knows where a point of the tool lies on the paper.
class Drawing {
 public:
  Drawing(tdbTool& tool, const ToolView& view);
  std::string Svg();

 private:
  Point OnPaper(Point p) const;
  std::vector<Point> OnPaper(const DrawnPart::Outline& outline) const;
  void DrawParts();
  void DrawHalf(bool sectioned);
  void DrawPart(const DrawnPart& part, bool sectioned);
  void DrawEdges(const DrawnPart& part);
  void DrawAxis();
  void DrawLengths();
  void DrawLength(const AxialLength& length, int level);
  void DrawCallouts();
  void DrawMarks();

  tdbTool& tool_;
  const ToolView& view_;
  DrawingLabels labels_;
  Extent extent_;
  bool lathe_;        // the axis runs to the right, the tip left
  double unit_mm_;    // one unit of the tool
  double scale_ = 1;  // of the drawing
  Point origin_{};    // on paper, of the tool's point (0, lowest)
  SvgPage page_;
};

Drawing::Drawing(tdbTool& tool, const ToolView& view)
    : tool_(tool),
      view_(view),
      labels_(labels_of(view)),
      extent_(extent_of(view)),
      lathe_(tool.IsTurningTool() &&
             std::ranges::any_of(view.parts, [](const auto& p) { return !p.turned; })),
      unit_mm_(tool.GetUnitOfMeasurement() == 0 ? 1 : 25.4),
      page_(lathe_ ? kLongSide : kShortSide, lathe_ ? kShortSide : kLongSide,
            "Tool " + tool.GetCode()) {
  const double width = lathe_ ? kLongSide : kShortSide;
  const double height = (lathe_ ? kShortSide : kLongSide) - kTitleBlockHeight - kMargin;
  const double lengths = kLengthSpacing * static_cast<double>(labels_.lengths.size()) + 8;
  const double room_x = width - 2 * kMargin - kCalloutColumn - 6 - (lathe_ ? 0 : lengths);
  const double room_y = height - 2 * kMargin - 16 - (lathe_ ? lengths : 0);
  const double across = unit_mm_ * 2 * std::max(-extent_.low.x, extent_.high.x);
  const double along = unit_mm_ * (extent_.high.y - extent_.low.y);
  scale_ = lathe_ ? fitting_scale(across, along, room_y, room_x)
                  : fitting_scale(across, along, room_x, room_y);
  const double left = kMargin + kCalloutColumn + 3;
  if (lathe_) {
    origin_ = {left + (room_x - scale_ * along) / 2, kMargin + 8 + room_y / 2};
  } else {
    origin_ = {left + room_x / 2, kMargin + 8 + (room_y + scale_ * along) / 2};
  }
}

Point Drawing::OnPaper(Point p) const {
  const double x = scale_ * unit_mm_ * p.x;
  const double y = scale_ * unit_mm_ * (p.y - extent_.low.y);
  return lathe_ ? Point{origin_.x + y, origin_.y - x} : Point{origin_.x + x, origin_.y - y};
}

std::vector<Point> Drawing::OnPaper(const DrawnPart::Outline& outline) const {
  std::vector<Point> points;
  for (const Point p : outline) points.push_back(OnPaper(p));
  return points;
}

constexpr std::array<std::string_view, 3> kFillClasses{"cutter", "shank", "holder"};
constexpr std::array<std::string_view, 3> kCutClasses{"cutter-cut", "shank-cut", "holder-cut"};

void Drawing::DrawPart(const DrawnPart& part, bool sectioned) {
  std::vector<std::vector<Point>> outlines;
  for (const auto& outline : part.outlines) outlines.push_back(OnPaper(outline));
  const auto kind = static_cast<std::size_t>(part.kind);
  page_.Area(outlines, kFillClasses[kind]);
  if (sectioned && part.turned) page_.Area(outlines, kCutClasses[kind]);
  if (!sectioned) DrawEdges(part);
}

/// Lines across the body where its outline turns sharply.
void Drawing::DrawEdges(const DrawnPart& part) {
  constexpr double kSharpTurn = 0.2;  // radians: more than between the chords of an arc
  for (std::size_t i = 1; i + 1 < part.edges.size(); ++i) {
    const Point before = part.edges[i - 1];
    const Point corner = part.edges[i];
    const Point after = part.edges[i + 1];
    const double in = std::atan2(corner.y - before.y, corner.x - before.x);
    const double out = std::atan2(after.y - corner.y, after.x - corner.x);
    if (std::abs(std::remainder(out - in, 2 * M_PI)) < kSharpTurn) continue;
    page_.Line(OnPaper({-corner.x, corner.y}), OnPaper({0, corner.y}), "edge");
  }
}

/// The right half is cut open, where the innermost part lies on top; on the left one sees the
/// outermost.
void Drawing::DrawHalf(bool sectioned) {
  const double far = kLongSide;
  const Point axis = OnPaper({0, 0});
  if (lathe_) {
    page_.BeginClip({0, sectioned ? axis.y - far : axis.y}, kLongSide, far);
  } else {
    page_.BeginClip({sectioned ? axis.x : axis.x - far, 0}, far, kLongSide);
  }
  if (sectioned) {
    for (const DrawnPart& part : view_.parts) DrawPart(part, true);
  } else {
    for (auto part = view_.parts.rbegin(); part != view_.parts.rend(); ++part) {
      DrawPart(*part, false);
    }
  }
  page_.EndClip();
}

void Drawing::DrawParts() {
  const bool turned = std::ranges::any_of(view_.parts, [](const auto& p) { return p.turned; });
  if (turned) {
    DrawHalf(false);
    DrawHalf(true);
  } else {
    for (const DrawnPart& part : view_.parts) DrawPart(part, true);
  }
  for (const DrawnPart& part : view_.parts) {
    for (const auto& piece : part.cutting) page_.Polyline(OnPaper(piece), "cutting");
  }
}

void Drawing::DrawAxis() {
  const double margin = 5 / (scale_ * unit_mm_);
  const std::array<Point, 2> axis{OnPaper({0, extent_.low.y - margin}),
                                  OnPaper({0, extent_.high.y + margin})};
  page_.Polyline(axis, "axis");
}

void Drawing::DrawLength(const AxialLength& length, int level) {
  const double beyond = 6 + kLengthSpacing * level;  // paper, from the widest point
  const double side = (lathe_ ? extent_.low.x : extent_.high.x) * unit_mm_ * scale_;
  const auto at = [&](double y, double distance) {
    const Point on_axis = OnPaper({0, y});
    return lathe_ ? Point{on_axis.x, on_axis.y - side + distance}
                  : Point{on_axis.x + side + distance, on_axis.y};
  };
  const Point tip = at(labels_.tip, beyond);
  const Point end = at(length.end, beyond);
  page_.Line(at(labels_.tip, 1), at(labels_.tip, beyond + 1.2), "dim");
  page_.Line(at(length.end, 1), at(length.end, beyond + 1.2), "dim");
  page_.Arrow({(tip.x + end.x) / 2, (tip.y + end.y) / 2}, tip, "dim");
  page_.Arrow({(tip.x + end.x) / 2, (tip.y + end.y) / 2}, end, "dim");
  const std::string text = shown_number(length.end - labels_.tip) + "  " + length.meaning;
  // A text longer than its dimension begins at the tip and runs on beside the longer ones.
  const double room = std::hypot(end.x - tip.x, end.y - tip.y);
  const bool fits = kLetterWidth * display_width(text) < room;
  const auto anchor = fits ? SvgPage::Anchor::kMiddle : SvgPage::Anchor::kStart;
  const Point at_text = fits ? Point{(tip.x + end.x) / 2, (tip.y + end.y) / 2} : tip;
  if (lathe_) {
    page_.Text({at_text.x, at_text.y - 0.8}, "", text, anchor);
  } else {
    page_.Text({at_text.x - 0.8, at_text.y}, "", text, anchor, -90);
  }
}

void Drawing::DrawLengths() {
  int level = 0;
  for (const AxialLength& length : labels_.lengths) DrawLength(length, level++);
}

/// Texts in a column, each with a line to its place; spread so that none covers another.
void Drawing::DrawCallouts() {
  struct Label {
    const Callout* callout;
    Point target;
    double y;
  };
  std::vector<Label> column;
  for (const Callout& callout : labels_.callouts) {
    const Point target = OnPaper(callout.target);
    column.push_back({&callout, target, target.y});
  }
  std::ranges::stable_sort(column, {}, &Label::y);
  const double bottom = (lathe_ ? kShortSide : kLongSide) - kTitleBlockHeight - kMargin - 6;
  double lowest = bottom - kLabelSpacing * static_cast<double>(column.size());
  for (Label& label : column) {  // upwards where the column would run into the title block
    label.y = std::min(label.y, lowest += kLabelSpacing);
  }
  double free = kMargin + 6;
  for (Label& label : column) {
    label.y = std::max(label.y, free);
    free = label.y + kLabelSpacing;
  }
  for (const Label& label : column) {
    page_.Text({kMargin + 2, label.y + 0.9}, "", label.callout->text);
    const double text_end = kMargin + 2 + kLetterWidth * display_width(label.callout->text) + 1.5;
    const Point elbow{std::min(text_end, kMargin + kCalloutColumn), label.y};
    page_.Arrow(elbow, label.target, "dim");
  }
}

void Drawing::DrawMarks() {
  constexpr double kMarkRadius = 0.9;
  for (const Point point : labels_.programmed_points) {
    const Point p = OnPaper(point);
    page_.Circle(p, kMarkRadius, "point");
    page_.Line({p.x - 1.6, p.y}, {p.x + 1.6, p.y}, "point");
    page_.Line({p.x, p.y - 1.6}, {p.x, p.y + 1.6}, "point");
  }
  if (!labels_.has_gauge_line) return;
  const double beyond = 4 / (scale_ * unit_mm_);
  const std::array<Point, 2> line{OnPaper({extent_.low.x - beyond, labels_.gauge_line}),
                                  OnPaper({extent_.high.x + beyond, labels_.gauge_line})};
  page_.Polyline(line, "gauge");
  const Point text = lathe_ ? Point{line[1].x, line[1].y - 1} : Point{line[0].x, line[0].y - 1};
  page_.Text(text, "small", "gauge line");
}

std::string Drawing::Svg() {
  DrawParts();
  DrawAxis();
  DrawLengths();
  DrawCallouts();
  DrawMarks();
  const double width = lathe_ ? kLongSide : kShortSide;
  const double height = lathe_ ? kShortSide : kLongSide;
  page_.Rectangle({kMargin, kMargin}, width - 2 * kMargin, height - 2 * kMargin, "frame");
  draw_title_block(page_, {kMargin, height - kMargin - kTitleBlockHeight}, width - 2 * kMargin,
                   tool_, scale_);
  return page_.Finish();
}

}  // namespace

std::string tool_drawing(tdbTool& tool, const ToolView& view) { return Drawing(tool, view).Svg(); }

double drawing_tolerance(const tdbTool& tool) {
  return tool.GetUnitOfMeasurement() == 0 ? 0.005 : 0.0002;
}

}  // namespace tooldb
