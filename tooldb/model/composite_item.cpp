#include "tooldb/composite_item.h"

#include <algorithm>

tdbCompositeItem::tdbCompositeItem(int type) : tdbItem(type) {}

tdbCompositeItem::tdbCompositeItem(int type, const std::string& name) : tdbItem(type, name) {}

tdbCompositeItem::tdbCompositeItem(int type, const std::string& name, const std::string& code)
    : tdbItem(type, name, code) {}

tdbCompositeItem::tdbCompositeItem(const tdbCompositeItem& other)
    : tdbItem(other),
      post_add_(other.post_add_),
      post_add_context_(other.post_add_context_),
      on_delete_(other.on_delete_),
      on_delete_context_(other.on_delete_context_) {
  children_.reserve(other.children_.size());
  for (const auto& child : other.children_) Append(child->Clone());
}

tdbCompositeItem& tdbCompositeItem::operator=(const tdbCompositeItem& other) {
  if (this == &other) return *this;
  // Cloned first: `other` may hang below this item.
  std::vector<std::unique_ptr<tdbItem>> clones;
  for (const auto& child : other.children_) clones.emplace_back(child->Clone());
  tdbItem::operator=(other);
  children_.clear();
  for (auto& clone : clones) {
    if (AddItem(clone.get())) static_cast<void>(clone.release());
  }
  return *this;
}

tdbCompositeItem::~tdbCompositeItem() { tdbCompositeItem::RemoveItems(false); }

bool tdbCompositeItem::IsLeaf() { return false; }
bool tdbCompositeItem::IsComposite() { return true; }

void tdbCompositeItem::Visit(tdbItemCallback callback, void* context) {
  callback(context, this);
  for (const auto& child : children_) child->Visit(callback, context);
}

void tdbCompositeItem::Update() {
  tdbItem::Update();
  for (const auto& child : children_) {
    if (IsModified()) child->SetModified(true);
    child->Update();
  }
}

std::uint64_t tdbCompositeItem::GetItemCount() const { return children_.size(); }

const tdbItem* tdbCompositeItem::GetItem(unsigned index) const {
  return children_.empty() ? nullptr : children_[index].get();
}

tdbItem* tdbCompositeItem::GetItem(unsigned index) {
  return children_.empty() ? nullptr : children_[index].get();
}

const tdbItem* tdbCompositeItem::GetItemByName(const std::string& name) const {
  const auto found = std::ranges::find_if(
      children_, [&name](const auto& child) { return child->GetName() == name; });
  return found == children_.end() ? nullptr : found->get();
}

tdbItem* tdbCompositeItem::GetItemByName(const std::string& name) {
  return const_cast<tdbItem*>(  // NOLINT(*-const-cast): this object is not const
      static_cast<const tdbCompositeItem*>(this)->tdbCompositeItem::GetItemByName(name));
}

bool tdbCompositeItem::AddItem(tdbItem* item) {
  if (item == nullptr) return false;
  Append(item);
  return true;
}

void tdbCompositeItem::Append(tdbItem* item) {
  children_.emplace_back();  // may throw, and then the item is still the caller's
  children_.back().reset(item);
  item->SetParent(this);
  if (post_add_ != nullptr) post_add_(post_add_context_, item);
  SetModified(true);
}

bool tdbCompositeItem::RemoveItem(tdbItem* item, bool keep) {
  const auto is_item = [item](const auto& child) { return child.get() == item; };
  if (std::ranges::none_of(children_, is_item)) {
    SetModified(true);
    return false;
  }
  if (on_delete_ != nullptr) on_delete_(on_delete_context_, item);
  // Looked up again: the callback may have changed the list.
  const auto found = std::ranges::find_if(children_, is_item);
  if (found == children_.end()) return true;
  std::unique_ptr<tdbItem> removed = std::move(*found);
  children_.erase(found);
  if (keep) static_cast<void>(removed.release());
  return true;
}

bool tdbCompositeItem::RemoveItems(bool keep) {
  bool removed = false;
  while (!children_.empty()) {
    tdbItem* first = children_.front().get();
    removed |= RemoveItem(first, keep);
  }
  SetModified(true);
  return removed;
}

void tdbCompositeItem::SetPostAddItemCallback(tdbItemCallback callback, void* context) {
  post_add_ = callback;
  post_add_context_ = context;
}

void tdbCompositeItem::SetDeleteItemCallback(tdbItemCallback callback, void* context) {
  on_delete_ = callback;
  on_delete_context_ = context;
}

bool tdbCompositeItem::operator==(const tdbCompositeItem& other) const {
  if (!tdbItem::operator==(other) || children_.size() != other.children_.size()) return false;
  for (std::size_t i = 0; i < children_.size(); ++i) {
    tdbItem& mine = *children_[i];
    tdbItem& theirs = *other.children_[i];
    if (mine.IsLeaf() != theirs.IsLeaf()) return false;
    const bool equal = mine.IsLeaf() ? mine == theirs
                                     : static_cast<const tdbCompositeItem&>(mine) ==
                                           static_cast<const tdbCompositeItem&>(theirs);
    if (!equal) return false;
  }
  return true;
}
