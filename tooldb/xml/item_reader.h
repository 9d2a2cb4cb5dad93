#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tooldb/composite_item.h"
#include "tooldb/xml/assembly.h"
#include "tooldb/xml/component_lookup.h"
#include "tooldb/xml/element.h"

/// @file
/// Items from their elements.

namespace tooldb {

/// Reads the item elements of one entry into the tree below its root.
///
/// What makes an item unusable raises `tdbError`: an unknown type (code 3), a tree deeper than 100
/// items. What can be done without is noted among the root's errors: a parent or a component that
/// is not found, an element that means nothing.
class ItemReader {
 public:
  ItemReader(const ParsedEntry& entry, const ReadContext& context, tdbCompositeItem& root)
      : entry_(entry), context_(context), root_(root), assembly_(root) {}

  /// Reads the element of an item and hangs the item into the tree.
  /// @return false, and nothing done, when it is no item element
  bool Read(const Element& element, Scope& scope);

  /// Reads what an element says of its item: attributes, and children that are no items.
  void ReadContent(const Element& element, tdbItem& item);

  /// Notes among the root's errors what is wrong with an element.
  void Note(int code, const Element& element, const std::string& what);

 private:
  struct ChildRow;
  static const ChildRow* FindChildRow(std::string_view name);

  tdbItem& Attach(const Element& element, std::unique_ptr<tdbItem> item, Scope& scope);
  void ReadMembers(const Element& element, tdbItem& item, Scope& scope);
  bool ReadItemsIn(const Element& element, Scope& scope);
  void LoadComponent(const Element& element, tdbCompositeItem& user, const std::string& code);
  void ReadParameter(const Element& child, tdbItem& item);
  void ReadFile(const Element& child, tdbItem& item);

  const ParsedEntry& entry_;
  const ReadContext& context_;
  tdbCompositeItem& root_;
  Assembly assembly_;
};

}  // namespace tooldb
