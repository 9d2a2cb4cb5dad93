#include <algorithm>
#include <cmath>
#include <functional>

#include "apps/display_text.h"
#include "apps/drawing/drawing.h"
#include "apps/drawing/tool_measures.h"

namespace tooldb {
namespace {

constexpr double kTextHeight = 3;
constexpr double kLineGap = 7.5;    // between parallel dimension lines
constexpr double kLabelGap = 4.6;   // between labels of a column
constexpr double kDistance = 7;     // of the first dimension line from the tool
constexpr double kBelow = 9.5;      // of the first one below it, past the end of the axis
constexpr double kOverhang = 1.2;   // of an extension line past its dimension line
constexpr double kOffset = 1;       // of an extension line from the tool, of a text from its line
constexpr double kClearance = 1.5;  // of a text from the lines that it stands between
constexpr double kTopOfSheet = 10;
constexpr double kRoomForArrows = 9;  // a shorter line has its arrows outside
constexpr double kOutsideArrow = 5;

// A label at the left of the tool: a diameter with its line across, a note with its leader, or the
// gauge line with its name.
struct SideLabel {
  enum class Kind { kDiameter, kNote, kGaugeLine } kind;
  double low;  // the paper heights at which its line may stand
  double high;
  PaperPoint left;  // ends of the diameter; of a leader, its target
  PaperPoint right;
  std::string text;
  double height = 0;  // where the label stands
};

class Dimensions {
  using Kind = SideLabel::Kind;

 public:
  Dimensions(SvgSheet& sheet, const DrawingView& view, const std::vector<Body>& bodies)
      : sheet_(sheet),
        view_(view),
        bodies_(bodies),
        left_(view.Paper({view.Across().low, 0}).x),
        right_(view.Paper({view.Across().high, 0}).x) {}

  void Draw(const Measures& measures) {
    DrawLengths(measures.lengths);
    DrawBelow(measures.diameters);
    DrawSide(measures);
  }

 private:
  // Distance of the tool's edge from the axis at a height.
  double RadiusAt(double height) const {
    double radius = 0;
    const double step = 1e-6 * view_.Along().Size();
    for (const Body& body : bodies_) {
      if (!body.is_revolved) continue;
      const std::vector<Contour> placed = placed_contours(body);
      for (const double h : {height - step, height, height + step}) {
        radius = std::max(radius, radius_at(placed, h));
      }
    }
    return radius;
  }

  // Shortest inside. The extension lines of the outer ones cross the columns of the inner. The
  // origin of a lone part may be far off: its distance stands in the title block alone.
  void DrawLengths(std::vector<LengthMeasure> lengths) {
    std::erase_if(lengths, [&](const LengthMeasure& length) {
      return !view_.ShowsHeight(length.span.low) || !view_.ShowsHeight(length.span.high);
    });
    double column = right_ + kDistance;
    for (auto length = lengths.begin(); length != lengths.end(); ++length) {
      std::vector<double> crossings;
      for (auto outer = length + 1; outer != lengths.end(); ++outer) {
        crossings.push_back(view_.Paper({0, outer->span.low}).y);
        crossings.push_back(view_.Paper({0, outer->span.high}).y);
      }
      DrawLength(*length, column, std::move(crossings));
      column += kLineGap;
    }
  }

  void DrawLength(const LengthMeasure& length, double column, std::vector<double> crossings) {
    const PaperPoint low{column, view_.Paper({0, length.span.low}).y};
    const PaperPoint high{column, view_.Paper({0, length.span.high}).y};
    for (const double height : {length.span.low, length.span.high}) {
      const PaperPoint edge = view_.Paper({RadiusAt(height), height});
      sheet_.Line("extension", {edge.x + kOffset, edge.y}, {column + kOverhang, edge.y});
    }
    // Outlines are written with six digits; what lies beyond is no one's dimension.
    const double rounded = std::round(length.span.Size() * 1e5) / 1e5;
    const std::string text = shown_number(rounded) + "  " + length.meaning;
    const double size = low.y - high.y;
    DrawArrowed(low, high, size);
    const double room = text_width(text, kTextHeight);
    if (room + 2 * kClearance <= size) {
      sheet_.Text("", {column - kOffset, (low.y + high.y) / 2}, kTextHeight, Anchor::kMiddle, text,
                  90);
      return;
    }
    const double past = (size < kRoomForArrows ? kOutsideArrow : 0) + kClearance;
    if (high.y - past - room < kTopOfSheet) {
      sheet_.Text("", {column - kOffset, low.y + past}, kTextHeight, Anchor::kEnd, text, 90);
      return;
    }
    const double start = FreeStart(high.y - past, room, std::move(crossings));
    if (start < high.y - past) sheet_.Line("dim", high, {column, start - room});
    sheet_.Text("", {column - kOffset, start}, kTextHeight, Anchor::kStart, text, 90);
  }

  // Where a text that runs upwards can begin, at `lowest` or above, so that no line crosses it.
  static double FreeStart(double lowest, double room, std::vector<double> crossings) {
    std::ranges::sort(crossings, std::greater());
    double start = lowest;
    for (const double line : crossings) {
      const bool is_clear = line > start + kClearance || line < start - room - kClearance;
      if (!is_clear) start = line - kClearance;
    }
    return start - room < kTopOfSheet ? lowest : start;
  }

  // A dimension line, with its arrows outside when there is no room between its ends.
  void DrawArrowed(PaperPoint a, PaperPoint b, double size) {
    if (size >= kRoomForArrows) {
      sheet_.Line("dim", a, b);
      sheet_.Arrow(a, b);
      sheet_.Arrow(b, a);
      return;
    }
    const double dx = size > 0 ? (b.x - a.x) / size : 0;
    const double dy = size > 0 ? (b.y - a.y) / size : 1;
    const PaperPoint before{a.x - kOutsideArrow * dx, a.y - kOutsideArrow * dy};
    const PaperPoint after{b.x + kOutsideArrow * dx, b.y + kOutsideArrow * dy};
    sheet_.Line("dim", before, after);
    sheet_.Arrow(a, before);
    sheet_.Arrow(b, after);
  }

  void DrawBelow(const std::vector<DiameterMeasure>& diameters) {
    std::vector<DiameterMeasure> below;
    std::ranges::copy_if(diameters, std::back_inserter(below), &DiameterMeasure::is_below);
    if (below.empty()) return;
    std::ranges::stable_sort(below, {}, &DiameterMeasure::radius);
    const double widest = view_.Paper({below.back().radius, 0}).x;
    double row = view_.Paper({0, view_.Along().low}).y + kBelow;
    for (const DiameterMeasure& diameter : below) {
      DrawDiameterBelow(diameter, row, widest);
      row += kLineGap;
    }
  }

  // A text beside its dimension line keeps clear of the extension line of the widest one.
  void DrawDiameterBelow(const DiameterMeasure& diameter, double row, double widest) {
    const PaperPoint left = view_.Paper({-diameter.radius, diameter.heights.low});
    const PaperPoint right = view_.Paper({diameter.radius, diameter.heights.low});
    for (const double x : {left.x, right.x}) {
      sheet_.Line("extension", {x, left.y + kOffset}, {x, row + kOverhang});
    }
    const double size = right.x - left.x;
    DrawArrowed({left.x, row}, {right.x, row}, size);
    const std::string text = DiameterText(diameter);
    const double room = text_width(text, kTextHeight) + kClearance;
    if (room + kClearance < size) {
      sheet_.Text("", {(left.x + right.x) / 2, row - kOffset}, kTextHeight, Anchor::kMiddle, text);
      return;
    }
    double at = right.x + (size < kRoomForArrows ? kOutsideArrow + 1 : 2);
    if (at < widest && at + room > widest) {
      at = widest + kClearance;
      sheet_.Line("dim", {right.x, row}, {at, row});
    }
    sheet_.Text("", {at, row - kOffset}, kTextHeight, Anchor::kStart, text);
  }

  static std::string DiameterText(const DiameterMeasure& diameter) {
    return "\u2300" + shown_number(2 * diameter.radius) +
           (diameter.meaning.empty() ? "" : "  " + diameter.meaning);
  }

  void DrawSide(const Measures& measures) {
    std::vector<SideLabel> labels;
    for (const DiameterMeasure& d : measures.diameters) {
      if (d.is_below) continue;
      labels.push_back({Kind::kDiameter, view_.Paper({0, d.heights.high}).y,
                        view_.Paper({0, d.heights.low}).y, view_.Paper({-d.radius, 0}),
                        view_.Paper({d.radius, 0}), DiameterText(d)});
    }
    for (const NoteMeasure& note : measures.notes) {
      const PaperPoint target = view_.Paper({-std::abs(note.at.x), note.at.y});
      labels.push_back({Kind::kNote, target.y, target.y, target, target, note.text});
    }
    if (!measures.origin.empty() && view_.ShowsHeight(0)) {
      const PaperPoint end = view_.Paper({view_.Across().low, 0});
      sheet_.Line("gauge", end, view_.Paper({view_.Across().high, 0}));
      labels.push_back({Kind::kGaugeLine, end.y, end.y, end, end, measures.origin});
    }
    Spread(labels);
    for (const SideLabel& label : labels) DrawSideLabel(label);
  }

  // Gives each label a height near its line, none nearer to another than a text needs.
  static void Spread(std::vector<SideLabel>& labels) {
    for (SideLabel& label : labels) label.height = (label.low + label.high) / 2;
    std::ranges::stable_sort(labels, {}, &SideLabel::height);
    for (std::size_t i = 1; i < labels.size(); ++i) {
      labels[i].height = std::max(labels[i].height, labels[i - 1].height + kLabelGap);
    }
    // What was pushed down too far pushes its neighbours up again.
    for (std::size_t i = labels.size(); i-- > 1;) {
      const double wish = std::clamp(labels[i].height, labels[i].low, labels[i].high);
      const double moved = std::min(labels[i].height, std::max(wish, labels[i].height - kLabelGap));
      const double shift = (labels[i].height - moved) / 2;
      labels[i].height -= shift;
      labels[i - 1].height = std::min(labels[i - 1].height, labels[i].height - kLabelGap);
    }
  }

  void DrawSideLabel(const SideLabel& label) {
    const double column = left_ - kDistance;
    const bool is_gauge = label.kind == Kind::kGaugeLine;
    sheet_.Text(is_gauge ? "gauge-text" : "", {column - kOffset, label.height + 0.35 * kTextHeight},
                kTextHeight, Anchor::kEnd, label.text);
    if (is_gauge) return sheet_.Line("gauge", {column, label.height}, label.left);
    if (label.kind == Kind::kNote) {
      sheet_.Line("dim", {column, label.height}, label.left);
      sheet_.Arrow(label.left, {column, label.height});
      return;
    }
    const double height = std::clamp(label.height, label.low, label.high);
    const double size = label.right.x - label.left.x;
    const double bend = left_ - kDistance / 2;
    const bool is_narrow = size < kRoomForArrows;
    const double end = label.right.x + (is_narrow ? kOutsideArrow : 0);
    sheet_.Polyline("dim", {{column, label.height}, {bend, height}, {end, height}});
    sheet_.Arrow({label.left.x, height}, {label.left.x + (is_narrow ? -1 : 1), height});
    sheet_.Arrow({label.right.x, height}, {label.right.x + (is_narrow ? 1 : -1), height});
  }

  SvgSheet& sheet_;
  const DrawingView& view_;
  const std::vector<Body>& bodies_;
  double left_;
  double right_;
};

}  // namespace

void draw_dimensions(SvgSheet& sheet, const DrawingView& view, const std::vector<Body>& bodies,
                     const Measures& measures) {
  Dimensions(sheet, view, bodies).Draw(measures);
}

}  // namespace tooldb
