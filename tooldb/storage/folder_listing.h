#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace tooldb {

/// The names of a folder's files, kept as long as the folder is surely unchanged.
///
/// A file that comes or goes, by whatever hand, changes the folder's time. That time moves in steps
/// though, so what is listed in the step of the last change may be old with no sign of it: such a
/// listing is not kept.
class FolderListing {
 public:
  /// Looks at the folder; false when it has to be listed again.
  bool IsCurrent(const std::string& folder);
  /// Keeps what has been listed since `IsCurrent` was asked.
  void Keep(std::vector<std::string> names);

  const std::vector<std::string>& Names() const { return names_; }

 private:
  using Clock = std::chrono::steady_clock;

  std::vector<std::string> names_;
  std::string folder_;
  std::int64_t changed_ = 0;        // by the folder's own time
  Clock::time_point seen_since_{};  // when that time was first met here
  Clock::time_point looked_at_{};
  bool settled_ = false;
};

}  // namespace tooldb
