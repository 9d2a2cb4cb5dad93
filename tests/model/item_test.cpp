#include <gtest/gtest.h>

#include "geom/euler_angles.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

TEST(Item, ParametersAreSetByAnythingButNull) {
  tdbToolCutter cutter;
  const char* fallback = "d";
  EXPECT_EQ(cutter.GetParam("X", fallback), fallback) << "the default itself";
  EXPECT_EQ(cutter.GetParam("X", nullptr), nullptr);
  cutter.SetParam("X", nullptr);
  EXPECT_FALSE(cutter.IsModified());
  for (int time = 0; time < 2; ++time) {
    cutter.SetParam("X", "");
    EXPECT_STREQ(cutter.GetParam("X", "d"), "");
    EXPECT_TRUE(cutter.IsModified()) << "by the same value too";
    cutter.SetModified(false);
  }
}

TEST(Item, CopiesStartInterferenceAnewAndAssignmentKeepsTheTargetsOwn) {
  tdbToolHolder source(1);
  source.SetInterferenceSettings({false, 1, 2});
  const tdbToolHolder copy(source);
  EXPECT_TRUE(copy.GetInterferenceSettings().inherit);
  EXPECT_EQ(copy.GetInterferenceSettings().type, 0);
  source = copy;
  EXPECT_EQ(source.GetInterferenceSettings().type, 1);
  EXPECT_EQ(source.GetInterferenceSettings().value, 2);
}

TEST(Item, FollowsItsParents) {
  tdbToolHolder root(1);
  root.SetPos(join_zyx({}, {100, 0, 0}));
  auto* link = new tdbFixedLink(0);
  auto* cutter = new tdbToolCutter(0);
  root.AddItem(link);
  link->AddItem(cutter);
  EXPECT_EQ(cutter->GetRoot(), &root);
  std::vector<tdbItem*> parents{nullptr};
  cutter->GetParents(parents);
  root.GetParents(parents);
  EXPECT_EQ(parents, (std::vector<tdbItem*>{nullptr, link, &root}));

  const auto turned = join_zyx({90, 0, 0}, {0, 0, 5});
  const auto shifted = join_zyx({}, {2, 0, 0});
  link->SetPos(turned);
  cutter->SetPos(shifted);
  root.Update();
  EXPECT_EQ(root.GetAbsPos(), Transformation<double>()) << "a root's position is not its absolute";
  EXPECT_EQ(link->GetAbsPos(), turned);
  EXPECT_EQ(cutter->GetAbsPos(), turned * shifted);
  EXPECT_EQ(cutter->GetAbsPos()(1, 3), 2);
  EXPECT_TRUE(cutter->IsModified());
}

}  // namespace
}  // namespace tooldb
