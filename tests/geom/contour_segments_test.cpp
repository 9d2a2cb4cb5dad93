#include "geom/contour_segments.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "geom/number_text.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

using std::numbers::pi;

double radians(double deg) { return deg * pi / 180; }

void append_point(std::string& out, Vec2 p) {
  append_general(out, std::abs(p.x) < 1e-9 ? 0 : p.x);
  out += ' ';
  append_general(out, std::abs(p.y) < 1e-9 ? 0 : p.y);
}

// "x y" of the start, then per segment " ; x y" or " ; ccw x y @ cx cy".
std::string as_text(const std::vector<ContourSegment>& segments) {
  std::string out;
  append_point(out, segments.front().start);
  for (const ContourSegment& s : segments) {
    out += " ; ";
    if (s.kind != SegmentKind::kLine) out += s.kind == SegmentKind::kCcw ? "ccw " : "cw ";
    append_point(out, s.end);
    if (s.kind == SegmentKind::kLine) continue;
    out += " @ ";
    append_point(out, s.center);
  }
  return out;
}

struct OutlineCase {
  const char* name;
  std::vector<SharpCorner> corners;
  const char* expected;  // null: refused
};

const std::vector<OutlineCase> kOpenOutlines = {
    {"NoRadius", {{{0, 0}, 0}, {{5, 0}, 0}, {{5, 9}, 0}, {{0, 9}, 0}}, "0 0 ; 5 0 ; 5 9 ; 0 9"},
    {"OuterCorner",
     {{{0, 0}, 0}, {{16, 0}, 0.8}, {{16, 5}, 0}},
     "0 0 ; 15.2 0 ; ccw 16 0.8 @ 15.2 0.8 ; 16 5"},
    {"InnerCorner", {{{9, 0}, 0}, {{4, 0}, 1}, {{4, 7}, 0}}, "9 0 ; 5 0 ; cw 4 1 @ 5 1 ; 4 7"},
    {"FullBallHasNoLineToTheTip",
     {{{0, 0}, 0}, {{8, 0}, 8}, {{8, 30}, 0}, {{0, 30}, 0}},
     "0 0 ; ccw 8 8 @ 0 8 ; 8 30 ; 0 30"},
    {"TwoArcsFillASide",
     {{{0, 0}, 0}, {{9, 0}, 2}, {{9, 4}, 2}, {{0, 4}, 0}},
     "0 0 ; 7 0 ; ccw 9 2 @ 7 2 ; ccw 7 4 @ 7 2 ; 0 4"},
    {"ConeAndCornerAndTaper",
     {{{0, 0}, 0},
      {{25, 25 * std::tan(radians(10))}, 2},
      {{25 + (50 - 25 * std::tan(radians(10))) * std::tan(radians(5)), 50}, 0},
      {{0, 50}, 0}},
     "0 0 ; 23.4887 4.14168 ; ccw 25.1338 5.93699 @ 23.1414 6.1113 ; 28.9888 50 ; 0 50"},
    {"EqualCornersKeepTheLargerRadius",
     {{{0, 0}, 0}, {{16, 0}, 0.3}, {{16, 0}, 0.8}, {{16, 0}, 0}, {{16, 5}, 0}},
     "0 0 ; 15.2 0 ; ccw 16 0.8 @ 15.2 0.8 ; 16 5"},
    {"StraightOnNeedsNoArc", {{{0, 0}, 0}, {{3, 0}, 2}, {{9, 0}, 0}}, "0 0 ; 3 0 ; 9 0"},
    {"RadiusOfAnEndIsNotUsed", {{{0, 0}, 9}, {{3, 0}, 0}, {{3, 1}, 9}}, "0 0 ; 3 0 ; 3 1"},
    {"SlackShrinksBothRadii",
     {{{0, 0}, 0}, {{9, 0}, 2.000009}, {{9, 4}, 2}, {{0, 4}, 0}},
     "0 0 ; 7 0 ; ccw 9 2 @ 7 2 ; ccw 7 4 @ 7 2 ; 0 4"},
    {"RadiusBeyondTheSide", {{{0, 0}, 0}, {{8, 0}, 8.001}, {{8, 30}, 0}}, nullptr},
    {"TwoRadiiBeyondTheSide", {{{0, 0}, 0}, {{9, 0}, 2}, {{9, 4}, 2.1}, {{0, 4}, 0}}, nullptr},
    {"ArcOnATurnBack", {{{0, 0}, 0}, {{9, 0}, 0.1}, {{2, 0}, 0}}, nullptr},
    {"NegativeRadius", {{{0, 0}, 0}, {{9, 0}, -1}, {{9, 9}, 0}}, nullptr},
    {"NotFinite", {{{0, 0}, 0}, {{9, NAN}, 0}, {{9, 9}, 0}}, nullptr},
    {"OnePoint", {{{1, 2}, 0}, {{1, 2}, 0}}, nullptr},
};

class RoundCorners : public testing::TestWithParam<OutlineCase> {};
TEST_P(RoundCorners, GivesLinesAndArcs) {
  const auto outline = round_corners(GetParam().corners);
  ASSERT_EQ(outline.has_value(), GetParam().expected != nullptr);
  if (!outline) return;
  EXPECT_EQ(as_text(*outline), GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(Outlines, RoundCorners, testing::ValuesIn(kOpenOutlines),
                         row_name<OutlineCase>);

// Corners on a circle, starting at the lowest one, `radii[i % size]` from the centre.
std::vector<SharpCorner> star(int count, const std::vector<double>& radii, double fillet,
                              double centre_y) {
  std::vector<SharpCorner> corners;
  for (int i = 0; i < count; ++i) {
    const double a = radians(-90 + 360.0 * i / count);
    const double r = radii[static_cast<std::size_t>(i) % radii.size()];
    corners.push_back({{r * std::cos(a), centre_y + r * std::sin(a)}, fillet});
  }
  return corners;
}

// A turning insert whose cutting corner of `included_deg` points down, its nose touching (0, 0).
std::vector<SharpCorner> insert(int count, double circle, double fillet, double included_deg) {
  const double half = std::sin(radians(included_deg / 2));
  const double far = count == 6 && included_deg < 120 ? std::sin(radians(120 - included_deg / 2))
                     : count == 4                     ? std::cos(radians(included_deg / 2))
                                                      : half;
  return star(count, {circle / 2 / half, circle / 2 / far}, fillet,
              fillet + (circle / 2 - fillet) / half);
}

struct InsertCase {
  const char* name;
  std::vector<SharpCorner> corners;
  double area;
  const char* expected;
};
const std::vector<InsertCase> kInserts = {
    {"Rhombic80", insert(4, 12.7, 0.8, 80), 163.189,
     "0 0 ; ccw 0.612836 0.28577 @ 0 0.8 ; 7.85785 8.92004 ; ccw 7.85785 9.9485 @ 7.24501 9.43427 "
     "; 0.612836 18.5828 ; ccw -0.612836 18.5828 @ 0 18.0685 ; -7.85785 9.9485 ; ccw -7.85785 "
     "8.92004 @ -7.24501 9.43427 ; -0.612836 0.28577 ; ccw 0 0 @ 0 0.8"},
    {"Triangle", insert(3, 9.525, 0.4, 60), 117.527,
     "0 0 ; ccw 0.34641 0.2 @ 0 0.4 ; 7.90248 13.2875 ; ccw 7.55607 13.8875 @ 7.55607 13.4875 ; "
     "-7.55607 13.8875 ; ccw -7.90248 13.2875 @ -7.55607 13.4875 ; -0.34641 0.2 ; ccw 0 0 @ 0 "
     "0.4"},
    {"Hexagon", insert(6, 12.7, 1.2, 120), 139.217,
     "0 0 ; ccw 0.6 0.16077 @ 0 1.2 ; 5.75 3.13412 ; ccw 6.35 4.17335 @ 5.15 4.17335 ; 6.35 "
     "10.1201 ; ccw 5.75 11.1593 @ 5.15 10.1201 ; 0.6 14.1326 ; ccw -0.6 14.1326 @ 0 13.0934 ; "
     "-5.75 11.1593 ; ccw -6.35 10.1201 @ -5.15 10.1201 ; -6.35 4.17335 ; ccw -5.75 3.13412 @ "
     "-5.15 4.17335 ; -0.6 0.16077 ; ccw 0 0 @ 0 1.2"},
    {"SharpTriangle", insert(3, 9.525, 0, 60), 117.527 + 3 * 0.16 * (std::sqrt(3.0) - pi / 3),
     "0 0 ; 8.24889 14.2875 ; -8.24889 14.2875 ; 0 0"},
};
class ClosedCorners : public testing::TestWithParam<InsertCase> {};
TEST_P(ClosedCorners, StartAndEndInTheFirstCorner) {
  const auto outline = round_closed_corners(GetParam().corners);
  ASSERT_TRUE(outline);
  EXPECT_EQ(as_text(*outline), GetParam().expected);
  EXPECT_NEAR(signed_area(*outline), GetParam().area, 5e-4);
}
INSTANTIATE_TEST_SUITE_P(Inserts, ClosedCorners, testing::ValuesIn(kInserts), row_name<InsertCase>);

TEST(ClosedCornersLimits, RefusesArcsThatMeet) {
  EXPECT_TRUE(round_closed_corners(insert(3, 10, 5, 60)));
  EXPECT_FALSE(round_closed_corners(insert(3, 10, 5.001, 60)));
  EXPECT_FALSE(round_closed_corners(std::vector<SharpCorner>{{{0, 0}, 0}, {{1, 0}, 0}}));
}

struct VolumeCase {
  const char* name;
  std::vector<SharpCorner> corners;
  double volume;
};
const std::vector<VolumeCase> kVolumes = {
    {"Flat", {{{0, 0}, 0}, {{10, 0}, 0}, {{10, 40}, 0}, {{0, 40}, 0}}, 12566.4},
    {"Drill",
     {{{0, 0}, 0}, {{5, 5 / std::tan(radians(59))}, 0}, {{5, 60}, 0}, {{0, 60}, 0}},
     4555.08},
    {"BallEnd", {{{0, 0}, 0}, {{8, 0}, 8}, {{8, 30}, 0}, {{0, 30}, 0}}, 5495.69},
};
class Revolution : public testing::TestWithParam<VolumeCase> {};
TEST_P(Revolution, VolumeAndItsReverse) {
  auto outline = *round_corners(GetParam().corners);
  EXPECT_NEAR(volume_of_revolution(outline), GetParam().volume, GetParam().volume * 5e-6);
  std::vector<ContourSegment> back;
  for (auto s = outline.rbegin(); s != outline.rend(); ++s) {
    const SegmentKind kind = s->kind == SegmentKind::kCcw ? SegmentKind::kCw : s->kind;
    back.push_back({s->end, s->start, s->center, kind});
  }
  EXPECT_NEAR(volume_of_revolution(back), -GetParam().volume, GetParam().volume * 5e-6);
  EXPECT_NEAR(signed_area(back), -signed_area(outline), 1e-9);
}
INSTANTIATE_TEST_SUITE_P(Bodies, Revolution, testing::ValuesIn(kVolumes), row_name<VolumeCase>);

struct ArcCase {
  const char* name;
  ContourSegment arc;
  double tolerance;
  std::size_t points;
  std::vector<Vec2> must_have;
};
const std::vector<ArcCase> kArcs = {
    {"Quarter", {{0, 0}, {8, 8}, {0, 8}, SegmentKind::kCcw}, 0.01, 17, {{0, 0}, {8, 8}}},
    {"HalfRight", {{0, 0}, {0, 16}, {0, 8}, SegmentKind::kCcw}, 0.01, 33, {{8, 8}}},
    {"HalfLeft", {{0, 0}, {0, 16}, {0, 8}, SegmentKind::kCw}, 0.01, 33, {{-8, 8}}},
    {"FullCircle",
     {{3, 4}, {3, 4}, {0, 0}, SegmentKind::kCcw},
     0.3,
     13,
     {{3, 4}, {0, 5}, {-5, 0}, {0, -5}, {5, 0}}},
    {"FullCircleClockwise",
     {{5, 0}, {5, 0}, {0, 0}, SegmentKind::kCw},
     0.3,
     13,
     {{0, -5}, {-5, 0}, {0, 5}}},
    {"AcrossTwoQuadrants",
     {{-3, -4}, {4, -3}, {0, 0}, SegmentKind::kCcw},
     9,
     3,
     {{-3, -4}, {0, -5}, {4, -3}}},
    {"CoarseStillHasQuarters", {{5, 0}, {5, 0}, {0, 0}, SegmentKind::kCcw}, 99, 5, {{-5, 0}}},
    {"RadiiDisagree", {{5, 0}, {0, 5.002}, {0, 0}, SegmentKind::kCcw}, 0.01, 14, {{0, 5.002}}},
    {"CenterOnStart", {{5, 0}, {7, 0}, {5, 0}, SegmentKind::kCcw}, 0.01, 2, {{5, 0}, {7, 0}}},
    {"NotFinite", {{NAN, 0}, {7, INFINITY}, {5, 0}, SegmentKind::kCcw}, 0.01, 2, {}},
};
class FlattenArc : public testing::TestWithParam<ArcCase> {};
TEST_P(FlattenArc, HitsEndsAndQuadrantsWithinTolerance) {
  const ContourSegment& arc = GetParam().arc;
  const auto points = flatten({&arc, 1}, GetParam().tolerance);
  EXPECT_EQ(points.size(), GetParam().points);
  for (Vec2 wanted : GetParam().must_have) {
    EXPECT_TRUE(std::ranges::find(points, wanted) != points.end()) << wanted.x << ' ' << wanted.y;
  }
  const double r = distance(arc.start, arc.center);
  for (std::size_t i = 1; i < points.size() && r > 0; ++i) {
    const Vec2 middle = 0.5 * (points[i - 1] + points[i]);
    const double sagitta = r - distance(middle, arc.center);
    EXPECT_LE(sagitta, std::min(GetParam().tolerance, r * 0.293) * (1 + 1e-9) + 1e-12);
  }
}
INSTANTIATE_TEST_SUITE_P(Arcs, FlattenArc, testing::ValuesIn(kArcs), row_name<ArcCase>);

TEST(Flatten, JoinsChainsAndKeepsGaps) {
  const std::vector<ContourSegment> chain = {
      {{0, 0}, {5, 0}, {}, SegmentKind::kLine},
      {{5.005, 0}, {5, 9}, {}, SegmentKind::kLine},
      {{4, 9}, {0, 9}, {}, SegmentKind::kLine},
  };
  EXPECT_EQ(flatten(chain, 0.01), (std::vector<Vec2>{{0, 0}, {5, 0}, {5, 9}, {4, 9}, {0, 9}}));
}

TEST(Flatten, BoundsTheChordsOfABadTolerance) {
  const ContourSegment arc{{1000, 0}, {1000, 0}, {0, 0}, SegmentKind::kCcw};
  for (double tolerance : {0.0, -1.0, double{NAN}, 1e-300}) {
    const auto points = flatten({&arc, 1}, tolerance);
    EXPECT_GT(points.size(), 2000U) << tolerance;
    EXPECT_LT(points.size(), 150000U) << tolerance;
  }
}

// What 64 KB of contour text can hold; each circle alone would have 70 000 chords.
TEST(Flatten, SharesABoundedNumberOfChordsAmongTheArcs) {
  const std::vector<ContourSegment> circles(700, {{1e9, 0}, {1e9, 0}, {0, 0}, SegmentKind::kCcw});
  for (const auto& points : {flatten(circles, 0.1), flatten_each(circles, 0.1)}) {
    EXPECT_LT(points.size(), 270000U);
    EXPECT_EQ(std::ranges::count(points, Vec2{-1e9, 0}), 700);
    for (std::size_t i = 1; i < points.size(); ++i) {
      ASSERT_LT(distance(points[i - 1], points[i]), 2e7) << i;
    }
  }
}

}  // namespace
}  // namespace tooldb
