#include "tooldb/profile/placed_items.h"

#include "tooldb/profile/joining.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

// The position of a child of `group` in the group's frame.
Transformation<double> child_position(const tdbCompositeItem& group, const tdbItem& child) {
  const auto* tool = dynamic_cast<const tdbCuttingTool*>(&group);
  if (tool != nullptr && tool->GetShank() == &child) {
    return joined_shank_position(*tool).value_or(child.GetPos());
  }
  return child.GetPos();
}

}  // namespace

std::vector<PlacedItem> placed_items(tdbItem& root) {
  std::vector<PlacedItem> placed;
  std::vector<PlacedItem> open{{&root, {}}};  // still to be visited, the next one last
  while (!open.empty()) {
    const PlacedItem next = open.back();
    open.pop_back();
    if (next.item->IsHideShape() && !next.item->HasShape()) continue;
    placed.push_back(next);
    auto* group = dynamic_cast<tdbCompositeItem*>(next.item);
    const auto count = group == nullptr ? 0 : static_cast<unsigned>(group->GetItemCount());
    for (unsigned i = count; i > 0; --i) {
      tdbItem* child = group->GetItem(i - 1);
      open.push_back({child, next.position * child_position(*group, *child)});
    }
  }
  return placed;
}

}  // namespace tooldb
