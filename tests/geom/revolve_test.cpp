#include "geom/revolve.h"

#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <cmath>
#include <cstring>
#include <numbers>

#include "geom/contour_segments.h"
#include "tests/geom/mesh_check.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

using std::numbers::pi;

Polyline ball_end() {
  const std::vector<SharpCorner> corners = {{{0, 0}, 0}, {{8, 0}, 8}, {{8, 30}, 0}, {{0, 30}, 0}};
  return flatten(*round_corners(corners), 0.01);
}

Polyline reversed(Polyline points) { return {points.rbegin(), points.rend()}; }

struct BodyCase {
  const char* name;
  Polyline outline;
  double tolerance;
  std::size_t facets;
  double volume;
  long euler;
};
const Polyline kFlat = {{0, 0}, {10, 0}, {10, 40}, {0, 40}};
const Polyline kDrill = {{0, 0}, {5, 5 / std::tan(59 * pi / 180)}, {5, 60}, {0, 60}};
const BodyCase kBodies[] = {
    {"Flat", kFlat, 0.05, 128, 12485.8, 2},
    {"Drill", kDrill, 0.01, 208, 4544.01, 2},
    {"BallEnd", ball_end(), 0.01, 2176, 5484.29, 2},
    {"ClockwiseIsTheSame", reversed(kFlat), 0.05, 128, 12485.8, 2},
    {"EndsOffTheAxisAreJoined", {{10, 0}, {10, 40}}, 0.05, 128, 12485.8, 2},
    {"EqualPointsAndTheAxisAddNothing",
     {{0, 5}, {0, 0}, {10, 0}, {10, 0}, {10, 40}, {1e-10, 40}, {0, 9}},
     0.05,
     128,
     12485.8,
     2},
    {"RingOffTheAxis", {{5, 0}, {10, 0}, {10, 4}, {5, 4}, {5, 0}}, 0.05, 256, 936.437, 0},
    {"ClosedRingOnTheAxis", {{10, 0}, {10, 40}, {0, 40}, {0, 0}, {10, 0}}, 0.05, 128, 12485.8, 2},
    {"TwoBodies",
     {{0, 0}, {10, 0}, {10, 40}, {0, 40}, {0, 50}, {10, 50}, {10, 90}, {0, 90}},
     0.05,
     256,
     2 * 12485.8,
     4},
    {"TwoConesTipToTip", {{0, 0}, {10, 0}, {0, 9}, {10, 18}, {0, 18}}, 99, 48, 1800, 3},
    {"CoarsestHasTwelveFacetsRound", kFlat, 1e9, 48, 12000, 2},
};
class Revolve : public testing::TestWithParam<BodyCase> {};
TEST_P(Revolve, GivesAClosedBody) {
  std::vector<Facet> mesh;
  Revolution how;
  how.chord_tolerance = GetParam().tolerance;
  ASSERT_TRUE(revolve(GetParam().outline, how, mesh));
  EXPECT_EQ(mesh.size(), GetParam().facets);
  const MeshCheck check = check_mesh(mesh);
  EXPECT_NEAR(check.volume, GetParam().volume, GetParam().volume * 6e-6);
  EXPECT_EQ(check.euler, GetParam().euler);
  EXPECT_EQ(check.open_edges, 0U);
  EXPECT_LT(check.worst_normal, 1e-9);
}
TEST_P(Revolve, ASectionIsClosedByCaps) {
  const double whole = GetParam().volume;
  for (double span : {1.0, 90.0, 180.0, 250.5}) {
    std::vector<Facet> mesh;
    ASSERT_TRUE(revolve(GetParam().outline, {GetParam().tolerance, 30, span}, mesh));
    const MeshCheck check = check_mesh(mesh);
    EXPECT_EQ(check.open_edges, 0U) << span;
    // The steps of a section are at most as wide as those of the whole body.
    EXPECT_GE(check.volume, whole * span / 360 * (1 - 6e-6)) << span;
    EXPECT_LE(check.volume, whole * span / 360 * 1.05) << span;
    EXPECT_LT(check.worst_normal, 1e-9) << span;
  }
}
INSTANTIATE_TEST_SUITE_P(Bodies, Revolve, testing::ValuesIn(kBodies), row_name<BodyCase>);

struct RefusedCase {
  const char* name;
  Polyline outline;
  Revolution how;
};
const RefusedCase kRefused[] = {
    {"Empty", {}, {}},
    {"OnePoint", {{1, 1}}, {}},
    {"AcrossTheAxis", {{0, 0}, {5, 0}, {-2e-6, 5}}, {}},
    {"NotFinite", {{0, 0}, {5, NAN}, {0, 5}}, {}},
    {"OnTheAxis", {{0, 0}, {0, 5}}, {}},
    {"FlatDisc", {{0, 1}, {5, 1}}, {}},
    {"NoSpan", kFlat, {0.01, 0, 0}},
    {"StartIsNotFinite", kFlat, {0.01, NAN, 90}},
    {"SectionOfACrossingOutline", {{0, 0}, {5, 0}, {2, 9}, {5, 9}, {0, 3}}, {0.01, 0, 90}},
};
class RevolveRefuses : public testing::TestWithParam<RefusedCase> {};
TEST_P(RevolveRefuses, AndLeavesTheMesh) {
  std::vector<Facet> mesh(3);
  EXPECT_FALSE(revolve(GetParam().outline, GetParam().how, mesh));
  EXPECT_EQ(mesh.size(), 3U);
}
INSTANTIATE_TEST_SUITE_P(Outlines, RevolveRefuses, testing::ValuesIn(kRefused),
                         row_name<RefusedCase>);

TEST(RingCount, KeepsToTheToleranceWithTheFewestQuarters) {
  for (double tolerance : {3.0, 0.5, 0.05, 0.01, 1e-3, 1e-4}) {
    const int n = ring_count(10, tolerance);
    const auto sagitta = [](int count) { return 10 * (1 - std::cos(pi / count)); };
    EXPECT_EQ(n % 4, 0);
    EXPECT_LE(sagitta(n), tolerance * (1 + 1e-9));
    EXPECT_TRUE(n == 12 || sagitta(n - 4) > tolerance);
  }
  for (double tolerance : {0.0, -1.0, 1e-300}) EXPECT_LE(ring_count(1e6, tolerance), 7200);
  EXPECT_EQ(ring_count(10, NAN), 12);
}

TEST(RevolveThreads, OneAndManyGiveTheSameBytes) {
  std::vector<Facet> many;
  ASSERT_TRUE(revolve(ball_end(), {1e-4}, many));
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  std::vector<Facet> single;
  ASSERT_TRUE(revolve(ball_end(), {1e-4}, single));
  ASSERT_EQ(single.size(), many.size());
  EXPECT_EQ(std::memcmp(single.data(), many.data(), many.size() * sizeof(Facet)), 0);
}

}  // namespace
}  // namespace tooldb
