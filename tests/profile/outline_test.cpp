#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "tests/profile/bodies.h"
#include "tooldb/profile.h"

namespace tooldb::test {
namespace {

struct OutlineCase {
  std::string_view kind;
  int type;
  std::string_view params;
  double measure;  // volume of the body, or area of an insert; 0: not worked out
  std::string_view outline;
};

template <class Row>
std::string outline_name(const testing::TestParamInfo<Row>& row) {
  return AnyBody{row.param.kind, row.param.type}.Name() + "_" + std::to_string(row.index);
}

constexpr OutlineCase kOutlines[] = {
    {"cutter", 0, "DIAMETER=20 HEIGHT=40", 12566.4, "0 0 ; 10 0 ; 10 40 ; 0 40"},
    {"cutter", 1, "DIAMETER=12", 904.779, "0 0 ; ccw 6 6 @ 0 6 ; ccw 0 12 @ 0 6"},
    {"cutter", 1, "DIAMETER=12 SPHERIC_TCPTYPE=1", 904.779, "0 -6 ; ccw 6 0 @ 0 0 ; ccw 0 6 @ 0 0"},
    {"cutter", 2, "DIAMETER=16 HEIGHT=30", 5495.69, "0 0 ; ccw 8 8 @ 0 8 ; 8 30 ; 0 30"},
    {"cutter", 2, "DIAMETER=16 HEIGHT=30 FILLET=3", 5942.91,
     "0 0 ; 5 0 ; ccw 8 3 @ 5 3 ; 8 30 ; 0 30"},
    {"cutter", 3, "DIAMETER=20 HEIGHT=35 ANGLE=5 ANGLE1=10 FILLET=2", 13929.3,
     "0 0 ; 8.48866 1.49678 ; ccw 10.1338 3.29208 @ 8.14136 3.4664 ; 12.9078 35 ; 0 35"},
    {"cutter", 4, "DIAMETER=10 HEIGHT=60", 4555.08, "0 0 ; 5 3.0043 ; 5 60 ; 0 60"},
    {"cutter", 9, "DIAMETER=16 DIAMETER1=2 HEIGHT=20 ANGLE=30", 2510.34,
     "0 0 ; 1 0 ; 8 12.1244 ; 8 20 ; 0 20"},
    {"cutter", 10, "DIAMETER=20 DIAMETER1=8 DIAMETER2=12 HEIGHT=20 HEIGHT1=3 ANGLE1=45 ANGLE2=60",
     3379.54, "0 0 ; 4 0 ; 10 6 ; 10 9 ; 6 11.3094 ; 6 20 ; 0 20"},
    {"cutter", 11, "DIAMETER=32 DIAMETER1=25 HEIGHT=60 HEIGHT1=5 ANGLE=30 FILLET=0.8", 31309.3,
     "0 0 ; 15.2 0 ; ccw 16 0.8 @ 15.2 0.8 ; 16 5 ; 12.5 7.02073 ; 12.5 60 ; 0 60"},
    {"cutter", 12, "DIAMETER=16 DIAMETER1=6 HEIGHT=25 HEIGHT1=1 FILLET=4", 4246.61,
     "0 0 ; 3 0 ; 3 1 ; cw 7 5 @ 7 1 ; 8 5 ; 8 25 ; 0 25"},
    {"cutter", 13, "DIAMETER=12 DIAMETER1=10.2 HEIGHT=30 HEIGHT1=5", 3312.34,
     "0 0 ; 5.1 0 ; 6 5 ; 6 30 ; 0 30"},
    {"cutter", 14, "PIECE=5 0 12;20 12 12;8 20 16 LENGTH=40", 5902.01,
     "0 0 ; 6 5 ; 6 25 ; 10 25 ; 8 33 ; 8 40 ; 0 40"},
    {"cutter", 16, "DIAMETER=63 HEIGHT=6 FILLET=1", 18619.1,
     "0 0 ; 30.5 0 ; ccw 31.5 1 @ 30.5 1 ; 31.5 5 ; ccw 30.5 6 @ 30.5 5 ; 0 6"},
    {"cutter", 17, "DIAMETER=40 HEIGHT=15 FILLET=4", 14858.4,
     "0 0 ; 16 0 ; ccw 20 4 @ 16 4 ; ccw 16 8 @ 16 4 ; 16 15 ; 0 15"},
    {"cutter", 18, "DIAMETER=40 DIAMETER1=24 HEIGHT=12", 14313.2,
     "0 0 ; 18.3923 0 ; ccw 20 6 @ 8 6 ; ccw 18.3923 12 @ 8 6 ; 0 12"},
    {"cutter", 19, "DIAMETER=50 DIAMETER1=8 HEIGHT=6 HEIGHT1=15 ANGLE=120", 12457.6,
     "0 0 ; 4 2.3094 ; 4 15 ; 25 15 ; 25 21 ; 0 21"},
    {"cutter", 22,
     "DIAMETER=125 DIAMETER1=40 DIAMETER2=50 HEIGHT=4 HEIGHT1=6 HEIGHT2=10 FILLET=0.5", 76220.1,
     "0 0 ; 20 0 ; 20 6 ; 62 6 ; ccw 62.5 6.5 @ 62 6.5 ; 62.5 9.5 ; ccw 62 10 @ 62 9.5 ; 25 10 ; "
     "25 20 ; 0 20"},
    {"cutter", 23,
     "DIAMETER=50 DIAMETER3=40 HEIGHT=100 HEIGHT1=20 HEIGHT3=2 ANGLE1=3 FILLET=2 FILLET2=1 "
     "FILLET3=0.5",
     39924.3,
     "0 0 ; 23.1047 1.21086 ; ccw 25 3.20812 @ 23 3.20812 ; 25 19 ; ccw 24 20 @ 24 19 ; 20.5 20 ; "
     "cw 20 20.5 @ 20.5 20.5 ; 20 22 ; 0 22"},
    {"shank", 0, "DIAMETER=30 HEIGHT=20 ANGLE=45 DIAMETER2=50 HEIGHT2=35 ANGLE2=10", 96147.1,
     "0 0 ; 15 0 ; 18.5265 20 ; 25 26.4735 ; 25 61.4735 ; 0 61.4735"},
    {"shank", 1, "DIAMETER=12 HEIGHT=25 DIAMETER2=20 HEIGHT2=40", 17697.6,
     "0 0 ; 6 0 ; 10 25 ; 10 65 ; 0 65"},
    {"shank", 6, "", 12566.4, "0 0 ; 10 0 ; 10 40 ; 0 40"},
    {"shank", 9, "", 12566.4, "0 0 ; 10 0 ; 10 40 ; 0 40"},
    {"shank", 13, "", 12566.4, "0 0 ; 10 0 ; 10 40 ; 0 40"},
    {"shank", 7, "", 15053.5, "0 0 ; 5 0 ; 5 20 ; 10 25 ; 10 65 ; 0 65"},
    {"shank", 8, "", 61793, "0 0 ; 12 0 ; 12 60 ; 16 64 ; 16 104 ; 0 104"},
    {"shank", 10, "", 5015.03, "0 0 ; 4 0 ; 4 25 ; 5 26 ; 5 66 ; 4 66 ; 4 77 ; 0 77"},
    {"shank", 11, "", 19006.6, "0 0 ; 11 0 ; 11 50 ; 0 50"},
    {"shank", 12, "", 96604, "0 0 ; 20 0 ; 20 30 ; 25 30 ; 25 60 ; 0 60"},
    {"shank", 14, "", 15708, "0 0 ; 10 0 ; 10 50 ; 0 50"},
    {"shank", 15, "", 24543.7, "0 0 ; 12.5 0 ; 12.5 50 ; 0 50"},
    {"shank", 16, "", 54862.6, "0 0 ; 10 0 ; 10 30.5252 ; 20 58 ; 20 78 ; 0 78"},
    {"holder", 0, "DIAMETER=63 HEIGHT=80", 249380, "0 0 ; 31.5 0 ; 31.5 80 ; 0 80"},
    {"holder", 1, "DIAMETER=32 HEIGHT=50 DIAMETER2=63 HEIGHT2=20", 154093,
     "0 0 ; 16 0 ; 31.5 50 ; 31.5 70 ; 0 70"},
    {"cutter", 3, "DIAMETER=20 HEIGHT=35 ANGLE=5 ANGLE1=10 FILLET=2 STANDARD_TCPTYPE=1", 13929.3,
     "0 -3.4664 ; 8.48866 -1.96962 ; ccw 10.1338 -0.174311 @ 8.14136 0 ; 12.9078 31.5336 ; 0 "
     "31.5336"},
    {"cutter", 3, "DIAMETER=20 HEIGHT=35 STANDARD_TCPTYPE=2", 10995.6,
     "0 -35 ; 10 -35 ; 10 0 ; 0 0"},
    {"insert", 17, "DIAMETER=12.7 FILLET=0.8 ANGLE=80", 163.189,
     "0 0 ; ccw 0.612836 0.28577 @ 0 0.8 ; 7.85785 8.92004 ; ccw 7.85785 9.9485 @ 7.24501 9.43427 "
     "; 0.612836 18.5828 ; ccw -0.612836 18.5828 @ 0 18.0685 ; -7.85785 9.9485 ; ccw -7.85785 "
     "8.92004 @ -7.24501 9.43427 ; -0.612836 0.28577 ; ccw 0 0 @ 0 0.8"},
    {"insert", 18, "DIAMETER=9.525 FILLET=0.5 ANGLE=55 LENGTH=16.15", 153.393,
     "0 0 ; ccw 0.443505 0.269126 @ 0 0.5 ; 7.33705 13.5115 ; ccw 7.33705 13.9733 @ 6.89355 "
     "13.7424 ; 2.53159 23.2045 ; ccw 1.64458 23.2045 @ 2.08808 22.9736 ; -5.24897 9.96209 ; ccw "
     "-5.24897 9.50034 @ -4.80547 9.73121 ; -0.443505 0.269126 ; ccw 0 0 @ 0 0.5"},
    {"insert", 19, "DIAMETER=9.525 FILLET=0.4", 117.527,
     "0 0 ; ccw 0.34641 0.2 @ 0 0.4 ; 7.90248 13.2875 ; ccw 7.55607 13.8875 @ 7.55607 13.4875 ; "
     "-7.55607 13.8875 ; ccw -7.90248 13.2875 @ -7.55607 13.4875 ; -0.34641 0.2 ; ccw 0 0 @ 0 0.4"},
    {"insert", 20, "DIAMETER=15.875 FILLET=0.8", 228.561,
     "0 0 ; ccw 0.470228 0.152786 @ 0 0.8 ; 8.86086 6.24894 ; ccw 9.15148 7.14337 @ 8.39063 "
     "6.89615 ; 5.94654 17.0071 ; ccw 5.1857 17.5599 @ 5.1857 16.7599 ; -5.1857 17.5599 ; ccw "
     "-5.94654 17.0071 @ -5.1857 16.7599 ; -9.15148 7.14337 ; ccw -8.86086 6.24894 @ -8.39063 "
     "6.89615 ; -0.470228 0.152786 ; ccw 0 0 @ 0 0.8"},
    {"insert", 21, "DIAMETER=12.7 FILLET=1.2", 139.217,
     "0 0 ; ccw 0.6 0.16077 @ 0 1.2 ; 5.75 3.13412 ; ccw 6.35 4.17335 @ 5.15 4.17335 ; 6.35 "
     "10.1201 ; ccw 5.75 11.1593 @ 5.15 10.1201 ; 0.6 14.1326 ; ccw -0.6 14.1326 @ 0 13.0934 ; "
     "-5.75 11.1593 ; ccw -6.35 10.1201 @ -5.15 10.1201 ; -6.35 4.17335 ; ccw -5.75 3.13412 @ "
     "-5.15 4.17335 ; -0.6 0.16077 ; ccw 0 0 @ 0 1.2"},
    {"insert", 22, "DIAMETER=12.7 FILLET=0.8", 133.507,
     "0 0 ; ccw 0.306147 0.0608964 @ 0 0.8 ; 4.55393 1.82039 ; ccw 4.98689 2.25334 @ 4.24779 "
     "2.55949 ; 6.74638 6.50113 ; ccw 6.74638 7.11342 @ 6.00728 6.80728 ; 4.98689 11.3612 ; ccw "
     "4.55393 11.7942 @ 4.24779 11.0551 ; 0.306147 13.5537 ; ccw -0.306147 13.5537 @ 0 12.8146 ; "
     "-4.55393 11.7942 ; ccw -4.98689 11.3612 @ -4.24779 11.0551 ; -6.74638 7.11342 ; ccw -6.74638 "
     "6.50113 @ -6.00728 6.80728 ; -4.98689 2.25334 ; ccw -4.55393 1.82039 @ -4.24779 2.55949 ; "
     "-0.306147 0.0608964 ; ccw 0 0 @ 0 0.8"},
    {"insert", 23, "DIAMETER=12.7 FILLET=0.8", 164.877,
     "0 0 ; ccw 0.612836 0.28577 @ 0 0.8 ; 5.49342 6.10223 ; ccw 5.63234 6.34284 @ 4.88059 6.61646 "
     "; 8.22925 13.4778 ; ccw 7.61641 14.5392 @ 7.47749 13.7514 ; 0.138919 15.8577 ; ccw -0.138919 "
     "15.8577 @ 0 15.0699 ; -7.61641 14.5392 ; ccw -8.22925 13.4778 @ -7.47749 13.7514 ; -5.63234 "
     "6.34284 ; ccw -5.49342 6.10223 @ -4.88059 6.61646 ; -0.612836 0.28577 ; ccw 0 0 @ 0 0.8"},
    {"insert", 24, "DIAMETER=12.7", 126.677,
     "0 0 ; ccw 6.35 6.35 @ 0 6.35 ; ccw 0 12.7 @ 0 6.35 ; ccw -6.35 6.35 @ 0 6.35 ; ccw 0 0 @ 0 "
     "6.35"},
    {"insert", 25, "DIAMETER=20 ANGLE=60 LENGTH=50", 12080.4, "0 0 ; 10 17.3205 ; 10 50 ; 0 50"},
    // What looks odd and stands all the same.
    {"cutter", 0, "DIAMETER= ", 0, "0 0 ; 25 0 ; 25 50 ; 0 50"},
    {"cutter", 0, "DIAMETER= \t+1e1 ", 0, "0 0 ; 5 0 ; 5 50 ; 0 50"},
    {"cutter", 2, "DIAMETER=6.66667 FILLET=3.33334", 0,
     "0 0 ; ccw 3.33333 3.33333 @ 0 3.33333 ; 3.33333 40 ; 0 40"},
    {"cutter", 4, "DIAMETER=10 ANGLE=180", 0, "0 0 ; 5 0 ; 5 100 ; 0 100"},
    {"cutter", 3, "DIAMETER=20 HEIGHT=10 ANGLE=-45", 0, "0 0 ; 10 0 ; 0 10"},
    {"cutter", 14, "PIECE= 5 10 10 ; ", 0, "0 0 ; 5 0 ; 5 5 ; 0 5"},
    {"cutter", 17, "DIAMETER=10 HEIGHT=10 FILLET=5", 0, "0 0 ; ccw 5 5 @ 0 5 ; ccw 0 10 @ 0 5"},
    {"cutter", 22, "DIAMETER=40 DIAMETER1=0 HEIGHT2=0 FILLET=1", 0,
     "0 0 ; 19 0 ; ccw 20 1 @ 19 1 ; 20 2 ; ccw 19 3 @ 19 2 ; 0 3"},
    {"cutter", 23, "HEIGHT3=0 FILLET2=5 FILLET3=9", 0,
     "0 0 ; 25 0 ; 25 15 ; ccw 20 20 @ 20 15 ; 0 20"},
    {"cutter", 23, "DIAMETER3=50", 0, "0 0 ; 25 0 ; 25 22 ; 0 22"},
    {"shank", 16, "DIAMETER1=40 ANGLE2=0", 0, "0 0 ; 20 0 ; 20 58 ; 20 78 ; 0 78"},
    {"shank", 16, "DIAMETER2=10 ANGLE2=90", 0, "0 0 ; 10 0 ; 10 58 ; 5 58 ; 5 78 ; 0 78"},
};

class BodyOutline : public testing::TestWithParam<OutlineCase> {};
INSTANTIATE_TEST_SUITE_P(Types, BodyOutline, testing::ValuesIn(kOutlines),
                         outline_name<OutlineCase>);

TEST_P(BodyOutline, IsWrittenAsContourXml) {
  const auto& [kind, type, params, measure, outline] = GetParam();
  const auto item = make_body(kind, type, params);
  ASSERT_TRUE(build(*item)) << tdbProfile::OutlineError(*item);
  EXPECT_EQ(item->GetProfileXml(), contour_of(outline));
  if (measure == 0) return;
  EXPECT_NEAR((AnyBody{kind, type}.Measure(*item)), measure, 1e-5 * measure);
}

struct RefusedCase {
  std::string_view kind;
  int type;
  std::string_view blamed;  // the parameter that the reason names first
  std::string_view params;  // sets of them, " | " between, each refused
};

constexpr RefusedCase kRefused[] = {
    {"cutter", 0, "DIAMETER", "DIAMETER=0 | DIAMETER=1e-6 | DIAMETER=-4 | DIAMETER=abc"},
    {"cutter", 0, "HEIGHT", "HEIGHT=nan | HEIGHT=1e7"},
    {"cutter", 1, "SPHERIC_TCPTYPE", "SPHERIC_TCPTYPE=2 | SPHERIC_TCPTYPE=0.5"},
    {"cutter", 2, "FILLET", "DIAMETER=25 FILLET=13 | DIAMETER=25 HEIGHT=10"},
    {"cutter", 3, "ANGLE", "ANGLE=40 ANGLE1=50 | DIAMETER=10 HEIGHT=40 ANGLE=-20"},
    {"cutter", 3, "FILLET", "DIAMETER=10 FILLET=6"},
    {"cutter", 3, "HEIGHT", "DIAMETER=40 HEIGHT=20 ANGLE1=45"},
    {"cutter", 4, "HEIGHT", "DIAMETER=20 HEIGHT=5 ANGLE=90"},
    {"cutter", 9, "DIAMETER1", "DIAMETER=10 DIAMETER1=12"},
    {"cutter", 10, "HEIGHT", "HEIGHT=11.9"},
    {"cutter", 11, "DIAMETER1", "DIAMETER1=31"},
    {"cutter", 12, "FILLET", "DIAMETER=12 DIAMETER1=8 FILLET=3"},
    {"cutter", 13, "HEIGHT1", "HEIGHT=5 HEIGHT1=6"},
    {"cutter", 14, "PIECE",
     "PIECE=5 10 | PIECE=5 10 10 10 | PIECE=5 10 10;;5 10 10 | PIECE=5 10 0;5 0 10 | PIECE=5 0 0 | "
     "PIECE=0 10 10"},
    {"cutter", 14, "LENGTH", "PIECE=5 10 10 LENGTH=4 | PIECE=5 10 0 LENGTH=6"},
    {"cutter", 16, "FILLET", "HEIGHT=4 FILLET=2.1"},
    {"cutter", 17, "FILLET", "DIAMETER=16 HEIGHT=7 FILLET=4 | DIAMETER=16 HEIGHT=17 FILLET=8"},
    {"cutter", 18, "HEIGHT", "DIAMETER1=10 HEIGHT=12"},
    {"cutter", 18, "DIAMETER1", "DIAMETER=10 DIAMETER1=60 HEIGHT=40"},
    {"cutter", 19, "HEIGHT1", "DIAMETER1=50 HEIGHT1=5"},
    {"cutter", 22, "FILLET", "DIAMETER=40 FILLET=0.5"},
    {"cutter", 23, "DIAMETER3", "DIAMETER3=51"},
    {"cutter", 23, "FILLET2", "DIAMETER3=50 FILLET3=1"},
    {"cutter", 5, "PROFILE", "DIAMETER=10"},
    {"shank", 0, "ANGLE", "ANGLE=90"},
    {"shank", 0, "ANGLE2", "DIAMETER=10 HEIGHT=50 ANGLE2=-6"},
    {"shank", 0, "HEIGHT", "HEIGHT=0"},
    {"shank", 1, "DIAMETER", "DIAMETER=0 DIAMETER2=0"},
    {"shank", 1, "HEIGHT2", "DIAMETER2=0 HEIGHT2=5"},
    {"shank", 16, "HEIGHT2", "HEIGHT=50"},
    {"shank", 16, "HEIGHT", "HEIGHT=22"},
    {"shank", 16, "ANGLE2", "ANGLE2=0"},
    {"cutter", 7, "INSERT_SHAPE", "INSERT_SHAPE=X"},
    {"cutter", 7, "FILLET", "FILLET=6.4"},
    {"cutter", 7, "ANGLE", "ANGLE=180 | INSERT_SHAPE=W ANGLE=60"},
    {"cutter", 7, "LENGTH", "INSERT_SHAPE=K LENGTH=5"},
    {"cutter", 7, "HEIGHT", "HEIGHT=0"},
};

class RefusedOutline : public testing::TestWithParam<RefusedCase> {};
INSTANTIATE_TEST_SUITE_P(Parameters, RefusedOutline, testing::ValuesIn(kRefused),
                         outline_name<RefusedCase>);

TEST_P(RefusedOutline, KeepsTheStoredTextAndTellsWhy) {
  const auto& [kind, type, blamed, all_params] = GetParam();
  EXPECT_EQ(tdbProfile::OutlineError(*make_body(kind, type)).empty(), blamed != "PROFILE");
  for (std::string_view rest = all_params; !rest.empty();) {
    const std::string_view params = rest.substr(0, rest.find(" | "));
    rest.remove_prefix(std::min(params.size() + 3, rest.size()));
    const auto item = make_body(kind, type, params);
    item->SetProfileXml(" ");
    EXPECT_FALSE(build(*item)) << params;
    EXPECT_STREQ(item->GetProfileXml(), " ") << params;
    const std::string error = tdbProfile::OutlineError(*item);
    EXPECT_TRUE(error.starts_with(std::string(blamed) + " ")) << params << ": " << error;
    Contours contours;
    EXPECT_FALSE(item->GetProfile(nullptr, contours, 0.1, 0)) << params;
    EXPECT_TRUE(contours.empty()) << params;
  }
}

struct InsertSizeCase {
  int shape;  // of the cutting tool; below 17: the letter decides
  std::string_view params;
  double diameter;
  double angle;
  double length;
};

constexpr InsertSizeCase kInsertSizes[] = {
    {0, "INSERT_SHAPE= v DIAMETER=9.525", 9.525, 35, 16.6063},
    {17, "INSERT_SHAPE=D", 12.7, 55, 15.5039},
    {17, "INSERT_SHAPE=T", 12.7, 80, 12.8959},
    {17, "INSERT_SHAPE=D ANGLE=60", 12.7, 60, 14.6647},
    {17, "DIAMETER=0 LENGTH=12.9 ANGLE=80", 12.704, 80, 12.9},
    {19, "DIAMETER=0 LENGTH=16.5", 9.52628, 60, 16.5},
    {23, "DIAMETER=0 LENGTH=8.69", 12.7039, 80, 8.69},
    {24, "DIAMETER=0 LENGTH=10", 10, 0, 10},
    {20, "DIAMETER=0", 12.7, 108, 9.22709},
    {19, "ANGLE=nonsense", 12.7, 60, 21.997},
    {18, "DIAMETER=9.525 ANGLE=55", 9.525, 55, 17.4419},
    {25, "DIAMETER=20", 20, 60, 37.3205},
};

TEST(InsertSize, IsCompletedFromWhatIsGiven) {
  for (const auto& [shape, params, diameter, angle, length] : kInsertSizes) {
    const auto cutter = make_body("insert", shape, params);
    EXPECT_EQ(tdbProfile::OutlineError(*cutter), "");
    std::map<std::string, double> values;
    for (const auto& d : tdbProfile::GetDimensions(*cutter)) values[d.name] = d.value;
    EXPECT_NEAR(values["DIAMETER"], diameter, 1e-4 * diameter) << shape << params;
    EXPECT_NEAR(values["ANGLE"], angle, 1e-6) << shape << params;
    EXPECT_NEAR(values["LENGTH"], length, 1e-4 * length) << shape << params;
  }
}

}  // namespace
}  // namespace tooldb::test
