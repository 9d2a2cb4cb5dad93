#include "tooldb/model/text.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/platform/guard.h"
#include "tooldb/storage/folder_path.h"
#include "tooldb/storage/library.h"
#include "tooldb/util.h"

namespace tooldb {

void clear_modified_marks(LibraryItem& item) {
  bool modified = false;
  item.Visit(tdbUtil::set_item_modified, &modified);
}

std::unique_ptr<LibraryItem> Library::StoredAt(int position) {
  const std::string name = StoredName(position);
  return name.empty() ? nullptr : ReadOrReport(name);
}

std::unique_ptr<LibraryItem> Library::StoredWithCode(const std::string& code) {
  if (owner_.IsMemoryOnly() || !Available()) return nullptr;
  return ReadOrReport(NameForCode(code));
}

std::string Library::CodeOfStored(int position) { return CodeOf(StoredName(position)); }

int Library::StoredCount() {
  const auto* const names = ListedNames();
  return names == nullptr ? 0 : static_cast<int>(names->size());
}

LibraryItems Library::AllStored() {
  LibraryItems items;
  const auto names = StoredNames();
  if (!names) return items;
  ReadEach(*names, [&](const std::string&, auto item, tdbError& error) {
    if (item == nullptr) owner_.Report(error);
    if (item != nullptr) items.push_back(std::move(item));
  });
  return items;
}

bool Library::HasUnencodedFile(const std::string& code) const {
  if (owner_.IsMemoryOnly() || files_.GetFolder().empty()) return false;
  return file_system().IsFile(PathOf(code + std::string(kind_.extension)));
}

LibraryItem* Library::Refresh(const std::string& code) {
  if (owner_.IsMemoryOnly() || list_.FindCode(code) == nullptr || !Available()) return nullptr;
  tdbError error;
  std::unique_ptr<LibraryItem> fresh = ForList(ReadStored(NameForCode(code), error), error);
  return fresh == nullptr ? nullptr : PutInPlace(code, std::move(fresh));
}

std::optional<std::vector<std::string>> Library::StoredNames() {
  std::vector<std::string> names;
  if (owner_.IsMemoryOnly()) return names;
  tdbError error;
  if (files_.Read(names, std::string(kind_.extension), error)) return names;
  owner_.Report(error);
  return std::nullopt;
}

const std::vector<std::string>* Library::ListedNames() {
  tdbError unknown;
  const bool current =
      guarded(unknown, false, [&] { return listing_.IsCurrent(files_.GetFolder()); });
  if (!current) {
    auto names = StoredNames();
    if (!names) return nullptr;
    listing_.Keep(*std::move(names));
  }
  return &listing_.Names();
}

std::string Library::StoredName(int position) {
  const auto* const names = position < 0 ? nullptr : ListedNames();
  const auto index = static_cast<std::size_t>(position);
  return names == nullptr || index >= names->size() ? std::string() : (*names)[index];
}

std::string Library::NameForCode(const std::string& code) const {
  return encoded_code(code) + std::string(kind_.extension);
}

std::string Library::CodeOf(const std::string& name) const {
  return decoded_code(name.substr(0, name.rfind('.')));
}

std::string Library::PathOf(const std::string& name) const {
  return path_in(files_.GetFolder(), name);
}

std::unique_ptr<LibraryItem> Library::ReadStored(const std::string& name, tdbError& error) {
  return guarded(error, std::unique_ptr<LibraryItem>(),
                 [&] { return Finished(*kind_.reading_of(PathOf(name)), error); });
}

std::unique_ptr<LibraryItem> Library::ReadOrReport(const std::string& name) {
  tdbError error;
  std::unique_ptr<LibraryItem> item = ReadStored(name, error);
  if (item == nullptr) owner_.Report(error);
  return item;
}

std::unique_ptr<LibraryItem> Library::Finished(FileReading& reading, tdbError& error) {
  return guarded(error, std::unique_ptr<LibraryItem>(), [&] {
    if (!file_system().IsFile(reading.Path())) throw tdbError(1, reading.Path());
    return reading.Finish(Context());
  });
}

void Library::ReadEach(std::span<const std::string> names, const TakeRead& take) {
  read_in_turn(
      names.size(), Context(), [&](std::size_t i) { return kind_.reading_of(PathOf(names[i])); },
      [&](std::size_t i, FileReading& reading) {
        tdbError error;
        take(names[i], Finished(reading, error), error);
      });
}

ReadContext Library::Context() { return {files_.GetSearchPath(), finder_in(owner_.Components())}; }

std::unique_ptr<LibraryItem> Library::ForList(std::unique_ptr<LibraryItem> item,
                                              tdbError& error) const {
  if (item == nullptr) {
    owner_.Report(error);
    return nullptr;
  }
  item->Update();
  clear_modified_marks(*item);
  return item;
}

}  // namespace tooldb
