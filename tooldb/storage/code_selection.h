#pragma once

#include <string>
#include <unordered_set>
#include <vector>

namespace tooldb {

/// The codes that an import or export is about.
class CodeSelection {
 public:
  /// Every code when `codes` is empty.
  explicit CodeSelection(const std::vector<std::string>& codes)
      : everything_(codes.empty()), codes_(codes.begin(), codes.end()) {}

  /// Leaves only what is in `codes` too.
  void Intersect(const std::vector<std::string>& codes) {
    std::unordered_set<std::string> both;
    for (const std::string& code : codes) {
      if (Has(code)) both.insert(code);
    }
    everything_ = false;
    codes_ = std::move(both);
  }

  bool Has(const std::string& code) const { return everything_ || codes_.contains(code); }

 private:
  bool everything_;
  std::unordered_set<std::string> codes_;
};

}  // namespace tooldb
