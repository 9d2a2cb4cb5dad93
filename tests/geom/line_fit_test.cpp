#include "geom/line_fit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "geom/euler_angles.h"
#include "geom/transform.h"
#include "tests/geom/points.h"

namespace tooldb {
namespace {

TEST(LineFit, GoesThroughTheMeanAlongTheWidestSpread) {
  const auto wide = fit_line(points("0 0 ; 10 10 ; 4 6 ; 6 4"));
  ASSERT_TRUE(wide);
  EXPECT_LT(distance(wide->point, {5, 5}), 1e-9);
  EXPECT_LT(distance(wide->direction, {std::sqrt(0.5), std::sqrt(0.5)}), 1e-9);
  EXPECT_NEAR(wide->deviation, 1, 1e-9);
  EXPECT_NEAR(fit_line(points("1e6 1e6 ; 999991 1000001 ; 999982 1000002"))->deviation, 0, 1e-7);
  for (const auto cloud : {"", "1 2", "1 2 ; 1 2", "0 0 ; 1 0 ; 1 1 ; 0 1", "0 0 ; 1 nan"}) {
    EXPECT_FALSE(fit_line(points(cloud))) << cloud;
  }
}

// The same cloud turned gives the same line turned; no line near it has a smaller sum of squares.
TEST(LineFit, InSpaceTurnsWithItsPointsAndIsTheBest) {
  std::mt19937 random(2);
  std::normal_distribution<double> u(0, 1);
  std::vector<Vec3> cloud(50);
  for (Vec3& p : cloud) p = {9 * u(random), 2 * u(random), u(random)};
  const auto line = fit_line(cloud);
  ASSERT_TRUE(line);
  const auto squares = [&](const Vec3& through, const Vec3& along) {
    double sum = 0;
    for (const Vec3& p : cloud) sum += std::pow(length(cross(p - through, normalised(along))), 2);
    return sum;
  };
  const double best = squares(line->point, line->direction);
  EXPECT_NEAR(line->deviation, std::sqrt(best / 50), 1e-9);
  for (int i = 0; i < 100; ++i) {
    const Vec3 a = 0.01 * Vec3{u(random), u(random), u(random)};
    const Vec3 b = 0.01 * Vec3{u(random), u(random), u(random)};
    EXPECT_LE(best, squares(line->point + a, line->direction + b));
  }
  for (int i = 0; i < 300; ++i) {
    const Placement placement =
        join_zyx({90 * u(random), 90 * u(random), 90 * u(random)}, {3, 4, 5});
    std::vector<Vec3> moved;
    for (const Vec3& p : cloud) moved.push_back(transform_point(placement, p));
    const Vec3 d = fit_line(moved)->direction;
    EXPECT_NEAR(std::abs(dot(d, transform_direction(placement, line->direction))), 1, 1e-12);
    EXPECT_GE(std::max({d.x, d.y, d.z}), -std::min({d.x, d.y, d.z})) << "mostly positive";
  }
}

}  // namespace
}  // namespace tooldb
