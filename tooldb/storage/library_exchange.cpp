#include "tooldb/platform/file_system.h"
#include "tooldb/platform/guard.h"
#include "tooldb/storage/folder_path.h"
#include "tooldb/storage/library.h"
#include "tooldb/util.h"

namespace tooldb {

bool Library::Import(const Library& other) {
  if (!Available()) return false;
  LibraryItems copies;
  for (const LibraryItem* item : other.list_.Snapshot()) {
    copies.emplace_back(static_cast<LibraryItem*>(item->Clone()));
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

  FolderBatch batch(exported);
  bool all_written = true;
  for (const std::string& stored : *names) {
    if (selection.Has(CodeOf(stored))) all_written = ExportOne(stored, exported) && all_written;
  }
  Finish(batch);
  return all_written;
}

bool Library::ExportOne(const std::string& name, tdbFileManager& target) {
  const std::unique_ptr<LibraryItem> item = ReadStored(name);
  if (item == nullptr) return false;
  tdbError error;
  const bool written = guarded(error, false, [&] {
    if (file_system().IsFile(path_in(target.GetFolder(), name))) {
      throw tdbError(19, item->GetCode());
    }
    return target.InsertItem(item.get(), error);
  });
  if (!written) owner_.Report(error);
  return written;
}

bool Library::AddAll(LibraryItems items) {
  FolderBatch batch(files_);
  bool all_added = true;
  for (auto& item : items) {
    tdbError error;
    if (owner_.Add(*item, error, IfTaken::kReplace)) {
      item.release();  // NOLINT(bugprone-unused-return-value): the list owns it
    } else {
      owner_.Report(error);
      all_added = false;
    }
  }
  Finish(batch);
  return all_added;
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
