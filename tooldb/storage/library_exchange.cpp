#include <algorithm>
#include <iterator>

#include "tooldb/platform/file_system.h"
#include "tooldb/platform/guard.h"
#include "tooldb/storage/folder_path.h"
#include "tooldb/storage/library.h"
#include "tooldb/util.h"

namespace tooldb {

namespace {

/// How many files are written before they are flushed and get their names.
constexpr std::size_t kItemsAtOnce = 1000;

template <class List>
auto next_part(const List& list, std::size_t begin) {
  return std::span(list).subspan(begin, std::min(kItemsAtOnce, list.size() - begin));
}

}  // namespace

bool Library::Import(const Library& other) {
  if (!Available()) return false;
  LibraryItems copies;
  for (const LibraryItem* item : other.list_.Snapshot()) {
    copies.push_back(std::unique_ptr<LibraryItem>(static_cast<LibraryItem*>(item->Clone())));
  }
  return AddAll(std::move(copies));
}

bool Library::ImportFile(const char* path, const std::vector<std::string>& codes) {
  if (path == nullptr) throw tdbError(1, "no file given");
  Log(kind_.import_file, path);
  LibraryItems items;
  std::vector<tdbError> errors;
  kind_.read_export_file(path, {files_.GetSearchPath(), owner_.Components()}, items, errors);
  return ImportRead(std::move(items), errors, codes);
}

bool Library::ImportXml(const char* xml, const std::vector<std::string>& codes) {
  if (xml == nullptr) throw tdbError(1, "no text given");
  Log(kind_.import_xml, xml);
  LibraryItems items;
  std::vector<tdbError> errors;
  kind_.read_export_text(xml, {files_.GetSearchPath(), owner_.Components()}, items, errors);
  return ImportRead(std::move(items), errors, codes);
}

bool Library::Export(const std::string& target, const std::string& name,
                     const CodeSelection& selection) {
  Log(kind_.export_to, target);
  if (owner_.IsMemoryOnly()) throw tdbError(1, "a memory-only database has no files to export");
  if (!tdbFileUtil::directory_exists(target)) throw tdbError(1, target + " is not a directory");
  std::string folder = target + '/' + name;
  tdbFileManager exported;
  exported.AddSearchPaths(files_.GetSearchPath());
  tdbError error;
  if (!exported.Create(folder, error) || !exported.Init(folder, error)) throw tdbError(error);
  const auto names = StoredNames();
  if (!names) return false;

  std::vector<std::string> selected;
  std::ranges::copy_if(*names, std::back_inserter(selected),
                       [&](const std::string& stored) { return selection.Has(CodeOf(stored)); });

  FolderBatch batch(exported);
  bool all_written = true;
  for (std::size_t begin = 0; begin < selected.size(); begin += kItemsAtOnce) {
    all_written = ExportSome(next_part(selected, begin), exported) && all_written;
  }
  Finish(batch);
  return all_written;
}

bool Library::ExportSome(std::span<const std::string> names, tdbFileManager& target) {
  LibraryItems items;
  std::vector<tdbError> errors;
  ReadEach(names, [&](const std::string&, auto item, tdbError& error) {
    items.push_back(std::move(item));
    errors.push_back(std::move(error));
  });
  FolderBatch batch(target);
  batch.Prepare(items);
  bool all_written = true;
  for (std::size_t i = 0; i < names.size(); ++i) {
    all_written = ExportOne(names[i], items[i].get(), errors[i], target) && all_written;
  }
  return all_written;
}

bool Library::ExportOne(const std::string& name, LibraryItem* item, tdbError& error,
                        tdbFileManager& target) {
  const bool written = item != nullptr && guarded(error, false, [&] {
                         if (file_system().IsFile(path_in(target.GetFolder(), name))) {
                           throw tdbError(19, item->GetCode());
                         }
                         return target.InsertItem(item, error);
                       });
  if (!written) owner_.Report(error);
  return written;
}

bool Library::AddAll(LibraryItems items) {
  FolderBatch batch(files_);
  bool all_added = true;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i % kItemsAtOnce == 0) Prepare(batch, next_part(items, i));
    tdbError error;
    if (owner_.Add(*items[i], error, IfTaken::kReplace)) {
      items[i].release();  // NOLINT(bugprone-unused-return-value): the list owns it
    } else {
      owner_.Report(error);
      all_added = false;
    }
  }
  Finish(batch);
  return all_added;
}

void Library::Prepare(FolderBatch& batch, std::span<const std::unique_ptr<LibraryItem>> items) {
  if (owner_.IsMemoryOnly()) return;
  for (const auto& item : items) kind_.prepare(*item);
  batch.Prepare(items);
}

bool Library::ImportRead(LibraryItems items, const std::vector<tdbError>& errors,
                         const std::vector<std::string>& codes) {
  const CodeSelection selection(codes);
  std::erase_if(items, [&](const auto& item) { return !selection.Has(item->GetCode()); });
  const bool all_added = AddAll(std::move(items));
  for (tdbError error : errors) owner_.Report(error);
  return all_added && errors.empty();
}

}  // namespace tooldb
