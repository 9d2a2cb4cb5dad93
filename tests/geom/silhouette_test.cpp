#include "geom/silhouette.h"

#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "geom/euler_angles.h"
#include "geom/revolve.h"
#include "geom/transform.h"
#include "tests/geom/polyline_distance.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

using Mesh = std::vector<Facet>;

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
    const Vec2 a = line[i - 1];
    const Vec2 b = line[i];
    if ((a.y - z) * (b.y - z) > 0) continue;
    best = std::max(best,
                    a.y == b.y ? std::max(a.x, b.x) : a.x + (b.x - a.x) * (z - a.y) / (b.y - a.y));
  }
  return best;
}

Mesh box(Vec3 low, Vec3 high) {
  const Polyline base = {{low.x, low.y}, {high.x, low.y}, {high.x, high.y}, {low.x, high.y}};
  Mesh mesh;
  for (std::size_t i = 0; i < 4; ++i) {
    const auto at = [&](std::size_t k, double z) { return Vec3{base[k % 4].x, base[k % 4].y, z}; };
    mesh.push_back({at(i, low.z), at(i + 1, low.z), at(i + 1, high.z), {}});
    mesh.push_back({at(i, low.z), at(i + 1, high.z), at(i, high.z), {}});
  }
  return mesh;
}

// A cube of side 10 whose space diagonal stands on the origin.
Mesh cube_on_a_corner() {
  Mesh mesh = box({0, 0, 0}, {10, 10, 10});
  Mesh more = box({0, 0, 0}, {10, 10, 10});
  // The missing top and bottom, as the sides of the same cube turned.
  transform_mesh(more, join_zyx({0, 0, -90}, {0, 0, 10}));
  mesh.insert(mesh.end(), more.begin(), more.end());
  Placement upright;
  const Vec3 z = normalised(Vec3{1, 1, 1});
  const Vec3 x = normalised(Vec3{1, -1, 0});
  const Vec3 y = cross(z, x);
  int row = 0;
  for (const Vec3& axis : {x, y, z}) {
    upright(row, 0) = axis.x;
    upright(row, 1) = axis.y;
    upright(row, 2) = axis.z;
    ++row;
  }
  transform_mesh(mesh, upright);
  return mesh;
}

Mesh tilted(Mesh mesh, EulerAngles angles) {
  transform_mesh(mesh, join_zyx(angles, {3, -2, 1}));
  return mesh;
}

Mesh soup(std::size_t count, double size, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> u(-1, 1);
  Mesh mesh(count);
  for (Facet& f : mesh) {
    const Vec3 centre{20 * u(random), 20 * u(random), 40 * u(random)};
    for (Vec3* p : {&f.a, &f.b, &f.c}) *p = centre + size * Vec3{u(random), u(random), u(random)};
  }
  return mesh;
}

Mesh noisy_cylinder() {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> noise(-1e-6, 1e-6);
  Mesh mesh;
  revolve(Polyline{{5, 0}, {5, 1}, {5, 2}, {5, 3}, {5, 20}, {8, 20}, {8, 30}}, {1e-4}, mesh);
  for (Facet& f : mesh) {
    for (Vec3* p : {&f.a, &f.b, &f.c}) *p = *p + Vec3{noise(random), noise(random), noise(random)};
  }
  return mesh;
}

struct MeshCase {
  const char* name;
  Mesh mesh;
};
const MeshCase kMeshes[] = {
    {"CubeOnACorner", cube_on_a_corner()},
    {"Box", box({-5, -5, 0}, {5, 5, 20})},
    {"BoxOffTheAxis", box({30, 10, 0}, {31, 50, 20})},
    {"TiltedBox", tilted(box({-5, -5, 0}, {5, 5, 20}), {10, 40, 25})},
    {"FlatTiltedBox", tilted(box({-50, -5, 0}, {50, 5, 0.5}), {10, 89, 25})},
    {"OneFacetPastTheAxis", {{{10, -10, 0}, {10, 10, 20}, {9, 9, 20}, {}}}},
    {"EdgeThroughTheAxis", {{{10, 0, 0}, {-10, 0, 20}, {0, 0, 10}, {}}}},
    {"TwoBodiesAboveEachOther",
     [] {
       Mesh mesh = box({-1, -1, 0}, {1, 1, 2});
       const Mesh above = box({-2, -2, 5}, {2, 2, 9});
       mesh.insert(mesh.end(), above.begin(), above.end());
       return mesh;
     }()},
    {"NoisyCylinder", noisy_cylinder()},
    {"SoupOfLongEdges", soup(300, 15, 1)},
    {"SoupOfShortEdges", soup(3000, 0.5, 2)},
    {"LargeSoup", soup(20000, 3, 4)},
};

class Silhouette : public testing::TestWithParam<MeshCase> {};
TEST_P(Silhouette, LiesWithinToleranceOfTheTrueOne) {
  const Mesh& mesh = GetParam().mesh;
  double low = HUGE_VAL;
  double high = -HUGE_VAL;
  for (const Facet& f : mesh) {
    for (const Vec3* p : {&f.a, &f.b, &f.c}) {
      low = std::min(low, p->z);
      high = std::max(high, p->z);
    }
  }
  for (double tolerance : {1.0, 0.05, 0.001}) {
    const Polyline line = silhouette(mesh, tolerance);
    ASSERT_GE(line.size(), 3U);
    EXPECT_EQ(line.front().x, 0);
    EXPECT_EQ(line.back().x, 0);
    EXPECT_NEAR(line.front().y, low, 1e-9 + tolerance);
    EXPECT_NEAR(line.back().y, high, 1e-9 + tolerance);
    for (int i = 0; i < 200; ++i) {
      const double z = low + (high - low) * (i + 0.5) / 200;
      const double radius = true_radius(mesh, z);
      if (radius < 0) continue;
      const double away = distance_to_line({radius, z}, line);
      const bool inside = outline_radius(line, z) < radius;
      EXPECT_LE(away, inside ? 0.3 * tolerance : tolerance) << tolerance << " at " << z;
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Meshes, Silhouette, testing::ValuesIn(kMeshes), row_name<MeshCase>);

struct RadiusCase {
  const char* name;
  Mesh mesh;
  double z;
  double radius;
};
const RadiusCase kRadii[] = {
    {"CubeBelow", cube_on_a_corner(), 3, 4.24264},
    {"CubeCorner", cube_on_a_corner(), 5.7735, 8.16497},
    {"CubeBetween", cube_on_a_corner(), 7, 7.4507},
    {"CubeWaist", cube_on_a_corner(), 8.66025, 7.07107},
    {"Box", box({-5, -5, 0}, {5, 5, 20}), 13, 7.07107},
    {"OneFacet", {{{10, -10, 0}, {10, 10, 20}, {9, 9, 20}, {}}}, 5, 11.1803},
};
class SilhouetteRadius : public testing::TestWithParam<RadiusCase> {};
TEST_P(SilhouetteRadius, IsAsWorkedOut) {
  const auto& [name, mesh, z, radius] = GetParam();
  EXPECT_NEAR(true_radius(mesh, z), radius, 5e-5);
  EXPECT_NEAR(outline_radius(silhouette(mesh, 1e-5), z), radius, 5e-5);
}
INSTANTIATE_TEST_SUITE_P(WorkedExamples, SilhouetteRadius, testing::ValuesIn(kRadii),
                         row_name<RadiusCase>);

TEST(SilhouetteOutline, HasTheFewestPoints) {
  EXPECT_EQ(silhouette(box({-3, -4, 0}, {3, 4, 20}), 0.01),
            (Polyline{{0, 0}, {5, 0}, {5, 20}, {0, 20}}));
  EXPECT_EQ(silhouette(noisy_cylinder(), 0.01).size(), 6U);
}

TEST(SilhouetteOutline, IsEmptyWithoutHeight) {
  const double bad = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(silhouette({}, 0.01).empty());
  EXPECT_TRUE(silhouette(Mesh{{{0, 0, 1}, {5, 0, 1}, {0, 5, 1}, {}}}, 0.01).empty());
  EXPECT_TRUE(silhouette(Mesh{{{0, 0, 1}, {5, bad, 9}, {0, 5, 1}, {}}}, 0.01).empty());
  EXPECT_TRUE(silhouette(Mesh{{{0, 0, 1}, {5, 0, HUGE_VAL}, {0, 5, 1}, {}}}, 0.01).empty());
}

TEST(SilhouetteOutline, StaysBoundedForABadTolerance) {
  const Mesh mesh = soup(2000, 15, 8);
  for (double tolerance : {0.0, -1.0, double{NAN}, 1e-300}) {
    const Polyline line = silhouette(mesh, tolerance);
    EXPECT_NEAR(outline_radius(line, 0.5), true_radius(mesh, 0.5), 2e-3) << tolerance;
    EXPECT_LT(line.size(), 1000000U) << tolerance;
  }
}

TEST(SilhouetteThreads, OneAndManyGiveTheSameBytes) {
  const Mesh mesh = soup(30000, 4, 5);
  const Polyline many = silhouette(mesh, 0.01);
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  const Polyline single = silhouette(mesh, 0.01);
  ASSERT_EQ(single.size(), many.size());
  EXPECT_EQ(std::memcmp(single.data(), many.data(), many.size() * sizeof(Vec2)), 0);
}

}  // namespace
}  // namespace tooldb
