#include "geom/polyline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/geom/polyline_distance.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

struct AreaCase {
  const char* name;
  Polyline points;
  double area;
};
const AreaCase kAreas[] = {
    {"Empty", {}, 0},
    {"TwoPoints", {{0, 0}, {5, 7}}, 0},
    {"CounterClockwise", {{0, 0}, {4, 0}, {4, 3}}, 6},
    {"Clockwise", {{0, 0}, {4, 3}, {4, 0}}, -6},
    {"FirstPointRepeated", {{1, 1}, {4, 1}, {4, 3}, {1, 3}, {1, 1}}, 6},
};
class SignedArea : public testing::TestWithParam<AreaCase> {};
TEST_P(SignedArea, IsTheShoelaceSum) { EXPECT_EQ(signed_area(GetParam().points), GetParam().area); }
INSTANTIATE_TEST_SUITE_P(Contours, SignedArea, testing::ValuesIn(kAreas), row_name<AreaCase>);

struct SimplifyCase {
  const char* name;
  double tolerance;
  Polyline points;
  Polyline kept;
};
const SimplifyCase kSimplified[] = {
    {"StraightAndNearPointsGo",
     0.1,
     {{0, 0}, {5, 0}, {10, 0}, {10, 0.005}, {10, 20}, {0, 20}},
     {{0, 0}, {10, 0}, {10, 20}, {0, 20}}},
    {"TwoPointsStay", 9, {{0, 0}, {0, 0}}, {{0, 0}, {0, 0}}},
    {"EndsStayHoweverNear", 9, {{0, 0}, {0.1, 0}, {0.2, 0.1}}, {{0, 0}, {0.2, 0.1}}},
    {"LastInnerPointIsMeasuredToTheEnd", 0.1, {{0, 0}, {9, 9.005}, {9, 9}}, {{0, 0}, {9, 9}}},
    {"AtATenthOfTheToleranceAPointStays",
     0.5,
     {{0, 0}, {0.0625, 0}, {0.0625, 5}, {9, 9}},
     {{0, 0}, {0.0625, 0}, {0.0625, 5}, {9, 9}}},
    {"ATurnBackStays", 0.1, {{0, 0}, {9, 0}, {2, 0}}, {{0, 0}, {9, 0}, {2, 0}}},
    {"EqualPointsGoWithoutATolerance",
     0,
     {{0, 0}, {3, 0}, {3, 0}, {3, 4}},
     {{0, 0}, {3, 0}, {3, 4}}},
    {"ATurnOfAFiftiethDegreeStays",
     0,
     {{0, 0}, {1000, 0}, {2000, 0.349}},
     {{0, 0}, {1000, 0}, {2000, 0.349}}},
    {"ATurnOfATwoHundredthDegreeGoes",
     0,
     {{0, 0}, {1000, 0}, {2000, 0.087}},
     {{0, 0}, {2000, 0.087}}},
};
class Simplify : public testing::TestWithParam<SimplifyCase> {};
TEST_P(Simplify, DropsWhatIsNotNeeded) {
  Polyline points = GetParam().points;
  simplify(points, GetParam().tolerance);
  EXPECT_EQ(points, GetParam().kept);
}
INSTANTIATE_TEST_SUITE_P(Contours, Simplify, testing::ValuesIn(kSimplified),
                         row_name<SimplifyCase>);

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

TEST(ThinOut, StaysWithinItsToleranceOfEveryPoint) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> noise(-0.2, 0.2);
  Polyline points;
  for (int i = 0; i < 400; ++i) points.push_back({i * 0.1, std::sin(i * 0.05) * 8 + noise(random)});
  for (double tolerance : {0.0, 0.1, 0.5, 100.0}) {
    const Polyline thin = thin_out(points, tolerance);
    EXPECT_EQ(thin.front(), points.front());
    EXPECT_EQ(thin.back(), points.back());
    for (Vec2 p : points) EXPECT_LE(distance_to_line(p, thin), tolerance + 1e-12) << tolerance;
  }
  EXPECT_LT(thin_out(points, 0.5).size(), 30U);
  EXPECT_EQ(thin_out(points, 100), (Polyline{points.front(), points.back()}));
}

}  // namespace
}  // namespace tooldb
