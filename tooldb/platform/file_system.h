#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tooldb/error.h"

/// @file
/// The file layer: everything that touches a disk goes through it, so that a test can stand in for
/// the disk. Each function raises `FileError` unless it says otherwise.

namespace tooldb {

/// Error 1 with the text "<path>: <reason>".
class FileError : public tdbError {
 public:
  FileError(const std::string& path, const std::string& why)
      : tdbError(1, path + ": " + why), reason(why) {}

  std::string reason;
};

/// A file that is being written. Closed, without a report, when it is destroyed.
class NewFile {
 public:
  virtual ~NewFile() = default;

  virtual void Write(std::string_view bytes) = 0;
  /// Returns when the bytes are on the disk.
  virtual void Flush() = 0;
  /// Closes the file in any case; raises when the system reports a failure on the way.
  virtual void Close() = 0;
};

/// A regular file that is being read.
class InputFile {
 public:
  virtual ~InputFile() = default;

  /// Bytes that it had when it was opened.
  virtual std::uint64_t Size() const = 0;
  /// Reads up to `size` bytes from `offset` on, and returns how many: fewer only at the end.
  virtual std::size_t Read(std::uint64_t offset, char* bytes, std::size_t size) = 0;
};

/// The calls on files and folders that the library needs. The default instance is the system's.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// The whole of a regular file.
  virtual std::string Read(const std::string& path) = 0;
  /// A regular file to read in parts. Unless it is overridden, the whole of it is in memory.
  virtual std::unique_ptr<InputFile> Open(const std::string& path);
  /// Opens a new file for writing, with no sharing; null when the path exists.
  virtual std::unique_ptr<NewFile> CreateNew(const std::string& path) = 0;
  /// Creates an empty file with a mark that no other file has; false when the path exists.
  virtual bool CreateProbe(const std::string& path) = 0;
  /// True for a file as `CreateProbe` leaves it.
  virtual bool IsProbe(const std::string& path) = 0;
  /// Moves a file, atomically where the file system allows it; replaces the target.
  virtual void Rename(const std::string& from, const std::string& to) = 0;
  virtual void Remove(const std::string& path) = 0;
  /// Does nothing when the folder exists.
  virtual void CreateFolder(const std::string& path) = 0;
  /// Returns when the names in the folder are on the disk.
  virtual void FlushFolder(const std::string& path) = 0;
  /// True when `FlushDisk` is more than the flush of each file.
  virtual bool CanFlushDisk() { return false; }
  /// Returns when all that was written to the disk of a folder, to whatever file, is on it.
  virtual void FlushDisk(const std::string&) {}
  /// Names of the regular files directly in the folder, unsorted.
  virtual std::vector<std::string> List(const std::string& folder) = 0;
  /// False when there is none; raises when it cannot be looked at.
  virtual bool IsFile(const std::string& path) = 0;
  virtual bool IsFolder(const std::string& path) = 0;
  /// True when both paths lead to one existing file, as two spellings do where case is ignored.
  virtual bool IsSameFile(const std::string& a, const std::string& b) = 0;
  /// Seconds since 1970.
  virtual std::int64_t LastWriteTime(const std::string& path) = 0;
  /// The same in nanoseconds, as finely as it is known: unless it is overridden, whole seconds.
  /// Raises as well where the disk does not keep the time of a folder.
  virtual std::int64_t LastWriteNanoseconds(const std::string& path);
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
