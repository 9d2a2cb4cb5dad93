#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <thread>

#include "tests/storage/watched_database.h"

namespace tooldb {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;
using testing::Pair;

using Owned = std::unique_ptr<tdbTool>;

/// A database of T1, A/B and T2, in that order, stored in the folder lib.
class Exchange : public testing::Test {
 protected:
  Exchange() {
    EXPECT_TRUE(db_.Create(lib_));
    for (const char* code : {"T1", "A/B", "T2"}) add_tool(db_, code, "stored");
    db_.Forget();
  }

  std::vector<std::string> CodesOf(const std::string& folder) {
    tdbToolDB db("", 0);
    EXPECT_TRUE(db.Init(folder) && db.Read());
    return listed_codes(db);
  }

  ScratchFolder scratch_;
  std::string lib_ = scratch_.Path("lib");
  WatchedTools db_;
};

TEST_F(Exchange, ReadsInByteOrderAndPassesBadFilesBy) {
  scratch_.MakeFile("lib/T0.ktf", "<TOOL");
  scratch_.MakeFile("lib/T9.ktf", "");
  scratch_.MakeFile("lib/.tdb-1-2-3.tmp", "left over");
  WatchedTools db;
  EXPECT_TRUE(db.Init(lib_) && db.Read());
  EXPECT_THAT(listed_codes(db), ElementsAre("A/B", "T1", "T2"));
  EXPECT_THAT(db.events, ElementsAre(HasSubstr("log: Init"), HasSubstr("log: Read"),
                                     HasSubstr(lib_ + "/T0.ktf"), HasSubstr(lib_ + "/T9.ktf")));
  EXPECT_TRUE(db.Read());
  EXPECT_EQ(db.GetToolCount(1), 6) << "appends";
}

TEST_F(Exchange, LooksUpByPositionAndCode) {
  EXPECT_EQ(db_.GetToolCount(1), 3);
  EXPECT_EQ(db_.GetToolCount(2), 3);
  EXPECT_EQ(db_.GetToolCodebyPosition(1, 1), "A/B");
  EXPECT_EQ(db_.GetToolCodebyPosition(1, 2), "T1");
  EXPECT_EQ(db_.GetToolByCode("t1", 1), nullptr) << "compares exactly";
  for (int source : {1, 2}) {
    EXPECT_EQ(db_.GetTool(-1, source), nullptr);
    EXPECT_EQ(db_.GetTool(3, source), nullptr);
    EXPECT_EQ(db_.GetToolCodebyPosition(3, source), "");
    tdbTool copy("untouched");
    EXPECT_TRUE(db_.GetToolByCode("A/B", copy, source));
    EXPECT_EQ(copy.GetCode(), "A/B");
    EXPECT_FALSE(db_.GetToolByCode("none", copy, source));
    EXPECT_EQ(copy.GetCode(), "A/B");
    std::vector<tdbTool> tools = {copy};
    db_.GetTools(tools, source);
    EXPECT_EQ(tools.size(), 4U);
  }
  const Owned stored(db_.GetTool(0, 2));
  EXPECT_EQ(stored->GetCode(), "A/B") << "that of the file";
  EXPECT_NE(Owned(db_.GetToolByCode("A{{47}}B", 2)), nullptr);
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

TEST_F(Exchange, RefreshesInPlace) {
  db_.GetTool(1, 1)->SetDescr("changed in memory");
  tdbTool* const fresh = db_.RefreshTool("A/B");
  ASSERT_NE(fresh, nullptr);
  EXPECT_STREQ(fresh->GetDescr(), "stored");
  EXPECT_EQ(db_.GetTool(1, 1), fresh);
  std::filesystem::remove(lib_ + "/T1.ktf");
  EXPECT_EQ(db_.RefreshTool("T1"), nullptr);
  EXPECT_EQ(db_.events.back(), "error 1: " + lib_ + "/T1.ktf");
  EXPECT_EQ(db_.RefreshTool("none"), nullptr);
  EXPECT_THAT(listed_codes(db_), ElementsAre("T1", "A/B", "T2"));
}

TEST_F(Exchange, ReloadsInPlaceAndAppendsTheRest) {
  const Owned removed(db_.GetTool(0, 1));
  std::filesystem::copy(lib_ + "/T1.ktf", lib_ + "/T3.ktf");
  std::filesystem::remove(lib_ + "/T2.ktf");
  db_.RemoveTool(removed.get());
  for (int i = 0; i < 2; ++i) db_.GetTool(i, 1)->SetDescr("changed");
  EXPECT_TRUE(db_.Reload({"A/B", "T2", "T3"}));
  EXPECT_THAT(listed_codes(db_), ElementsAre("A/B", "T2", "T3"));
  EXPECT_STREQ(db_.GetTool(0, 1)->GetDescr(), "stored");
  EXPECT_STREQ(db_.GetTool(1, 1)->GetDescr(), "changed") << "its file is gone";
  EXPECT_EQ(db_.events.back(), "error 1: " + lib_ + "/T2.ktf");
  EXPECT_TRUE(db_.Reload({}));
  EXPECT_THAT(listed_codes(db_), ElementsAre("A/B", "T2", "T3"));
}

TEST_F(Exchange, ImportsReplacingAndReportsWhatItRefuses) {
  WatchedTools other(1);
  add_tool(other, "T1", "imported");
  add_tool(other, "bad\ncode");
  add_tool(other, "T9");
  EXPECT_FALSE(db_.Import(&other));
  EXPECT_THAT(listed_codes(db_), ElementsAre("A/B", "T2", "T1", "T9"));
  EXPECT_STREQ(db_.GetToolByCode("T1", 1)->GetDescr(), "imported");
  EXPECT_THAT(db_.events, ElementsAre("log: Import: watched", HasSubstr("control character")));
  EXPECT_EQ(other.GetToolCount(1), 3) << "copies were added";
  EXPECT_FALSE(db_.Import(nullptr));
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

TEST_F(Exchange, ImportsItselfUnharmed) {
  EXPECT_TRUE(db_.Import(&db_));
  EXPECT_THAT(listed_codes(db_), ElementsAre("T1", "A/B", "T2"));
  EXPECT_EQ(CodesOf(lib_).size(), 3U);
}

TEST_F(Exchange, ImportsADocumentOfItsOwn) {
  std::string document;
  db_.WriteXml(document, {});
  const std::string path = scratch_.MakeFile("export.xml", document);
  for (const bool from_file : {true, false}) {
    for (const bool all : {true, false}) {
      WatchedTools other(1);
      const std::vector<std::string> codes =
          all ? std::vector<std::string>() : std::vector<std::string>{"T2", "none"};
      EXPECT_TRUE(from_file ? other.ImportFromFile(path.c_str(), codes)
                            : other.ImportFromXml(document.c_str(), codes));
      EXPECT_EQ(listed_codes(other), all ? listed_codes(db_) : std::vector<std::string>{"T2"});
      EXPECT_FALSE(other.HasReported());
    }
  }
}

TEST_F(Exchange, ImportsWhatIsGoodAndReportsTheRest) {
  WatchedTools other(1);
  EXPECT_FALSE(other.ImportFromFile(scratch_.Path("none.xml").c_str(), {}));
  EXPECT_THAT(other.events.back(), HasSubstr("none.xml"));
  const std::string path =
      scratch_.MakeFile("mixed.xml",
                        "<TOOLDB><TOOL NAME=\"A\"/><TOOL NAME=\"\"/><TOOL NAME=\"A\"/>"
                        "<TOOL NAME=\"B\"><HOLDER TYPE=\"odd\"/></TOOL></TOOLDB>");
  EXPECT_FALSE(other.ImportFromFile(path.c_str(), {}));
  EXPECT_THAT(listed_codes(other), ElementsAre("A", "A - Clone(1)"));
  int refused = 0;
  for (const std::string& event : other.events) {
    refused += event.starts_with("error 22") || event.starts_with("error 3") ? 1 : 0;
  }
  EXPECT_EQ(refused, 2) << testing::PrintToString(other.events);
}

TEST_F(Exchange, ExportsTheFilesAsTheyStand) {
  const auto before = scratch_.Files("lib");
  add_tool(db_, "T2", "stored");
  EXPECT_TRUE(db_.Export(scratch_.Path(), "all", {}));
  EXPECT_EQ(scratch_.Files("all"), before);
  EXPECT_TRUE(db_.Export(scratch_.Path(), "one", {"A/B", "none"}));
  EXPECT_THAT(scratch_.Files("one"), ElementsAre(Key("A{{47}}B.ktf")));
  EXPECT_TRUE(db_.ExportOnlyLoaded(scratch_.Path(), "both", {"T1", "T2"}, {"T2", "A/B"}));
  EXPECT_THAT(scratch_.Files("both"), ElementsAre(Key("T2.ktf")));
  EXPECT_TRUE(db_.ExportOnlyLoaded(scratch_.Path(), "none", {}, {}));
  EXPECT_THAT(scratch_.Files("none"), IsEmpty());
}

TEST_F(Exchange, ExportKeepsWhatStandsThereAndWritesTheRest) {
  scratch_.MakeFolder("there");
  scratch_.MakeFile("there/A{{47}}B.ktf", "kept");
  EXPECT_FALSE(db_.Export(scratch_.Path(), "there", {}));
  EXPECT_EQ(db_.events.back(), "error 19: A/B");
  EXPECT_EQ(scratch_.Files("there").size(), 3U);
  EXPECT_EQ(scratch_.Files("there")["A{{47}}B.ktf"], "kept");
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
  const tdbTool* mill = tdbAddTempMillTool(&db, "M");
  ASSERT_NE(mill, nullptr);
  EXPECT_EQ(mill->GetType(), 0);
  EXPECT_TRUE(mill->HasFlag(1));
  ASSERT_EQ(mill->GetItemCount(), 2U);
  EXPECT_EQ(mill->GetCutter(0)->GetType(), 5);
  EXPECT_EQ(mill->GetShank(0)->GetType(), 2);
  const tdbTool* turn = tdbAddTempTurnTool(&db, "T");
  ASSERT_NE(turn, nullptr);
  EXPECT_EQ(turn->GetType(), 3);
  EXPECT_EQ(turn->GetItem(0)->GetType(), 8);
  EXPECT_EQ(turn->GetItem(1)->GetType(), 5);
  EXPECT_EQ(turn->GetItem(2)->GetType(), 4);
  EXPECT_EQ(tdbAddTempMillTool(&db, ""), nullptr);
  EXPECT_EQ(db.events.size(), 1U) << "reported once";
  EXPECT_EQ(tdbAddTempTurnTool(nullptr, "X"), nullptr);
  EXPECT_EQ(db.GetToolCount(1), 2);
}

}  // namespace
}  // namespace tooldb
