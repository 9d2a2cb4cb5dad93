#include <gtest/gtest.h>

#include "geom/crossing_test.h"
#include "geom/polyline.h"
#include "tests/geom/points.h"
#include "tests/geom/row_name.h"
#include "tests/profile/bodies.h"
#include "tooldb/profile.h"

namespace tooldb::test {
namespace {

// Contours of custom bodies, drawn against the clock as files have them.
struct FinishCase {
  std::string_view name;
  std::string_view kind;
  int type;
  std::string_view outline;
  std::string_view points;  // clockwise
};

constexpr FinishCase kFinishes[] = {
    {"CutterReachesTipPlane", "cutter", 5, "5 2 ; 6 20 ; 3 40", "3 0 ; 3 40 ; 6 20 ; 5 2 ; 5 0"},
    {"CutterOnTipPlane", "cutter", 5, "5 -0.1 ; 6 20 ; 3 0.1", "3 0.1 ; 6 20 ; 5 -0.1"},
    {"CutterBelowTipPlane", "cutter", 5, "5 -0.2 ; 6 20 ; 3 0", "3 0 ; 6 20 ; 5 -0.2 ; 5 0"},
    {"HolderReachesTipPlane", "holder", 2, "0 1 ; 9 1 ; 9 8 ; 0 8",
     "0 0 ; 0 8 ; 9 8 ; 9 1 ; 0 1 ; 0 0"},
    {"CutterCloses", "cutter", 8, "0 0 ; 5 0 ; 5 9", "0 0 ; 5 9 ; 5 0 ; 0 0"},
    {"CutterAlmostClosed", "cutter", 8, "0 0 ; 5 0 ; 0 0.1", "0 0.1 ; 5 0 ; 0 0"},
    {"ShankExtruded", "shank", 5, "0 1 ; 5 1 ; 5 9", "5 9 ; 5 1 ; 0 1"},
};

class FinishedContour : public testing::TestWithParam<FinishCase> {};
INSTANTIATE_TEST_SUITE_P(Bodies, FinishedContour, testing::ValuesIn(kFinishes),
                         row_name<FinishCase>);

TEST_P(FinishedContour, IsClockwise) {
  const auto& [name, kind, type, outline, expected] = GetParam();
  EXPECT_EQ(only_contour(*make_body(kind, type, "", outline), 0.1), points(expected));
}

TEST(ItemProfile, GrowsACustomShank) {
  const auto shank = make_body("shank", 2, "", "0 0 ; 10 0 ; 10 40 ; 0 40");
  EXPECT_NEAR(signed_area(only_contour(*shank, 0.01)), -10.002 * 40.002, 1e-4);
  Contours contours;  // nothing is left of a line
  EXPECT_FALSE(make_body("shank", 2, "", "0 0 ; 0 40")->GetProfile(nullptr, contours, 0.01, 0));
}

TEST(ItemProfile, TurnsAndSimplifiesEarlierContoursToo) {
  Contours contours{points("0 0 ; 4 0 ; 8 0 ; 8 8 ; 0 8")};
  ASSERT_TRUE(tdbToolCutter(0).GetProfile(nullptr, contours, 0.1, 0));
  EXPECT_EQ(contours,
            (Contours{points("0 8 ; 8 8 ; 8 0 ; 0 0"), points("0 50 ; 25 50 ; 25 0 ; 0 0")}));
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

class EveryBody : public testing::TestWithParam<AnyBody> {};
INSTANTIATE_TEST_SUITE_P(Kinds, EveryBody, testing::ValuesIn(all_bodies()),
                         [](const auto& row) { return row.param.Name(); });

TEST_P(EveryBody, IsSimpleAndClockwiseAndInItsBounds) {
  const Polyline contour = only_contour(*GetParam().Make(), 0.01);
  EXPECT_LT(signed_area(contour), 0);
  EXPECT_TRUE(surely_does_not_cross(contour));
  for (const Vec2 p : contour) EXPECT_TRUE(p.y >= 0 && (GetParam().IsFlat() || p.x >= 0));
  EXPECT_EQ(contour.front().x, 0);
  EXPECT_EQ(contour.back(), (Vec2{0, 0}));
}

TEST_P(EveryBody, HasAnOutlineThatFollowsItsParametersAlone) {
  const auto item = GetParam().Make();
  ASSERT_TRUE(build(*item));
  const std::string text = item->GetProfileXml();
  const double measure = GetParam().Measure(*item);
  item->SetUnitOfMeasurement(1);
  ASSERT_TRUE(build(*item));
  EXPECT_EQ(item->GetProfileXml(), text);
  if (item->GetParam("PIECE", nullptr) == nullptr) {  // its lengths are in a text
    scale_lengths(*item, 4);
    ASSERT_TRUE(build(*item)) << tdbProfile::OutlineError(*item);
    EXPECT_NEAR(GetParam().Measure(*item), (GetParam().IsFlat() ? 16 : 64) * measure,
                1e-3 * measure);
  }
  // The defaults that are written are those that an item without parameters is built with.
  item->RemoveParams();
  ASSERT_TRUE(build(*item));
  EXPECT_EQ(item->GetProfileXml(), text);
}

TEST(ResetProfile, SetsTheDefaultsThatAreNotDerived) {
  tdbToolCutter cutter(2);
  cutter.SetDiameter(12.5);
  EXPECT_STREQ(cutter.GetParam("DIAMETER", ""), "12.5");
  ASSERT_TRUE(cutter.BuildProfile(0));
  cutter.SetParam("OTHER", "1");
  cutter.ResetProfile();
  EXPECT_STREQ(cutter.GetProfileXml(), "");
  const std::map<std::string, std::string> expected{
      {"DIAMETER", "40"}, {"HEIGHT", "40"}, {"SPHERIC_TCPTYPE", "0"}};
  EXPECT_EQ(cutter.GetParams(), expected);
  EXPECT_TRUE(tdbToolCutter(5).GetParams().empty() && tdbToolHolder(0).GetParams().empty());
}

struct SizeCase {
  int type;
  std::string_view params;
  std::string_view outline;  // the stored text
  double diameter;
  double length;
};

constexpr SizeCase kSizes[] = {
    {0, "", "", 50, 50},
    {0, "DIAMETER=x", "", 0, 0},
    {14, "", "", 20, 40},
    {5, "", "0 2 ; ccw 0 12 @ 0 7", 10, 10},
    {8, "", "0 0 ; 5 0 ; 0 3", 0, 3},
    {5, "", "0 0 ; 0.5 0 ; ccw 0.5 0.8 @ 0.5 0.4 ; 0 0.8", 1.8, 0.8},
    {5, "", "", 0, 0},
    {6, "", "0 0 ; 5 0", 0, 0},
    {7, "FILLET=0", "", 12.7, 19.7577},
};

TEST(BodySize, IsThatOfTheOutline) {
  for (const auto& [type, params, outline, diameter, length] : kSizes) {
    tdbToolCutter cutter(type);
    set_params(cutter, params);
    cutter.SetProfileXml(contour_of(outline).c_str());
    EXPECT_NEAR(cutter.GetDiameter(), diameter, 1e-9) << type << params << outline;
    EXPECT_NEAR(cutter.GetLength(), length, 1e-4) << type << params << outline;
  }
  const tdbToolShank shank(16);
  EXPECT_EQ(std::pair(shank.GetDiameter(), shank.GetLength()), std::pair(40.0, 78.0));
  const tdbToolHolder holder(1);
  EXPECT_EQ(std::pair(holder.GetDiameter(), holder.GetLength()), std::pair(40.0, 80.0));
}

struct CuttingCase {
  std::string_view name;
  int type;
  std::string_view params;
  std::string_view outline;  // the stored text
  std::string_view points;   // of the only piece; its chords are wide; empty: there is none
};

constexpr CuttingCase kCutting[] = {
    {"Ball", 1, "DIAMETER=2", "", "0 0 ; 1 1 ; 0 2"},
    {"BoringBar", 11, "DIAMETER=32 DIAMETER1=25 HEIGHT=60 HEIGHT1=5 ANGLE=30 FILLET=0.8", "",
     "0 0 ; 15.2 0 ; 16 0.8 ; 16 5"},
    {"Flanges", 22, "HEIGHT1=6 DIAMETER1=40 DIAMETER2=50", "", "20 6 ; 50 6 ; 50 9 ; 25 9"},
    {"ChamferMovedDown", 23, "STANDARD_TCPTYPE=2", "", "0 -20 ; 25 -20 ; 25 0 ; 20 0"},
    {"TextFromAxis", 5, "", "0 -2 ; 0 0 ; 3 0 ; 3 9 ; 0 9", "0 0 ; 3 0 ; 3 9"},
    {"OpenText", 8, "", "0 0 ; 5 8 ; 5 20 ; -5 20", "0 0 ; 5 8 ; 5 20"},
    {"ClosedText", 8, "", "0 0 ; 5 8 ; 5 20 ; -5 20 ; -5 8 ; 0 0", "-5 8 ; 0 0 ; 5 8"},
    {"SharpInsert", 7, "INSERT_SHAPE=S DIAMETER=2 FILLET=0", "",
     "-1.41421 1.41421 ; 0 0 ; 1.41421 1.41421"},
    {"NosedInsertShortEdge", 7, "INSERT_SHAPE=S DIAMETER=9 FILLET=1 LENGTH=3", "",
     "-2.12132 1.7071 ; -0.707107 0.292893 ; 0 0 ; 0.707107 0.292893 ; 2.12132 1.7071"},
    // The short edges are used up by the corners: there is an edge on the right alone.
    {"StadiumInsert", 7, "INSERT_SHAPE=L DIAMETER=2 FILLET=1 LENGTH=3", "",
     "-0.707107 0.292893 ; 0 0 ; 0.707107 0.292893 ; 1.41421 1"},
    {"Model", 6, "", "0 0 ; 1 1", ""},
    {"Refused", 0, "DIAMETER=0", "", ""},
};

class CuttingPart : public testing::TestWithParam<CuttingCase> {};
INSTANTIATE_TEST_SUITE_P(Cutters, CuttingPart, testing::ValuesIn(kCutting), row_name<CuttingCase>);

TEST_P(CuttingPart, IsOnePieceOrNone) {
  const auto& [name, type, params, outline, expected] = GetParam();
  const auto cutter = make_body("cutter", type, params, outline);
  const Polyline wanted = points(expected);
  Contours pieces;
  // Wide tolerances leave an arc its quadrants alone.
  ASSERT_EQ(tdbProfile::HilightCuttingProfile(dynamic_cast<tdbToolCutter&>(*cutter), 10, pieces),
            !wanted.empty());
  ASSERT_EQ(pieces.size(), wanted.empty() ? 0U : 1U);
  if (!pieces.empty()) expect_points(pieces[0], wanted, 1e-4);
}

}  // namespace
}  // namespace tooldb::test
