#include "apps/tree_items.h"

#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

// Puts the children of an item onto the stack, the first on top.
void push_children(std::vector<TreeItem>& stack, tdbItem* item, int depth) {
  auto* composite = dynamic_cast<tdbCompositeItem*>(item);
  if (composite == nullptr) return;
  for (auto i = composite->GetItemCount(); i-- > 0;) {
    stack.push_back({composite->GetItem(static_cast<unsigned>(i)), depth});
  }
}

template <class T>
bool is_a(const tdbItem& item) {
  return dynamic_cast<const T*>(&item) != nullptr;
}

struct ClassName {
  bool (*matches)(const tdbItem& item);
  std::string_view name;
};

constexpr ClassName kClassNames[] = {
    {is_a<tdbTool>, "tool"},
    {is_a<tdbCuttingTool>, "cutting tool"},
    {is_a<tdbToolCutter>, "cutter"},
    {is_a<tdbToolShank>, "shank"},
    {is_a<tdbToolHolder>, "holder"},
    {is_a<tdbFixedLink>, "fixed link"},
    {is_a<tdbToolAngleHead>, "angle head"},
    {is_a<tdbToolComponent>, "component"},
};

}  // namespace

std::vector<TreeItem> items_below(tdbCompositeItem& root) {
  std::vector<TreeItem> items;
  std::vector<TreeItem> stack;
  push_children(stack, &root, 1);
  while (!stack.empty()) {
    const TreeItem next = stack.back();
    stack.pop_back();
    items.push_back(next);
    push_children(stack, next.item, next.depth + 1);
  }
  return items;
}

std::string_view class_name(const tdbItem& item) {
  for (const ClassName& row : kClassNames) {
    if (row.matches(item)) return row.name;
  }
  return "item";
}

}  // namespace tooldb
