#include "tooldb/composite_item.h"

#include <algorithm>

namespace {

bool equal_children(const std::unique_ptr<tdbItem>& a, const std::unique_ptr<tdbItem>& b) {
  if (a->IsLeaf() != b->IsLeaf()) return false;
  if (a->IsLeaf()) return *a == *b;
  return static_cast<const tdbCompositeItem&>(*a) == static_cast<const tdbCompositeItem&>(*b);
}

}  // namespace

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
  children_.reserve(other.Children().size());
  for (const auto& child : other.Children()) Append(child->Clone());
}

tdbCompositeItem& tdbCompositeItem::operator=(const tdbCompositeItem& other) {
  if (this == &other) return *this;
  // Cloned first: `other` may hang below this item.
  std::vector<std::unique_ptr<tdbItem>> clones;
  for (const auto& child : other.Children())
    clones.push_back(std::unique_ptr<tdbItem>(child->Clone()));
  tdbItem::operator=(other);
  children_.clear();
  empty_places_ = 0;
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
  for (const auto& child : Children()) child->Visit(callback, context);
}

void tdbCompositeItem::Update() {
  tdbItem::Update();
  for (const auto& child : Children()) {
    if (IsModified()) child->SetModified(true);
    child->Update();
  }
}

std::uint64_t tdbCompositeItem::GetItemCount() const { return Children().size(); }

const tdbItem* tdbCompositeItem::GetItem(unsigned index) const {
  return Children().empty() ? nullptr : Children()[index].get();
}

tdbItem* tdbCompositeItem::GetItem(unsigned index) {
  return Children().empty() ? nullptr : Children()[index].get();
}

const tdbItem* tdbCompositeItem::GetItemByName(const std::string& name) const {
  const auto children = Children();
  const auto found = std::ranges::find_if(
      children, [&name](const auto& child) { return child->GetName() == name; });
  return found == children.end() ? nullptr : found->get();
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

std::span<const std::unique_ptr<tdbItem>> tdbCompositeItem::Children() const {
  return std::span(children_).subspan(empty_places_);
}

std::unique_ptr<tdbItem> tdbCompositeItem::Take(std::size_t index) {
  const auto place = children_.begin() + static_cast<std::ptrdiff_t>(empty_places_ + index);
  std::unique_ptr<tdbItem> child = std::move(*place);
  if (index > 0) {
    children_.erase(place);
  } else if (2 * ++empty_places_ > children_.size()) {
    children_.erase(children_.begin(), place + 1);
    empty_places_ = 0;
  }
  return child;
}

bool tdbCompositeItem::RemoveItem(tdbItem* item, bool keep) {
  const auto index_of_item = [this, item] {
    const auto children = Children();
    return static_cast<std::size_t>(
        std::ranges::find(children, item, [](const auto& child) { return child.get(); }) -
        children.begin());
  };
  if (index_of_item() == Children().size()) {
    SetModified(true);
    return false;
  }
  if (on_delete_ != nullptr) on_delete_(on_delete_context_, item);
  // Looked up again: the callback may have changed the list.
  const std::size_t index = index_of_item();
  if (index == Children().size()) return true;
  std::unique_ptr<tdbItem> removed = Take(index);
  if (keep) static_cast<void>(removed.release());
  return true;
}

bool tdbCompositeItem::RemoveItems(bool keep) {
  bool removed = false;
  while (!Children().empty()) {
    tdbItem* first = Children().front().get();
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
  const auto mine = Children();
  const auto theirs = other.Children();
  return tdbItem::operator==(other) && std::ranges::equal(mine, theirs, equal_children);
}
