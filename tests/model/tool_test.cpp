#include "tooldb/tool.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "geom/euler_angles.h"
#include "tooldb/tool_parts.h"

namespace {

using VarIndex = OFFSET_VALUE::VarIndex;

TEST(Tool, KeepsLengthAndColorInTheirRange) {
  tdbTool tool("T1");
  tool.SetOffset(1, 2, 3);
  EXPECT_EQ(tool.GetLength(), 3);
  tool.SetLength(50);
  EXPECT_EQ(tool.GetOffset(), (Vec3d<double>{0, 0, 50}));
  for (const auto& [given, kept] : {std::pair{25, 19}, {-3, 0}, {7, 7}}) {
    tool.SetTraceColor(given);
    EXPECT_EQ(tool.GetTraceColor(), kept);
  }
}

TEST(Tool, ParameterPairsMayRepeat) {
  tdbTool tool("T1");
  tool.AddParam("A", "1");
  tool.AddParam("B", "2");
  tool.AddParam("A", "3");
  EXPECT_EQ(tool.GetParamIndex("A"), 0);
  EXPECT_EQ(tool.GetParamIndex("a"), -1);
  EXPECT_STREQ(tool.GetParamValue("C"), "");
  EXPECT_EQ(tool.SetParamValue("C", "x"), -1);
  EXPECT_EQ(tool.GetParamCount(), 3);
  EXPECT_FALSE(tool.SetParamValue(3, "x"));
  EXPECT_FALSE(tool.SetParamValue(-1, "x"));
  EXPECT_EQ(tool.SetParamValue("A", "9"), 0);
  tool.RemoveParam(0);
  EXPECT_STREQ(tool.GetParamValue("A"), "3");
}

TEST(Tool, AnOffsetIsSetOnANewAndOnAnExistingRecord) {
  constexpr int kMost = std::numeric_limits<int>::max();
  const struct {
    VarIndex field;
    double value;
    OFFSET_VALUE appended;  ///< by the call on an empty list
    OFFSET_VALUE set;       ///< by the same call on that record
  } kCases[] = {
      {VarIndex::DX, 1.5, {.DX = 1.5}, {.DX = 1.5}},
      {VarIndex::DY, -2.5, {.DY = -2.5}, {.DY = -2.5}},
      {VarIndex::DZ, 3.9, {.DZ = 3.9}, {.DZ = 3.9}},
      {VarIndex::RAD, 4.9, {.RAD = 4.9}, {.RAD = 4.9}},
      {VarIndex::POS, 3.9, {.POS = 3}, {.POS = 3}},
      {VarIndex::POS, -3.9, {.POS = -3}, {.POS = -3}},
      {VarIndex::POS, 1e300, {.POS = kMost}, {.POS = kMost}},
      {VarIndex::ABS, 1, {}, {.ABS = true}},
      {VarIndex::ABS, 0.9, {}, {}},
  };
  for (auto row : kCases) {
    tdbTool tool("T1");
    for (OFFSET_VALUE* expected : {&row.appended, &row.set}) {
      expected->index = 7;
      tool.AddOffsetParam(7, row.field, row.value);
      ASSERT_EQ(tool.GetOffsetParamCount(), 1);
      EXPECT_EQ(tool.GetOffsetParam(0), *expected) << row.value;
    }
  }
}

TEST(Tool, OffsetRecordsAreKeyedByTheirFirstIndex) {
  tdbTool tool("T1");
  OFFSET_VALUE value;
  value.index = 3;
  tool.AddOffsetParam(value);
  tool.AddOffsetParam(value);
  value.DX = 4;
  value.index = 8;
  tool.AddOffsetParam(3, value);
  EXPECT_EQ(tool.GetOffsetParamCount(), 2);
  EXPECT_EQ(tool.GetOffsetParam(0), value) << "the index field is overwritten too";
  tool.AddOffsetParam(1, static_cast<VarIndex>(6), 5);
  EXPECT_EQ(tool.GetOffsetParamCount(), 2);
  EXPECT_EQ(tool.GetOffsetParam(2), OFFSET_VALUE());
  tool.RemoveOffsetParam(2);
  tool.RemoveOffsetParam(0);
  EXPECT_EQ(tool.GetOffsetParam(0).index, 3);
}

/// Holder "H" with cutting tool (cutter of diameter 8, shank) below it, then cutter "last".
std::unique_ptr<tdbTool> assembled_tool() {
  auto tool = std::make_unique<tdbTool>("T1");
  auto* holder = new tdbToolHolder(0);
  auto* inner_holder = new tdbToolHolder(1);
  auto* cutter = new tdbToolCutter(0);
  cutter->SetDiameter(8);
  cutter->SetName("first");
  auto* cutting_tool = new tdbCuttingTool(cutter, new tdbToolShank(2), 2);
  cutting_tool->SetPos(tooldb::join_zyx({}, {0, 0, -40}));
  inner_holder->AddItem(cutting_tool);
  holder->AddItem(inner_holder);
  tool->AddHolder(holder);
  tool->AddCutter(new tdbToolCutter(0));
  tool->GetCutter(1)->SetName("last");
  return tool;
}

TEST(Tool, PartsAreFoundDepthFirst) {
  const auto tool = assembled_tool();
  EXPECT_EQ(tool->GetCutterCount(), 2);
  EXPECT_EQ(tool->GetShankCount(), 1);
  EXPECT_EQ(tool->GetHolderCount(), 2);
  EXPECT_EQ(tool->GetCutter(0)->GetName(), "first");
  EXPECT_EQ(tool->GetHolder(1)->GetParent(), tool->GetHolder(0));
  for (const int i : {-1, 2}) EXPECT_EQ(tool->GetCutter(i), nullptr);
  tool->RemoveAllCutters();
  tool->RemoveAllShanks();
  tool->AddShank(new tdbToolShank(0));
  EXPECT_EQ(tool->GetCutterCount(), 2);
  EXPECT_EQ(tool->GetShankCount(), 2);
}

TEST(Tool, UpdateTakesDiameterAndOffsetFromTheFirstCutter) {
  const auto tool = assembled_tool();
  tool->Update();
  EXPECT_EQ(tool->GetDiameter(), 8);
  EXPECT_EQ(tool->GetOffset(), (Vec3d<double>{0, 0, 40}));
  EXPECT_EQ(tool->GetAbsPosCutter(0)(2, 3), -40);
  EXPECT_EQ(tool->GetAbsPosCutter(9), Transformation<double>());

  tool->SetAutoTcp(false);
  tool->SetOffset(1, 2, 3);
  tool->GetCutter(0)->SetDiameter(9);
  tool->Update();
  EXPECT_EQ(tool->GetDiameter(), 9);
  EXPECT_EQ(tool->GetOffset(), (Vec3d<double>{1, 2, 3}));

  tdbTool bare("T2");
  bare.SetDiameter(5);
  bare.Update();
  EXPECT_EQ(bare.GetDiameter(), 5);
}

TEST(Tool, RemovedHoldersStayListedByTheirParents) {
  auto tool = assembled_tool();
  tdbToolHolder* outer = tool->GetHolder(0);
  tool->RemoveAllHolders();
  ASSERT_EQ(tool->GetItemCount(), 2U);
  EXPECT_EQ(tool->GetItem(0), outer) << "the pointer is dead, and still there";
  // The list still owns the dead pointer: take the living child out and let go of the rest.
  const std::unique_ptr<tdbItem> last(tool->GetItem(1));
  tool->RemoveItem(last.get(), true);
  EXPECT_TRUE(tool->RemoveItem(outer, true));
}

}  // namespace
