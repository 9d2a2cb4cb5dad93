#include "tooldb/storage/folder_batch.h"

#include <utility>

#include "tooldb/platform/file_system.h"

namespace tooldb {

FolderBatch::FolderBatch(tdbFileManager& files) : files_(files) { ++files_.batch_.open; }

FolderBatch::~FolderBatch() { --files_.batch_.open; }

void FolderBatch::Finish() {
  if (files_.batch_.open > 1 || !std::exchange(files_.batch_.flush_due, false)) return;
  file_system().FlushFolder(files_.folder_);
}

}  // namespace tooldb
