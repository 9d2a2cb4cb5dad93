#include "tooldb/storage/folder_listing.h"

#include <utility>

#include "tooldb/platform/file_system.h"

namespace tooldb {

namespace {

using std::chrono::milliseconds;

/// The longest step of a folder's time: that of the system's clock, or of a file system that counts
/// in whole seconds or pairs of them.
milliseconds longest_step(std::int64_t nanoseconds) {
  constexpr std::int64_t kSecond = 1'000'000'000;
  return nanoseconds % kSecond == 0 ? milliseconds(2500) : milliseconds(50);
}

}  // namespace

bool FolderListing::IsCurrent(const std::string& folder) {
  const std::int64_t changed = file_system().LastWriteNanoseconds(folder);
  looked_at_ = Clock::now();
  if (folder != folder_ || changed != changed_) {
    settled_ = false;
    folder_ = folder;
    changed_ = changed;
    seen_since_ = looked_at_;
  }
  return settled_;
}

void FolderListing::Keep(std::vector<std::string> names) {
  names_ = std::move(names);
  settled_ = looked_at_ - seen_since_ > longest_step(changed_);
}

}  // namespace tooldb
