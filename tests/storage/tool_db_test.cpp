#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <thread>
#include <utility>

#include "geom/euler_angles.h"
#include "tests/golden.h"
#include "tests/storage/watched_database.h"

namespace tooldb {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Key;

/// A database on a folder, and one in memory.
class ToolDb : public testing::Test {
 protected:
  ToolDb() {
    EXPECT_TRUE(db_.Create(scratch_.Path("lib")));
    db_.Forget();
  }

  void AddThree() {
    for (const char* code : {"T1", "A/B", "T2"}) add_tool(db_, code);
  }

  ScratchFolder scratch_;
  WatchedTools db_;
  WatchedTools memory_{1};
};

TEST_F(ToolDb, GoesOnWhenACallbackRaises) {
  db_.SetLogCallback([](void*, tdbToolDB*, std::string) -> int { throw 1; }, nullptr);
  db_.SetErrorCallback([](void*, const tdbToolDB*, tdbError*) -> int { throw 2; }, nullptr);
  db_.SetAllowToolCallback([](tdbTool*) -> bool { throw 3; });
  add_tool(db_, "T1");
  scratch_.MakeFile("lib/T0.ktf", "no tool");
  EXPECT_TRUE(db_.Read());
  EXPECT_THAT(listed_codes(db_), ElementsAre("T1", "T1"));
  EXPECT_FALSE(db_.AllowTool(db_.GetTool(0, 1)));
}

TEST_F(ToolDb, BearsACallbackThatEmptiesTheList) {
  for (const char* code : {"T1", "T2", "T3"}) add_tool(db_, code);
  for (const char* file : {"lib/T1.ktf", "lib/T2.ktf"}) {
    std::filesystem::remove(scratch_.Path(file));
    scratch_.MakeFolder(std::string(file) + "/in the way");
  }
  db_.SetErrorCallback(
      [](void* user, const tdbToolDB*, tdbError*) {
        static_cast<tdbToolDB*>(user)->RemoveAllTools(false, 1);
        return 0;
      },
      &db_);
  db_.RemoveAllTools(true, 1);
  EXPECT_EQ(db_.GetToolCount(1), 0);
  db_.Reload({"none"});
  EXPECT_EQ(db_.GetToolCount(1), 0);
}

TEST_F(ToolDb, ReportsARelativeFolderThatIsNoLongerThere) {
  namespace fs = std::filesystem;
  const fs::path previous = fs::current_path();
  fs::current_path(scratch_.MakeFolder("here"));
  EXPECT_TRUE(db_.Create("lib"));
  EXPECT_NE(add_tool(db_, "T1"), nullptr);
  fs::current_path(scratch_.MakeFolder("elsewhere"));
  EXPECT_EQ(add_tool(db_, "T2"), nullptr);
  EXPECT_FALSE(db_.Available());
  EXPECT_TRUE(db_.HasReported());
  EXPECT_THAT(scratch_.Files(), ElementsAre(Key("here/lib/T1.ktf")));
  fs::current_path(scratch_.Path("here"));
  EXPECT_NE(add_tool(db_, "T2"), nullptr);
  fs::current_path(previous);
}

TEST_F(ToolDb, ClonesNoCodeBeyond512Characters) {
  tdbTool* tool = add_tool(memory_, std::string(512 - 11, 'x'));
  tdbError error;
  EXPECT_TRUE(memory_.CloneTool(tool, error));
  tool->SetCode(tool->GetCode() + "x");
  EXPECT_FALSE(memory_.CloneTool(tool, error));
  EXPECT_THAT(error.message, HasSubstr("512"));
}

TEST_F(ToolDb, ClearsTheMarksOfWhatIsStored) {
  tdbTool* tool = add_tool(db_, "T1");
  auto* holder = new tdbToolHolder(0);
  holder->SetPos(join_zyx({}, {0, 0, 40}));
  tool->AddItem(holder);
  tool->SetDiameter(7);
  const auto modified = [&] {
    bool flag = false;
    tool->Visit(tdbUtil::get_subtree_modifies, &flag);
    return flag;
  };
  EXPECT_TRUE(modified());
  EXPECT_TRUE(db_.UpdateTool(tool));
  EXPECT_FALSE(modified());
  EXPECT_EQ(holder->GetAbsPos()(2, 3), 40) << "placed before its mark went";
  EXPECT_EQ(tool->GetDiameter(), 7);
  std::string text;
  tool->WriteXml(text, {});
  EXPECT_EQ(scratch_.Files("lib"), (Files{{"T1.ktf", text}})) << "without header";
  WatchedTools again;
  EXPECT_TRUE(again.Init(scratch_.Path("lib")) && again.Read());
  tool = again.GetTool(0, 1);
  EXPECT_FALSE(modified());
  EXPECT_EQ(tool->GetHolder(0)->GetAbsPos()(2, 3), 40);
}

TEST_F(ToolDb, LooksUpByCode) {
  AddThree();
  for (int source : {1, 2}) {
    tdbTool copy("untouched");
    EXPECT_FALSE(db_.GetToolByCode("none", copy, source));
    EXPECT_EQ(copy.GetCode(), "untouched");
    EXPECT_TRUE(db_.GetToolByCode("A/B", copy, source));
    EXPECT_EQ(copy.GetCode(), "A/B");
  }
  EXPECT_EQ(std::as_const(db_).GetToolByCode("t1", 1), nullptr) << "compares exactly";
  EXPECT_EQ(db_.GetToolCodebyPosition(1, 1), "A/B");
  EXPECT_EQ(db_.GetToolCodebyPosition(3, 1) + db_.GetToolCodebyPosition(3, 2), "");
}

TEST_F(ToolDb, LooksUpByPositionInTheFolderAsItIs) {
  std::mt19937 random(20240731);
  for (int step = 0; step < 300; ++step) {
    // Now and then long enough for the listing of the folder to be kept.
    if (step % 100 == 50) {
      db_.GetToolCount(2);
      std::this_thread::sleep_for(std::chrono::milliseconds(70));
      db_.GetToolCount(2);
    }
    const std::string name = "lib/S" + std::to_string(random() % 9) + ".ktf";
    if (!std::filesystem::remove(scratch_.Path(name))) scratch_.MakeFile(name, "<TOOL/>");
    const auto files = scratch_.Files("lib");
    std::vector<std::string> codes;
    for (int i = 0; i < db_.GetToolCount(2); ++i) codes.push_back(db_.GetToolCodebyPosition(i, 2));
    ASSERT_EQ(codes.size(), files.size()) << step;
    EXPECT_TRUE(std::ranges::equal(codes, files, {}, {}, [](const auto& file) {
      return file.first.substr(0, file.first.size() - 4);
    }));
  }
}

/// A host's database that looks at each tool that is added.
class PickyTools : public WatchedTools {
 public:
  using WatchedTools::AddTool;
  bool AddTool(tdbTool* tool, tdbError& error, bool replace) override {
    if (tool->GetCode() == "T1") throw std::runtime_error("not this one");
    return WatchedTools::AddTool(tool, error, replace);
  }
};

TEST_F(ToolDb, ImportsThroughTheHostsOwnAddTool) {
  AddThree();
  PickyTools picky;
  EXPECT_TRUE(picky.Create(scratch_.Path("picky")));
  EXPECT_FALSE(picky.Import(&db_));
  EXPECT_THAT(listed_codes(picky), ElementsAre("A/B", "T2"));
  EXPECT_EQ(picky.events.back(), "error 1: not this one");
}

TEST_F(ToolDb, KeepsModelFilesRelativeToTheSearchPaths) {
  scratch_.MakeFolder("models");
  scratch_.MakeFile("models/nose.stl", "solid");
  db_.AddSearchPaths({scratch_.Path("models")});
  auto tool = make_tool("M");
  auto* holder = new tdbToolHolder(3);
  holder->SetShapeFilePath(scratch_.Path("models/nose.stl").c_str());
  tool->AddItem(holder);
  ASSERT_TRUE(db_.AddTool(tool.release(), false));
  EXPECT_THAT(scratch_.Files("lib")["M.ktf"], testing::Not(HasSubstr(scratch_.Path())));
  EXPECT_EQ(db_.RefreshTool("M")->GetHolder(0)->GetShapeFilePath(),
            scratch_.Path("models/nose.stl"));
  EXPECT_TRUE(db_.Export(scratch_.Path(), "copy", {"M"}));
  EXPECT_EQ(scratch_.Files("copy")["M.ktf"], scratch_.Files("lib")["M.ktf"]);
}

TEST_F(ToolDb, ACopyStartsWithoutTools) {
  AddThree();
  const tdbToolDB copy(db_);
  EXPECT_EQ(copy.GetFolderPath(), "");
  tdbToolDB assigned("", 1);
  add_tool(assigned, "own");
  assigned.Deprecated_SetPath("legacy");
  assigned = db_;
  EXPECT_EQ(assigned.GetFolderPath(), scratch_.Path("lib"));
  EXPECT_EQ(assigned.Deprecated_GetTdbPath(), "legacy");
  EXPECT_EQ(assigned.GetToolCount(2), 3) << "no longer memory only";
  EXPECT_EQ(assigned.GetToolCount(1), 1);
  assigned.SetFolderPath("elsewhere");
  EXPECT_EQ(assigned.GetFolderPath(), "elsewhere");
  const std::unique_ptr<tdbObject> clone(db_.Clone());
  EXPECT_EQ(clone->GetName(), "watched");
  db_.Forget();
  static_cast<tdbToolDB&>(*clone).Init("none");
  EXPECT_EQ(db_.events.size(), 2U) << "with the callbacks of the original";
}

TEST(TemporaryTool, IsAPlaceholderOrNothing) {
  WatchedTools db(1);
  std::string text;
  for (const tdbTool* tool : {tdbAddTempMillTool(&db, "M"), tdbAddTempTurnTool(&db, "T")}) {
    ASSERT_NE(tool, nullptr);
    EXPECT_TRUE(tool->HasFlag(1));
    tool->WriteXml(text, {});
  }
  EXPECT_TRUE(matches_golden(text, "temporary_tools.xml"));
  EXPECT_EQ(tdbAddTempMillTool(&db, ""), nullptr);
  EXPECT_EQ(db.events.size(), 1U) << "reported once";
  EXPECT_EQ(tdbAddTempTurnTool(nullptr, "X"), nullptr);
  EXPECT_EQ(db.GetToolCount(1), 2);
}

TEST(ToolOrder, BearsCodesThatRunInACircle) {
  tdbToolDB db("", 1);
  const char* const circle[] = {"9", "+10", ","};
  for (int i = 0; i < 300; ++i) db.AddTool(make_tool(circle[i % 3]).release(), false);
  db.Sort(0, true);
  EXPECT_EQ(db.GetToolCount(1), 300);
}

}  // namespace
}  // namespace tooldb
