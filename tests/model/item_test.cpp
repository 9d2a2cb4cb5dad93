#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "tests/geom/row_name.h"
#include "tooldb/tool_parts.h"

namespace {

Transformation<double> shifted(double x, double y, double z) {
  Transformation<double> t;
  t(0, 3) = x;
  t(1, 3) = y;
  t(2, 3) = z;
  return t;
}

TEST(Item, AParameterThatIsNotSetYieldsTheDefaultItself) {
  tdbToolCutter cutter;
  const char* fallback = "d";
  EXPECT_EQ(cutter.GetParam("X", fallback), fallback);
  EXPECT_EQ(cutter.GetParam("X", nullptr), nullptr);
}

TEST(Item, ANullValueChangesNothingAndAnEmptyOneIsKept) {
  tdbToolCutter cutter;
  cutter.SetParam("X", nullptr);
  EXPECT_FALSE(cutter.IsModified());
  cutter.SetParam("X", "");
  EXPECT_STREQ(cutter.GetParam("X", "d"), "");
  cutter.SetModified(false);
  cutter.SetParam("X", "");
  EXPECT_TRUE(cutter.IsModified()) << "setting the same value marks the item too";
}

TEST(Item, ParametersAreOrderedByTheirBytes) {
  tdbToolCutter cutter;
  for (const char* name : {"b", "\xC3\xA4", "B", "a1", "a"}) cutter.SetParam(name, "1");
  std::string order;
  for (const auto& [name, value] : cutter.GetParams()) order += name + " ";
  EXPECT_EQ(order, "B a a1 b \xC3\xA4 ");
}

TEST(Item, InterferenceTextReplacesItsArgument) {
  tdbToolHolder holder(0);
  std::string out = "before";
  holder.WriteInterfSettingsXml(out);
  EXPECT_EQ(out, R"(INTERF_INH="TRUE" INTERF_TYPE="ALLOWED_INTERF" INTERF_VAL="0")");
  tdbInterferenceSettings settings;
  settings.inherit = false;
  settings.type = 1;
  settings.value = 1234567;
  holder.SetInterferenceSettings(settings);
  holder.WriteInterfSettingsXml(out);
  EXPECT_EQ(out, R"(INTERF_INH="FALSE" INTERF_TYPE="NEAR_MISS" INTERF_VAL="1.23457e+06")");
}

TEST(Item, CopiesStartInterferenceAnewAndAssignmentKeepsTheTargetsOwn) {
  tdbInterferenceSettings near_miss;
  near_miss.inherit = false;
  near_miss.type = 1;
  near_miss.value = 2;
  tdbToolHolder source(1);
  source.SetInterferenceSettings(near_miss);
  const tdbToolHolder copy(source);
  EXPECT_TRUE(copy.GetInterferenceSettings().inherit);
  EXPECT_EQ(copy.GetInterferenceSettings().type, 0);

  const tdbToolHolder plain(1);
  source = plain;
  EXPECT_EQ(source.GetInterferenceSettings().type, 1);
  EXPECT_EQ(source.GetInterferenceSettings().value, 2);
}

struct Change {
  const char* name;
  std::function<void(tdbToolHolder&)> apply;
  bool equal;
};

class ItemEquality : public testing::TestWithParam<Change> {};

TEST_P(ItemEquality, SeesWhatDescribesTheItem) {
  const tdbToolHolder original(1);
  tdbToolHolder changed(1);
  ASSERT_EQ(original, changed);
  GetParam().apply(changed);
  EXPECT_EQ(original == changed, GetParam().equal);
  EXPECT_EQ(original != changed, !GetParam().equal);

  tdbToolHolder assigned(0);
  assigned = changed;
  EXPECT_EQ(assigned == tdbToolHolder(changed), !std::isnan(changed.GetPos()(0, 3)));
}

INSTANTIATE_TEST_SUITE_P(
    Fields, ItemEquality,
    testing::Values(Change{"Name", [](auto& i) { i.SetName("n"); }, false},
                    Change{"Code", [](auto& i) { i.SetCode("c"); }, false},
                    Change{"Version", [](auto& i) { i.SetVersion(2); }, false},
                    Change{"Flags", [](auto& i) { i.SetFlags(4); }, false},
                    Change{"Type", [](auto& i) { i.SetType(2); }, false},
                    Change{"Red", [](auto& i) { i.GetMaterial().red = 0; }, false},
                    Change{"Map", [](auto& i) { i.GetMaterial().environmentMap = "m"; }, false},
                    Change{"FileUnits", [](auto& i) { i.SetFileUnits(1); }, false},
                    Change{"ShapeFile", [](auto& i) { i.SetShapeFilePath("f"); }, false},
                    Change{"Options", [](auto& i) { i.SetFileOptions("o"); }, false},
                    Change{"Pos", [](auto& i) { i.SetPos(shifted(0, 0, 1e-300)); }, false},
                    Change{"NanPos", [](auto& i) { i.SetPos(shifted(std::nan(""), 0, 0)); }, false},
                    Change{"ShapePos", [](auto& i) { i.SetShapePos(shifted(1, 0, 0)); }, false},
                    Change{"Profile", [](auto& i) { i.SetProfileXml("p"); }, false},
                    Change{"Component", [](auto& i) { i.SetItemComponent(true); }, false},
                    Change{"Spinning", [](auto& i) { i.SetEnableSpinning(true); }, false},
                    Change{"Param", [](auto& i) { i.SetParam("A", ""); }, false},
                    Change{"Unit", [](auto& i) { i.SetUnitOfMeasurement(1); }, false},
                    Change{"Child", [](auto& i) { i.AddItem(new tdbFixedLink(0)); }, false},
                    Change{"Modified", [](auto& i) { i.SetModified(true); }, true},
                    Change{"Hidden", [](auto& i) { i.HideShape(true); }, true},
                    Change{"Interference",
                           [](auto& i) {
                             tdbInterferenceSettings s;
                             s.type = 1;
                             i.SetInterferenceSettings(s);
                           },
                           true}),
    row_name<Change>);

TEST(Item, UpdateFollowsTheParentAndLeavesARootAlone) {
  tdbToolHolder root(1);
  root.SetPos(shifted(100, 0, 0));
  auto* link = new tdbFixedLink(0);
  auto* cutter = new tdbToolCutter(0);
  root.AddItem(link);
  link->AddItem(cutter);
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

TEST(Item, RootAndParentsWalkTheLinks) {
  tdbToolHolder root(1);
  auto* link = new tdbFixedLink(0);
  auto* cutter = new tdbToolCutter(0);
  root.AddItem(link);
  link->AddItem(cutter);
  EXPECT_EQ(cutter->GetRoot(), &root);
  std::vector<tdbItem*> parents{nullptr};
  cutter->GetParents(parents);
  EXPECT_EQ(parents, (std::vector<tdbItem*>{nullptr, link, &root}));
  root.GetParents(parents);
  EXPECT_EQ(parents.size(), 3U);
}

}  // namespace
