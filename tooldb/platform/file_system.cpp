#include "tooldb/platform/file_system.h"

#include <atomic>

#include "tooldb/platform/system_file_system.h"

namespace tooldb {

namespace {

std::atomic<FileSystem*>& current() {
  static SystemFileSystem system;
  static std::atomic<FileSystem*> instance = &system;
  return instance;
}

}  // namespace

FileSystem& file_system() { return *current(); }

ScopedFileSystem::ScopedFileSystem(FileSystem& replacement)
    : previous_(current().exchange(&replacement)) {}

ScopedFileSystem::~ScopedFileSystem() { current() = previous_; }

}  // namespace tooldb
