#include "geom/silhouette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "geom/euler_angles.h"
#include "geom/transform.h"
#include "tests/geom/meshes.h"
#include "tests/geom/points.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

// The definition, edge by edge: the largest distance from the axis at height z, or -1.
double true_radius(const Mesh& mesh, double z) {
  double best = -1;
  for (const Facet& f : mesh) {
    for (const auto& [p, q] : {std::pair(f.a, f.b), std::pair(f.b, f.c), std::pair(f.c, f.a)}) {
      if (std::abs(q.z - p.z) < 1e-9 || (p.z - z) * (q.z - z) > 0) continue;
      const Vec3 at = p + ((z - p.z) / (q.z - p.z)) * (q - p);
      best = std::max(best, std::hypot(at.x, at.y));
    }
  }
  return best;
}

// The largest x of the outline at height z.
double outline_radius(const Polyline& line, double z) {
  double best = -1;
  for (std::size_t i = 1; i < line.size(); ++i) {
    const auto [a, b] = std::pair(line[i - 1], line[i]);
    if ((a.y - z) * (b.y - z) > 0) continue;
    const double x = a.x + (b.x - a.x) * (z - a.y) / (b.y - a.y);
    best = std::max(best, a.y == b.y ? std::max(a.x, b.x) : x);
  }
  return best;
}

Mesh box(Vec3 low, Vec3 high) {
  return extruded({{low.x, low.z}, {high.x, low.z}, {high.x, high.z}, {low.x, high.z}}, low.y,
                  high.y);
}

Mesh placed(Mesh mesh, const Placement& placement) {
  transform_mesh(mesh, placement);
  return mesh;
}

// A cube of side 10 whose space diagonal stands on the origin.
Mesh cube_on_a_corner() {
  const double tilt = -std::atan(std::sqrt(2)) * 180 / std::acos(-1);
  return placed(box({0, 0, 0}, {10, 10, 10}),
                join_zyx({0, tilt, 0}, {}) * join_zyx({-45, 0, 0}, {}));
}

Mesh noisy_cylinder() {
  return shaken(revolved(points("5 0 ; 5 1 ; 5 2 ; 5 3 ; 5 20 ; 8 20 ; 8 30"), 1e-4), 1e-6);
}

struct MeshCase {
  std::string_view name;
  Mesh mesh;
};
const MeshCase kMeshes[] = {
    {"CubeOnACorner", cube_on_a_corner()},
    {"Box", box({-5, -5, 0}, {5, 5, 20})},
    {"BoxOffTheAxis", box({30, 10, 0}, {31, 50, 20})},
    {"TiltedBox", placed(box({-5, -5, 0}, {5, 5, 20}), join_zyx({10, 40, 25}, {3, -2, 1}))},
    {"FlatBox", placed(box({-50, -5, 0}, {50, 5, 0.5}), join_zyx({10, 89, 25}, {3, -2, 1}))},
    {"OneFacetPastTheAxis", {{{10, -10, 0}, {10, 10, 20}, {9, 9, 20}, {}}}},
    {"EdgeThroughTheAxis", {{{10, 0, 0}, {-10, 0, 20}, {0, 0, 10}, {}}}},
    {"TwoAboveEachOther", both(box({-1, -1, 0}, {1, 1, 2}), box({-2, -2, 5}, {2, 2, 9}))},
    {"NoisyCylinder", noisy_cylinder()},
    {"SoupOfLongEdges", soup(300, 15, 1)},
    {"SoupOfShortEdges", soup(3000, 0.5, 2)},
    {"LargeSoup", soup(20000, 3, 4)},
};

class Silhouette : public testing::TestWithParam<MeshCase> {};
INSTANTIATE_TEST_SUITE_P(Meshes, Silhouette, testing::ValuesIn(kMeshes), row_name<MeshCase>);

TEST_P(Silhouette, LiesWithinToleranceOfTheTrueOne) {
  const Mesh& mesh = GetParam().mesh;
  double low = HUGE_VAL;
  double high = -HUGE_VAL;
  for (const Facet& f : mesh) {
    low = std::min({low, f.a.z, f.b.z, f.c.z});
    high = std::max({high, f.a.z, f.b.z, f.c.z});
  }
  for (double tolerance : {1.0, 0.05, 0.001}) {
    const Polyline line = silhouette(mesh, tolerance);
    ASSERT_GE(line.size(), 3U);
    EXPECT_LT(distance(line.front(), {0, low}), 1e-9 + tolerance);
    EXPECT_LT(distance(line.back(), {0, high}), 1e-9 + tolerance);
    EXPECT_EQ(line.front().x + line.back().x, 0);
    for (int i = 0; i < 200; ++i) {
      const double z = low + (high - low) * (i + 0.5) / 200;
      const double radius = true_radius(mesh, z);
      if (radius < 0) continue;
      const bool inside = outline_radius(line, z) < radius;
      EXPECT_LE(distance_to_line({radius, z}, line), inside ? 0.3 * tolerance : tolerance)
          << tolerance << " at " << z;
    }
  }
}

TEST(SilhouetteOutline, OfACubeOnItsCornerIsAsWorkedOut) {
  const Polyline line = silhouette(cube_on_a_corner(), 1e-5);
  for (const auto& [z, radius] :
       {std::pair(3.0, 4.24264), {5.7735, 8.16497}, {7.0, 7.4507}, {8.66025, 7.07107}}) {
    EXPECT_NEAR(true_radius(cube_on_a_corner(), z), radius, 5e-5);
    EXPECT_NEAR(outline_radius(line, z), radius, 5e-5);
  }
}

TEST(SilhouetteOutline, HasTheFewestPoints) {
  EXPECT_EQ(silhouette(box({-3, -4, 0}, {3, 4, 20}), 0.01), points("0 0 ; 5 0 ; 5 20 ; 0 20"));
  EXPECT_EQ(silhouette(noisy_cylinder(), 0.01).size(), 6U);
}

TEST(SilhouetteOutline, IsEmptyWithoutHeight) {
  EXPECT_TRUE(silhouette({}, 0.01).empty());
  for (double z : {1.0, double{NAN}, HUGE_VAL}) {
    EXPECT_TRUE(silhouette(Mesh{{{0, 0, 1}, {5, 0, z}, {0, 5, 1}, {}}}, 0.01).empty()) << z;
  }
}

TEST(SilhouetteOutline, StaysBoundedForABadTolerance) {
  const Mesh mesh = soup(2000, 15, 8);
  for (double tolerance : {0.0, -1.0, double{NAN}, 1e-300}) {
    const Polyline line = silhouette(mesh, tolerance);
    EXPECT_NEAR(outline_radius(line, 0.5), true_radius(mesh, 0.5), 2e-3) << tolerance;
    EXPECT_LT(line.size(), 1000000U) << tolerance;
  }
}

}  // namespace
}  // namespace tooldb
