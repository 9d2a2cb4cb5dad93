#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tooldb/platform/guard.h"
#include "tooldb/storage/library.h"
#include "tooldb/xml/document.h"

namespace tooldb {

/// The lookup source that means the list; any other means the folder.
inline constexpr int kListSource = 1;

/// What the two exported databases have in common: their library, their callbacks, and the way in
/// for each exported function.
template <class Database, class Item>
class DatabaseCore : public LibraryOwner {
 public:
  DatabaseCore(Database& database, const LibraryKind& kind)
      : database_(database), library_(kind, *this) {}
  DatabaseCore(const DatabaseCore&) = delete;
  DatabaseCore& operator=(const DatabaseCore&) = delete;
  virtual ~DatabaseCore() = default;

  Library& GetLibrary() { return library_; }
  const Library& GetLibrary() const { return library_; }

  void CopyCallbacks(const DatabaseCore& other) {
    error_ = other.error_;
    log_ = other.log_;
    library_.AdoptTimeStamp(other.library_);
  }
  void SetErrorCallback(typename Database::ErrorCallback callback, void* user) {
    error_ = {callback, user};
  }
  void SetLogCallback(typename Database::LogCallback callback, void* user) {
    log_ = {callback, user};
  }

  const std::string& LegacyPath() const { return legacy_path_; }
  void SetLegacyPath(const char* path) {
    Guarded([&] { legacy_path_ = path == nullptr ? "" : path; });
  }
  void SetFolderPath(const char* path) {
    Guarded([&] { library_.SetFolderPath(path == nullptr ? "" : path); });
  }

  /// The body of an exported function: its result, or `on_failure`, reported, when it raises.
  template <class Result, class Body>
  Result Guarded(Result on_failure, Body&& body) const {
    try {
      return std::forward<Body>(body)();
    } catch (...) {
      tdbError error;
      describe_current_exception(error);
      Report(error);
    }
    return on_failure;
  }
  template <class Body>
  void Guarded(Body&& body) const {
    Guarded(0, [&] {
      body();
      return 0;
    });
  }

  /// Runs an operation that fills an error, and reports that when the operation fails.
  template <class Operation>
  bool Reported(Operation&& operation) const {
    tdbError error;
    const bool done = operation(error);
    if (!done) Report(error);
    return done;
  }

  bool RemoveAll(bool also_files, int source) {
    return Guarded(false, [&] {
      if (source != kListSource) {
        library_.RemoveFiles();
      } else if (also_files) {
        library_.RemoveListedAndFiles();
      } else {
        library_.RemoveListed();
      }
      return true;
    });
  }

  Item* At(int position, int source) {
    return Guarded(static_cast<Item*>(nullptr), [&] {
      return static_cast<Item*>(source == kListSource ? library_.List().At(position)
                                                      : library_.StoredAt(position).release());
    });
  }

  Item* WithCode(const std::string& code, int source) {
    return Guarded(static_cast<Item*>(nullptr), [&] {
      return static_cast<Item*>(source == kListSource ? library_.List().FindCode(code)
                                                      : library_.StoredWithCode(code).release());
    });
  }

  int Count(int source) {
    return Guarded(0, [&] {
      return source == kListSource ? static_cast<int>(library_.List().Size())
                                   : library_.StoredCount();
    });
  }

  void AppendCopies(std::vector<Item>& out, int source) {
    Guarded([&] {
      const LibraryItems stored = source == kListSource ? LibraryItems() : library_.AllStored();
      std::vector<LibraryItem*> items = library_.List().Snapshot();
      if (source != kListSource) {
        items.clear();
        for (const auto& item : stored) items.push_back(item.get());
      }
      out.reserve(out.size() + items.size());
      for (const LibraryItem* item : items) out.push_back(static_cast<const Item&>(*item));
    });
  }

  bool IsCodeStored(const std::string& code) const {
    tdbError ignored;
    return guarded(ignored, false, [&] { return library_.HasUnencodedFile(code); });
  }

  /// Replaces `out` by a document of all that is listed.
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const {
    Guarded([&] {
      out.clear();
      append_document_header(out, database_.GetVersion());
      for (const LibraryItem* item : library_.List().Snapshot()) item->WriteXml(out, search_paths);
      append_document_footer(out);
    });
  }

  void Report(int code, const std::string& text) const {
    Guarded([&] {
      tdbError error(code, text);
      Report(error);
    });
  }

  // What the library asks of its database.
  bool IsMemoryOnly() const override { return database_.HasFlag(1); }

  void Log(const std::string& message) override {
    if (log_.callback == nullptr) return;
    Shielded([&] { log_.callback(log_.user, &database_, message); });
  }

  void Report(tdbError& error) const override {
    if (error_.callback == nullptr) return;
    Shielded([&] { error_.callback(error_.user, &database_, &error); });
  }

  bool Add(LibraryItem& item, tdbError& error, IfTaken if_taken) override {
    return guarded(error, false, [&] {
      return database_.AddTool(static_cast<Item*>(&item), error, if_taken == IfTaken::kReplace);
    });
  }

  bool Remove(LibraryItem& item) override {
    return Guarded(false, [&] { return database_.RemoveTool(static_cast<Item*>(&item)); });
  }

 protected:
  /// Runs a callback of the host. What it raises is dropped: the operation it watches goes on.
  template <class Call>
  static void Shielded(Call&& call) {
    tdbError ignored;
    guarded(ignored, 0, [&] {
      call();
      return 0;
    });
  }

 private:
  template <class Function>
  struct Callback {
    Function callback = nullptr;
    void* user = nullptr;
  };

  Database& database_;
  Library library_;
  Callback<typename Database::ErrorCallback> error_;
  Callback<typename Database::LogCallback> log_;
  std::string legacy_path_;
};

}  // namespace tooldb
