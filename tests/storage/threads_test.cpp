#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "tests/storage/watched_database.h"
#include "tooldb/profile.h"
#include "tooldb/stl.h"

namespace tooldb {
namespace {

/// A library and its components, each in a folder of its own, filled from the samples.
class Work {
 public:
  Work() {
    tools_.LinkToolComponents(&components_);
    EXPECT_TRUE(tools_.Create(scratch_.Path("tools")));
    EXPECT_TRUE(components_.Create(scratch_.Path("components")));
  }

  /// What a host does with a library: read, import, change, sort, mesh, write.
  void Run() {
    const std::string samples = TOOLDB_SOURCE_DIR "/examples/library";
    tdbToolComponentsDB holders("samples", 0);
    EXPECT_TRUE(holders.Init(samples + "/components") && holders.Read());
    EXPECT_TRUE(components_.ImportFromXml(Document(holders).c_str(), {}));
    tdbToolDB library("samples", 0);
    EXPECT_TRUE(library.Init(samples) && library.Read());
    EXPECT_TRUE(tools_.Import(&library));
    EXPECT_TRUE(tools_.ImportFromXml(Document(tools_).c_str(), {}));
    tdbError error;
    EXPECT_TRUE(tools_.CloneTool(tools_.GetTool(0, 1), error)) << error.message;
    tools_.Sort(5, true);
    for (int i = 0; i < tools_.GetToolCount(1); ++i) WriteMesh(*tools_.GetTool(i, 1));
    EXPECT_TRUE(tools_.Export(scratch_.Path(), "exported", {}));
    scratch_.MakeFile("sorted.xml", Document(tools_));
    EXPECT_FALSE(tools_.HasReported() || components_.HasReported());
  }

  std::map<std::string, std::string> Files() const { return scratch_.Files(); }

 private:
  static std::string Document(const tdbObject& object) {
    std::string text;
    object.WriteXml(text, {});
    return text;
  }

  void WriteMesh(tdbTool& tool) const {
    std::vector<Triangle<double>> mesh;
    tdbProfile::GetAssemblyShape(tool, nullptr, mesh, 0.2);
    scratch_.MakeFile(tdbUtil::encoding_code(tool.GetCode()) + ".stl", tdbStlBinary(mesh));
  }

  ScratchFolder scratch_;
  WatchedTools tools_;
  WatchedComponents components_;
};

TEST(SeparateDatabases, WorkOnSeparateThreadsAsOnOne) {
  std::array<Work, 4> works;
  std::vector<std::thread> threads;
  for (std::size_t i = 1; i < works.size(); ++i) {
    threads.emplace_back([&work = works[i]] { work.Run(); });
  }
  for (std::thread& thread : threads) thread.join();
  works[0].Run();
  const auto alone = works[0].Files();
  EXPECT_GT(alone.size(), 150U);
  for (std::size_t i = 1; i < works.size(); ++i) {
    EXPECT_TRUE(works[i].Files() == alone) << "thread " << i;
  }
}

}  // namespace
}  // namespace tooldb
