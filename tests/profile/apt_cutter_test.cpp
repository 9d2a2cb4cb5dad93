#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>

#include "tests/geom/row_name.h"
#include "tests/profile/bodies.h"
#include "tooldb/tool_makers.h"

namespace tooldb::test {
namespace {

using AptNumbers = std::array<float, 7>;

bool make_mill(tdbToolCutter& cutter, const AptNumbers& n) {
  return tdbMakeAptMillCutter(&cutter, n[0], n[1], n[2], n[3], n[4], n[5], n[6]);
}

struct MillCase {
  std::string_view name;
  AptNumbers numbers;  // d r e f alpha beta h
  Vec2 lower;          // where the arc begins and ends
  Vec2 upper;
  std::size_t lines;
  double top;
  double volume;
};

constexpr MillCase kMills[] = {
    {"Flat", {10, 0, 5, 0, 0, 0, 50}, {5, 0}, {5, 0}, 3, 5, 3926.99},
    {"Ball", {10, 5, 0, 5, 0, 0, 50}, {0, 0}, {5, 5}, 47, 5, 3796.01},
    {"Bull", {20, 3, 7, 3, 0, 0, 60}, {7, 0}, {10, 3}, 48, 10, 18736.3},
    {"Taper", {6, 0, 3, 0, 0, 5, 40}, {3, 0}, {3, 0}, 3, 6.49955, 2963.27},
    {"TaperBall", {5.49799F, 3, 0, 3, 0, 5, 40}, {0, 0}, {2.98858, 2.73853}, 45, 6.24854, 2649.86},
    {"Drill", {10, 0, 5, 3.0043F, 31, 0, 60}, {5, 3.0043}, {5, 3.0043}, 3, 5, 4555.08},
    {"AllSeven",
     {50, 2, 23.1414F, 6.1113F, 10, 5, 50},
     {23.4887, 4.14168},
     {25.1338, 5.93699},
     41,
     28.9888,
     107377},
    {"Dovetail",
     {30, 1, 13.6968F, 1, 0, -15, 20},
     {13.6968, 0},
     {14.6627, 1.25882},
     56,
     9.64102,
     9652.37},
    {"Barrel",
     {20, 50, -40, 25, 60, -10, 40},
     {3.30127, 0},
     {9.24039, 33.6824},
     23,
     8.12643,
     9204.9},
};

class AptMill : public testing::TestWithParam<MillCase> {};
INSTANTIATE_TEST_SUITE_P(Forms, AptMill, testing::ValuesIn(kMills), row_name<MillCase>);

bool passes(const std::vector<ContourSegment>& segments, Vec2 point) {
  return std::ranges::any_of(segments, [&](const ContourSegment& s) {
    return distance(s.start, point) < 1e-4 || distance(s.end, point) < 1e-4;
  });
}

TEST_P(AptMill, BecomesLines) {
  const MillCase& form = GetParam();
  tdbToolCutter cutter(9);
  ASSERT_TRUE(make_mill(cutter, form.numbers));
  EXPECT_EQ(cutter.GetType(), 9);
  const auto segments = parse_contour(cutter.GetProfileXml());
  ASSERT_TRUE(segments);
  EXPECT_EQ(segments->size(), form.lines);
  EXPECT_EQ(segments->front().start, (Vec2{0, 0}));
  EXPECT_EQ(segments->back().end, (Vec2{0, form.numbers[6]}));
  EXPECT_NEAR(segments->back().start.x, form.top, 1e-4);
  EXPECT_TRUE(passes(*segments, form.lower));
  EXPECT_TRUE(passes(*segments, form.upper));
  for (std::size_t i = 1; i < segments->size(); ++i) {
    EXPECT_EQ((*segments)[i].start, (*segments)[i - 1].end);
  }
  EXPECT_NEAR(volume_of_revolution(*segments), form.volume, 5e-4 * form.volume);
}

TEST(AptMill, ShortStatementsLeaveTheCentreOut) {
  tdbToolCutter full(5);
  tdbToolCutter brief(5);
  ASSERT_TRUE(make_mill(full, {20, 3, 7, 3, 0, 0, 60}));
  ASSERT_TRUE(make_mill(brief, {20, 3, 0, 0, 0, 0, 60}));
  EXPECT_STREQ(full.GetProfileXml(), brief.GetProfileXml());
}

TEST(AptMill, WritesSixDigitsAfterThePoint) {
  tdbToolCutter cutter(5);
  ASSERT_TRUE(make_mill(cutter, {10, 5, 0, 5, 0, 0, 50}));
  const std::string_view xml = cutter.GetProfileXml();
  EXPECT_TRUE(
      xml.starts_with("<LINE><START>0.000000 0.000000</START><END>0.174497 0.003046</END></LINE>"))
      << xml.substr(0, 80);
  EXPECT_EQ(xml.find('-'), xml.npos);
}

constexpr AptNumbers kRefusedMills[] = {
    {10, 6, -1, 6, 0, 0, 50},    // the arc crosses the axis
    {20, 5, 5, 5, 0, 0, 3},      // the top is inside the corner
    {20, 0, 10, 0, 60, 30, 50},  // the lines do not meet
    {20, 0, 10, 0, 0, -30, 50},  // the side crosses the axis
    {1e8F, 0, 5, 0, 0, 0, 50},   // not given
    {10, 0, 5, 0, 0, 0, 1e8F},
    {-1, 0, 0, 0, 0, 0, 50},
    {10, -1, 0, 0, 0, 0, 50},
    {10, 0, 0, 0, -1, 0, 50},
    {10, 0, 0, 0, 0, -90, 50},
    {10, 0, 5, 0, 0, 0, 0},
    {0, 0, 0, 0, 0, 0, 50},  // no radius anywhere
    {10, 0, 5, 0, 0, 0, std::numeric_limits<float>::infinity()},
    {std::numeric_limits<float>::quiet_NaN(), 0, 5, 0, 0, 0, 50},
};

TEST(AptMill, ChangesNothingWhenRefused) {
  for (const AptNumbers& numbers : kRefusedMills) {
    tdbToolCutter cutter(5);
    cutter.SetProfileXml("kept");
    EXPECT_FALSE(make_mill(cutter, numbers)) << testing::PrintToString(numbers);
    EXPECT_STREQ(cutter.GetProfileXml(), "kept");
  }
  EXPECT_FALSE(tdbMakeAptMillCutter(nullptr, 10, 0, 5, 0, 0, 0, 50));
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
  std::array<float, 4> numbers;  // d l angle h
  std::string_view outline;
  double area;
};

constexpr TurnCase kTurns[] = {
    {{0.8F, 10, 55, 0},
     "0 0 ; ccw 0.354804 0.215301 @ 0 0.4 ; 4.61749 8.40384 ; -4.61749 8.40384 ; -0.354804 "
     "0.215301 ; ccw 0 0 @ 0 0.4",
     40.8248},
    {{1.6F, 12, 80, 15},
     "0 0 ; ccw 0.612836 0.28577 @ 0 0.8 ; 7.71345 8.74795 ; 7.71345 15 ; -7.71345 15 ; -7.71345 "
     "8.74795 ; -0.612836 0.28577 ; ccw 0 0 @ 0 0.8",
     167.152},
    {{0, 10, 60, 0}, "0 0 ; 5 8.66025 ; -5 8.66025 ; 0 0", 43.3013},
};

TEST(AptTurn, IsANoseWithTwoEdges) {
  for (const auto& [n, outline, area] : kTurns) {
    tdbToolCutter cutter(8);
    ASSERT_TRUE(tdbMakeAptTurnCutter(&cutter, n[0], n[1], n[2], n[3])) << outline;
    EXPECT_EQ(cutter.GetProfileXml(), contour_of(outline));
    EXPECT_NEAR(signed_area(*parse_contour(cutter.GetProfileXml())), area, 1e-5 * area);
  }
}

constexpr std::array<float, 4> kRefusedTurns[] = {
    {-1, 10, 60, 0}, {0, 0, 60, 0},     {0, 10, 0, 0},   {0, 10, 180, 0},
    {4, 2, 60, 0},   {0, 10, 60, 8.6F}, {0, 10, 60, -1}, {0, 10, 60, 1e8F},
};

TEST(AptTurn, ChangesNothingWhenRefused) {
  for (const auto& n : kRefusedTurns) {
    tdbToolCutter cutter(8);
    EXPECT_FALSE(tdbMakeAptTurnCutter(&cutter, n[0], n[1], n[2], n[3]))
        << testing::PrintToString(n);
    EXPECT_STREQ(cutter.GetProfileXml(), "");
  }
}

}  // namespace
}  // namespace tooldb::test
