#include "tooldb/tool_parts.h"

#include <gtest/gtest.h>

namespace {

TEST(CuttingTool, NamesAreExactAndUnknownOnesHaveNoCode) {
  EXPECT_EQ(tdbCuttingTool::GetTypeByName("TAP"), 15);
  EXPECT_EQ(tdbCuttingTool::GetTypeByName("TURNING_INSERT_ROMBOID"), 17);
  for (const char* name : {"UNDEF", "mill_flatend", "", "TAP "}) {
    EXPECT_EQ(tdbCuttingTool::GetTypeByName(name), -1) << name;
  }
}

/// The kind of shape of the types from -1 on: (p)arametric, a (m)odel file, both, or neither.
template <class Part>
std::string shape_kinds(int last) {
  std::string kinds;
  for (int type = -1; type <= last; ++type) {
    Part part(type);
    kinds += part.IsParametric() ? (part.IsSTL() ? 'b' : 'p') : (part.IsSTL() ? 'm' : '-');
  }
  return kinds;
}

TEST(Parts, ShapeKindFollowsTheTypeCode) {
  EXPECT_EQ(shape_kinds<tdbToolCutter>(20), "pppppp-mp-ppppppmppppp");
  EXPECT_EQ(shape_kinds<tdbToolShank>(6), "ppp-mp-p");
  EXPECT_EQ(shape_kinds<tdbToolHolder>(5), "ppp-m-p");
  EXPECT_EQ(shape_kinds<tdbToolAngleHead>(2), "b-mb");
  EXPECT_EQ(shape_kinds<tdbCuttingTool>(6), "pppppppp");
  EXPECT_EQ(shape_kinds<tdbToolComponent>(3) + shape_kinds<tdbFixedLink>(3), "----------");
}

TEST(Parts, OnlyTurningCuttersAndMostHoldersStandStill) {
  for (int type = -1; type < 30; ++type) {
    const bool still = type == 7 || type == 8 || type == 15 || type == 21;
    EXPECT_EQ(tdbToolCutter(type).IsSpinningEnable(), !still) << type;
    EXPECT_EQ(tdbToolHolder(type).IsSpinningEnable(), type == 2) << type;
    EXPECT_TRUE(tdbToolShank(type).IsSpinningEnable());
  }
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
