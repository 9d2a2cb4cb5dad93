#pragma once

#include <string>
#include <vector>

#include "tooldb/error.h"
#include "tooldb/export.h"

class tdbItem;

namespace tooldb {
class FolderBatch;
class PreparedFiles;
}  // namespace tooldb

/// Keeps items as one file each in a folder: the encoded code of the item, then its extension.
///
/// Every operation answers false on failure and fills the error; its code stays the one that the
/// caller put there unless a file operation had one of its own. A write that fails leaves the
/// earlier file whole: an item goes into a temporary file beside its own, which then takes the
/// name. When only the flush of the folder fails, the answer is false but the change stands. A code
/// whose file name the system cannot have, or one with control characters, is refused before
/// anything is written. Not meant to be deleted through a base pointer.
class TDB_EXPORT tdbFileManager {
 public:
  /// Makes sure that the folder exists, and keeps its path.
  virtual bool Create(std::string& folder, tdbError& error);
  /// Takes an existing folder and removes what killed writers left in it. False, and no path kept,
  /// when there is none; false, but kept for reading, when it is not writable.
  virtual bool Init(std::string& folder, tdbError& error);
  virtual void AddSearchPaths(const std::vector<std::string>& paths);
  /// True when a folder is set and exists.
  virtual bool Available(tdbError& error) const;
  /// The names of the folder's files of that extension, in byte order.
  virtual bool Read(std::vector<std::string>& files, std::string extension, tdbError& error) const;
  /// Does nothing and answers true.
  virtual bool Delete(tdbError& error);
  /// Writes the item's file, replacing one of that name.
  virtual bool InsertItem(tdbItem* item, tdbError& error);
  /// Deletes the item's file; a file that is gone already is no failure.
  virtual bool DeleteItem(tdbItem* item, tdbError& error);
  /// Reads folder/(name + extension); the name is used as it stands, already encoded.
  virtual bool ReadItem(const std::string& name, std::string extension, std::string& text,
                        tdbError& error) const;
  /// Moves the file of `previous_code` to that of the item's code and rewrites it. A file that
  /// stands under the item's code and is not the item's own is kept, and the call refused with 19.
  virtual bool UpdateItem(std::string previous_code, tdbItem* item, tdbError& error);

  /// Copies the model files of the item and of those below it into `folder`, under their own names
  /// or, where another file has that name, with " (2)" and so on, and points the items to the
  /// copies. False when one could not be copied; its item is left as it was.
  bool CopyShapeFileToFolder(tdbItem* item, std::string& folder, tdbError& error);
  std::vector<std::string>& GetSearchPath() { return search_paths_; }
  const std::vector<std::string>& GetSearchPath() const { return search_paths_; }
  /// The kept folder; empty without one.
  const std::string& GetFolder() const { return folder_; }

 private:
  friend class tooldb::FolderBatch;

  /// Changes that wait for one flush of the folder; a copy has none.
  struct Batch {
    Batch() = default;
    Batch(const Batch&) {}
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is taken from the other
    Batch& operator=(const Batch&) { return *this; }

    int open = 0;
    bool flush_due = false;
    tooldb::PreparedFiles* prepared = nullptr;
  };

  /// Flushes the folder, at once or at the end of the open batch.
  void FlushChange();

  std::vector<std::string> search_paths_;
  std::string folder_;
  Batch batch_;
};
