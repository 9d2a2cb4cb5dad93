#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "tooldb/platform/file_system.h"

namespace tooldb {

/// A call that is about to be made, the first being number 1.
struct FileCall {
  enum class Kind { kLook, kRead, kCreate, kWrite, kFlush, kClose, kRename, kRemove, kMakeFolder };

  Kind kind;
  int number;
  const std::string& path;
};

/// The disk below, except for the calls that a test lets fail. A write that fails has written half
/// of its bytes; a flush that does not fail does nothing.
class FaultyFileSystem final : public FileSystem {
 public:
  using Fails = std::function<bool(const FileCall&)>;
  using Kind = FileCall::Kind;

  void Let(Fails fails) {
    fails_ = std::move(fails);
    calls_ = 0;
  }
  int Calls() const { return calls_; }

  std::string Read(const std::string& path) override { return Disk(Kind::kRead, path).Read(path); }
  std::unique_ptr<NewFile> CreateNew(const std::string& path) override {
    Check(Kind::kCreate, path);
    auto file = std::make_unique<File>(*this, path);
    return file->Open(real_) ? std::move(file) : nullptr;
  }
  bool CreateProbe(const std::string& path) override {
    return Disk(Kind::kCreate, path).CreateProbe(path);
  }
  bool IsProbe(const std::string& path) override { return Disk(Kind::kLook, path).IsProbe(path); }
  void Rename(const std::string& from, const std::string& to) override {
    Disk(Kind::kRename, from).Rename(from, to);
  }
  void Remove(const std::string& path) override { Disk(Kind::kRemove, path).Remove(path); }
  void CreateFolder(const std::string& path) override {
    Disk(Kind::kMakeFolder, path).CreateFolder(path);
  }
  void FlushFolder(const std::string& path) override { Check(Kind::kFlush, path); }
  bool CanFlushDisk() override { return true; }
  void FlushDisk(const std::string& folder) override { Check(Kind::kFlush, folder); }
  std::vector<std::string> List(const std::string& folder) override {
    return Disk(Kind::kLook, folder).List(folder);
  }
  bool IsFile(const std::string& path) override { return Disk(Kind::kLook, path).IsFile(path); }
  bool IsFolder(const std::string& path) override { return Disk(Kind::kLook, path).IsFolder(path); }
  bool IsSameFile(const std::string& a, const std::string& b) override {
    return Disk(Kind::kLook, a).IsSameFile(a, b);
  }
  std::int64_t LastWriteTime(const std::string& path) override {
    return Disk(Kind::kLook, path).LastWriteTime(path);
  }

 private:
  class File final : public NewFile {
   public:
    File(FaultyFileSystem& owner, const std::string& path) : owner_(owner), path_(path) {}

    bool Open(FileSystem& disk) {
      real_ = disk.CreateNew(path_);
      return real_ != nullptr;
    }

    void Write(std::string_view bytes) override {
      if (owner_.ShouldFail(Kind::kWrite, path_)) {
        real_->Write(bytes.substr(0, bytes.size() / 2));
        Fail(path_);
      }
      real_->Write(bytes);
    }
    void Flush() override { owner_.Check(Kind::kFlush, path_); }
    void Close() override {
      real_->Close();
      owner_.Check(Kind::kClose, path_);
    }

   private:
    FaultyFileSystem& owner_;
    std::unique_ptr<NewFile> real_;
    std::string path_;
  };

  [[noreturn]] static void Fail(const std::string& path) { throw FileError(path, "made to fail"); }
  bool ShouldFail(Kind kind, const std::string& path) {
    const std::scoped_lock lock(mutex_);  // files are read on many threads
    ++calls_;
    return fails_ && fails_(FileCall{kind, calls_, path});
  }
  void Check(Kind kind, const std::string& path) {
    if (ShouldFail(kind, path)) Fail(path);
  }
  /// The disk below, for a call that does not fail.
  FileSystem& Disk(Kind kind, const std::string& path) {
    Check(kind, path);
    return real_;
  }

  FileSystem& real_ = file_system();
  Fails fails_;
  std::mutex mutex_;
  int calls_ = 0;
};

}  // namespace tooldb
