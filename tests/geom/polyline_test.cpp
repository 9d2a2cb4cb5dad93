#include "geom/polyline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/geom/points_text.h"
#include "tests/geom/polyline_distance.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

TEST(SignedArea, IsTheShoelaceSum) {
  EXPECT_EQ(signed_area(points("0 0 ; 5 7")), 0);
  EXPECT_EQ(signed_area(points("0 0 ; 4 0 ; 4 3")), 6);
  EXPECT_EQ(signed_area(points("1 1 ; 1 3 ; 4 3 ; 4 1 ; 1 1")), -6);
}

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

TEST(ThinOut, StaysWithinItsToleranceOfEveryPoint) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> noise(-0.2, 0.2);
  Polyline line;
  for (int i = 0; i < 400; ++i) line.push_back({i * 0.1, std::sin(i * 0.05) * 8 + noise(random)});
  for (double tolerance : {0.0, 0.1, 0.5, 100.0}) {
    const Polyline thin = thin_out(line, tolerance);
    EXPECT_EQ(thin.front(), line.front());
    EXPECT_EQ(thin.back(), line.back());
    for (Vec2 p : line) EXPECT_LE(distance_to_line(p, thin), tolerance + 1e-12) << tolerance;
  }
  EXPECT_LT(thin_out(line, 0.5).size(), 30U);
  EXPECT_EQ(thin_out(line, 100), (Polyline{line.front(), line.back()}));
}

}  // namespace
}  // namespace tooldb
