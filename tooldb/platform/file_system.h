#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// The file layer: everything that touches a disk goes through it, so that a test can stand in for
/// the disk. Each function raises `tdbError` with the path and the system's reason unless it says
/// otherwise.

namespace tooldb {

/// The calls on files and folders that the library needs. The default instance is the system's.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// A file opened for writing: an opaque number, valid until `Close`.
  using Handle = std::intptr_t;

  virtual std::string Read(const std::string& path) = 0;
  /// Opens a new file for writing, with no sharing; raises when the path exists.
  virtual Handle CreateNew(const std::string& path) = 0;
  virtual void Write(Handle file, std::string_view bytes) = 0;
  /// Returns when the bytes are on the disk.
  virtual void Flush(Handle file) = 0;
  /// Closes the file in any case; raises when the system reports a failure on the way.
  virtual void Close(Handle file) = 0;
  /// Moves a file, atomically where the file system allows it; replaces the target.
  virtual void Rename(const std::string& from, const std::string& to) = 0;
  virtual void Remove(const std::string& path) = 0;
  virtual void Copy(const std::string& from, const std::string& to) = 0;
  virtual void CreateFolder(const std::string& path) = 0;
  /// Returns when the names in the folder are on the disk.
  virtual void FlushFolder(const std::string& path) = 0;
  /// Names of the regular files directly in the folder, unsorted.
  virtual std::vector<std::string> List(const std::string& folder) = 0;
  /// False when there is none or it cannot be looked at; never raises.
  virtual bool IsFile(const std::string& path) = 0;
  virtual bool IsFolder(const std::string& path) = 0;
  /// Seconds since 1970.
  virtual std::int64_t LastWriteTime(const std::string& path) = 0;
};

/// The file system in use: the system's own, or the innermost `ScopedFileSystem`.
FileSystem& file_system();

/// Puts another file system in use for its lifetime; for tests.
class ScopedFileSystem {
 public:
  explicit ScopedFileSystem(FileSystem& replacement);
  ScopedFileSystem(const ScopedFileSystem&) = delete;
  ScopedFileSystem& operator=(const ScopedFileSystem&) = delete;
  ~ScopedFileSystem();

 private:
  FileSystem* previous_;
};

}  // namespace tooldb
