#include "tooldb/storage/item_list.h"

#include <algorithm>
#include <utility>

#include "tooldb/model/text.h"

namespace tooldb {

ItemList::~ItemList() {
  // Emptied first: callbacks of the items that die find none of them listed.
  by_comparable_code_.clear();
  for (const Slot& slot : slots_) Unwatch(*slot.item);
  std::exchange(slots_, {}).clear();
}

ItemList::Item* ItemList::At(int position) const {
  const auto index = static_cast<std::size_t>(position);
  return position < 0 || index >= slots_.size() ? nullptr : slots_[index].item.get();
}

std::vector<ItemList::Item*> ItemList::Snapshot() const {
  std::vector<Item*> items;
  items.reserve(slots_.size());
  for (const Slot& slot : slots_) items.push_back(slot.item.get());
  return items;
}

void ItemList::Append(Item& item) {
  const auto entry = by_comparable_code_.emplace(comparable_code(item.GetCode()), &item);
  try {
    slots_.emplace_back().entry = entry;
  } catch (...) {
    by_comparable_code_.erase(entry);
    throw;
  }
  slots_.back().item.reset(&item);
  Watch(item);
}

void ItemList::MoveToEnd(const Item& item) {
  const auto slot = Find(item);
  std::rotate(slot, slot + 1, slots_.end());
}

std::unique_ptr<ItemList::Item> ItemList::Take(const Item& item) {
  if (!Holds(item)) return nullptr;
  const auto slot = Find(item);
  std::unique_ptr<Item> taken = std::move(slot->item);
  Unwatch(*taken);
  by_comparable_code_.erase(slot->entry);
  slots_.erase(slot);
  return taken;
}

std::unique_ptr<ItemList::Item> ItemList::Replace(const Item& old, std::unique_ptr<Item> fresh) {
  Append(*fresh);
  const auto slot = Find(old);
  std::swap(*slot, slots_.back());
  fresh.release();  // NOLINT(bugprone-unused-return-value): the list owns it
  return Take(old);
}

ItemList::Item* ItemList::FindCode(const std::string& code) const {
  return FirstWithKey(comparable_code(code),
                      [&](const Item& item) { return item.GetCode() == code; });
}

ItemList::Item* ItemList::FindComparable(const std::string& comparable) const {
  return FirstWithKey(comparable, [](const Item&) { return true; });
}

void ItemList::Sort(Less less) {
  std::vector<Slot> sorted(slots_.size());
  std::vector<Slot> scratch(slots_.size());
  std::ranges::move(slots_, sorted.begin());
  for (std::size_t run = 1; run < sorted.size(); run *= 2) {
    for (std::size_t first = 0; first < sorted.size(); first += 2 * run) {
      MergeRuns(sorted, scratch, first, run, less);
    }
    sorted.swap(scratch);
  }
  std::ranges::move(sorted, slots_.begin());
}

void ItemList::Reverse() { std::ranges::reverse(slots_); }

void ItemList::OnCodeChange(tdbObject& object, const std::string& code) {
  const auto slot = Find(object);
  const auto entry = by_comparable_code_.emplace(comparable_code(code), slot->item.get());
  by_comparable_code_.erase(slot->entry);
  slot->entry = entry;
}

ItemList::Slots::iterator ItemList::Find(const tdbObject& item) {
  return std::ranges::find_if(slots_, [&](const Slot& slot) { return slot.item.get() == &item; });
}

template <class Accept>
ItemList::Item* ItemList::FirstWithKey(const std::string& key, Accept&& accept) const {
  const auto [first, last] = by_comparable_code_.equal_range(key);
  std::vector<Item*> accepted;
  for (auto entry = first; entry != last; ++entry) {
    if (accept(*entry->second)) accepted.push_back(entry->second);
  }
  if (accepted.size() < 2) return accepted.empty() ? nullptr : accepted.front();
  const auto slot = std::ranges::find_if(slots_, [&](const Slot& candidate) {
    return std::ranges::find(accepted, candidate.item.get()) != accepted.end();
  });
  return slot->item.get();
}

// Merges two neighbouring runs of `run` items each, or of what is left of them. The standard merge
// demands a consistent order, which that of codes is not.
void ItemList::MergeRuns(std::vector<Slot>& from, std::vector<Slot>& to, std::size_t first,
                         std::size_t run, Less less) {
  const std::size_t middle = std::min(first + run, from.size());
  const std::size_t last = std::min(middle + run, from.size());
  std::size_t left = first;
  std::size_t right = middle;
  for (std::size_t out = first; out < last; ++out) {
    const bool take_right =
        left == middle || (right < last && less(*from[right].item, *from[left].item));
    to[out] = std::move(from[take_right ? right++ : left++]);
  }
}

}  // namespace tooldb
