#pragma once

#include <map>
#include <optional>
#include <string>

#include "tooldb/error.h"

class tdbItem;

namespace tooldb {

/// Copies of the model files of items in one folder. Each file is copied once; no other file that
/// stands in the folder is changed.
class ModelFileCopies {
 public:
  explicit ModelFileCopies(const std::string& folder) : folder_(folder) {}

  /// Copies the item's model file, if it has one, and points the item to the copy. On failure the
  /// item stays as it is.
  void CopyFor(tdbItem& item);
  const std::optional<tdbError>& FirstFailure() const { return first_failure_; }

 private:
  std::string CopyOf(const std::string& source);

  std::string folder_;
  std::map<std::string, std::string> copies_;
  std::optional<tdbError> first_failure_;
};

}  // namespace tooldb
