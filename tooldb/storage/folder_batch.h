#pragma once

#include "tooldb/file_manager.h"

namespace tooldb {

/// Changes of one job in a folder: each file is flushed as it is written, the folder once, when the
/// outermost batch is finished. A batch that ends unfinished leaves the flush to the next one.
class FolderBatch {
 public:
  explicit FolderBatch(tdbFileManager& files);
  FolderBatch(const FolderBatch&) = delete;
  FolderBatch& operator=(const FolderBatch&) = delete;
  ~FolderBatch();

  /// Raises `tdbError` when the folder cannot be flushed; the changes stand all the same.
  void Finish();

 private:
  tdbFileManager& files_;
};

}  // namespace tooldb
