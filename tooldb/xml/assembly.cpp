#include "tooldb/xml/assembly.h"

#include <string_view>

#include "tooldb/model/text.h"
#include "tooldb/model/tree_walk.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

constexpr int kDeepestTree = 100;

// FNV-1a: the hash of a text goes on from the hash of its beginning.
constexpr std::uint64_t kEmptyHash = 14695981039346656037U;
std::uint64_t hash_on(std::uint64_t hash, std::string_view text) {
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
  return hash;
}

template <class Map, class Key>
tdbCompositeItem* found_in(const Map& map, const Key& key) {
  const auto found = map.find(key);
  return found == map.end() ? nullptr : found->second;
}

}  // namespace

bool is_closed(const tdbItem& item) {
  return dynamic_cast<const tdbCuttingTool*>(&item) != nullptr ||
         (dynamic_cast<const tdbToolComponent*>(&item) != nullptr && item.IsComponent());
}

Assembly::Assembly(tdbCompositeItem& root) : root_(root) { Register(root); }

tdbCompositeItem* Assembly::FindParent(const std::string& parent, const Scope& scope) const {
  if (parent.empty()) return &scope.owner;
  if (parent[0] == '\\') {
    if (tdbCompositeItem* member = FindMember(parent)) return member;
  }
  // A tree is listed parents first, so a parent is one of those that the last item hangs in.
  for (tdbItem* i = scope.last; i != nullptr && i != &scope.owner; i = i->GetParent()) {
    if (i->GetName() != parent || (i->IsComponent() && !scope.members) || is_closed(*i)) continue;
    if (auto* group = dynamic_cast<tdbCompositeItem*>(i)) return group;
  }
  if (parent == scope.owner.GetName()) return &scope.owner;
  if (tdbCompositeItem* item = found_in(scope.by_name, parent)) return item;
  return &scope.owner == &root_ ? found_in(by_name_, parent) : nullptr;
}

tdbCompositeItem* Assembly::FindMember(const std::string& chain) const {
  const auto [first, last] = members_.equal_range(hash_on(kEmptyHash, chain));
  for (auto member = first; member != last; ++member) {
    if (parent_chain(*member->second) == chain) return member->second;
  }
  return nullptr;
}

bool Assembly::HasRoomBelow(const tdbCompositeItem& parent) const {
  return nodes_.at(&parent).depth < kDeepestTree;
}

void Assembly::Add(std::unique_ptr<tdbItem> item, tdbCompositeItem& parent, Scope& scope) {
  tdbItem* added = item.get();
  if (!parent.AddItem(added)) return;
  static_cast<void>(item.release());
  scope.last = added;
  Register(*added);
  auto* group = dynamic_cast<tdbCompositeItem*>(added);
  if (group == nullptr) return;
  if (!is_closed(*added)) scope.by_name[added->GetName()] = group;
  if (added->IsComponent() == root_.IsComponent()) by_name_[added->GetName()] = group;
}

void Assembly::AddMembers(tdbCompositeItem& user, const tdbCompositeItem& component) {
  for (unsigned i = 0; i < component.GetItemCount(); ++i) {
    std::unique_ptr<tdbItem> copy(component.GetItem(i)->Clone());
    if (user.AddItem(copy.get())) static_cast<void>(copy.release());
  }
  for (tdbItem* member : items_below(user)) {
    member->SetItemComponent(true);
    member->SetModified(true);
    Register(*member);
  }
}

void Assembly::Register(tdbItem& item) {
  const auto parent = nodes_.find(item.GetParent());
  Node node = parent == nodes_.end() ? Node{kEmptyHash, 0}
                                     : Node{parent->second.chain_hash, parent->second.depth + 1};
  node.chain_hash = hash_on(hash_on(node.chain_hash, "\\"), item.GetName());
  nodes_[&item] = node;
  auto* group = dynamic_cast<tdbCompositeItem*>(&item);
  if (group != nullptr && item.IsComponent()) members_.emplace(node.chain_hash, group);
}

}  // namespace tooldb
