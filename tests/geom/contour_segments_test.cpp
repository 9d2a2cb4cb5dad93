#include "geom/contour_segments.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "geom/polyline.h"
#include "tests/geom/meshes.h"
#include "tests/geom/points.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

constexpr auto kCcw = SegmentKind::kCcw;
constexpr auto kCw = SegmentKind::kCw;
constexpr auto kLine = SegmentKind::kLine;

// "x y radius ; ..."; without a radius a corner is sharp.
std::vector<SharpCorner> corners(std::string_view text) {
  std::vector<SharpCorner> sharp;
  for (const auto& row : number_rows(text)) {
    sharp.push_back({{row.at(0), row.at(1)}, row.size() > 2 ? row[2] : 0});
  }
  return sharp;
}

std::string text_of(Vec2 p) {
  const auto number = [](double value) { return general_text(std::abs(value) < 1e-9 ? 0 : value); };
  return number(p.x) + " " + number(p.y);
}

// "x y" of the start, then per segment " ; x y" or " ; ccw x y @ cx cy".
std::string text_of(const std::vector<ContourSegment>& segments) {
  std::string out = text_of(segments.front().start);
  for (const ContourSegment& s : segments) {
    out += (s.kind == kLine ? " ; " : s.kind == kCcw ? " ; ccw " : " ; cw ") + text_of(s.end);
    if (s.kind != kLine) out += " @ " + text_of(s.center);
  }
  return out;
}

struct OutlineCase {
  std::string_view name;
  bool closed;
  std::string_view corners;
  std::string_view outline;  // empty: refused
};
constexpr OutlineCase kOutlines[] = {
    {"EqualCornersKeepTheLargerRadius", false, "0 0 ; 16 0 0.3 ; 16 0 0.8 ; 16 0 ; 16 5",
     "0 0 ; 15.2 0 ; ccw 16 0.8 @ 15.2 0.8 ; 16 5"},
    {"RadiusOfAnEndIsNotUsed", false, "0 0 9 ; 3 0 ; 3 1 9", "0 0 ; 3 0 ; 3 1"},
    {"SlackShrinksBothRadii", false, "0 0 ; 9 0 2.000009 ; 9 4 2 ; 0 4",
     "0 0 ; 7 0 ; ccw 9 2 @ 7 2 ; ccw 7 4 @ 7 2 ; 0 4"},
    {"RadiusBeyondTheSide", false, "0 0 ; 8 0 8.001 ; 8 30", ""},
    {"TwoRadiiBeyondTheSide", false, "0 0 ; 9 0 2 ; 9 4 2.1 ; 0 4", ""},
    {"ArcOnATurnBack", false, "0 0 ; 9 0 0.1 ; 2 0", ""},
    {"NegativeRadius", false, "0 0 ; 9 0 -1 ; 9 9", ""},
    {"NotFinite", false, "0 0 ; 9 nan ; 9 9", ""},
    {"OnePoint", false, "1 2 ; 1 2", ""},
    {"ArcsFillAllSides", true, "0 -10 5 ; 8.660254037844386 5 5 ; -8.660254037844386 5 5",
     "0 -5 ; ccw 4.33013 -2.5 @ 0 0 ; ccw 0 5 @ 0 0 ; ccw -4.33013 -2.5 @ 0 0 ; ccw 0 -5 @ 0 0"},
    {"ArcsThatMeet", true, "0 -10 5.001 ; 8.6602540 5 5.001 ; -8.6602540 5 5.001", ""},
    {"TwoCorners", true, "0 0 ; 1 0", ""},
};
class RoundCorners : public testing::TestWithParam<OutlineCase> {};
INSTANTIATE_TEST_SUITE_P(Outlines, RoundCorners, testing::ValuesIn(kOutlines),
                         row_name<OutlineCase>);

TEST_P(RoundCorners, GivesLinesAndArcs) {
  const auto sharp = corners(GetParam().corners);
  const auto outline = GetParam().closed ? round_closed_corners(sharp) : round_corners(sharp);
  ASSERT_EQ(outline.has_value(), !GetParam().outline.empty());
  if (!outline) return;
  EXPECT_EQ(text_of(*outline), GetParam().outline);
  const Polyline chords = flatten(*outline, 1e-3);
  EXPECT_NEAR(signed_area(*outline), signed_area(chords), 0.05);
  if (GetParam().closed || signed_area(chords) == 0) return;
  const double volume = check_mesh(revolved(chords, 1e-3)).volume;
  EXPECT_NEAR(volume_of_revolution(*outline), volume, 1e-3 * volume);
}

struct ArcCase {
  std::string_view name;
  ContourSegment arc;
  double tolerance;
  std::size_t size;
  std::string_view must_have;
};
constexpr ArcCase kArcs[] = {
    {"Full", {{3, 4}, {3, 4}, {0, 0}, kCcw}, 0.3, 13, "3 4 ; 0 5 ; -5 0 ; 0 -5 ; 5 0"},
    {"FullClockwise", {{5, 0}, {5, 0}, {0, 0}, kCw}, 0.3, 13, "0 -5 ; -5 0 ; 0 5"},
    {"TwoQuadrants", {{-3, -4}, {4, -3}, {0, 0}, kCcw}, 9, 3, "-3 -4 ; 0 -5 ; 4 -3"},
    {"StartsJustBelowAQuadrant", {{5, -1e-10}, {0, 5}, {0, 0}, kCcw}, 9, 2, "0 5"},
    {"RadiiDisagree", {{5, 0}, {0, 5.002}, {0, 0}, kCcw}, 0.01, 14, "0 5.002"},
    {"CenterOnStart", {{5, 0}, {7, 0}, {5, 0}, kCcw}, 0.01, 2, "5 0 ; 7 0"},
    {"NotFinite", {{NAN, 0}, {7, INFINITY}, {5, 0}, kCcw}, 0.01, 2, ""},
};
class FlattenArc : public testing::TestWithParam<ArcCase> {};
INSTANTIATE_TEST_SUITE_P(Arcs, FlattenArc, testing::ValuesIn(kArcs), row_name<ArcCase>);

TEST_P(FlattenArc, HitsEndsAndQuadrantsWithinTolerance) {
  const auto& [name, arc, tolerance, size, must_have] = GetParam();
  const Polyline chords = flatten({&arc, 1}, tolerance);
  EXPECT_EQ(chords.size(), size);
  for (Vec2 wanted : points(must_have)) {
    EXPECT_TRUE(std::ranges::find(chords, wanted) != chords.end()) << wanted.x << ' ' << wanted.y;
  }
  const double r = distance(arc.start, arc.center);
  for (std::size_t i = 1; i < chords.size() && r > 0; ++i) {
    const Vec2 middle = 0.5 * (chords[i - 1] + chords[i]);
    const double sagitta = r - distance(middle, arc.center);
    EXPECT_LE(sagitta, std::min(tolerance, r * 0.293) * (1 + 1e-9) + 1e-12);
  }
}

// As many circles as 64 KB of contour text can hold; each alone would have 70 000 chords.
TEST(Flatten, SharesABoundedNumberOfChordsAmongTheArcs) {
  const ContourSegment circle{{1000, 0}, {1000, 0}, {0, 0}, kCcw};
  for (double tolerance : {0.0, -1.0, double{NAN}, 1e-300}) {
    const std::size_t size = flatten({&circle, 1}, tolerance).size();
    EXPECT_TRUE(size > 2000 && size < 150000) << tolerance;
  }
  const std::vector<ContourSegment> circles(700, {{1e9, 0}, {1e9, 0}, {0, 0}, kCcw});
  for (const auto& chords : {flatten(circles, 0.1), flatten_each(circles, 0.1)}) {
    EXPECT_LT(chords.size(), 270000U);
    EXPECT_EQ(std::ranges::count(chords, Vec2{-1e9, 0}), 700);
    for (std::size_t i = 1; i < chords.size(); ++i) {
      ASSERT_LT(distance(chords[i - 1], chords[i]), 2e7) << i;
    }
  }
}

}  // namespace
}  // namespace tooldb
