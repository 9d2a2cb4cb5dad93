#include "tooldb/platform/file_system.h"

#include <atomic>
#include <utility>

#include "tooldb/platform/system_file_system.h"

namespace tooldb {

namespace {

// A file that was read as a whole.
class FileInMemory final : public InputFile {
 public:
  explicit FileInMemory(std::string bytes) : bytes_(std::move(bytes)) {}

  std::uint64_t Size() const override { return bytes_.size(); }
  std::size_t Read(std::uint64_t offset, char* bytes, std::size_t size) override {
    return offset < bytes_.size() ? bytes_.copy(bytes, size, static_cast<std::size_t>(offset)) : 0;
  }

 private:
  std::string bytes_;
};

std::atomic<FileSystem*>& current() {
  static SystemFileSystem system;
  static std::atomic<FileSystem*> instance = &system;
  return instance;
}

}  // namespace

std::unique_ptr<InputFile> FileSystem::Open(const std::string& path) {
  return std::make_unique<FileInMemory>(Read(path));
}

std::int64_t FileSystem::LastWriteNanoseconds(const std::string& path) {
  return LastWriteTime(path) * 1'000'000'000;
}

FileSystem& file_system() { return *current(); }

ScopedFileSystem::ScopedFileSystem(FileSystem& replacement)
    : previous_(current().exchange(&replacement)) {}

ScopedFileSystem::~ScopedFileSystem() { current() = previous_; }

}  // namespace tooldb
