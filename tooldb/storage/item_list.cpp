#include "tooldb/storage/item_list.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "tooldb/model/text.h"

namespace tooldb {

void ItemList::Node::SetKey(std::string its_key, const std::string& code) {
  key = std::move(its_key);
  is_code = key == code;
}

void ItemList::Node::Hold(Item& its_item) {
  item.reset(&its_item);
  Watch(its_item);
}

std::unique_ptr<ItemList::Item> ItemList::Node::Release() {
  Leave();
  return std::move(item);
}

void ItemList::Node::OnCodeChange(tdbObject&, const std::string& code) {
  list.ChangeKey(*this, code);
}

ItemList::~ItemList() {
  // Emptied first: callbacks of the items that die find none of them listed.
  by_key_.clear();
  for (Node& node : nodes_) node.Leave();
  std::exchange(nodes_, {}).clear();
}

ItemList::Item* ItemList::At(int position) const {
  const auto wanted = static_cast<std::size_t>(position);
  if (position < 0 || wanted >= nodes_.size()) return nullptr;
  const auto distance_from = [wanted](const Position& p) {
    return static_cast<std::ptrdiff_t>(wanted) - static_cast<std::ptrdiff_t>(p.number);
  };
  Position nearest{0, nodes_.begin()};
  for (const Position& other : {last_asked_, Position{nodes_.size(), nodes_.end()}}) {
    if (std::abs(distance_from(other)) < std::abs(distance_from(nearest))) nearest = other;
  }
  last_asked_ = {wanted, std::next(nearest.place, distance_from(nearest))};
  return last_asked_.place->item.get();
}

std::vector<ItemList::Item*> ItemList::Snapshot() const {
  std::vector<Item*> items;
  items.reserve(nodes_.size());
  for (const Node& node : nodes_) items.push_back(node.item.get());
  return items;
}

void ItemList::Append(Item& item) {
  Node& node = nodes_.emplace_back(*this);
  try {
    node.SetKey(comparable_code(item.GetCode()), item.GetCode());
    by_key_.emplace(node.key, &node);
  } catch (...) {
    nodes_.pop_back();
    throw;
  }
  node.place = std::prev(nodes_.end());
  node.Hold(item);
}

void ItemList::MoveToEnd(const Item& item) {
  nodes_.splice(nodes_.end(), nodes_, NodeOf(item).place);
  ForgetPosition();
}

std::unique_ptr<ItemList::Item> ItemList::Take(const Item& item) {
  Node* const node = Find(item);
  if (node == nullptr) return nullptr;
  by_key_.erase(EntryOf(*node));
  std::unique_ptr<Item> taken = node->Release();
  const bool was_last_asked = last_asked_.place == node->place;
  const auto next = nodes_.erase(node->place);
  if (was_last_asked && next != nodes_.end()) {
    last_asked_.place = next;
  } else {
    ForgetPosition();
  }
  return taken;
}

std::unique_ptr<ItemList::Item> ItemList::Replace(const Item& old, std::unique_ptr<Item> fresh) {
  Node& node = NodeOf(old);
  ChangeKey(node, fresh->GetCode());
  std::unique_ptr<Item> taken = node.Release();
  node.Hold(*fresh.release());
  return taken;
}

ItemList::Item* ItemList::FindCode(const std::string& code) const {
  return FirstWithKey(comparable_code(code), [&](const Node& node) { return node.HasCode(code); });
}

ItemList::Item* ItemList::FindComparable(std::string_view comparable) const {
  return FirstWithKey(comparable, [](const Node&) { return true; });
}

void ItemList::Sort(Sorter sort) {
  std::vector<Item*> items = Snapshot();
  sort(items);
  for (const Item* item : items) nodes_.splice(nodes_.end(), nodes_, NodeOf(*item).place);
  ForgetPosition();
}

void ItemList::Reverse() {
  nodes_.reverse();
  ForgetPosition();
}

// Nothing but nodes watches objects.
ItemList::Node& ItemList::NodeOf(const tdbObject& item) {
  return static_cast<Node&>(*CodeWatcher::Of(item));
}

ItemList::Node* ItemList::Find(const tdbObject& item) const {
  return CodeWatcher::Of(item) != nullptr && &NodeOf(item).list == this ? &NodeOf(item) : nullptr;
}

ItemList::Index::iterator ItemList::EntryOf(const Node& node) {
  const auto [first, last] = by_key_.equal_range(node.key);
  return std::find_if(first, last, [&](const auto& entry) { return entry.second == &node; });
}

// Moves the entry, which takes no memory, so that nothing fails half-way.
void ItemList::ChangeKey(Node& node, const std::string& code) {
  std::string key = comparable_code(code);
  auto entry = by_key_.extract(EntryOf(node));
  node.SetKey(std::move(key), code);
  entry.key() = node.key;
  by_key_.insert(std::move(entry));
}

template <class Accept>
ItemList::Item* ItemList::FirstWithKey(std::string_view key, Accept&& accept) const {
  const auto [first, last] = by_key_.equal_range(key);
  Item* found = nullptr;
  for (auto entry = first; entry != last; ++entry) {
    if (!accept(*entry->second)) continue;
    if (found != nullptr) {
      // Of several, the list tells which comes first.
      return std::ranges::find_if(nodes_,
                                  [&](const Node& node) { return node.key == key && accept(node); })
          ->item.get();
    }
    found = entry->second->item.get();
  }
  return found;
}

}  // namespace tooldb
