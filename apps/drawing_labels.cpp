#include "apps/drawing_labels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "apps/display_text.h"
#include "tooldb/profile.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

using Kind = DrawnPart::Kind;
using Point = DrawnPart::Point;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Numbers of files have six digits: what differs by less is the same.
bool same(double a, double b) {
  return std::abs(a - b) <= 1e-5 * std::max({1.0, std::abs(a), std::abs(b)});
}

/// A dimension as it is written beside the tool; empty when there is nothing to say.
std::string text_of(const DrawnPart& part, const tdbDimension& d) {
  if (!std::isfinite(d.value) || d.value <= 0) return {};
  const std::string number = shown_number(d.value);
  switch (d.kind) {
    case tdbDimension::Kind::kDiameter:
      return "\u2300" + number + " " + d.meaning;
    case tdbDimension::Kind::kRadius:
      return "R" + number + " " + d.meaning;
    case tdbDimension::Kind::kAngleFromAxis:
      return number + "\u00B0 " + d.meaning + " (per side, from the axis)";
    case tdbDimension::Kind::kAngleFromFace:
      return number + "\u00B0 " + d.meaning + " (per side, from the face)";
    case tdbDimension::Kind::kAngleTotal:
      return number + "\u00B0 " + d.meaning + " (total)";
    case tdbDimension::Kind::kLength:
      // Those of a turned body are measured along its axis.
      return part.turned ? std::string() : number + " " + d.meaning;
    default:
      return {};
  }
}

/// The corner of the part's left side that lies `radius` from the axis; the middle of its lower
/// end when there is none.
Point corner_at(const DrawnPart& part, double radius) {
  const auto corner =
      std::ranges::find_if(part.edges, [&](Point p) { return same(std::abs(p.x), radius); });
  if (corner != part.edges.end()) return {-std::abs(corner->x), corner->y};
  return {part.low.x / 2, part.low.y};
}

/// Where a label of a dimension points to.
Point target_of(const DrawnPart& part, const tdbDimension& d) {
  if (d.kind == tdbDimension::Kind::kDiameter && part.turned) return corner_at(part, d.value / 2);
  if (d.kind == tdbDimension::Kind::kDiameter) {
    return {part.low.x / 2, (part.low.y + part.high.y) / 2};
  }
  // Radii and angles are read at the end of the part that cuts first.
  const double side = part.turned ? part.low.x : part.low.x / 4;
  const double height = d.kind == tdbDimension::Kind::kRadius ? d.value / 4 : 0;
  return {d.kind == tdbDimension::Kind::kRadius ? side + d.value / 4 : side / 2,
          part.low.y + height};
}

void add_dimensions(const DrawnPart& part, std::vector<Callout>& callouts) {
  for (const tdbDimension& d : tdbProfile::GetDimensions(*part.item)) {
    const std::string text = text_of(part, d);
    const bool told =
        std::ranges::any_of(callouts, [&](const Callout& callout) { return callout.text == text; });
    if (!text.empty() && !told) callouts.push_back({text, target_of(part, d)});
  }
}

/// Nose and largest diameter of a part that has a contour of its own.
void add_contour_diameters(const DrawnPart& part, std::string_view what,
                           std::vector<Callout>& callouts) {
  if (!part.turned || part.edges.empty()) return;
  double nose = 0;
  Point widest{0, 0};
  for (const Point p : part.edges) {
    if (same(p.y, part.low.y)) nose = std::max(nose, std::abs(p.x));
    if (std::abs(p.x) > std::abs(widest.x)) widest = p;
  }
  const auto add = [&](double radius, double y, const std::string& meaning) {
    callouts.push_back({"\u2300" + shown_number(2 * radius) + " " + meaning, {-radius, y}});
  };
  if (nose > 0 && !same(nose, std::abs(widest.x))) {
    add(nose, part.low.y, std::string(what) + " nose diameter");
  }
  add(std::abs(widest.x), widest.y, "largest " + std::string(what) + " diameter");
}

std::string_view word_for(Kind kind) {
  constexpr std::string_view kWords[] = {"cutter", "shank", "holder"};
  return kWords[static_cast<std::size_t>(kind)];
}

std::vector<Callout> callouts_of(const ToolView& view) {
  std::vector<Callout> callouts;
  for (const DrawnPart& part : view.parts) {
    if (tdbProfile::GetDimensions(*part.item).empty()) {
      add_contour_diameters(part, word_for(part.kind), callouts);
    } else {
      add_dimensions(part, callouts);
    }
  }
  return callouts;
}

double least(const ToolView& view, Kind kind) {
  double low = kInfinity;
  for (const DrawnPart& part : view.parts) {
    if (part.kind == kind) low = std::min(low, part.low.y);
  }
  return low;
}

double largest(const ToolView& view, std::initializer_list<Kind> kinds) {
  double high = -kInfinity;
  for (const DrawnPart& part : view.parts) {
    if (std::ranges::find(kinds, part.kind) != kinds.end()) high = std::max(high, part.high.y);
  }
  return high;
}

/// Top of the edges that cut.
double cutting_end(const ToolView& view) {
  double high = -kInfinity;
  for (const DrawnPart& part : view.parts) {
    if (!part.turned) continue;
    for (const auto& piece : part.cutting) {
      for (const Point p : piece) high = std::max(high, p.y);
    }
  }
  return high;
}

/// Where the shank becomes wider than the cutter: as deep as the tool can go into a slot.
double usable_end(const ToolView& view) {
  double radius = 0;
  for (const DrawnPart& part : view.parts) {
    if (part.kind == Kind::kCutter && part.turned) radius = std::max(radius, part.high.x);
  }
  double end = kInfinity;
  for (const DrawnPart& part : view.parts) {
    if (part.kind == Kind::kCutter || !part.turned) continue;
    for (const Point p : part.edges) {
      if (std::abs(p.x) > radius && !same(std::abs(p.x), radius)) end = std::min(end, p.y);
    }
  }
  return radius > 0 ? end : kInfinity;
}

void add_length(std::vector<AxialLength>& lengths, double tip, std::string meaning, double end) {
  if (!std::isfinite(end) || end <= tip || same(end, tip)) return;
  const auto known =
      std::ranges::find_if(lengths, [end](const AxialLength& l) { return same(l.end, end); });
  if (known != lengths.end()) {
    known->meaning += ", " + meaning;
  } else {
    lengths.push_back({std::move(meaning), end});
  }
}

/// The tool's own origin where that lies above the tip, else the top of what holds it.
std::optional<double> gauge_of(const ToolView& view, double tip) {
  const double top = largest(view, {Kind::kHolder});
  if (!std::isfinite(top)) return std::nullopt;
  const bool origin_in_holder = tip < 0 && !same(tip, 0) && top >= 0;
  return origin_in_holder ? 0 : top;
}

}  // namespace

DrawingLabels labels_of(const ToolView& view) {
  DrawingLabels labels;
  labels.callouts = callouts_of(view);
  labels.tip = least(view, Kind::kCutter);
  if (!std::isfinite(labels.tip)) {
    labels.tip = std::min(least(view, Kind::kShank), least(view, Kind::kHolder));
  }
  const auto gauge = gauge_of(view, labels.tip);
  labels.has_gauge_line = gauge.has_value();
  labels.gauge_line = gauge.value_or(0);
  auto& lengths = labels.lengths;
  add_length(lengths, labels.tip, "cutting length", cutting_end(view));
  add_length(lengths, labels.tip, "usable length", usable_end(view));
  add_length(lengths, labels.tip, "stickout", least(view, Kind::kHolder));
  add_length(lengths, labels.tip, "overall length", largest(view, {Kind::kCutter, Kind::kShank}));
  if (gauge) add_length(lengths, labels.tip, "gauge length", *gauge);
  std::ranges::sort(lengths, {}, &AxialLength::end);
  for (const DrawnPart& part : view.parts) {
    if (part.kind != Kind::kCutter) continue;
    const auto pos = part.item->GetAbsPos();
    labels.programmed_points.push_back({pos(0, 3), pos(2, 3)});
  }
  return labels;
}

}  // namespace tooldb
