#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/geom/row_name.h"
#include "tests/storage/faulty_file_system.h"
#include "tests/storage/watched_database.h"

namespace tooldb {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::StartsWith;
using Files = std::map<std::string, std::string>;

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
    db.events.clear();
  }

  tdbTool& Tool(const std::string& code) { return *db.GetToolByCode(code, 1); }
  bool Add(std::unique_ptr<tdbTool> tool, bool replace) {
    const bool added = db.AddTool(tool.get(), replace);
    if (added) tool.release();
    return added;
  }

  ScratchFolder scratch;
  std::string lib = scratch.Path("lib");
  WatchedTools db;

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

struct Operation {
  std::string_view name;
  Need need;
  bool (*run)(World& world);
};

constexpr Operation kOperations[] = {
    {"AddNew", Need::kWrite,
     [](World& world) { return world.Add(make_tool("T4", "added"), false); }},
    {"AddReplacing", Need::kWrite,
     [](World& world) { return world.Add(make_tool("T2", "put in place of it"), true); }},
    {"Update", Need::kWrite,
     [](World& world) {
       world.Tool("T2").SetDescr("changed");
       return world.db.UpdateTool(&world.Tool("T2"));
     }},
    {"Rename", Need::kWrite,
     [](World& world) {
       tdbTool& tool = world.Tool("T1");
       tool.SetCode("R1");
       const bool renamed = world.db.RenameTool("T1", &tool);
       if (!renamed && !world.scratch.Files("lib").contains("R1.ktf")) tool.SetCode("T1");
       return renamed;
     }},
    {"Clone", Need::kWrite,
     [](World& world) {
       tdbError error;
       return world.db.Noted(world.db.CloneTool(&world.Tool("T1"), error), error);
     }},
    {"Import", Need::kWrite,
     [](World& world) {
       tdbToolDB other("other", 1);
       add_tool(other, "T2", "imported");
       add_tool(other, "T9", "new");
       return world.db.Import(&other);
     }},
    {"ImportFromFile", Need::kWrite,
     [](World& world) {
       return world.db.ImportFromFile(world.scratch.Path("export.xml").c_str(), {});
     }},
    {"Export", Need::kWrite,
     [](World& world) { return world.db.Export(world.scratch.Path("out"), "copy", {}); }},
    {"Remove", Need::kRemove,
     [](World& world) {
       tdbTool* const tool = &world.Tool("T2");
       const bool removed = world.db.RemoveTool(tool);
       if (removed) delete tool;
       return removed;
     }},
    {"Init", Need::kRemove, [](World& world) { return world.db.Init(world.lib); }},
    {"Reload", Need::kRead, [](World& world) { return world.db.Reload({}); }},
    {"Refresh", Need::kRead, [](World& world) { return world.db.RefreshTool("T2") != nullptr; }},
    {"GetByPosition", Need::kRead,
     [](World& world) { return std::unique_ptr<tdbTool>(world.db.GetTool(1, 2)) != nullptr; }},
    {"GetByCode", Need::kRead,
     [](World& world) {
       return std::unique_ptr<tdbTool>(world.db.GetToolByCode("T2", 2)) != nullptr;
     }},
    {"Count", Need::kRead, [](World& world) { return world.db.GetToolCount(2) == 3; }},
    {"CodeByPosition", Need::kRead,
     [](World& world) { return world.db.GetToolCodebyPosition(1, 2) == "T2"; }},
};

std::size_t count_tools(const Files& files) {
  return static_cast<std::size_t>(
      std::ranges::count_if(files, [](const auto& file) { return file.first.ends_with(".ktf"); }));
}

/// The files without what a failing removal may leave: temporary files, and probes, whose names
/// have no extension.
Files without_litter(Files files) {
  std::erase_if(files, [](const auto& file) {
    return file.first.find(".tdb-") != std::string::npos ||
           file.first.find('.') == std::string::npos;
  });
  return files;
}

/// Every file is the one before or the one that the operation was to make, and none got lost.
void expect_whole(const Files& before, const Files& aim, const Files& now) {
  for (const auto& [name, bytes] : now) {
    const bool old_one = before.contains(name) && before.at(name) == bytes;
    const bool new_one = aim.contains(name) && aim.at(name) == bytes;
    EXPECT_TRUE(old_one || new_one) << name << " holds " << bytes;
  }
  for (const auto& [name, bytes] : before) {
    EXPECT_TRUE(now.contains(name) || !aim.contains(name)) << name << " is gone";
  }
  const auto [fewest, most] = std::minmax({count_tools(before), count_tools(aim)});
  EXPECT_GE(count_tools(now), fewest);
  EXPECT_LE(count_tools(now), most);
}

void expect_list_and_disk_agree(World& world) {
  const auto codes = listed_codes(world.db);
  const std::set<std::string> listed(codes.begin(), codes.end());
  EXPECT_EQ(listed.size(), codes.size()) << "listed twice";
  EXPECT_EQ(listed, stored_codes(world.scratch, "lib"));
}

class Faults : public testing::TestWithParam<Operation> {
 protected:
  Faults() {
    World world;
    before_ = world.scratch.Files();
    EXPECT_TRUE(GetParam().run(world));
    EXPECT_FALSE(world.db.HasReported());
    aim_ = world.scratch.Files();
  }

  /// Runs the operation with the calls from the n-th to the last failing; false once there are
  /// fewer than n.
  bool RunFailing(int n, int last) {
    SCOPED_TRACE("call " + std::to_string(n));
    World world;
    FaultyFileSystem disk;
    const ScopedFileSystem use(disk);
    disk.Let([=](const FileCall& call) { return call.number >= n && call.number <= last; });
    const bool done = GetParam().run(world);
    const bool reached = disk.Calls() >= n;
    disk.Let(nullptr);

    const Files now = without_litter(world.scratch.Files());
    expect_whole(before_, aim_, now);
    expect_list_and_disk_agree(world);
    EXPECT_TRUE(done || world.db.HasReported()) << "failed without a word";
    EXPECT_TRUE(world.db.HasReported() || now == aim_) << "nothing reported, yet not done";
    for (const std::string& event : world.db.events) {
      EXPECT_THAT(event, AnyOf(StartsWith("log"), HasSubstr(world.scratch.Path())));
    }
    EXPECT_TRUE(world.db.Init(world.lib) && world.db.UpdateTool(&world.Tool("T3")))
        << "the next call works";
    return reached;
  }

  Files before_;
  Files aim_;
};

TEST_P(Faults, OneFailingCallLosesNothing) {
  for (int n = 1; RunFailing(n, n); ++n) {
  }
}

TEST_P(Faults, AFailingDiskLosesNothing) {
  for (int n = 1; RunFailing(n, std::numeric_limits<int>::max()); ++n) {
  }
}

TEST(FaultsOfAdding, NoFailingCallLetsAStoredToolBeOverwritten) {
  for (int n = 1;; ++n) {
    World world;
    const Files before = world.scratch.Files();
    FaultyFileSystem disk;
    const ScopedFileSystem use(disk);
    disk.Let([=](const FileCall& call) { return call.number == n; });
    EXPECT_FALSE(world.Add(make_tool("T2", "another"), false)) << "call " << n;
    EXPECT_EQ(world.scratch.Files(), before) << "call " << n;
    if (disk.Calls() < n) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Operations, Faults, testing::ValuesIn(kOperations), row_name<Operation>);

struct Damage {
  std::string_view name;
  void (*harm)(World& world);
  bool (*fails)(const FileCall& call);
  /// Whether an operation of that need can still succeed.
  bool (*allows)(Need need);
};

bool changes(const FileCall& call) {
  using Kind = FileCall::Kind;
  return call.kind == Kind::kCreate || call.kind == Kind::kRename || call.kind == Kind::kRemove ||
         call.kind == Kind::kMakeFolder;
}

constexpr Damage kDamages[] = {
    {"Missing", [](World& world) { std::filesystem::remove_all(world.lib); },
     [](const FileCall&) { return false; }, [](Need) { return false; }},
    {"ReplacedByAFile",
     [](World& world) {
       std::filesystem::remove_all(world.lib);
       world.scratch.MakeFile("lib", "a file");
     },
     [](const FileCall&) { return false; }, [](Need) { return false; }},
    {"ReadOnly", [](World&) {}, changes, [](Need need) { return need == Need::kRead; }},
    {"Full", [](World&) {},
     [](const FileCall& call) { return call.kind == FileCall::Kind::kWrite; },
     [](Need need) { return need != Need::kWrite; }},
};

class DamagedFolder : public testing::TestWithParam<std::tuple<Damage, Operation>> {};

TEST_P(DamagedFolder, IsReportedAndMadeNoWorse) {
  const auto& [damage, operation] = GetParam();
  World world;
  damage.harm(world);
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  disk.Let(damage.fails);
  const auto codes = listed_codes(world.db);
  const Files before = world.scratch.Files();
  EXPECT_EQ(operation.run(world), damage.allows(operation.need));
  EXPECT_EQ(world.db.HasReported(), !damage.allows(operation.need));
  if (damage.allows(operation.need)) return;
  EXPECT_EQ(listed_codes(world.db), codes);
  EXPECT_EQ(world.scratch.Files(), before);
}

INSTANTIATE_TEST_SUITE_P(Folders, DamagedFolder,
                         testing::Combine(testing::ValuesIn(kDamages),
                                          testing::ValuesIn(kOperations)),
                         [](const auto& row) {
                           return std::string(std::get<0>(row.param).name) +
                                  std::string(std::get<1>(row.param).name);
                         });

}  // namespace
}  // namespace tooldb
