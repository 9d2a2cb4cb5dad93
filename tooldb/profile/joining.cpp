#include "tooldb/profile/joining.h"

#include <algorithm>
#include <cmath>

#include "tooldb/placement.h"
#include "tooldb/profile/body_outline.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

constexpr int kBallCutter = 1;

// Radius of a shank where it begins.
double lower_radius(const tdbItem& shank) {
  const Outline outline = body_outline(shank);
  if (!outline.Stands()) return 0;
  const ContourSegment& first = outline.segments.front();
  return first.end.y == first.start.y ? first.end.x : 0;
}

// Height in the cutter's frame at which the shank begins. A neck enters a ball where the ball is
// as wide as the neck.
double join_height(const tdbToolCutter& cutter, const tdbToolShank& shank) {
  const Outline outline = body_outline(cutter);
  if (!outline.Stands()) return 0;
  if (body_type(cutter) == nullptr) return bounds_of(outline).high.y;
  const double top = outline.segments.back().end.y;
  if (cutter.GetType() != kBallCutter) return top;
  const double r = (top - outline.segments.front().start.y) / 2;
  const double neck = std::min(r, lower_radius(shank));
  return top - r + std::sqrt(r * r - neck * neck);
}

}  // namespace

std::optional<Transformation<double>> joined_shank_position(const tdbCuttingTool& tool) {
  const tdbToolCutter* cutter = tool.GetCutter();
  const tdbToolShank* shank = tool.GetShank();
  const bool joined = cutter != nullptr && shank != nullptr && shank->IsParametric() &&
                      shank->GetPos() == Transformation<double>();
  if (!joined) return std::nullopt;
  return cutter->GetPos() * tdbMakePlacement({0, 0, join_height(*cutter, *shank)}, {});
}

}  // namespace tooldb

void tdbCuttingTool::Update() {
  const tdbToolCutter* cutter = GetCutter();
  tdbToolShank* shank = GetShank();
  if (cutter != nullptr && shank != nullptr && cutter->IsModified()) shank->SetModified(true);
  tdbCompositeItem::Update();
  const auto position = tooldb::joined_shank_position(*this);
  if (!position) return;
  const Transformation<double> placed = GetAbsPos() * *position;
  if (shank->GetAbsPos() == placed) return;
  shank->tdbItem::SetAbsPos(placed);
  for (unsigned i = 0; i < shank->GetItemCount(); ++i) {
    shank->GetItem(i)->SetModified(true);
    shank->GetItem(i)->Update();
  }
}

void tdbCuttingTool::AddDeltaZCutterAndShank(double dz) {
  const auto move = [dz](tdbItem& item) {
    Transformation<double> position = item.GetPos();
    position(2, 3) += dz;
    item.SetPos(position);
  };
  const bool joined = tooldb::joined_shank_position(*this).has_value();
  if (tdbToolCutter* cutter = GetCutter()) move(*cutter);
  tdbToolShank* shank = GetShank();
  if (shank != nullptr && !joined) move(*shank);
}
