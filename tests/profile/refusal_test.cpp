#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/geom/row_name.h"
#include "tests/profile/bodies.h"
#include "tooldb/profile.h"

namespace tooldb::test {
namespace {

struct RefusedCase {
  std::string_view name;
  std::string_view kind;
  int type;
  std::string_view params;
  std::string_view blamed;  // the parameter that the reason names first
};

constexpr RefusedCase kRefused[] = {
    {"FlatZero", "cutter", 0, "DIAMETER=0", "DIAMETER"},
    {"FlatNearlyZero", "cutter", 0, "DIAMETER=1e-6", "DIAMETER"},
    {"FlatNegative", "cutter", 0, "DIAMETER=-4", "DIAMETER"},
    {"FlatWord", "cutter", 0, "DIAMETER=abc", "DIAMETER"},
    {"FlatComma", "cutter", 0, "DIAMETER=12,5", "DIAMETER"},
    {"FlatUnit", "cutter", 0, "DIAMETER=5 mm", "DIAMETER"},
    {"FlatHex", "cutter", 0, "DIAMETER=0x10", "DIAMETER"},
    {"FlatNan", "cutter", 0, "HEIGHT=nan", "HEIGHT"},
    {"FlatHuge", "cutter", 0, "HEIGHT=1e7", "HEIGHT"},
    {"BallTcp", "cutter", 1, "SPHERIC_TCPTYPE=2", "SPHERIC_TCPTYPE"},
    {"BallTcpFraction", "cutter", 1, "SPHERIC_TCPTYPE=0.5", "SPHERIC_TCPTYPE"},
    {"BullNoseFillet", "cutter", 2, "DIAMETER=25 FILLET=13", "FILLET"},
    {"BullNoseLow", "cutter", 2, "DIAMETER=25 HEIGHT=10", "FILLET"},
    {"StandardAngles", "cutter", 3, "ANGLE=40 ANGLE1=50", "ANGLE"},
    {"StandardFillet", "cutter", 3, "DIAMETER=10 FILLET=6", "FILLET"},
    {"StandardTip", "cutter", 3, "DIAMETER=40 HEIGHT=20 ANGLE1=45", "HEIGHT"},
    {"StandardAxis", "cutter", 3, "DIAMETER=10 HEIGHT=40 ANGLE=-20", "ANGLE"},
    {"DrillLow", "cutter", 4, "DIAMETER=20 HEIGHT=5 ANGLE=90", "HEIGHT"},
    {"ChamferTip", "cutter", 9, "DIAMETER=10 DIAMETER1=12", "DIAMETER1"},
    {"BackChamfer", "cutter", 10, "HEIGHT=11.9", "HEIGHT"},
    {"BoringBar", "cutter", 11, "DIAMETER1=31", "DIAMETER1"},
    {"RoundingWide", "cutter", 12, "DIAMETER=12 DIAMETER1=8 FILLET=3", "FILLET"},
    {"TapLead", "cutter", 13, "HEIGHT=5 HEIGHT1=6", "HEIGHT1"},
    {"PieceTwoNumbers", "cutter", 14, "PIECE=5 10", "PIECE"},
    {"PieceFourNumbers", "cutter", 14, "PIECE=5 10 10 10", "PIECE"},
    {"PieceTwoSemicolons", "cutter", 14, "PIECE=5 10 10;;5 10 10", "PIECE"},
    {"PieceWaist", "cutter", 14, "PIECE=5 10 0;5 0 10", "PIECE"},
    {"PieceNoBody", "cutter", 14, "PIECE=5 0 0", "PIECE"},
    {"PieceNoHeight", "cutter", 14, "PIECE=0 10 10", "PIECE"},
    {"PieceShort", "cutter", 14, "PIECE=5 10 10 LENGTH=4", "LENGTH"},
    {"PieceNeedle", "cutter", 14, "PIECE=5 10 0 LENGTH=6", "LENGTH"},
    {"DiscFillet", "cutter", 16, "HEIGHT=4 FILLET=2.1", "FILLET"},
    {"RoundLow", "cutter", 17, "DIAMETER=16 HEIGHT=7 FILLET=4", "FILLET"},
    {"RoundNeedle", "cutter", 17, "DIAMETER=16 HEIGHT=17 FILLET=8", "FILLET"},
    {"RimHigh", "cutter", 18, "DIAMETER1=10 HEIGHT=12", "HEIGHT"},
    {"RimBeyondAxis", "cutter", 18, "DIAMETER=10 DIAMETER1=60 HEIGHT=40", "DIAMETER1"},
    {"DiscDrillPoint", "cutter", 19, "DIAMETER1=50 HEIGHT1=5", "HEIGHT1"},
    {"FlangeFillet", "cutter", 22, "DIAMETER=40 FILLET=0.5", "FILLET"},
    {"HubWide", "cutter", 23, "DIAMETER3=51", "DIAMETER3"},
    {"HubFillet", "cutter", 23, "DIAMETER3=50 FILLET3=1", "FILLET2"},
    {"CustomBlank", "cutter", 5, "", "PROFILE"},
    {"NoName", "cutter", 24, "DIAMETER=10", "PROFILE"},
    {"ShankAngle", "shank", 0, "ANGLE=90", "ANGLE"},
    {"ShankToAxis", "shank", 0, "DIAMETER=10 HEIGHT=50 ANGLE2=-6", "ANGLE2"},
    {"ShankNoLength", "shank", 0, "HEIGHT=0", "HEIGHT"},
    {"ConeNoDiameter", "shank", 1, "DIAMETER=0 DIAMETER2=0", "DIAMETER"},
    {"ConeNeedle", "shank", 1, "DIAMETER2=0 HEIGHT2=5", "HEIGHT2"},
    {"NeckShort", "shank", 16, "HEIGHT=50", "HEIGHT2"},
    {"NeckBelowHead", "shank", 16, "HEIGHT=22", "HEIGHT"},
    {"NeckFlat", "shank", 16, "ANGLE2=0", "ANGLE2"},
    {"HolderZero", "holder", 0, "DIAMETER=0", "DIAMETER"},
    {"InsertLetter", "cutter", 7, "INSERT_SHAPE=X", "INSERT_SHAPE"},
    {"InsertNose", "cutter", 7, "FILLET=6.4", "FILLET"},
    {"InsertFlat", "cutter", 7, "ANGLE=180", "ANGLE"},
    {"InsertTrigon", "cutter", 7, "INSERT_SHAPE=W ANGLE=60", "ANGLE"},
    {"InsertShort", "cutter", 7, "INSERT_SHAPE=K LENGTH=5", "LENGTH"},
    {"InsertNoThickness", "cutter", 7, "HEIGHT=0", "HEIGHT"},
};

class RefusedOutline : public testing::TestWithParam<RefusedCase> {};
INSTANTIATE_TEST_SUITE_P(Parameters, RefusedOutline, testing::ValuesIn(kRefused),
                         row_name<RefusedCase>);

TEST_P(RefusedOutline, KeepsTheStoredTextAndTellsWhy) {
  const auto& [name, kind, type, params, blamed] = GetParam();
  const auto item = make_body(kind, type);
  EXPECT_TRUE(type == 5 || type == 24 || tdbProfile::OutlineError(*item).empty());
  set_params(*item, params);
  item->SetProfileXml(" ");
  EXPECT_FALSE(build(*item));
  EXPECT_STREQ(item->GetProfileXml(), " ");
  const std::string error = tdbProfile::OutlineError(*item);
  EXPECT_TRUE(error.starts_with(std::string(blamed) + " ")) << error;
  std::vector<std::vector<Point2d<double>>> contours;
  EXPECT_FALSE(item->GetProfile(nullptr, contours, 0.1, 0));
  EXPECT_TRUE(contours.empty());
}

// What looks odd and stands all the same.
constexpr RefusedCase kAccepted[] = {
    {"Blanks", "cutter", 0, "DIAMETER= \t8.5 ", "0 0 ; 4.25 0 ; 4.25 50 ; 0 50"},
    {"Blank", "cutter", 0, "DIAMETER= ", "0 0 ; 25 0 ; 25 50 ; 0 50"},
    {"Plus", "cutter", 0, "DIAMETER=+1e1", "0 0 ; 5 0 ; 5 50 ; 0 50"},
    {"RoundedBall", "cutter", 2, "DIAMETER=6.66667 FILLET=3.33334",
     "0 0 ; ccw 3.33333 3.33333 @ 0 3.33333 ; 3.33333 40 ; 0 40"},
    {"FlatDrill", "cutter", 4, "DIAMETER=10 ANGLE=180", "0 0 ; 5 0 ; 5 100 ; 0 100"},
    {"ToThePoint", "cutter", 3, "DIAMETER=20 HEIGHT=10 ANGLE=-45", "0 0 ; 10 0 ; 0 10"},
    {"TrailingSemicolon", "cutter", 14, "PIECE= 5 10 10 ; ", "0 0 ; 5 0 ; 5 5 ; 0 5"},
    {"FullRim", "cutter", 17, "DIAMETER=10 HEIGHT=10 FILLET=5",
     "0 0 ; ccw 5 5 @ 0 5 ; ccw 0 10 @ 0 5"},
    {"NoFlanges", "cutter", 22, "DIAMETER=40 DIAMETER1=0 HEIGHT2=0 FILLET=1",
     "0 0 ; 19 0 ; ccw 20 1 @ 19 1 ; 20 2 ; ccw 19 3 @ 19 2 ; 0 3"},
    {"NoHub", "cutter", 23, "HEIGHT3=0 FILLET2=5 FILLET3=9",
     "0 0 ; 25 0 ; 25 15 ; ccw 20 20 @ 20 15 ; 0 20"},
    {"WideHub", "cutter", 23, "DIAMETER3=50", "0 0 ; 25 0 ; 25 22 ; 0 22"},
    {"NeckOnly", "shank", 16, "DIAMETER1=40 ANGLE2=0", "0 0 ; 20 0 ; 20 58 ; 20 78 ; 0 78"},
    {"NarrowBodySquare", "shank", 16, "DIAMETER2=10 ANGLE2=90",
     "0 0 ; 10 0 ; 10 58 ; 5 58 ; 5 78 ; 0 78"},
};

class AcceptedOutline : public testing::TestWithParam<RefusedCase> {};
INSTANTIATE_TEST_SUITE_P(Parameters, AcceptedOutline, testing::ValuesIn(kAccepted),
                         row_name<RefusedCase>);

TEST_P(AcceptedOutline, IsDrawn) {
  const auto& [name, kind, type, params, outline] = GetParam();
  const auto item = make_body(kind, type);
  set_params(*item, params);
  EXPECT_TRUE(build(*item)) << tdbProfile::OutlineError(*item);
  EXPECT_EQ(item->GetProfileXml(), contour_of(outline));
}

TEST(TcpType, MovesTheOutlineDown) {
  tdbToolCutter cutter(3);
  set_params(cutter, "DIAMETER=20 HEIGHT=35 ANGLE=5 ANGLE1=10 FILLET=2 STANDARD_TCPTYPE=1");
  ASSERT_TRUE(cutter.BuildProfile(0));
  // The corner's centre, 3.4664 above the tip, is the origin.
  EXPECT_EQ(cutter.GetProfileXml(),
            contour_of("0 -3.4664 ; 8.48866 -1.96962 ; ccw 10.1338 -0.174311 @ 8.14136 0 ; "
                       "12.9078 31.5336 ; 0 31.5336"));
  cutter.SetParam("STANDARD_TCPTYPE", "2");
  EXPECT_EQ(cutter.GetLength(), 35);
  ASSERT_TRUE(cutter.BuildProfile(0));
  EXPECT_EQ(parse_contour(cutter.GetProfileXml())->back().end, (Vec2{0, 0}));
}

struct InsertSizeCase {
  std::string_view name;
  int shape;  // of the cutting tool; below 17: the letter decides
  std::string_view params;
  double diameter;
  double angle;
  double length;
};

constexpr InsertSizeCase kInsertSizes[] = {
    {"Letter", 0, "INSERT_SHAPE= v DIAMETER=9.525", 9.525, 35, 16.6063},
    {"LetterOfFamily", 17, "INSERT_SHAPE=D", 12.7, 55, 15.5039},
    {"LetterOfOtherFamily", 17, "INSERT_SHAPE=T", 12.7, 80, 12.8959},
    {"AngleBeforeLetter", 17, "INSERT_SHAPE=D ANGLE=60", 12.7, 60, 14.6647},
    {"CircleOfRhombicEdge", 17, "DIAMETER=0 LENGTH=12.9 ANGLE=80", 12.704, 80, 12.9},
    {"CircleOfTriangleEdge", 19, "DIAMETER=0 LENGTH=16.5", 9.52628, 60, 16.5},
    {"CircleOfTrigonEdge", 23, "DIAMETER=0 LENGTH=8.69", 12.7039, 80, 8.69},
    {"CircleOfRound", 24, "DIAMETER=0 LENGTH=10", 10, 0, 10},
    {"NoSize", 20, "DIAMETER=0", 12.7, 108, 9.22709},
    {"TriangleIgnoresAngle", 19, "ANGLE=nonsense", 12.7, 60, 21.997},
    {"StretchedParallelogram", 18, "DIAMETER=9.525 ANGLE=55", 9.525, 55, 17.4419},
    {"Centre", 25, "DIAMETER=20", 20, 60, 37.3205},
};

class InsertSize : public testing::TestWithParam<InsertSizeCase> {};
INSTANTIATE_TEST_SUITE_P(Parameters, InsertSize, testing::ValuesIn(kInsertSizes),
                         row_name<InsertSizeCase>);

TEST_P(InsertSize, IsCompletedFromWhatIsGiven) {
  const auto& [name, shape, params, diameter, angle, length] = GetParam();
  auto* cutter = new tdbToolCutter(7);
  const tdbCuttingTool tool(cutter, nullptr, shape);
  set_params(*cutter, params);
  ASSERT_EQ(tdbProfile::OutlineError(*cutter), "");
  const auto dimensions = tdbProfile::GetDimensions(*cutter);
  const auto value = [&](std::string_view parameter) {
    const auto found = std::ranges::find(dimensions, parameter, &tdbDimension::name);
    return found == dimensions.end() ? std::nan("") : found->value;
  };
  EXPECT_NEAR(value("DIAMETER"), diameter, 1e-4 * diameter);
  EXPECT_NEAR(value("ANGLE"), angle, 1e-6);
  EXPECT_NEAR(value("LENGTH"), length, 1e-4 * length);
}

}  // namespace
}  // namespace tooldb::test
