#include <gtest/gtest.h>

#include "tests/profile/bodies.h"
#include "tooldb/model/type_tables.h"
#include "tooldb/placement.h"
#include "tooldb/profile.h"

namespace tooldb::test {
namespace {

// Cutter and shank of each kind of cutting tool with a parametric shank.
struct Pair {
  int tool;
  int cutter;
  int shank;
  double joint;   // height at which the shank begins
  double height;  // of the whole
};

constexpr Pair kPairs[] = {
    {0, 0, 0, 50, 110},     {1, 1, 0, 18.6603, 117.9904},
    {3, 2, 0, 40, 84.3301}, {4, 3, 0, 40, 101.4735},
    {5, 9, 6, 20, 60},      {6, 10, 7, 12, 77},
    {7, 12, 9, 20, 60},     {8, 17, 12, 20, 80},
    {9, 18, 13, 20, 60},    {10, 4, 0, 100, 160},
    {11, 1, 0, 4.5, 124.5}, {12, 16, 11, 4, 54},
    {13, 19, 14, 30, 80},   {14, 22, 15, 16, 66},
    {15, 13, 10, 25, 102},  {16, 11, 8, 40, 144},
    {26, 23, 16, 22, 100},  {25, 7, 0, 23.6985, 53.6985},
};

std::unique_ptr<tdbCuttingTool> make_pair(const Pair& pair) {
  auto tool = std::make_unique<tdbCuttingTool>(new tdbToolCutter(pair.cutter),
                                               new tdbToolShank(pair.shank), pair.tool);
  tool->InitParams();
  return tool;
}

double updated_height(tdbCuttingTool& tool) {
  tool.Update();
  return tool.GetShank()->GetAbsPos()(2, 3);
}

class JoinedPair : public testing::TestWithParam<Pair> {};
INSTANTIATE_TEST_SUITE_P(Kinds, JoinedPair, testing::ValuesIn(kPairs), [](const auto& row) {
  return std::string(type_name(kCuttingToolTypes, row.param.tool, "none"));
});

TEST_P(JoinedPair, StandsAndSitsOnTheCutter) {
  const auto tool = make_pair(GetParam());
  EXPECT_EQ(tdbProfile::OutlineError(*tool->GetCutter()), "");
  EXPECT_EQ(tdbProfile::OutlineError(*tool->GetShank()), "");
  EXPECT_NEAR(updated_height(*tool), GetParam().joint, 5e-5);
  EXPECT_NEAR(GetParam().joint + tool->GetShank()->GetLength(), GetParam().height, 5e-4);
  EXPECT_EQ(tool->GetShank()->GetPos(), Transformation<double>());
}

TEST(Joining, FollowsTheCutterAndCarriesWhatHangsBelow) {
  const auto tool = make_pair(kPairs[0]);
  auto* holder = new tdbToolHolder(0);
  holder->SetPos(tdbMakePlacement({0, 0, 60}, {}));
  tool->GetShank()->AddItem(holder);
  tool->Update();
  EXPECT_EQ(holder->GetAbsPos()(2, 3), 110);
  tool->Visit([](void*, tdbItem* item) { item->SetModified(false); }, nullptr);
  tool->GetCutter()->SetParam("HEIGHT", "30");
  tool->GetCutter()->SetPos(tdbMakePlacement({1, 0, 7}, {}));
  EXPECT_EQ(updated_height(*tool), 37);
  EXPECT_EQ(tool->GetShank()->GetAbsPos()(0, 3), 1);
  EXPECT_TRUE(tool->GetShank()->IsModified()) << "it moved with the cutter";
  EXPECT_EQ(holder->GetAbsPos()(2, 3), 97);
}

TEST(Joining, IsOfParametricShanksToTheTopOfWhateverOutline) {
  const auto height = [](int cutter, std::string_view outline, int shank) {
    tdbCuttingTool tool(new tdbToolCutter(cutter), new tdbToolShank(shank), 0);
    tool.GetCutter()->SetProfileXml(contour_of(outline).c_str());
    return updated_height(tool);
  };
  for (const int shank : {2, 3, 5}) EXPECT_EQ(height(0, "", shank), 0) << shank;
  EXPECT_EQ(height(5, "0 0 ; 5 0 ; 5 30 ; 2 28", 0), 30);
  EXPECT_EQ(height(5, "", 0), 0);           // refused as it is
  EXPECT_EQ(height(6, "0 0 ; 5 9", 0), 0);  // a model has no outline at all
}

TEST(Joining, DeltaZMovesAJoinedShankOnce) {
  const auto joined = make_pair(kPairs[0]);
  joined->AddDeltaZCutterAndShank(5);
  EXPECT_EQ(updated_height(*joined), 55);
  joined->GetShank()->SetPos(tdbMakePlacement({0, 0, 60}, {}));
  joined->AddDeltaZCutterAndShank(-2);
  EXPECT_EQ(updated_height(*joined), 58);
  EXPECT_EQ(joined->GetCutter()->GetPos()(2, 3), 3);
}

}  // namespace
}  // namespace tooldb::test
