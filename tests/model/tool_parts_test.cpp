#include "tooldb/tool_parts.h"

#include <gtest/gtest.h>

#include <climits>

#include "tooldb/model/type_tables.h"

namespace {

TEST(TypeTables, EveryNameIsFoundAgainAndNoneTwice) {
  const auto check = [](const auto& table) {
    for (const auto& row : table) {
      EXPECT_EQ(tooldb::type_code(table, row.name), row.code) << row.name;
      EXPECT_NE(tooldb::type_name(table, row.code, "?"), "?");
    }
  };
  check(tooldb::kCuttingToolTypes);
  check(tooldb::kCutterTypes);
  check(tooldb::kShankTypes);
  check(tooldb::kHolderTypes);
  check(tooldb::kToolTypes);
}

TEST(CuttingTool, NamesAreExactAndUnknownOnesHaveNoCode) {
  EXPECT_EQ(tdbCuttingTool::GetTypeByName("TAP"), 15);
  EXPECT_EQ(tdbCuttingTool::GetTypeByName("TURNING_INSERT_ROMBOID"), 17);
  for (const char* name : {"UNDEF", "mill_flatend", "", "TAP "}) {
    EXPECT_EQ(tdbCuttingTool::GetTypeByName(name), -1) << name;
  }
  for (const int type : {-1, 27, INT_MAX, INT_MIN}) {
    EXPECT_EQ(tdbCuttingTool(type).GetTypeName(), "UNDEF") << type;
  }
}

struct ShapeKind {
  int type;
  bool parametric;
  bool model;
};

template <class Part>
void expect_shape_kinds(std::initializer_list<ShapeKind> rows) {
  for (const auto& [type, parametric, model] : rows) {
    Part part(type);
    EXPECT_EQ(part.IsParametric(), parametric) << type;
    EXPECT_EQ(part.IsSTL(), model) << type;
  }
}

TEST(Parts, ShapeKindFollowsTheTypeCode) {
  expect_shape_kinds<tdbToolCutter>({{0, true, false},
                                     {4, true, false},
                                     {5, false, false},
                                     {6, false, true},
                                     {7, true, false},
                                     {8, false, false},
                                     {15, false, true},
                                     {20, true, false},
                                     {-1, true, false}});
  expect_shape_kinds<tdbToolShank>(
      {{0, true, false}, {2, false, false}, {3, false, true}, {4, true, false}, {5, false, false}});
  expect_shape_kinds<tdbToolHolder>(
      {{0, true, false}, {2, false, false}, {3, false, true}, {4, false, false}, {5, true, false}});
  expect_shape_kinds<tdbToolAngleHead>(
      {{0, false, false}, {1, false, true}, {2, true, true}, {-1, true, true}});
  expect_shape_kinds<tdbCuttingTool>({{0, true, false}, {6, true, false}});
  expect_shape_kinds<tdbToolComponent>({{0, false, false}, {3, false, false}});
  expect_shape_kinds<tdbFixedLink>({{0, false, false}, {3, false, false}});
}

TEST(Parts, OnlyTurningCuttersAndMostHoldersStandStill) {
  for (int type = -1; type < 30; ++type) {
    const bool still = type == 7 || type == 8 || type == 15 || type == 21;
    EXPECT_EQ(tdbToolCutter(type).IsSpinningEnable(), !still) << type;
    EXPECT_EQ(tdbToolHolder(type).IsSpinningEnable(), type == 2) << type;
    EXPECT_TRUE(tdbToolShank(type).IsSpinningEnable());
  }
  EXPECT_EQ(tdbToolCutter(0).GetMaterial(), tdbToolMaterial(0.9F, 0.9F, 0, 0, "gold.jpg"));
  EXPECT_EQ(tdbToolShank(0).GetMaterial(), tdbToolMaterial(0.5F, 0.5F, 0.5F, 0, "steel.jpg"));
}

struct UsualCase {
  int type;
  const char* cutter;
  const char* shank;
};

std::string parameters_of(const tdbItem& item) {
  std::string text;
  for (const auto& [name, value] : item.GetParams()) text += name + "=" + value + " ";
  return text;
}

TEST(CuttingTool, InitParamsSetsTheUsualParametersOfItsKind) {
  // The maps are ordered by name; the parts start empty.
  const UsualCase rows[] = {
      {0, "", "DIAMETER=40 DIAMETER2=50 HEIGHT2=30 "},
      {1, "DIAMETER=20 SPHERIC_TCPTYPE=0 ",
       "ANGLE=75 ANGLE2=0 DIAMETER=10 DIAMETER2=15 HEIGHT=10 HEIGHT2=80 "},
      {2, "", ""},
      {3, "", "ANGLE=30 DIAMETER=30 DIAMETER2=45 HEIGHT=10 HEIGHT2=30 "},
      {4, "", "ANGLE=45 ANGLE2=10 DIAMETER=30 DIAMETER2=50 HEIGHT=20 HEIGHT2=35 "},
      {10, "", "DIAMETER=40 DIAMETER2=50 "},
      {11, "DIAMETER=5 SPHERIC_TCPTYPE=0 ",
       "ANGLE=0 ANGLE2=0 DIAMETER=3 DIAMETER2=25 DIAMETER3=0 HEIGHT=80 HEIGHT2=40 HEIGHT3=0 "},
      {26,
       "ANGLE1=0 DIAMETER=50 DIAMETER3=40 FILLET=0 FILLET2=0 FILLET3=0 HEIGHT=100 HEIGHT1=20 "
       "HEIGHT3=2 STANDARD_TCPTYPE=0 ",
       "ANGLE2=20 DIAMETER1=20 DIAMETER2=40 DIAMETER3=40 HEIGHT=100 HEIGHT1=20 HEIGHT2=20 "
       "HEIGHT3=2 "},
      {27, "", ""},
  };
  for (const auto& row : rows) {
    auto* cutter = new tdbToolCutter();
    auto* shank = new tdbToolShank(2);
    tdbCuttingTool tool(cutter, shank, row.type);
    tool.InitParams();
    EXPECT_EQ(parameters_of(*cutter), row.cutter) << row.type;
    EXPECT_EQ(parameters_of(*shank), row.shank) << row.type;
  }
  tdbCuttingTool empty(nullptr, nullptr, 26);
  empty.InitParams();
  EXPECT_EQ(empty.GetItemCount(), 0U);
}

TEST(CuttingTool, HidingReachesTheChildren) {
  auto* cutter = new tdbToolCutter();
  tdbCuttingTool tool(cutter, new tdbToolShank(2), 2);
  tool.HideShape(true);
  EXPECT_TRUE(cutter->IsHideShape());
  EXPECT_TRUE(tool.GetShank()->IsHideShape());
}

}  // namespace
