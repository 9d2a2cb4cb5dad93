#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <thread>

#include "tests/golden.h"
#include "tests/storage/watched_database.h"

namespace tooldb {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using Owned = std::unique_ptr<tdbTool>;

/// A database of T1, A/B and T2, in that order, stored in the folder lib.
class Exchange : public testing::Test {
 protected:
  Exchange() {
    EXPECT_TRUE(db_.Create(lib_));
    for (const char* code : {"T1", "A/B", "T2"}) add_tool(db_, code, "stored");
    db_.Forget();
  }

  ScratchFolder scratch_;
  std::string lib_ = scratch_.Path("lib");
  WatchedTools db_;
};

TEST_F(Exchange, LooksUpByCode) {
  for (int source : {1, 2}) {
    tdbTool copy("untouched");
    EXPECT_FALSE(db_.GetToolByCode("none", copy, source));
    EXPECT_EQ(copy.GetCode(), "untouched");
    EXPECT_TRUE(db_.GetToolByCode("A/B", copy, source));
    EXPECT_EQ(copy.GetCode(), "A/B");
  }
  EXPECT_EQ(db_.GetToolByCode("t1", 1), nullptr) << "compares exactly";
  EXPECT_EQ(db_.GetToolCodebyPosition(1, 1), "A/B");
  EXPECT_EQ(db_.GetToolCodebyPosition(3, 1) + db_.GetToolCodebyPosition(3, 2), "");
}

TEST_F(Exchange, LooksUpByPositionInTheFolderAsItIs) {
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
      return tdbUtil::decoding_code(file.first.substr(0, file.first.size() - 4));
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

TEST_F(Exchange, ImportsThroughTheHostsOwnAddTool) {
  PickyTools picky;
  EXPECT_TRUE(picky.Create(scratch_.Path("picky")));
  EXPECT_FALSE(picky.Import(&db_));
  EXPECT_THAT(listed_codes(picky), ElementsAre("A/B", "T2"));
  EXPECT_EQ(picky.events.back(), "error 1: not this one");
}

TEST_F(Exchange, KeepsModelFilesRelativeToTheSearchPaths) {
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

TEST_F(Exchange, ACopyStartsWithoutTools) {
  const tdbToolDB copy(db_);
  EXPECT_EQ(copy.GetFolderPath(), "");
  tdbToolDB assigned("", 1);
  add_tool(assigned, "own");
  assigned.Deprecated_SetPath("legacy");
  assigned = db_;
  EXPECT_EQ(assigned.GetFolderPath(), lib_);
  EXPECT_EQ(assigned.Deprecated_GetTdbPath(), "legacy");
  EXPECT_EQ(assigned.GetToolCount(2), 3) << "no longer memory only";
  EXPECT_EQ(assigned.GetToolCount(1), 1);
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

}  // namespace
}  // namespace tooldb
