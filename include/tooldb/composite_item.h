#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tooldb/error.h"
#include "tooldb/export.h"
#include "tooldb/item.h"

/// An item that owns an ordered list of children.
class TDB_EXPORT tdbCompositeItem : public tdbItem {
 public:
  /// Removes the children as `RemoveItems(false)` does: the delete callback fires for each.
  ~tdbCompositeItem() override;

  bool IsLeaf() override;
  void Visit(tdbItemCallback callback, void* context) override;
  void Update() override;

  virtual bool IsComposite();
  virtual std::uint64_t GetItemCount() const;
  /// The child at `index`, borrowed; null without children. `index` must be below the count.
  TDB_SLOTS2((virtual const tdbItem* GetItem(unsigned index) const),
             (virtual tdbItem * GetItem(unsigned index)));
  /// The first direct child of exactly that name, borrowed; null if none.
  TDB_SLOTS2((virtual const tdbItem* GetItemByName(const std::string& name) const),
             (virtual tdbItem * GetItemByName(const std::string& name)));
  /// Appends a child, taken over, and sets the modified mark; false for null. The post-add
  /// callback fires.
  virtual bool AddItem(tdbItem* item);
  /// Takes a child out of the list; the delete callback fires first.
  /// @param keep  false: the child is deleted; true: it is the caller's again
  /// @return false, and the modified mark set, when `item` is not a child
  virtual bool RemoveItem(tdbItem* item, bool keep);
  /// Removes every child as `RemoveItem` does and sets the modified mark; false if there was none.
  virtual bool RemoveItems(bool keep);
  /// A null function switches the callback off.
  virtual void SetPostAddItemCallback(tdbItemCallback callback, void* context);
  virtual void SetDeleteItemCallback(tdbItemCallback callback, void* context);

  /// Errors met while this part of the tree was built.
  std::vector<tdbError>& GetErrs() { return errors_; }
  void PushError(const tdbError& error) { errors_.push_back(error); }
  bool HasError() const { return !errors_.empty(); }
  void ClearError() { errors_.clear(); }

  /// Item equality, and equal children in equal order.
  bool operator==(const tdbCompositeItem& other) const;
  bool operator!=(const tdbCompositeItem& other) const { return !(*this == other); }

 protected:
  explicit tdbCompositeItem(int type);
  tdbCompositeItem(int type, const std::string& name);
  tdbCompositeItem(int type, const std::string& name, const std::string& code);
  /// Clones the children; the copied post-add callback fires for each clone.
  tdbCompositeItem(const tdbCompositeItem& other);
  /// Deletes the present children without the delete callback, then adds clones through `AddItem`;
  /// callbacks and errors stay the target's own.
  tdbCompositeItem& operator=(const tdbCompositeItem& other);

 private:
  void Append(tdbItem* item);
  std::span<const std::unique_ptr<tdbItem>> Children() const;
  std::unique_ptr<tdbItem> Take(std::size_t index);

  /// Children from the front of the list leave their place empty for a while, so that removing all
  /// of them one by one takes linear time.
  std::vector<std::unique_ptr<tdbItem>> children_;
  std::size_t empty_places_ = 0;
  tdbItemCallback post_add_ = nullptr;
  void* post_add_context_ = nullptr;
  tdbItemCallback on_delete_ = nullptr;
  void* on_delete_context_ = nullptr;
  std::vector<tdbError> errors_;
};
