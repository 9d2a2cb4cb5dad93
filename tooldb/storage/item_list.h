#pragma once

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tooldb/composite_item.h"
#include "tooldb/model/code_watcher.h"

namespace tooldb {

/// The ordered list of the tools or components that a database owns. Finding one by its code does
/// not walk the list, even after the host has changed codes.
class ItemList final : private CodeWatcher {
 public:
  using Item = tdbCompositeItem;
  /// True when the first item comes before the second; need not be consistent over three items.
  using Less = bool (*)(const Item&, const Item&);

  ItemList() = default;
  ItemList(const ItemList&) = delete;
  ItemList& operator=(const ItemList&) = delete;
  ~ItemList() override;

  std::size_t Size() const { return slots_.size(); }
  /// Null when out of range.
  Item* At(int position) const;
  bool Holds(const Item& item) const { return IsWatching(item); }
  /// All items as they are listed now.
  std::vector<Item*> Snapshot() const;

  /// Takes the item over when it returns; when it raises, the list is as before.
  void Append(Item& item);
  /// Moves a listed item.
  void MoveToEnd(const Item& item);
  /// Hands the item back; null when it is not listed. Never raises.
  std::unique_ptr<Item> Take(const Item& item);
  /// Puts `fresh` in the place of `old`, which is listed, and hands that back.
  std::unique_ptr<Item> Replace(const Item& old, std::unique_ptr<Item> fresh);

  /// The first item of exactly that code; null if none.
  Item* FindCode(const std::string& code) const;
  /// The first item whose code in comparable form is `comparable`; null if none.
  Item* FindComparable(const std::string& comparable) const;

  /// Merge sort; items neither of which comes first keep their order.
  void Sort(Less less);
  void Reverse();

 private:
  using Index = std::multimap<std::string, Item*>;
  struct Slot {
    std::unique_ptr<Item> item;
    Index::iterator entry;
  };
  using Slots = std::deque<Slot>;

  void OnCodeChange(tdbObject& object, const std::string& code) override;
  /// The place of a listed item.
  Slots::iterator Find(const tdbObject& item);
  template <class Accept>
  Item* FirstWithKey(const std::string& key, Accept&& accept) const;
  static void MergeRuns(std::vector<Slot>& from, std::vector<Slot>& to, std::size_t first,
                        std::size_t run, Less less);

  Slots slots_;
  Index by_comparable_code_;
};

}  // namespace tooldb
