#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

/// @file
/// Files that are whole at any moment: the new text goes into a temporary file of the same folder,
/// which is flushed, closed and then takes the target's name.

namespace tooldb {

/// Writes `text` so that `path` holds the earlier file or the new one, whole. The new name is on
/// the disk once the folder is flushed (`FileSystem::FlushFolder`), which one call does for many
/// files. Raises `FileError` naming `path`; nothing has changed then, and no temporary file is left
/// unless it cannot be removed.
void replace_file(const std::string& path, std::string_view text);

/// New texts of many files, each written beside its file ahead of time. Once all of them are
/// flushed at a stroke (`FileSystem::FlushDisk`), a file needs no more than its name. What is not
/// placed goes with this object.
class PreparedFiles {
 public:
  PreparedFiles();
  PreparedFiles(const PreparedFiles&) = delete;
  PreparedFiles& operator=(const PreparedFiles&) = delete;
  ~PreparedFiles();

  /// Raises `FileError`; the text is then not prepared.
  void Write(const std::string& path, std::string text);
  /// As `replace_file`, if it was this text that was prepared for `path`; else false, and nothing
  /// has changed.
  bool Place(const std::string& path, std::string_view text);

 private:
  struct Prepared;

  std::unordered_map<std::string, std::unique_ptr<Prepared>> by_path_;
};

/// The folder part of a path; "." without one.
std::string folder_of(const std::string& path);

/// True for the name of a temporary file of `replace_file`, of any process.
bool is_temporary_file_name(std::string_view name);

/// Removes what a killed process left in the folder: probes, the temporary files whose process, on
/// this machine, is gone, and any older than ten minutes, which is far longer than one file is
/// being written. What cannot be removed stays; never raises.
void sweep_temporary_files(const std::string& folder) noexcept;

}  // namespace tooldb
