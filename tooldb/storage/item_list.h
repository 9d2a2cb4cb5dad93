#pragma once

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tooldb/composite_item.h"
#include "tooldb/model/code_watcher.h"

namespace tooldb {

/// The ordered list of the tools or components that a database owns. Neither finding an item by its
/// code nor moving or taking one out walks the list, even after the host has changed codes; nor
/// does asking for one position after the other.
class ItemList final {
 public:
  using Item = tdbCompositeItem;
  /// Brings items into an order; those that are equal in it keep their places among themselves.
  using Sorter = void (*)(std::vector<Item*>& items);

  ItemList() = default;
  ItemList(const ItemList&) = delete;
  ItemList& operator=(const ItemList&) = delete;
  ~ItemList();

  std::size_t Size() const { return nodes_.size(); }
  /// Null when out of range.
  Item* At(int position) const;
  bool Holds(const Item& item) const { return Find(item) != nullptr; }
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
  Item* FindComparable(std::string_view comparable) const;

  void Sort(Sorter sort);
  void Reverse();

 private:
  struct Node;
  using Nodes = std::list<Node>;
  /// By the comparable code, which the node holds.
  using Index = std::unordered_multimap<std::string_view, Node*>;

  /// A listed item.
  struct Node final : CodeWatcher {
    explicit Node(ItemList& its_list) : list(its_list) {}
    /// Takes the comparable form of a code as its key.
    void SetKey(std::string its_key, const std::string& code);
    bool HasCode(const std::string& code) const {
      return is_code ? key == code : item->GetCode() == code;
    }
    void Hold(Item& its_item);
    /// The item is no longer watched.
    void Leave() { Unwatch(*item); }
    std::unique_ptr<Item> Release();
    void OnCodeChange(tdbObject& object, const std::string& code) override;

    ItemList& list;
    std::string key;
    bool is_code = false;  ///< the key is the item's code as it stands
    std::unique_ptr<Item> item;
    Nodes::iterator place;
  };

  /// The node of an item that is listed, here or elsewhere.
  static Node& NodeOf(const tdbObject& item);
  /// The node of an item; null when it is not listed here.
  Node* Find(const tdbObject& item) const;
  Index::iterator EntryOf(const Node& node);
  void ChangeKey(Node& node, const std::string& code);
  void ForgetPosition() { last_asked_ = {0, nodes_.begin()}; }
  template <class Accept>
  Item* FirstWithKey(std::string_view key, Accept&& accept) const;

  struct Position {
    std::size_t number;
    Nodes::const_iterator place;
  };

  Nodes nodes_;
  Index by_key_;
  mutable Position last_asked_{0, nodes_.begin()};
};

}  // namespace tooldb
