#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/storage/watched_database.h"

/// @file
/// The operations on a stored library that the tests of faults disturb, and what may be left then.

namespace tooldb {

/// A database of the tools T1, T2 and T3 in the folder lib, all read; beside it a folder out and a
/// document of T2, changed, and T9.
class World {
 public:
  World() {
    scratch.MakeFolder("out");
    scratch.MakeFolder("lib");
    for (const auto& [name, bytes] : Originals()) scratch.MakeFile(name, bytes);
    db.Init(lib);
    db.Read();
    db.Forget();
  }

  tdbTool& Take(const std::string& code) { return *(listed = db.GetToolByCode(code, 1)); }
  void New(const std::string& code) { made = make_tool(code, "put in place of what was there"); }
  void TakePath(const std::string& name) { path = scratch.Path(name); }
  void FillOther(auto... codes) { (add_tool(other, codes, "imported"), ...); }

  /// What the library answers of its success; what it took over is no longer ours.
  bool Added(bool done) { return done && made.release() != nullptr; }
  bool Removed(bool done) {
    if (done) delete listed;
    return done;
  }

  bool FilledError(bool done) {
    failed_with_error = !done;
    return done;
  }

  bool HasReported() const {
    return db.HasReported() || components.HasReported() || failed_with_error;
  }

  /// Gives tools their earlier codes again when the new ones were not stored, as a host does.
  void TakeBackRename() {
    if (!scratch.Files("lib").contains("R1.ktf") && db.GetToolByCode("R1", 1) != nullptr) {
      Take("R1").SetCode("T1");
    }
  }

  ScratchFolder scratch;
  std::string lib = scratch.Path("lib");
  WatchedTools db;
  WatchedComponents components;

  // What a call is made with.
  tdbTool* listed = nullptr;
  tdbToolCutter* cutter = nullptr;
  std::unique_ptr<tdbTool> made;
  tdbToolDB other{"other", 1};
  std::string path;
  std::string text;
  tdbError error;
  bool failed_with_error = false;

 private:
  static const Files& Originals() {
    static const Files files = [] {
      const ScratchFolder folder;
      tdbToolDB tools("", 0);
      tools.Create(folder.Path("lib"));
      for (const char* code : {"T1", "T2", "T3"}) add_tool(tools, code, "the first text");
      tdbToolDB exported("", 1);
      add_tool(exported, "T2", "the imported text, which is longer");
      add_tool(exported, "T9", "new");
      std::string document;
      exported.WriteXml(document, {});
      folder.MakeFile("export.xml", document);
      return folder.Files();
    }();
    return files;
  }
};

/// What an operation needs of the folder; to remove is also what the probe of `Init` needs.
enum class Need { kRead, kWrite, kRemove };

/// A call of the library, and what its host does before. The call itself allocates nothing but what
/// the library does.
struct Operation {
  std::string_view name;
  Need need;
  void (*prepare)(World& world);
  bool (*call)(World& world);

  bool Run(World& world) const {
    prepare(world);
    return call(world);
  }
};

inline void nothing(World& /*world*/) {}

inline bool owned(tdbTool* tool) { return std::unique_ptr<tdbTool>(tool) != nullptr; }

inline constexpr Operation kOperations[] = {
    {"AddNew", Need::kWrite, [](World& w) { w.New("T4"); },
     [](World& w) { return w.Added(w.db.AddTool(w.made.get(), false)); }},
    {"AddReplacing", Need::kWrite, [](World& w) { w.New("T2"); },
     [](World& w) { return w.Added(w.db.AddTool(w.made.get(), true)); }},
    {"Update", Need::kWrite, [](World& w) { w.Take("T2").SetDescr("changed"); },
     [](World& w) { return w.db.UpdateTool(w.listed); }},
    {"Rename", Need::kWrite, [](World& w) { w.Take("T1").SetCode("R1"); },
     [](World& w) { return w.db.RenameTool("T1", w.listed); }},
    {"Clone", Need::kWrite, [](World& w) { w.Take("T1"); },
     [](World& w) { return w.FilledError(w.db.CloneTool(w.listed, w.error)); }},
    {"Import", Need::kWrite, [](World& w) { w.FillOther("T2", "T9"); },
     [](World& w) { return w.db.Import(&w.other); }},
    {"ImportMany", Need::kWrite,
     [](World& w) { w.FillOther("M1", "M2", "M3", "T1", "M4", "M5", "M6", "T2"); },
     [](World& w) { return w.db.Import(&w.other); }},
    {"ImportFromFile", Need::kWrite, [](World& w) { w.TakePath("export.xml"); },
     [](World& w) { return w.db.ImportFromFile(w.path.c_str(), {}); }},
    {"Export", Need::kWrite, [](World& w) { w.TakePath("out"); },
     [](World& w) { return w.db.Export(std::move(w.path), "copy", {}); }},
    {"Remove", Need::kRemove, [](World& w) { w.Take("T2"); },
     [](World& w) { return w.Removed(w.db.RemoveTool(w.listed)); }},
    {"Init", Need::kRemove, [](World& w) { w.TakePath("lib"); },
     [](World& w) { return w.db.Init(std::move(w.path)); }},
    {"Reload", Need::kRead, nothing, [](World& w) { return w.db.Reload({}); }},
    {"Refresh", Need::kRead, nothing, [](World& w) { return w.db.RefreshTool("T2") != nullptr; }},
    {"GetByPosition", Need::kRead, nothing, [](World& w) { return owned(w.db.GetTool(1, 2)); }},
    {"GetByCode", Need::kRead, nothing,
     [](World& w) { return owned(w.db.GetToolByCode("T2", 2)); }},
    {"Count", Need::kRead, nothing, [](World& w) { return w.db.GetToolCount(2) == 3; }},
    {"CodeByPosition", Need::kRead, nothing,
     [](World& w) { return w.db.GetToolCodebyPosition(1, 2) == "T2"; }},
};

/// How many files this process has open; 0 where the system does not tell.
inline std::ptrdiff_t open_descriptors() {
#ifdef _WIN32  // under wine it is there, and counts what wine itself has open
  return 0;
#else
  std::error_code none;
  const std::filesystem::directory_iterator descriptors("/proc/self/fd", none);
  return none ? 0 : std::distance(begin(descriptors), end(descriptors));
#endif
}

/// An operation that something disturbs; it must leave every file as it was or as it was to become.
class Disturbed : public testing::TestWithParam<Operation> {
 protected:
  Disturbed() {
    World world;
    before_ = world.scratch.Files();
    EXPECT_TRUE(GetParam().Run(world));
    EXPECT_FALSE(world.HasReported());
    aim_ = world.scratch.Files();
  }

  /// @param done  what the operation answered
  void ExpectNothingLost(World& world, bool done) const {
    EXPECT_TRUE(done || world.HasReported()) << "failed without a word";
    EXPECT_EQ(open_descriptors(), descriptors_);
    world.TakeBackRename();
    ExpectWhole(Left(world));
    const auto codes = listed_codes(world.db);
    const std::set<std::string> listed(codes.begin(), codes.end());
    EXPECT_EQ(listed.size(), codes.size()) << "listed twice";
    EXPECT_EQ(listed, stored_codes(world.scratch, "lib"));
    EXPECT_TRUE(world.db.Init(world.lib) && world.db.UpdateTool(&world.Take("T3")))
        << "the next call works";
  }

  /// The files without what a failing removal may leave: temporary files, and probes, whose names
  /// have no extension.
  static Files Left(const World& world) {
    Files files = world.scratch.Files();
    std::erase_if(files, [](const auto& file) {
      return file.first.find(".tdb-") != std::string::npos ||
             file.first.find('.') == std::string::npos;
    });
    return files;
  }

  Files before_;
  Files aim_;

 private:
  static auto CountTools(const Files& files) {
    return std::ranges::count_if(files,
                                 [](const auto& file) { return file.first.ends_with(".ktf"); });
  }

  /// Every file is the one before or the one that the operation was to make, and none got lost.
  void ExpectWhole(const Files& now) const {
    for (const auto& [name, bytes] : now) {
      const bool old_one = before_.contains(name) && before_.at(name) == bytes;
      const bool new_one = aim_.contains(name) && aim_.at(name) == bytes;
      EXPECT_TRUE(old_one || new_one) << name << " holds " << bytes;
    }
    for (const auto& [name, bytes] : before_) {
      EXPECT_TRUE(now.contains(name) || !aim_.contains(name)) << name << " is gone";
    }
    const auto [fewest, most] = std::minmax({CountTools(before_), CountTools(aim_)});
    EXPECT_GE(CountTools(now), fewest);
    EXPECT_LE(CountTools(now), most);
  }

  std::ptrdiff_t descriptors_ = open_descriptors();
};

}  // namespace tooldb
