#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/storage/watched_database.h"
#include "tooldb/profile.h"
#include "tooldb/stl.h"

namespace tooldb {
namespace {

std::string document_of(const tdbObject& object) {
  std::string text;
  object.WriteXml(text, {});
  return text;
}

/// The files that come of what a host does with a library, filled from the samples: read, import,
/// change, sort, mesh, write.
Files work() {
  const ScratchFolder scratch;
  WatchedTools tools;
  WatchedComponents components;
  tools.LinkToolComponents(&components);
  EXPECT_TRUE(tools.Create(scratch.Path("tools")));
  EXPECT_TRUE(components.Create(scratch.Path("components")));
  const std::string samples = TOOLDB_SOURCE_DIR "/examples/library";
  tdbToolComponentsDB holders("samples", 0);
  EXPECT_TRUE(holders.Init(samples + "/components") && holders.Read());
  EXPECT_TRUE(components.ImportFromXml(document_of(holders).c_str(), {}));
  tdbToolDB library("samples", 0);
  EXPECT_TRUE(library.Init(samples) && library.Read());
  EXPECT_TRUE(tools.Import(&library));
  EXPECT_TRUE(tools.ImportFromXml(document_of(tools).c_str(), {}));
  tdbError error;
  EXPECT_TRUE(tools.CloneTool(tools.GetTool(0, 1), error)) << error.message;
  tools.Sort(5, true);
  for (int i = 0; i < tools.GetToolCount(1); ++i) {
    tdbTool& tool = *tools.GetTool(i, 1);
    std::vector<Triangle<double>> mesh;
    tdbProfile::GetAssemblyShape(tool, nullptr, mesh, 0.2);
    scratch.MakeFile(tdbUtil::encoding_code(tool.GetCode()) + ".stl", tdbStlBinary(mesh));
  }
  EXPECT_TRUE(tools.Export(scratch.Path(), "exported", {}));
  scratch.MakeFile("sorted.xml", document_of(tools));
  EXPECT_FALSE(tools.HasReported() || components.HasReported());
  return scratch.Files();
}

TEST(SeparateDatabases, WorkOnSeparateThreadsAsOnOne) {
  std::array<Files, 3> results;
  std::vector<std::thread> threads;
  for (Files& result : results) threads.emplace_back([&result] { result = work(); });
  for (std::thread& thread : threads) thread.join();
  const Files alone = work();
  EXPECT_GT(alone.size(), 150U);
  for (const Files& result : results) EXPECT_TRUE(result == alone);
}

/// On which threads a host is called, and how often.
struct Calls {
  std::set<std::thread::id> threads;
  int count = 0;
};

/// A component whose copies call the host.
std::unique_ptr<tdbToolComponent> make_calling_component(const std::string& code, Calls& calls) {
  auto component = make_component(code);
  auto* const holder = dynamic_cast<tdbCompositeItem*>(component->GetItem(0));
  holder->AddItem(new tdbFixedLink(0));
  holder->SetPostAddItemCallback(
      [](void* context, tdbItem*) {
        auto& called = *static_cast<Calls*>(context);
        called.threads.insert(std::this_thread::get_id());
        ++called.count;
      },
      &calls);
  return component;
}

std::string listed(tdbToolDB& db) {
  std::string text;
  for (int i = 0; i < db.GetToolCount(1); ++i) {
    const tdbTool& tool = *db.GetTool(i, 1);
    text += tool.GetCode();
    tool.WriteXml(text, {});
  }
  return text;
}

// Folders and exports are read on all cores; neither order nor errors nor calls of the host tell.
TEST(ManyTools, ReadAtOnceAreAsReadOneByOne) {
  constexpr int kTools = 700;
  const ScratchFolder scratch;
  Calls calls;
  WatchedComponents components(1);
  auto component = make_calling_component("HOLDER", calls);
  ASSERT_TRUE(components.AddTool(component.get(), true) && component.release() != nullptr);
  std::vector<std::string> paths;
  std::string document = "<TOOLDB VER=\"7\">";
  for (int i = 0; i < kTools; ++i) {
    const std::string code = "T" + std::to_string(1000 + i);
    const std::string type = i % 50 == 49 ? "UNKNOWN" : "FLAT";
    const std::string use = i % 3 == 0 ? "<TOOLCOMPONENT NAME=\"h\" CODE=\"HOLDER\"/>" : "";
    const std::string tool = "<TOOL VER=\"7\" CODE=\"" + code +
                             "\" NAME=\"n\"><CUTTER NAME=\"c\" TYPE=\"" + type + "\"/>" + use +
                             "</TOOL>\n";
    paths.push_back(scratch.MakeFile(code + ".ktf", tool));
    document += tool;
  }

  WatchedTools one_by_one(1);
  WatchedTools at_once;
  WatchedTools imported(1);
  for (auto* const db : {&one_by_one, &at_once, &imported}) db->LinkToolComponents(&components);
  ASSERT_TRUE(at_once.Init(scratch.Path()));
  at_once.Forget();
  for (int i = 0; i < kTools; ++i) {
    std::unique_ptr<tdbTool> tool(at_once.GetTool(i, 2));
    if (tool == nullptr) continue;
    tool->Update();
    if (one_by_one.AddTool(tool.get(), false)) tool.release();
  }
  const std::string errors = at_once.Told(scratch);
  EXPECT_EQ(std::ranges::count(errors, '\n'), kTools / 50);
  const int calls_one_by_one = std::exchange(calls.count, 0);
  EXPECT_GT(calls_one_by_one, kTools / 4);

  at_once.Forget();
  std::vector<tdbTool> stored;
  at_once.GetTools(stored, 2);
  EXPECT_EQ(at_once.Told(scratch), errors);
  EXPECT_EQ(static_cast<int>(stored.size()), one_by_one.GetToolCount(1));
  calls.count = 0;
  at_once.Forget();
  EXPECT_TRUE(at_once.Read());
  EXPECT_EQ(at_once.Told(scratch), "log: Read: @\n" + errors);
  EXPECT_TRUE(listed(at_once) == listed(one_by_one));
  EXPECT_EQ(calls.count, calls_one_by_one);

  std::vector<tdbTool*> read;
  std::vector<tdbError> reasons;
  EXPECT_FALSE(tdbXmlReader::ReadTools(paths, {}, read, reasons, &components));
  WatchedTools many(1);
  for (std::size_t i = 0; i < read.size(); ++i) {
    EXPECT_EQ(read[i] == nullptr, i % 50 == 49);
    EXPECT_EQ(reasons[i].message.empty(), i % 50 != 49);
    if (read[i] == nullptr) continue;
    read[i]->Update();
    EXPECT_TRUE(many.AddTool(read[i], false));
  }
  EXPECT_TRUE(listed(many) == listed(one_by_one));

  EXPECT_FALSE(imported.ImportFromXml((document + "</TOOLDB>").c_str(), {}));
  for (int i = 0; i < imported.GetToolCount(1); ++i) imported.GetTool(i, 1)->Update();
  EXPECT_TRUE(listed(imported) == listed(one_by_one));
  EXPECT_EQ(calls.threads, std::set{std::this_thread::get_id()});
}

}  // namespace
}  // namespace tooldb
