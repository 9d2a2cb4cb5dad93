#include "together.h"

#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "child_process.h"
#include "marked_tool.h"
#include "tests/storage/watched_database.h"

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

/// What a database reported, each a fault; printed.
int reports(const tooldb::WatchedTools& db) {
  int errors = 0;
  for (const std::string& event : db.events) {
    if (!event.starts_with("error")) continue;
    std::fprintf(stderr, "reported: %s\n", event.c_str());
    ++errors;
  }
  return errors;
}

int write(const fs::path& folder, int writer) {
  tooldb::WatchedTools db;
  db.Init(folder.string());
  int faults = 0;
  for (int i = 0; i < kTools; ++i) {
    const std::string mark = "by " + std::to_string(writer);
    auto own = marked_tool(code_of(writer, i), mark);
    if (db.AddTool(own.get(), false)) static_cast<void>(own.release());
    faults += db.UpdateTool(marked_tool(kShared, mark).get()) ? 0 : 1;
  }
  return faults + reports(db);
}

int read(const fs::path& folder) {
  int faults = 0;
  for (int i = 0; i < kTools / 2; ++i) {
    tooldb::WatchedTools db;
    db.Init(folder.string());
    db.Read();
    faults += reports(db);
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
  tooldb::WatchedTools db;
  db.Init(folder.string());
  db.Read();
  int faults = reports(db);
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
  tooldb::WatchedTools first;
  first.Init(folder.string());
  if (!first.UpdateTool(marked_tool(kShared, "by nobody").get())) return 1;
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
