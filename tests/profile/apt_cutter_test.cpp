#include <gtest/gtest.h>

#include <algorithm>

#include "tests/geom/points.h"
#include "tests/geom/row_name.h"
#include "tests/profile/bodies.h"
#include "tooldb/tool_makers.h"

namespace tooldb::test {
namespace {

std::vector<float> floats(std::string_view text) {
  const auto row = number_rows(text).at(0);
  return {row.begin(), row.end()};
}

bool make_mill(tdbToolCutter& cutter, std::string_view numbers) {
  const auto n = floats(numbers);
  return tdbMakeAptMillCutter(&cutter, n.at(0), n.at(1), n.at(2), n.at(3), n.at(4), n.at(5),
                              n.at(6));
}

bool make_turn(tdbToolCutter& cutter, std::string_view numbers) {
  const auto n = floats(numbers);
  return tdbMakeAptTurnCutter(&cutter, n.at(0), n.at(1), n.at(2), n.at(3));
}

struct MillCase {
  std::string_view name;
  std::string_view numbers;  // d r e f alpha beta h
  std::string_view passes;   // where the arc begins and ends, and the top
  std::size_t lines;
  double volume;
};

constexpr MillCase kMills[] = {
    {"Flat", "10 0 5 0 0 0 50", "5 0 ; 5 50", 3, 3926.99},
    {"Ball", "10 5 0 5 0 0 50", "0 0 ; 0.174497 0.003046 ; 5 5 ; 5 50", 47, 3796.01},
    {"Bull", "20 3 7 3 0 0 60", "7 0 ; 10 3 ; 10 60", 48, 18736.3},
    {"BullWithoutItsCentre", "20 3 0 0 0 0 60", "7 0 ; 10 3 ; 10 60", 48, 18736.3},
    {"Taper", "6 0 3 0 0 5 40", "3 0 ; 6.49955 40", 3, 2963.27},
    {"TaperBall", "5.49799 3 0 3 0 5 40", "0 0 ; 2.98858 2.73853 ; 6.24854 40", 45, 2649.86},
    {"Drill", "10 0 5 3.0043 31 0 60", "5 3.0043 ; 5 60", 3, 4555.08},
    {"AllSeven", "50 2 23.1414 6.1113 10 5 50", "23.4887 4.14168 ; 25.1338 5.93699 ; 28.9888 50",
     41, 107377},
    {"Dovetail", "30 1 13.6968 1 0 -15 20", "13.6968 0 ; 14.6627 1.25882 ; 9.64102 20", 56,
     9652.37},
    {"Barrel", "20 50 -40 25 60 -10 40", "3.30127 0 ; 9.24039 33.6824 ; 8.12643 40", 23, 9204.9},
};

class AptMill : public testing::TestWithParam<MillCase> {};
INSTANTIATE_TEST_SUITE_P(Forms, AptMill, testing::ValuesIn(kMills), row_name<MillCase>);

TEST_P(AptMill, BecomesLines) {
  const auto& [name, numbers, passes, lines, volume] = GetParam();
  tdbToolCutter cutter(9);
  ASSERT_TRUE(make_mill(cutter, numbers));
  const std::string_view xml = cutter.GetProfileXml();
  EXPECT_TRUE(xml.starts_with("<LINE><START>0.000000 0.000000</START><END>")) << xml;
  EXPECT_EQ(xml.find('-'), xml.npos);
  const auto segments = parse_contour(xml).value();
  EXPECT_EQ(segments.size(), lines);
  EXPECT_EQ(segments.back().end, (Vec2{0, floats(numbers)[6]}));
  for (const Vec2 point : points(passes)) {
    EXPECT_TRUE(std::ranges::any_of(segments, [&](const ContourSegment& s) {
      return distance(s.start, point) < 1e-4;
    })) << point.x;
  }
  EXPECT_NEAR(volume_of_revolution(segments), volume, 5e-4 * volume);
}

TEST(AptShank, IsACylinder) {
  tdbToolShank shank(2);
  EXPECT_TRUE(tdbMakeAptMillShank(&shank, 12, 0.000009F));
  EXPECT_TRUE(tdbMakeAptMillShank(&shank, -3, 40));
  EXPECT_STREQ(shank.GetProfileXml(), "");
  EXPECT_FALSE(tdbMakeAptMillShank(&shank, 1e8F, 40));
  EXPECT_FALSE(tdbMakeAptMillShank(&shank, 12, 1e8F));
  EXPECT_TRUE(tdbMakeAptMillShank(&shank, 12.5F, 40));
  EXPECT_EQ(shank.GetProfileXml(), contour_of("0 0 ; 6.25 0 ; 6.25 40 ; 0 40"));
  EXPECT_FALSE(tdbMakeAptTurnShank(&shank, 12, 40));
}

struct TurnCase {
  std::string_view numbers;  // d l angle h
  double area;
  std::string_view outline;
};

constexpr TurnCase kTurns[] = {
    {"0.8 10 55 0", 40.8248,
     "0 0 ; ccw 0.354804 0.215301 @ 0 0.4 ; 4.61749 8.40384 ; -4.61749 8.40384 ; -0.354804 "
     "0.215301 ; ccw 0 0 @ 0 0.4"},
    {"1.6 12 80 15", 167.152,
     "0 0 ; ccw 0.612836 0.28577 @ 0 0.8 ; 7.71345 8.74795 ; 7.71345 15 ; -7.71345 15 ; -7.71345 "
     "8.74795 ; -0.612836 0.28577 ; ccw 0 0 @ 0 0.8"},
    {"0 10 60 0", 43.3013, "0 0 ; 5 8.66025 ; -5 8.66025 ; 0 0"},
};

TEST(AptTurn, IsANoseWithTwoEdges) {
  for (const auto& [numbers, area, outline] : kTurns) {
    tdbToolCutter cutter(8);
    ASSERT_TRUE(make_turn(cutter, numbers)) << numbers;
    EXPECT_EQ(cutter.GetProfileXml(), contour_of(outline));
    EXPECT_NEAR(signed_area(*parse_contour(cutter.GetProfileXml())), area, 1e-5 * area);
  }
}

TEST(AptCutter, ChangesNothingWhenRefused) {
  tdbToolCutter cutter(5);
  cutter.SetProfileXml("kept");
  for (const auto numbers : {"10 6 -1 6 0 0 50",    // the arc crosses the axis
                             "20 5 5 5 0 0 3",      // the top is inside the corner
                             "20 0 10 0 60 30 50",  // the lines do not meet
                             "20 0 10 0 0 -30 50",  // the side crosses the axis
                             "1e8 0 5 0 0 0 50",    // not given
                             "10 0 5 0 0 0 1e8", "-1 0 0 0 0 0 50", "10 -1 0 0 0 0 50",
                             "10 0 0 0 -1 0 50", "10 0 0 0 0 -90 50", "10 0 5 0 0 0 0",
                             "0 0 0 0 0 0 50",  // no radius anywhere
                             "10 0 5 0 0 0 inf", "nan 0 5 0 0 0 50"}) {
    EXPECT_FALSE(make_mill(cutter, numbers)) << numbers;
  }
  for (const auto numbers : {"-1 10 60 0", "0 0 60 0", "0 10 0 0", "0 10 180 0", "4 2 60 0",
                             "0 10 60 8.6", "0 10 60 -1", "0 10 60 1e8"}) {
    EXPECT_FALSE(make_turn(cutter, numbers)) << numbers;
  }
  EXPECT_STREQ(cutter.GetProfileXml(), "kept");
  EXPECT_FALSE(tdbMakeAptMillCutter(nullptr, 10, 0, 5, 0, 0, 0, 50));
}

}  // namespace
}  // namespace tooldb::test
