#pragma once

#include <string_view>
#include <vector>

#include "tooldb/composite_item.h"

namespace tooldb {

/// An item and how deep it lies in its tree: 1 for the children of the root.
struct TreeItem {
  tdbItem* item;
  int depth;
};

/// Every item below `root`, parents before their children, in list order.
std::vector<TreeItem> items_below(tdbCompositeItem& root);

/// The first item of a class below `root`; null if there is none.
template <class T>
T* first_of(tdbCompositeItem& root) {
  for (const TreeItem& entry : items_below(root)) {
    if (T* item = dynamic_cast<T*>(entry.item)) return item;
  }
  return nullptr;
}

/// What an item is, for a person: "cutter", "cutting tool" and so on.
std::string_view class_name(const tdbItem& item);

}  // namespace tooldb
