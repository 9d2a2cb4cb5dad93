#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/storage/watched_database.h"

/// @file
/// The operations on a stored library that the tests of faults disturb, and what may be left then.

namespace tooldb {

/// Bytes by path.
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
    db.Forget();
  }

  tdbTool& Tool(const std::string& code) { return *db.GetToolByCode(code, 1); }

  /// Makes a call of the library; what an operation does around it is done by its host.
  template <class LibraryCall>
  auto Call(LibraryCall&& call) {
    struct Border {
      void (*leave)();
      ~Border() { leave(); }
    };
    enter();
    const Border border{leave};
    return call();
  }

  bool Add(std::unique_ptr<tdbTool> tool, bool replace) {
    const bool added = Call([&] { return db.AddTool(tool.get(), replace); });
    if (added) tool.release();
    return added;
  }

  /// Gives tools their earlier codes again when the new ones were not stored, as a host does.
  void TakeBackRename() {
    if (!scratch.Files("lib").contains("R1.ktf") && db.GetToolByCode("R1", 1) != nullptr) {
      Tool("R1").SetCode("T1");
    }
  }

  void (*enter)() = [] {};
  void (*leave)() = [] {};
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

inline constexpr Operation kOperations[] = {
    {"AddNew", Need::kWrite,
     [](World& world) { return world.Add(make_tool("T4", "added"), false); }},
    {"AddReplacing", Need::kWrite,
     [](World& world) { return world.Add(make_tool("T2", "put in place of it"), true); }},
    {"Update", Need::kWrite,
     [](World& world) {
       tdbTool& tool = world.Tool("T2");
       tool.SetDescr("changed");
       return world.Call([&] { return world.db.UpdateTool(&tool); });
     }},
    {"Rename", Need::kWrite,
     [](World& world) {
       tdbTool& tool = world.Tool("T1");
       tool.SetCode("R1");
       return world.Call([&] { return world.db.RenameTool("T1", &tool); });
     }},
    {"Clone", Need::kWrite,
     [](World& world) {
       tdbError error;
       tdbTool& tool = world.Tool("T1");
       const bool cloned = world.Call([&] { return world.db.CloneTool(&tool, error); });
       return world.db.Noted(cloned, error);
     }},
    {"Import", Need::kWrite,
     [](World& world) {
       tdbToolDB other("other", 1);
       add_tool(other, "T2", "imported");
       add_tool(other, "T9", "new");
       return world.Call([&] { return world.db.Import(&other); });
     }},
    {"ImportMany", Need::kWrite,
     [](World& world) {
       tdbToolDB other("other", 1);
       for (const char* code : {"M1", "M2", "M3", "T1", "M4", "M5", "M1", "T2"}) {
         add_tool(other, code, "imported");
       }
       return world.Call([&] { return world.db.Import(&other); });
     }},
    {"ImportFromFile", Need::kWrite,
     [](World& world) {
       const std::string path = world.scratch.Path("export.xml");
       return world.Call([&] { return world.db.ImportFromFile(path.c_str(), {}); });
     }},
    {"Export", Need::kWrite,
     [](World& world) {
       std::string target = world.scratch.Path("out");
       return world.Call([&] { return world.db.Export(std::move(target), "copy", {}); });
     }},
    {"Remove", Need::kRemove,
     [](World& world) {
       tdbTool* const tool = &world.Tool("T2");
       const bool removed = world.Call([&] { return world.db.RemoveTool(tool); });
       if (removed) delete tool;
       return removed;
     }},
    {"Init", Need::kRemove,
     [](World& world) {
       std::string folder = world.lib;
       return world.Call([&] { return world.db.Init(std::move(folder)); });
     }},
    {"Reload", Need::kRead,
     [](World& world) { return world.Call([&] { return world.db.Reload({}); }); }},
    {"Refresh", Need::kRead,
     [](World& world) {
       return world.Call([&] { return world.db.RefreshTool("T2") != nullptr; });
     }},
    {"GetByPosition", Need::kRead,
     [](World& world) {
       return std::unique_ptr<tdbTool>(world.Call([&] { return world.db.GetTool(1, 2); })) !=
              nullptr;
     }},
    {"GetByCode", Need::kRead,
     [](World& world) {
       return std::unique_ptr<tdbTool>(
                  world.Call([&] { return world.db.GetToolByCode("T2", 2); })) != nullptr;
     }},
    {"Count", Need::kRead,
     [](World& world) { return world.Call([&] { return world.db.GetToolCount(2) == 3; }); }},
    {"CodeByPosition", Need::kRead,
     [](World& world) {
       return world.Call([&] { return world.db.GetToolCodebyPosition(1, 2) == "T2"; });
     }},
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

/// The files without what a failing removal may leave: temporary files, and probes, whose names
/// have no extension.
inline Files without_litter(Files files) {
  std::erase_if(files, [](const auto& file) {
    return file.first.find(".tdb-") != std::string::npos ||
           file.first.find('.') == std::string::npos;
  });
  return files;
}

inline std::size_t count_tools(const Files& files) {
  return static_cast<std::size_t>(
      std::ranges::count_if(files, [](const auto& file) { return file.first.ends_with(".ktf"); }));
}

/// Every file is the one before or the one that the operation was to make, and none got lost.
inline void expect_whole(const Files& before, const Files& aim, const Files& now) {
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

inline void expect_list_and_disk_agree(World& world) {
  const auto codes = listed_codes(world.db);
  const std::set<std::string> listed(codes.begin(), codes.end());
  EXPECT_EQ(listed.size(), codes.size()) << "listed twice";
  EXPECT_EQ(listed, stored_codes(world.scratch, "lib"));
}

}  // namespace tooldb
