#include "geom/polygons.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "geom/crossing_test.h"
#include "geom/polyline.h"
#include "tests/geom/points_text.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

double area(const Rings& rings) {
  double sum = 0;
  for (const Polyline& ring : rings) sum += signed_area(ring);
  return sum;
}

constexpr std::string_view kLeft = "0 0 ; 4 0 ; 4 4 ; 0 4";
constexpr std::string_view kRight = "2 1 ; 6 1 ; 6 3 ; 2 3";
constexpr std::string_view kInside = "1 1 ; 2 1 ; 2 2 ; 1 2";
constexpr std::string_view kEight = "0 0 ; 4 4 ; 4 0 ; 0 4";

struct BooleanCase {
  std::string_view name;
  std::optional<Rings> (*operation)(const Rings&, const Rings&);
  std::string_view a, b;
  double area;
  std::size_t rings;
};
constexpr BooleanCase kBooleans[] = {
    {"Union", unite, kLeft, kRight, 20, 1},
    {"Intersection", intersect, kLeft, kRight, 4, 1},
    {"Difference", subtract, kLeft, kRight, 12, 1},
    {"ExclusiveOr", exclusive_or, kLeft, kRight, 16, 2},
    {"DifferenceLeavesAHole", subtract, kLeft, kInside, 15, 2},
    {"IntersectionOfStrangers", intersect, kInside, kRight, 0, 0},
    {"UnionWithNothing", unite, kLeft, "", 16, 1},
    {"NothingWithNothing", unite, "", "", 0, 0},
    {"ClockwiseInput", unite, "0 0 ; 0 4 ; 4 4 ; 4 0", "", 16, 1},
    {"FigureEight", unite, kEight, "", 8, 2},
    {"Far", unite, "-1e6 0 ; 1e6 0 ; 1e6 1 ; -1e6 1", "0 1 ; 1 1 ; 1 2 ; 0 2", 2e6 + 1, 1},
    {"FlatRing", unite, "0 0 ; 5 0 ; 9 0", "", 0, 0},
};
class Booleans : public testing::TestWithParam<BooleanCase> {};
INSTANTIATE_TEST_SUITE_P(Boxes, Booleans, testing::ValuesIn(kBooleans), row_name<BooleanCase>);

TEST_P(Booleans, GiveTheRegion) {
  const auto& [name, operation, a, b, expected, rings] = GetParam();
  const auto result = operation(point_lists(a), point_lists(b));
  ASSERT_TRUE(result);
  EXPECT_NEAR(area(*result), expected, 1e-5 * std::max(1.0, expected * 1e-5));
  EXPECT_EQ(result->size(), rings);
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
  const Polyline box = points(kLeft);
  for (double bad : {1.0000001e6, -1e300, double{INFINITY}, double{NAN}}) {
    EXPECT_FALSE(unite({box}, {{{0, 0}, {1, bad}, {2, 0}}})) << bad;
    EXPECT_TRUE(offset_contour(Polyline{{0, 0}, {1, bad}, {2, 0}}, 1).empty()) << bad;
    EXPECT_TRUE(offset_contour(box, bad).empty()) << bad;
  }
}

struct OffsetCase {
  std::string_view name;
  std::string_view contour;
  double distance;
  std::vector<double> areas;
};
const OffsetCase kOffsets[] = {
    {"ALittle", "0 0 ; 10 0 ; 10 40 ; 0 40", 0.001, {10.002 * 40.002}},
    {"Inwards", "0 0 ; 10 0 ; 10 40 ; 0 40", -1, {304}},
    {"ToNothing", "0 0 ; 10 0 ; 10 40 ; 0 40", -6, {}},
    {"ClockwiseGrowsToo", "0 0 ; 0 40 ; 10 40 ; 10 0", 1, {12 * 42}},
    {"FirstPointRepeated", "0 0 ; 10 0 ; 10 40 ; 0 40 ; 0 0", 1, {12 * 42}},
    {"FallsApartLargestFirst",
     "0 0 ; 4 0 ; 4 4 ; 4.5 4 ; 4.5 0 ; 10 0 ; 10 9 ; 4.5 9 ; 4.5 5 ; 4 5 ; 4 6 ; 0 6",
     -1,
     {(10 - 4.5 - 2) * 7, 2 * 4}},
    // Two triangles grown by area + perimeter d + d^2 sum cot(angle / 2), their 45 degree corners
    // squared off, less the square where they overlap.
    {"BothLobesOfAnEightGrow",
     "0 0 ; 10 10 ; 10 0 ; 0 10",
     0.5,
     {2 * (25 + 12.07107 + 1.457107 - 0.538930) - 1}},
    {"AHoleIsLeftOut",
     "0 0 ; 10 0 ; 10 4.9 ; 9 4.9 ; 9 1 ; 1 1 ; 1 9 ; 9 9 ; 9 5.1 ; 10 5.1 ; 10 10 ; 0 10",
     0.5,
     {121}},
    {"TwoPoints", "0 0 ; 5 5", 1, {}},
    {"ThreeEqualPoints", "1 1 ; 1 1 ; 1 1", 1, {}},
    {"Flat", "0 0 ; 5 0 ; 2 0", 0.1, {}},
    {"Nothing", "", 1, {}},
};
class Offset : public testing::TestWithParam<OffsetCase> {};
INSTANTIATE_TEST_SUITE_P(Contours, Offset, testing::ValuesIn(kOffsets), row_name<OffsetCase>);

TEST_P(Offset, GivesClosedPolygons) {
  const auto polygons = offset_contour(points(GetParam().contour), GetParam().distance);
  ASSERT_EQ(polygons.size(), GetParam().areas.size());
  for (std::size_t i = 0; i < polygons.size(); ++i) {
    EXPECT_NEAR(signed_area(polygons[i]), GetParam().areas[i], 1e-4);
    EXPECT_EQ(polygons[i].front(), polygons[i].back());
  }
}

struct CrossingCase {
  std::string_view contour;
  bool simple;
};
constexpr CrossingCase kCrossings[] = {
    {"0 0 ; 1 0 ; 1 9 ; 0 9", true},
    {"0 0 ; 0 9 ; 1 9 ; 1 0", true},
    {"0 0 ; 1 0 ; 2 0 ; 3 0 ; 3 3 ; 1 1 ; 0 3", true},  // a subdivided side
    {"0 0 ; 1 2 ; 2 4 ; 3 6 ; 0 5 ; -1 9", true},       // a subdivided slope
    {kEight, false},
    {"0 3 ; 2 -3 ; -3 1 ; 3 1 ; -2 -3", false},    // a pentagram
    {"0 0 ; 4 0 ; 4 4 ; 0 0 ; 4 0 ; 4 4", false},  // twice round
    {"0 0 ; 4 0 ; 9 0 ; 4 0 ; 4 4", false},        // a spike
    {"0 0 ; 9 0 ; 4 0 ; 4 4 ; 0 4", false},        // a short one
    {"0 0 ; 4 0 ; 2 2 ; 4 4 ; 0 4 ; 2 2", false},  // touches a corner
    {"0 0 ; 4 0 ; 4 4 ; 2 0 ; 0 4", false},        // touches a side
    {"0 0 ; 5 0 ; 9 0", false},
};
TEST(Crossing, IsSeen) {
  for (const auto& [text, simple] : kCrossings) {
    Polyline contour = points(text);
    EXPECT_EQ(surely_does_not_cross(contour), simple) << text;
    contour.push_back(Vec2(contour.front()));
    EXPECT_EQ(surely_does_not_cross(contour), simple) << text;
  }
  for (double inner : {5.0, 4.9}) {  // a circle and a star of many sides
    Polyline star;
    for (int i = 0; i < 1000; ++i) {
      const double r = i % 2 == 0 ? inner : 5;
      star.push_back(
          {r * std::cos(0.002 * std::acos(-1) * i), r * std::sin(0.002 * std::acos(-1) * i)});
    }
    EXPECT_TRUE(surely_does_not_cross(star)) << inner;
  }
}

}  // namespace
}  // namespace tooldb
