#pragma once

#include <concepts>
#include <vector>

#include "tooldb/composite_item.h"

/// @file
/// Walks of item trees that need no callback.

namespace tooldb {

/// Every item below `root` (not `root` itself), parents first, in child order.
template <std::derived_from<tdbCompositeItem> Composite>
auto items_below(Composite& root) {
  using Item = std::conditional_t<std::is_const_v<Composite>, const tdbItem, tdbItem>;
  using Group =
      std::conditional_t<std::is_const_v<Composite>, const tdbCompositeItem, tdbCompositeItem>;
  std::vector<Item*> items;
  std::vector<Item*> open;  // the children still to be visited, the next one last
  const auto push_children = [&open](Group& group) {
    for (auto i = static_cast<unsigned>(group.GetItemCount()); i > 0; --i) {
      open.push_back(group.GetItem(i - 1));
    }
  };
  push_children(root);
  while (!open.empty()) {
    Item* item = open.back();
    open.pop_back();
    items.push_back(item);
    if (auto* group = dynamic_cast<Group*>(item)) push_children(*group);
  }
  return items;
}

/// The item of class `Part` that `before` others stand before, in the order of `items_below`; null,
/// and `before` less by their number, when there are not so many. Takes no memory.
template <class Part, std::derived_from<tdbCompositeItem> Composite>
std::conditional_t<std::is_const_v<Composite>, const Part, Part>* part_below(Composite& root,
                                                                             int& before) {
  using Found = std::conditional_t<std::is_const_v<Composite>, const Part, Part>;
  using Group =
      std::conditional_t<std::is_const_v<Composite>, const tdbCompositeItem, tdbCompositeItem>;
  const auto count = static_cast<unsigned>(root.GetItemCount());
  for (unsigned i = 0; i < count; ++i) {
    auto* const item = root.GetItem(i);
    auto* const part = dynamic_cast<Found*>(item);
    if (part != nullptr && before-- == 0) return part;
    auto* const group = dynamic_cast<Group*>(item);
    Found* const inner = group == nullptr ? nullptr : part_below<Part>(*group, before);
    if (inner != nullptr) return inner;
  }
  return nullptr;
}

/// The items of class `Part` below `root`, in the order of `items_below`.
template <class Part, std::derived_from<tdbCompositeItem> Composite>
auto parts_below(Composite& root) {
  using Result = std::conditional_t<std::is_const_v<Composite>, const Part, Part>;
  std::vector<Result*> parts;
  for (auto* item : items_below(root)) {
    if (auto* part = dynamic_cast<Result*>(item)) parts.push_back(part);
  }
  return parts;
}

}  // namespace tooldb
