#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/geom/row_name.h"
#include "tests/storage/watched_database.h"

namespace tooldb {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;

/// A database on a folder, and one in memory.
class ToolDb : public testing::Test {
 protected:
  ToolDb() {
    EXPECT_TRUE(db_.Create(scratch_.Path("lib")));
    db_.Forget();
  }

  std::string Stored(const std::string& name) { return scratch_.Files("lib")[name]; }

  ScratchFolder scratch_;
  WatchedTools db_;
  WatchedTools memory_{1};
};

// ---- what the host hears ----

struct LogCase {
  std::string_view name;
  void (*run)(WatchedTools& db, const ScratchFolder& scratch);
  /// "@" stands for the scratch folder.
  std::vector<std::string> events;
};

const LogCase kLogs[] = {
    {"Init", [](auto& db, auto& scratch) { db.Init(scratch.Path("lib")); }, {"log: Init: @/lib"}},
    {"InitMissing",
     [](auto& db, auto& scratch) { db.Init(scratch.Path("none")); },
     {"log: Init: @/none", "error 1: @/none"}},
    {"Create",
     [](auto& db, auto& scratch) { db.Create(scratch.Path("new")); },
     {"log: Create: @/new"}},
    {"CreateUnnamed", [](auto& db, auto&) { db.Create(""); }, {"log: Create: ", "error 1: "}},
    {"Read", [](auto& db, auto&) { db.Read(); }, {"log: Read: @/lib"}},
    {"Reload",
     [](auto& db, auto&) { db.Reload({"none"}); },
     {"log: Reload: @/lib", "error 1: @/lib/none.ktf"}},
    {"AddSilently", [](auto& db, auto&) { add_tool(db, "T2"); }, {}},
    {"AddTwice",
     [](auto& db, auto&) { db.AddTool(make_tool("T1").get(), false); },
     {"error 19: T1"}},
    {"AddUncoded",
     [](auto& db, auto&) { db.AddTool(make_tool("").get(), false); },
     {"error 22: a tool without a code cannot be stored"}},
    {"Clone",
     [](auto& db, auto&) {
       tdbError error;
       db.CloneTool(db.GetTool(0, 1), error);
     },
     {"log: CloneTool: T1"}},
    {"Import",
     [](auto& db, auto&) {
       tdbToolDB other("other", 1);
       db.Import(&other);
     },
     {"log: Import: other"}},
    {"ImportFromFile",
     [](auto& db, auto& scratch) {
       scratch.MakeFile("x.xml", "<TOOLDB></TOOLDB>");
       db.ImportFromFile(scratch.Path("x.xml").c_str(), {});
     },
     {"log: ImportFromFile: @/x.xml"}},
    {"ImportFromXml",
     [](auto& db, auto&) { db.ImportFromXml("<TOOLDB></TOOLDB>", {}); },
     {"log: ImportFromXml: <TOOLDB></TOOLDB>"}},
    {"Export",
     [](auto& db, auto& scratch) { db.Export(scratch.Path(), "copy", {}); },
     {"log: Export to: @"}},
    {"ExportNowhere",
     [](auto& db, auto& scratch) { db.Export(scratch.Path("none"), "copy", {}); },
     {"log: Export to: @/none", "error 1: @/none is not a directory"}},
    {"ExportTwice",
     [](auto& db, auto& scratch) { db.Export(scratch.Path(), "lib", {}); },
     {"log: Export to: @", "error 19: T1"}},
    {"RemoveAllWithFiles",
     [](auto& db, auto&) { db.RemoveAllTools(true, 1); },
     {"log: RemoveAllTools(memory-and-file)"}},
    {"RemoveAll",
     [](auto& db, auto&) { db.RemoveAllTools(false, 1); },
     {"log: RemoveAllTools(only-memory)"}},
    {"RemoveAllFiles", [](auto& db, auto&) { db.RemoveAllTools(true, 2); }, {}},
    {"LoadComponentUnlinked",
     [](auto& db, auto&) {
       tdbToolComponent use(0, "use", "C1");
       db.LoadToolComponent(&use);
     },
     {"log: Load component code: C1"}},
    {"Null",
     [](auto& db, auto&) {
       db.AddTool(nullptr, true);
       db.ImportFromFile(nullptr, {});
       db.Error(nullptr);
     },
     {"error 1: no tool given", "error 1: no file given"}},
};

class ToolDbLog : public ToolDb, public testing::WithParamInterface<LogCase> {};

TEST_P(ToolDbLog, SaysWhatItDoes) {
  add_tool(db_, "T1");
  GetParam().run(db_, scratch_);
  std::vector<std::string> expected;
  for (std::string event : GetParam().events) {
    const auto at = event.find('@');
    if (at != std::string::npos) event.replace(at, 1, scratch_.Path());
    expected.push_back(event);
  }
  EXPECT_THAT(db_.events, ElementsAreArray(expected));
}

INSTANTIATE_TEST_SUITE_P(Operations, ToolDbLog, testing::ValuesIn(kLogs), row_name<LogCase>);

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

TEST(RelativeFolder, IsReportedAfterTheCurrentFolderHasChanged) {
  namespace fs = std::filesystem;
  const ScratchFolder scratch;
  const fs::path previous = fs::current_path();
  fs::current_path(scratch.MakeFolder("here"));
  WatchedTools db;
  EXPECT_TRUE(db.Create("lib"));
  EXPECT_NE(add_tool(db, "T1"), nullptr);
  fs::current_path(scratch.MakeFolder("elsewhere"));
  EXPECT_EQ(add_tool(db, "T2"), nullptr);
  EXPECT_TRUE(db.HasReported());
  EXPECT_THAT(scratch.Files(), ElementsAre(Key("here/lib/T1.ktf")));
  fs::current_path(scratch.Path("here"));
  EXPECT_NE(add_tool(db, "T2"), nullptr);
  fs::current_path(previous);
}

// ---- adding, removing, renaming ----

TEST_F(ToolDb, StoresUnderTheEncodedCode) {
  const tdbTool* tool = add_tool(db_, "A/B");
  std::string text;
  tool->WriteXml(text, {});
  EXPECT_EQ(Stored("A{{47}}B.ktf"), text) << "the tool's own text, without header";
  EXPECT_FALSE(db_.IsToolCodeExists("A/B"));
  EXPECT_TRUE(db_.IsToolCodeExists("A{{47}}B"));
}

TEST_F(ToolDb, ReplacesTheListedToolByItsTrimmedUpperCode) {
  for (const char* code : {" t1 ", "T2", "t3"}) add_tool(db_, code);
  add_tool(db_, "T1");
  EXPECT_THAT(listed_codes(db_), ElementsAre("T2", "t3", "T1"));
  add_tool(db_, "t2");
  EXPECT_THAT(listed_codes(db_), ElementsAre("T2", "t3", "T1", "t2")) << "t2 is not upper case";
}

TEST_F(ToolDb, ListsAToolOnce) {
  tdbTool* tool = add_tool(db_, "T1", "first");
  add_tool(db_, "T2");
  tool->SetDescr("second");
  EXPECT_TRUE(db_.AddTool(tool, true));
  EXPECT_THAT(listed_codes(db_), ElementsAre("T2", "T1"));
  EXPECT_THAT(Stored("T1.ktf"), HasSubstr("second"));
  tdbTool* listed = add_tool(memory_, "T1");
  EXPECT_TRUE(memory_.AddTool(listed, false));
  EXPECT_EQ(memory_.GetToolCount(1), 1);
}

TEST_F(ToolDb, RefusesACodeWhoseFileExistsThoughItIsNotListed) {
  add_tool(db_, "T1", "kept");
  db_.RemoveAllTools(false, 1);
  EXPECT_FALSE(db_.AddTool(make_tool("T1", "other").get(), false));
  EXPECT_THAT(db_.events.back(), "error 19: T1");
  EXPECT_THAT(Stored("T1.ktf"), HasSubstr("kept"));
  EXPECT_EQ(db_.GetToolCount(1), 0);
}

TEST_F(ToolDb, HandsARemovedToolBack) {
  const std::unique_ptr<tdbTool> tool(add_tool(db_, "T1"));
  EXPECT_TRUE(db_.RemoveTool(tool.get()));
  EXPECT_EQ(db_.GetToolCount(1), 0);
  EXPECT_THAT(scratch_.Files(), IsEmpty());
  EXPECT_TRUE(db_.AddTool(make_tool("T1").release(), false)) << "the code is free again";
}

TEST_F(ToolDb, RenamesOnlyOntoAFreeCode) {
  tdbTool* tool = add_tool(db_, "T1", "first");
  add_tool(db_, "T2", "second");
  tool->SetCode("T2");
  EXPECT_FALSE(db_.RenameTool("T1", tool));
  EXPECT_EQ(db_.events.back(), "error 19: T2");
  tool->SetCode("");
  EXPECT_FALSE(db_.RenameTool("T1", tool));
  EXPECT_THAT(db_.events.back(), HasSubstr("error 22"));
  tool->SetCode("T3");
  EXPECT_TRUE(db_.RenameTool("T1", tool));
  EXPECT_THAT(scratch_.Files("lib"), ElementsAre(Key("T2.ktf"), Key("T3.ktf")));
  EXPECT_EQ(db_.GetToolByCode("T3", 1), tool);
  EXPECT_EQ(db_.GetToolByCode("T1", 1), nullptr);
}

TEST_F(ToolDb, ClonesUnderTheFirstFreeNumber) {
  tdbTool* tool = add_tool(db_, "T1");
  add_tool(db_, " t1 - clone(2) ");
  tdbError error;
  EXPECT_TRUE(db_.CloneTool(tool, error));
  EXPECT_TRUE(db_.CloneTool(tool, error));
  EXPECT_THAT(listed_codes(db_),
              ElementsAre("T1", " t1 - clone(2) ", "T1 - Clone(1)", "T1 - Clone(3)"));
}

TEST_F(ToolDb, ClonesNoCodeBeyond512Characters) {
  const std::string longest(512 - 11, 'x');
  tdbError error;
  tdbTool* tool = add_tool(memory_, longest);
  EXPECT_TRUE(memory_.CloneTool(tool, error));
  tool->SetCode(longest + "x");
  EXPECT_FALSE(memory_.CloneTool(tool, error));
  EXPECT_THAT(error.message, HasSubstr("512"));
}

TEST_F(ToolDb, RemovesWhatItCanAndReportsTheRest) {
  for (const char* code : {"T1", "T2"}) add_tool(db_, code);
  std::filesystem::remove(scratch_.Path("lib/T1.ktf"));
  scratch_.MakeFolder("lib/T1.ktf");
  db_.RemoveAllTools(true, 1);
  EXPECT_EQ(db_.GetToolCount(1), 0);
  EXPECT_THAT(scratch_.Files(), IsEmpty());
}

TEST_F(ToolDb, ClearsTheMarksOfWhatIsStored) {
  tdbTool* tool = add_tool(db_, "T1");
  auto* holder = new tdbToolHolder(0);
  Transformation<double> up;
  up(2, 3) = 40;
  holder->SetPos(up);
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
  WatchedTools again;
  again.Init(scratch_.Path("lib"));
  again.Read();
  tool = again.GetTool(0, 1);
  EXPECT_FALSE(modified());
  EXPECT_EQ(tool->GetHolder(0)->GetAbsPos()(2, 3), 40);
}

TEST_F(ToolDb, InMemoryTouchesNoDisk) {
  memory_.SetFolderPath(scratch_.Path("lib").c_str());
  add_tool(db_, "T9");
  const auto before = scratch_.Files();
  tdbTool* tool = add_tool(memory_, "T1");
  tdbError error;
  EXPECT_TRUE(memory_.Init(scratch_.Path("lib")) && memory_.Available() && memory_.Read());
  EXPECT_TRUE(memory_.Create(scratch_.Path("other")) && memory_.Reload({"T9"}));
  EXPECT_TRUE(memory_.UpdateTool(tool) && memory_.RenameTool("T9", tool));
  EXPECT_TRUE(memory_.CloneTool(tool, error));
  EXPECT_FALSE(memory_.IsToolCodeExists("T9"));
  EXPECT_EQ(memory_.GetToolCount(2), 0);
  EXPECT_EQ(memory_.GetTool(0, 2), nullptr);
  EXPECT_EQ(memory_.GetToolByCode("T9", 2), nullptr);
  EXPECT_EQ(memory_.GetToolCodebyPosition(0, 2), "");
  EXPECT_EQ(memory_.RefreshTool("T1"), nullptr);
  memory_.RemoveAllTools(true, 2);
  memory_.RemoveAllTools(true, 1);
  EXPECT_EQ(memory_.GetToolCount(1), 0);
  EXPECT_EQ(scratch_.Files(), before);
  EXPECT_FALSE(memory_.HasReported()) << testing::PrintToString(memory_.events);
}

// ---- sorting ----

struct SortCase {
  std::string_view name;
  int key;
  bool ascending;
  std::vector<std::string> codes;
};

const SortCase kSorts[] = {
    {"Type", 2, true, {"b", "10", "9", "A"}},
    {"Description", 3, true, {"9", "A", "b", "10"}},
    {"TraceColour", 4, true, {"A", "b", "10", "9"}},
    {"Length", 5, true, {"10", "9", "A", "b"}},
    {"OffsetX", 6, true, {"9", "10", "b", "A"}},
    {"Diameter", 7, true, {"A", "10", "b", "9"}},
    {"DiameterDown", 7, false, {"9", "b", "10", "A"}},
    {"SubType", 8, true, {"b", "9", "10", "A"}},
    {"OffsetY", 9, true, {"10", "b", "9", "A"}},
    {"Code", 0, true, {"9", "10", "A", "b"}},
    {"CodeDown", 1, false, {"b", "A", "10", "9"}},
};

class ToolDbSort : public testing::TestWithParam<SortCase> {};

TEST_P(ToolDbSort, OrdersTheList) {
  const struct {
    const char* code;
    int type;
    const char* description;
    int color;
    double length, x, diameter;
    int sub_type;
    double y;
  } kTools[] = {{"10", 1, "d", 3, 1.5, 2, 2, 7, -3},
                {"b", 0, "c", 2, 9, 3, 2.5, 0, -2},
                {"9", 2, "B", 5, 2, -1, 30, 3, -1},
                {"A", 3, "C", 1, 3, 4, 1, 8, 0}};
  tdbToolDB db("", 1);
  for (const auto& row : kTools) {
    tdbTool* tool = add_tool(db, row.code, row.description);
    tool->SetType(row.type);
    tool->SetTraceColor(row.color);
    tool->SetOffset(row.x, row.y, row.length);
    tool->SetDiameter(row.diameter);
    tool->SetSubType(row.sub_type);
  }
  db.Sort(GetParam().key, GetParam().ascending);
  EXPECT_EQ(listed_codes(db), GetParam().codes);
}

INSTANTIATE_TEST_SUITE_P(Keys, ToolDbSort, testing::ValuesIn(kSorts), row_name<SortCase>);

TEST(ToolDbOrder, IsMixedOfNumbersAndText) {
  const struct {
    const char* first;
    const char* second;  ///< comes after, or neither does
    bool strict;
  } kPairs[] = {{"9", "10", true},
                {"9x", "10", true},
                {" 9", "10", true},
                {"-5", "3", true},
                {"+9", "10", true},
                {"0", "00", true},
                {"0", "9", true},
                {"A", "b", true},
                {"a12", "A9", true},
                {"A", "AB", true},
                {"10", "A", true},
                {"10", "10x", false},
                {"a", "A", false},
                {"10", "010", false},
                {"z", "\xC3\x9F", true},
                {"99999999999998", "99999999999999", true},
                {"9223372036854775808", "99999999999999999999", false}};
  for (const auto& [first, second, strict] : kPairs) {
    tdbToolDB db("", 1);
    add_tool(db, second);
    add_tool(db, first);
    db.Sort(0, true);
    EXPECT_EQ(listed_codes(db).front(), strict ? first : second) << first << " and " << second;
    db.Sort(0, true);
    EXPECT_EQ(listed_codes(db).front(), strict ? first : second) << "stable";
  }
}

TEST(ToolDbOrder, BearsCodesThatRunInACircle) {
  tdbToolDB db("", 1);
  const std::vector<std::string> circle = {"9", "+10", ","};
  for (int i = 0; i < 300; ++i) {
    auto tool = make_tool(circle[static_cast<std::size_t>(i) % 3]);
    if (db.AddTool(tool.get(), false)) tool.release();
  }
  db.Sort(0, true);
  EXPECT_EQ(db.GetToolCount(1), 300);
}

}  // namespace
}  // namespace tooldb
