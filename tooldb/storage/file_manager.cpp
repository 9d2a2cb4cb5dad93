#include "tooldb/file_manager.h"

#include "tooldb/item.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/platform/guard.h"
#include "tooldb/platform/safe_write.h"
#include "tooldb/storage/folder_path.h"
#include "tooldb/storage/item_file.h"
#include "tooldb/storage/model_file_copies.h"
#include "tooldb/util.h"

using tooldb::file_system;
using tooldb::FileError;
using tooldb::guarded;
using tooldb::item_file_name;
using tooldb::item_file_path;
using tooldb::item_text;
using tooldb::path_in;

namespace {

/// Answers false with `text` as the error's text; its code is the caller's.
bool refused(tdbError& error, const std::string& text) {
  error.message = text;
  return false;
}

/// Moves a file for its lifetime, unless the move is kept.
class Move {
 public:
  Move(const std::string& from, const std::string& to) : from_(from), to_(to) {
    file_system().Rename(from, to);
  }
  Move(const Move&) = delete;
  Move& operator=(const Move&) = delete;
  ~Move() {
    if (kept_) return;
    try {
      file_system().Rename(to_, from_);
    } catch (...) {  // NOLINT(bugprone-empty-catch): the file is whole under its new name
    }
  }
  void Keep() { kept_ = true; }

 private:
  const std::string& from_;
  const std::string& to_;
  bool kept_ = false;
};

/// Renames first and rewrites then, so that a process killed between leaves one file, not two.
void move_and_rewrite(const std::string& from, const std::string& to, std::string_view text) {
  Move move(from, to);
  tooldb::replace_file(to, text);
  move.Keep();
}

}  // namespace

bool tdbFileManager::Create(std::string& folder, tdbError& error) {
  return guarded(error, false, [&] {
    folder_ = folder;
    if (folder.empty()) return refused(error, folder);
    if (!tdbFileUtil::directory_exists(folder)) {
      file_system().CreateFolder(folder);
      file_system().FlushFolder(tooldb::folder_of(folder));
    }
    return true;
  });
}

bool tdbFileManager::Init(std::string& folder, tdbError& error) {
  return guarded(error, false, [&] {
    folder_ = folder;
    if (!tdbFileUtil::directory_exists(folder)) {
      folder_.clear();
      return refused(error, folder);
    }
    if (!tdbFileUtil::is_directory_writable(folder, error)) return false;
    tooldb::sweep_temporary_files(folder);
    return true;
  });
}

void tdbFileManager::AddSearchPaths(const std::vector<std::string>& paths) {
  search_paths_.insert(search_paths_.end(), paths.begin(), paths.end());
}

bool tdbFileManager::Available(tdbError& error) const {
  return guarded(error, false, [&] {
    const bool available = !folder_.empty() && tdbFileUtil::directory_exists(folder_);
    return available || refused(error, folder_);
  });
}

bool tdbFileManager::Read(std::vector<std::string>& files, std::string extension,
                          tdbError& error) const {
  if (!Available(error)) return false;
  return guarded(error, false, [&] {
    tdbFileUtil::get_files(folder_, files, extension);
    return true;
  });
}

bool tdbFileManager::Delete(tdbError&) { return true; }

bool tdbFileManager::InsertItem(tdbItem* item, tdbError& error) {
  if (!Available(error) || item == nullptr) return false;
  return guarded(error, false, [&] {
    const std::string path = item_file_path(folder_, *item);
    const std::string text = item_text(*item, search_paths_);
    const bool placed = batch_.prepared != nullptr && batch_.prepared->Place(path, text);
    if (!placed) tooldb::replace_file(path, text);
    FlushChange();
    return true;
  });
}

bool tdbFileManager::DeleteItem(tdbItem* item, tdbError& error) {
  if (!Available(error) || item == nullptr) return false;
  return guarded(error, false, [&] {
    const std::string path = path_in(folder_, item_file_name(item->GetCode(), *item));
    if (!file_system().IsFile(path)) return true;
    file_system().Remove(path);
    FlushChange();
    return true;
  });
}

bool tdbFileManager::ReadItem(const std::string& name, std::string extension, std::string& text,
                              tdbError& error) const {
  if (!Available(error)) return false;
  return guarded(error, false, [&] {
    const std::string path = path_in(folder_, name + extension);
    if (!file_system().IsFile(path)) return refused(error, path);
    text = file_system().Read(path);
    return true;
  });
}

bool tdbFileManager::UpdateItem(std::string previous_code, tdbItem* item, tdbError& error) {
  if (!Available(error) || item == nullptr) return false;
  return guarded(error, false, [&] {
    const std::string from = path_in(folder_, item_file_name(previous_code, *item));
    const std::string to = item_file_path(folder_, *item);
    const std::string text = item_text(*item, search_paths_);
    if (from == to) {
      tooldb::replace_file(to, text);
    } else {
      const bool taken = file_system().IsFile(to) && !file_system().IsSameFile(from, to);
      if (taken) throw tdbError(19, item->GetCode());
      move_and_rewrite(from, to, text);
    }
    FlushChange();
    return true;
  });
}

bool tdbFileManager::CopyShapeFileToFolder(tdbItem* item, std::string& folder, tdbError& error) {
  if (item == nullptr) return false;
  return guarded(error, false, [&] {
    tooldb::ModelFileCopies copies(folder);
    item->Visit(
        [](void* context, tdbItem* visited) {
          static_cast<tooldb::ModelFileCopies*>(context)->CopyFor(*visited);
        },
        &copies);
    if (copies.FirstFailure()) error = *copies.FirstFailure();
    return !copies.FirstFailure();
  });
}

void tdbFileManager::FlushChange() {
  if (batch_.open == 0) {
    file_system().FlushFolder(folder_);
  } else {
    batch_.flush_due = true;
  }
}
