#pragma once

#include <string>

#include "tooldb/object.h"

namespace tooldb {

/// A list that finds its objects by code, and is told when one of them takes another.
class CodeWatcher {
 public:
  virtual ~CodeWatcher() = default;

  /// `object` still has its code and is about to take `code`. When this raises it keeps its own.
  virtual void OnCodeChange(tdbObject& object, const std::string& code) = 0;

 protected:
  /// An object has one watcher at a time; a copy of it has none.
  void Watch(tdbObject& object) { object.watcher_ = this; }
  static void Unwatch(tdbObject& object) { object.watcher_ = nullptr; }
  bool IsWatching(const tdbObject& object) const { return object.watcher_ == this; }
};

}  // namespace tooldb
