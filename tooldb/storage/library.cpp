#include "tooldb/storage/library.h"

#include "tooldb/model/text.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/platform/guard.h"
#include "tooldb/storage/folder_path.h"
#include "tooldb/util.h"

namespace tooldb {

namespace {

constexpr LogText kInitLog = {"Init: "};
constexpr LogText kCreateLog = {"Create: "};
constexpr LogText kCloneLog = {"CloneTool: "};
constexpr LogText kRemoveListedLog = {"RemoveAllTools(only-memory)", true};
constexpr std::size_t kLongestCloneCode = 512;

void require(const LibraryItem* item) {
  if (item == nullptr) throw tdbError(1, "no tool given");
}

void require_code(const LibraryItem& item) {
  if (item.GetCode().empty()) throw tdbError(22, "a tool without a code cannot be stored");
}

/// Clears the marks of an item whose file is written. They also say which placements `Update` has
/// to refresh, so that is done here; the tool's own diameter and offset stay as they were stored.
void mark_as_stored(LibraryItem& item) noexcept {
  tdbError ignored;
  guarded(ignored, false, [&] {
    item.LibraryItem::Update();
    clear_modified_marks(item);
    return true;
  });
}

/// Keeps an item in the list for its lifetime, or for good when that is said. Listed before its
/// file is written, so that nothing can fail between the two.
class Enlistment {
 public:
  Enlistment(ItemList& list, LibraryItem& item)
      : list_(list), item_(item), was_listed_(list.Holds(item)) {
    if (!was_listed_) list_.Append(item_);
  }
  Enlistment(const Enlistment&) = delete;
  Enlistment& operator=(const Enlistment&) = delete;
  ~Enlistment() {
    // NOLINTNEXTLINE(bugprone-unused-return-value): the item is the caller's again
    if (!was_listed_ && !kept_) list_.Take(item_).release();
  }

  void Keep() {
    kept_ = true;
    if (was_listed_) list_.MoveToEnd(item_);
  }

 private:
  ItemList& list_;
  LibraryItem& item_;
  bool was_listed_;
  bool kept_ = false;
};

}  // namespace

bool Library::Init(const std::string& folder) {
  Log(kInitLog, folder);
  folder_path_ = folder;
  if (owner_.IsMemoryOnly()) return true;
  tdbError error;
  if (files_.Init(folder_path_, error)) return true;
  owner_.Report(error);
  return false;
}

bool Library::Create(const std::string& folder) {
  Log(kCreateLog, folder);
  folder_path_ = folder;
  if (owner_.IsMemoryOnly()) return true;
  tdbError error;
  if (files_.Create(folder_path_, error) && files_.Init(folder_path_, error)) return true;
  folder_path_.clear();
  owner_.Report(error);
  return false;
}

bool Library::Available() const {
  if (owner_.IsMemoryOnly()) return true;
  tdbError error;
  if (files_.Available(error)) return true;
  owner_.Report(error);
  return false;
}

bool Library::Read() {
  Log(kind_.read, folder_path_);
  if (!Available()) return false;
  const auto names = StoredNames();
  if (!names) return false;
  ReadEach(*names, [this](const std::string&, auto read, tdbError& error) {
    if (auto item = ForList(std::move(read), error)) AppendRead(std::move(item));
  });
  KeepTimeStamp();
  return true;
}

bool Library::Reload(const std::vector<std::string>& codes) {
  Log(kind_.reload, folder_path_);
  if (owner_.IsMemoryOnly()) return true;
  if (!Available()) return false;
  for (const std::string& code : codes) {
    tdbError error;
    auto item = ForList(ReadStored(NameForCode(code), error), error);
    if (item != nullptr) PutInPlace(code, std::move(item));
  }
  return !codes.empty() || ReloadAll();
}

bool Library::ReloadAll() {
  const auto names = StoredNames();
  if (!names) return false;
  ReadEach(*names, [this](const std::string& name, auto read, tdbError& error) {
    auto item = ForList(std::move(read), error);
    if (item != nullptr) PutInPlace(CodeOf(name), std::move(item));
  });
  return true;
}

void Library::AdoptFolder(const Library& other) {
  folder_path_ = other.folder_path_;
  files_ = other.files_;
}

bool Library::Add(LibraryItem* item, tdbError& error, IfTaken if_taken) {
  require(item);
  Log(kind_.add, item->GetCode());
  require_code(*item);
  LibraryItem* const replaced =
      if_taken == IfTaken::kReplace ? list_.FindComparable(item->GetCode()) : nullptr;
  if (if_taken == IfTaken::kRefuse && HasUnencodedFile(item->GetCode())) {
    throw tdbError(19, item->GetCode());
  }
  FolderBatch batch(files_);
  Enlistment enlistment(list_, *item);
  if (!Store(*item, error)) return false;
  enlistment.Keep();
  std::unique_ptr<LibraryItem> old;
  if (replaced != nullptr && replaced != item) old = list_.Take(*replaced);
  Finish(batch);
  return true;
}

bool Library::Remove(LibraryItem* item, tdbError& error) {
  require(item);
  Log(kind_.remove, item->GetCode());
  FolderBatch batch(files_);
  if (!owner_.IsMemoryOnly() && !files_.DeleteItem(item, error)) return false;
  owner_.BeforeRemoval(*item);
  // NOLINTNEXTLINE(bugprone-unused-return-value): handed back to the caller
  list_.Take(*item).release();
  Finish(batch);
  return true;
}

bool Library::Update(LibraryItem* item, tdbError& error) {
  require(item);
  Log(kind_.update, item->GetCode());
  if (!owner_.IsMemoryOnly()) require_code(*item);
  FolderBatch batch(files_);
  if (!Store(*item, error)) return false;
  Finish(batch);
  return true;
}

bool Library::Rename(const std::string& previous_code, LibraryItem* item, tdbError& error) {
  require(item);
  if (owner_.IsMemoryOnly()) return true;
  require_code(*item);
  FolderBatch batch(files_);
  if (!files_.UpdateItem(previous_code, item, error)) return false;
  mark_as_stored(*item);
  Finish(batch);
  return true;
}

bool Library::AddClone(const LibraryItem* item, tdbError& error) {
  require(item);
  const std::string code = item->GetCode();
  Log(kCloneLog, code);
  std::string clone_code;
  for (int n = 1;; ++n) {
    clone_code = code + " - Clone(" + std::to_string(n) + ")";
    if (clone_code.size() > kLongestCloneCode) {
      throw tdbError(1, code + ": the code of a copy would have more than 512 characters");
    }
    if (list_.FindComparable(comparable_code(clone_code)) == nullptr) break;
  }
  std::unique_ptr<LibraryItem> clone(static_cast<LibraryItem*>(item->Clone()));
  clone->SetCode(clone_code);
  if (!owner_.Add(*clone, error, IfTaken::kRefuse)) return false;
  clone.release();  // NOLINT(bugprone-unused-return-value): the list owns it
  return true;
}

void Library::Sort(ItemList::Sorter sort, bool ascending) {
  list_.Sort(sort);
  if (!ascending) list_.Reverse();
}

void Library::RemoveFiles() {
  if (owner_.IsMemoryOnly() || !Available()) return;
  tdbFileUtil::remove_all_file_into_directory(files_.GetFolder());
}

void Library::RemoveListed() {
  Log(kRemoveListedLog, {});
  while (LibraryItem* first = list_.At(0)) {
    owner_.BeforeRemoval(*first);
    list_.Take(*first);
  }
}

void Library::RemoveListedAndFiles() {
  Log(kind_.remove_all_with_files, {});
  FolderBatch batch(files_);
  while (LibraryItem* first = list_.At(0)) {
    if (owner_.Remove(*first)) {
      // NOLINTNEXTLINE(bugprone-unused-return-value): deleted below
      list_.Take(*first).release();
      delete first;
    } else if (list_.Holds(*first)) {
      owner_.BeforeRemoval(*first);
      list_.Take(*first);
    }
  }
  Finish(batch);
}

void Library::Log(const LogText& text, const std::string& subject) {
  if (text.text.empty()) return;
  std::string message(text.text);
  if (!text.stands_alone) message += subject;
  owner_.Log(message);
}

void Library::KeepTimeStamp() {
  if (owner_.IsMemoryOnly()) return;
  tdbError error;
  const bool kept = guarded(error, false, [&] {
    folder_time_ = file_system().LastWriteTime(files_.GetFolder());
    return true;
  });
  if (!kept) owner_.Report(error);
}

bool Library::Store(LibraryItem& item, tdbError& error) {
  kind_.prepare(item);
  if (owner_.IsMemoryOnly()) return true;
  if (!files_.InsertItem(&item, error)) return false;
  mark_as_stored(item);
  return true;
}

LibraryItem* Library::AppendRead(std::unique_ptr<LibraryItem> fresh) {
  list_.Append(*fresh);
  LibraryItem* const listed = fresh.release();
  Log(kind_.read_one, listed->GetCode());
  return listed;
}

LibraryItem* Library::PutInPlace(const std::string& code, std::unique_ptr<LibraryItem> fresh) {
  LibraryItem* const old = list_.FindCode(code);
  if (old == nullptr) return AppendRead(std::move(fresh));
  LibraryItem* const listed = fresh.get();
  list_.Replace(*old, std::move(fresh));
  return listed;
}

void Library::Finish(FolderBatch& batch) const {
  tdbError error;
  const bool flushed = guarded(error, false, [&] {
    batch.Finish();
    return true;
  });
  if (!flushed) owner_.Report(error);
}

}  // namespace tooldb
