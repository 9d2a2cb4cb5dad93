#include "geom/polygons.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "geom/crossing_test.h"
#include "geom/polyline.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

Polyline box(double x0, double y0, double x1, double y1) {
  return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
}

double area(const Rings& rings) {
  double sum = 0;
  for (const Polyline& ring : rings) sum += signed_area(ring);
  return sum;
}

using Operation = std::optional<Rings> (*)(const Rings&, const Rings&);
struct BooleanCase {
  const char* name;
  Operation operation;
  Rings a, b;
  double area;
  std::size_t rings;
};
const Rings kLeft = {box(0, 0, 4, 4)};
const Rings kRight = {box(2, 1, 6, 3)};
const Rings kInside = {box(1, 1, 2, 2)};
const BooleanCase kBooleans[] = {
    {"Union", unite, kLeft, kRight, 20, 1},
    {"Intersection", intersect, kLeft, kRight, 4, 1},
    {"Difference", subtract, kLeft, kRight, 12, 1},
    {"ExclusiveOr", exclusive_or, kLeft, kRight, 16, 2},
    {"DifferenceLeavesAHole", subtract, kLeft, kInside, 15, 2},
    {"IntersectionOfStrangers", intersect, kLeft, {box(9, 9, 10, 10)}, 0, 0},
    {"UnionWithNothing", unite, kLeft, {}, 16, 1},
    {"NothingWithNothing", unite, {}, {}, 0, 0},
    {"ClockwiseInput", unite, {{{0, 0}, {0, 4}, {4, 4}, {4, 0}}}, {}, 16, 1},
    {"FigureEight", unite, {{{0, 0}, {4, 4}, {4, 0}, {0, 4}}}, {}, 8, 2},
    {"FarFromTheOrigin", unite, {box(-1e6, 0, 1e6, 1)}, {box(0, 1, 1, 2)}, 2e6 + 1, 1},
    {"FlatRing", unite, {{{0, 0}, {5, 0}, {9, 0}}}, {}, 0, 0},
};
class Booleans : public testing::TestWithParam<BooleanCase> {};
TEST_P(Booleans, GiveTheRegion) {
  const auto& [name, operation, a, b, expected, rings] = GetParam();
  const auto result = operation(a, b);
  ASSERT_TRUE(result);
  EXPECT_NEAR(area(*result), expected, 1e-5 * std::max(1.0, expected * 1e-5));
  EXPECT_EQ(result->size(), rings);
}
INSTANTIATE_TEST_SUITE_P(Boxes, Booleans, testing::ValuesIn(kBooleans), row_name<BooleanCase>);

TEST(BooleansOfRandomRings, SplitThePlane) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> coordinate(-50, 50);
  const auto ring = [&] {
    Polyline points(12);
    for (Vec2& p : points) p = {coordinate(random), coordinate(random)};
    return Rings{points};
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
  for (double bad : {1.0000001e6, -1e300, double{INFINITY}, double{NAN}}) {
    EXPECT_FALSE(unite({box(0, 0, 1, 1)}, {{{0, 0}, {1, bad}, {2, 0}}})) << bad;
    EXPECT_TRUE(offset_contour(Polyline{{0, 0}, {1, bad}, {2, 0}}, 1).empty()) << bad;
    EXPECT_TRUE(offset_contour(box(0, 0, 1, 1), bad).empty()) << bad;
  }
}

struct OffsetCase {
  const char* name;
  Polyline contour;
  double distance;
  std::vector<double> areas;
};
const OffsetCase kOffsets[] = {
    {"ALittle", box(0, 0, 10, 40), 0.001, {10.002 * 40.002}},
    {"Inwards", box(0, 0, 10, 40), -1, {304}},
    {"ToNothing", box(0, 0, 10, 40), -6, {}},
    {"ClockwiseGrowsToo", {{0, 0}, {0, 40}, {10, 40}, {10, 0}}, 1, {12 * 42}},
    {"FirstPointRepeated", {{0, 0}, {10, 0}, {10, 40}, {0, 40}, {0, 0}}, 1, {12 * 42}},
    {"FallsApartLargestFirst",
     {{0, 0},
      {4, 0},
      {4, 4},
      {4.5, 4},
      {4.5, 0},
      {10, 0},
      {10, 9},
      {4.5, 9},
      {4.5, 5},
      {4, 5},
      {4, 6},
      {0, 6}},
     -1,
     {(10 - 4.5 - 2) * 7, 2 * 4}},
    // Two triangles grown by area + perimeter d + d^2 sum cot(angle / 2), their 45 degree corners
    // squared off, less the square where they overlap.
    {"BothLobesOfAnEightGrow",
     {{0, 0}, {10, 10}, {10, 0}, {0, 10}},
     0.5,
     {2 * (25 + 12.07107 + 1.457107 - 0.538930) - 1}},
    {"AHoleIsLeftOut",
     {{0, 0},
      {10, 0},
      {10, 4.9},
      {9, 4.9},
      {9, 1},
      {1, 1},
      {1, 9},
      {9, 9},
      {9, 5.1},
      {10, 5.1},
      {10, 10},
      {0, 10}},
     0.5,
     {121}},
    {"TwoPoints", {{0, 0}, {5, 5}}, 1, {}},
    {"ThreeEqualPoints", {{1, 1}, {1, 1}, {1, 1}}, 1, {}},
    {"Flat", {{0, 0}, {5, 0}, {2, 0}}, 0.1, {}},
    {"Nothing", {}, 1, {}},
};
class Offset : public testing::TestWithParam<OffsetCase> {};
TEST_P(Offset, GivesClosedPolygons) {
  const auto polygons = offset_contour(GetParam().contour, GetParam().distance);
  ASSERT_EQ(polygons.size(), GetParam().areas.size());
  for (std::size_t i = 0; i < polygons.size(); ++i) {
    EXPECT_NEAR(signed_area(polygons[i]), GetParam().areas[i], 1e-4);
    EXPECT_EQ(polygons[i].front(), polygons[i].back());
  }
}
INSTANTIATE_TEST_SUITE_P(Contours, Offset, testing::ValuesIn(kOffsets), row_name<OffsetCase>);

TEST(OffsetCorners, StaySharp) {
  const auto grown = offset_contour(box(0, 0, 10, 40), 0.001);
  ASSERT_EQ(grown.size(), 1U);
  ASSERT_EQ(grown[0].size(), 5U);
  for (Vec2 p : grown[0]) {
    EXPECT_NEAR(std::abs(p.x - 5), 5.001, 1e-6);
    EXPECT_NEAR(std::abs(p.y - 20), 20.001, 1e-6);
  }
}

struct CrossingCase {
  const char* name;
  Polyline contour;
  bool simple;
};
Polyline star(int points, double inner, double outer) {
  Polyline ring;
  for (int i = 0; i < points; ++i) {
    const double a = 2 * std::acos(-1) * i / points;
    const double r = i % 2 == 0 ? inner : outer;
    ring.push_back({r * std::cos(a), r * std::sin(a)});
  }
  return ring;
}
Polyline pentagram() {
  const Polyline p = star(5, 3, 3);
  return {p[0], p[2], p[4], p[1], p[3]};
}
const CrossingCase kCrossings[] = {
    {"Box", box(0, 0, 1, 9), true},
    {"BoxClockwise", {{0, 0}, {0, 9}, {1, 9}, {1, 0}}, true},
    {"Circle", star(1000, 5, 5), true},
    {"Star", star(1000, 4.9, 5), true},
    {"SubdividedSide", {{0, 0}, {1, 0}, {2, 0}, {3, 0}, {3, 3}, {1, 1}, {0, 3}}, true},
    {"SubdividedSlope", {{0, 0}, {1, 2}, {2, 4}, {3, 6}, {0, 5}, {-1, 9}}, true},
    {"FigureEight", {{0, 0}, {4, 4}, {4, 0}, {0, 4}}, false},
    {"Pentagram", pentagram(), false},
    {"TwiceRound", {{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}, {4, 0}, {4, 4}, {0, 4}}, false},
    {"Spike", {{0, 0}, {4, 0}, {9, 0}, {4, 0}, {4, 4}}, false},
    {"ShortSpike", {{0, 0}, {9, 0}, {4, 0}, {4, 4}, {0, 4}}, false},
    {"TouchesACorner", {{0, 0}, {4, 0}, {2, 2}, {4, 4}, {0, 4}, {2, 2}}, false},
    {"TouchesASide", {{0, 0}, {4, 0}, {4, 4}, {2, 0}, {0, 4}}, false},
    {"Flat", {{0, 0}, {5, 0}, {9, 0}}, false},
};
class Crossing : public testing::TestWithParam<CrossingCase> {};
TEST_P(Crossing, IsSeen) {
  EXPECT_EQ(surely_does_not_cross(GetParam().contour), GetParam().simple);
  Polyline closed = GetParam().contour;
  closed.push_back(Vec2(closed.front()));
  EXPECT_EQ(surely_does_not_cross(closed), GetParam().simple);
}
INSTANTIATE_TEST_SUITE_P(Contours, Crossing, testing::ValuesIn(kCrossings), row_name<CrossingCase>);

}  // namespace
}  // namespace tooldb
