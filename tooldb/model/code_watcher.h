#pragma once

#include <string>

#include "tooldb/object.h"

namespace tooldb {

/// Something that finds an object by its code, and is told when that takes another.
class CodeWatcher {
 public:
  virtual ~CodeWatcher() = default;

  /// `object` still has its code and is about to take `code`. When this raises it keeps its own.
  virtual void OnCodeChange(tdbObject& object, const std::string& code) = 0;

  /// Null for an object that nothing watches.
  static CodeWatcher* Of(const tdbObject& object) { return object.watcher_; }

 protected:
  /// An object has one watcher at a time; a copy of it has none.
  void Watch(tdbObject& object) { object.watcher_ = this; }
  static void Unwatch(tdbObject& object) { object.watcher_ = nullptr; }
};

}  // namespace tooldb
