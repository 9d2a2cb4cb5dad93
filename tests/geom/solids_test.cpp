#include <gtest/gtest.h>

#include <cmath>

#include "geom/extrude.h"
#include "geom/revolve.h"
#include "tests/geom/meshes.h"
#include "tests/geom/points.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

struct RevolveCase {
  std::string_view name;
  double tolerance;
  std::size_t facets;
  double volume;
  long euler;  // 2 per body, less 2 per hole
  std::string_view outline;
};
constexpr RevolveCase kRevolved[] = {
    {"Flat", 0.05, 128, 12485.8, 2, "0 0 ; 10 0 ; 10 40 ; 0 40"},
    {"Drill", 0.01, 208, 4544.01, 2, "0 0 ; 5 3.004303 ; 5 60 ; 0 60"},
    {"ClockwiseIsTheSame", 0.05, 128, 12485.8, 2, "0 40 ; 10 40 ; 10 0 ; 0 0"},
    {"EndsOffTheAxisAreJoined", 0.05, 128, 12485.8, 2, "10 0 ; 10 40"},
    {"EqualPointsAndTheAxisAddNothing", 0.05, 128, 12485.8, 2,
     "0 5 ; 0 0 ; 10 0 ; 10 0 ; 10 40 ; 1e-10 40 ; 0 9"},
    {"RingOffTheAxis", 0.05, 256, 936.437, 0, "5 0 ; 10 0 ; 10 4 ; 5 4 ; 5 0"},
    {"ClosedRingOnTheAxis", 0.05, 128, 12485.8, 2, "10 0 ; 10 40 ; 0 40 ; 0 0 ; 10 0"},
    {"TwoBodies", 0.05, 256, 24971.6, 4, "0 0 ; 10 0 ; 10 40 ; 0 40 ; 0 50 ; 10 50 ; 10 90 ; 0 90"},
    {"TwoConesTipToTip", 99, 48, 1800, 3, "0 0 ; 10 0 ; 0 9 ; 10 18 ; 0 18"},
    {"CoarsestHasTwelveFacetsRound", 1e9, 48, 12000, 2, "0 0 ; 10 0 ; 10 40 ; 0 40"},
    {"Empty", 0.01, 0, 0, 0, ""},
    {"AcrossTheAxis", 0.01, 0, 0, 0, "0 0 ; 5 0 ; -2e-6 5"},
    {"NotFinite", 0.01, 0, 0, 0, "0 0 ; 5 nan ; 0 5"},
    {"OnTheAxis", 0.01, 0, 0, 0, "0 0 ; 0 5"},
    {"FlatDisc", 0.01, 0, 0, 0, "0 1 ; 5 1"},
};
class Revolve : public testing::TestWithParam<RevolveCase> {};
INSTANTIATE_TEST_SUITE_P(Bodies, Revolve, testing::ValuesIn(kRevolved), row_name<RevolveCase>);

TEST_P(Revolve, AppendsAClosedBodyOrSection) {
  const auto& [name, tolerance, facets, volume, euler, outline] = GetParam();
  for (double span : {1.0, 90.0, 180.0, 250.5, 360.0}) {
    SCOPED_TRACE(span);
    Mesh mesh(1);
    EXPECT_EQ(revolve(points(outline), {tolerance, 30, span}, mesh), volume > 0);
    mesh.erase(mesh.begin());
    // The steps of a section are at most as wide as those of the whole body.
    const double more = span < 360 ? 0.05 : 0;
    const auto check =
        expect_solid(mesh, (1 + more) * volume * span / 360, more / (1 + more) + 1e-5);
    EXPECT_TRUE(span < 360 || (mesh.size() == facets && check.euler == euler));
  }
}

TEST(Revolve, LeavesTheMeshWithoutASpanOrCaps) {
  Mesh mesh(3);
  EXPECT_FALSE(revolve(points("0 0 ; 5 0 ; 0 9"), {0.01, 0, 0}, mesh));
  EXPECT_FALSE(revolve(points("0 0 ; 5 0 ; 0 9"), {0.01, NAN, 90}, mesh));
  EXPECT_FALSE(revolve(points("0 0 ; 5 0 ; 2 9 ; 5 9 ; 0 3"), {0.01, 0, 90}, mesh));  // crosses
  EXPECT_EQ(mesh.size(), 3U);
}

struct ExtrudeCase {
  std::string_view name;
  std::string_view outline;
  double y_min, y_max;
  double volume;
  long euler;
};
constexpr ExtrudeCase kExtruded[] = {
    {"Clockwise", "0 0 ; 0 3 ; 2 3 ; 2 0", -5, 0, 30, 2},
    {"FirstPointRepeated", "0 0 ; 2 0 ; 2 3 ; 0 3 ; 0 0", 1, 2, 6, 2},
    {"TwoLobesThatTouch", "0 0 ; 4 4 ; 4 0 ; 0 4", 0, 1, 8, 3},
    {"SlitRing", "0 0 ; 9 0 ; 9 9 ; 0 9 ; 0 0 ; 3 3 ; 3 6 ; 6 6 ; 6 3 ; 3 3", 0, 1, 72, 0},
    {"Flat", "0 0 ; 2 0 ; 1 0", 0, 1, 0, 0},
    {"NoHeight", "0 0 ; 2 0 ; 2 3", 1, 1, 0, 0},
    {"HeightIsNotFinite", "0 0 ; 2 0 ; 2 3", 0, INFINITY, 0, 0},
    {"CornerIsNotFinite", "0 0 ; nan 0 ; 2 3", 0, 1, 0, 0},
};
class Extrude : public testing::TestWithParam<ExtrudeCase> {};
INSTANTIATE_TEST_SUITE_P(Bodies, Extrude, testing::ValuesIn(kExtruded), row_name<ExtrudeCase>);

TEST_P(Extrude, AppendsAClosedBody) {
  const auto& [name, outline, y_min, y_max, volume, euler] = GetParam();
  Mesh mesh(1);
  EXPECT_EQ(extrude(points(outline), y_min, y_max, mesh), volume > 0);
  mesh.erase(mesh.begin());
  EXPECT_EQ(expect_solid(mesh, volume, 1e-5).euler, euler);
}

}  // namespace
}  // namespace tooldb
