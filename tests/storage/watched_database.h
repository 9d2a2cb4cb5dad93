#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tests/storage/scratch_folder.h"
#include "tooldb/tooldb.h"

namespace tooldb {

/// A database that keeps what it tells its host, in order: "log: text" or "error code: text".
template <class Database>
class Watched : public Database {
 public:
  explicit Watched(long flags = 0) : Database("watched", flags) {
    this->SetLogCallback(
        [](void* user, Database*, std::string message) {
          static_cast<Watched*>(user)->events.push_back("log: " + message);
          return 0;
        },
        this);
    this->SetErrorCallback(
        [](void* user, auto*, tdbError* error) {
          static_cast<Watched*>(user)->Note(*error);
          return 0;
        },
        this);
  }

  void Note(const tdbError& error) {
    ++errors_;
    events.push_back("error " + std::to_string(error.code) + ": " + error.message);
  }
  /// Notes the error of an operation that failed.
  bool Noted(bool done, const tdbError& error) {
    if (!done) Note(error);
    return done;
  }
  bool HasReported() const { return errors_ > 0; }
  void Forget() {
    events.clear();
    errors_ = 0;
  }
  /// The events, a line each, with "@" for the scratch folder.
  std::string Told(const ScratchFolder& scratch) const {
    std::string text;
    for (const std::string& event : events) text += event + '\n';
    const std::string path = scratch.Path();
    for (auto at = text.find(path); at != std::string::npos; at = text.find(path)) {
      text.replace(at, path.size(), "@");
    }
    return text;
  }

  std::vector<std::string> events;

 private:
  int errors_ = 0;  // counted apart, for want of memory for the text
};

/// Bytes by path.
using Files = std::map<std::string, std::string>;

using WatchedTools = Watched<tdbToolDB>;
using WatchedComponents = Watched<tdbToolComponentsDB>;

/// A tool that describes itself, so that two of one code can be told apart.
inline std::unique_ptr<tdbTool> make_tool(const std::string& code,
                                          const std::string& description = "") {
  auto tool = std::make_unique<tdbTool>(code, code);
  tool->SetDescr(description.c_str());
  return tool;
}

/// Adds a tool, which the database then owns; null when it refuses.
inline tdbTool* add_tool(tdbToolDB& db, const std::string& code,
                         const std::string& description = "") {
  auto tool = make_tool(code, description);
  return db.AddTool(tool.get(), true) ? tool.release() : nullptr;
}

/// A component of one holder of that name.
inline std::unique_ptr<tdbToolComponent> make_component(const std::string& code,
                                                        const std::string& holder = "Holder") {
  auto component = std::make_unique<tdbToolComponent>(0, code, code);
  auto* member = new tdbToolHolder(0);
  member->SetName(holder);
  component->AddItem(member);
  return component;
}

inline tdbToolComponent* add_component(tdbToolComponentsDB& db, const std::string& code,
                                       const std::string& holder = "Holder") {
  auto component = make_component(code, holder);
  return db.AddTool(component.get(), true) ? component.release() : nullptr;
}

inline std::vector<std::string> listed_codes(tdbToolDB& db) {
  std::vector<std::string> codes;
  for (int i = 0; i < db.GetToolCount(1); ++i) codes.push_back(db.GetTool(i, 1)->GetCode());
  return codes;
}

/// The codes of the tool files of a folder.
inline std::set<std::string> stored_codes(const ScratchFolder& scratch, const std::string& folder) {
  std::set<std::string> codes;
  for (const auto& [name, bytes] : scratch.Files(folder)) {
    if (name.ends_with(".ktf"))
      codes.insert(tdbUtil::decoding_code(name.substr(0, name.size() - 4)));
  }
  return codes;
}

}  // namespace tooldb
