#pragma once

#include <string>
#include <vector>

class tdbCompositeItem;

namespace tooldb {

/// One document of many tools and components. Each start tag carries the attribute CODE, which the
/// library reads but does not write, so that codes come back.
class ExportDocument {
 public:
  /// @param folder  where the document will lie; model files below it are named relative to it
  explicit ExportDocument(const std::string& folder);

  /// Adds a tool or a component; raises `Failure` when its texts would spoil the document.
  void Add(tdbCompositeItem& item);

  std::string Text() const { return head_ + body_ + tail_; }

 private:
  std::vector<std::string> search_paths_;
  std::string head_;
  std::string body_;
  std::string tail_;
};

}  // namespace tooldb
