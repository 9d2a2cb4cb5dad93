#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "tooldb/composite_item.h"

/// @file
/// Where the items of a document hang: documents list them one after the other and name each
/// one's parent.

namespace tooldb {

/// True for an item whose element holds what hangs in it: nothing outside the element can.
bool is_closed(const tdbItem& item);

/// Items that are listed together and look for their parents among themselves first: those of a
/// whole entry, of a cutting tool, of the definition of a component.
struct Scope {
  tdbCompositeItem& owner;
  bool members = false;     ///< the items are members of a library component
  tdbItem* last = nullptr;  ///< the item read last
  /// The last item of each name whose element is open to what follows it.
  std::unordered_map<std::string, tdbCompositeItem*> by_name = {};
};

/// The tree of one entry while it is read.
class Assembly {
 public:
  /// @param root  borrowed; named already
  explicit Assembly(tdbCompositeItem& root);

  /// The item that a PARENT text means; null when there is none. An empty text, or the name of the
  /// scope's owner, is the owner. A text that begins with a separator is the chain of names down
  /// to a member of a component. Any other is the name of an item that is no member: the nearest
  /// of those that the item read last hangs in, else the one read last. Cutting tools and nested
  /// definitions hold what hangs in them; outside of them only older files name them.
  tdbCompositeItem* FindParent(const std::string& parent, const Scope& scope) const;

  /// False when the tree would become deeper than 100 items.
  bool HasRoomBelow(const tdbCompositeItem& parent) const;

  /// Hangs an item below `parent`. The item is named already.
  void Add(std::unique_ptr<tdbItem> item, tdbCompositeItem& parent, Scope& scope);

  /// Gives `user` copies of the children of a library component and marks all that is then below
  /// it as members.
  void AddMembers(tdbCompositeItem& user, const tdbCompositeItem& component);

 private:
  struct Node {
    std::uint64_t chain_hash;  // of the names from the root down to the item
    int depth;
  };

  tdbCompositeItem* FindMember(const std::string& chain) const;
  void Register(tdbItem& item);

  tdbCompositeItem& root_;
  std::unordered_map<const tdbItem*, Node> nodes_;
  std::unordered_multimap<std::uint64_t, tdbCompositeItem*> members_;
  std::unordered_map<std::string, tdbCompositeItem*> by_name_;  // in all scopes, the last of each
};

}  // namespace tooldb
