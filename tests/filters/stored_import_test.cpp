#include <gtest/gtest.h>

#include <filesystem>

#include "tests/filters/import_reports.h"
#include "tooldb/tool_components_db.h"
#include "tooldb/tool_db.h"

namespace tooldb {
namespace {

namespace fs = std::filesystem;

/// A folder of its own for each source, empty at the start and gone at the end.
class StoredImport : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    fs::remove_all(folder_);
    fs::create_directories(folder_ / "components");
  }
  void TearDown() override { fs::remove_all(folder_); }

  void Store(ImportResult result) {
    tdbToolComponentsDB components("components", 0);
    tdbToolDB tools("tools", 0);
    ASSERT_TRUE(components.Init((folder_ / "components").string()));
    ASSERT_TRUE(tools.Init(folder_.string()));
    tools.LinkToolComponents(&components);
    tdbError error;
    for (ImportEntry& entry : result.entries) {
      if (entry.component) {
        ASSERT_TRUE(components.AddTool(entry.component.get(), error, false));
        entry.component.release();
      }
      if (!entry.tool) continue;
      ASSERT_TRUE(tools.AddTool(entry.tool.get(), error, false)) << error.message;
      entry.tool.release();
    }
  }

  fs::path folder_ = fs::path(testing::TempDir()) /
                     (std::string("stored_import_") + fs::path(GetParam()).stem().string());
};

/// Lengths in a file have six digits.
void expect_same_tool(tdbTool& imported, tdbTool& stored) {
  SCOPED_TRACE(imported.GetCode());
  EXPECT_FALSE(stored.HasError());
  EXPECT_STREQ(stored.GetDescr(), imported.GetDescr());
  EXPECT_EQ(stored.GetParamList(), imported.GetParamList());
  EXPECT_EQ(stored.GetUnitOfMeasurement(), imported.GetUnitOfMeasurement());
  EXPECT_NEAR(stored.GetLength(), imported.GetLength(), 1e-5 * (1 + imported.GetLength()));
  EXPECT_NEAR(stored.GetDiameter(), imported.GetDiameter(), 1e-9);
  ASSERT_EQ(stored.GetCutterCount(), imported.GetCutterCount());
  ASSERT_EQ(stored.GetHolderCount(), imported.GetHolderCount());
  for (int i = 0; i < imported.GetCutterCount(); ++i) {
    EXPECT_EQ(dimensions(*stored.GetCutter(i)), dimensions(*imported.GetCutter(i)));
    EXPECT_STREQ(stored.GetCutter(i)->GetProfileXml(), imported.GetCutter(i)->GetProfileXml());
  }
  for (int i = 0; i < imported.GetHolderCount(); ++i) {
    EXPECT_STREQ(stored.GetHolder(i)->GetProfileXml(), imported.GetHolder(i)->GetProfileXml());
  }
}

TEST_P(StoredImport, IsTheSameWhenItIsReadAgain) {
  ImportResult result = import_sample(GetParam());
  Store(import_sample(GetParam()));
  tdbToolComponentsDB components("components", 0);
  tdbToolDB tools("tools", 0);
  ASSERT_TRUE(components.Init((folder_ / "components").string()) && components.Read());
  ASSERT_TRUE(tools.Init(folder_.string()));
  tools.LinkToolComponents(&components);
  ASSERT_TRUE(tools.Read());
  int compared = 0;
  for (const ImportEntry& entry : result.entries) {
    if (!entry.tool) continue;
    tdbTool* stored = tools.GetToolByCode(entry.tool->GetCode(), 1);
    ASSERT_NE(stored, nullptr) << entry.tool->GetCode();
    expect_same_tool(*entry.tool, *stored);
    ++compared;
  }
  EXPECT_EQ(compared, tools.GetToolCount(1));
  EXPECT_GT(compared, 0);
}

INSTANTIATE_TEST_SUITE_P(Samples, StoredImport,
                         testing::Values("freecad/nibbler-v1-2/Library/NibblerBOT.fctl",
                                         "freecad/btl/Library/Default.fctl",
                                         "fusion/matsuura-mx330.json", "fusion/haas-st30ssy.json",
                                         "fusion/loobric sample.json", "fusion/ollema.tools"));

}  // namespace
}  // namespace tooldb
