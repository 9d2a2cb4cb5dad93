#include "geom/polygons.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "geom/crossing_test.h"
#include "geom/polyline.h"
#include "tests/geom/points.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

struct SimplifyCase {
  std::string_view name;
  double tolerance;
  std::string_view points;
  std::string_view kept;
};
constexpr SimplifyCase kSimplified[] = {
    {"StraightAndNearPointsGo", 0.1, "0 0 ; 5 0 ; 10 0 ; 10 0.005 ; 10 20 ; 0 20",
     "0 0 ; 10 0 ; 10 20 ; 0 20"},
    {"TwoPointsStay", 9, "0 0 ; 0 0", "0 0 ; 0 0"},
    {"EndsStayHoweverNear", 9, "0 0 ; 0.1 0 ; 0.2 0.1", "0 0 ; 0.2 0.1"},
    {"LastInnerPointIsMeasuredToTheEnd", 0.1, "0 0 ; 9 9.005 ; 9 9", "0 0 ; 9 9"},
    {"AtATenthOfTheToleranceAPointStays", 0.5, "0 0 ; 0.0625 0 ; 0.0625 5 ; 9 9",
     "0 0 ; 0.0625 0 ; 0.0625 5 ; 9 9"},
    {"ATurnBackStays", 0.1, "0 0 ; 9 0 ; 2 0", "0 0 ; 9 0 ; 2 0"},
    {"EqualPointsGoWithoutATolerance", 0, "0 0 ; 3 0 ; 3 0 ; 3 4", "0 0 ; 3 0 ; 3 4"},
    {"ATurnOfAFiftiethDegreeStays", 0, "0 0 ; 1e3 0 ; 2e3 0.349", "0 0 ; 1e3 0 ; 2e3 0.349"},
    {"ATurnOfATwoHundredthDegreeGoes", 0, "0 0 ; 1e3 0 ; 2e3 0.087", "0 0 ; 2e3 0.087"},
};
class Simplify : public testing::TestWithParam<SimplifyCase> {};
INSTANTIATE_TEST_SUITE_P(Contours, Simplify, testing::ValuesIn(kSimplified),
                         row_name<SimplifyCase>);

TEST_P(Simplify, DropsWhatIsNotNeeded) {
  Polyline line = points(GetParam().points);
  simplify(line, GetParam().tolerance);
  EXPECT_EQ(line, points(GetParam().kept));
}

// Each turn is below the threshold, the sum of them is not: the circle must not vanish.
TEST(SimplifyDrift, TurnsAddUpAsPointsGo) {
  Polyline circle;
  for (int i = 0; i <= 100000; ++i) {
    const double a = 2 * std::acos(-1) * i / 100000;
    circle.push_back({50 * std::cos(a), 50 * std::sin(a)});
  }
  simplify(circle, 1e-3);
  EXPECT_NEAR(signed_area(circle), std::acos(-1) * 2500, 0.01);
  Polyline again = circle;
  simplify(again, 1e-3);
  EXPECT_EQ(again, circle);
}

double area(const Rings& rings) {
  double sum = 0;
  for (const Polyline& ring : rings) sum += signed_area(ring);
  return sum;
}

// The sum of the areas and the number of rings.
std::pair<double, std::size_t> extent(const std::optional<Rings>& region) {
  return {std::round(area(region.value()) * 1e4) / 1e4, region->size()};
}

TEST(Booleans, GiveTheRegion) {
  using Extent = std::pair<double, std::size_t>;
  const Rings left{points("0 0 ; 4 0 ; 4 4 ; 0 4")};
  const Rings right{points("2 1 ; 6 1 ; 6 3 ; 2 3")};
  const Rings inside{points("1 1 ; 2 1 ; 2 2 ; 1 2")};
  EXPECT_EQ(extent(unite(left, right)), Extent(20, 1));
  EXPECT_EQ(extent(subtract(left, inside)), Extent(15, 2));
  EXPECT_EQ(extent(unite({}, {})), Extent(0, 0));
  EXPECT_EQ(extent(clean({points("0 0 ; 4 4 ; 4 0 ; 0 4")})), Extent(8, 2));
  EXPECT_EQ(extent(clean({points("0 0 ; 5 0 ; 9 0")})), Extent(0, 0));
  const Rings far{points("-1e6 0 ; 1e6 0 ; 1e6 1 ; -1e6 1")};
  EXPECT_EQ(extent(unite(far, {points("0 1 ; 1 1 ; 1 2 ; 0 2")})), Extent(2e6 + 1, 1));
}

TEST(BooleansOfRandomRings, SplitThePlane) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> coordinate(-50, 50);
  const auto ring = [&] {
    Polyline corners(12);
    for (Vec2& p : corners) p = {coordinate(random), coordinate(random)};
    return Rings{corners};
  };
  for (int i = 0; i < 50; ++i) {
    const Rings a = ring();
    const Rings b = ring();
    const double both = area(*intersect(a, b));
    EXPECT_NEAR(area(*unite(a, b)), area(*clean(a)) + area(*clean(b)) - both, 1e-3);
    EXPECT_NEAR(area(*exclusive_or(a, b)), area(*subtract(a, b)) + area(*subtract(b, a)), 1e-3);
    EXPECT_NEAR(area(*subtract(a, b)), area(*clean(a)) - both, 1e-3);
  }
}

TEST(BooleansRefuse, WhatClipperCannotHold) {
  const Polyline box = points("0 0 ; 4 0 ; 4 4 ; 0 4");
  for (double bad : {1.0000001e6, -1e300, double{INFINITY}, double{NAN}}) {
    EXPECT_FALSE(unite({box}, {{{0, 0}, {1, bad}, {2, 0}}})) << bad;
    EXPECT_TRUE(offset_contour(Polyline{{0, 0}, {1, bad}, {2, 0}}, 1).empty()) << bad;
    EXPECT_TRUE(offset_contour(box, bad).empty()) << bad;
  }
}

struct OffsetCase {
  std::string_view name;
  double distance;
  std::string_view areas;
  std::string_view contour;
};
constexpr OffsetCase kOffsets[] = {
    {"ToNothing", -6, "", "0 0 ; 10 0 ; 10 40 ; 0 40"},
    {"ClockwiseClosedGrowsToo", 1, "504", "0 0 ; 0 40 ; 10 40 ; 10 0 ; 0 0"},
    {"FallsApartLargestFirst", -1, "24.5 8",
     "0 0 ; 4 0 ; 4 4 ; 4.5 4 ; 4.5 0 ; 10 0 ; 10 9 ; 4.5 9 ; 4.5 5 ; 4 5 ; 4 6 ; 0 6"},
    // Two triangles of 25, grown by perimeter d + d^2 sum cot(angle / 2), their 45 degree corners
    // squared off, less the square where they overlap.
    {"BothLobesOfAnEightGrow", 0.5, "74.978494", "0 0 ; 10 10 ; 10 0 ; 0 10"},
    {"AHoleIsLeftOut", 0.5, "121",
     "0 0 ; 10 0 ; 10 4.9 ; 9 4.9 ; 9 1 ; 1 1 ; 1 9 ; 9 9 ; 9 5.1 ; 10 5.1 ; 10 10 ; 0 10"},
    {"ThreeEqualPoints", 1, "", "1 1 ; 1 1 ; 1 1"},
};
class Offset : public testing::TestWithParam<OffsetCase> {};
INSTANTIATE_TEST_SUITE_P(Contours, Offset, testing::ValuesIn(kOffsets), row_name<OffsetCase>);

TEST_P(Offset, GivesClosedPolygons) {
  const auto& [name, distance, areas, contour] = GetParam();
  std::vector<double> left;
  for (const auto& row : number_rows(areas)) left = row;
  for (const Polyline& polygon : offset_contour(points(contour), distance)) {
    ASSERT_FALSE(left.empty());
    EXPECT_NEAR(signed_area(polygon), left.front(), 1e-4);
    EXPECT_EQ(polygon.front(), polygon.back());
    left.erase(left.begin());
  }
  EXPECT_TRUE(left.empty());
}

// Whether each is simple.
constexpr std::pair<std::string_view, bool> kCrossings[] = {
    {"0 0 ; 1 0 ; 1 9 ; 0 9", true},
    {"0 0 ; 0 9 ; 1 9 ; 1 0", true},
    {"0 0 ; 1 0 ; 2 0 ; 3 0 ; 3 3 ; 1 1 ; 0 3", true},  // a subdivided side
    {"0 0 ; 1 2 ; 2 4 ; 3 6 ; 0 5 ; -1 9", true},       // a subdivided slope
    {"0 0 ; 4 4 ; 4 0 ; 0 4", false},
    {"0 3 ; 2 -3 ; -3 1 ; 3 1 ; -2 -3", false},    // a pentagram
    {"0 0 ; 4 0 ; 4 4 ; 0 0 ; 4 0 ; 4 4", false},  // twice round
    {"0 0 ; 4 0 ; 9 0 ; 4 0 ; 4 4", false},        // a spike
    {"0 0 ; 9 0 ; 4 0 ; 4 4 ; 0 4", false},        // a short one
    {"0 0 ; 4 0 ; 2 2 ; 4 4 ; 0 4 ; 2 2", false},  // touches a corner
    {"0 0 ; 4 0 ; 4 4 ; 2 0 ; 0 4", false},        // touches a side
};
TEST(Crossing, IsSeen) {
  for (const auto& [text, simple] : kCrossings) {
    Polyline contour = points(text);
    EXPECT_EQ(surely_does_not_cross(contour), simple) << text;
    contour.push_back(Vec2(contour.front()));
    EXPECT_EQ(surely_does_not_cross(contour), simple) << text;
  }
}

}  // namespace
}  // namespace tooldb
