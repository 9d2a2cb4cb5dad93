#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tooldb/platform/file_system.h"

namespace tooldb {

/// The operating system's files.
class SystemFileSystem final : public FileSystem {
 public:
  std::string Read(const std::string& path) override;
  std::unique_ptr<InputFile> Open(const std::string& path) override;
  std::unique_ptr<NewFile> CreateNew(const std::string& path) override;
  bool CreateProbe(const std::string& path) override;
  bool IsProbe(const std::string& path) override;
  void Rename(const std::string& from, const std::string& to) override;
  void Remove(const std::string& path) override;
  void CreateFolder(const std::string& path) override;
  void FlushFolder(const std::string& path) override;
  bool CanFlushDisk() override;
  void FlushDisk(const std::string& folder) override;
  std::vector<std::string> List(const std::string& folder) override;
  bool IsFile(const std::string& path) override;
  bool IsFolder(const std::string& path) override;
  bool IsSameFile(const std::string& a, const std::string& b) override;
  std::int64_t LastWriteTime(const std::string& path) override;
  std::int64_t LastWriteNanoseconds(const std::string& path) override;
};

}  // namespace tooldb
