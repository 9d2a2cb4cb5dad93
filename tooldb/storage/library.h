#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tooldb/file_manager.h"
#include "tooldb/storage/code_selection.h"
#include "tooldb/storage/folder_batch.h"
#include "tooldb/storage/folder_listing.h"
#include "tooldb/storage/item_list.h"
#include "tooldb/storage/library_kind.h"

namespace tooldb {

/// What an operation does with a code that is in use.
enum class IfTaken { kRefuse, kReplace };

/// The database that a library belongs to, as the library calls it. None of these raises.
class LibraryOwner {
 public:
  virtual bool IsMemoryOnly() const = 0;
  virtual void Log(const std::string& message) = 0;
  virtual void Report(tdbError& error) const = 0;
  /// The database's own operations, which a host may have overridden.
  virtual bool Add(LibraryItem& item, tdbError& error, IfTaken if_taken) = 0;
  virtual bool Remove(LibraryItem& item) = 0;
  /// Called while the item is still listed.
  virtual void BeforeRemoval(LibraryItem& item) = 0;
  virtual tdbToolComponentsDB* Components() = 0;

 protected:
  ~LibraryOwner() = default;
};

/// Clears the modified marks of an item and of all below it.
void clear_modified_marks(LibraryItem& item);

/// The list of a database and its folder, kept in step: what is common to tools and components.
///
/// Functions that take a `tdbError` fill it or raise when they fail; the others report to the owner
/// and answer false or null, and raise only what they did not expect. The owner's host may call
/// back into the database at every log text and report, so nothing is held over one.
class Library {
 public:
  Library(const LibraryKind& kind, LibraryOwner& owner) : kind_(kind), owner_(owner) {}

  /// @name Folder
  /// @{
  bool Init(const std::string& folder);
  bool Create(const std::string& folder);
  bool Available() const;
  bool Read();
  bool Reload(const std::vector<std::string>& codes);
  /// Takes the folder of another library, not its list.
  void AdoptFolder(const Library& other);
  void AdoptTimeStamp(const Library& other) { folder_time_ = other.folder_time_; }
  tdbFileManager& Files() { return files_; }
  const std::string& FolderPath() const { return folder_path_; }
  void SetFolderPath(const std::string& path) { folder_path_ = path; }
  /// @}

  /// @name Change
  /// @{
  /// Takes the item over when the answer is true.
  bool Add(LibraryItem* item, tdbError& error, IfTaken if_taken);
  bool Remove(LibraryItem* item, tdbError& error);
  bool Update(LibraryItem* item, tdbError& error);
  bool Rename(const std::string& previous_code, LibraryItem* item, tdbError& error);
  /// Adds a copy under the first " - Clone(n)" that no listed item has.
  bool AddClone(const LibraryItem* item, tdbError& error);
  void Sort(ItemList::Sorter sort, bool ascending);
  void RemoveFiles();
  void RemoveListed();
  void RemoveListedAndFiles();
  /// @}

  /// @name Exchange
  /// @{
  /// Adds copies of what another library lists.
  bool Import(const Library& other);
  bool ImportFile(const char* path, const std::vector<std::string>& codes);
  bool ImportXml(const char* xml, const std::vector<std::string>& codes);
  bool Export(const std::string& target, const std::string& name, const CodeSelection& selection);
  /// @}

  /// @name Lookup in the list, borrowed, and in the folder, read afresh
  /// @{
  ItemList& List() { return list_; }
  const ItemList& List() const { return list_; }
  std::unique_ptr<LibraryItem> StoredAt(int position);
  std::unique_ptr<LibraryItem> StoredWithCode(const std::string& code);
  std::string CodeOfStored(int position);
  int StoredCount();
  LibraryItems AllStored();
  /// True when a file of the code exists, which is taken as it stands, not encoded. Raises when the
  /// disk does not tell.
  bool HasUnencodedFile(const std::string& code) const;
  /// Replaces a listed item by what its file holds; null when that fails.
  LibraryItem* Refresh(const std::string& code);
  /// @}

 private:
  void Log(const LogText& text, const std::string& subject);
  void KeepTimeStamp();

  /// Names of the stored files; nothing, and reported, when the folder cannot be listed.
  std::optional<std::vector<std::string>> StoredNames();
  /// The same, listed again only when the folder may have changed: for lookups one by one. Null
  /// when the folder cannot be listed; borrowed until the next call.
  const std::vector<std::string>* ListedNames();
  /// Empty when out of range.
  std::string StoredName(int position);
  std::string NameForCode(const std::string& code) const;
  std::string CodeOf(const std::string& name) const;
  std::string PathOf(const std::string& name) const;
  /// Reads a file of the folder; null, and the error filled, on failure.
  std::unique_ptr<LibraryItem> ReadStored(const std::string& name, tdbError& error);
  /// The same; reported on failure.
  std::unique_ptr<LibraryItem> ReadOrReport(const std::string& name);
  /// The end of a reading; null, and the error filled, on failure.
  std::unique_ptr<LibraryItem> Finished(FileReading& reading, tdbError& error);
  /// Takes over what has been read of a file; null, and the error filled, on failure.
  using TakeRead = std::function<void(const std::string& name, std::unique_ptr<LibraryItem> item,
                                      tdbError& error)>;
  /// Reads files of the folder, some at a time on all cores, and has each taken in its turn.
  void ReadEach(std::span<const std::string> names, const TakeRead& take);
  ReadContext Context();
  /// What was read, ready for the list; null, and reported, on failure.
  std::unique_ptr<LibraryItem> ForList(std::unique_ptr<LibraryItem> item, tdbError& error) const;
  LibraryItem* AppendRead(std::unique_ptr<LibraryItem> fresh);
  bool ReloadAll();
  /// Lists a freshly read item, in the place of the one that is listed under `code` if there is.
  LibraryItem* PutInPlace(const std::string& code, std::unique_ptr<LibraryItem> fresh);

  /// Writes the item's file.
  bool Store(LibraryItem& item, tdbError& error);
  bool AddAll(LibraryItems items);
  bool ImportRead(LibraryItems items, const std::vector<tdbError>& errors,
                  const std::vector<std::string>& codes);
  /// Writes the texts of items ahead of their addition.
  void Prepare(FolderBatch& batch, std::span<const std::unique_ptr<LibraryItem>> items);
  bool ExportSome(std::span<const std::string> names, tdbFileManager& target);
  /// @param item  null when `error` says why it could not be read
  bool ExportOne(const std::string& name, LibraryItem* item, tdbError& error,
                 tdbFileManager& target);
  /// Flushes the folder after the changes of a batch, and reports when that fails: the changes
  /// stand, but a power cut may undo them.
  void Finish(FolderBatch& batch) const;

  const LibraryKind& kind_;
  LibraryOwner& owner_;
  ItemList list_;
  std::string folder_path_;
  tdbFileManager files_;
  FolderListing listing_;
  std::int64_t folder_time_ = -1;
};

}  // namespace tooldb
