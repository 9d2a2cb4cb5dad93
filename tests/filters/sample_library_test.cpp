#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/filters/import_reports.h"
#include "tooldb/tool_components_db.h"
#include "tooldb/tool_db.h"

namespace tooldb {
namespace {

int report(void*, const tdbToolDB*, tdbError* error) {
  ADD_FAILURE() << error->message;
  return 0;
}

/// What the library holds, gathered over its tools.
struct Contents {
  std::set<std::string> kinds;
  std::set<int> units;
  std::map<std::string, int> uses_of_components;
  int links = 0;
};

void gather(void* context, tdbItem* item) {
  auto& contents = *static_cast<Contents*>(context);
  if (auto* cutting = dynamic_cast<tdbCuttingTool*>(item)) {
    contents.kinds.insert(cutting->GetTypeName());
  }
  if (dynamic_cast<tdbToolComponent*>(item) != nullptr) {
    ++contents.uses_of_components[item->GetCode()];
  }
  contents.links += dynamic_cast<tdbFixedLink*>(item) != nullptr;
  if (auto* cutter = dynamic_cast<tdbToolCutter*>(item)) {
    EXPECT_TRUE(cutter->BuildProfile()) << dimensions(*cutter);
  }
  if (auto* holder = dynamic_cast<tdbToolHolder*>(item)) {
    EXPECT_GT(holder->GetLength(), 0) << holder->GetName();
  }
}

TEST(SampleLibrary, ReadsWithoutAComplaintAndShowsWhatThereIs) {
  const std::string folder = TOOLDB_SAMPLE_LIBRARY;
  tdbToolComponentsDB components("components", 0);
  tdbToolDB tools("tools", 0);
  tools.SetErrorCallback(report, nullptr);
  ASSERT_TRUE(components.Init(folder + "/components") && components.Read());
  ASSERT_TRUE(tools.Init(folder));
  tools.LinkToolComponents(&components);
  ASSERT_TRUE(tools.Read());
  EXPECT_GE(tools.GetToolCount(1), 40);
  Contents contents;
  for (int i = 0; i < tools.GetToolCount(1); ++i) {
    tdbTool& tool = *tools.GetTool(i, 1);
    SCOPED_TRACE(tool.GetCode());
    EXPECT_FALSE(tool.HasError());
    EXPECT_STRNE(tool.GetDescr(), "");
    contents.units.insert(tool.GetUnitOfMeasurement());
    tool.Visit(gather, &contents);
  }
  EXPECT_GE(contents.kinds.size(), 10U);
  EXPECT_EQ(contents.units.size(), 2U);
  EXPECT_GE(contents.uses_of_components["1/8 shrink fit Dual Contact"], 2);
  EXPECT_GE(contents.links, 1);
}

}  // namespace
}  // namespace tooldb
