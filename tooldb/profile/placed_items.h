#pragma once

#include <vector>

#include "tooldb/item.h"

/// @file
/// Where the items of an assembly stand.

namespace tooldb {

struct PlacedItem {
  tdbItem* item;
  Transformation<double> position;  ///< in the frame of the root
};

/// `root` and every item below it that is to be seen, parents first. An item that is hidden and
/// has no shape of its own hides what is below it. Positions are taken from the items, joined
/// shanks included; the tree is not changed.
std::vector<PlacedItem> placed_items(tdbItem& root);

}  // namespace tooldb
