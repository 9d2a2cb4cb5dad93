#include "apps/drawn_parts.h"

#include <algorithm>
#include <array>
#include <limits>

#include "apps/tree_items.h"
#include "tooldb/profile.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

using Point = DrawnPart::Point;
using Outline = DrawnPart::Outline;

constexpr long kSilhouette = 1;
constexpr long kSection = 0;

constexpr int kTurningInsert = 7;
constexpr int kTurningCenter = 25;  // the kind of cutting tool whose insert is turned

bool is_one_of(int type, std::initializer_list<int> types) {
  return std::ranges::find(types, type) != types.end();
}

/// Flat parts: inserts, extruded contours, and models that stand still.
bool is_flat(const tdbItem& item, DrawnPart::Kind kind) {
  const int type = item.GetType();
  switch (kind) {
    case DrawnPart::Kind::kCutter:
      if (type == kTurningInsert) {
        return item.GetParent() == nullptr || item.GetParent()->GetType() != kTurningCenter;
      }
      return is_one_of(type, {8, 15});
    case DrawnPart::Kind::kShank:
      return type == 5;
    case DrawnPart::Kind::kHolder:
      return type == 4;
  }
  return false;
}

/// A point of the item's profile plane, seen in the tool's.
Point placed(const Transformation<double>& pos, Point p) {
  return {pos(0, 0) * p.x + pos(0, 2) * p.y + pos(0, 3),
          pos(2, 0) * p.x + pos(2, 2) * p.y + pos(2, 3)};
}

Outline placed(const Transformation<double>& pos, const Outline& outline) {
  Outline result;
  for (const Point p : outline) result.push_back(placed(pos, p));
  return result;
}

Outline mirrored(const Outline& outline) {
  Outline result;
  for (auto p = outline.rbegin(); p != outline.rend(); ++p) result.push_back({-p->x, p->y});
  return result;
}

/// Both halves of a turned body as one closed outline.
Outline both_halves(const Outline& half) {
  Outline whole = half;
  const Outline other = mirrored(half);
  whole.insert(whole.end(), other.begin(), other.end());
  return whole;
}

void measure(DrawnPart& part) {
  constexpr double kFar = std::numeric_limits<double>::infinity();
  part.low = {kFar, kFar};
  part.high = {-kFar, -kFar};
  for (const Outline& outline : part.outlines) {
    for (const Point p : outline) {
      part.low = {std::min(part.low.x, p.x), std::min(part.low.y, p.y)};
      part.high = {std::max(part.high.x, p.x), std::max(part.high.y, p.y)};
    }
  }
}

void add_cutting_edges(DrawnPart& part, const tdbToolCutter& cutter, double tolerance,
                       const Transformation<double>& pos) {
  std::vector<Outline> pieces;
  if (!tdbProfile::HilightCuttingProfile(cutter, tolerance, pieces)) return;
  for (const Outline& piece : pieces) {
    part.cutting.push_back(placed(pos, piece));
    if (part.turned) part.cutting.push_back(placed(pos, mirrored(piece)));
  }
}

Transformation<double> profile_placement(tdbItem& item) {
  auto* cutter = dynamic_cast<tdbToolCutter*>(&item);
  const bool own_plane = cutter != nullptr && !cutter->IsSTL();
  return own_plane ? item.GetAbsPos() * cutter->GetProfileCSys() : item.GetAbsPos();
}

/// Why an item shows no outline.
std::string problem_of(tdbItem& item) {
  std::string reason = tdbProfile::OutlineError(item);
  if (reason.empty() && item.IsSTL()) {
    reason = std::string("its model file \"") + item.GetShapeFilePath() + "\" cannot be loaded";
  }
  if (reason.empty()) reason = "it has no outline";
  return std::string(class_name(item)) + " \"" + item.GetName() + "\": " + reason;
}

void add_part(ToolView& view, tdbItem& item, DrawnPart::Kind kind, double tolerance) {
  if (item.IsHideShape()) return;
  DrawnPart part;
  part.kind = kind;
  part.name = item.GetName();
  part.item = &item;
  part.turned = !is_flat(item, kind);
  std::vector<Outline> contours;
  if (!item.GetProfile(nullptr, contours, tolerance, part.turned ? kSilhouette : kSection)) {
    view.problems.push_back(problem_of(item));
    return;
  }
  const auto pos = profile_placement(item);
  for (const Outline& contour : contours) {
    part.outlines.push_back(placed(pos, part.turned ? both_halves(contour) : contour));
    const Outline edges = placed(pos, contour);
    if (part.turned) part.edges.insert(part.edges.end(), edges.begin(), edges.end());
  }
  if (const auto* cutter = dynamic_cast<tdbToolCutter*>(&item)) {
    add_cutting_edges(part, *cutter, tolerance, pos);
  }
  measure(part);
  view.parts.push_back(std::move(part));
}

template <class Part>
void add_parts(ToolView& view, tdbTool& tool, DrawnPart::Kind kind, double tolerance) {
  for (const TreeItem& entry : items_below(tool)) {
    if (auto* part = dynamic_cast<Part*>(entry.item)) add_part(view, *part, kind, tolerance);
  }
}

}  // namespace

ToolView view_of(tdbTool& tool, double tolerance) {
  ToolView view;
  add_parts<tdbToolHolder>(view, tool, DrawnPart::Kind::kHolder, tolerance);
  add_parts<tdbToolShank>(view, tool, DrawnPart::Kind::kShank, tolerance);
  add_parts<tdbToolCutter>(view, tool, DrawnPart::Kind::kCutter, tolerance);
  return view;
}

}  // namespace tooldb
