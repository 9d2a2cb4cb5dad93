// Calls without what they work on: no text, no item, no folder.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/storage/watched_database.h"

namespace tooldb {
namespace {

using testing::IsEmpty;
using testing::StartsWith;

TEST(EmptyCalls, OnDatabasesTellNothing) {
  WatchedTools tools(1);
  tdbToolComponentsDB components("components", 1);
  tdbToolComponent use(0, "use", "C");
  EXPECT_TRUE(tools.AllowTool(nullptr));
  EXPECT_EQ(tools.GetToolByCode("T", 2), nullptr);
  tools.LoadToolComponent(&use);  // no components are linked
  tools.LinkToolComponents(&components);
  tools.LoadToolComponent(nullptr);
  tdbToolDB::BeforeDeleteComponent(&tools, nullptr);
  tdbToolDB::BeforeDeleteComponent(nullptr, &use);
  tools.Error(nullptr);
  tools.RemoveTempTools();
  tools.SetFolderPath(nullptr);
  tools.Deprecated_SetPath(nullptr);
  components.Error(nullptr);
  components.Error(1, "nobody listens");
  components.Log("nobody listens");
  EXPECT_FALSE(tools.HasReported());
}

TEST(EmptyCalls, OnFilesTellNothingAndTouchNothing) {
  const ScratchFolder scratch;
  std::string folder = scratch.Path();
  tdbFileManager with_folder;
  tdbError error(7, "the caller's");
  ASSERT_TRUE(with_folder.Init(folder, error));
  EXPECT_FALSE(with_folder.InsertItem(nullptr, error));
  EXPECT_FALSE(with_folder.UpdateItem("T", nullptr, error));
  EXPECT_FALSE(with_folder.DeleteItem(nullptr, error));
  EXPECT_FALSE(with_folder.CopyShapeFileToFolder(nullptr, folder, error));
  EXPECT_TRUE(with_folder.Delete(error));
  EXPECT_EQ(error.message, "the caller's");
  tdbFileManager without;
  tdbTool tool("T");
  std::string text;
  std::vector<std::string> names;
  EXPECT_FALSE(without.Create(text, error));
  EXPECT_FALSE(without.InsertItem(&tool, error));
  EXPECT_FALSE(without.UpdateItem("T", &tool, error));
  EXPECT_FALSE(without.DeleteItem(&tool, error));
  EXPECT_FALSE(without.ReadItem("T", ".ktf", text, error));
  EXPECT_FALSE(without.Read(names, ".ktf", error));
  EXPECT_EQ(error.code, 7);
  EXPECT_THAT(scratch.Files(), IsEmpty());
}

TEST(Databases, StayAsTheyAreWhenAssignedToThemselves) {
  tdbToolDB tools("tools", 1);
  const tdbToolDB& same_tools = tools;
  tdbToolComponentsDB components;
  EXPECT_FALSE(components.Available()) << "it has no folder";
  components = tdbToolComponentsDB("components", 1);
  const tdbToolComponentsDB& same_components = components;
  add_tool(tools, "T");
  add_component(components, "C");
  components.Deprecated_SetPath("legacy");
  tools = same_tools;
  components = same_components;
  EXPECT_EQ(tools.GetToolCount(1), 1);
  EXPECT_EQ(components.GetCount(1), 1);
  const std::unique_ptr<tdbObject> clone(components.Clone());
  EXPECT_EQ(clone->GetName(), "components");
  EXPECT_EQ(dynamic_cast<tdbToolComponentsDB&>(*clone).GetCount(1), 0);
  EXPECT_EQ(components.Deprecated_GetKtcPath(), "legacy");
  EXPECT_EQ(dynamic_cast<tdbToolComponentsDB&>(*clone).Deprecated_GetKtcPath(), "");
}

TEST(CodeText, IsMadeFitForFileNames) {
  const struct {
    const char *code, *encoded, *replaced;
    bool fits;
  } kCodes[] = {{"", "", "", true},
                {"T 1-\xC3\xA9", "T 1-\xC3\xA9", "T 1-\xC3\xA9", true},
                {"a|b", "a{{124}}b", "a_?b", false},
                {"A/B:\\", "A{{47}}B{{58}}{{92}}", "A_?B_?_?", false}};
  for (const auto& [code, encoded, replaced, fits] : kCodes) {
    EXPECT_EQ(tdbUtil::replace_not_windows_char_code(code), encoded);
    EXPECT_EQ(tdbUtil::replace_not_windows_char_with_str(code, "_?"), replaced);
    EXPECT_EQ(tdbUtil::is_valid_windows_string(code), fits);
  }
  EXPECT_EQ(tdbUtil::trim_left(" \t a b ", " \t"), "a b ");
  EXPECT_EQ(tdbUtil::trim_left("  ", " "), "");
}

TEST(ParentText, NamesTheChainOfAMember) {
  tdbTool tool("T", "tool");
  auto* component = make_component("C").release();
  tool.AddItem(component);
  std::string text = "in ";
  tdbUtil::build_parent_string(nullptr, text);
  tdbUtil::build_parent_string(component->GetItem(0), text);
  EXPECT_THAT(text, StartsWith("in \\tool\\C\\Holder"));
  EXPECT_TRUE(tdbUtil::component_is_nested_to_component(component->GetItem(0)));
  EXPECT_TRUE(tdbUtil::component_is_nested_to_component(component));
  EXPECT_FALSE(tdbUtil::component_is_nested_to_component(&tool));
  EXPECT_FALSE(tdbUtil::component_is_nested_to_component(nullptr));
}

}  // namespace
}  // namespace tooldb
