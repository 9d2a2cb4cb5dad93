#include <gtest/gtest.h>

#include <cmath>

#include "geom/polyline.h"
#include "tests/geom/row_name.h"
#include "tests/profile/bodies.h"
#include "tooldb/profile.h"
#include "tooldb/profile/body_types.h"
#include "tooldb/tool.h"

namespace tooldb::test {
namespace {

using Contours = std::vector<std::vector<Point2d<double>>>;

// Contours of custom bodies, drawn against the clock as files have them.
struct FinishCase {
  std::string_view name;
  std::string_view kind;
  int type;
  std::string_view outline;
  Polyline points;  // clockwise
};

const FinishCase kFinishes[] = {
    {"CutterReachesTipPlane",
     "cutter",
     5,
     "5 2 ; 6 20 ; 3 40",
     {{3, 0}, {3, 40}, {6, 20}, {5, 2}, {5, 0}}},
    {"CutterOnTipPlane", "cutter", 5, "5 -0.1 ; 6 20 ; 3 0.1", {{3, 0.1}, {6, 20}, {5, -0.1}}},
    {"CutterBelowTipPlane",
     "cutter",
     5,
     "5 -0.2 ; 6 20 ; 3 0",
     {{3, 0}, {6, 20}, {5, -0.2}, {5, 0}}},
    {"HolderReachesTipPlane",
     "holder",
     2,
     "0 1 ; 9 1 ; 9 8 ; 0 8",
     {{0, 0}, {0, 8}, {9, 8}, {9, 1}, {0, 1}, {0, 0}}},
    {"CutterCloses", "cutter", 8, "0 0 ; 5 0 ; 5 9", {{0, 0}, {5, 9}, {5, 0}, {0, 0}}},
    {"CutterAlmostClosed", "cutter", 8, "0 0 ; 5 0 ; 0 0.1", {{0, 0.1}, {5, 0}, {0, 0}}},
    {"HolderCloses", "holder", 4, "0 0 ; 5 0 ; 5 9", {{0, 0}, {5, 9}, {5, 0}, {0, 0}}},
    {"ShankExtruded", "shank", 5, "0 1 ; 5 1 ; 5 9", {{5, 9}, {5, 1}, {0, 1}}},
    {"NoName", "cutter", 24, "0 1 ; 5 1 ; 5 9", {{5, 9}, {5, 1}, {0, 1}}},
    {"Clockwise", "cutter", 24, "0 9 ; 5 9 ; 5 1", {{0, 9}, {5, 9}, {5, 1}}},
    {"TwoPoints", "cutter", 24, "0 1 ; 5 9", {{0, 1}, {5, 9}}},
};

class FinishedContour : public testing::TestWithParam<FinishCase> {};
INSTANTIATE_TEST_SUITE_P(Bodies, FinishedContour, testing::ValuesIn(kFinishes),
                         row_name<FinishCase>);

TEST_P(FinishedContour, IsClockwise) {
  const auto& [name, kind, type, outline, points] = GetParam();
  const auto item = make_body(kind, type);
  item->SetProfileXml(contour_of(outline).c_str());
  Contours contours;
  ASSERT_TRUE(item->GetProfile(nullptr, contours, 0.1, 0));
  ASSERT_EQ(contours.size(), 1U);
  EXPECT_EQ(contours[0], points);
}

TEST(ItemProfile, GrowsACustomShank) {
  tdbToolShank shank(2);
  shank.SetProfileXml(contour_of("0 0 ; 10 0 ; 10 40 ; 0 40").c_str());
  Contours contours;
  ASSERT_TRUE(shank.GetProfile(nullptr, contours, 0.01, 0));
  ASSERT_EQ(contours.size(), 1U);
  EXPECT_NEAR(signed_area(contours[0]), -10.002 * 40.002, 1e-4);
  // Nothing is left of a line, and nothing was there before.
  shank.SetProfileXml(contour_of("0 0 ; 0 40").c_str());
  contours.clear();
  EXPECT_FALSE(shank.GetProfile(nullptr, contours, 0.01, 0));
}

TEST(ItemProfile, TurnsAndSimplifiesEarlierContoursToo) {
  tdbToolCutter cutter(0);
  Contours contours{{{0, 0}, {4, 0}, {8, 0}, {8, 8}, {0, 8}}};
  ASSERT_TRUE(cutter.GetProfile(nullptr, contours, 0.1, 0));
  EXPECT_EQ(contours,
            (Contours{{{0, 8}, {8, 8}, {8, 0}, {0, 0}}, {{0, 50}, {25, 50}, {25, 0}, {0, 0}}}));
}

TEST(ItemProfile, FailingCallLeavesEarlierContours) {
  const Contours before{{{0, 0}, {4, 0}, {8, 0}, {8, 8}}};
  Contours contours = before;
  tdbToolCutter cutter(0);
  for (const double tolerance : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
    EXPECT_FALSE(cutter.GetProfile(nullptr, contours, tolerance, 0));
  }
  tdbToolCutter model(6);
  EXPECT_FALSE(model.GetProfile(nullptr, contours, 0.1, 1));
  model.SetShapeFilePath("/no/such/model.stl");
  EXPECT_FALSE(model.GetProfile(nullptr, contours, 0.1, 1));
  for (tdbItem* item : std::initializer_list<tdbItem*>{
           std::make_unique<tdbFixedLink>(0).release(), new tdbCuttingTool(0),
           new tdbToolComponent(), new tdbToolAngleHead(2)}) {
    const std::unique_ptr<tdbItem> owner(item);
    EXPECT_FALSE(item->GetProfile(nullptr, contours, 0.1, 0));
  }
  EXPECT_EQ(contours, before);
  tdbTool tool("T");
  EXPECT_TRUE(tool.GetProfile(nullptr, contours, 0.1, 0));
  EXPECT_EQ(contours, before);
}

// The fresh bodies of every kind.
std::vector<std::unique_ptr<tdbItem>> fresh_bodies() {
  std::vector<std::unique_ptr<tdbItem>> bodies;
  for (const BodyType& type : cutter_types()) bodies.push_back(make_body("cutter", type.code));
  for (const BodyType& type : shank_types()) bodies.push_back(make_body("shank", type.code));
  for (const BodyType& type : holder_types()) bodies.push_back(make_body("holder", type.code));
  return bodies;
}

std::string label(const tdbItem& item) {
  return std::string(typeid(item).name()) + std::to_string(item.GetType());
}

TEST(ItemProfile, OfEveryKindIsClockwiseAndInItsBounds) {
  for (const auto& item : fresh_bodies()) {
    Contours contours;
    ASSERT_TRUE(item->GetProfile(nullptr, contours, 0.01, 0)) << label(*item);
    ASSERT_EQ(contours.size(), 1U);
    EXPECT_LT(signed_area(contours[0]), 0) << label(*item);
    const bool insert = item->GetType() == 7 && dynamic_cast<tdbToolCutter*>(item.get()) != nullptr;
    for (const Vec2 p : contours[0]) {
      EXPECT_TRUE(insert || p.x >= 0) << label(*item);
      EXPECT_GE(p.y, 0) << label(*item);
    }
    if (insert) continue;
    EXPECT_EQ(contours[0].front().x, 0) << label(*item);
    EXPECT_EQ(contours[0].back(), (Vec2{0, 0})) << label(*item);
  }
}

// Every length of a body times `factor`; what is not set takes its default first.
void scale_lengths(tdbItem& item, double factor) {
  using Kind = tdbDimension::Kind;
  for (const tdbDimension& d : tdbProfile::GetDimensions(item)) {
    const bool is_length =
        d.kind == Kind::kDiameter || d.kind == Kind::kLength || d.kind == Kind::kRadius;
    if (is_length) item.SetParam(d.name.c_str(), std::to_string(d.value * factor).c_str());
  }
}

TEST(ItemProfile, ScaledParametersScaleTheOutline) {
  for (const auto& item : fresh_bodies()) {
    if (item->GetParam("PIECE", nullptr) != nullptr) continue;  // its lengths are in a text
    ASSERT_TRUE(build(*item));
    const double area = signed_area(*parse_contour(item->GetProfileXml()));
    scale_lengths(*item, 4);
    ASSERT_TRUE(build(*item)) << label(*item) << tdbProfile::OutlineError(*item);
    EXPECT_NEAR(signed_area(*parse_contour(item->GetProfileXml())), 16 * area, 1e-3 * area)
        << label(*item);
  }
}

TEST(ItemProfile, DoesNotDependOnTheUnit) {
  for (const auto& item : fresh_bodies()) {
    ASSERT_TRUE(build(*item));
    const std::string text = item->GetProfileXml();
    item->SetUnitOfMeasurement(1);
    ASSERT_TRUE(build(*item));
    EXPECT_EQ(item->GetProfileXml(), text);
  }
}

// The defaults that are written are those that an item without parameters is built with.
TEST(InitProfile, WritesTheDefaultsOfTheOutline) {
  for (const auto& item : fresh_bodies()) {
    ASSERT_TRUE(build(*item));
    const std::string text = item->GetProfileXml();
    item->RemoveParams();
    ASSERT_TRUE(build(*item));
    EXPECT_EQ(item->GetProfileXml(), text) << label(*item);
  }
}

struct DefaultsCase {
  std::string_view kind;
  int type;
  std::map<std::string, std::string> params;
};

const DefaultsCase kDefaults[] = {
    {"cutter", 2, {{"DIAMETER", "40"}, {"HEIGHT", "40"}, {"SPHERIC_TCPTYPE", "0"}}},
    {"cutter", 4, {{"ANGLE", "118"}, {"DIAMETER", "40"}, {"HEIGHT", "100"}}},
    {"cutter", 7, {{"DIAMETER", "12.7"}, {"FILLET", "0.8"}, {"HEIGHT", "4.76"}}},
    {"cutter", 14, {{"PIECE", "10 10 20;30 20 20"}}},
    {"cutter", 5, {}},
    {"cutter", 20, {}},
    {"shank", 2, {}},
    {"shank", 1, {{"DIAMETER", "40"}, {"DIAMETER2", "50"}, {"HEIGHT", "30"}, {"HEIGHT2", "0"}}},
    {"holder", 0, {}},
};

TEST(InitProfile, LeavesDerivedDefaultsOut) {
  for (const auto& [kind, type, params] : kDefaults) {
    EXPECT_EQ(make_body(kind, type)->GetParams(), params) << kind << type;
  }
}

TEST(ResetProfile, StartsAnew) {
  tdbToolCutter cutter(0);
  cutter.SetDiameter(12.5);
  cutter.SetParam("OTHER", "1");
  EXPECT_EQ(cutter.GetDiameter(), 12.5);
  EXPECT_STREQ(cutter.GetParam("DIAMETER", ""), "12.5");
  ASSERT_TRUE(cutter.BuildProfile(0));
  cutter.ResetProfile();
  EXPECT_EQ(cutter.GetParams(), tdbToolCutter(0).GetParams());
  EXPECT_STREQ(cutter.GetProfileXml(), "");
}

struct SizeCase {
  std::string_view kind;
  int type;
  std::string_view params;
  std::string_view outline;  // the stored text
  double diameter;
  double length;
};

constexpr SizeCase kSizes[] = {
    {"cutter", 0, "", "", 50, 50},
    {"cutter", 0, "DIAMETER=x", "", 0, 0},
    {"cutter", 14, "", "", 20, 40},
    {"cutter", 5, "", "0 2 ; ccw 0 12 @ 0 7", 10, 10},
    {"cutter", 8, "", "0 0 ; 5 0 ; 0 3", 0, 3},
    {"cutter", 5, "", "0 0 ; 0.5 0 ; ccw 0.5 0.8 @ 0.5 0.4 ; 0 0.8", 1.8, 0.8},
    {"cutter", 5, "", "", 0, 0},
    {"cutter", 6, "", "0 0 ; 5 0", 0, 0},
    {"cutter", 7, "FILLET=0", "", 12.7, 19.7577},
    {"shank", 16, "", "", 40, 78},
    {"shank", 0, "DIAMETER=30 HEIGHT=20 ANGLE=45 DIAMETER2=50 HEIGHT2=35 ANGLE2=10", "", 30,
     61.4735},
    {"holder", 1, "", "", 40, 80},
    {"holder", 2, "", "0 0 ; 31 0 ; 20 50", 62, 50},
};

double diameter_of(tdbItem& item) {
  if (auto* cutter = dynamic_cast<tdbToolCutter*>(&item)) return cutter->GetDiameter();
  if (auto* shank = dynamic_cast<tdbToolShank*>(&item)) return shank->GetDiameter();
  return dynamic_cast<tdbToolHolder&>(item).GetDiameter();
}

double length_of(tdbItem& item) {
  if (auto* cutter = dynamic_cast<tdbToolCutter*>(&item)) return cutter->GetLength();
  if (auto* shank = dynamic_cast<tdbToolShank*>(&item)) return shank->GetLength();
  return dynamic_cast<tdbToolHolder&>(item).GetLength();
}

TEST(BodySize, IsThatOfTheOutline) {
  for (const auto& [kind, type, params, outline, diameter, length] : kSizes) {
    const auto item = make_body(kind, type);
    set_params(*item, params);
    item->SetProfileXml(contour_of(outline).c_str());
    EXPECT_NEAR(diameter_of(*item), diameter, 1e-9) << kind << type << params;
    EXPECT_NEAR(length_of(*item), length, 1e-4) << kind << type << params;
  }
}

}  // namespace
}  // namespace tooldb::test
