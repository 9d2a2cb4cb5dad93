#include "together.h"

#include <cstdio>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "child_process.h"
#include "tooldb/tooldb.h"

namespace torture {
namespace {

namespace fs = std::filesystem;

constexpr int kWriters = 4;
constexpr int kReaders = 2;
constexpr int kTools = 60;
constexpr const char* kShared = "SHARED";

std::string code_of(int writer, int tool) {
  return "W" + std::to_string(writer) + "-" + std::to_string(tool);
}

/// A tool of some kilobytes that says, all over, who wrote it.
std::unique_ptr<tdbTool> make_tool(const std::string& code, const std::string& mark) {
  auto tool = std::make_unique<tdbTool>(code, mark);
  for (int i = 0; i < 100; ++i) tool->AddParam(("P" + std::to_string(i)).c_str(), mark.c_str());
  return tool;
}

/// The mark of a tool; empty when it is not the same all over.
std::string mark_of(const tdbTool& tool) {
  const std::string mark = tool.GetName();
  for (int i = 0; i < 100; ++i) {
    if (tool.GetParamCount() != 100 || tool.GetParamValue(i) != mark) return {};
  }
  return mark;
}

/// A database whose reports are printed and counted.
class Database : public tdbToolDB {
 public:
  explicit Database(const fs::path& folder) : tdbToolDB("together", 0) {
    SetErrorCallback(
        [](void* user, const tdbToolDB*, tdbError* error) {
          std::fprintf(stderr, "reported: %s\n", error->message.c_str());
          return ++static_cast<Database*>(user)->reports_;
        },
        this);
    Init(folder.string());
  }
  int Reports() const { return reports_; }

 private:
  int reports_ = 0;
};

int write(const fs::path& folder, int writer) {
  Database db(folder);
  int faults = 0;
  for (int i = 0; i < kTools; ++i) {
    const std::string mark = "by " + std::to_string(writer);
    auto own = make_tool(code_of(writer, i), mark);
    if (db.AddTool(own.get(), false)) static_cast<void>(own.release());
    faults += db.UpdateTool(make_tool(kShared, mark).get()) ? 0 : 1;
  }
  return faults + db.Reports();
}

int read(const fs::path& folder) {
  int faults = 0;
  for (int i = 0; i < kTools / 2; ++i) {
    Database db(folder);
    db.Read();
    faults += db.Reports();
    for (int at = 0; at < db.GetToolCount(1); ++at) {
      if (!mark_of(*db.GetTool(at, 1)).empty()) continue;
      std::fprintf(stderr, "%s is torn\n", db.GetTool(at, 1)->GetCode().c_str());
      ++faults;
    }
  }
  return faults;
}

/// Every tool of every writer is there, and the shared one is that of one of them.
int look_at(const fs::path& folder) {
  Database db(folder);
  db.Read();
  int faults = db.Reports();
  for (int writer = 0; writer < kWriters; ++writer) {
    for (int i = 0; i < kTools; ++i) {
      const tdbTool* const tool = db.GetToolByCode(code_of(writer, i), 1);
      if (tool != nullptr && mark_of(*tool) == "by " + std::to_string(writer)) continue;
      std::fprintf(stderr, "%s is lost\n", code_of(writer, i).c_str());
      ++faults;
    }
  }
  const tdbTool* const shared = db.GetToolByCode(kShared, 1);
  if (shared == nullptr || !mark_of(*shared).starts_with("by ")) ++faults;
  if (db.GetToolCount(1) != kWriters * kTools + 1) ++faults;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".ktf") continue;
    std::fprintf(stderr, "%s is left over\n", entry.path().c_str());
    ++faults;
  }
  return faults;
}

}  // namespace

int work_together(const fs::path& folder) {
  fs::remove_all(folder);
  fs::create_directories(folder);
  if (!Database(folder).UpdateTool(make_tool(kShared, "by nobody").get())) return 1;
  std::vector<std::function<int()>> jobs;
  for (int i = 0; i < kWriters; ++i) jobs.emplace_back([&folder, i] { return write(folder, i); });
  for (int i = 0; i < kReaders; ++i) jobs.emplace_back([&folder] { return read(folder); });
  std::vector<pid_t> children;
  for (const auto& job : jobs) {
    children.push_back(start([&] {
      if (job() != 0) throw std::runtime_error("something went wrong");
    }));
  }
  int faults = 0;
  for (const pid_t child : children) faults += ended(child) == 0 ? 0 : 1;
  return faults + look_at(folder);
}

}  // namespace torture
