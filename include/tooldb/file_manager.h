#pragma once

#include <string>
#include <vector>

#include "tooldb/error.h"
#include "tooldb/export.h"

class tdbItem;

/// Keeps items as one file each in a folder: the encoded code of the item, then its extension.
///
/// Every operation answers false on failure and fills the error; its code stays the one that the
/// caller put there unless a file operation had one of its own. A write that fails leaves the
/// earlier file whole. Not meant to be deleted through a base pointer.
class TDB_EXPORT tdbFileManager {
 public:
  /// Makes sure that the folder exists, and keeps its path.
  virtual bool Create(std::string& folder, tdbError& error);
  /// Takes an existing, writable folder; on failure the kept path is empty.
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
  virtual bool DeleteItem(tdbItem* item, tdbError& error);
  /// Reads folder/(name + extension); the name is used as it stands, already encoded.
  virtual bool ReadItem(const std::string& name, std::string extension, std::string& text,
                        tdbError& error) const;
  /// Moves the file of `previous_code` to that of the item's code and rewrites it. A file that
  /// stands under the item's code and is not the item's own is kept, and the call refused.
  virtual bool UpdateItem(std::string previous_code, tdbItem* item, tdbError& error);

  /// Copies the model files of the item and of those below it into `folder`, under their own
  /// names, and points the items to the copies.
  bool CopyShapeFileToFolder(tdbItem* item, std::string& folder, tdbError& error);
  std::vector<std::string>& GetSearchPath() { return search_paths_; }
  const std::vector<std::string>& GetSearchPath() const { return search_paths_; }

 private:
  std::vector<std::string> search_paths_;
  std::string folder_;
};
