#include <gtest/gtest.h>

#include "tooldb/tool_parts.h"

namespace {

Transformation<double> shifted(double x, double y, double z) {
  Transformation<double> t;
  t(0, 3) = x;
  t(1, 3) = y;
  t(2, 3) = z;
  return t;
}

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
  root.SetPos(shifted(100, 0, 0));
  auto* link = new tdbFixedLink(0);
  auto* cutter = new tdbToolCutter(0);
  root.AddItem(link);
  link->AddItem(cutter);
  EXPECT_EQ(cutter->GetRoot(), &root);
  std::vector<tdbItem*> parents{nullptr};
  cutter->GetParents(parents);
  root.GetParents(parents);
  EXPECT_EQ(parents, (std::vector<tdbItem*>{nullptr, link, &root}));

  Transformation<double> turned;  // a quarter turn about Z
  turned(0, 0) = turned(1, 1) = 0;
  turned(0, 1) = -1;
  turned(1, 0) = 1;
  turned(2, 3) = 5;
  link->SetPos(turned);
  cutter->SetPos(shifted(2, 0, 0));
  root.Update();
  EXPECT_EQ(root.GetAbsPos(), Transformation<double>()) << "a root's position is not its absolute";
  EXPECT_EQ(link->GetAbsPos(), turned);
  EXPECT_EQ(cutter->GetAbsPos(), turned * shifted(2, 0, 0));
  EXPECT_EQ(cutter->GetAbsPos()(1, 3), 2);
  EXPECT_TRUE(cutter->IsModified());
}

}  // namespace
