#pragma once

#include <memory>
#include <span>

#include "tooldb/composite_item.h"
#include "tooldb/file_manager.h"
#include "tooldb/platform/safe_write.h"

namespace tooldb {

/// Changes of one job in a folder: each file is flushed as it is written, or together with others
/// that were prepared; the folder once, when the outermost batch is finished. A batch that ends
/// unfinished leaves the flush to the next one.
class FolderBatch {
 public:
  explicit FolderBatch(tdbFileManager& files);
  FolderBatch(const FolderBatch&) = delete;
  FolderBatch& operator=(const FolderBatch&) = delete;
  ~FolderBatch();

  /// Writes the texts of items that are about to be inserted and flushes them at a stroke, which is
  /// much faster than one by one; null items are left out. What fails here does so again, and is
  /// reported, when the item is inserted.
  void Prepare(std::span<const std::unique_ptr<tdbCompositeItem>> items);

  /// Raises `tdbError` when the folder cannot be flushed; the changes stand all the same.
  void Finish();

 private:
  tdbFileManager& files_;
  std::unique_ptr<PreparedFiles> prepared_;
};

}  // namespace tooldb
