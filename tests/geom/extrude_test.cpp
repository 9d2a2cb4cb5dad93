#include "geom/extrude.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/geom/mesh_check.h"
#include "tests/geom/points_text.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

struct ExtrudeCase {
  std::string_view name;
  std::string_view outline;
  double y_min, y_max;
  double volume;
  long euler;  // 2 per body, less 2 per hole
};
constexpr ExtrudeCase kBodies[] = {
    {"Box", "0 0 ; 2 0 ; 2 3 ; 0 3", -5, 0, 30, 2},
    {"Clockwise", "0 0 ; 0 3 ; 2 3 ; 2 0", -5, 0, 30, 2},
    {"FirstPointRepeated", "0 0 ; 2 0 ; 2 3 ; 0 3 ; 0 0", 1, 2, 6, 2},
    {"NotConvex", "0 0 ; 6 0 ; 6 6 ; 3 1 ; 0 6", 0, 2, 42, 2},
    {"TwoLobesThatTouch", "0 0 ; 4 4 ; 4 0 ; 0 4", 0, 1, 8, 3},
    {"SlitRing", "0 0 ; 9 0 ; 9 9 ; 0 9 ; 0 0 ; 3 3 ; 3 6 ; 6 6 ; 6 3 ; 3 3", 0, 1, 72, 0},
    {"Flat", "0 0 ; 2 0 ; 1 0", 0, 1, 0, 0},
    {"NoHeight", "0 0 ; 2 0 ; 2 3", 1, 1, 0, 0},
    {"HeightIsNotFinite", "0 0 ; 2 0 ; 2 3", 0, INFINITY, 0, 0},
    {"CornerIsNotFinite", "0 0 ; nan 0 ; 2 3", 0, 1, 0, 0},
    {"Empty", "", 0, 1, 0, 0},
};
class Extrude : public testing::TestWithParam<ExtrudeCase> {};
INSTANTIATE_TEST_SUITE_P(Bodies, Extrude, testing::ValuesIn(kBodies), row_name<ExtrudeCase>);

TEST_P(Extrude, AppendsAClosedBody) {
  const auto& [name, outline, y_min, y_max, volume, euler] = GetParam();
  std::vector<Facet> mesh(1);
  EXPECT_EQ(extrude(points(outline), y_min, y_max, mesh), volume > 0);
  mesh.erase(mesh.begin());
  const MeshCheck check = check_mesh(mesh);
  EXPECT_NEAR(check.volume, volume, 1e-5);
  EXPECT_EQ(check.open_edges, 0U);
  EXPECT_EQ(check.euler, euler);
  EXPECT_LT(check.worst_normal, 1e-9);
}

}  // namespace
}  // namespace tooldb
