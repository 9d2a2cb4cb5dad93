#pragma once

#include <string>
#include <unordered_map>

/// @file
/// Codes of the entries of one import.

namespace tooldb {

/// Gives every entry of a document a code of its own, so that none replaces another.
class ImportCodes {
 public:
  /// `code`, or, when an earlier entry has it, `code` and " - Clone(n)" with the first free n;
  /// blanks around a code and the case of its letters make no difference.
  std::string Unique(const std::string& code);

 private:
  std::unordered_map<std::string, int> taken_;  // and the last n that was tried for it
};

}  // namespace tooldb
