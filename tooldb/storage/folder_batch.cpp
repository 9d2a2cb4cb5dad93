#include "tooldb/storage/folder_batch.h"

#include <utility>

#include "tooldb/platform/file_system.h"
#include "tooldb/platform/guard.h"
#include "tooldb/storage/item_file.h"

namespace tooldb {

FolderBatch::FolderBatch(tdbFileManager& files) : files_(files) { ++files_.batch_.open; }

FolderBatch::~FolderBatch() {
  --files_.batch_.open;
  if (prepared_ != nullptr) files_.batch_.prepared = nullptr;
}

void FolderBatch::Prepare(std::span<const std::unique_ptr<tdbCompositeItem>> items) {
  // Fewer are faster one by one, on a disk that others write to as well.
  constexpr std::size_t kFewest = 8;
  files_.batch_.prepared = nullptr;
  prepared_.reset();
  if (items.size() < kFewest || !file_system().CanFlushDisk()) return;
  const auto attempt = [](auto&& action) {
    tdbError left_to_the_insertion;
    return guarded(left_to_the_insertion, false, [&] {
      action();
      return true;
    });
  };
  attempt([&] { prepared_ = std::make_unique<PreparedFiles>(); });
  for (const auto& item : items) {
    if (item == nullptr || prepared_ == nullptr) continue;
    attempt([&] {
      prepared_->Write(item_file_path(files_.folder_, *item),
                       item_text(*item, files_.search_paths_));
    });
  }
  if (attempt([&] { file_system().FlushDisk(files_.folder_); })) {
    files_.batch_.prepared = prepared_.get();
  } else {
    prepared_.reset();
  }
}

void FolderBatch::Finish() {
  if (files_.batch_.open > 1 || !std::exchange(files_.batch_.flush_due, false)) return;
  file_system().FlushFolder(files_.folder_);
}

}  // namespace tooldb
