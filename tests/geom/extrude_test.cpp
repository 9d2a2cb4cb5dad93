#include "geom/extrude.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geom/contour_segments.h"
#include "tests/geom/mesh_check.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

struct ExtrudeCase {
  const char* name;
  Polyline outline;
  double y_min, y_max;
  double volume;
  long euler;  // 2 per body, less 2 per hole
};
const ExtrudeCase kBodies[] = {
    {"Box", {{0, 0}, {2, 0}, {2, 3}, {0, 3}}, -5, 0, 30, 2},
    {"Clockwise", {{0, 0}, {0, 3}, {2, 3}, {2, 0}}, -5, 0, 30, 2},
    {"FirstPointRepeated", {{0, 0}, {2, 0}, {2, 3}, {0, 3}, {0, 0}}, 1, 2, 6, 2},
    {"NotConvex", {{0, 0}, {6, 0}, {6, 6}, {3, 1}, {0, 6}}, 0, 2, 42, 2},
    {"TwoLobesThatTouch", {{0, 0}, {4, 4}, {4, 0}, {0, 4}}, 0, 1, 8, 3},
    {"SlitRing",
     {{0, 0}, {9, 0}, {9, 9}, {0, 9}, {0, 0}, {3, 3}, {3, 6}, {6, 6}, {6, 3}, {3, 3}},
     0,
     1,
     72,
     0},
    {"Flat", {{0, 0}, {2, 0}, {1, 0}}, 0, 1, 0, 0},
    {"NoHeight", {{0, 0}, {2, 0}, {2, 3}}, 1, 1, 0, 0},
    {"HeightIsNotFinite", {{0, 0}, {2, 0}, {2, 3}}, 0, INFINITY, 0, 0},
    {"CornerIsNotFinite", {{0, 0}, {NAN, 0}, {2, 3}}, 0, 1, 0, 0},
    {"Empty", {}, 0, 1, 0, 0},
};
class Extrude : public testing::TestWithParam<ExtrudeCase> {};
TEST_P(Extrude, GivesAClosedBody) {
  std::vector<Facet> mesh;
  const bool made = extrude(GetParam().outline, GetParam().y_min, GetParam().y_max, mesh);
  EXPECT_EQ(made, GetParam().volume > 0);
  const MeshCheck check = check_mesh(mesh);
  EXPECT_NEAR(check.volume, GetParam().volume, 1e-5);
  EXPECT_EQ(check.open_edges, 0U);
  EXPECT_EQ(check.euler, GetParam().euler);
  EXPECT_LT(check.worst_normal, 1e-9);
}
INSTANTIATE_TEST_SUITE_P(Bodies, Extrude, testing::ValuesIn(kBodies), row_name<ExtrudeCase>);

TEST(ExtrudeInsert, KeepsTheVolumeOfAFlattenedInsert) {
  const double half = std::acos(-1) * 40 / 180;
  const double rho = 6.35;
  const double centre = 0.8 + (rho - 0.8) / std::sin(half);
  const std::vector<SharpCorner> corners = {{{0, centre - rho / std::sin(half)}, 0.8},
                                            {{rho / std::cos(half), centre}, 0.8},
                                            {{0, centre + rho / std::sin(half)}, 0.8},
                                            {{-rho / std::cos(half), centre}, 0.8}};
  std::vector<Facet> mesh(1);
  ASSERT_TRUE(extrude(flatten(*round_closed_corners(corners), 1e-5), -4.76, 0, mesh));
  mesh.erase(mesh.begin());  // what was there stays
  const MeshCheck check = check_mesh(mesh);
  EXPECT_NEAR(check.volume, 776.781, 2e-3);
  EXPECT_EQ(check.open_edges, 0U);
  EXPECT_EQ(check.euler, 2);
}

}  // namespace
}  // namespace tooldb
